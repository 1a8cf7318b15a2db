// The check every record passes before it enters the table.
#ifndef SPARLANE_STORE_RECORD_CHECK_H_
#define SPARLANE_STORE_RECORD_CHECK_H_

#include "store/database_impl.h"

namespace Sparlane {

// Success, or InvalidParameter with the first failing test's message set.
ErrorCode CheckRecord(DatabaseImpl& impl, const CuttingParameter& p);

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_CHECK_H_
