#include "query/pair_index.h"

#include <algorithm>
#include <limits>

#include "store/database_impl.h"

namespace Sparlane {

namespace {

RecordKey KeyOf(const CuttingParameter& r) {
  return RecordKey{r.material_id, r.machine_model_id, r.thickness_mm, r.cut_speed_mm_min};
}

// Stable counting sort of `order` by a 16-bit id of each position's record.
// Returns the positions grouped by id; within an id they keep their order.
// starts[id] is where id's group begins; the counts cover ids up to the
// largest present, so small tables need small arrays.
template <typename IdOf>
std::vector<std::uint32_t> StableGroupBy(const std::vector<std::uint32_t>& order, IdOf id_of,
                                         std::vector<std::uint32_t>& starts) {
  std::size_t id_limit = 0;
  for (std::uint32_t pos : order) id_limit = std::max<std::size_t>(id_limit, id_of(pos) + 1u);
  starts.assign(id_limit + 1, 0);
  for (std::uint32_t pos : order) ++starts[id_of(pos) + 1u];
  for (std::size_t id = 0; id < id_limit; ++id) starts[id + 1] += starts[id];
  std::vector<std::uint32_t> next(starts.begin(), starts.end() - 1);
  std::vector<std::uint32_t> grouped(order.size());
  for (std::uint32_t pos : order) grouped[next[id_of(pos)]++] = pos;
  return grouped;
}

void BuildGroups(const std::vector<CuttingParameter>& records, PairIndex& index) {
  const std::size_t n = records.size();
  std::vector<std::uint32_t> ascending(n);
  for (std::size_t pos = 0; pos < n; ++pos) ascending[pos] = static_cast<std::uint32_t>(pos);

  auto material_of = [&](std::uint32_t pos) { return records[pos].material_id; };
  auto machine_of = [&](std::uint32_t pos) { return records[pos].machine_model_id; };

  std::vector<std::uint32_t> starts;
  index.material_positions = StableGroupBy(ascending, material_of, starts);
  for (std::size_t id = 0; id + 1 < starts.size(); ++id) {
    const std::uint32_t count = starts[id + 1] - starts[id];
    if (count == 0) continue;
    PositionGroup& g = index.materials[static_cast<std::uint16_t>(id)];
    g.start = starts[id];
    g.count = count;
    g.first_position = index.material_positions[g.start];
  }

  // By machine, then stably by material: grouped by (material, machine) with
  // positions still ascending inside each pair.
  std::vector<std::uint32_t> by_machine = StableGroupBy(ascending, machine_of, starts);
  ascending = std::vector<std::uint32_t>();
  index.pair_positions = StableGroupBy(by_machine, material_of, starts);

  const std::vector<std::uint32_t>& grouped = index.pair_positions;
  std::size_t i = 0;
  while (i < n) {
    const CuttingParameter& r = records[grouped[i]];
    const std::uint32_t key = PairKey(r.material_id, r.machine_model_id);
    std::size_t end = i + 1;
    while (end < n && PairKey(records[grouped[end]].material_id,
                              records[grouped[end]].machine_model_id) == key) {
      ++end;
    }
    PositionGroup& g = index.pairs[key];
    g.start = static_cast<std::uint32_t>(i);
    g.count = static_cast<std::uint32_t>(end - i);
    g.first_position = grouped[i];
    i = end;
  }
}

bool TableInPairOrder(const std::vector<CuttingParameter>& records) {
  for (std::size_t pos = 1; pos < records.size(); ++pos) {
    const CuttingParameter& a = records[pos - 1];
    const CuttingParameter& b = records[pos];
    if (PairKey(b.material_id, b.machine_model_id) < PairKey(a.material_id, a.machine_model_id)) {
      return false;
    }
  }
  return true;
}

}  // namespace

void ClearPairIndex(DatabaseImpl& impl) { impl.pair_index = PairIndex(); }

void RebuildPairIndex(DatabaseImpl& impl) {
  PairIndex& index = impl.pair_index;
  index = PairIndex();
  const std::vector<CuttingParameter>& records = impl.parameters;
  // Positions are held in 32 bits; a larger table is simply scanned.
  if (records.size() > std::numeric_limits<std::uint32_t>::max()) {
    index.usable = false;
    return;
  }
  BuildGroups(records, index);
  index.keys.reserve(records.size());
  for (const CuttingParameter& r : records) index.keys.push_back(KeyOf(r));
  index.covered = records.size();
  index.pair_ordered = TableInPairOrder(records);
  if (!records.empty()) {
    const CuttingParameter& last = records.back();
    index.last_pair_key = PairKey(last.material_id, last.machine_model_id);
  }
}

void PairIndexAppended(DatabaseImpl& impl) {
  PairIndex& index = impl.pair_index;
  const std::size_t size = impl.parameters.size();
  if (!index.usable || size == 0 || size - 1 != index.covered ||
      size - 1 >= std::numeric_limits<std::uint32_t>::max()) {
    index.usable = false;
    return;
  }
  const auto pos = static_cast<std::uint32_t>(size - 1);
  const CuttingParameter& r = impl.parameters[pos];
  const std::uint32_t key = PairKey(r.material_id, r.machine_model_id);
  index.keys.push_back(KeyOf(r));
  for (PositionGroup* g : {&index.materials[r.material_id], &index.pairs[key]}) {
    if (g->size() == 0) g->first_position = pos;
    g->appended.push_back(pos);
  }
  if (pos > 0 && key < index.last_pair_key) index.pair_ordered = false;
  index.last_pair_key = key;
  index.covered = size;
}

bool PairIndexCurrent(const DatabaseImpl& impl) {
  return impl.pair_index.usable && impl.pair_index.covered == impl.parameters.size();
}

const PositionGroup* FindMaterialGroup(const PairIndex& index, std::uint16_t material_id) {
  auto it = index.materials.find(material_id);
  return it == index.materials.end() ? nullptr : &it->second;
}

const PositionGroup* FindPairGroup(const PairIndex& index, std::uint16_t material_id,
                                   std::uint16_t machine_id) {
  auto it = index.pairs.find(PairKey(material_id, machine_id));
  return it == index.pairs.end() ? nullptr : &it->second;
}

}  // namespace Sparlane
