// Positions of each material's and each (material, machine) pair's records,
// in table order, and every record's thickness in a column of its own.  The
// full-table queries visit only these positions instead of the whole table;
// the result is the same because each list holds exactly the matching
// positions, ascending.  The bisections read the thickness column, 4 bytes a
// record instead of 64, so a search touches a cache line or two.
//
// The store keeps the lists current: every rebuild of the record indexes
// rebuilds them (store/index_builder.h), every append extends them, Create
// clears them.  A table changed any other way (size differs from what was
// indexed) makes the queries fall back to scanning.
#ifndef SPARLANE_STORE_PAIR_INDEX_H_
#define SPARLANE_STORE_PAIR_INDEX_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sparlane/records.h"
#include "store/group_map.h"
#include "store/large_pages.h"

namespace Sparlane {

// One material's or pair's positions: `count` positions indexed at the last
// rebuild, then the positions appended since (all larger).
struct PositionGroup {
  std::uint32_t start = 0;     // offset of the run in the grouped array
  std::uint32_t count = 0;
  std::uint32_t appended = 0;  // 1 + index into PositionGroups::appended, or 0
};

// Groups of one kind (materials, or pairs).  When the table was already
// grouped at the rebuild, each run is contiguous and `grouped` stays empty.
struct PositionGroups {
  GroupMap ids;  // material id or pair key -> group, first position, size
  std::vector<PositionGroup> groups;
  std::vector<std::uint32_t> grouped;
  std::vector<std::vector<std::uint32_t>> appended;  // positions appended since
  bool contiguous = true;  // every group is [first_position, first_position + size)

  const std::vector<std::uint32_t>* AppendedTo(const PositionGroup& g) const {
    return g.appended == 0 ? nullptr : &appended[g.appended - 1];
  }
};

struct PairIndex {
  LargeArray<float> thickness;  // thickness_mm of every table position
  PositionGroups materials;
  PositionGroups pairs;
  std::size_t covered = 0;   // table positions [0, covered) are listed
  bool usable = true;        // false once an append arrived out of step
  bool pair_ordered = true;  // table ascending by (material, machine)
};

inline std::uint32_t PairKey(std::uint16_t material_id, std::uint16_t machine_id) {
  return (static_cast<std::uint32_t>(material_id) << 16) | machine_id;
}

// A bisection over [lo, hi) of a table in (material, machine) order, looking
// for a record of the pair whose run is [run_first, run_end), knows every
// step while its middle lies outside the run: a record before the run sorts
// below the pair, one after it above.  This takes those steps, leaving lo
// and hi where the first middle inside the run is probed (or lo == hi).
inline void EnterRun(std::uint64_t& lo, std::uint64_t& hi, std::uint64_t run_first,
                     std::uint64_t run_end) {
  while (lo < hi) {
    const std::uint64_t mid = lo + (hi - lo) / 2;
    if (mid >= run_first && mid < run_end) return;
    if (mid < run_first) {
      lo = mid + 1;
    } else {
      hi = mid;
    }
  }
}

// A group for id (not yet present): count positions from start of the
// grouped array (or of the table, when it is not grouped), the smallest
// being first_position.  The reference holds until the next group is added.
GroupRef& AddGroup(PositionGroups& kind, std::uint32_t id, std::uint32_t start,
                   std::uint32_t count, std::uint32_t first_position);

// Store hook, right after a record is pushed onto the table.
void PairIndexAppended(const std::vector<CuttingParameter>& records, PairIndex& index);

// True when the lists describe a table of this many records as it is now.
inline bool PairIndexCovers(const PairIndex& index, std::size_t table_size) {
  return index.usable && index.covered == table_size;
}

// Groups, or null when no record has the id(s).  Only meaningful while
// PairIndexCovers holds.
inline const GroupRef* FindMaterialGroup(const PairIndex& index, std::uint16_t material_id) {
  return index.materials.ids.Find(material_id);
}
inline const GroupRef* FindPairGroup(const PairIndex& index, std::uint16_t material_id,
                                     std::uint16_t machine_id) {
  return index.pairs.ids.Find(PairKey(material_id, machine_id));
}

// Visits the group's positions in table order.
template <typename Visit>
void ForEachPosition(const PositionGroups& kind, const GroupRef& ref, Visit&& visit) {
  if (kind.contiguous) {
    const std::uint32_t end = ref.first_position + ref.size;
    for (std::uint32_t pos = ref.first_position; pos < end; ++pos) visit(pos);
    return;
  }
  const PositionGroup& group = kind.groups[ref.group];
  if (kind.grouped.empty()) {
    const std::uint32_t end = ref.first_position + group.count;
    for (std::uint32_t pos = ref.first_position; pos < end; ++pos) visit(pos);
  } else {
    const std::uint32_t* run = kind.grouped.data() + group.start;
    for (std::uint32_t i = 0; i < group.count; ++i) visit(run[i]);
  }
  if (const std::vector<std::uint32_t>* more = kind.AppendedTo(group)) {
    for (std::uint32_t pos : *more) visit(pos);
  }
}

}  // namespace Sparlane

#endif  // SPARLANE_STORE_PAIR_INDEX_H_
