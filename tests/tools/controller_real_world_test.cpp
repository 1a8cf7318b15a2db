// Material files from the wild: imported, exported as a material file and
// as a tool table, in mm and in inches, and imported again to the very
// same records.
#include <gtest/gtest.h>

#include <algorithm>

#include "controller_export_checks.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

struct RealFile {
  const char* name;
  std::vector<std::string> rules;  // --material-rule values the names need
  std::size_t records;
};

void ExpectRealWorldRoundTrip(const RealFile& file) {
  const std::string path = RealWorldFile(file.name);
  if (path.empty()) GTEST_SKIP() << "real-world sample data not found";
  const std::string dir = ScratchDir();
  std::vector<std::string> first = {"build",  dir + "/first.slb", "--from-plasmac", path,
                                    "--vendor", "Shop",           "--machine",      "PM45"};
  for (const auto& rule : file.rules) first.insert(first.end(), {"--material-rule", rule});
  const auto imported = RunTool(first);
  ASSERT_EQ(imported.status, 0) << imported.err;
  const std::string rows = SortedRows(dir + "/first.slb");
  ASSERT_EQ(std::count(rows.begin(), rows.end(), '\n'), static_cast<long>(file.records));
  for (const char* format : {"--plasmac", "--sheetcam"}) {
    for (const char* units : {"mm", "inch"}) {
      const std::string out = dir + "/out-" + units + (format[2] == 'p' ? ".cfg" : ".tools");
      const auto exported = RunTool({"export", dir + "/first.slb", format, out, "--machine",
                                     "PM45", "--units", units});
      ASSERT_EQ(exported.status, 0) << exported.err;
      const std::string again = dir + "/again.slb";
      const auto reimported =
          RunTool({"build", again, format[2] == 'p' ? "--from-plasmac" : "--from-sheetcam", out,
                   "--vendor", "Shop", "--machine", "PM45", "--units", units});
      ASSERT_EQ(reimported.status, 0) << reimported.err;
      EXPECT_EQ(reimported.err, "") << format << " " << units;
      EXPECT_EQ(SortedRows(again), rows) << file.name << " " << format << " " << units;
    }
  }
}

}  // namespace

TEST(RealWorldRoundTrip, ImperialQtplasmacFile) {
  ExpectRealWorldRoundTrip({"qtplasmac-material-imperial-1.cfg", {}, 78});
}

TEST(RealWorldRoundTrip, MetricQtplasmacFile) {
  ExpectRealWorldRoundTrip({"qtplasmac-material-metric-1.cfg", {}, 78});
}

TEST(RealWorldRoundTrip, MetricQtplasmacFileWithThicknessRanges) {
  ExpectRealWorldRoundTrip({"qtplasmac-material-metric-2.cfg", {}, 3});
}

TEST(RealWorldRoundTrip, OldPlasmacFileWithTransliteratedNames) {
  ExpectRealWorldRoundTrip({"plasmac-material-metric-1.cfg",
                            {"stal=Mild steel",
                             "\xD1\x81\xD1\x82\xD0\xB0\xD0\xBB\xD1\x8C=Mild steel"},
                            5});
}

TEST(RealWorldRoundTrip, OldestPlasmacMatFile) {
  ExpectRealWorldRoundTrip({"plasmac-material-v1-imperial-1.mat", {}, 7});
}
