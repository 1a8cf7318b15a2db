#include <map>
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

// Pair-shaped keys: material id in the high half, machine id in the low.
std::uint32_t Key(std::uint32_t high, std::uint32_t low) { return (high << 16) | low; }

void ExpectSameAs(const GroupMap& map, const std::map<std::uint32_t, std::uint32_t>& reference,
                  std::uint32_t max_high, std::uint32_t max_low) {
  EXPECT_EQ(map.size(), reference.size());
  for (std::uint32_t high = 0; high <= max_high + 1; ++high) {
    for (std::uint32_t low = 0; low <= max_low + 1; ++low) {
      const GroupRef* ref = map.Find(Key(high, low));
      const auto it = reference.find(Key(high, low));
      if (it == reference.end()) {
        EXPECT_EQ(ref, nullptr) << high << "/" << low;
      } else {
        ASSERT_NE(ref, nullptr) << high << "/" << low;
        EXPECT_EQ(ref->group, it->second);
        EXPECT_EQ(ref->first_position, it->second * 17);
      }
    }
  }
  for (std::uint32_t key : {0xFFFFFFFFu, 0x80000000u, Key(max_high, 0xFFFFu), Key(0xFFFFu, 0)}) {
    EXPECT_EQ(map.Find(key) != nullptr, reference.count(key) == 1) << key;
  }
}

TEST(GroupMap, DenseKeysAreIndexedByGridWithSameAnswers) {
  std::mt19937 rng(11);
  GroupMap map;
  std::map<std::uint32_t, std::uint32_t> reference;
  // Most cells of a 30 x 50 grid, some left empty.
  for (std::uint32_t high = 0; high < 30; ++high) {
    for (std::uint32_t low = 0; low < 50; ++low) {
      if (rng() % 5 != 0) reference[Key(high, low)] = static_cast<std::uint32_t>(reference.size());
    }
  }
  map.Plan(29, 49, reference.size());
  EXPECT_TRUE(map.grid());
  for (const auto& kv : reference) {
    map.Insert(kv.first, GroupRef{kv.second, kv.second * 17, 3, 0, 0, false});
  }
  EXPECT_TRUE(map.grid());
  ExpectSameAs(map, reference, 29, 49);
}

TEST(GroupMap, KeyOutsideTheGridMovesEveryKeyToSlots) {
  GroupMap map;
  std::map<std::uint32_t, std::uint32_t> reference;
  for (std::uint32_t high = 1; high <= 4; ++high) {
    for (std::uint32_t low = 1; low <= 6; ++low) {
      reference[Key(high, low)] = static_cast<std::uint32_t>(reference.size());
    }
  }
  map.Plan(4, 6, reference.size());
  for (const auto& kv : reference) {
    map.Insert(kv.first, GroupRef{kv.second, kv.second * 17, 3, 0, 0, false});
  }
  ASSERT_TRUE(map.grid());
  // An appended record of a machine the grid has no column for.
  const std::uint32_t outside = Key(2, 7);
  reference[outside] = static_cast<std::uint32_t>(reference.size());
  map.Insert(outside, GroupRef{reference[outside], reference[outside] * 17, 1, 0, 0, false});
  EXPECT_FALSE(map.grid());
  ExpectSameAs(map, reference, 4, 7);
}

TEST(GroupMap, SparseKeysKeepSlots) {
  GroupMap map;
  std::map<std::uint32_t, std::uint32_t> reference;
  for (std::uint32_t i = 0; i < 40; ++i) {
    reference[Key(i * 1000, 65535 - i)] = i;  // 40 keys over a grid of millions of cells
  }
  map.Plan(39000, 65535, reference.size());
  EXPECT_FALSE(map.grid());
  for (const auto& kv : reference) {
    map.Insert(kv.first, GroupRef{kv.second, kv.second * 17, 3, 0, 0, false});
  }
  for (const auto& kv : reference) {
    const GroupRef* ref = map.Find(kv.first);
    ASSERT_NE(ref, nullptr);
    EXPECT_EQ(ref->group, kv.second);
  }
  EXPECT_EQ(map.Find(Key(1, 65535)), nullptr);
  EXPECT_EQ(map.Find(Key(0, 0)), nullptr);
}

TEST(GroupMap, SmallGridIsUsedHoweverSparse) {
  GroupMap map;
  map.Plan(9, 99, 1);  // 1,000 cells for one key
  EXPECT_TRUE(map.grid());
  map.Insert(Key(9, 99), GroupRef{0, 4, 2, 0, 0, false});
  ASSERT_NE(map.Find(Key(9, 99)), nullptr);
  EXPECT_EQ(map.Find(Key(9, 99))->first_position, 4u);
  EXPECT_EQ(map.Find(Key(0, 0)), nullptr);
  EXPECT_EQ(map.Find(Key(9, 100)), nullptr);
  EXPECT_EQ(map.Find(Key(10, 99)), nullptr);
}

TEST(GroupMap, PlanAfterInsertsKeepsWhatIsThere) {
  GroupMap map;
  map.Insert(Key(3, 3), GroupRef{0, 9, 1, 0, 0, false});
  map.Plan(3, 3, 16);
  EXPECT_FALSE(map.grid());
  ASSERT_NE(map.Find(Key(3, 3)), nullptr);
  EXPECT_EQ(map.Find(Key(3, 3))->first_position, 9u);
}

TEST(GroupMap, GridRefCanBeUpdatedInPlace) {
  GroupMap map;
  map.Plan(1, 8, 2);
  map.Insert(7, GroupRef{0, 10, 2, 1, 2, true});
  ASSERT_TRUE(map.grid());
  map.Find(7)->size = 5;
  EXPECT_EQ(map.Find(7)->size, 5u);
  EXPECT_EQ(map.Find(7)->first_position, 10u);
}

}  // namespace
