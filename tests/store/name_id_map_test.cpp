// The name map against a standard map: random names of every length (word
// boundaries included), names that differ only in their last byte, the
// empty name, replacements and erasures through growth.  Lookups go through
// views into other buffers, as the queries' names arrive.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/name_id_map.h"

namespace {

using Sparlane::NameIdMap;

std::uint16_t IdOf(const NameIdMap& map, std::string_view name) {
  const std::uint16_t* id = map.Find(name);
  return id == nullptr ? 0xFFFF : *id;
}

std::string RandomName(std::mt19937& rng) {
  const std::size_t length = std::uniform_int_distribution<std::size_t>(0, 40)(rng);
  std::string name(length, 'a');
  // A tiny alphabet, so names collide in everything but a byte or two.
  for (char& c : name) c = "ab\0\xff"[std::uniform_int_distribution<int>(0, 3)(rng)];
  return name;
}

TEST(NameIdMap, AgreesWithStandardMapThroughSetsAndErasures) {
  std::mt19937 rng(8);
  NameIdMap map;
  std::unordered_map<std::string, std::uint16_t> reference;
  for (int step = 0; step < 60000; ++step) {
    const std::string name = RandomName(rng);
    const int action = std::uniform_int_distribution<int>(0, 9)(rng);
    if (action < 7) {
      const auto id = static_cast<std::uint16_t>(step);
      map.Set(name, id);
      reference[name] = id;
    } else if (action < 9) {
      EXPECT_EQ(map.Erase(name), reference.erase(name) == 1);
    } else {
      // Looked up through a view into a longer buffer.
      const std::string buffer = "<" + name + ">";
      const std::string_view view(buffer.data() + 1, name.size());
      auto it = reference.find(name);
      EXPECT_EQ(IdOf(map, view), it == reference.end() ? 0xFFFF : it->second);
    }
    ASSERT_EQ(map.size(), reference.size());
  }
  for (const auto& entry : reference) EXPECT_EQ(IdOf(map, entry.first), entry.second);
  std::size_t visited = 0;
  map.ForEach([&](std::string_view name, std::uint16_t id) {
    ++visited;
    auto it = reference.find(std::string(name));
    ASSERT_NE(it, reference.end());
    EXPECT_EQ(it->second, id);
  });
  EXPECT_EQ(visited, reference.size());
}

TEST(NameIdMap, NamesDifferingInOneByteAreToldApart) {
  NameIdMap map;
  for (std::size_t length = 1; length <= 33; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      std::string name(length, 'x');
      name[at] = 'y';
      map.Set(name, static_cast<std::uint16_t>(length * 100 + at));
    }
  }
  for (std::size_t length = 1; length <= 33; ++length) {
    EXPECT_EQ(map.Find(std::string(length, 'x')), nullptr);
    for (std::size_t at = 0; at < length; ++at) {
      std::string name(length, 'x');
      name[at] = 'y';
      EXPECT_EQ(IdOf(map, name), length * 100 + at);
    }
  }
}

TEST(NameIdMap, EmptyNameIsANameLikeAnyOther) {
  NameIdMap map;
  EXPECT_EQ(map.Find(""), nullptr);
  map.Set("", 4);
  EXPECT_EQ(IdOf(map, ""), 4);
  EXPECT_EQ(map.Find(std::string_view()), map.Find(""));
  EXPECT_TRUE(map.Erase(""));
  EXPECT_EQ(map.Find(""), nullptr);
  EXPECT_FALSE(map.Erase(""));
}

TEST(NameIdMap, ClearForgetsEverything) {
  NameIdMap map;
  map.Set("Mild Steel", 1);
  map.Set("Stainless", 2);
  map.Clear();
  EXPECT_EQ(map.size(), 0u);
  EXPECT_EQ(map.Find("Mild Steel"), nullptr);
  map.Set("Stainless", 7);
  EXPECT_EQ(IdOf(map, "Stainless"), 7);
}

}  // namespace
