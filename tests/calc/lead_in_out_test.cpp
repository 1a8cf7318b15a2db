#include <gtest/gtest.h>

#include <algorithm>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

TEST(LeadInOut, ThinPlateUsesMinimumLengthAndNoArc) {
  const auto r = Database::CalculateLeadInOut(Record(2.0f), false);
  const float in = std::max(2.0f * 0.75f, 3.0f);
  EXPECT_EQ(r.lead_in_length_mm, in);
  EXPECT_EQ(r.lead_in_length_mm, 3.0f);
  EXPECT_EQ(r.lead_out_length_mm, in * 1.5f);
  EXPECT_FLOAT_EQ(r.lead_out_length_mm, 4.5f);
  EXPECT_EQ(r.lead_in_angle_deg, 60.0f);
  EXPECT_EQ(r.lead_in_radius_mm, in * 0.5f);
  EXPECT_FLOAT_EQ(r.lead_in_radius_mm, 1.5f);
  EXPECT_EQ(r.lead_out_radius_mm, in * 1.5f * 0.5f);
  EXPECT_FLOAT_EQ(r.lead_out_radius_mm, 2.25f);
  EXPECT_EQ(r.lead_out_angle_deg, 45.0f);
  EXPECT_FALSE(r.use_arc_lead_in);
  EXPECT_TRUE(r.use_lead_out);
}

TEST(LeadInOut, LimitToThicknessShortensLengthsButKeepsRadii) {
  const auto r = Database::CalculateLeadInOut(Record(2.0f), true);
  EXPECT_EQ(r.lead_in_length_mm, std::min(3.0f, 2.0f * 0.5f));
  EXPECT_FLOAT_EQ(r.lead_in_length_mm, 1.0f);
  EXPECT_EQ(r.lead_out_length_mm, std::min(2.0f, 3.0f * 1.5f));
  EXPECT_FLOAT_EQ(r.lead_out_length_mm, 2.0f);
  EXPECT_FLOAT_EQ(r.lead_in_radius_mm, 1.5f);
  EXPECT_FLOAT_EQ(r.lead_out_radius_mm, 2.25f);
  EXPECT_EQ(r.lead_in_angle_deg, 60.0f);
  EXPECT_TRUE(r.use_lead_out);
}

TEST(LeadInOut, SixMillimetresIsNotBelowSix) {
  EXPECT_EQ(Database::CalculateLeadInOut(Record(6.0f), false).lead_in_angle_deg, 90.0f);
  EXPECT_EQ(Database::CalculateLeadInOut(Record(5.99f), false).lead_in_angle_deg, 60.0f);
}

TEST(LeadInOut, ArcLeadInStartsAtThreeMillimetres) {
  EXPECT_TRUE(Database::CalculateLeadInOut(Record(3.0f), false).use_arc_lead_in);
  EXPECT_FALSE(Database::CalculateLeadInOut(Record(2.99f), false).use_arc_lead_in);
}

TEST(LeadInOut, ThickPlateScalesWithThickness) {
  const auto r = Database::CalculateLeadInOut(Record(10.0f), false);
  const float in = std::max(10.0f * 0.75f, 3.0f);
  EXPECT_EQ(r.lead_in_length_mm, in);
  EXPECT_EQ(r.lead_out_length_mm, in * 1.5f);
  EXPECT_EQ(r.lead_in_radius_mm, in * 0.5f);
  EXPECT_EQ(r.lead_out_radius_mm, in * 1.5f * 0.5f);
  EXPECT_EQ(r.lead_in_angle_deg, 90.0f);
  EXPECT_TRUE(r.use_arc_lead_in);

  const auto limited = Database::CalculateLeadInOut(Record(10.0f), true);
  EXPECT_EQ(limited.lead_in_length_mm, std::min(in, 10.0f * 0.5f));
  EXPECT_EQ(limited.lead_out_length_mm, std::min(10.0f, in * 1.5f));
  EXPECT_EQ(limited.lead_in_radius_mm, in * 0.5f);
}

TEST(LeadInOut, MinimumLengthMeetsScaledLengthAtFourMillimetres) {
  EXPECT_EQ(Database::CalculateLeadInOut(Record(4.0f), false).lead_in_length_mm, 3.0f);
  EXPECT_EQ(Database::CalculateLeadInOut(Record(4.4f), false).lead_in_length_mm, 4.4f * 0.75f);
}
