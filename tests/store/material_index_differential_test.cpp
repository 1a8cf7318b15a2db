// The material index is built in one pass.  These tests compare it with the
// literal rebuild -- positions per material, a stable sort by thickness with
// strict less-than, one bucket from the first and last sorted position -- on
// many shuffled random tables with ties and repeated thicknesses.
//
// NaN thicknesses are left out on purpose: with NaN, strict less-than is not
// an ordering, so the literal sort has no defined result (libstdc++'s
// stable_sort and sort already disagree) and the one-pass result differs
// from both.  The record check keeps NaN out of edited tables; only a file
// can bring one in.
#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

MaterialIndexView LiteralMaterialIndex(const std::vector<CuttingParameter>& table) {
  MaterialIndexView index;
  if (table.empty()) return index;
  std::map<std::uint16_t, std::vector<std::uint64_t>> positions;
  for (std::uint64_t pos = 0; pos < table.size(); ++pos) {
    positions[table[pos].material_id].push_back(pos);
  }
  for (const auto& entry : positions) {
    std::vector<std::uint64_t> sorted = entry.second;
    std::stable_sort(sorted.begin(), sorted.end(), [&](std::uint64_t a, std::uint64_t b) {
      return table[a].thickness_mm < table[b].thickness_mm;
    });
    index[entry.first] = {{table[sorted.front()].thickness_mm,
                           table[sorted.back()].thickness_mm, sorted.front(),
                           entry.second.size()}};
  }
  return index;
}

MaterialIndexView FastMaterialIndex(const std::vector<CuttingParameter>& table) {
  Database db;
  DatabaseAccess::LoadRecords(db, table);
  return MaterialIndexOf(db);
}

// A random table: ids from a small range (with the extremes 0 and 65535 now
// and then) and thicknesses drawn from a short list so ties are frequent.
std::vector<CuttingParameter> RandomTable(std::mt19937& rng, const std::vector<float>& values) {
  std::uniform_int_distribution<int> size_dist(0, 400);
  std::uniform_int_distribution<int> material_dist(0, 12);
  std::uniform_int_distribution<std::size_t> value_dist(0, values.size() - 1);
  std::vector<CuttingParameter> table(static_cast<std::size_t>(size_dist(rng)));
  for (CuttingParameter& p : table) {
    p = ValidRecord();
    const int m = material_dist(rng);
    p.material_id = m == 11 ? 65535 : static_cast<std::uint16_t>(m);
    p.thickness_mm = values[value_dist(rng)];
  }
  std::shuffle(table.begin(), table.end(), rng);
  return table;
}

TEST(MaterialIndexDifferential, OnePassMatchesTheLiteralSortOnRandomTables) {
  const float inf = std::numeric_limits<float>::infinity();
  const std::vector<float> values = {0.5f, 1.0f, 1.0f, 2.0f, 3.0f,  6.0f, 6.0f, 10.0f, 25.4f,
                                     -1.0f, 0.0f, -0.0f, inf, -inf,
                                     std::numeric_limits<float>::denorm_min(),
                                     std::numeric_limits<float>::max()};
  std::mt19937 rng(20261122);
  for (int round = 0; round < 1000; ++round) {
    const std::vector<CuttingParameter> table = RandomTable(rng, values);
    ASSERT_EQ(FastMaterialIndex(table), LiteralMaterialIndex(table))
        << "round " << round << ", " << table.size() << " records";
  }
}

TEST(MaterialIndexDifferential, OnePassMatchesTheLiteralSortWithFewDistinctValues) {
  // Two values only: nearly every comparison is a tie.
  std::mt19937 rng(7);
  for (int round = 0; round < 600; ++round) {
    const std::vector<CuttingParameter> table = RandomTable(rng, {4.0f, 4.0f, 4.0f, 2.0f});
    ASSERT_EQ(FastMaterialIndex(table), LiteralMaterialIndex(table)) << "round " << round;
  }
}

TEST(MaterialIndexDifferential, SignedZerosKeepTheirSortedOrder) {
  // -0.0 and 0.0 compare equal, so the earliest is first and the latest last.
  std::vector<CuttingParameter> table(4, ValidRecord());
  table[0].thickness_mm = 0.0f;
  table[1].thickness_mm = -0.0f;
  table[2].thickness_mm = -0.0f;
  table[3].thickness_mm = 0.0f;
  const MaterialIndexView fast = FastMaterialIndex(table);
  EXPECT_EQ(fast, LiteralMaterialIndex(table));
  const BucketView& b = fast.at(1).front();
  EXPECT_EQ(b.first, 0u);
  EXPECT_FALSE(std::signbit(b.min_thickness));
  EXPECT_FALSE(std::signbit(b.max_thickness));
  table[3].thickness_mm = -0.0f;
  EXPECT_TRUE(std::signbit(FastMaterialIndex(table).at(1).front().max_thickness));
  EXPECT_EQ(FastMaterialIndex(table), LiteralMaterialIndex(table));
}

}  // namespace
}  // namespace sparlane_test
