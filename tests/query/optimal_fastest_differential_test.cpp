// FindOptimal answers from the index of the fastest record per thickness of
// each material's bucket span.  These tests hold it against the literal walk
// over the span on tables made to stress that index: thinnest records that
// are not first (spans reaching into the next materials), more such spans
// open at once than the load follows, spans cut by the table's end and then
// appended to, duplicate thicknesses with equal speeds, -0.0 and 0.0, NaN
// and infinite thicknesses, speeds of 0, below 0 and NaN, and every kind of
// tolerance.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "literal_queries.h"
#include "query_fixture.h"

namespace query_test {
namespace {

constexpr int kMaterials = 12;

bool SameOptional(const std::optional<CuttingParameter>& a,
                  const std::optional<CuttingParameter>& b) {
  return a.has_value() == b.has_value() && (!a || SameBytes(*a, *b));
}

void MakeNames(Database& db) {
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"V"});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {"M1", "M2", "M3"});
  std::vector<std::string> materials;
  for (int m = 1; m <= kMaterials; ++m) materials.push_back("Mat" + std::to_string(m));
  DatabaseAccess::SetNames(db, NameKind::kMaterial, materials);
}

class Tables {
 public:
  explicit Tables(unsigned seed) : rng_(seed) {}
  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }

  float Thickness() {
    switch (Int(0, 12)) {
      case 0: return std::nanf("");
      case 1: return -0.0f;
      case 2: return 0.0f;
      case 3: return std::numeric_limits<float>::infinity();
      default: {
        static const float kSteps[] = {0.5f, 1.0f, 1.5f, 2.0f, 3.0f, 5.0f, 5.005f, 6.0f, 10.0f};
        return kSteps[Int(0, 8)];
      }
    }
  }

  float Speed() {
    switch (Int(0, 9)) {
      case 0: return std::nanf("");
      case 1: return 0.0f;
      case 2: return -500.0f;
      default: return static_cast<float>(Int(1, 4) * 1000);  // equal speeds are frequent
    }
  }

  // Materials in order, each run in any thickness order, so the thinnest
  // record (where the span starts) is anywhere in the run.
  std::vector<CuttingParameter> MaterialOrdered() {
    std::vector<CuttingParameter> t;
    for (int m = 1; m <= kMaterials; ++m) {
      if (Int(0, 3) == 0) continue;
      for (int i = Int(1, 25); i > 0; --i) t.push_back(Row(static_cast<std::uint16_t>(m)));
    }
    return t;
  }

  // Runs of 2^k records, largest first, thinnest last: every span reaches
  // past all later runs, so more spans are open at once than are followed.
  std::vector<CuttingParameter> NestedSpans() {
    std::vector<CuttingParameter> t;
    for (int m = 1; m <= kMaterials; ++m) {
      const int records = 4096 >> m;
      for (int i = 0; i < records; ++i) {
        CuttingParameter r = Row(static_cast<std::uint16_t>(m));
        r.thickness_mm = 1.0f + static_cast<float>((records - i) % 7);
        if (i == records - 1) r.thickness_mm = 0.5f;
        t.push_back(r);
      }
    }
    return t;
  }

  std::vector<CuttingParameter> Shuffled() {
    std::vector<CuttingParameter> t(static_cast<std::size_t>(Int(0, 80)));
    for (auto& r : t) r = Row(static_cast<std::uint16_t>(Int(0, kMaterials + 1)));
    return t;
  }

  CuttingParameter Row(std::uint16_t material) {
    CuttingParameter r = Record(material, static_cast<std::uint16_t>(Int(1, 3)), Thickness(), Speed());
    r.current_amps = static_cast<std::uint16_t>(Int(1, 400));  // tells equal-speed rows apart
    return r;
  }

  float Tolerance() {
    switch (Int(0, 9)) {
      case 0: return std::nanf("");
      case 1: return -1.0f;
      case 2: return 0.0f;
      case 3: return std::numeric_limits<float>::infinity();
      case 4: return 1e9f;
      default: return static_cast<float>(Int(0, 30)) / 10.0f;
    }
  }

  float Asked() {
    return Int(0, 2) == 0 ? static_cast<float>(Int(0, 120)) / 10.0f : std::fabs(Thickness());
  }

 private:
  std::mt19937 rng_;
};

// Every material by name, many thicknesses and tolerances.  Returns how many
// queries the fastest index could answer.
int Compare(const Database& db, Tables& tables) {
  LiteralQueries literal(db);
  const Sparlane::Store& store = DatabaseAccess::Body(db);
  int indexed = 0;
  for (int m = 1; m <= kMaterials; ++m) {
    const std::string material = "Mat" + std::to_string(m);
    if (store.record_indexes().Fastest(static_cast<std::uint16_t>(m), store.records().size())) {
      ++indexed;
    }
    for (int q = 0; q < 12; ++q) {
      const float t = tables.Asked();
      const float tol = tables.Tolerance();
      EXPECT_TRUE(SameOptional(db.FindOptimal(material, t, tol), literal.FindOptimal(material, t, tol)))
          << material << " t=" << t << " tol=" << tol;
    }
  }
  return indexed;
}

TEST(OptimalFastestIndex, MatchesTheWalkOnMaterialOrderedTables) {
  Tables tables(11);
  int indexed = 0;
  for (int round = 0; round < 400; ++round) {
    Database db;
    MakeNames(db);
    DatabaseAccess::LoadRecords(db, tables.MaterialOrdered());
    indexed += Compare(db, tables);
  }
  EXPECT_GT(indexed, 1000);
}

TEST(OptimalFastestIndex, MatchesTheWalkWhenManySpansAreOpenAtOnce) {
  Tables tables(12);
  for (int round = 0; round < 20; ++round) {
    Database db;
    MakeNames(db);
    DatabaseAccess::LoadRecords(db, tables.NestedSpans());
    EXPECT_EQ(Compare(db, tables), kMaterials);
  }
}

TEST(OptimalFastestIndex, MatchesTheWalkOnShuffledTables) {
  Tables tables(13);
  for (int round = 0; round < 400; ++round) {
    Database db;
    MakeNames(db);
    DatabaseAccess::LoadRecords(db, tables.Shuffled());
    Compare(db, tables);
  }
}

// Appended records lie outside every span, unless a span was cut short by
// the table's end: then the walk reads them and the index steps aside.
TEST(OptimalFastestIndex, MatchesTheWalkAfterAppends) {
  Tables tables(14);
  int cut_spans = 0;
  for (int round = 0; round < 300; ++round) {
    Database db;
    MakeNames(db);
    DatabaseAccess::LoadRecords(db, round % 2 ? tables.MaterialOrdered() : tables.Shuffled());
    const std::size_t before = db.GetParameters().size();
    for (int i = tables.Int(1, 6); i > 0; --i) {
      DatabaseAccess::Append(db, tables.Row(static_cast<std::uint16_t>(tables.Int(1, kMaterials))));
    }
    const Sparlane::RecordIndexes& indexes = DatabaseAccess::Body(db).record_indexes();
    if (!indexes.fastest_spans_fit) {
      ++cut_spans;
      for (int m = 1; m <= kMaterials; ++m) {
        EXPECT_EQ(indexes.Fastest(static_cast<std::uint16_t>(m), before + 1), nullptr);
      }
    }
    Compare(db, tables);
  }
  EXPECT_GT(cut_spans, 20);
}

// Buckets set by hand no longer match the entries, which step aside.
TEST(OptimalFastestIndex, HandSetBucketsAreWalked) {
  Tables tables(15);
  for (int round = 0; round < 200; ++round) {
    Database db;
    MakeNames(db);
    const std::vector<CuttingParameter> table = tables.MaterialOrdered();
    DatabaseAccess::LoadRecords(db, table);
    if (table.empty()) continue;
    const auto first = static_cast<std::uint64_t>(tables.Int(0, static_cast<int>(table.size()) - 1));
    const auto count = static_cast<std::uint64_t>(tables.Int(0, 10));
    DatabaseAccess::SetMaterialBuckets(db, 1, {{0.0f, 20.0f, first, count}});
    EXPECT_EQ(DatabaseAccess::Body(db).record_indexes().Fastest(1, table.size()), nullptr);
    Compare(db, tables);
  }
}

TEST(OptimalFastestIndex, EqualSpeedsAtDifferentThicknessesGiveTheEarliestRecord) {
  Database db;
  MakeNames(db);
  // Positions 0..3 of Mat1: the two 3000s within tolerance of 5.0 are at
  // positions 1 (5.005 mm) and 2 (5.0 mm); the earlier one wins.
  DatabaseAccess::LoadRecords(db, {Record(1, 1, 0.5f, 9000.0f), Record(1, 2, 5.005f, 3000.0f),
                                   Record(1, 3, 5.0f, 3000.0f), Record(1, 1, 6.0f, 2000.0f)});
  const auto best = db.FindOptimal("Mat1", 5.0f, 0.01f);
  ASSERT_TRUE(best.has_value());
  EXPECT_EQ(best->machine_model_id, 2);
  LiteralQueries literal(db);
  EXPECT_TRUE(SameOptional(best, literal.FindOptimal("Mat1", 5.0f, 0.01f)));
}

}  // namespace
}  // namespace query_test
