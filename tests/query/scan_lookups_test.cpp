#include <cfloat>
#include <cmath>

#include "query_fixture.h"

namespace query_test {
namespace {

TEST(NearestLookup, EqualDistanceGoesToEarlierRecord) {
  Database db;
  MakeCatalogue(db, 1, 1);
  LoadRecords(db, {Record(1, 1, 5.9f, 1000), Record(1, 1, 6.1f, 2000)});
  ASSERT_EQ(std::fabs(5.9f - 6.0f), std::fabs(6.1f - 6.0f));  // equal in float
  auto r = db.FindNearest("Mat1", 6.0f, "M1");
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->thickness_mm, 5.9f);
}

TEST(NearestLookup, StrictlyCloserLaterRecordWins) {
  Database db;
  MakeCatalogue(db, 1, 1);
  LoadRecords(db, {Record(1, 1, 5.0f, 1000), Record(1, 1, 6.5f, 2000), Record(1, 1, 7.0f, 3000)});
  auto r = db.FindNearest("Mat1", 6.6f, "M1");
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->cut_speed_mm_min, 2000.0f);
}

TEST(NearestLookup, ScansWholeTableIncludingAppendedRecords) {
  Database db;
  MakeCatalogue(db, 2, 1);
  LoadRecords(db, {Record(1, 1, 2.0f, 1000), Record(1, 2, 6.0f, 1500)});
  ASSERT_EQ(db.AddParameter(Record(1, 1, 6.2f, 3000)), ErrorCode::Success);
  auto r = db.FindNearest("Mat1", 6.0f, "M1");
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->cut_speed_mm_min, 3000.0f);
}

TEST(NearestLookup, UnknownNamesNotLoadedAndNoRecordsAreEmpty) {
  Database db;
  EXPECT_FALSE(db.FindNearest("Mat1", 6.0f, "M1").has_value());
  MakeCatalogue(db, 2, 1);
  LoadRecords(db, {Record(1, 1, 2.0f)});
  EXPECT_FALSE(db.FindNearest("Mat1", 6.0f, "M9").has_value());
  EXPECT_FALSE(db.FindNearest("Mat9", 6.0f, "M1").has_value());
  EXPECT_FALSE(db.FindNearest("Mat1", 6.0f, "M2").has_value());
  EXPECT_FALSE(db.FindNearest("Mat1", std::nanf(""), "M1").has_value());
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 0u);  // never counted
  db.Close();
  EXPECT_FALSE(db.FindNearest("Mat1", 2.0f, "M1").has_value());
}

TEST(NearestLookup, NaNRecordThicknessIsNeverNearest) {
  Database db;
  MakeCatalogue(db, 1, 1);
  LoadRecords(db, {Record(1, 1, std::nanf(""), 1000), Record(1, 1, 50.0f, 2000)});
  auto r = db.FindNearest("Mat1", 1.0f, "M1");
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->cut_speed_mm_min, 2000.0f);
}

class MachineLookup : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(db.Create(), ErrorCode::Success);
    ASSERT_EQ(db.AddMachine("V1", "M1", ""), ErrorCode::Success);
    ASSERT_EQ(db.AddMachine("V2", "M2", ""), ErrorCode::Success);
    ASSERT_EQ(db.AddMaterial("Mat1"), ErrorCode::Success);
  }
  Database db;
};

TEST_F(MachineLookup, EmptyVendorReturnsEveryVendorsRecords) {
  LoadRecords(db, {Record(1, 1, 2.0f, 1000, 1), Record(1, 1, 3.0f, 1100, 2),
                   Record(1, 2, 3.0f, 1200, 2)});
  auto all = db.FindByMachine("", "M1");
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all[0].cut_speed_mm_min, 1000.0f);
  EXPECT_EQ(all[1].cut_speed_mm_min, 1100.0f);
  auto v2 = db.FindByMachine("V2", "M1");
  ASSERT_EQ(v2.size(), 1u);
  EXPECT_EQ(v2[0].cut_speed_mm_min, 1100.0f);
}

TEST_F(MachineLookup, UnknownVendorIsEmptyEvenForKnownMachine) {
  LoadRecords(db, {Record(1, 1, 2.0f)});
  EXPECT_TRUE(db.FindByMachine("V9", "M1").empty());
  EXPECT_TRUE(db.FindByMachine("", "M9").empty());
}

TEST_F(MachineLookup, IndexedSpanIsTakenAsItLies) {
  // M1 at positions 0 and 2, M2 at 1: the span (first 0, count 2) holds 0 and 1.
  LoadRecords(db, {Record(1, 1, 2.0f, 1000), Record(1, 2, 3.0f, 2000), Record(1, 1, 4.0f, 3000)});
  auto r = db.FindByMachine("", "M1");
  ASSERT_EQ(r.size(), 2u);
  EXPECT_EQ(r[0].cut_speed_mm_min, 1000.0f);
  EXPECT_EQ(r[1].cut_speed_mm_min, 2000.0f);
  EXPECT_EQ(r[1].machine_model_id, 2);
}

TEST_F(MachineLookup, MachineWithoutIndexEntryIsScanned) {
  LoadRecords(db, {Record(1, 1, 2.0f, 1000)});
  ASSERT_EQ(db.AddParameter(Record(1, 2, 3.0f, 2000, 2)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(Record(1, 1, 5.0f, 2500, 1)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(Record(1, 2, 4.0f, 3000, 1)), ErrorCode::Success);
  auto any = db.FindByMachine("", "M2");
  ASSERT_EQ(any.size(), 2u);
  EXPECT_EQ(any[0].cut_speed_mm_min, 2000.0f);
  EXPECT_EQ(any[1].cut_speed_mm_min, 3000.0f);
  auto v1 = db.FindByMachine("V1", "M2");
  ASSERT_EQ(v1.size(), 1u);
  EXPECT_EQ(v1[0].cut_speed_mm_min, 3000.0f);
  // M1 is indexed with count 1, so its appended record stays outside.
  EXPECT_EQ(db.FindByMachine("", "M1").size(), 1u);
}

TEST_F(MachineLookup, NotLoadedIsEmpty) {
  LoadRecords(db, {Record(1, 1, 2.0f)});
  db.Close();
  EXPECT_TRUE(db.FindByMachine("", "M1").empty());
}

TEST(MaterialLookup, ReturnsEveryRecordOfTheMaterialInTableOrder) {
  Database db;
  MakeCatalogue(db, 2, 2);
  LoadRecords(db, {Record(2, 1, 9.0f, 1), Record(1, 1, 3.0f, 2), Record(2, 2, 1.0f, 3)});
  ASSERT_EQ(db.AddParameter(Record(2, 1, 4.0f, 4)), ErrorCode::Success);
  auto r = db.FindByMaterial("Mat2");
  ASSERT_EQ(r.size(), 3u);
  EXPECT_EQ(r[0].cut_speed_mm_min, 1.0f);
  EXPECT_EQ(r[1].cut_speed_mm_min, 3.0f);
  EXPECT_EQ(r[2].cut_speed_mm_min, 4.0f);
  EXPECT_TRUE(db.FindByMaterial("Mat9").empty());
  db.Close();
  EXPECT_TRUE(db.FindByMaterial("Mat2").empty());
}

TEST(ThicknessRange, UnknownMaterialGivesTheStartValue) {
  Database db;
  MakeCatalogue(db, 1, 1);
  LoadRecords(db, {Record(1, 1, 2.0f)});
  const auto r = db.GetSupportedThicknessRange("Nope", "");
  EXPECT_EQ(r.min_thickness_mm, FLT_MAX);
  EXPECT_EQ(r.max_thickness_mm, -FLT_MAX);
  EXPECT_EQ(r.parameter_count, 0);
  EXPECT_FALSE(r.valid);
  const auto unknown_machine = db.GetSupportedThicknessRange("Mat1", "M9");
  EXPECT_EQ(unknown_machine.min_thickness_mm, FLT_MAX);
  EXPECT_EQ(unknown_machine.parameter_count, 0);
  EXPECT_FALSE(unknown_machine.valid);
}

TEST(ThicknessRange, SpansMaterialOnAnyOrOneMachine) {
  Database db;
  MakeCatalogue(db, 2, 2);
  LoadRecords(db, {Record(1, 1, 2.0f), Record(1, 2, 25.0f), Record(2, 1, 1.0f),
                   Record(1, 1, 12.0f)});
  const auto any = db.GetSupportedThicknessRange("Mat1", "");
  EXPECT_EQ(any.min_thickness_mm, 2.0f);
  EXPECT_EQ(any.max_thickness_mm, 25.0f);
  EXPECT_EQ(any.parameter_count, 3);
  EXPECT_TRUE(any.valid);
  const auto m1 = db.GetSupportedThicknessRange("Mat1", "M1");
  EXPECT_EQ(m1.min_thickness_mm, 2.0f);
  EXPECT_EQ(m1.max_thickness_mm, 12.0f);
  EXPECT_EQ(m1.parameter_count, 2);
  const auto none = db.GetSupportedThicknessRange("Mat2", "M2");
  EXPECT_EQ(none.parameter_count, 0);
  EXPECT_FALSE(none.valid);
  db.Close();
  EXPECT_FALSE(db.GetSupportedThicknessRange("Mat1", "").valid);
}

TEST(ThicknessRange, NaNIsCountedButMovesNoBoundAndFirstSignedZeroStays) {
  Database db;
  MakeCatalogue(db, 1, 1);
  LoadRecords(db, {Record(1, 1, std::nanf("")), Record(1, 1, -0.0f), Record(1, 1, 0.0f)});
  const auto r = db.GetSupportedThicknessRange("Mat1", "M1");
  EXPECT_EQ(r.parameter_count, 3);
  EXPECT_TRUE(std::signbit(r.min_thickness_mm));
  EXPECT_EQ(r.min_thickness_mm, 0.0f);
  EXPECT_TRUE(std::signbit(r.max_thickness_mm));
}

}  // namespace
}  // namespace query_test
