#include <gtest/gtest.h>

#include <string>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

// Results start all-zero; fields a calculator never sets read as false / 0
// whatever the record holds.
TEST(CalculatorResults, ReservedFlagsAreAlwaysFalse) {
  for (float t : {0.0f, 3.0f, 12.0f, 50.0f}) {
    const auto p = Record(t, 1.5f, 2000.0f, 260);
    EXPECT_FALSE(Database::GetSmallHoleParams(p, 0.1f).hole_flag_reserved) << t;
    EXPECT_FALSE(Database::GetSmallHoleParams(p, 100.0f).hole_flag_reserved) << t;
    EXPECT_FALSE(Database::GetCommonLineRules(p).requires_tabs) << t;
  }
  Sparlane::ConsumableUsage usage{};
  for (unsigned starts : {0u, 1000000u}) {
    usage.starts = starts;
    EXPECT_FALSE(Database::EstimateConsumableLife(usage, 130).life_flag_reserved) << starts;
  }
}

TEST(CalculatorResults, RecordBytesOutsideTheReadFieldsChangeNothing) {
  auto plain = Record(9.0f, 1.7f, 2200.0f, 160, 0.7f);
  auto noisy = plain;
  noisy.vendor_id = 0xFFFF;
  noisy.aux_id = 0x1234;
  noisy.cut_height_mm = 99.0f;
  noisy.arc_voltage_v = 150.0f;
  noisy.flags = 0xFFFFFFFF;
  for (auto& b : noisy.reserved_42) b = 0xAB;
  for (auto& b : noisy.reserved_52) b = 0xCD;

  const auto hole_a = Database::GetSmallHoleParams(plain, 10.0f);
  const auto hole_b = Database::GetSmallHoleParams(noisy, 10.0f);
  EXPECT_EQ(hole_a.speed_factor, hole_b.speed_factor);
  EXPECT_EQ(hole_a.min_diameter_mm, hole_b.min_diameter_mm);
  const auto bevel_a = Database::GetBevelLimits(plain, std::string());
  const auto bevel_b = Database::GetBevelLimits(noisy, std::string());
  EXPECT_EQ(bevel_a.max_bevel_angle_deg, bevel_b.max_bevel_angle_deg);
  EXPECT_EQ(Database::CalculateHAZ(plain).haz_width_mm, Database::CalculateHAZ(noisy).haz_width_mm);
  EXPECT_EQ(Database::EstimateCutTime(plain, 100.0f, 2).total_time_s,
            Database::EstimateCutTime(noisy, 100.0f, 2).total_time_s);
}

TEST(CalculatorResults, NotSharpCornerHasNoExtension) {
  const auto r = Database::CalculateCornerSlowdown(Record(40.0f), 90.0f);
  EXPECT_FALSE(r.sharp_corner);
  EXPECT_EQ(r.sharp_corner_extension_mm, 0.0f);
}
