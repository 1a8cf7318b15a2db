// The query log switch and the performance counters.
#include "handle.h"
#include "mirror.h"

extern "C" {

void sparlane_db_set_query_logging(sparlane_db_t* db, int enabled) {
  if (db != nullptr) db->db.SetQueryLogging(enabled != 0);
}

int sparlane_db_performance_metrics(const sparlane_db_t* db, sparlane_performance_metrics_t* out) {
  if (db == nullptr) return SPARLANE_INVALID_PARAMETER;
  return sparlane_c::Calculate(out, [db] { return db->db.GetPerformanceMetrics(); });
}

void sparlane_db_reset_performance_metrics(sparlane_db_t* db) {
  if (db != nullptr) db->db.ResetPerformanceMetrics();
}

}  // extern "C"
