// The per-material and per-pair position lists against the literal scans and
// bisections, on many random tables in every state the store can leave them
// in: sorted, sorted by pair only, unsorted, records appended without a
// rebuild, deleted and updated records, duplicate names, NaN, -0.0 and
// stray ids.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "literal_queries.h"
#include "query/record_search.h"
#include "query_fixture.h"

namespace query_test {
namespace {

enum class Order { kSorted, kPairOnly, kShuffled };

class RandomTables {
 public:
  explicit RandomTables(unsigned seed) : rng_(seed) {}

  int Int(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }

  float Thickness() {
    switch (Int(0, 9)) {
      case 0: return std::nanf("");
      case 1: return -0.0f;
      case 2: return 0.0f;
      case 3: return std::numeric_limits<float>::infinity();
      default: {
        static const float kSteps[] = {0.5f, 1.0f, 1.05f, 1.1f, 2.0f, 3.0f, 5.0f,
                                       5.0005f, 6.0f, 6.05f, 10.0f, 12.0f, 25.0f};
        return kSteps[Int(0, 12)];
      }
    }
  }

  // Stray ids far past the name tables, so the pair keys spread over a
  // grid too sparse to index directly.
  bool wide_ids = false;

  std::uint16_t Id(std::uint16_t wide) {
    const auto id = static_cast<std::uint16_t>(Int(0, 5));
    return wide_ids && id == 5 ? wide : id;
  }

  CuttingParameter Row() {
    // Ids 0 and one past the name tables are stray on purpose.
    CuttingParameter r = Record(Id(0xFFF0), Id(0xFFFF), Thickness(),
                                static_cast<float>(Int(0, 6) * 500), static_cast<std::uint16_t>(Int(1, 3)));
    r.current_amps = static_cast<std::uint16_t>(Int(1, 400));
    r.flags = static_cast<std::uint32_t>(Int(0, 3));
    return r;
  }

  std::vector<CuttingParameter> Table(Order order) {
    std::vector<CuttingParameter> rows(static_cast<std::size_t>(Int(0, 60)));
    for (auto& r : rows) r = Row();
    if (order == Order::kShuffled) return rows;
    // Sorted through positions: the sort's scratch buffer would not keep
    // the records' 64-byte alignment.
    std::vector<std::size_t> at(rows.size());
    for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
    std::stable_sort(at.begin(), at.end(), [&](std::size_t i, std::size_t j) {
      const CuttingParameter& a = rows[i];
      const CuttingParameter& b = rows[j];
      if (a.material_id != b.material_id) return a.material_id < b.material_id;
      if (a.machine_model_id != b.machine_model_id) return a.machine_model_id < b.machine_model_id;
      return order == Order::kSorted && a.thickness_mm < b.thickness_mm;
    });
    std::vector<CuttingParameter> sorted;
    sorted.reserve(rows.size());
    for (std::size_t i : at) sorted.push_back(rows[i]);
    return sorted;
  }

  std::mt19937& rng() { return rng_; }

 private:
  std::mt19937 rng_;
};

bool SameFloat(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The position lists describe the table as it is, so the queries use them.
bool PositionsCurrent(const Database& db) {
  return DatabaseAccess::Body(db).current_pair_index() != nullptr;
}

bool SameOptional(const std::optional<CuttingParameter>& a,
                  const std::optional<CuttingParameter>& b) {
  return a.has_value() == b.has_value() && (!a || SameBytes(*a, *b));
}

bool SameList(const std::vector<CuttingParameter>& a, const std::vector<CuttingParameter>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!SameBytes(a[i], b[i])) return false;
  }
  return true;
}

// Names with a duplicate: "A" is id 3, so records of material 1 are
// unreachable by name; "Q" is unknown.
void MakeNames(Database& db) {
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"V1", "V2", "V3"});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {"M1", "M2", "M1", "M4"});
  DatabaseAccess::SetNames(db, NameKind::kMaterial, {"A", "B", "A", "D"});
}

class Differential {
 public:
  Differential(Database& db, RandomTables& rnd) : db_(db), rnd_(rnd) {}

  void CompareAll() {
    LiteralQueries literal(db_);
    const std::vector<CuttingParameter> table = db_.GetParameters();
    static const char* kMaterials[] = {"A", "B", "D", "Q"};
    static const char* kMachines[] = {"M1", "M2", "M4", "Q", ""};
    for (int q = 0; q < 40; ++q) {
      const std::string mat = kMaterials[rnd_.Int(0, 3)];
      const std::string mach = kMachines[rnd_.Int(0, 4)];
      const float t = rnd_.Int(0, 4) == 0 ? static_cast<float>(rnd_.Int(0, 300)) / 10.0f
                                          : rnd_.Thickness();
      const float tol = static_cast<float>(rnd_.Int(0, 20)) / 10.0f;
      ++queries_;
      EXPECT_TRUE(SameOptional(db_.FindNearest(mat, t, mach), literal.FindNearest(mat, t, mach)));
      EXPECT_TRUE(SameList(db_.FindByMaterial(mat), literal.FindByMaterial(mat)));
      const auto got = db_.GetSupportedThicknessRange(mat, mach);
      const auto want = literal.Range(mat, mach);
      EXPECT_TRUE(SameFloat(got.min_thickness_mm, want.min_thickness_mm));
      EXPECT_TRUE(SameFloat(got.max_thickness_mm, want.max_thickness_mm));
      EXPECT_EQ(got.parameter_count, want.parameter_count);
      EXPECT_EQ(got.valid, want.valid);
      EXPECT_TRUE(SameOptional(db_.FindExact(mat, t, mach, tol), literal.FindExact(mat, t, mach, tol)));
      EXPECT_TRUE(SameOptional(db_.FindOptimal(mat, t, tol), literal.FindOptimal(mat, t, tol)));
      const auto gi = db_.Interpolate(mat, t, mach);
      const auto wi = literal.Interpolate(mat, t, mach);
      EXPECT_TRUE(SameBytes(gi.parameter, wi.parameter));
      EXPECT_TRUE(SameFloat(gi.confidence, wi.confidence));
      EXPECT_EQ(gi.extrapolated, wi.extrapolated);

      CuttingParameter base = table.empty() || rnd_.Int(0, 3) == 0
                                  ? rnd_.Row()
                                  : table[static_cast<std::size_t>(
                                        rnd_.Int(0, static_cast<int>(table.size()) - 1))];
      const float max_speed = static_cast<float>(rnd_.Int(0, 7) * 500 - rnd_.Int(0, 1) * 250);
      EXPECT_TRUE(SameBytes(db_.AdjustForMaxSpeed(base, max_speed),
                            literal.AdjustForMaxSpeed(base, max_speed)));
    }
    if (PositionsCurrent(db_)) ++indexed_states_;
    ++states_;
  }

  int states() const { return states_; }
  int indexed_states() const { return indexed_states_; }

 private:
  Database& db_;
  RandomTables& rnd_;
  int states_ = 0;
  int indexed_states_ = 0;
  int queries_ = 0;
};

TEST(PairIndexDifferential, MatchesLiteralScansInEveryStoreState) {
  RandomTables rnd(20261122);
  int ordered_states = 0;
  int grid_states = 0;
  int slot_states = 0;
  for (int round = 0; round < 300; ++round) {
    Database db;
    MakeNames(db);
    std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
    Differential diff(db, rnd);
    const Order order = static_cast<Order>(round % 3);
    rnd.wide_ids = round % 6 >= 3;

    // Loaded: the table as a file holds it, indexes rebuilt.
    DatabaseAccess::LoadRecords(db, rnd.Table(order));
    const Sparlane::PairIndex& loaded = *DatabaseAccess::Body(db).current_pair_index();
    if (loaded.pair_ordered) ++ordered_states;
    ++(loaded.pairs.ids.grid() ? grid_states : slot_states);
    diff.CompareAll();

    // Appended without a rebuild, as AddParameter does.
    for (int i = rnd.Int(0, 8); i > 0; --i) {
      CuttingParameter r = rnd.Int(0, 1) == 0 || table.empty() ? rnd.Row() : table.back();
      if (rnd.Int(0, 1) == 0) r.thickness_mm += 1.0f;  // extends the last pair
      DatabaseAccess::Append(db, r);
    }
    diff.CompareAll();

    // Deleted, then updated: both rebuild.
    if (!table.empty()) {
      table.erase(table.begin() + rnd.Int(0, static_cast<int>(table.size()) - 1));
      DatabaseAccess::RebuildIndexes(db);
      diff.CompareAll();
    }
    if (!table.empty()) {
      table[static_cast<std::size_t>(rnd.Int(0, static_cast<int>(table.size()) - 1))] =
          rnd.Row();
      DatabaseAccess::RebuildIndexes(db);
      diff.CompareAll();
    }

    // Changed behind the store's back: the lists must step aside.
    table.push_back(rnd.Row());
    table.push_back(rnd.Row());
    diff.CompareAll();
    DatabaseAccess::Append(db, rnd.Row());  // out of step: stays unusable
    DatabaseAccess::Append(db, rnd.Row());
    EXPECT_FALSE(PositionsCurrent(db));
    diff.CompareAll();

    // Create empties everything; appends start a fresh list.
    ASSERT_EQ(db.Create(), ErrorCode::Success);
    MakeNames(db);
    for (int i = rnd.Int(0, 6); i > 0; --i) DatabaseAccess::Append(db, rnd.Row());
    EXPECT_TRUE(PositionsCurrent(db));
    diff.CompareAll();
    db.Close();
    diff.CompareAll();
    EXPECT_GT(diff.indexed_states(), diff.states() / 2);
  }
  EXPECT_GT(ordered_states, 100);
  // Both layouts of the pair map were compared.
  EXPECT_GT(grid_states, 100);
  EXPECT_GT(slot_states, 50);
}

TEST(PairIndexDifferential, PublicEditingKeepsListsCurrent) {
  RandomTables rnd(7);
  for (int round = 0; round < 40; ++round) {
    Database db;
    MakeCatalogue(db, 4, 4);
    Differential diff(db, rnd);
    for (int step = 0; step < 30; ++step) {
      const int action = rnd.Int(0, 5);
      const std::size_t size = db.GetParameters().size();
      CuttingParameter r = Record(static_cast<std::uint16_t>(rnd.Int(1, 4)),
                                  static_cast<std::uint16_t>(rnd.Int(1, 4)),
                                  static_cast<float>(rnd.Int(1, 40)) / 4.0f,
                                  static_cast<float>(rnd.Int(1, 8) * 250));
      if (action <= 2 || size == 0) {
        ASSERT_EQ(db.AddParameter(r), ErrorCode::Success);
      } else if (action == 3) {
        ASSERT_EQ(db.UpdateParameter(
                      static_cast<std::uint32_t>(rnd.Int(0, static_cast<int>(size) - 1)), r),
                  ErrorCode::Success);
      } else {
        ASSERT_EQ(db.DeleteParameter(
                      static_cast<std::uint32_t>(rnd.Int(0, static_cast<int>(size) - 1))),
                  ErrorCode::Success);
      }
      EXPECT_TRUE(PositionsCurrent(db));
    }
    // The catalogue's names are Mat1.. and M1..; compare through those too.
    LiteralQueries literal(db);
    for (const char* mat : {"Mat1", "Mat2", "Mat3", "Mat4"}) {
      EXPECT_TRUE(SameList(db.FindByMaterial(mat), literal.FindByMaterial(mat)));
      for (const char* mach : {"M1", "M2", "M3", "M4", ""}) {
        for (float t : {0.5f, 2.5f, 5.0f, 7.3f, 11.0f}) {
          EXPECT_TRUE(SameOptional(db.FindNearest(mat, t, mach), literal.FindNearest(mat, t, mach)));
          const auto gi = db.Interpolate(mat, t, mach);
          const auto wi = literal.Interpolate(mat, t, mach);
          EXPECT_TRUE(SameBytes(gi.parameter, wi.parameter));
          EXPECT_TRUE(SameFloat(gi.confidence, wi.confidence));
        }
        const auto got = db.GetSupportedThicknessRange(mat, mach);
        const auto want = literal.Range(mat, mach);
        EXPECT_TRUE(SameFloat(got.min_thickness_mm, want.min_thickness_mm));
        EXPECT_EQ(got.parameter_count, want.parameter_count);
      }
    }
  }
}

TEST(PairIndexDifferential, PairSpanMatchesBisectionOnPairOrderedTables) {
  RandomTables rnd(99);
  for (int round = 0; round < 500; ++round) {
    Database db;
    MakeNames(db);
    DatabaseAccess::LoadRecords(db, rnd.Table(round % 2 == 0 ? Order::kPairOnly : Order::kSorted));
    const Sparlane::Store& store = DatabaseAccess::Body(db);
    ASSERT_TRUE(store.current_pair_index()->pair_ordered);
    LiteralQueries literal(db);
    for (std::uint16_t mat = 0; mat <= 6; ++mat) {
      for (std::uint16_t mach = 0; mach <= 6; ++mach) {
        const auto want = literal.PairSpan(mat, mach);
        const auto fast = Sparlane::FindPairSpan(store, mat, mach);
        const auto slow = Sparlane::BisectPairSpan(store.records(), mat, mach);
        EXPECT_EQ(slow.first, want.first);
        EXPECT_EQ(slow.count, want.second - want.first);
        EXPECT_EQ(fast.count, slow.count);
        if (slow.count != 0) {
          EXPECT_EQ(fast.first, slow.first);
        }
      }
    }
  }
}

}  // namespace
}  // namespace query_test

namespace query_test {
namespace {

TEST(PairIndexDifferential, LargeShuffledTableGroupsLikeTheScan) {
  // Large enough for the counting-sort grouping.
  RandomTables rnd(31);
  Database db;
  MakeNames(db);
  std::vector<CuttingParameter> rows(70000);
  for (auto& r : rows) r = rnd.Row();
  DatabaseAccess::LoadRecords(db, rows);
  ASSERT_TRUE(PositionsCurrent(db));
  ASSERT_FALSE(DatabaseAccess::Body(db).current_pair_index()->pair_ordered);
  LiteralQueries literal(db);
  for (const char* mat : {"A", "B", "D"}) {
    EXPECT_TRUE(SameList(db.FindByMaterial(mat), literal.FindByMaterial(mat)));
    for (const char* mach : {"M1", "M2", "M4", ""}) {
      const float t = rnd.Thickness();
      EXPECT_TRUE(SameOptional(db.FindNearest(mat, t, mach), literal.FindNearest(mat, t, mach)));
      const auto got = db.GetSupportedThicknessRange(mat, mach);
      const auto want = literal.Range(mat, mach);
      EXPECT_TRUE(SameFloat(got.min_thickness_mm, want.min_thickness_mm));
      EXPECT_TRUE(SameFloat(got.max_thickness_mm, want.max_thickness_mm));
      EXPECT_EQ(got.parameter_count, want.parameter_count);
      const auto gi = db.Interpolate(mat, t, mach);
      const auto wi = literal.Interpolate(mat, t, mach);
      EXPECT_TRUE(SameBytes(gi.parameter, wi.parameter));
    }
  }
  for (int i = 0; i < 50; ++i) {
    const CuttingParameter& base = rows[static_cast<std::size_t>(rnd.Int(0, 69999))];
    EXPECT_TRUE(SameBytes(db.AdjustForMaxSpeed(base, base.cut_speed_mm_min - 250.0f),
                          literal.AdjustForMaxSpeed(base, base.cut_speed_mm_min - 250.0f)));
  }
}

}  // namespace
}  // namespace query_test
