// Queries from several threads on one loaded database: the counters add up,
// and (under the thread sanitizer) nothing races.
#include <atomic>
#include <thread>
#include <vector>

#include "query_fixture.h"

namespace query_test {
namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 2000;

void MakeTable(Database& db) {
  MakeCatalogue(db, 3, 3);
  std::vector<CuttingParameter> rows;
  for (std::uint16_t mat = 1; mat <= 3; ++mat) {
    for (std::uint16_t mach = 1; mach <= 3; ++mach) {
      for (int i = 1; i <= 8; ++i) rows.push_back(Record(mat, mach, 2.0f * i, 4000.0f - 300.0f * i));
    }
  }
  LoadRecords(db, rows);
}

TEST(Concurrency, CountersAddUpAcrossThreads) {
  Database db;
  MakeTable(db);
  std::atomic<int> mismatches{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&db, &mismatches, t] {
      for (int i = 0; i < kRounds; ++i) {
        // Per round: FindExact found + not found, Interpolate found,
        // FindOptimal found + not found, and uncounted queries.
        const std::string mat = "Mat" + std::to_string(1 + (i + t) % 3);
        if (!db.FindExact(mat, 4.0f, "M2", 0.1f)) ++mismatches;
        if (db.FindExact(mat, 5.0f, "M2", 0.1f)) ++mismatches;
        if (!(db.Interpolate(mat, 5.0f, "M1").confidence > 0.0f)) ++mismatches;
        if (!db.FindOptimal(mat, 6.0f, 0.5f)) ++mismatches;
        if (db.FindOptimal(mat, 90.0f, 0.5f)) ++mismatches;
        db.FindNearest(mat, 7.0f, "M3");
        db.FindByMaterial(mat);
        db.FindByMachine("", "M1");
        db.GetSupportedThicknessRange(mat, "");
        db.FindExact(mat, 5.0f, "Nope", 0.1f);
        db.GetPerformanceMetrics();
      }
    });
  }
  for (auto& th : threads) th.join();
  EXPECT_EQ(mismatches.load(), 0);
  const auto m = db.GetPerformanceMetrics();
  const std::uint64_t rounds = static_cast<std::uint64_t>(kThreads) * kRounds;
  EXPECT_EQ(m.total_queries, 5 * rounds);
  EXPECT_EQ(m.queries_found, 3 * rounds);
  EXPECT_EQ(m.queries_not_found, 2 * rounds);
  EXPECT_LE(m.min_query_time_us, m.avg_query_time_us);
  EXPECT_LE(m.avg_query_time_us, m.max_query_time_us);
}

TEST(Concurrency, RecordFromManyThreadsSumsExactly) {
  Database db;
  const Sparlane::QueryMetrics& metrics = DatabaseAccess::Body(db).metrics();
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&metrics, t] {
      // Quarter-microsecond steps add exactly in double.
      for (int i = 0; i < kRounds; ++i) metrics.Record(0.25 * (1 + (i + t) % 8), i % 2 == 0);
    });
  }
  for (auto& th : threads) th.join();
  const auto m = db.GetPerformanceMetrics();
  const double per_thread = 0.25 * (1 + 2 + 3 + 4 + 5 + 6 + 7 + 8) * (kRounds / 8);
  EXPECT_EQ(m.total_queries, static_cast<std::uint64_t>(kThreads) * kRounds);
  EXPECT_EQ(m.queries_found, m.queries_not_found);
  EXPECT_EQ(m.avg_query_time_us, per_thread * kThreads / (kThreads * kRounds));
  EXPECT_EQ(m.max_query_time_us, 2.0);
  EXPECT_EQ(m.min_query_time_us, 0.25);
}

TEST(Concurrency, ResetAndReadBesideQueriesAreSafe) {
  Database db;
  MakeTable(db);
  std::atomic<bool> stop{false};
  std::thread resetter([&] {
    while (!stop.load()) {
      db.ResetPerformanceMetrics();
      db.GetPerformanceMetrics();
    }
  });
  std::vector<std::thread> threads;
  for (int t = 0; t < 2; ++t) {
    threads.emplace_back([&db] {
      for (int i = 0; i < kRounds; ++i) db.FindExact("Mat1", 4.0f, "M1", 0.1f);
    });
  }
  for (auto& th : threads) th.join();
  stop = true;
  resetter.join();
  db.ResetPerformanceMetrics();
  EXPECT_EQ(db.GetPerformanceMetrics().total_queries, 0u);
}

}  // namespace
}  // namespace query_test
