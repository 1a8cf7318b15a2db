// SortParameters: the table in (material, machine, thickness) order, stable
// for equal keys, NaN thicknesses last within their pair, indexes rebuilt.
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

const float kNaN = std::numeric_limits<float>::quiet_NaN();

// The order as a plain stable sort of (material, machine, NaN-last
// thickness) written out directly.
std::vector<CuttingParameter> LiteralSorted(const std::vector<CuttingParameter>& table) {
  std::vector<std::size_t> at(table.size());
  for (std::size_t i = 0; i < at.size(); ++i) at[i] = i;
  std::stable_sort(at.begin(), at.end(), [&](std::size_t i, std::size_t j) {
    const CuttingParameter& a = table[i];
    const CuttingParameter& b = table[j];
    if (a.material_id != b.material_id) return a.material_id < b.material_id;
    if (a.machine_model_id != b.machine_model_id) return a.machine_model_id < b.machine_model_id;
    const int a_rank = std::isnan(a.thickness_mm) ? 1 : 0;
    const int b_rank = std::isnan(b.thickness_mm) ? 1 : 0;
    if (a_rank != b_rank) return a_rank < b_rank;
    return a_rank == 0 && a.thickness_mm < b.thickness_mm;
  });
  std::vector<CuttingParameter> sorted;
  for (std::size_t i : at) sorted.push_back(table[i]);
  return sorted;
}

bool SameTables(const std::vector<CuttingParameter>& a, const std::vector<CuttingParameter>& b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (!SameBytes(a[i], b[i])) return false;
  }
  return true;
}

// Tagged through aux_id so stability shows.
CuttingParameter Tagged(std::uint16_t material, std::uint16_t machine, float thickness,
                        std::uint16_t tag) {
  CuttingParameter p = ValidRecord(thickness, 1, machine, material);
  p.aux_id = tag;
  return p;
}

TEST(SortParameters, NeedsALoadedDatabase) {
  Database db;
  EXPECT_EQ(db.SortParameters(), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  MakeCatalogue(db, 1, 1);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  db.Close();
  const StoreSnapshot before = StoreSnapshot::Of(db);
  EXPECT_EQ(db.SortParameters(), ErrorCode::NotLoaded);
  EXPECT_TRUE(StoreSnapshot::Of(db) == before);
}

TEST(SortParameters, OrdersByMaterialThenMachineThenThickness) {
  Database db;
  MakeCatalogue(db, 3, 3);
  const std::vector<CuttingParameter> rows = {
      Tagged(2, 1, 5.0f, 0), Tagged(1, 3, 2.0f, 1), Tagged(1, 1, 8.0f, 2),
      Tagged(3, 2, 1.0f, 3), Tagged(1, 1, 3.0f, 4), Tagged(2, 1, 4.0f, 5)};
  for (const CuttingParameter& r : rows) ASSERT_EQ(db.AddParameter(r), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("x"), ErrorCode::Success);
  const std::string message = db.GetLastError();
  ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
  std::vector<std::uint16_t> tags;
  for (const CuttingParameter& p : db.GetParameters()) tags.push_back(p.aux_id);
  EXPECT_EQ(tags, (std::vector<std::uint16_t>{4, 2, 1, 5, 0, 3}));
  EXPECT_EQ(db.GetLastError(), message);
}

TEST(SortParameters, EqualKeysKeepTheirOrderAndSignedZerosAreEqual) {
  Database db;
  MakeCatalogue(db, 2, 2);
  const std::vector<CuttingParameter> rows = {
      Tagged(1, 1, 2.0f, 0), Tagged(1, 1, 1.0f, 1), Tagged(1, 1, 2.0f, 2),
      Tagged(1, 1, 1.0f, 3), Tagged(1, 1, 2.0f, 4)};
  DatabaseAccess::LoadRecords(db, rows);
  std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
  table.push_back(Tagged(2, 2, 0.0f, 5));
  table.push_back(Tagged(2, 2, -0.0f, 6));
  table.push_back(Tagged(2, 2, 0.0f, 7));
  ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
  std::vector<std::uint16_t> tags;
  for (const CuttingParameter& p : db.GetParameters()) tags.push_back(p.aux_id);
  EXPECT_EQ(tags, (std::vector<std::uint16_t>{1, 3, 0, 2, 4, 5, 6, 7}));
  EXPECT_TRUE(std::signbit(db.GetParameters()[6].thickness_mm));
}

TEST(SortParameters, NaNThicknessSortsLastWithinItsPair) {
  Database db;
  MakeCatalogue(db, 2, 2);
  // As a file may bring them: NaN records ahead of their pairs' others.
  DatabaseAccess::LoadRecords(db, {Tagged(1, 2, kNaN, 0), Tagged(1, 1, kNaN, 1),
                                   Tagged(1, 1, 4.0f, 2), Tagged(1, 2, 1.0f, 3),
                                   Tagged(1, 1, kNaN, 4), Tagged(2, 1, 9.0f, 5),
                                   Tagged(1, 1, -std::numeric_limits<float>::infinity(), 6),
                                   Tagged(1, 1, std::numeric_limits<float>::infinity(), 7)});
  ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
  std::vector<std::uint16_t> tags;
  for (const CuttingParameter& p : db.GetParameters()) tags.push_back(p.aux_id);
  EXPECT_EQ(tags, (std::vector<std::uint16_t>{6, 2, 7, 1, 4, 3, 0, 5}));
}

TEST(SortParameters, RebuildsTheIndexesAndKeepsNamesAndHeader) {
  Database db;
  MakeCatalogue(db, 2, 2);
  for (const CuttingParameter& r : {Tagged(2, 1, 5.0f, 0), Tagged(1, 2, 2.0f, 1),
                                    Tagged(1, 1, 8.0f, 2), Tagged(1, 1, 3.0f, 3)}) {
    ASSERT_EQ(db.AddParameter(r), ErrorCode::Success);
  }
  const Sparlane::FileHeader before = db.GetFileHeader();
  ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db), (MaterialIndexView{{1, {{2.0f, 8.0f, 2, 3}}},
                                                    {2, {{5.0f, 5.0f, 3, 1}}}}));
  EXPECT_EQ(MachineIndexOf(db), (MachineIndexView{{1, {0, 3}}, {2, {2, 1}}}));
  const Sparlane::FileHeader after = db.GetFileHeader();
  EXPECT_EQ(std::memcmp(&before, &after, sizeof before), 0);
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mat1", "Mat2"}));
  // In order, the bisection finds the pair's bracketing records.
  const Sparlane::InterpolationResult mid = db.Interpolate("Mat1", 5.5f, "M1");
  EXPECT_FALSE(mid.extrapolated);
  EXPECT_EQ(mid.confidence, 1.0f);
  EXPECT_EQ(mid.parameter.thickness_mm, 5.5f);
}

TEST(SortParameters, MatchesAStableSortOnRandomTables) {
  std::mt19937 rng(4242);
  const float values[] = {kNaN, -0.0f, 0.0f, 1.0f, 1.0f, 2.5f, 6.0f, 6.0f, 12.0f,
                          std::numeric_limits<float>::infinity(), -3.0f};
  for (int round = 0; round < 500; ++round) {
    std::vector<CuttingParameter> table(std::uniform_int_distribution<std::size_t>(0, 80)(rng));
    std::uint16_t tag = 0;
    for (CuttingParameter& p : table) {
      p = Tagged(static_cast<std::uint16_t>(rng() % 4), static_cast<std::uint16_t>(rng() % 4),
                 values[rng() % 11], tag++);
    }
    Database db;
    ASSERT_EQ(db.Create(), ErrorCode::Success);
    DatabaseAccess::LoadRecords(db, table);
    ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
    ASSERT_TRUE(SameTables(db.GetParameters(), LiteralSorted(table))) << "round " << round;
    // Sorting a sorted table changes nothing.
    ASSERT_EQ(db.SortParameters(), ErrorCode::Success);
    ASSERT_TRUE(SameTables(db.GetParameters(), LiteralSorted(table))) << "round " << round;
    // The indexes are those of the sorted table.
    Database fresh;
    DatabaseAccess::LoadRecords(fresh, db.GetParameters());
    ASSERT_EQ(MaterialIndexOf(db), MaterialIndexOf(fresh));
    ASSERT_EQ(MachineIndexOf(db), MachineIndexOf(fresh));
  }
}

}  // namespace
}  // namespace sparlane_test
