// The span of a material and machine on tables out of order: the material's
// run is found over the whole table, the machine's bounds within that run
// compare the machine id alone.  Checked against the literal bisections on
// random permutations, on appended records and on a loaded file whose order
// separates the readings.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <unistd.h>

#include "literal_queries.h"
#include "query/record_search.h"
#include "query_fixture.h"

namespace query_test {
namespace {

// Names for ids 1..6; material and machine id 6 have no name on purpose.
void NameSixEach(Database& db) {
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"V1", "V2"});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {"M1", "M2", "M3", "M4", "M5"});
  DatabaseAccess::SetNames(db, NameKind::kMaterial, {"A", "B", "C", "D", "E"});
}

CuttingParameter RandomRow(std::mt19937& rng) {
  auto pick = [&](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  static const float kThickness[] = {0.5f, 1.0f, 2.0f, 3.0f, 6.0f, 6.0f, 10.0f, 12.0f, 25.0f};
  float t = kThickness[pick(0, 8)];
  if (pick(0, 19) == 0) t = std::nanf("");
  CuttingParameter r = Record(static_cast<std::uint16_t>(pick(0, 6)),
                              static_cast<std::uint16_t>(pick(0, 6)), t,
                              static_cast<float>(pick(1, 8) * 500));
  r.current_amps = static_cast<std::uint16_t>(pick(20, 200));
  return r;
}

// Span, FindExact and Interpolate against the literal transcription for
// every name pair and a spread of thicknesses.
void ExpectLiteralAnswers(const Database& db, std::mt19937& rng) {
  const Sparlane::Store& store = DatabaseAccess::Body(db);
  const LiteralQueries literal(db);
  static const char* kMaterials[] = {"A", "B", "C", "D", "E"};
  static const char* kMachines[] = {"M1", "M2", "M3", "M4", "M5"};
  static const float kAsked[] = {0.0f, 0.7f, 1.0f, 2.5f, 6.0f, 8.0f, 11.0f, 40.0f};
  for (std::uint16_t mat = 0; mat <= 6; ++mat) {
    for (std::uint16_t mach = 0; mach <= 6; ++mach) {
      const auto want = literal.PairSpan(mat, mach);
      const auto plain = Sparlane::BisectPairSpan(store.records(), mat, mach);
      ASSERT_EQ(plain.first, want.first) << "material " << mat << " machine " << mach;
      ASSERT_EQ(plain.first + plain.count, want.second) << "material " << mat << " machine " << mach;
      const auto indexed = Sparlane::FindPairSpan(store, mat, mach);
      ASSERT_EQ(indexed.count, plain.count);
      if (plain.count != 0) {
        ASSERT_EQ(indexed.first, plain.first);
      }
    }
  }
  for (const char* mat : kMaterials) {
    for (const char* mach : kMachines) {
      for (float t : kAsked) {
        const float tol = static_cast<float>(std::uniform_int_distribution<int>(0, 10)(rng)) / 10.0f;
        const auto got = db.FindExact(mat, t, mach, tol);
        const auto exact = literal.FindExact(mat, t, mach, tol);
        ASSERT_EQ(got.has_value(), exact.has_value()) << mat << " " << t << " " << mach;
        if (got) {
          ASSERT_TRUE(SameBytes(*got, *exact));
        }
        const auto gi = db.Interpolate(mat, t, mach);
        const auto wi = literal.Interpolate(mat, t, mach);
        ASSERT_TRUE(SameBytes(gi.parameter, wi.parameter)) << mat << " " << t << " " << mach;
        ASSERT_EQ(std::memcmp(&gi.confidence, &wi.confidence, sizeof(float)), 0);
        ASSERT_EQ(gi.extrapolated, wi.extrapolated);
      }
    }
  }
}

TEST(PairSpanOutOfOrder, RandomPermutationsGiveTheLiteralSpanAndAnswers) {
  std::mt19937 rng(1010);
  for (int round = 0; round < 300; ++round) {
    Database db;
    NameSixEach(db);
    std::vector<CuttingParameter> rows(std::uniform_int_distribution<std::size_t>(0, 48)(rng));
    for (auto& r : rows) r = RandomRow(rng);
    // Start from the written order, then permute: some rounds keep it.
    std::vector<std::size_t> at(rows.size());
    for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
    std::stable_sort(at.begin(), at.end(), [&](std::size_t i, std::size_t j) {
      const auto& a = rows[i];
      const auto& b = rows[j];
      if (a.material_id != b.material_id) return a.material_id < b.material_id;
      if (a.machine_model_id != b.machine_model_id) return a.machine_model_id < b.machine_model_id;
      return a.thickness_mm < b.thickness_mm;
    });
    if (round % 3 != 0) std::shuffle(at.begin(), at.end(), rng);
    std::vector<CuttingParameter> table;
    for (std::size_t i : at) table.push_back(rows[i]);
    LoadRecords(db, table);
    ExpectLiteralAnswers(db, rng);
  }
}

TEST(PairSpanOutOfOrder, AppendedRecordsGiveTheLiteralSpanAndAnswers) {
  std::mt19937 rng(2020);
  for (int round = 0; round < 200; ++round) {
    Database db;
    NameSixEach(db);
    std::vector<CuttingParameter> rows(std::uniform_int_distribution<std::size_t>(0, 30)(rng));
    for (auto& r : rows) r = RandomRow(rng);
    std::sort(rows.begin(), rows.end(), [](const CuttingParameter& a, const CuttingParameter& b) {
      if (a.material_id != b.material_id) return a.material_id < b.material_id;
      return a.machine_model_id < b.machine_model_id;
    });
    LoadRecords(db, rows);
    // Appends through the public call: valid ids and thickness only, and no
    // rebuild, so they land after their pair's run.
    const int appends = std::uniform_int_distribution<int>(1, 8)(rng);
    for (int i = 0; i < appends; ++i) {
      CuttingParameter r = RandomRow(rng);
      r.vendor_id = 1;
      r.material_id = static_cast<std::uint16_t>(1 + r.material_id % 5);
      r.machine_model_id = static_cast<std::uint16_t>(1 + r.machine_model_id % 5);
      if (!(r.thickness_mm > 0)) r.thickness_mm = 4.0f;
      ASSERT_EQ(db.AddParameter(r), ErrorCode::Success) << db.GetLastError();
    }
    ExpectLiteralAnswers(db, rng);
  }
}

// A loaded file whose material ids by position are 1 x7, 512 x3, 256 x2,
// 0 x4, 18500, 0 x3; machine ids 1 x5 then 2 x2 in the material's run.  The
// material's run is positions 0-6 and the machine's bounds within it 5 and
// 7, so 360 mm lies past record 6 and is extrapolated from it alone.
TEST(PairSpanOutOfOrder, LoadedFileExtrapolatesFromTheLastRecordOfThePairsRun) {
  const std::uint16_t kMaterials[20] = {1,   1,   1, 1, 1, 1, 1, 512, 512, 512,
                                        256, 256, 0, 0, 0, 0, 18500, 0, 0, 0};
  Database source;
  ASSERT_EQ(source.Create(), ErrorCode::Success);
  DatabaseAccess::SetNames(source, NameKind::kVendor, {"Vendor"});
  DatabaseAccess::SetNames(source, NameKind::kMachine, {"AIR-45A", "AIR-65A"});
  DatabaseAccess::SetNames(source, NameKind::kMaterial, {"Mild steel"});
  std::vector<CuttingParameter> table(20);  // all zero but the material ids
  for (std::size_t i = 0; i < 20; ++i) table[i].material_id = kMaterials[i];
  for (std::size_t i = 0; i < 7; ++i) {
    table[i] = Record(1, i < 5 ? 1 : 2, 2.0f + static_cast<float>(i), 4000.0f - 100.0f * i);
  }
  table[5].thickness_mm = 1.0f;
  table[6].thickness_mm = -2.8e-17f;
  table[6].cut_speed_mm_min = 3100.0f;
  DatabaseAccess::Records(source) = table;  // unchecked, as a hostile writer would
  char path[] = "/tmp/sparlane-pair-span-XXXXXX";
  const int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  close(fd);
  ASSERT_EQ(source.SaveToBinary(path, Sparlane::CompressionType::None), ErrorCode::Success);

  Database db;
  ASSERT_EQ(db.LoadFromBinary(path), ErrorCode::Success);
  std::remove(path);
  const auto span = Sparlane::FindPairSpan(DatabaseAccess::Body(db), 1, 2);
  EXPECT_EQ(span.first, 5u);
  EXPECT_EQ(span.count, 2u);

  const auto got = db.Interpolate("Mild steel", 360.0f, "AIR-65A");
  const CuttingParameter want = Sparlane::Testing::ExtrapolateConservative(table[6], 360.0f);
  EXPECT_TRUE(SameBytes(got.parameter, want));
  EXPECT_EQ(got.parameter.material_id, 1);
  EXPECT_EQ(got.parameter.machine_model_id, 2);
  EXPECT_TRUE(got.extrapolated);
  EXPECT_EQ(got.confidence, 0.3f);

  const LiteralQueries literal(db);
  const auto wi = literal.Interpolate("Mild steel", 360.0f, "AIR-65A");
  EXPECT_TRUE(SameBytes(got.parameter, wi.parameter));
  for (float t : {0.5f, 1.0f, 3.0f, 360.0f}) {
    for (float tol : {0.0f, 0.5f, 2.0f}) {
      const auto a = db.FindExact("Mild steel", t, "AIR-65A", tol);
      const auto b = literal.FindExact("Mild steel", t, "AIR-65A", tol);
      ASSERT_EQ(a.has_value(), b.has_value());
      if (a) {
        EXPECT_TRUE(SameBytes(*a, *b));
      }
    }
  }
}

}  // namespace
}  // namespace query_test
