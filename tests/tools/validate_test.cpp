// validate: the whole-file check, the strict record check and the outlier screen.
#include <gtest/gtest.h>

#include "test_csv.h"
#include "test_database.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

std::string MaskFirstLine(const std::string& text) {
  return "<file>" + text.substr(text.find(':'));
}

}  // namespace

TEST(Validate, SampleIsValidAndListsItsFindings) {
  const auto run = RunTool({"validate", SamplePath()});
  EXPECT_EQ(run.status, 0) << run.err;
  ExpectGolden("validate_sample.txt", MaskFirstLine(run.out));
}

TEST(Validate, RecordFailingTheStrictCheckIsAFindingNamingTheRule) {
  const std::string dir = ScratchDir();
  auto low_voltage = Settings(4, 2000);
  low_voltage.arc_voltage_v = 5;
  WriteDatabase(dir + "/db.slb", {{"V", "M", "Steel", Settings(2, 3000)},
                                  {"V", "M", "Steel", low_voltage}});
  const auto run = RunTool({"validate", dir + "/db.slb"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("  record-check: Steel 4 mm on M (V): arc_voltage_v must be 20 to 300 V "
                         "(is 5)\n"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("\n1 finding\n"), std::string::npos) << run.out;
  EXPECT_EQ(RunTool({"validate", dir + "/db.slb", "--strict"}).status, 1);
}

TEST(Validate, EveryRecordIsScreenedInTableOrder) {
  // A file written unsorted (which the whole-file check refuses): the
  // screen still reads every record, in the order of the table.
  const std::string dir = ScratchDir();
  auto steel_low = Settings(4, 2000);
  steel_low.arc_voltage_v = 5;
  auto brass_low = Settings(2, 2000);
  brass_low.arc_voltage_v = 6;
  auto steel_high = Settings(2, 2000);
  steel_high.arc_voltage_v = 301;
  WriteDatabase(dir + "/db.slb", {{"V", "M", "Steel", steel_low},
                                  {"V", "M", "Brass", brass_low},
                                  {"V", "M", "Steel", steel_high}});
  const auto run = RunTool({"validate", dir + "/db.slb"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: Thickness index points beyond parameter array\n");
  EXPECT_EQ(run.out.substr(run.out.find(": ")),
            ": INVALID\n"
            "  record-check: Steel 4 mm on M (V): arc_voltage_v must be 20 to 300 V (is 5)\n"
            "  record-check: Brass 2 mm on M (V): arc_voltage_v must be 20 to 300 V (is 6)\n"
            "  record-check: Steel 2 mm on M (V): arc_voltage_v must be 20 to 300 V (is 301)\n"
            "3 findings\n");
}

TEST(Validate, OutlierThresholdIsAnOption) {
  const std::string dir = ScratchDir();
  std::string csv = CsvHeader();
  for (int i = 1; i <= 9; ++i) csv += CsvRow("V", "M", "Steel", std::to_string(i), "1000");
  csv += CsvRow("V", "M", "Steel", "10", "5000");
  WriteText(dir + "/in.csv", csv);
  ASSERT_EQ(RunTool({"build", dir + "/db.slb", "--from-csv", dir + "/in.csv"}).status, 0);
  const auto flagged = RunTool({"validate", dir + "/db.slb"});
  EXPECT_NE(flagged.out.find("outlier: Steel 10 mm on M (V): cut speed 5000 mm/min"),
            std::string::npos)
      << flagged.out;
  const auto relaxed = RunTool({"validate", dir + "/db.slb", "--threshold", "3.5"});
  EXPECT_EQ(relaxed.out.find("outlier"), std::string::npos) << relaxed.out;
}

TEST(Validate, InvalidFileExitsOneWithTheLibraryMessage) {
  // The record check accepts any positive thickness; the whole-file check
  // stops at 500 mm.
  const std::string dir = ScratchDir();
  WriteDatabase(dir + "/db.slb", {{"V", "M", "Steel", Settings(600, 100)}});
  const auto run = RunTool({"validate", dir + "/db.slb"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out.substr(run.out.find(": ")), ": INVALID\n  record-check: Steel 600 mm on M (V): "
                                                "thickness_mm must be 0.1 to 300 mm (is 600)\n"
                                                "1 finding\n");
  EXPECT_EQ(run.err, "slb-tool: Thickness out of range in parameter 0\n");
}

TEST(Validate, JsonListsFindingsWithRecords) {
  const auto run = RunTool({"validate", SamplePath(), "--json"});
  ASSERT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("\"valid\": true"), std::string::npos);
  EXPECT_NE(run.out.find("\"kind\": \"outlier\""), std::string::npos);
}

TEST(Validate, MissingFileIsExplainedNextToTheLibraryMessage) {
  const std::string path = ScratchDir() + "/absent.slb";
  const auto run = RunTool({"validate", path});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: " + path + ": file not found (Failed to open file: " + path + ")\n");
}
