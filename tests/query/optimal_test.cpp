#include <cmath>
#include <limits>

#include "query_fixture.h"

namespace query_test {
namespace {

using Sparlane::kFlagAngleAdjusted;
using Sparlane::kFlagSpeedCapped;
namespace T = Sparlane::Testing;

class Optimal : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeCatalogue(db, 3, 2);
    LoadRecords(db, {Record(1, 1, 6.0f, 2000.0f), Record(1, 1, 10.0f, 1500.0f),
                     Record(1, 2, 6.05f, 2600.0f), Record(1, 3, 6.0f, 2600.0f),
                     Record(2, 1, 6.0f, 9000.0f)});
  }
  Database db;
};

TEST_F(Optimal, FastestRecordOfAnyMachineWithinTolerance) {
  auto r = db.FindOptimal("Mat1", 6.0f, 0.1f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->machine_model_id, 2);  // first of the equal 2600s in table order
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 1u);
  EXPECT_EQ(m.queries_found, 1u);
}

TEST_F(Optimal, ToleranceZeroLetsOnlyExactThicknessCompete) {
  auto r = db.FindOptimal("Mat1", 6.0f, 0.0f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->machine_model_id, 3);
}

TEST_F(Optimal, OnlyZeroSpeedCandidatesCountAsNotFound) {
  LoadRecords(db, {Record(1, 1, 6.0f, 0.0f), Record(1, 2, 6.0f, -5.0f)});
  EXPECT_FALSE(db.FindOptimal("Mat1", 6.0f, 1.0f).has_value());
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 1u);
  EXPECT_EQ(m.queries_not_found, 1u);
}

TEST_F(Optimal, EarlyReturnsAreUncounted) {
  EXPECT_FALSE(db.FindOptimal("Mat1", -1.0f, 1.0f).has_value());
  EXPECT_FALSE(db.FindOptimal("Mat1", std::nanf(""), 1.0f).has_value());
  EXPECT_FALSE(db.FindOptimal("Mat1", std::numeric_limits<float>::infinity(), 1.0f).has_value());
  EXPECT_FALSE(db.FindOptimal("Nope", 6.0f, 1.0f).has_value());
  db.Close();
  EXPECT_FALSE(db.FindOptimal("Mat1", 6.0f, 1.0f).has_value());
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 0u);
}

TEST_F(Optimal, BucketRecordsAreTrustedToBeOfTheMaterial) {
  // Material 1's bucket starts at its thinnest record (position 1) and spans
  // two positions, so it reaches the 9000 mm/min record of material 2.
  LoadRecords(db, {Record(1, 1, 8.0f, 1000.0f), Record(1, 1, 6.0f, 1100.0f),
                   Record(2, 1, 6.0f, 9000.0f)});
  auto r = db.FindOptimal("Mat1", 6.0f, 0.5f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->material_id, 2);
}

TEST_F(Optimal, MaterialWithoutIndexEntryScansForTheMaterial) {
  Database fresh;
  MakeCatalogue(fresh, 2, 2);
  ASSERT_EQ(fresh.AddParameter(Record(2, 1, 6.0f, 9000.0f)), ErrorCode::Success);
  ASSERT_EQ(fresh.AddParameter(Record(1, 1, 6.0f, 1000.0f)), ErrorCode::Success);
  ASSERT_EQ(fresh.AddParameter(Record(1, 2, 6.2f, 1200.0f)), ErrorCode::Success);
  auto r = fresh.FindOptimal("Mat1", 6.0f, 0.25f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->cut_speed_mm_min, 1200.0f);
}

TEST_F(Optimal, BucketOutsideToleranceIsSkipped) {
  EXPECT_FALSE(db.FindOptimal("Mat1", 20.0f, 1.0f).has_value());
  EXPECT_EQ(db.GetPerformanceMetrics().queries_not_found, 1u);
}

TEST_F(Optimal, MaxSpeedNotBelowRecordSpeedReturnsItUnchanged) {
  const CuttingParameter p = db.GetParameters()[0];
  EXPECT_TRUE(SameBytes(db.AdjustForMaxSpeed(p, p.cut_speed_mm_min), p));
  EXPECT_TRUE(SameBytes(db.AdjustForMaxSpeed(p, 5000.0f), p));
  EXPECT_TRUE(SameBytes(db.AdjustForMaxSpeed(p, std::nanf("")), p));
}

TEST_F(Optimal, NoSlowerNeighbourCapsSpeedAndSetsFlag) {
  const CuttingParameter p = db.GetParameters()[0];
  const CuttingParameter r = db.AdjustForMaxSpeed(p, p.cut_speed_mm_min - 1.0f);
  CuttingParameter want = p;
  want.cut_speed_mm_min = 1999.0f;
  want.flags |= kFlagSpeedCapped;
  EXPECT_TRUE(SameBytes(r, want));
}

TEST_F(Optimal, SlowerNeighbourWithinTheBandIsPreferred) {
  LoadRecords(db, {Record(1, 1, 1.0f, 2000.0f), Record(1, 1, 1.09f, 1500.0f),
                   Record(1, 1, 0.95f, 1700.0f), Record(1, 1, 1.1f, 1800.0f),
                   Record(1, 2, 1.0f, 1750.0f), Record(1, 1, 1.02f, 1700.0f)});
  const std::vector<CuttingParameter> table = db.GetParameters();
  const CuttingParameter r = db.AdjustForMaxSpeed(table[0], 1900.0f);
  // 1.1 is outside the band, machine 2 does not count; first of the 1700s.
  EXPECT_TRUE(SameBytes(r, table[2]));
}

TEST_F(Optimal, NeighbourAtPointOneIsOutsideAndPointZeroNineInside) {
  // 1.1f - 1.0f is just above 0.1f in float (6.1f - 6.0f would be just below).
  ASSERT_FALSE(std::fabs(1.1f - 1.0f) < 0.1f);
  LoadRecords(db, {Record(1, 1, 1.0f, 2000.0f), Record(1, 1, 1.1f, 1000.0f)});
  const CuttingParameter base = db.GetParameters()[0];
  EXPECT_EQ(db.AdjustForMaxSpeed(base, 1500.0f).flags & kFlagSpeedCapped, kFlagSpeedCapped);
  LoadRecords(db, {Record(1, 1, 1.0f, 2000.0f), Record(1, 1, 1.09f, 1000.0f)});
  const CuttingParameter r = db.AdjustForMaxSpeed(base, 1500.0f);
  EXPECT_EQ(r.thickness_mm, 1.09f);
  EXPECT_EQ(r.flags & kFlagSpeedCapped, 0u);
}

TEST_F(Optimal, NeighbourFasterThanMaxSpeedIsNotTaken) {
  LoadRecords(db, {Record(1, 1, 1.0f, 2000.0f), Record(1, 1, 1.05f, 1600.0f)});
  const CuttingParameter base = db.GetParameters()[0];
  EXPECT_EQ(db.AdjustForMaxSpeed(base, 1500.0f).cut_speed_mm_min, 1500.0f);
  EXPECT_EQ(db.AdjustForMaxSpeed(base, 1600.0f).cut_speed_mm_min, 1600.0f);
  EXPECT_EQ(db.AdjustForMaxSpeed(base, 1600.0f).thickness_mm, 1.05f);
}

TEST_F(Optimal, AdjustForMaxSpeedOnClosedDatabaseReturnsBase) {
  const CuttingParameter p = db.GetParameters()[0];
  db.Close();
  EXPECT_TRUE(SameBytes(db.AdjustForMaxSpeed(p, 10.0f), p));
}

TEST(TorchAngle, SixtyDegreesDoublesThicknessAndPierceTime) {
  const CuttingParameter p = Record(1, 1, 10.0f, 2000.0f);
  const CuttingParameter r = T::AdjustForTorchAngle(p, 60.0f);
  const float k = std::cos(60.0f * 3.1415927f / 180.0f);
  EXPECT_EQ(r.thickness_mm, 10.0f / k);
  EXPECT_NEAR(r.thickness_mm, 20.0f, 1e-4f);
  EXPECT_EQ(r.cut_speed_mm_min, 2000.0f * std::pow(k, 0.5f));
  EXPECT_NEAR(r.cut_speed_mm_min, 2000.0f * std::sqrt(0.5f), 1e-2f);
  EXPECT_EQ(r.pierce_time_s, 0.5f / k);
  EXPECT_EQ(r.flags, p.flags | kFlagAngleAdjusted);
  EXPECT_EQ(r.cut_height_mm, p.cut_height_mm);
  EXPECT_EQ(r.aux_id, p.aux_id);
}

TEST(TorchAngle, NinetyTinyAndNegativeAnglesReturnBase) {
  const CuttingParameter p = Record(1, 1, 10.0f, 2000.0f);
  for (float angle : {90.0f, 0.0f, 0.0009f, -30.0f}) {
    EXPECT_TRUE(SameBytes(T::AdjustForTorchAngle(p, angle), p)) << angle;
  }
  EXPECT_EQ(T::AdjustForTorchAngle(p, 0.001f).flags & kFlagAngleAdjusted, kFlagAngleAdjusted);
}

TEST(EffectiveThickness, DocumentedValues) {
  using Sparlane::Database;
  EXPECT_EQ(Database::CalculateEffectiveThickness(10.0f, 0.0f), 10.0f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(10.0f, 45.0f),
            10.0f / std::cos(45.0f * 3.1415927f / 180.0f));
  EXPECT_NEAR(Database::CalculateEffectiveThickness(10.0f, 45.0f), 14.142f, 1e-3f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(10.0f, 90.0f), 1000.0f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(10.0f, 91.0f), 10.0f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(10.0f, -1.0f), 10.0f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(0.0f, 30.0f), 0.0f);
  EXPECT_EQ(Database::CalculateEffectiveThickness(-5.0f, 30.0f), 0.0f);
}

}  // namespace
}  // namespace query_test
