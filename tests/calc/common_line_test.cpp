#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(CommonLine, TwelveMillimetresIsAllowedAndAboveIsNot) {
  const auto at12 = Database::GetCommonLineRules(Record(12.0f));
  EXPECT_TRUE(at12.allowed);
  EXPECT_EQ(at12.max_thickness_mm, 12.0f);
  const auto above = Database::GetCommonLineRules(Record(12.01f));
  EXPECT_FALSE(above.allowed);
  EXPECT_EQ(above.max_thickness_mm, 12.0f);
  EXPECT_FALSE(above.requires_tabs);
}

TEST(CommonLine, EightMillimetresUsesThinPlateFormulas) {
  const float k = 1.4f;
  const auto r = Database::GetCommonLineRules(Record(8.0f, k));
  EXPECT_EQ(r.min_segment_length_mm, std::max(8.0f * 3.0f, 25.0f));
  EXPECT_EQ(r.min_segment_length_mm, 25.0f);
  EXPECT_EQ(r.line_spacing_mm, k + k + 3.0f);
  EXPECT_EQ(r.tab_width_mm, std::max(8.0f * 0.5f, 3.0f));
  EXPECT_TRUE(r.allowed);
  EXPECT_FALSE(r.requires_tabs);
}

TEST(CommonLine, AboveEightMillimetresUsesThickPlateFormulas) {
  const float k = 2.1f;
  const auto r = Database::GetCommonLineRules(Record(8.5f, k));
  EXPECT_EQ(r.min_segment_length_mm, 8.5f * 4.0f);
  EXPECT_EQ(r.line_spacing_mm, k * 3.0f + 5.0f);
  EXPECT_EQ(r.tab_width_mm, 8.5f * 0.5f);
}

TEST(CommonLine, ThinPlateSegmentNeverBelowTwentyFive) {
  EXPECT_EQ(Database::GetCommonLineRules(Record(1.0f)).min_segment_length_mm, 25.0f);
  EXPECT_EQ(Database::GetCommonLineRules(Record(5.0f)).min_segment_length_mm, 25.0f);
}

TEST(CommonLine, TabWidthNeverBelowThree) {
  EXPECT_EQ(Database::GetCommonLineRules(Record(4.0f)).tab_width_mm, 3.0f);
  EXPECT_EQ(Database::GetCommonLineRules(Record(2.0f)).tab_width_mm, 3.0f);
  EXPECT_EQ(Database::GetCommonLineRules(Record(10.0f)).tab_width_mm, 10.0f * 0.5f);
}
