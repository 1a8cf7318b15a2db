#include <cmath>
#include <cstdio>
#include <string>

#include "query_fixture.h"

namespace query_test {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

class MetricsAndLog : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeCatalogue(db, 2, 2);
    LoadRecords(db, {Record(1, 1, 6.0f, 2600.0f), Record(1, 1, 10.0f, 1500.0f)});
  }
  // The line one query must have printed: its time is the only one counted.
  std::string ExpectedLine(const std::string& operation, const std::string& detail) const {
    const auto m = db.GetPerformanceMetrics();
    EXPECT_EQ(m.total_queries, 1u);
    char time[64];
    std::snprintf(time, sizeof time, "%.2f", m.max_query_time_us);
    return "[Sparlane] " + operation + ": " + detail + " (" + time + " \xC2\xB5s)\n";
  }
  Database db;
};

TEST(Metrics, FreshDatabaseReportsInitialValues) {
  Database db;
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 0u);
  EXPECT_EQ(m.queries_found, 0u);
  EXPECT_EQ(m.queries_not_found, 0u);
  EXPECT_EQ(m.avg_query_time_us, 0.0);
  EXPECT_EQ(m.max_query_time_us, 0.0);
  EXPECT_EQ(m.min_query_time_us, 1.0e9);
}

TEST_F(MetricsAndLog, OneMissGivesEqualLongestShortestAndAverage) {
  EXPECT_FALSE(db.FindExact("Mat1", 8.0f, "M1", 0.5f));
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 1u);
  EXPECT_EQ(m.queries_found, 0u);
  EXPECT_EQ(m.queries_not_found, 1u);
  EXPECT_EQ(m.max_query_time_us, m.min_query_time_us);
  EXPECT_EQ(m.avg_query_time_us, m.max_query_time_us);
  EXPECT_GE(m.min_query_time_us, 0.0);
}

TEST_F(MetricsAndLog, EveryTimedQueryKindIsCounted) {
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);    // found
  db.FindExact("Mat1", 7.0f, "M1", 0.1f);    // not found
  db.FindOptimal("Mat1", 6.0f, 0.1f);        // found
  db.FindOptimal("Mat1", 30.0f, 0.1f);       // not found
  db.Interpolate("Mat1", 8.0f, "M1");        // found (confidence > 0)
  db.Interpolate("Mat2", 8.0f, "M1");        // not found: no records
  // Untimed queries and early returns leave the counters alone.
  db.FindNearest("Mat1", 6.0f, "M1");
  db.FindByMachine("", "M1");
  db.FindByMaterial("Mat1");
  db.GetSupportedThicknessRange("Mat1", "");
  db.AdjustForMaxSpeed(Record(1, 1, 6.0f, 2600.0f), 100.0f);
  db.FindExact("Mat1", -1.0f, "M1", 0.1f);
  db.FindOptimal("Nope", 6.0f, 0.1f);
  db.Interpolate("Mat1", 6.0f, "Nope");
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 6u);
  EXPECT_EQ(m.queries_found, 3u);
  EXPECT_EQ(m.queries_not_found, 3u);
  EXPECT_LE(m.min_query_time_us, m.avg_query_time_us);
  EXPECT_LE(m.avg_query_time_us, m.max_query_time_us);
}

TEST_F(MetricsAndLog, ResetRestoresInitialValues) {
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);
  db.ResetPerformanceMetrics();
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 0u);
  EXPECT_EQ(m.queries_found, 0u);
  EXPECT_EQ(m.avg_query_time_us, 0.0);
  EXPECT_EQ(m.max_query_time_us, 0.0);
  EXPECT_EQ(m.min_query_time_us, 1.0e9);
}

TEST_F(MetricsAndLog, CountersSurviveCloseAndCreate) {
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);
  db.Close();
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 1u);
}

TEST_F(MetricsAndLog, RecordTracksTotalLongestAndShortest) {
  const Sparlane::QueryMetrics& metrics = DatabaseAccess::Body(db).metrics();
  metrics.Record(2.0, true);
  metrics.Record(0.5, false);
  metrics.Record(4.0, true);
  const auto m = db.GetPerformanceMetrics();
  EXPECT_EQ(m.total_queries, 3u);
  EXPECT_EQ(m.queries_found, 2u);
  EXPECT_EQ(m.queries_not_found, 1u);
  EXPECT_EQ(m.avg_query_time_us, 6.5 / 3.0);
  EXPECT_EQ(m.max_query_time_us, 4.0);
  EXPECT_EQ(m.min_query_time_us, 0.5);
}

TEST_F(MetricsAndLog, FindExactLogsFoundAndNotFound) {
  db.SetQueryLogging(true);
  CaptureStderr();
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);
  std::string out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("FindExact", "Mat1, 6.000000mm, M1 -> found"));
  db.ResetPerformanceMetrics();
  CaptureStderr();
  db.FindExact("Mat1", 7.25f, "M1", 0.1f);
  out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("FindExact", "Mat1, 7.250000mm, M1 -> not found"));
}

TEST_F(MetricsAndLog, FindOptimalLogsSpeedOrNotFound) {
  db.SetQueryLogging(true);
  CaptureStderr();
  db.FindOptimal("Mat1", 6.0f, 0.1f);
  std::string out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("FindOptimal", "Mat1, 6.000000mm -> 2600.000000 mm/min"));
  db.ResetPerformanceMetrics();
  CaptureStderr();
  db.FindOptimal("Mat1", 0.0f, 0.1f);
  out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("FindOptimal", "Mat1, 0.000000mm -> not found"));
}

TEST_F(MetricsAndLog, InterpolateLogsConfidenceAndExtrapolation) {
  db.SetQueryLogging(true);
  CaptureStderr();
  db.Interpolate("Mat1", 8.0f, "M1");
  std::string out = GetCapturedStderr();
  char conf[32];
  std::snprintf(conf, sizeof conf, "%f",
                static_cast<double>(1.0f - std::fabs((8.0f - 6.0f) / 4.0f - 0.5f) * 0.4f));
  EXPECT_EQ(out, ExpectedLine("Interpolate", std::string("Mat1, 8.000000mm, M1 -> conf=") + conf));
  db.ResetPerformanceMetrics();
  CaptureStderr();
  db.Interpolate("Mat1", 20.0f, "M1");
  out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("Interpolate",
                              "Mat1, 20.000000mm, M1 -> conf=0.300000 (extrapolated)"));
}

TEST_F(MetricsAndLog, InterpolateWithoutRecordsLogsZeroConfidence) {
  db.SetQueryLogging(true);
  CaptureStderr();
  db.Interpolate("Mat2", 5.0f, "M2");
  const std::string out = GetCapturedStderr();
  EXPECT_EQ(out, ExpectedLine("Interpolate", "Mat2, 5.000000mm, M2 -> conf=0.000000"));
  EXPECT_EQ(db.GetPerformanceMetrics().queries_not_found, 1u);
}

TEST_F(MetricsAndLog, EarlyReturnsAndUntimedQueriesPrintNothing) {
  db.SetQueryLogging(true);
  CaptureStderr();
  db.FindExact("Mat1", 6.0f, "Unknown", 0.1f);
  db.FindExact("Mat1", -2.0f, "M1", 0.1f);
  db.Interpolate("Unknown", 6.0f, "M1");
  db.FindOptimal("Mat1", std::nanf(""), 0.1f);
  db.FindNearest("Mat1", 6.0f, "M1");
  db.FindByMaterial("Mat1");
  db.FindByMachine("", "M1");
  db.GetSupportedThicknessRange("Mat1", "M1");
  EXPECT_EQ(GetCapturedStderr(), "");
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 0u);
}

TEST_F(MetricsAndLog, LoggingOffPrintsNothingAndSwitchTakesEffectNextQuery) {
  CaptureStderr();
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);
  db.Interpolate("Mat1", 8.0f, "M1");
  db.FindOptimal("Mat1", 6.0f, 0.1f);
  EXPECT_EQ(GetCapturedStderr(), "");
  db.SetQueryLogging(true);
  db.SetQueryLogging(false);
  CaptureStderr();
  db.FindExact("Mat1", 6.0f, "M1", 0.1f);
  EXPECT_EQ(GetCapturedStderr(), "");
}

TEST_F(MetricsAndLog, NamesAreLoggedAsGiven) {
  ASSERT_EQ(db.AddMaterial("Mild steel \xC3\xA9"), ErrorCode::Success);
  db.SetQueryLogging(true);
  CaptureStderr();
  db.FindExact("Mild steel \xC3\xA9", 6.0f, "M1", 0.1f);
  EXPECT_EQ(GetCapturedStderr(),
            ExpectedLine("FindExact", "Mild steel \xC3\xA9, 6.000000mm, M1 -> not found"));
}

}  // namespace
}  // namespace query_test
