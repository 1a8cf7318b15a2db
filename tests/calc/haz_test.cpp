#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(HeatAffectedZone, TypicalCutIsNotHighHeat) {
  const auto z = Database::CalculateHAZ(Record(10.0f, 1.5f, 3000.0f, 260));
  const float h = static_cast<float>(260) / (3000.0f / 1000.0f);
  const float w = std::min(h * 0.001f + 0.5f + 10.0f * 0.02f, 3.0f);
  EXPECT_NEAR(h, 86.67f, 0.005f);
  EXPECT_EQ(z.haz_width_mm, w);
  EXPECT_NEAR(z.haz_width_mm, 0.7867f, 0.00005f);
  EXPECT_EQ(z.inner_zone_mm, w * 0.3f);
  EXPECT_EQ(z.outer_zone_mm, w * 1.5f);
  EXPECT_FALSE(z.high_heat_input);
}

TEST(HeatAffectedZone, SlowHighCurrentCutIsHighHeat) {
  const auto z = Database::CalculateHAZ(Record(10.0f, 1.5f, 2000.0f, 260));
  const float h = static_cast<float>(260) / (2000.0f / 1000.0f);
  EXPECT_FLOAT_EQ(h, 130.0f);
  EXPECT_EQ(z.haz_width_mm, h * 0.001f + 0.5f + 10.0f * 0.02f);
  EXPECT_TRUE(z.high_heat_input);
}

TEST(HeatAffectedZone, HeatFigureOfExactlyHundredIsNotHigh) {
  EXPECT_FALSE(Database::CalculateHAZ(Record(5.0f, 1.5f, 1000.0f, 100)).high_heat_input);
  EXPECT_TRUE(Database::CalculateHAZ(Record(5.0f, 1.5f, 1000.0f, 101)).high_heat_input);
}

TEST(HeatAffectedZone, PlateAboveTwentyMillimetresIsHighHeat) {
  EXPECT_FALSE(Database::CalculateHAZ(Record(20.0f, 1.5f, 3000.0f, 100)).high_heat_input);
  EXPECT_TRUE(Database::CalculateHAZ(Record(20.01f, 1.5f, 3000.0f, 100)).high_heat_input);
}

TEST(HeatAffectedZone, WidthNeverExceedsThreeMillimetres) {
  const auto z = Database::CalculateHAZ(Record(10.0f, 1.5f, 10.0f, 600));
  EXPECT_EQ(z.haz_width_mm, 3.0f);
  EXPECT_EQ(z.inner_zone_mm, 3.0f * 0.3f);
  EXPECT_EQ(z.outer_zone_mm, 3.0f * 1.5f);
  EXPECT_TRUE(z.high_heat_input);
  const auto tiny = Database::CalculateHAZ(Record(200.0f, 1.5f, 1e-6f, 65535));
  EXPECT_EQ(tiny.haz_width_mm, 3.0f);
}

TEST(HeatAffectedZone, NoSpeedUsesHeatFigureOne) {
  for (float speed : {0.0f, -500.0f}) {
    const auto z = Database::CalculateHAZ(Record(6.0f, 1.5f, speed, 400));
    EXPECT_EQ(z.haz_width_mm, 1.0f * 0.001f + 0.5f + 6.0f * 0.02f) << speed;
    EXPECT_FALSE(z.high_heat_input) << speed;
  }
}

TEST(HeatAffectedZone, ZeroCurrentGivesZeroHeatFigure) {
  const auto z = Database::CalculateHAZ(Record(6.0f, 1.5f, 2500.0f, 0));
  EXPECT_EQ(z.haz_width_mm, 0.0f * 0.001f + 0.5f + 6.0f * 0.02f);
}
