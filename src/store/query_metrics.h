// Lock-free counters of the timed queries.  The store owns them; the
// queries count themselves through query/timed_query.h.
#ifndef SPARLANE_STORE_QUERY_METRICS_H_
#define SPARLANE_STORE_QUERY_METRICS_H_

#include <atomic>
#include <cstdint>

#include "sparlane/results.h"

namespace Sparlane {

// Counting a query does not change the database, so const queries record
// through a const reference: the atomics are mutable.
struct QueryMetrics {
  mutable std::atomic<std::uint64_t> query_count{0};
  mutable std::atomic<std::uint64_t> found_count{0};
  mutable std::atomic<std::uint64_t> not_found_count{0};
  mutable std::atomic<double> total_time_us{0.0};
  mutable std::atomic<double> max_time_us{0.0};
  mutable std::atomic<double> min_time_us{1.0e9};

  // Adds one query with atomic adds and compare-and-swap loops; never blocks.
  void Record(double elapsed_us, bool found) const;
  // Back to the initial values, counter by counter.
  void Reset();
  // Counter by counter, not one snapshot.
  PerformanceMetrics Read() const;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_QUERY_METRICS_H_
