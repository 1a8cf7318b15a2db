#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using Sparlane::MaterialPricing;
using calc_test::Record;

namespace {

MaterialPricing Pricing(float price_per_kg, float density, float utilization) {
  MaterialPricing pricing{};
  pricing.price_per_kg = price_per_kg;
  pricing.density_kg_m3 = density;
  pricing.material_utilization = utilization;
  return pricing;
}

}  // namespace

TEST(JobCost, EveryFigureFollowsTheWrittenOrder) {
  const auto p = Record(10.0f, 1.6f, 1800.0f, 130, 0.6f);
  const auto c = Database::EstimateJobCost(p, 2500.0f, 7, Pricing(1.2f, 7850.0f, 0.8f), 85.0f,
                                           45.0f);
  const float L = 2500.0f;
  const float N = static_cast<float>(7u);
  const float T = L / 1800.0f * 60.0f;
  const float H = (N * 0.6f + T) / 3600.0f;
  const float U = std::max(0.8f, 0.1f);
  const float material = L * 1.6f * 10.0f / 1e9f * 7850.0f * 1.2f * (1.0f / U);
  const float consumable = std::max(H / 3.0f, N / 600.0f) * 45.0f;
  const float machine = H * 85.0f;
  const float overhead = H * 5.0f;
  const float total = consumable + material + machine + overhead;
  EXPECT_EQ(c.material_cost, material);
  EXPECT_EQ(c.consumable_cost, consumable);
  EXPECT_EQ(c.machine_cost, machine);
  EXPECT_EQ(c.overhead_cost, overhead);
  EXPECT_EQ(c.total_cost, total);
  EXPECT_EQ(c.cost_per_meter, total / (L / 1000.0f));
  EXPECT_EQ(c.cost_per_pierce, total / N);
}

TEST(JobCost, OneMachineHourCostsTheRatePlusFiveOverhead) {
  // 60 m at 1000 mm/min is exactly one hour of travel.
  const auto p = Record(5.0f, 1.0f, 1000.0f, 130, 0.0f);
  const auto c = Database::EstimateJobCost(p, 60000.0f, 0, Pricing(0.0f, 0.0f, 1.0f), 70.0f, 0.0f);
  EXPECT_EQ(c.machine_cost, 70.0f);
  EXPECT_EQ(c.overhead_cost, 5.0f);
  EXPECT_EQ(c.total_cost, 0.0f + 0.0f + 70.0f + 5.0f);
}

TEST(JobCost, ZeroPiercesGiveZeroCostPerPierce) {
  const auto c = Database::EstimateJobCost(Record(10.0f), 1000.0f, 0, Pricing(1.0f, 7850.0f, 1.0f),
                                           60.0f, 30.0f);
  EXPECT_GT(c.total_cost, 0.0f);
  EXPECT_EQ(c.cost_per_pierce, 0.0f);
}

TEST(JobCost, ZeroLengthGivesZeroCostPerMeterAndMaterial) {
  const auto p = Record(10.0f, 1.6f, 2000.0f, 130, 0.5f);
  const auto c = Database::EstimateJobCost(p, 0.0f, 3, Pricing(1.0f, 7850.0f, 1.0f), 60.0f, 30.0f);
  EXPECT_EQ(c.cost_per_meter, 0.0f);
  EXPECT_EQ(c.material_cost, 0.0f);
  // The pierces still cost machine time.
  const float H = (3.0f * 0.5f + 0.0f / 2000.0f * 60.0f) / 3600.0f;
  EXPECT_EQ(c.machine_cost, H * 60.0f);
  EXPECT_EQ(c.cost_per_pierce, c.total_cost / 3.0f);
}

TEST(JobCost, NegativeLengthGivesZeroCostPerMeter) {
  const auto c = Database::EstimateJobCost(Record(10.0f), -100.0f, 1, Pricing(1.0f, 1.0f, 1.0f),
                                           60.0f, 30.0f);
  EXPECT_EQ(c.cost_per_meter, 0.0f);
}

TEST(JobCost, UtilizationBelowFloorCountsAsOneTenth) {
  const auto p = Record(8.0f, 1.4f, 2500.0f, 130, 0.4f);
  const auto at = [&](float utilization) {
    return Database::EstimateJobCost(p, 3000.0f, 2, Pricing(2.5f, 2700.0f, utilization), 50.0f,
                                     20.0f)
        .material_cost;
  };
  const float unscaled = at(1.0f);
  EXPECT_EQ(unscaled, 3000.0f * 1.4f * 8.0f / 1e9f * 2700.0f * 2.5f * (1.0f / 1.0f));
  EXPECT_EQ(at(0.0f), 3000.0f * 1.4f * 8.0f / 1e9f * 2700.0f * 2.5f * (1.0f / 0.1f));
  EXPECT_NEAR(at(0.0f), unscaled * 10.0f, unscaled * 1e-5f);
  EXPECT_EQ(at(-3.0f), at(0.1f));
  EXPECT_EQ(at(0.05f), at(0.1f));
  EXPECT_EQ(at(0.5f), 3000.0f * 1.4f * 8.0f / 1e9f * 2700.0f * 2.5f * (1.0f / 0.5f));
}

TEST(JobCost, NoSpeedCountsOnlyPierceTime) {
  const auto p = Record(10.0f, 1.6f, 0.0f, 130, 0.75f);
  const auto c = Database::EstimateJobCost(p, 1000.0f, 4, Pricing(1.0f, 7850.0f, 1.0f), 90.0f,
                                           30.0f);
  const float H = (4.0f * 0.75f + 0.0f) / 3600.0f;
  EXPECT_EQ(c.machine_cost, H * 90.0f);
  EXPECT_EQ(c.overhead_cost, H * 5.0f);
}

TEST(JobCost, ConsumablesFollowWhicheverWearsFaster) {
  // Many short pierces: the 600-pierce rate dominates.
  const auto p = Record(3.0f, 1.2f, 3000.0f, 65, 0.2f);
  const auto pierce_bound =
      Database::EstimateJobCost(p, 100.0f, 300, Pricing(1.0f, 7850.0f, 1.0f), 60.0f, 40.0f);
  EXPECT_EQ(pierce_bound.consumable_cost, 300.0f / 600.0f * 40.0f);

  // A long cut with one pierce: the 3-hour rate dominates.
  const auto hour_bound =
      Database::EstimateJobCost(p, 540000.0f, 1, Pricing(1.0f, 7850.0f, 1.0f), 60.0f, 40.0f);
  const float H = (1.0f * 0.2f + 540000.0f / 3000.0f * 60.0f) / 3600.0f;
  EXPECT_EQ(hour_bound.consumable_cost, H / 3.0f * 40.0f);
  EXPECT_GT(H / 3.0f, 1.0f / 600.0f);
}
