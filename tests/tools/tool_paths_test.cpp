// ResolvePath: absolute, normalised by name, and refused when the library
// would still change it.
#include <gtest/gtest.h>

#include <filesystem>

#include "tool_paths.h"

namespace {

std::string Cwd() { return std::filesystem::current_path().string(); }

std::string Parent() { return std::filesystem::current_path().parent_path().string(); }

}  // namespace

TEST(ResolvePath, RelativePathsBecomeAbsoluteWithDotSegmentsResolved) {
  std::string error;
  EXPECT_EQ(slb::ResolvePath("x.slb", error).value_or(""), Cwd() + "/x.slb");
  EXPECT_EQ(slb::ResolvePath("./a/../x.slb", error).value_or(""), Cwd() + "/x.slb");
  EXPECT_EQ(slb::ResolvePath("../x.slb", error).value_or(""), Parent() + "/x.slb");
  EXPECT_EQ(slb::ResolvePath("/tmp//a/./b/../x.slb", error).value_or(""), "/tmp/a/x.slb");
  EXPECT_EQ(slb::ResolvePath("/../x.slb", error).value_or(""), "/x.slb");
  EXPECT_EQ(error, "");
}

TEST(ResolvePath, NamesHoldingTwoDotsAreRefused) {
  for (const char* path : {"x..y.slb", "/tmp/v1..2/x.slb", "...", "a/..b"}) {
    std::string error;
    EXPECT_FALSE(slb::ResolvePath(path, error)) << path;
    EXPECT_EQ(error, std::string("refusing the path \"") + path +
                         "\": a name in it holds \"..\", which the library would remove; rename "
                         "the file or directory");
  }
}

TEST(ResolvePath, NulAndOverlongPathsAreRefused) {
  std::string error;
  EXPECT_FALSE(slb::ResolvePath(std::string("a\0b", 3), error));
  EXPECT_NE(error.find("NUL"), std::string::npos) << error;
  EXPECT_FALSE(slb::ResolvePath("/" + std::string(5000, 'a'), error));
  EXPECT_NE(error.find("longer than 4096 bytes"), std::string::npos) << error;
  EXPECT_FALSE(slb::ResolvePath("", error));
  EXPECT_EQ(error, "an empty path names no file");
}

TEST(ResolvePath, ResultIsNeverChangedByTheLibrary) {
  for (const char* path : {"x.slb", "../../a/./b.slb", "/a/b/../../c", "./.hidden/.x"}) {
    std::string error;
    const auto resolved = slb::ResolvePath(path, error);
    ASSERT_TRUE(resolved) << path << ": " << error;
    EXPECT_EQ(Sparlane::Testing::SanitizePath(*resolved), *resolved);
  }
}
