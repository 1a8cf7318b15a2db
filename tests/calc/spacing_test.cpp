#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(PartSpacing, ThinPlateUsesTwoMillimetreGap) {
  const auto s = Database::CalculatePartSpacing(Record(2.99f, 1.1f));
  EXPECT_EQ(s.base_gap_mm, 2.0f);
  EXPECT_EQ(s.kerf_width_mm, 1.1f);
  EXPECT_EQ(s.min_spacing_mm, 2.0f + 1.1f);
  EXPECT_EQ(s.recommended_spacing_mm, 2.0f + 1.1f + 2.0f);
  EXPECT_EQ(s.sheet_edge_margin_mm, 10.0f);
}

TEST(PartSpacing, ThreeMillimetresUsesHalfTheThickness) {
  const auto s = Database::CalculatePartSpacing(Record(3.0f, 1.2f));
  EXPECT_EQ(s.base_gap_mm, 3.0f * 0.5f);
  EXPECT_FLOAT_EQ(s.base_gap_mm, 1.5f);
  EXPECT_EQ(s.min_spacing_mm, 3.0f * 0.5f + 1.2f);
  EXPECT_EQ(s.recommended_spacing_mm, 3.0f * 0.5f + 1.2f + 2.0f);
}

TEST(PartSpacing, TenMillimetresUsesThreeQuartersOfTheThickness) {
  EXPECT_EQ(Database::CalculatePartSpacing(Record(9.99f)).base_gap_mm, 9.99f * 0.5f);
  const auto s = Database::CalculatePartSpacing(Record(10.0f, 2.0f));
  EXPECT_EQ(s.base_gap_mm, 10.0f * 0.75f);
  EXPECT_FLOAT_EQ(s.base_gap_mm, 7.5f);
  EXPECT_EQ(s.min_spacing_mm, 10.0f * 0.75f + 2.0f);
}

TEST(PartSpacing, EdgeMarginNeverBelowTen) {
  for (float t : {0.0f, 2.0f, 4.99f, 5.0f}) {
    EXPECT_EQ(Database::CalculatePartSpacing(Record(t)).sheet_edge_margin_mm, 10.0f) << t;
  }
  EXPECT_EQ(Database::CalculatePartSpacing(Record(8.0f)).sheet_edge_margin_mm,
            std::max(8.0f + 8.0f, 10.0f));
  EXPECT_EQ(Database::CalculatePartSpacing(Record(25.4f)).sheet_edge_margin_mm, 25.4f + 25.4f);
}
