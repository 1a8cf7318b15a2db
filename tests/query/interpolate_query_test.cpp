// Every branch of Database::Interpolate with its confidence, worked out here
// in float in the documented order.
#include <cmath>
#include <limits>

#include "query_fixture.h"

namespace query_test {
namespace {

using Sparlane::kFlagDerived;
namespace T = Sparlane::Testing;

class InterpolateQuery : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeCatalogue(db, 3, 2);
    CuttingParameter thick = Record(1, 1, 10.0f, 1000.0f);
    thick.pierce_height_mm = 5.0f;
    thick.current_amps = 130;
    LoadRecords(db, {Record(1, 1, 5.0f, 3000.0f), thick, Record(1, 2, 4.0f, 2222.0f),
                     Record(2, 1, 1.0f, 500.0f)});
  }
  CuttingParameter At(std::size_t pos) const { return db.GetParameters()[pos]; }
  Database db;
};

TEST_F(InterpolateQuery, MidpointInterpolatesEveryFieldWithFullConfidence) {
  const auto r = db.Interpolate("Mat1", 7.5f, "M1");
  EXPECT_TRUE(SameBytes(r.parameter, T::InterpolateLinear(At(0), At(1), 7.5f)));
  EXPECT_EQ(r.parameter.cut_speed_mm_min, 2000.0f);
  EXPECT_EQ(r.parameter.pierce_height_mm, 4.0f);
  EXPECT_EQ(r.parameter.current_amps, 98);
  EXPECT_EQ(r.parameter.flags & kFlagDerived, kFlagDerived);
  EXPECT_EQ(r.confidence, 1.0f);
  EXPECT_FALSE(r.extrapolated);
}

TEST_F(InterpolateQuery, ConfidenceFallsTowardEitherRecord) {
  const float t = 6.0f;
  const auto r = db.Interpolate("Mat1", t, "M1");
  EXPECT_EQ(r.confidence, 1.0f - std::fabs((t - 5.0f) / (10.0f - 5.0f) - 0.5f) * 0.4f);
  EXPECT_FALSE(r.extrapolated);
}

TEST_F(InterpolateQuery, RecordAtRequestedThicknessIsReturnedUnchanged) {
  for (float t : {5.0f, 4.9995f}) {
    const auto r = db.Interpolate("Mat1", t, "M1");
    EXPECT_TRUE(SameBytes(r.parameter, At(0))) << t;  // no derived bit
    EXPECT_EQ(r.confidence, 1.0f);
    EXPECT_FALSE(r.extrapolated);
  }
}

TEST_F(InterpolateQuery, RecordJustBelowIsNotAHit) {
  const float t = 5.0005f;
  const auto r = db.Interpolate("Mat1", t, "M1");
  EXPECT_TRUE(SameBytes(r.parameter, T::InterpolateLinear(At(0), At(1), t)));
  EXPECT_EQ(r.confidence, 1.0f - std::fabs((t - 5.0f) / (10.0f - 5.0f) - 0.5f) * 0.4f);
  EXPECT_NEAR(r.confidence, 0.8f, 1e-4f);
}

TEST_F(InterpolateQuery, AboveTheTableExtrapolatesFromThickestWithFixedConfidence) {
  const auto r = db.Interpolate("Mat1", 20.0f, "M1");
  EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(At(1), 20.0f)));
  EXPECT_EQ(r.parameter.cut_speed_mm_min, 1000.0f / std::sqrt(2.0f));
  EXPECT_EQ(r.parameter.pierce_height_mm, 5.0f * 1.1f);
  EXPECT_EQ(r.parameter.pierce_time_s, 0.5f * std::sqrt(2.0f));
  EXPECT_EQ(r.confidence, 0.3f);
  EXPECT_TRUE(r.extrapolated);
}

TEST_F(InterpolateQuery, BelowTheTableUsesTheDistanceRule) {
  const auto r = db.Interpolate("Mat1", 2.5f, "M1");
  EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(At(0), 2.5f)));
  EXPECT_EQ(r.parameter.cut_speed_mm_min, 3000.0f * std::pow(2.0f, 0.7f));
  EXPECT_EQ(r.parameter.pierce_time_s, 0.5f * 0.5f);
  EXPECT_EQ(r.confidence, std::max(0.7f - 2.5f / 5.0f * 0.5f, 0.1f));
  EXPECT_NEAR(r.confidence, 0.45f, 1e-6f);
  EXPECT_TRUE(r.extrapolated);
}

TEST_F(InterpolateQuery, FarBelowTheTableBottomsOutAtOneTenth) {
  LoadRecords(db, {Record(1, 1, 50.0f), Record(1, 1, 51.0f)});
  const auto r = db.Interpolate("Mat1", 1.0f, "M1");
  EXPECT_EQ(r.confidence, 0.1f);
  EXPECT_TRUE(r.extrapolated);
}

TEST_F(InterpolateQuery, SingleRecordExtrapolatesEitherWayWithFixedConfidence) {
  const auto below = db.Interpolate("Mat1", 2.0f, "M2");
  EXPECT_TRUE(SameBytes(below.parameter, T::ExtrapolateConservative(At(2), 2.0f)));
  EXPECT_EQ(below.confidence, 0.3f);
  EXPECT_TRUE(below.extrapolated);
  const auto above = db.Interpolate("Mat1", 9.0f, "M2");
  EXPECT_TRUE(SameBytes(above.parameter, T::ExtrapolateConservative(At(2), 9.0f)));
  EXPECT_EQ(above.confidence, 0.3f);
}

TEST_F(InterpolateQuery, EqualThicknessesBelowRequestGoToTheLaterRecord) {
  // Two 5 mm records: dl == du, so the upper (later) one is the source, and
  // the span of zero gives 0.3.
  LoadRecords(db, {Record(1, 1, 5.0f, 3000.0f), Record(1, 1, 5.0f, 3500.0f), Record(1, 1, 9.0f)});
  const auto r = db.Interpolate("Mat1", 2.0f, "M1");
  EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(At(1), 2.0f)));
  EXPECT_EQ(r.confidence, 0.3f);
  EXPECT_TRUE(r.extrapolated);
}

TEST_F(InterpolateQuery, NoRecordsForPairCountsAsNotFound) {
  const auto r = db.Interpolate("Mat2", 5.0f, "M2");
  EXPECT_TRUE(SameBytes(r.parameter, CuttingParameter{}));
  EXPECT_EQ(r.confidence, 0.0f);
  EXPECT_FALSE(r.extrapolated);
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 1u);
  EXPECT_EQ(m.queries_not_found, 1u);
}

TEST_F(InterpolateQuery, BadInputUnknownNamesAndNotLoadedAreUncounted) {
  for (float t : {-0.5f, std::numeric_limits<float>::infinity(), std::nanf("")}) {
    const auto r = db.Interpolate("Mat1", t, "M1");
    EXPECT_EQ(r.confidence, 0.0f);
    EXPECT_TRUE(SameBytes(r.parameter, CuttingParameter{}));
  }
  EXPECT_EQ(db.Interpolate("Mat9", 5.0f, "M1").confidence, 0.0f);
  EXPECT_EQ(db.Interpolate("Mat1", 5.0f, "M9").confidence, 0.0f);
  db.Close();
  EXPECT_EQ(db.Interpolate("Mat1", 5.0f, "M1").confidence, 0.0f);
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 0u);
}

TEST_F(InterpolateQuery, ZeroThicknessExtrapolatesToInfiniteSpeed) {
  const auto r = db.Interpolate("Mat1", 0.0f, "M1");
  EXPECT_TRUE(std::isinf(r.parameter.cut_speed_mm_min));
  EXPECT_EQ(r.confidence, std::max(0.7f - 5.0f / 5.0f * 0.5f, 0.1f));
}

TEST_F(InterpolateQuery, AppendedPairIsFoundByTheWholeTableBisection) {
  ASSERT_EQ(db.AddParameter(Record(2, 3, 8.0f, 900.0f)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(Record(2, 3, 12.0f, 700.0f)), ErrorCode::Success);
  const auto r = db.Interpolate("Mat2", 10.0f, "M3");
  EXPECT_EQ(r.parameter.cut_speed_mm_min, 800.0f);
  EXPECT_EQ(r.confidence, 1.0f);
}

TEST_F(InterpolateQuery, NaNRecordAboveGivesNaNConfidenceCountedNotFound) {
  LoadRecords(db, {Record(1, 1, 5.0f), Record(1, 1, std::nanf(""))});
  const auto r = db.Interpolate("Mat1", 7.0f, "M1");
  EXPECT_TRUE(std::isnan(r.confidence));
  EXPECT_TRUE(r.extrapolated);
  EXPECT_EQ(db.GetPerformanceMetrics().queries_not_found, 1u);
}

}  // namespace
}  // namespace query_test
