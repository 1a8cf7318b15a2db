#include "query/record_search.h"

namespace Sparlane {

TableSpan FindPairSpan(const Store& store, std::uint16_t material_id, std::uint16_t machine_id) {
  const PairIndex* index = store.current_pair_index();
  if (index == nullptr) return BisectPairSpan(store.records(), material_id, machine_id);
  if (!index->pair_ordered) return BisectPairSpan(store.records(), material_id, machine_id);
  // In pair order the bisection ends at the run's edges, or, with no run,
  // at one position with an empty span that nobody reads.
  const GroupRef* group = FindPairGroup(*index, material_id, machine_id);
  if (group == nullptr) return TableSpan{};
  return TableSpan{group->first_position, group->size};
}

}  // namespace Sparlane
