#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

namespace {

float Factor(float angle) {
  return Database::CalculateCornerSlowdown(Record(5.0f), angle).speed_factor;
}

}  // namespace

TEST(CornerSlowdown, FactorPiecesByAngle) {
  EXPECT_EQ(Factor(180.0f), 1.0f);
  EXPECT_EQ(Factor(150.0f), 1.0f);
  EXPECT_EQ(Factor(149.0f), (149.0f - 90.0f) / 60.0f * 0.4f + 0.6f);
  EXPECT_EQ(Factor(120.0f), (120.0f - 90.0f) / 60.0f * 0.4f + 0.6f);
  EXPECT_EQ(Factor(90.0f), (90.0f - 90.0f) / 60.0f * 0.4f + 0.6f);
  EXPECT_FLOAT_EQ(Factor(90.0f), 0.6f);
  EXPECT_EQ(Factor(89.0f), (89.0f - 45.0f) / 45.0f * 0.2f + 0.4f);
  EXPECT_EQ(Factor(45.0f), (45.0f - 45.0f) / 45.0f * 0.2f + 0.4f);
  EXPECT_FLOAT_EQ(Factor(45.0f), 0.4f);
  EXPECT_EQ(Factor(44.0f), 44.0f / 45.0f * 0.1f + 0.3f);
  EXPECT_EQ(Factor(0.0f), 0.0f / 45.0f * 0.1f + 0.3f);
  EXPECT_FLOAT_EQ(Factor(0.0f), 0.3f);
}

TEST(CornerSlowdown, PiecesMeetWithoutJumps) {
  EXPECT_NEAR(Factor(149.9999f), 1.0f, 1e-5f);
  EXPECT_NEAR(Factor(89.9999f), Factor(90.0f), 1e-5f);
  EXPECT_NEAR(Factor(44.9999f), Factor(45.0f), 1e-5f);
}

TEST(CornerSlowdown, AngleAbove180BehavesAsStraight) {
  const auto r = Database::CalculateCornerSlowdown(Record(5.0f), 200.0f);
  EXPECT_EQ(r.speed_factor, 1.0f);
  EXPECT_FALSE(r.sharp_corner);
  EXPECT_EQ(r.sharp_corner_extension_mm, 0.0f);
}

TEST(CornerSlowdown, NegativeAngleBehavesAsReversal) {
  const auto r = Database::CalculateCornerSlowdown(Record(5.0f), -10.0f);
  EXPECT_EQ(r.speed_factor, 0.0f / 45.0f * 0.1f + 0.3f);
  EXPECT_TRUE(r.sharp_corner);
  EXPECT_EQ(r.sharp_corner_extension_mm, 5.0f * 1.5f);
}

TEST(CornerSlowdown, ThirtyDegreesExactlyIsNotSharp) {
  const auto at30 = Database::CalculateCornerSlowdown(Record(5.0f), 30.0f);
  EXPECT_FALSE(at30.sharp_corner);
  EXPECT_EQ(at30.sharp_corner_extension_mm, 0.0f);
  const auto below = Database::CalculateCornerSlowdown(Record(5.0f), 29.99f);
  EXPECT_TRUE(below.sharp_corner);
  EXPECT_EQ(below.sharp_corner_extension_mm, 5.0f * 1.5f);
}

TEST(CornerSlowdown, DistancesScaleWithThickness) {
  const float t = 7.3f;
  const auto r = Database::CalculateCornerSlowdown(Record(t), 100.0f);
  EXPECT_EQ(r.decel_distance_mm, t + t);
  EXPECT_EQ(r.slow_zone_mm, t * 3.0f);
  EXPECT_EQ(r.accel_distance_mm, t + t);
}

TEST(CornerSlowdown, NaNAngleIsNotSharp) {
  const auto r = Database::CalculateCornerSlowdown(Record(5.0f),
                                                   std::numeric_limits<float>::quiet_NaN());
  EXPECT_FALSE(r.sharp_corner);
  EXPECT_EQ(r.sharp_corner_extension_mm, 0.0f);
  EXPECT_TRUE(std::isnan(r.speed_factor));
  EXPECT_EQ(r.decel_distance_mm, 10.0f);
}
