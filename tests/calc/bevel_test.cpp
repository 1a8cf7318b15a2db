#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::BevelLimits;
using Sparlane::Database;
using calc_test::Record;

namespace {

BevelLimits Bevel(float t, unsigned short amps = 100) {
  return Database::GetBevelLimits(Record(t, 1.5f, 2000.0f, amps), "Mild Steel");
}

}  // namespace

TEST(BevelLimits, SixMillimetresExactlyAllowsFortyFive) {
  const auto b = Bevel(6.0f);
  EXPECT_EQ(b.max_bevel_angle_deg, 45.0f);
  EXPECT_EQ(b.recommended_angle_deg, 45.0f - 5.0f);
  EXPECT_TRUE(b.thick_plate);
  EXPECT_FALSE(b.very_thick_plate);
  EXPECT_FALSE(Bevel(5.99f).thick_plate);
  EXPECT_EQ(Bevel(5.99f).max_bevel_angle_deg, 45.0f);
  EXPECT_EQ(Bevel(-3.0f).max_bevel_angle_deg, 45.0f);
}

TEST(BevelLimits, AngleFallsByPieceWithThickness) {
  EXPECT_EQ(Bevel(9.0f).max_bevel_angle_deg, 45.0f - (9.0f - 6.0f) * 0.5f);
  EXPECT_EQ(Bevel(12.0f).max_bevel_angle_deg, 45.0f - (12.0f - 6.0f) * 0.5f);
  EXPECT_FLOAT_EQ(Bevel(12.0f).max_bevel_angle_deg, 42.0f);
  EXPECT_EQ(Bevel(12.5f).max_bevel_angle_deg, 42.0f - (12.5f - 12.0f) * 0.3f);
  EXPECT_EQ(Bevel(25.0f).max_bevel_angle_deg, 42.0f - (25.0f - 12.0f) * 0.3f);
  EXPECT_NEAR(Bevel(25.0f).max_bevel_angle_deg, 38.1f, 1e-5f);
  EXPECT_EQ(Bevel(30.0f).max_bevel_angle_deg, 38.0f - (30.0f - 25.0f) * 0.2f);
}

TEST(BevelLimits, VeryThickPlateIsLimitedToTwentyFive) {
  EXPECT_EQ(Bevel(100.0f).max_bevel_angle_deg, 25.0f);
  EXPECT_EQ(Bevel(100.0f).recommended_angle_deg, 20.0f);
  EXPECT_EQ(Bevel(90.0f).max_bevel_angle_deg,
            std::max(38.0f - (90.0f - 25.0f) * 0.2f, 25.0f));
  EXPECT_EQ(Bevel(70.0f).max_bevel_angle_deg, 38.0f - (70.0f - 25.0f) * 0.2f);
}

TEST(BevelLimits, ThicknessFlags) {
  EXPECT_TRUE(Bevel(10.0f).very_thick_plate);
  EXPECT_TRUE(Bevel(10.0f).thick_plate);
  EXPECT_FALSE(Bevel(9.99f).very_thick_plate);
  EXPECT_TRUE(Bevel(9.99f).thick_plate);
}

TEST(BevelLimits, LandHeightByCurrent) {
  EXPECT_EQ(Bevel(8.0f, 65535).max_land_height_mm, 12.0f);
  EXPECT_EQ(Bevel(8.0f, 200).max_land_height_mm, 12.0f);
  EXPECT_EQ(Bevel(8.0f, 199).max_land_height_mm, 10.0f);
  EXPECT_EQ(Bevel(8.0f, 130).max_land_height_mm, 10.0f);
  EXPECT_EQ(Bevel(8.0f, 129).max_land_height_mm, 8.0f);
  EXPECT_EQ(Bevel(8.0f, 85).max_land_height_mm, 8.0f);
  EXPECT_EQ(Bevel(8.0f, 84).max_land_height_mm, 6.0f);
  EXPECT_EQ(Bevel(8.0f, 0).max_land_height_mm, 6.0f);
}

TEST(BevelLimits, TwoHundredAmpsRaiseIsCappedAtFortyFive) {
  const auto b = Bevel(6.0f, 200);
  EXPECT_EQ(b.max_bevel_angle_deg, 45.0f);
  EXPECT_EQ(b.recommended_angle_deg, 40.0f);
}

TEST(BevelLimits, TwoHundredAmpsRaiseKeepsRecommendationOfUnraisedAngle) {
  const auto b = Bevel(20.0f, 200);
  const float a = 42.0f - (20.0f - 12.0f) * 0.3f;
  EXPECT_EQ(b.max_bevel_angle_deg, std::min(a + 2.0f, 45.0f));
  EXPECT_NEAR(b.max_bevel_angle_deg, 41.6f, 1e-5f);
  EXPECT_EQ(b.recommended_angle_deg, a - 5.0f);
  EXPECT_NEAR(b.recommended_angle_deg, 34.6f, 1e-5f);

  const auto below = Bevel(20.0f, 199);
  EXPECT_EQ(below.max_bevel_angle_deg, a);
  EXPECT_EQ(below.recommended_angle_deg, a - 5.0f);
}

TEST(BevelLimits, FixedFields) {
  for (float t : {1.0f, 20.0f, 100.0f}) {
    const auto b = Bevel(t);
    EXPECT_TRUE(b.bevel_supported);
    EXPECT_EQ(b.angle_speed_coefficient, 0.015f);
  }
}

TEST(BevelLimits, NameIsNotConsulted) {
  const auto p = Record(15.0f, 1.5f, 2000.0f, 260);
  const auto a = Database::GetBevelLimits(p, "");
  const auto b = Database::GetBevelLimits(p, "Stainless 304");
  EXPECT_EQ(a.max_bevel_angle_deg, b.max_bevel_angle_deg);
  EXPECT_EQ(a.max_land_height_mm, b.max_land_height_mm);
  EXPECT_EQ(a.recommended_angle_deg, b.recommended_angle_deg);
  EXPECT_EQ(a.thick_plate, b.thick_plate);
  EXPECT_EQ(a.very_thick_plate, b.very_thick_plate);
}
