// Import from an SQLite database is a build option; this build has it off.
#include "store/store.h"

namespace Sparlane {

ErrorCode Database::ImportFromSQLite(const std::string& /*path*/) {
  return impl_->Fail(ErrorCode::NotLoaded,
                     "SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON");
}

}  // namespace Sparlane
