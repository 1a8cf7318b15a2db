// The Database's logging switch and metrics accessors.
#include "store/store.h"

namespace Sparlane {

void Database::SetQueryLogging(bool enabled) { impl_->set_query_logging(enabled); }

PerformanceMetrics Database::GetPerformanceMetrics() const { return impl_->metrics().Read(); }

void Database::ResetPerformanceMetrics() { impl_->metrics().Reset(); }

}  // namespace Sparlane
