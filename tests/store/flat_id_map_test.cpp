#include <random>
#include <unordered_map>

#include <gtest/gtest.h>

#include "store/flat_id_map.h"

namespace {

using Sparlane::FlatIdMap;

TEST(FlatIdMap, EmptyMapFindsNothing) {
  FlatIdMap map;
  EXPECT_EQ(map.Find(0), FlatIdMap::kAbsent);
  EXPECT_EQ(map.Find(12345), FlatIdMap::kAbsent);
}

TEST(FlatIdMap, AgreesWithStandardMapThroughGrowth) {
  std::mt19937 rng(5);
  FlatIdMap map;
  std::unordered_map<std::uint32_t, std::uint32_t> reference;
  for (std::uint32_t i = 0; i < 50000; ++i) {
    // Pair-shaped keys, key 0 and the top of the range included.
    const std::uint32_t edge_keys[] = {0u, 0xFFFFFFFFu, 0x80000000u};
    const std::uint32_t key = i < 3 ? edge_keys[i] : (rng() & 0x00FF00FFu);
    if (reference.count(key)) continue;
    map.Insert(key, i);
    reference[key] = i;
  }
  for (const auto& kv : reference) ASSERT_EQ(map.Find(kv.first), kv.second);
  for (int probe = 0; probe < 20000; ++probe) {
    const std::uint32_t key = rng();
    auto it = reference.find(key);
    EXPECT_EQ(map.Find(key), it == reference.end() ? FlatIdMap::kAbsent : it->second);
  }
}

}  // namespace
