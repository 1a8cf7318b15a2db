#include <random>
#include <unordered_map>

#include <gtest/gtest.h>

#include "store/group_map.h"

namespace {

using Sparlane::GroupMap;
using Sparlane::GroupRef;

TEST(GroupMap, EmptyMapFindsNothing) {
  GroupMap map;
  EXPECT_EQ(map.Find(0), nullptr);
  EXPECT_EQ(map.Find(12345), nullptr);
}

TEST(GroupMap, AgreesWithStandardMapThroughGrowth) {
  std::mt19937 rng(5);
  GroupMap map;
  std::unordered_map<std::uint32_t, std::uint32_t> reference;
  for (std::uint32_t i = 0; i < 50000; ++i) {
    // Pair-shaped keys, key 0 and the top of the range included.
    const std::uint32_t edge_keys[] = {0u, 0xFFFFFFFFu, 0x80000000u};
    const std::uint32_t key = i < 3 ? edge_keys[i] : (rng() & 0x00FF00FFu);
    if (reference.count(key)) continue;
    map.Insert(key, GroupRef{i, i * 3, i + 7, 0, 0, false});
    reference[key] = i;
  }
  EXPECT_EQ(map.size(), reference.size());
  for (const auto& kv : reference) {
    const GroupRef* ref = map.Find(kv.first);
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(ref->group, kv.second);
    EXPECT_EQ(ref->first_position, kv.second * 3);
    EXPECT_EQ(ref->size, kv.second + 7);
  }
  for (int probe = 0; probe < 20000; ++probe) {
    const std::uint32_t key = rng();
    const GroupRef* ref = map.Find(key);
    auto it = reference.find(key);
    if (it == reference.end()) {
      EXPECT_EQ(ref, nullptr);
    } else {
      ASSERT_NE(ref, nullptr);
      EXPECT_EQ(ref->group, it->second);
    }
  }
}

TEST(GroupMap, FoundSlotCanBeUpdatedInPlace) {
  GroupMap map;
  map.Insert(7, GroupRef{0, 10, 2, 1, 2, true});
  map.Find(7)->size = 5;
  EXPECT_EQ(map.Find(7)->size, 5u);
  EXPECT_EQ(map.Find(7)->first_position, 10u);
}

}  // namespace
