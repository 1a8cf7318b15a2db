#include <gtest/gtest.h>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using Sparlane::SmallHoleParams;
using calc_test::Record;

namespace {

// t = 4 and kerf 1 make the ratio bounds land on exact diameters 4, 6 and 8.
SmallHoleParams Hole(float diameter) {
  return Database::GetSmallHoleParams(Record(4.0f, 1.0f), diameter);
}

void ExpectRow(const SmallHoleParams& h, float speed, float current, bool small, bool very_small) {
  EXPECT_EQ(h.speed_factor, speed);
  EXPECT_EQ(h.current_factor, current);
  EXPECT_EQ(h.small_hole, small);
  EXPECT_EQ(h.very_small_hole, very_small);
  EXPECT_FALSE(h.hole_flag_reserved);
}

}  // namespace

TEST(SmallHole, DiameterBelowOneAndAHalfKerfsCannotBeCut) {
  const auto h = Database::GetSmallHoleParams(Record(10.0f, 1.6f), 2.0f);
  EXPECT_EQ(h.min_diameter_mm, 1.6f * 1.5f);
  EXPECT_EQ(h.lead_in_max_mm, 10.0f + 10.0f);
  ExpectRow(h, 0.0f, 0.0f, true, true);
}

TEST(SmallHole, DiameterEqualToMinimumPassesTheKerfTest) {
  const auto h = Database::GetSmallHoleParams(Record(10.0f, 2.0f), 2.0f * 1.5f);
  ExpectRow(h, 0.4f, 0.7f, true, true);
}

TEST(SmallHole, RatioRowsAndBounds) {
  ExpectRow(Hole(2.0f), 0.4f, 0.7f, true, true);
  ExpectRow(Hole(3.99f), 0.4f, 0.7f, true, true);
  ExpectRow(Hole(4.0f), 0.5f, 0.8f, true, false);   // r = 1.0
  ExpectRow(Hole(5.99f), 0.5f, 0.8f, true, false);
  ExpectRow(Hole(6.0f), 0.6f, 0.9f, false, false);  // r = 1.5
  ExpectRow(Hole(7.99f), 0.6f, 0.9f, false, false);
  ExpectRow(Hole(8.0f), 1.0f, 1.0f, false, false);  // r = 2.0
  ExpectRow(Hole(50.0f), 1.0f, 1.0f, false, false);
}

TEST(SmallHole, FixedFiguresComeFromKerfAndThickness) {
  const auto h = Database::GetSmallHoleParams(Record(7.5f, 1.3f), 30.0f);
  EXPECT_EQ(h.min_diameter_mm, 1.3f * 1.5f);
  EXPECT_EQ(h.lead_in_max_mm, 7.5f + 7.5f);
}

TEST(SmallHole, ZeroThicknessFallsThroughToFullSettings) {
  // d / 0 is infinite: every ratio test fails.
  ExpectRow(Database::GetSmallHoleParams(Record(0.0f, 1.0f), 5.0f), 1.0f, 1.0f, false, false);
  // 0 / 0 is NaN: the same.
  ExpectRow(Database::GetSmallHoleParams(Record(0.0f, 0.0f), 0.0f), 1.0f, 1.0f, false, false);
  // Unless the kerf test stops first.
  ExpectRow(Database::GetSmallHoleParams(Record(0.0f, 1.0f), 1.0f), 0.0f, 0.0f, true, true);
}
