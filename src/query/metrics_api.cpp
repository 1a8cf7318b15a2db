// The Database's logging switch and metrics accessors.
#include "store/database_impl.h"

namespace Sparlane {

void Database::SetQueryLogging(bool enabled) { impl_->query_logging = enabled; }

PerformanceMetrics Database::GetPerformanceMetrics() const { return impl_->metrics.Read(); }

void Database::ResetPerformanceMetrics() { impl_->metrics.Reset(); }

}  // namespace Sparlane
