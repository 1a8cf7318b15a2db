// Lookup of a torch consumable set held by the store.
#include "store/store.h"

namespace Sparlane {

std::optional<ConsumableSet> Database::GetConsumableSet(unsigned short set_id) const {
  // The map exists from construction, so this works loaded or not.
  const ConsumableSet* found = impl_->FindConsumableSet(set_id);
  if (found == nullptr) return std::nullopt;
  return *found;
}

}  // namespace Sparlane
