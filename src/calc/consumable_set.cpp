// Lookup of a torch consumable set held by the store.
#include "store/database_impl.h"

namespace Sparlane {

std::optional<ConsumableSet> Database::GetConsumableSet(unsigned short set_id) const {
  // The map exists from construction, so this works loaded or not.
  const auto found = impl_->consumable_sets.find(set_id);
  if (found == impl_->consumable_sets.end()) return std::nullopt;
  return found->second;
}

}  // namespace Sparlane
