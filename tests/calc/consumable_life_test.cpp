#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "sparlane/sparlane.h"

using Sparlane::ConsumableLife;
using Sparlane::ConsumableUsage;
using Sparlane::Database;

namespace {

ConsumableUsage Usage(std::uint32_t starts, float arc_hours, float s1 = 1.0f, float s2 = 0.0f,
                      float s3 = 0.0f, float s4 = 0.0f) {
  ConsumableUsage usage{};
  usage.usage_id = 0xDEADBEEF;  // never read
  usage.starts = starts;
  usage.arc_hours = arc_hours;
  usage.stress_factor_1 = s1;
  usage.stress_factor_2 = s2;
  usage.stress_factor_3 = s3;
  usage.stress_factor_4 = s4;
  return usage;
}

// Remaining percentage of one part, as the formula is written.
float Percent(float arc_hours, float starts, float hours_limit, float starts_limit) {
  const float used = std::max(arc_hours / hours_limit * 100.0f, starts / starts_limit * 100.0f);
  return std::max(std::min(100.0f - used, 100.0f), 0.0f);
}

}  // namespace

TEST(ConsumableLife, FreshPartsAtUnitLoadAndFactorOne) {
  // 45 A gives F = 1.0; stress factor 1 alone gives W = 1.0.
  const auto life = Database::EstimateConsumableLife(Usage(0, 0.0f), 45);
  EXPECT_EQ(life.primary_life_pct, 100.0f);
  EXPECT_EQ(life.secondary_life_pct, 100.0f);
  EXPECT_EQ(life.tertiary_life_pct, 100.0f);
  EXPECT_EQ(life.primary_starts_left, 600u);
  EXPECT_EQ(life.secondary_starts_left, 900u);
  EXPECT_EQ(life.primary_hours_left, 3.0f);
  EXPECT_EQ(life.secondary_hours_left, 6.0f);
  EXPECT_FALSE(life.primary_replace_soon);
  EXPECT_FALSE(life.secondary_replace_soon);
  EXPECT_FALSE(life.tertiary_replace_soon);
  EXPECT_FALSE(life.life_flag_reserved);
}

TEST(ConsumableLife, EveryFigureFollowsTheWrittenOrder) {
  const auto usage = Usage(137, 1.7f, 0.4f, 0.9f, 0.3f, 0.7f);
  const auto life = Database::EstimateConsumableLife(usage, 130);
  const float F = std::min(1.5f, 45.0f / static_cast<float>(130));
  const float W = 0.9f * 1.3f + 0.4f + 0.3f * 1.5f + 0.7f * 1.2f;
  const float starts = static_cast<float>(137u);
  const float h1 = F * 3.0f / W, s1 = F * 600.0f / W;
  const float h2 = F * 6.0f / W, s2 = F * 900.0f / W;
  const float h3 = F * 9.0f / W, s3 = F * 1200.0f / W;
  EXPECT_EQ(life.primary_life_pct, Percent(1.7f, starts, h1, s1));
  EXPECT_EQ(life.secondary_life_pct, Percent(1.7f, starts, h2, s2));
  EXPECT_EQ(life.tertiary_life_pct, Percent(1.7f, starts, h3, s3));
  EXPECT_EQ(life.primary_starts_left, static_cast<std::uint32_t>(std::max(s1 - starts, 0.0f)));
  EXPECT_EQ(life.secondary_starts_left, static_cast<std::uint32_t>(std::max(s2 - starts, 0.0f)));
  EXPECT_EQ(life.primary_hours_left, std::max(h1 - 1.7f, 0.0f));
  EXPECT_EQ(life.secondary_hours_left, std::max(h2 - 1.7f, 0.0f));
}

TEST(ConsumableLife, ZeroCurrentUsesFactorOne) {
  const auto zero = Database::EstimateConsumableLife(Usage(0, 0.0f), 0);
  EXPECT_EQ(zero.primary_hours_left, 1.0f * 3.0f / 1.0f);
  EXPECT_EQ(zero.primary_starts_left, 600u);
}

TEST(ConsumableLife, CurrentsAtOrBelowThirtyAmpsUseFactorOneAndAHalf) {
  for (unsigned short amps : {1, 10, 29, 30}) {
    const auto life = Database::EstimateConsumableLife(Usage(0, 0.0f), amps);
    EXPECT_EQ(life.primary_hours_left, 1.5f * 3.0f / 1.0f) << amps;
    EXPECT_EQ(life.secondary_hours_left, 1.5f * 6.0f / 1.0f) << amps;
    EXPECT_EQ(life.primary_starts_left, 900u) << amps;
    EXPECT_EQ(life.secondary_starts_left, 1350u) << amps;
  }
}

TEST(ConsumableLife, HigherCurrentShortensLife) {
  const auto at45 = Database::EstimateConsumableLife(Usage(0, 0.0f), 45);
  const auto at90 = Database::EstimateConsumableLife(Usage(0, 0.0f), 90);
  const auto at31 = Database::EstimateConsumableLife(Usage(0, 0.0f), 31);
  EXPECT_EQ(at45.primary_hours_left, 3.0f);
  EXPECT_EQ(at90.primary_hours_left, 0.5f * 3.0f / 1.0f);
  EXPECT_EQ(at31.primary_hours_left, std::min(1.5f, 45.0f / 31.0f) * 3.0f / 1.0f);
  const auto at65535 = Database::EstimateConsumableLife(Usage(0, 0.0f), 65535);
  EXPECT_EQ(at65535.primary_hours_left, 45.0f / 65535.0f * 3.0f / 1.0f);
}

TEST(ConsumableLife, LoadFigureWeighsStressFactors) {
  const auto life = Database::EstimateConsumableLife(Usage(0, 0.0f, 0.5f, 1.0f, 2.0f, 0.25f), 45);
  const float W = 1.0f * 1.3f + 0.5f + 2.0f * 1.5f + 0.25f * 1.2f;
  EXPECT_EQ(life.primary_hours_left, 1.0f * 3.0f / W);
  EXPECT_EQ(life.secondary_hours_left, 1.0f * 6.0f / W);
}

TEST(ConsumableLife, AllStressFactorsZeroUseLoadOne) {
  const auto zero = Database::EstimateConsumableLife(Usage(50, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f), 45);
  const auto unit = Database::EstimateConsumableLife(Usage(50, 0.5f, 1.0f, 0.0f, 0.0f, 0.0f), 45);
  EXPECT_EQ(zero.primary_life_pct, unit.primary_life_pct);
  EXPECT_EQ(zero.primary_hours_left, 3.0f - 0.5f);
  EXPECT_EQ(zero.primary_starts_left, 550u);
}

TEST(ConsumableLife, LoadBelowOneHundredthOrNegativeCountsAsOne) {
  for (float s1 : {0.0099f, 0.001f, -2.0f}) {
    const auto life = Database::EstimateConsumableLife(Usage(0, 0.0f, s1), 45);
    EXPECT_EQ(life.primary_hours_left, 3.0f) << s1;
  }
  // 0.01 itself is kept.
  const auto at_bound = Database::EstimateConsumableLife(Usage(0, 0.0f, 0.01f), 45);
  EXPECT_EQ(at_bound.primary_hours_left, 1.0f * 3.0f / 0.01f);
  EXPECT_EQ(at_bound.primary_starts_left,
            static_cast<std::uint32_t>(1.0f * 600.0f / 0.01f));
}

TEST(ConsumableLife, StartsLeftIsTruncatedTowardZero) {
  // W = 1.3 makes the primary limit 461.53...
  const auto life = Database::EstimateConsumableLife(Usage(0, 0.0f, 0.0f, 1.0f), 45);
  const float W = 1.0f * 1.3f + 0.0f + 0.0f * 1.5f + 0.0f * 1.2f;
  EXPECT_EQ(life.primary_starts_left, static_cast<std::uint32_t>(1.0f * 600.0f / W - 0.0f));
  EXPECT_EQ(life.primary_starts_left, 461u);
  EXPECT_EQ(life.secondary_starts_left, 692u);
}

TEST(ConsumableLife, PartAtExactlyTwentyPercentIsFlagged) {
  const float pct = 100.0f - std::max(0.0f / 3.0f * 100.0f, 480.0f / 600.0f * 100.0f);
  ASSERT_EQ(pct, 20.0f);
  const auto life = Database::EstimateConsumableLife(Usage(480, 0.0f), 45);
  EXPECT_EQ(life.primary_life_pct, 20.0f);
  EXPECT_TRUE(life.primary_replace_soon);
  EXPECT_FALSE(life.secondary_replace_soon);
  EXPECT_FALSE(life.tertiary_replace_soon);

  const auto fresher = Database::EstimateConsumableLife(Usage(479, 0.0f), 45);
  EXPECT_GT(fresher.primary_life_pct, 20.0f);
  EXPECT_FALSE(fresher.primary_replace_soon);
}

TEST(ConsumableLife, ArcHoursCanDominateStarts) {
  // Secondary at 4.8 of 6 hours: used 80 percent.
  const auto life = Database::EstimateConsumableLife(Usage(10, 4.8f), 45);
  EXPECT_EQ(life.secondary_life_pct, Percent(4.8f, 10.0f, 6.0f, 900.0f));
  EXPECT_NEAR(life.secondary_life_pct, 20.0f, 1e-4f);
  EXPECT_EQ(life.primary_life_pct, 0.0f);
  EXPECT_EQ(life.tertiary_life_pct, Percent(4.8f, 10.0f, 9.0f, 1200.0f));
}

TEST(ConsumableLife, WornPastLimitShowsZeroNeverNegative) {
  const auto life = Database::EstimateConsumableLife(Usage(5000, 50.0f), 200);
  EXPECT_EQ(life.primary_life_pct, 0.0f);
  EXPECT_EQ(life.secondary_life_pct, 0.0f);
  EXPECT_EQ(life.tertiary_life_pct, 0.0f);
  EXPECT_EQ(life.primary_starts_left, 0u);
  EXPECT_EQ(life.secondary_starts_left, 0u);
  EXPECT_EQ(life.primary_hours_left, 0.0f);
  EXPECT_EQ(life.secondary_hours_left, 0.0f);
  EXPECT_FALSE(std::signbit(life.primary_hours_left));
  EXPECT_TRUE(life.primary_replace_soon);
  EXPECT_TRUE(life.secondary_replace_soon);
  EXPECT_TRUE(life.tertiary_replace_soon);
  EXPECT_FALSE(life.life_flag_reserved);
}

TEST(ConsumableLife, MaximumStartsGiveZeroLeft) {
  const auto life = Database::EstimateConsumableLife(Usage(UINT32_MAX, 0.0f), 45);
  EXPECT_EQ(life.primary_starts_left, 0u);
  EXPECT_EQ(life.secondary_starts_left, 0u);
  EXPECT_EQ(life.primary_life_pct, 0.0f);
}

TEST(ConsumableLife, NegativeUsageIsCappedAtFullLife) {
  const auto life = Database::EstimateConsumableLife(Usage(0, -2.0f), 45);
  EXPECT_EQ(life.primary_life_pct, 100.0f);
  EXPECT_EQ(life.primary_hours_left, 3.0f - -2.0f);
}

TEST(ConsumableLife, NaNLoadLeavesCountsAtZeroWithoutFlags) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const auto life = Database::EstimateConsumableLife(Usage(10, 1.0f, nan), 45);
  EXPECT_TRUE(std::isnan(life.primary_life_pct));
  EXPECT_EQ(life.primary_starts_left, 0u);
  EXPECT_EQ(life.secondary_starts_left, 0u);
  EXPECT_FALSE(life.primary_replace_soon);
  EXPECT_FALSE(life.life_flag_reserved);
}

TEST(ConsumableLife, InfiniteLoadWearsEverythingOut) {
  const float inf = std::numeric_limits<float>::infinity();
  const auto life = Database::EstimateConsumableLife(Usage(1, 1.0f, inf), 45);
  EXPECT_EQ(life.primary_life_pct, 0.0f);
  EXPECT_EQ(life.primary_starts_left, 0u);
  EXPECT_EQ(life.primary_hours_left, 0.0f);
  EXPECT_TRUE(life.tertiary_replace_soon);
}
