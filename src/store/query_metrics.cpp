#include "store/query_metrics.h"

namespace Sparlane {

namespace {

// Relaxed order is enough: each counter is its own total, and nobody reads
// them as one snapshot.
constexpr auto kRelaxed = std::memory_order_relaxed;

void AddTo(std::atomic<double>& total, double value) {
  double seen = total.load(kRelaxed);
  while (!total.compare_exchange_weak(seen, seen + value, kRelaxed)) {
  }
}

void RaiseTo(std::atomic<double>& largest, double value) {
  double seen = largest.load(kRelaxed);
  while (value > seen && !largest.compare_exchange_weak(seen, value, kRelaxed)) {
  }
}

void LowerTo(std::atomic<double>& smallest, double value) {
  double seen = smallest.load(kRelaxed);
  while (seen > value && !smallest.compare_exchange_weak(seen, value, kRelaxed)) {
  }
}

}  // namespace

static_assert(std::atomic<double>::is_always_lock_free, "double counters must not lock");
static_assert(std::atomic<std::uint64_t>::is_always_lock_free, "counters must not lock");

void QueryMetrics::Record(double elapsed_us, bool found) const {
  query_count.fetch_add(1, kRelaxed);
  (found ? found_count : not_found_count).fetch_add(1, kRelaxed);
  AddTo(total_time_us, elapsed_us);
  RaiseTo(max_time_us, elapsed_us);
  LowerTo(min_time_us, elapsed_us);
}

void QueryMetrics::Reset() {
  query_count.store(0, kRelaxed);
  found_count.store(0, kRelaxed);
  not_found_count.store(0, kRelaxed);
  total_time_us.store(0.0, kRelaxed);
  max_time_us.store(0.0, kRelaxed);
  min_time_us.store(1.0e9, kRelaxed);
}

PerformanceMetrics QueryMetrics::Read() const {
  PerformanceMetrics m{};
  m.total_queries = query_count.load(kRelaxed);
  m.queries_found = found_count.load(kRelaxed);
  m.queries_not_found = not_found_count.load(kRelaxed);
  const double total = total_time_us.load(kRelaxed);
  m.avg_query_time_us = m.total_queries == 0 ? 0.0 : total / static_cast<double>(m.total_queries);
  m.max_query_time_us = max_time_us.load(kRelaxed);
  m.min_query_time_us = min_time_us.load(kRelaxed);
  return m;
}

}  // namespace Sparlane
