// The timing, counting and logging around the three timed queries
// (FindExact, FindOptimal, Interpolate), written once.
#ifndef SPARLANE_QUERY_TIMED_QUERY_H_
#define SPARLANE_QUERY_TIMED_QUERY_H_

#include <chrono>
#include <cstdint>

#include "query/query_log.h"
#include "store/store.h"

namespace Sparlane {

inline std::int64_t MonotonicNanos() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

inline double ElapsedMicros(std::int64_t start_ns, std::int64_t end_ns) {
  return static_cast<double>(end_ns - start_ns) / 1000.0;
}

// Started once a query's argument checks have passed.  A query that returns
// before Finish (an unknown name) is neither counted nor logged.
class QueryTimer {
 public:
  explicit QueryTimer(const Store& store) : store_(store), start_ns_(MonotonicNanos()) {}

  // Counts the query as found or not and, when logging is on, writes its
  // line; detail() builds the text only then.
  template <typename Detail>
  void Finish(const char* operation, bool found, Detail&& detail) const {
    const double elapsed_us = ElapsedMicros(start_ns_, MonotonicNanos());
    store_.metrics().Record(elapsed_us, found);
    if (store_.query_logging()) LogQuery(operation, detail(), elapsed_us);
  }

 private:
  const Store& store_;
  const std::int64_t start_ns_;
};

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_TIMED_QUERY_H_
