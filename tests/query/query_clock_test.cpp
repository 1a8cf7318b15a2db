// The queries' clock: the conversion it adopts from two readings, and what
// it measures before and after it starts counting ticks.
#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "query/query_clock.h"

namespace {

using Sparlane::ClockReading;
using Sparlane::kTickCalibrationSleepNs;
using Sparlane::kTickCalibrationSpanNs;
using Sparlane::NanosPerTick;
using Sparlane::QueryClock;

constexpr ClockReading kFirst{1'000, 7'000, 30'000, true};

ClockReading Later(std::uint64_t ticks_after, std::int64_t nanos_after, bool tight = true) {
  return ClockReading{kFirst.ticks + ticks_after, kFirst.nanos + nanos_after,
                      kFirst.asleep_nanos, tight};
}

TEST(NanosPerTick, IsTheRatioOfTheTwoSpans) {
  EXPECT_DOUBLE_EQ(NanosPerTick(kFirst, Later(150'000'000, kTickCalibrationSpanNs)), 1.0 / 3.0);
  EXPECT_DOUBLE_EQ(NanosPerTick(kFirst, Later(50'000'000, 2 * kTickCalibrationSpanNs)), 2.0);
}

TEST(NanosPerTick, RefusesReadingsCloserThanTheSpan) {
  EXPECT_EQ(NanosPerTick(kFirst, Later(150'000'000, kTickCalibrationSpanNs - 1)), 0.0);
}

TEST(NanosPerTick, RefusesALooseReading) {
  ClockReading loose_first = kFirst;
  loose_first.tight = false;
  EXPECT_EQ(NanosPerTick(loose_first, Later(150'000'000, kTickCalibrationSpanNs)), 0.0);
  EXPECT_EQ(NanosPerTick(kFirst, Later(150'000'000, kTickCalibrationSpanNs, false)), 0.0);
}

TEST(NanosPerTick, RefusesACounterThatDidNotAdvance) {
  EXPECT_EQ(NanosPerTick(kFirst, Later(0, kTickCalibrationSpanNs)), 0.0);
  ClockReading behind = Later(0, kTickCalibrationSpanNs);
  behind.ticks = kFirst.ticks - 1;
  EXPECT_EQ(NanosPerTick(kFirst, behind), 0.0);
}

TEST(NanosPerTick, RefusesReadingsWithASleepBetweenThem) {
  ClockReading after_sleep = Later(150'000'000, kTickCalibrationSpanNs);
  after_sleep.asleep_nanos += kTickCalibrationSleepNs + 1;
  EXPECT_EQ(NanosPerTick(kFirst, after_sleep), 0.0);
  after_sleep.asleep_nanos = kFirst.asleep_nanos - kTickCalibrationSleepNs - 1;
  EXPECT_EQ(NanosPerTick(kFirst, after_sleep), 0.0);
  // The two clocks are read one after the other: a difference within the
  // allowance is no sleep.
  ClockReading awake = Later(150'000'000, kTickCalibrationSpanNs);
  awake.asleep_nanos += kTickCalibrationSleepNs;
  EXPECT_DOUBLE_EQ(NanosPerTick(kFirst, awake), 1.0 / 3.0);
  awake.asleep_nanos = kFirst.asleep_nanos - kTickCalibrationSleepNs;
  EXPECT_DOUBLE_EQ(NanosPerTick(kFirst, awake), 1.0 / 3.0);
}

TEST(NanosPerTick, RefusesARateNoCounterRunsAt) {
  // 50 ms in 100,000 ticks is 2 MHz; in 10^12 ticks, 20 THz.
  EXPECT_EQ(NanosPerTick(kFirst, Later(100'000, kTickCalibrationSpanNs)), 0.0);
  EXPECT_EQ(NanosPerTick(kFirst, Later(1'000'000'000'000, kTickCalibrationSpanNs)), 0.0);
}

std::int64_t SteadyNanos() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

// What the query clock measured over a sleep lies within what the steady
// clock saw from just after its start to just before its end, and from
// just before its start to just after its end (a thousandth of slack for
// the conversion).
void ExpectMeasuresLikeTheSteadyClock() {
  const std::int64_t before_start = SteadyNanos();
  const auto stamp = QueryClock::Start();
  const std::int64_t after_start = SteadyNanos();
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  const std::int64_t before_end = SteadyNanos();
  const double measured_us = QueryClock::MicrosSince(stamp);
  const std::int64_t after_end = SteadyNanos();
  const double shortest_us = static_cast<double>(before_end - after_start) / 1000.0;
  const double longest_us = static_cast<double>(after_end - before_start) / 1000.0;
  EXPECT_GE(measured_us, shortest_us * 0.999);
  EXPECT_LE(measured_us, longest_us * 1.001);
}

// Queries on several threads at once, long enough for the clock to be
// measured against the system clock while they run.
void QueryOnThreadsFor(std::int64_t nanos) {
  std::atomic<int> negative{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&] {
      const std::int64_t end = SteadyNanos() + nanos;
      while (SteadyNanos() < end) {
        if (QueryClock::MicrosSince(QueryClock::Start()) < 0.0) negative.fetch_add(1);
      }
    });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(negative.load(), 0);
}

bool KernelKeepsTimeByTicks() {
#if defined(__x86_64__) && defined(__linux__)
  std::ifstream source("/sys/devices/system/clocksource/clocksource0/current_clocksource");
  std::string name;
  return static_cast<bool>(source >> name) && name == "tsc";
#else
  return false;
#endif
}

TEST(QueryClock, MeasuresLikeTheSteadyClockBeforeAndAfterCountingTicks) {
  ExpectMeasuresLikeTheSteadyClock();
  QueryOnThreadsFor(2 * kTickCalibrationSpanNs);
  // A reading interrupted on a busy machine starts the measurement again.
  const bool counter_usable = KernelKeepsTimeByTicks();
  const std::int64_t give_up = SteadyNanos() + 40 * kTickCalibrationSpanNs;
  while (counter_usable && !QueryClock::CountsByTicks() && SteadyNanos() < give_up) {
    QueryClock::MicrosSince(QueryClock::Start());
  }
  EXPECT_EQ(QueryClock::CountsByTicks(), counter_usable);
  ExpectMeasuresLikeTheSteadyClock();
  QueryOnThreadsFor(kTickCalibrationSpanNs / 10);
}

}  // namespace
