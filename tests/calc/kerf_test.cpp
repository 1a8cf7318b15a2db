#include <gtest/gtest.h>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(KerfCompensation, OutsideCutOffsetsByHalfTheKerf) {
  const auto r = Database::CalculateKerfCompensation(Record(6.0f, 1.6f), false);
  EXPECT_EQ(r.offset_mm, 1.6f * 0.5f);
  EXPECT_NEAR(r.offset_mm, 0.8f, 1e-6f);
  EXPECT_EQ(r.kerf_width_mm, 1.6f);
  EXPECT_FALSE(r.is_inside);
}

TEST(KerfCompensation, InsideCutOffsetIsNegative) {
  const auto r = Database::CalculateKerfCompensation(Record(6.0f, 1.6f), true);
  EXPECT_EQ(r.offset_mm, -(1.6f * 0.5f));
  EXPECT_NEAR(r.offset_mm, -0.8f, 1e-6f);
  EXPECT_EQ(r.kerf_width_mm, 1.6f);
  EXPECT_TRUE(r.is_inside);
}

TEST(KerfCompensation, ZeroKerfGivesZeroOffset) {
  EXPECT_EQ(Database::CalculateKerfCompensation(Record(6.0f, 0.0f), true).offset_mm, 0.0f);
  EXPECT_EQ(Database::CalculateKerfCompensation(Record(6.0f, 0.0f), false).offset_mm, 0.0f);
}
