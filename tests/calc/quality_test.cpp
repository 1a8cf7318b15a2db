#include <gtest/gtest.h>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using Sparlane::QualityLevel;
using calc_test::Record;

namespace {
const float t = 12.7f;
}

TEST(QualityProfile, ProductionIsFastestWithWidestTolerances) {
  const auto q = Database::GetQualityProfile(Record(t), QualityLevel::Production);
  EXPECT_EQ(q.level, QualityLevel::Production);
  EXPECT_EQ(q.speed_factor, 1.0f);
  EXPECT_EQ(q.current_factor, 1.0f);
  EXPECT_EQ(q.surface_roughness_um, t + t + 25.0f);
  EXPECT_EQ(q.tolerance_mm, t * 0.02f + 0.5f);
  EXPECT_EQ(q.max_bevel_deg, t * 0.1f + 3.0f);
}

TEST(QualityProfile, Standard) {
  const auto q = Database::GetQualityProfile(Record(t), QualityLevel::Standard);
  EXPECT_EQ(q.level, QualityLevel::Standard);
  EXPECT_EQ(q.speed_factor, 0.85f);
  EXPECT_EQ(q.current_factor, 0.95f);
  EXPECT_EQ(q.surface_roughness_um, t * 1.5f + 15.0f);
  EXPECT_EQ(q.tolerance_mm, t * 0.015f + 0.3f);
  EXPECT_EQ(q.max_bevel_deg, t * 0.08f + 2.0f);
}

TEST(QualityProfile, Fine) {
  const auto q = Database::GetQualityProfile(Record(t), QualityLevel::Fine);
  EXPECT_EQ(q.level, QualityLevel::Fine);
  EXPECT_EQ(q.speed_factor, 0.7f);
  EXPECT_EQ(q.current_factor, 0.9f);
  EXPECT_EQ(q.surface_roughness_um, t + 10.0f);
  EXPECT_EQ(q.tolerance_mm, t * 0.01f + 0.2f);
  EXPECT_EQ(q.max_bevel_deg, t * 0.05f + 1.5f);
}

TEST(QualityProfile, PrecisionIsSlowestWithTightestTolerances) {
  const auto q = Database::GetQualityProfile(Record(t), QualityLevel::Precision);
  EXPECT_EQ(q.level, QualityLevel::Precision);
  EXPECT_EQ(q.speed_factor, 0.5f);
  EXPECT_EQ(q.current_factor, 0.85f);
  EXPECT_EQ(q.surface_roughness_um, t * 0.5f + 6.0f);
  EXPECT_EQ(q.tolerance_mm, t * 0.005f + 0.1f);
  EXPECT_EQ(q.max_bevel_deg, t * 0.03f + 1.0f);
}

TEST(QualityProfile, UnknownLevelIsKeptWithAllNumbersZero) {
  for (unsigned value : {4u, 17u, 255u}) {
    const auto level = static_cast<QualityLevel>(value);
    const auto q = Database::GetQualityProfile(Record(t), level);
    EXPECT_EQ(static_cast<unsigned>(q.level), value);
    EXPECT_EQ(q.speed_factor, 0.0f);
    EXPECT_EQ(q.current_factor, 0.0f);
    EXPECT_EQ(q.surface_roughness_um, 0.0f);
    EXPECT_EQ(q.tolerance_mm, 0.0f);
    EXPECT_EQ(q.max_bevel_deg, 0.0f);
  }
}
