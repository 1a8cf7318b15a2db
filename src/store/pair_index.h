// Positions of each material's and each (material, machine) pair's records,
// in table order, and a compact copy of every record's search fields.  The
// full-table queries visit only these positions instead of the whole table;
// the result is the same because each list holds exactly the matching
// positions, ascending.  The store keeps the lists current: every rebuild of
// the record indexes rebuilds them, every append extends them, Create clears
// them.  A table changed any other way (size differs from what was indexed)
// makes the queries fall back to scanning.
#ifndef SPARLANE_STORE_PAIR_INDEX_H_
#define SPARLANE_STORE_PAIR_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sparlane/records.h"
#include "store/flat_id_map.h"

namespace Sparlane {

// The fields the searches compare, 12 bytes per record instead of 64, so a
// bisection or scan touches fewer cache lines.  Same names as the record's
// fields, so one search reads either.
struct RecordKey {
  std::uint16_t material_id;
  std::uint16_t machine_model_id;
  float thickness_mm;
  float cut_speed_mm_min;
};

// One material's or pair's positions: `count` positions indexed at the last
// rebuild, then the positions appended since (all larger).
struct PositionGroup {
  std::uint32_t start = 0;           // offset of the run in the grouped array
  std::uint32_t count = 0;
  std::uint32_t first_position = 0;  // smallest table position of the group
  std::vector<std::uint32_t> appended;

  std::size_t size() const { return count + appended.size(); }
};

// Groups of one kind (materials, or pairs).  When the table was already
// grouped at the rebuild, each run is contiguous and `grouped` stays empty.
struct PositionGroups {
  FlatIdMap ids;  // material id or pair key -> index into `groups`
  std::vector<PositionGroup> groups;
  std::vector<std::uint32_t> grouped;
};

struct PairIndex {
  std::vector<RecordKey> keys;  // one per table position
  PositionGroups materials;
  PositionGroups pairs;
  std::size_t covered = 0;          // table positions [0, covered) are listed
  bool usable = true;               // false once an append arrived out of step
  bool pair_ordered = true;         // table ascending by (material, machine)
};

inline std::uint32_t PairKey(std::uint16_t material_id, std::uint16_t machine_id) {
  return (static_cast<std::uint32_t>(material_id) << 16) | machine_id;
}

// Store hooks.  Rebuild after the record indexes are rebuilt; Appended right
// after a record is pushed onto the table.
void RebuildPairIndex(const std::vector<CuttingParameter>& records, PairIndex& index);
void PairIndexAppended(const std::vector<CuttingParameter>& records, PairIndex& index);

// True when the lists describe a table of this many records as it is now.
inline bool PairIndexCovers(const PairIndex& index, std::size_t table_size) {
  return index.usable && index.covered == table_size;
}

// Groups, or null when no record has the id(s).  Only meaningful while
// PairIndexCurrent holds.
const PositionGroup* FindMaterialGroup(const PairIndex& index, std::uint16_t material_id);
const PositionGroup* FindPairGroup(const PairIndex& index, std::uint16_t material_id,
                                   std::uint16_t machine_id);

// Visits the group's positions in table order.
template <typename Visit>
void ForEachPosition(const PositionGroups& kind, const PositionGroup& group, Visit&& visit) {
  if (kind.grouped.empty()) {
    const std::uint32_t end = group.first_position + group.count;
    for (std::uint32_t pos = group.first_position; pos < end; ++pos) visit(pos);
  } else {
    const std::uint32_t* run = kind.grouped.data() + group.start;
    for (std::uint32_t i = 0; i < group.count; ++i) visit(run[i]);
  }
  for (std::uint32_t pos : group.appended) visit(pos);
}

}  // namespace Sparlane

#endif  // SPARLANE_STORE_PAIR_INDEX_H_
