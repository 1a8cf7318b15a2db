// The two record indexes of the store: per material one thickness bucket,
// per machine model one span of table positions.  They hold two numbers per
// id and describe tables in (material, machine, thickness) order; on any
// other order the spans say what they say and the queries read them as
// they lie.
#ifndef SPARLANE_STORE_RECORD_INDEXES_H_
#define SPARLANE_STORE_RECORD_INDEXES_H_

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "sparlane/records.h"

namespace Sparlane {

// One run of a material's records, thinnest first.
struct ThicknessBucket {
  float min_thickness;
  float max_thickness;
  std::uint64_t first;  // position of the thinnest record (the earliest of equals)
  std::uint64_t count;  // records of the material in the whole table
};

// The run of table positions a machine model's records are taken to occupy.
struct MachineSpan {
  std::uint64_t first;  // smallest position of the machine's records
  std::uint64_t count;  // records of the machine in the whole table
};

struct RecordIndexes {
  // Every list holds one bucket; consumers walk it in order.
  std::unordered_map<std::uint16_t, std::vector<ThicknessBucket>> material_ranges;
  std::unordered_map<std::uint16_t, MachineSpan> machine_records;

  // The material's buckets, or null when no record carries the id.
  const std::vector<ThicknessBucket>* MaterialBuckets(std::uint16_t material_id) const {
    auto it = material_ranges.find(material_id);
    return it == material_ranges.end() ? nullptr : &it->second;
  }

  // The machine's span, or null when no record carries the id.
  const MachineSpan* MachineSpanOf(std::uint16_t machine_id) const {
    auto it = machine_records.find(machine_id);
    return it == machine_records.end() ? nullptr : &it->second;
  }

  void Clear() {
    material_ranges.clear();
    machine_records.clear();
  }

  // Both indexes from the table in one pass; the material index is stored
  // first.  An entry exists exactly for each id some record carries.
  void Rebuild(const std::vector<CuttingParameter>& records);
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_INDEXES_H_
