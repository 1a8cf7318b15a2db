// Paths mean what the user meant: relative paths that go up a level are
// resolved before the library sees them, and a path the library would
// still change is refused.
#include <gtest/gtest.h>

#include <filesystem>

#include "test_csv.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

// dir/a/b, the directory the tool runs in, and a CSV in dir/a.
struct Tree {
  std::string root;
  std::string a;
  std::string b;
};

Tree MakeTree() {
  Tree t;
  t.root = ScratchDir();
  t.a = t.root + "/a";
  t.b = t.a + "/b";
  std::filesystem::create_directories(t.b);
  WriteText(t.a + "/in.csv", std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "2", "3000") +
                                 CsvRow("V", "M", "Steel", "4", "2000"));
  return t;
}

}  // namespace

TEST(Paths, BuildToAParentDirectoryWritesThere) {
  const Tree t = MakeTree();
  const auto run = RunToolIn(t.b, {"build", "../x.slb", "--from-csv", "../in.csv"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote ../x.slb: 2 records\n");
  EXPECT_TRUE(FileExists(t.a + "/x.slb"));
  EXPECT_FALSE(FileExists(t.b + "/x.slb"));
  EXPECT_FALSE(FileExists("/x.slb"));
  EXPECT_EQ(DirectoryEntries(t.a), (std::vector<std::string>{"b", "in.csv", "x.slb"}));
}

TEST(Paths, InfoOfAParentDirectoryFileOpensThatFile) {
  const Tree t = MakeTree();
  ASSERT_EQ(RunTool({"build", t.a + "/good.slb", "--from-csv", t.a + "/in.csv"}).status, 0);
  const auto run = RunToolIn(t.b, {"info", "../good.slb"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("parameters         2\n"), std::string::npos) << run.out;
}

TEST(Paths, DotAndDotDotSegmentsAreResolvedByName) {
  const Tree t = MakeTree();
  ASSERT_EQ(RunTool({"build", t.a + "/good.slb", "--from-csv", t.a + "/in.csv"}).status, 0);
  const auto run = RunToolIn(t.b, {"query", "./../b/.././good.slb", "--material", "Steel",
                                   "--machine", "M", "--thickness", "3"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Field(run.out, "cut speed"), "2500 mm/min") << run.out;
}

TEST(Paths, ExportToAParentDirectoryWritesThere) {
  const Tree t = MakeTree();
  const auto run = RunToolIn(t.b, {"export", SamplePath(), "--json", "../s.json"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_TRUE(FileExists(t.a + "/s.json"));
  EXPECT_EQ(DirectoryEntries(t.b), std::vector<std::string>{});
}

TEST(Paths, OutputNameHoldingTwoDotsIsRefused) {
  const Tree t = MakeTree();
  const auto run = RunToolIn(t.a, {"build", "x..y.slb", "--from-csv", "in.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "slb-tool: refusing the path \"x..y.slb\": a name in it holds \"..\", which "
                     "the library would remove; rename the file or directory\n");
  EXPECT_EQ(DirectoryEntries(t.a), (std::vector<std::string>{"b", "in.csv"}));
}

TEST(Paths, InputNameHoldingTwoDotsIsRefusedNotRedirected) {
  const Tree t = MakeTree();
  ASSERT_EQ(RunTool({"build", t.a + "/xy.slb", "--from-csv", t.a + "/in.csv"}).status, 0);
  ASSERT_EQ(RunTool({"build", t.a + "/x..y.slb.new", "--from-csv", t.a + "/in.csv"}).status, 1);
  std::filesystem::copy_file(t.a + "/xy.slb", t.a + "/x..y.slb");
  // The library alone would open xy.slb in place of x..y.slb.
  const auto run = RunToolIn(t.a, {"info", "x..y.slb"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("refusing the path \"x..y.slb\""), std::string::npos) << run.err;
}

TEST(Paths, DirectoryNameHoldingTwoDotsIsRefusedForExports) {
  const Tree t = MakeTree();
  std::filesystem::create_directories(t.a + "/v1..2");
  const auto run = RunToolIn(t.a, {"export", SamplePath(), "--csv", "v1..2/s.csv"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("refusing the path \"v1..2/s.csv\""), std::string::npos) << run.err;
  EXPECT_EQ(DirectoryEntries(t.a + "/v1..2"), std::vector<std::string>{});
}
