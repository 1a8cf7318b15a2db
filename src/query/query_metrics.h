// Lock-free counters of the timed queries.
#ifndef SPARLANE_QUERY_QUERY_METRICS_H_
#define SPARLANE_QUERY_QUERY_METRICS_H_

#include <atomic>
#include <cstdint>

#include "sparlane/sparlane.h"

namespace Sparlane {

struct QueryMetrics {
  std::atomic<std::uint64_t> query_count{0};
  std::atomic<std::uint64_t> found_count{0};
  std::atomic<std::uint64_t> not_found_count{0};
  std::atomic<double> total_time_us{0.0};
  std::atomic<double> max_time_us{0.0};
  std::atomic<double> min_time_us{1.0e9};

  // Adds one query; never blocks.
  void Record(double elapsed_us, bool found);
  // Back to the initial values, counter by counter.
  void Reset();
  PerformanceMetrics Read() const;
};

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_QUERY_METRICS_H_
