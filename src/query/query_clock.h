// The monotonic clock the timed queries read.
#ifndef SPARLANE_QUERY_QUERY_CLOCK_H_
#define SPARLANE_QUERY_QUERY_CLOCK_H_

#include <chrono>
#include <cstdint>

namespace Sparlane {

inline std::int64_t MonotonicNanos() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

inline double ElapsedMicros(std::int64_t start_ns, std::int64_t end_ns) {
  return static_cast<double>(end_ns - start_ns) / 1000.0;
}

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_QUERY_CLOCK_H_
