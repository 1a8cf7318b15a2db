#include <gtest/gtest.h>

#include <random>
#include <string>

#include "sparlane/sparlane.h"

using Sparlane::Testing::SanitizePath;

namespace {

// The rule spelled out as literally as possible.
std::string LiteralSanitize(std::string s) {
  std::size_t pos = 0;
  for (;;) {
    pos = s.find("..", pos);
    if (pos == std::string::npos) break;
    s.erase(pos, 2);
  }
  std::string out;
  for (char c : s) {
    if (c != '\0') out += c;
  }
  if (out.size() > 4096) out = out.substr(0, 4096);
  return out;
}

}  // namespace

TEST(SanitizePath, RemovesParentReferences) {
  EXPECT_EQ(SanitizePath("../data/x.bin"), "/data/x.bin");
  EXPECT_EQ(SanitizePath("a/../b"), "a//b");
}

TEST(SanitizePath, PairsBroughtTogetherVanishToo) {
  EXPECT_EQ(SanitizePath("a....b"), "ab");
  EXPECT_EQ(SanitizePath("...."), "");
  EXPECT_EQ(SanitizePath("..."), ".");
  EXPECT_EQ(SanitizePath("x/./y"), "x/./y");
}

TEST(SanitizePath, EmptyStaysEmpty) { EXPECT_EQ(SanitizePath(""), ""); }

TEST(SanitizePath, RemovesNulAfterDots) {
  const std::string with_nul("a\0b", 3);
  EXPECT_EQ(SanitizePath(with_nul), "ab");
  // The NUL goes after the ".." pass, so dots it separated stay.
  EXPECT_EQ(SanitizePath(std::string(".\0.", 3)), "..");
}

TEST(SanitizePath, KeepsFirst4096Bytes) {
  const std::string long_path(5000, 'p');
  EXPECT_EQ(SanitizePath(long_path), std::string(4096, 'p'));
  EXPECT_EQ(SanitizePath(std::string(4096, 'q')).size(), 4096u);
}

TEST(SanitizePath, SeparatorsDrivesAndAbsolutePathsPass) {
  EXPECT_EQ(SanitizePath("C:\\dir\\f.bin"), "C:\\dir\\f.bin");
  EXPECT_EQ(SanitizePath("/abs/path"), "/abs/path");
}

TEST(SanitizePath, MatchesLiteralRuleOnRandomStrings) {
  std::mt19937 rng(11);
  const char alphabet[] = {'.', '.', '.', '/', 'a', '\0'};
  for (int round = 0; round < 5000; ++round) {
    std::string s;
    const std::size_t n = rng() % (round % 50 == 0 ? 5000 : 40);
    for (std::size_t i = 0; i < n; ++i) s += alphabet[rng() % sizeof alphabet];
    ASSERT_EQ(SanitizePath(s), LiteralSanitize(s)) << "round " << round;
  }
}
