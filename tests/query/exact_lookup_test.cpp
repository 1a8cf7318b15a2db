#include <cfloat>
#include <cmath>
#include <limits>

#include "query_fixture.h"

namespace query_test {
namespace {

class ExactLookup : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeCatalogue(db, 2, 2);
    // Sorted as files are written: material, machine, thickness.
    LoadRecords(db, {Record(1, 1, 2.0f, 4000), Record(1, 1, 6.0f, 3000), Record(1, 1, 10.0f, 2000),
                     Record(1, 2, 6.0f, 3100), Record(2, 1, 6.0f, 2500)});
  }
  std::uint64_t Queries() const { return db.GetPerformanceMetrics().total_queries; }
  Database db;
};

TEST_F(ExactLookup, FindsRecordWithinTolerance) {
  auto r = db.FindExact("Mat1", 6.05f, "M1", 0.1f);
  ASSERT_TRUE(r.has_value());
  EXPECT_TRUE(SameBytes(*r, db.GetParameters()[1]));
  auto other_machine = db.FindExact("Mat1", 6.0f, "M2", 0.1f);
  ASSERT_TRUE(other_machine.has_value());
  EXPECT_EQ(other_machine->cut_speed_mm_min, 3100.0f);
}

TEST_F(ExactLookup, NegativeInfiniteOrNaNThicknessIsEmptyAndUncounted) {
  EXPECT_FALSE(db.FindExact("Mat1", -0.5f, "M1", 100.0f));
  EXPECT_FALSE(db.FindExact("Mat1", std::numeric_limits<float>::infinity(), "M1", 1.0f));
  EXPECT_FALSE(db.FindExact("Mat1", -std::numeric_limits<float>::infinity(), "M1", 1.0f));
  EXPECT_FALSE(db.FindExact("Mat1", std::nanf(""), "M1", 1.0f));
  EXPECT_EQ(Queries(), 0u);
}

TEST_F(ExactLookup, ZeroThicknessIsSearchedAndCounted) {
  EXPECT_TRUE(db.FindExact("Mat1", 0.0f, "M1", 2.0f).has_value());
  EXPECT_FALSE(db.FindExact("Mat1", 0.0f, "M1", 1.0f).has_value());
  EXPECT_TRUE(db.FindExact("Mat1", -0.0f, "M1", 2.0f).has_value());
  EXPECT_EQ(Queries(), 3u);
}

TEST_F(ExactLookup, UnknownNamesAreEmptyAndUncounted) {
  EXPECT_FALSE(db.FindExact("Mat1", 6.0f, "Nope", 1.0f));
  EXPECT_FALSE(db.FindExact("Nope", 6.0f, "M1", 1.0f));
  EXPECT_FALSE(db.FindExact("mat1", 6.0f, "M1", 1.0f));  // case-sensitive
  EXPECT_EQ(Queries(), 0u);
}

TEST_F(ExactLookup, KnownNamesWithoutMatchCountAsNotFound) {
  EXPECT_FALSE(db.FindExact("Mat1", 8.0f, "M1", 0.5f));
  EXPECT_FALSE(db.FindExact("Mat2", 6.0f, "M2", 0.5f));  // pair has no records
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 2u);
  EXPECT_EQ(m.queries_found, 0u);
  EXPECT_EQ(m.queries_not_found, 2u);
}

TEST_F(ExactLookup, ToleranceZeroNeedsEqualThickness) {
  EXPECT_TRUE(db.FindExact("Mat1", 6.0f, "M1", 0.0f).has_value());
  EXPECT_FALSE(db.FindExact("Mat1", std::nextafter(6.0f, 7.0f), "M1", 0.0f).has_value());
}

TEST_F(ExactLookup, RecordExactlyToleranceAwayIsFound) {
  // |6.5 - 6.0| == 0.5 exactly in float.
  EXPECT_TRUE(db.FindExact("Mat1", 6.5f, "M1", 0.5f).has_value());
  EXPECT_FALSE(db.FindExact("Mat1", 6.5f, "M1", 0.4999f).has_value());
}

TEST_F(ExactLookup, BisectionBoundsAreRoundedInFloat) {
  // 6.5 - 0.49999997 rounds to 6.0: the record is neither below nor above
  // the rounded bounds, so the bisection takes it though the difference
  // test alone would not.
  const float tolerance = std::nextafter(0.5f, 0.0f);
  ASSERT_FALSE(std::fabs(6.0f - 6.5f) <= tolerance);
  ASSERT_EQ(6.5f - tolerance, 6.0f);
  EXPECT_TRUE(db.FindExact("Mat1", 6.5f, "M1", tolerance).has_value());
}

TEST_F(ExactLookup, NaNToleranceQualifiesNoBucket) {
  EXPECT_FALSE(db.FindExact("Mat1", 6.0f, "M1", std::nanf("")).has_value());
  EXPECT_EQ(db.GetPerformanceMetrics().queries_not_found, 1u);
}

TEST_F(ExactLookup, ReturnsFirstRecordTheBisectionMeetsNotTheClosest) {
  LoadRecords(db, {Record(1, 1, 1.0f), Record(1, 1, 2.0f), Record(1, 1, 3.0f, 3333),
                   Record(1, 1, 4.0f), Record(1, 1, 5.0f)});
  // The first probe is position 2 (3 mm), within 1.5 of 2.0 though 2 mm is closer.
  auto r = db.FindExact("Mat1", 2.0f, "M1", 1.5f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->thickness_mm, 3.0f);
}

TEST_F(ExactLookup, MaterialWithoutIndexEntryBisectsWholeTable) {
  // Records appended by AddParameter are outside every index until a rebuild.
  Database fresh;
  MakeCatalogue(fresh, 2, 2);
  ASSERT_EQ(fresh.AddParameter(Record(2, 1, 3.0f, 1000)), ErrorCode::Success);
  ASSERT_EQ(fresh.AddParameter(Record(2, 2, 3.0f, 1200)), ErrorCode::Success);
  ASSERT_EQ(DatabaseAccess::MaterialIndex(fresh).count(2), 0u);
  auto r = fresh.FindExact("Mat2", 3.0f, "M2", 0.0f);
  ASSERT_TRUE(r.has_value());
  EXPECT_EQ(r->cut_speed_mm_min, 1200.0f);
  EXPECT_FALSE(fresh.FindExact("Mat2", 4.0f, "M2", 0.5f).has_value());
  EXPECT_EQ(fresh.GetPerformanceMetrics().total_queries, 2u);
}

TEST_F(ExactLookup, IndexedMaterialIgnoresRecordsOutsideItsBucket) {
  // Appended after the rebuild: the bucket's span does not reach it.
  ASSERT_EQ(db.AddParameter(Record(1, 1, 20.0f)), ErrorCode::Success);
  EXPECT_FALSE(db.FindExact("Mat1", 20.0f, "M1", 0.1f).has_value());
}

TEST_F(ExactLookup, BucketSpanRunningPastTableEndStopsAtTheEnd) {
  // Thinnest record last: the bucket says first 2, count 3.
  LoadRecords(db, {Record(1, 1, 6.0f), Record(1, 1, 9.0f), Record(1, 1, 3.0f)});
  const auto bucket = DatabaseAccess::MaterialIndex(db).at(1).front();
  ASSERT_EQ(bucket.first, 2u);
  ASSERT_EQ(bucket.count, 3u);
  EXPECT_TRUE(db.FindExact("Mat1", 3.0f, "M1", 0.1f).has_value());
  EXPECT_FALSE(db.FindExact("Mat1", 9.0f, "M1", 0.1f).has_value());
}

TEST_F(ExactLookup, NotLoadedIsEmptyAndUncounted) {
  db.Close();
  EXPECT_FALSE(db.FindExact("Mat1", 6.0f, "M1", 1.0f).has_value());
  EXPECT_EQ(Queries(), 0u);
}

TEST_F(ExactLookup, LeavesLastErrorAlone) {
  EXPECT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  const std::string before = db.GetLastError();
  ASSERT_FALSE(before.empty());
  db.FindExact("Nope", 6.0f, "M1", 1.0f);
  db.FindExact("Mat1", 6.0f, "M1", 1.0f);
  db.FindNearest("Nope", 6.0f, "M1");
  db.Interpolate("Mat1", 7.0f, "M1");
  db.FindOptimal("Nope", 6.0f, 1.0f);
  EXPECT_EQ(db.GetLastError(), before);
}

}  // namespace
}  // namespace query_test
