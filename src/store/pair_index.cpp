#include "store/pair_index.h"

#include <algorithm>
#include <limits>

namespace Sparlane {

namespace {

constexpr std::size_t kCountingSortFrom = 65536;

RecordKey KeyOf(const CuttingParameter& r) {
  return RecordKey{r.material_id, r.machine_model_id, r.thickness_mm, r.cut_speed_mm_min};
}

std::uint32_t MaterialOf(const RecordKey& k) { return k.material_id; }
std::uint32_t PairOf(const RecordKey& k) { return PairKey(k.material_id, k.machine_model_id); }

PositionGroup& AddGroup(PositionGroups& kind, std::uint32_t id) {
  kind.ids.Insert(id, static_cast<std::uint32_t>(kind.groups.size()));
  kind.groups.emplace_back();
  return kind.groups.back();
}

// A table already grouped by id: each run of equal ids is one group, and
// the positions need no array of their own.
template <typename IdOf>
void GroupRuns(const std::vector<RecordKey>& keys, IdOf id_of, PositionGroups& kind) {
  const std::size_t n = keys.size();
  std::size_t begin = 0;
  while (begin < n) {
    const std::uint32_t id = id_of(keys[begin]);
    std::size_t end = begin + 1;
    while (end < n && id_of(keys[end]) == id) ++end;
    PositionGroup& g = AddGroup(kind, id);
    g.start = static_cast<std::uint32_t>(begin);
    g.count = static_cast<std::uint32_t>(end - begin);
    g.first_position = static_cast<std::uint32_t>(begin);
    begin = end;
  }
}

// Sorts (id << 32 | position) items.  Large tables take two stable 16-bit
// counting passes over the id; the order is the same as a plain sort's.
void SortItems(std::vector<std::uint64_t>& items, std::uint32_t largest_id) {
  if (items.size() < kCountingSortFrom) {
    std::sort(items.begin(), items.end());
    return;
  }
  std::vector<std::uint64_t> scratch(items.size());
  for (int shift : {32, 48}) {
    if (shift == 48 && largest_id <= 0xFFFF) break;  // no high digit to sort by
    std::vector<std::uint32_t> next(65537, 0);
    for (std::uint64_t item : items) ++next[((item >> shift) & 0xFFFF) + 1];
    for (std::size_t d = 0; d < 65536; ++d) next[d + 1] += next[d];
    for (std::uint64_t item : items) scratch[next[(item >> shift) & 0xFFFF]++] = item;
    items.swap(scratch);
  }
}

// Any other table: positions sorted by id, ascending within an id.
template <typename IdOf>
void GroupSorted(const std::vector<RecordKey>& keys, IdOf id_of, PositionGroups& kind) {
  const std::size_t n = keys.size();
  std::vector<std::uint64_t> items(n);
  std::uint32_t largest = 0;
  for (std::size_t pos = 0; pos < n; ++pos) {
    const std::uint32_t id = id_of(keys[pos]);
    if (id > largest) largest = id;
    items[pos] = (static_cast<std::uint64_t>(id) << 32) | pos;
  }
  SortItems(items, largest);
  kind.grouped.resize(n);
  std::size_t begin = 0;
  while (begin < n) {
    const std::uint32_t id = static_cast<std::uint32_t>(items[begin] >> 32);
    std::size_t end = begin;
    for (; end < n && static_cast<std::uint32_t>(items[end] >> 32) == id; ++end) {
      kind.grouped[end] = static_cast<std::uint32_t>(items[end]);
    }
    PositionGroup& g = AddGroup(kind, id);
    g.start = static_cast<std::uint32_t>(begin);
    g.count = static_cast<std::uint32_t>(end - begin);
    g.first_position = kind.grouped[begin];
    begin = end;
  }
}

template <typename IdOf>
void BuildGroups(const std::vector<RecordKey>& keys, IdOf id_of, bool in_order,
                 PositionGroups& kind) {
  if (in_order) {
    GroupRuns(keys, id_of, kind);
  } else {
    GroupSorted(keys, id_of, kind);
  }
}

void Append(PositionGroups& kind, std::uint32_t id, std::uint32_t pos) {
  const std::uint32_t index = kind.ids.Find(id);
  PositionGroup& g = index == FlatIdMap::kAbsent ? AddGroup(kind, id) : kind.groups[index];
  if (g.size() == 0) g.first_position = pos;
  g.appended.push_back(pos);
}

const PositionGroup* Find(const PositionGroups& kind, std::uint32_t id) {
  const std::uint32_t index = kind.ids.Find(id);
  return index == FlatIdMap::kAbsent ? nullptr : &kind.groups[index];
}

}  // namespace

void RebuildPairIndex(const std::vector<CuttingParameter>& records, PairIndex& index) {
  std::vector<RecordKey> keys = std::move(index.keys);  // reuse its memory
  keys.clear();
  index = PairIndex();
  // Positions are held in 32 bits; a larger table is simply scanned.
  if (records.size() >= std::numeric_limits<std::uint32_t>::max()) {
    index.usable = false;
    return;
  }
  keys.reserve(records.size());
  bool material_ordered = true;
  bool pair_ordered = true;
  std::uint32_t previous_pair = 0;
  for (const CuttingParameter& r : records) {
    const RecordKey k = KeyOf(r);
    const std::uint32_t pair = PairOf(k);
    material_ordered = material_ordered && (previous_pair >> 16) <= k.material_id;
    pair_ordered = pair_ordered && previous_pair <= pair;
    previous_pair = pair;
    keys.push_back(k);
  }
  index.keys = std::move(keys);
  BuildGroups(index.keys, MaterialOf, material_ordered, index.materials);
  BuildGroups(index.keys, PairOf, pair_ordered, index.pairs);
  index.pair_ordered = pair_ordered;
  index.covered = records.size();
}

void PairIndexAppended(const std::vector<CuttingParameter>& records, PairIndex& index) {
  const std::size_t size = records.size();
  if (!index.usable || size == 0 || size - 1 != index.covered ||
      size >= std::numeric_limits<std::uint32_t>::max()) {
    index.usable = false;
    return;
  }
  const auto pos = static_cast<std::uint32_t>(size - 1);
  const RecordKey k = KeyOf(records[pos]);
  if (pos > 0 && PairOf(k) < PairOf(index.keys.back())) index.pair_ordered = false;
  index.keys.push_back(k);
  Append(index.materials, MaterialOf(k), pos);
  Append(index.pairs, PairOf(k), pos);
  index.covered = size;
}

const PositionGroup* FindMaterialGroup(const PairIndex& index, std::uint16_t material_id) {
  return Find(index.materials, material_id);
}

const PositionGroup* FindPairGroup(const PairIndex& index, std::uint16_t material_id,
                                   std::uint16_t machine_id) {
  return Find(index.pairs, PairKey(material_id, machine_id));
}

}  // namespace Sparlane
