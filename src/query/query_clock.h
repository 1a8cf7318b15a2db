// The clock the timed queries read twice per call.  A system clock read
// costs as much as the rest of an exact lookup, so where the kernel itself
// keeps time by the processor's time-stamp counter, the queries read that
// counter directly, once it has been measured against the system clock over
// a span long enough to make the conversion exact to well under a
// microsecond per query.  Until then, and on every other system, they read
// the system's monotonic clock.
#ifndef SPARLANE_QUERY_QUERY_CLOCK_H_
#define SPARLANE_QUERY_QUERY_CLOCK_H_

#include <cstdint>

namespace Sparlane {

// When a query started, in whichever unit the clock counted then; a query
// is measured in one unit from start to end.
struct QueryStamp {
  std::uint64_t ticks = 0;
  std::int64_t nanos = 0;
  bool by_ticks = false;
};

class QueryClock {
 public:
  static QueryStamp Start();
  // Microseconds since the start: the nanoseconds as a signed 64-bit count,
  // converted to double and divided by 1000.  Never negative.
  static double MicrosSince(const QueryStamp& start);
  // Whether the queries now read the counter instead of the system clock.
  static bool CountsByTicks();
};

// One reading of the counter and the system clock taken close together:
// `ticks` lies between the counter before and after the clock reads.
struct ClockReading {
  std::uint64_t ticks = 0;
  std::int64_t nanos = 0;
  // Time since boot minus monotonic time: it grows only while the machine
  // sleeps, when the counter may run on, stop or start again from zero.
  std::int64_t asleep_nanos = 0;
  bool tight = false;  // the clock reads took few enough ticks to trust
};

// The conversion the clock adopts from two readings: nanoseconds per tick,
// or 0 when the readings cannot give one exactly enough (either loose, too
// little time between them, the machine asleep in between, or a rate no
// time-stamp counter runs at).
double NanosPerTick(const ClockReading& first, const ClockReading& later);

// Time the two readings must lie apart before the counter is trusted.
constexpr std::int64_t kTickCalibrationSpanNs = 50'000'000;
// More sleep than this between them (the two clocks' reads are not one
// instant) and they are not compared.
constexpr std::int64_t kTickCalibrationSleepNs = 1'000'000;

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_QUERY_CLOCK_H_
