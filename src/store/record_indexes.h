// The record indexes of the store: per material one thickness bucket, per
// machine model one span of table positions.  They hold two numbers per id
// and describe tables in (material, machine, thickness) order; on any other
// order the spans say what they say and the queries read them as they lie.
//
// Beside each material's bucket the index keeps, for every distinct
// thickness among the records of the bucket's span, the record FindOptimal
// would choose among them, so that query follows its candidates instead of
// walking the material.
#ifndef SPARLANE_STORE_RECORD_INDEXES_H_
#define SPARLANE_STORE_RECORD_INDEXES_H_

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "sparlane/records.h"
#include "store/id_table.h"

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

// Among the records of a span with one thickness (NaN never, -0.0 and 0.0
// alike), the fastest with a speed above 0, the earliest of equals.
struct FastestAtThickness {
  float thickness_mm;
  float cut_speed_mm_min;
  std::uint32_t position;
};

// A material's entries, ascending by thickness.
struct FastestRun {
  const FastestAtThickness* begin = nullptr;
  const FastestAtThickness* end = nullptr;
};

struct RecordIndexes {
  // Every list holds one bucket after a rebuild; consumers walk it in order.
  IdTable<std::vector<ThicknessBucket>> material_ranges;
  IdTable<MachineSpan> machine_records;

  // The fastest records of each material's one bucket: a range of `fastest`.
  struct EntryRange {
    std::uint32_t begin = 0;
    std::uint32_t count = 0;
  };
  IdTable<EntryRange> fastest_ranges;
  std::vector<FastestAtThickness> fastest;
  std::size_t fastest_table_size = 0;  // table size they were built for
  bool fastest_spans_fit = true;       // every bucket span lay inside that table

  // The material's buckets, or null when no record carries the id.
  const std::vector<ThicknessBucket>* MaterialBuckets(std::uint16_t material_id) const {
    return material_ranges.Find(material_id);
  }

  // The machine's span, or null when no record carries the id.
  const MachineSpan* MachineSpanOf(std::uint16_t machine_id) const {
    return machine_records.Find(machine_id);
  }

  // The material's fastest records when they still describe its bucket's
  // span in a table of table_size records, else null.  A table that grew
  // keeps them only if no span was cut short by the table's end (appended
  // records then fall outside every span); one that shrank loses them.
  const EntryRange* Fastest(std::uint16_t material_id, std::size_t table_size) const {
    const bool current = table_size == fastest_table_size ||
                         (table_size > fastest_table_size && fastest_spans_fit);
    return current ? fastest_ranges.Find(material_id) : nullptr;
  }
  // The material's one bucket is the one the last rebuild made and still
  // spans what it spanned then (the same rule as Fastest).
  bool BucketAsBuilt(std::uint16_t material_id, std::size_t table_size) const {
    return Fastest(material_id, table_size) != nullptr;
  }

  FastestRun RunOf(const EntryRange& range) const {
    const FastestAtThickness* begin = fastest.data() + range.begin;
    return FastestRun{begin, begin + range.count};
  }

  // A bucket list put in place by hand: the material's fastest records no
  // longer describe it.
  void SetBuckets(std::uint16_t material_id, std::vector<ThicknessBucket> buckets) {
    material_ranges.Set(material_id, std::move(buckets));
    fastest_ranges.Erase(material_id);
  }

  void Clear() { *this = RecordIndexes(); }
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_INDEXES_H_
