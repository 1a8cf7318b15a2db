#include "store/pair_index.h"

#include <limits>

namespace Sparlane {

namespace {

std::uint32_t PairOf(const CuttingParameter& r) { return PairKey(r.material_id, r.machine_model_id); }

void Append(PositionGroups& kind, std::uint32_t id, std::uint32_t pos) {
  GroupRef* ref = kind.ids.Find(id);
  if (ref == nullptr) {
    AddGroup(kind, id, 0, 0, pos);
    ref = kind.ids.Find(id);
  }
  PositionGroup& g = kind.groups[ref->group];
  if (g.appended == 0) {
    kind.appended.emplace_back();
    g.appended = static_cast<std::uint32_t>(kind.appended.size());
  }
  kind.appended[g.appended - 1].push_back(pos);
  ++ref->size;
  ref->entry_known = false;  // the run it was found for has grown
  kind.contiguous = false;
}

}  // namespace

GroupRef& AddGroup(PositionGroups& kind, std::uint32_t id, std::uint32_t start,
                   std::uint32_t count, std::uint32_t first_position) {
  kind.ids.Insert(id, GroupRef{static_cast<std::uint32_t>(kind.groups.size()), first_position,
                               count, 0, 0, false});
  kind.groups.push_back(PositionGroup{start, count, 0});
  if (!kind.grouped.empty() || start != first_position) kind.contiguous = false;
  return *kind.ids.Find(id);
}

void PairIndexAppended(const std::vector<CuttingParameter>& records, PairIndex& index) {
  const std::size_t size = records.size();
  if (!index.usable || size == 0 || size - 1 != index.covered ||
      size >= std::numeric_limits<std::uint32_t>::max()) {
    index.usable = false;
    return;
  }
  const auto pos = static_cast<std::uint32_t>(size - 1);
  const CuttingParameter& r = records[pos];
  if (pos > 0 && PairOf(r) < PairOf(records[pos - 1])) index.pair_ordered = false;
  index.thickness.push_back(r.thickness_mm);
  Append(index.materials, r.material_id, pos);
  Append(index.pairs, PairOf(r), pos);
  index.covered = size;
}

}  // namespace Sparlane
