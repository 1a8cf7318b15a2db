#include "query/query_clock.h"

#include <atomic>
#include <chrono>

#if defined(__x86_64__) && defined(__linux__)
#include <x86intrin.h>

#include <time.h>

#include <fstream>
#include <string>
#define SPARLANE_QUERY_CLOCK_TICKS 1
#endif

namespace Sparlane {

namespace {

// 0 until the counter is trusted; set once, never changed after.
std::atomic<double> g_nanos_per_tick{0.0};

std::int64_t SystemNanos() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

#ifdef SPARLANE_QUERY_CLOCK_TICKS

std::uint64_t Ticks() { return __rdtsc(); }

// A clock read that took longer than this many ticks was interrupted.
constexpr std::uint64_t kTightTicks = 4096;

// The kernel keeps time by the counter only after checking that it runs at
// one rate and in step on every processor: what a query needs to subtract
// two readings taken on different processors.
bool KernelKeepsTimeByTicks() {
  std::ifstream source("/sys/devices/system/clocksource/clocksource0/current_clocksource");
  std::string name;
  return static_cast<bool>(source >> name) && name == "tsc";
}

std::int64_t BootNanos() {
  timespec now{};
  ::clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

ClockReading ReadBoth() {
  ClockReading reading;
  for (int attempt = 0; attempt < 8 && !reading.tight; ++attempt) {
    const std::uint64_t before = Ticks();
    reading.nanos = SystemNanos();
    reading.asleep_nanos = BootNanos() - reading.nanos;
    const std::uint64_t after = Ticks();
    reading.ticks = before + (after - before) / 2;
    reading.tight = after >= before && after - before <= kTightTicks;
  }
  return reading;
}

// Holds the first reading until a later one, far enough on, gives the
// rate.  A query that finds another at it goes on without waiting.
class TickCalibration {
 public:
  void Offer(std::int64_t now_ns) {
    if (busy_.test_and_set(std::memory_order_acquire)) return;
    if (!first_.tight) {
      first_ = ReadBoth();
    } else if (now_ns - first_.nanos >= kTickCalibrationSpanNs) {
      const ClockReading later = ReadBoth();
      const double rate = NanosPerTick(first_, later);
      double unset = 0.0;
      if (rate > 0.0) {
        g_nanos_per_tick.compare_exchange_strong(unset, rate, std::memory_order_relaxed);
      } else {
        first_ = later;  // slept, or an odd pair: measure again from here
      }
    }
    busy_.clear(std::memory_order_release);
  }

 private:
  std::atomic_flag busy_ = ATOMIC_FLAG_INIT;
  ClockReading first_;
};

// Called by queries that read the system clock, after their end reading, so
// the calibration's own reads are never part of a query's time.
void CalibrateAfter(std::int64_t now_ns) {
  static const bool usable = KernelKeepsTimeByTicks();
  static TickCalibration calibration;
  if (usable) calibration.Offer(now_ns);
}

#else

std::uint64_t Ticks() { return 0; }
void CalibrateAfter(std::int64_t) {}

#endif

}  // namespace

double NanosPerTick(const ClockReading& first, const ClockReading& later) {
  if (!first.tight || !later.tight || later.ticks <= first.ticks) return 0.0;
  const std::int64_t span_ns = later.nanos - first.nanos;
  if (span_ns < kTickCalibrationSpanNs) return 0.0;
  const std::int64_t slept_ns = later.asleep_nanos - first.asleep_nanos;
  if (slept_ns > kTickCalibrationSleepNs || slept_ns < -kTickCalibrationSleepNs) return 0.0;
  const double rate =
      static_cast<double>(span_ns) / static_cast<double>(later.ticks - first.ticks);
  // Time-stamp counters run between some hundred megahertz and a few
  // gigahertz; outside that the readings are not what they seem.
  return rate >= 0.05 && rate <= 20.0 ? rate : 0.0;
}

QueryStamp QueryClock::Start() {
  QueryStamp stamp;
  if (g_nanos_per_tick.load(std::memory_order_relaxed) > 0.0) {
    stamp.ticks = Ticks();
    stamp.by_ticks = true;
  } else {
    stamp.nanos = SystemNanos();
  }
  return stamp;
}

double QueryClock::MicrosSince(const QueryStamp& start) {
  std::int64_t elapsed_ns = 0;
  if (start.by_ticks) {
    // Unordered reads may land a few cycles early or late; a query's time
    // is never below zero.
    const auto ticks = static_cast<std::int64_t>(Ticks() - start.ticks);
    const double rate = g_nanos_per_tick.load(std::memory_order_relaxed);
    if (ticks > 0) elapsed_ns = static_cast<std::int64_t>(static_cast<double>(ticks) * rate);
  } else {
    const std::int64_t end_ns = SystemNanos();
    elapsed_ns = end_ns - start.nanos;
    CalibrateAfter(end_ns);
  }
  return static_cast<double>(elapsed_ns) / 1000.0;
}

bool QueryClock::CountsByTicks() { return g_nanos_per_tick.load(std::memory_order_relaxed) > 0.0; }

}  // namespace Sparlane
