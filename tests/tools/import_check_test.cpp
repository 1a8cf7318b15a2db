// Imports refuse what is physically absurd: every row passes the strict
// record check or is named with its field and range; numbers keep their
// sign and say when they overflow; names stay printable; repeated keys and
// rows are reported.
#include <gtest/gtest.h>

#include "test_csv.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

struct Built {
  ToolRun run;
  std::string dir;
  std::string in;
  std::string out;
};

Built BuildCsv(const std::string& rows, std::vector<std::string> extra = {}) {
  Built b;
  b.dir = ScratchDir();
  b.in = b.dir + "/in.csv";
  b.out = b.dir + "/out.slb";
  WriteText(b.in, std::string(CsvHeader()) + rows);
  std::vector<std::string> args = {"build", b.out, "--from-csv", b.in};
  args.insert(args.end(), extra.begin(), extra.end());
  b.run = RunTool(args);
  return b;
}

// One QtPlasmaC block of nine lines with plausible metric values; a key in
// changed takes the value given there, and extra lines follow the block.
std::string PlasmacBlock(int number, const std::string& name,
                         const std::vector<std::pair<std::string, std::string>>& changed = {},
                         const std::string& extra = "") {
  std::vector<std::pair<std::string, std::string>> keys = {
      {"KERF_WIDTH", "1.5"}, {"PIERCE_HEIGHT", "3.8"}, {"PIERCE_DELAY", "0.5"},
      {"CUT_HEIGHT", "1.5"}, {"CUT_SPEED", "2000"},    {"CUT_AMPS", "45"},
      {"CUT_VOLTS", "120"}};
  std::string block = "[MATERIAL_NUMBER_" + std::to_string(number) + "]\nNAME = " + name + "\n";
  for (auto& [key, value] : keys) {
    for (const auto& [changed_key, changed_value] : changed) {
      if (changed_key == key) value = changed_value;
    }
    block += key + " = " + value + "\n";
  }
  return block + extra;
}

Built BuildPlasmac(const std::string& cfg, std::vector<std::string> extra = {}) {
  Built b;
  b.dir = ScratchDir();
  b.in = b.dir + "/m.cfg";
  b.out = b.dir + "/out.slb";
  WriteText(b.in, cfg);
  std::vector<std::string> args = {"build", b.out, "--from-plasmac", b.in,
                                   "--vendor", "V", "--machine", "M"};
  args.insert(args.end(), extra.begin(), extra.end());
  b.run = RunTool(args);
  return b;
}

std::string Line(const Built& b, int line, const std::string& reason) {
  return "slb-tool: " + b.in + ":" + std::to_string(line) + ": " + reason + "\n";
}

std::string Refused(const Built& b) {
  return "slb-tool: nothing written to " + b.out + "; --skip-invalid builds from the valid rows\n";
}

}  // namespace

TEST(ImportCheck, AbsurdCsvValuesAreRefusedNamingFieldAndRange) {
  const auto b = BuildCsv(CsvRow("V", "M", "Steel", "1e30", "3000") +
                          "V,M,Steel,3,2000,-1.5,3.8,3.8,120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,-3.8,3.8,120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,-3.8,120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,3.8,120,-0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,3.8,120,0.5,-1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,3.8,-120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,30000,1.5,3.8,3.8,120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,3.8,120,0.5,1.5,1001,0\n" +
                          "V,M,Steel,3,2000,5,3.8,3.8,120,0.5,1.5,45,0\n" +
                          "V,M,Steel,3,2000,1.5,3.8,3.8,inf,0.5,1.5,45,0\n" +
                          CsvRow("V", "M", "Steel", "3", "2000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.out, "");
  EXPECT_EQ(b.run.err,
            Line(b, 2, "thickness_mm must be 0.1 to 300 mm (is 1e+30)") +
                Line(b, 3, "cut_height_mm must not be negative (is -1.5)") +
                Line(b, 4, "pierce_height_mm must not be negative (is -3.8)") +
                Line(b, 5, "transfer_height_mm must not be negative (is -3.8)") +
                Line(b, 6, "pierce_time_s must not be negative (is -0.5)") +
                Line(b, 7, "kerf_width_mm must not be negative (is -1.5)") +
                Line(b, 8, "arc_voltage_v must be 20 to 300 V (is -120)") +
                Line(b, 9, "cut_speed_mm_min must be 10 to 20000 mm/min (is 30000)") +
                Line(b, 10, "current_amps must be 1 to 1000 A (is 1001)") +
                Line(b, 11, "cut_height_mm must not exceed pierce_height_mm (is 5, "
                            "pierce_height_mm is 3.8)") +
                Line(b, 12, "arc_voltage_v must be a finite number (is inf)") + Refused(b));
  EXPECT_EQ(DirectoryEntries(b.dir), std::vector<std::string>{"in.csv"});
}

TEST(ImportCheck, SkipInvalidBuildsFromTheValidRowsAndListsTheRest) {
  const auto b = BuildCsv(CsvRow("V", "M", "Steel", "2", "3000") +
                              CsvRow("V", "M", "Steel", "500", "3000") +
                              CsvRow("V", "M", "Steel", "4", "2000"),
                          {"--skip-invalid"});
  ASSERT_EQ(b.run.status, 0) << b.run.err;
  EXPECT_EQ(b.run.err, "slb-tool: warning: " + b.in +
                           ":3: thickness_mm must be 0.1 to 300 mm (is 500); row skipped\n");
  EXPECT_EQ(b.run.out, "wrote " + b.out + ": 2 records, 1 invalid rows skipped\n");
  const auto range = RunTool({"range", b.out, "--material", "Steel"});
  EXPECT_EQ(range.out, "Steel: 2 to 4 mm (2 records)\n");
}

TEST(ImportCheck, SkipInvalidWithNoValidRowWritesNothing) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/in.csv", std::string(CsvHeader()) + CsvRow("V", "M", "Steel", "0", "3000"));
  WriteText(dir + "/keep.slb", "old");
  const auto run =
      RunTool({"build", dir + "/keep.slb", "--from-csv", dir + "/in.csv", "--skip-invalid"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: warning: " + dir + "/in.csv:2: thickness_mm must be 0.1 to 300 mm "
                     "(is 0); row skipped\nslb-tool: no valid records; nothing written to " +
                         dir + "/keep.slb\n");
  EXPECT_EQ(ReadText(dir + "/keep.slb"), "old");
}

TEST(ImportCheck, OnlyTheFirstTwentyProblemsAreListedThenTheCount) {
  std::string rows;
  for (int i = 0; i < 25; ++i) rows += CsvRow("V", "M", "Steel", "0", "3000");
  const auto b = BuildCsv(rows);
  EXPECT_EQ(b.run.status, 1);
  std::string expected;
  for (int line = 2; line < 22; ++line) {
    expected += Line(b, line, "thickness_mm must be 0.1 to 300 mm (is 0)");
  }
  expected += "slb-tool: 5 more invalid rows not shown (25 in all)\n" + Refused(b);
  EXPECT_EQ(b.run.err, expected);
}

TEST(ImportCheck, SkippedRowsAreListedTwentyAtMostToo) {
  std::string rows = CsvRow("V", "M", "Steel", "3", "3000");
  for (int i = 0; i < 21; ++i) rows += CsvRow("V", "M", "Steel", "-1", "3000");
  const auto b = BuildCsv(rows, {"--skip-invalid"});
  ASSERT_EQ(b.run.status, 0) << b.run.err;
  EXPECT_NE(b.run.err.find("slb-tool: warning: 1 more invalid rows not shown (21 in all)\n"),
            std::string::npos)
      << b.run.err;
  EXPECT_EQ(b.run.out, "wrote " + b.out + ": 1 records, 21 invalid rows skipped\n");
}

TEST(ImportCheck, OverflowIsOutOfRangeNotNotANumber) {
  const auto b = BuildCsv(CsvRow("V", "M", "Steel", "1e40", "3000") +
                          CsvRow("V", "M", "Steel", "3", "-1e99") +
                          CsvRow("V", "M", "Steel", "3", "fast"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.err, Line(b, 2, "thickness_mm is out of range: \"1e40\"") +
                           Line(b, 3, "cut_speed_mm_min is out of range: \"-1e99\"") +
                           Line(b, 4, "cut_speed_mm_min is not a number: \"fast\"") + Refused(b));
}

TEST(ImportCheck, SignsAreKept) {
  const auto b = BuildCsv(CsvRow("V", "M", "Steel", "-3", "3000") +
                          CsvRow("V", "M", "Steel", "+-3", "3000") +
                          CsvRow("V", "M", "Steel", "+3", "3000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.err, Line(b, 2, "thickness_mm must be 0.1 to 300 mm (is -3)") +
                           Line(b, 3, "thickness_mm is not a number: \"+-3\"") + Refused(b));
}

TEST(ImportCheck, ByteOrderMarkBeforeTheHeaderIsAccepted) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/in.csv", "\xEF\xBB\xBF" + std::string(CsvHeader()) +
                                 CsvRow("V", "M", "Steel", "2", "3000"));
  const auto run = RunTool({"build", dir + "/out.slb", "--from-csv", dir + "/in.csv"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + dir + "/out.slb: 1 records\n");
  ASSERT_EQ(RunTool({"list", dir + "/out.slb", "vendors"}).out, "V\n");
}

TEST(ImportCheck, NamesWithControlCharactersOrNulAreRefusedWithTheirRow) {
  const auto b = BuildCsv(CsvRow("V", "M\x01", "Steel", "2", "3000") +
                          CsvRow("V", "M", std::string("Ste\0el", 6), "2", "3000") +
                          CsvRow("V\x1b[31m", "M", "Steel", "2", "3000") +
                          CsvRow("V", "M", "Steel\x7f", "2", "3000") +
                          CsvRow("V", "M", "St\xC3\xA4hl", "2", "3000"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.err,
            Line(b, 2, "machine_model holds a control character (byte 0x01); names must be "
                       "printable text") +
                Line(b, 3, "material holds a control character (byte 0x00); names must be "
                           "printable text") +
                Line(b, 4, "vendor holds a control character (byte 0x1b); names must be "
                           "printable text") +
                Line(b, 5, "material holds a control character (byte 0x7f); names must be "
                           "printable text") +
                Refused(b));
}

TEST(ImportCheck, ConflictingRowsOfOneThicknessAreWarningsNamingBothLines) {
  const auto b = BuildCsv(CsvRow("V", "M", "Steel", "2", "3000") +
                          CsvRow("V", "M", "Steel", "4", "2000") +
                          CsvRow("V", "M", "Steel", "2", "3000") +
                          CsvRow("V", "M", "Steel", "2", "2500") +
                          CsvRow("V", "M2", "Steel", "2", "1000"));
  ASSERT_EQ(b.run.status, 0) << b.run.err;
  EXPECT_EQ(b.run.err, "slb-tool: warning: " + b.in + ":5: same vendor, machine model, material "
                       "and thickness (2 mm) as line 2 but different settings; a lookup may "
                       "answer from either row\n");
  EXPECT_EQ(b.run.out, "wrote " + b.out + ": 5 records\n");
}

TEST(ImportCheck, PlasmacEntryWithAnImpossibleCurrentWritesNothingOverAGoodFile) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/m.cfg",
            PlasmacBlock(1, "Mild Steel 3 mm", {{"CUT_AMPS", "70000"}}));
  WriteText(dir + "/keep.slb", "good");
  const auto run = RunTool({"build", dir + "/keep.slb", "--from-plasmac", dir + "/m.cfg",
                            "--vendor", "V", "--machine", "M"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, dir + "/m.cfg: 1 entries, values read as mm, 1 placed\n");
  EXPECT_EQ(run.err, "slb-tool: " + dir + "/m.cfg:1: current_amps must be 1 to 1000 A "
                     "(is 70000)\nslb-tool: nothing written to " + dir +
                         "/keep.slb; --skip-invalid builds from the valid rows\n");
  EXPECT_EQ(ReadText(dir + "/keep.slb"), "good");
  const auto skipping = RunTool({"build", dir + "/keep.slb", "--from-plasmac", dir + "/m.cfg",
                                 "--vendor", "V", "--machine", "M", "--skip-invalid"});
  EXPECT_EQ(skipping.status, 1);
  EXPECT_NE(skipping.err.find("no valid records; nothing written to " + dir + "/keep.slb\n"),
            std::string::npos)
      << skipping.err;
  EXPECT_EQ(ReadText(dir + "/keep.slb"), "good");
  EXPECT_EQ(DirectoryEntries(dir), (std::vector<std::string>{"keep.slb", "m.cfg"}));
}

TEST(ImportCheck, PlasmacNamesWithAbsurdThicknessesAreRefused) {
  const auto b = BuildPlasmac(PlasmacBlock(1, "Mild Steel 1e400mm") +
                              PlasmacBlock(2, "Mild Steel -3mm") +
                              PlasmacBlock(3, "Mild Steel 99999999999999999999/3 IN") +
                              PlasmacBlock(4, "Mild Steel 99999999999999999999999mm") +
                              PlasmacBlock(5, "Mild Steel - 3mm"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.err,
            Line(b, 1, "the thickness 1e400 in the name is out of range") +
                Line(b, 10, "thickness_mm must be 0.1 to 300 mm (is -3)") +
                Line(b, 19, "thickness_mm must be 0.1 to 300 mm (is 8.466667e+20)") +
                Line(b, 28, "thickness_mm must be 0.1 to 300 mm (is 1e+23)") + Refused(b));
  EXPECT_FALSE(FileExists(b.out));
}

TEST(ImportCheck, PlasmacValuesThatCannotBeReadMakeTheEntryInvalid) {
  const auto b = BuildPlasmac(PlasmacBlock(1, "Mild Steel 3 mm", {{"KERF_WIDTH", "1e999"}}) +
                              PlasmacBlock(2, "Mild Steel 4 mm", {{"CUT_VOLTS", "high"}}) +
                              PlasmacBlock(3, "Mild Steel 5 mm", {}, "THICKNESS = -5\n") +
                              PlasmacBlock(4, "Mild Steel 6 mm"));
  EXPECT_EQ(b.run.status, 1);
  EXPECT_EQ(b.run.err, Line(b, 1, "KERF_WIDTH is out of range: \"1e999\"") +
                           Line(b, 10, "CUT_VOLTS is not a number: \"high\"") +
                           Line(b, 19, "thickness_mm must be 0.1 to 300 mm (is -5)") + Refused(b));
}

TEST(ImportCheck, RepeatedPlasmacKeyIsAWarningNamingBothLines) {
  const auto b = BuildPlasmac(PlasmacBlock(1, "Mild Steel 3 mm", {}, "CUT_SPEED = 2100\n"));
  ASSERT_EQ(b.run.status, 0) << b.run.err;
  EXPECT_EQ(b.run.err, "slb-tool: warning: " + b.in + ":10: CUT_SPEED is given again in the block "
                       "of line 1 (first at line 7); the later value is used\n");
  const auto query = RunTool({"query", b.out, "--material", "Mild steel", "--machine", "M",
                              "--thickness", "3", "--exact", "0"});
  EXPECT_EQ(Field(query.out, "cut speed"), "2100 mm/min") << query.out << query.err;
}

TEST(ImportCheck, RepeatedSheetcamKeyIsAWarningNamingBothLines) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/t.tools",
            "[Tool1]\nType=PlasmaTool\nName=Mild steel 6mm 45A\nKerf\\ width=1.5\n"
            "Pierce\\ height=3.8\nPierce\\ delay=0.6\nCut\\ height=1.5\nFeed\\ rate=1430\n"
            "Cut\\ current=45\nCut\\ voltage=130\nFeed\\ rate=1500\n");
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sheetcam", dir + "/t.tools",
                            "--vendor", "V", "--machine", "M"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "slb-tool: warning: " + dir + "/t.tools:11: Feed rate is given again in "
                     "[Tool1] (first at line 8); the later value is used\n");
}

TEST(ImportCheck, UnitsAgainstTheEvidenceAreWarnedAbout) {
  const auto b = BuildPlasmac(PlasmacBlock(1, "Mild Steel 3 mm"), {"--units", "inch"});
  EXPECT_NE(b.run.err.find("slb-tool: warning: --units inch was given, but the values look like "
                           "mm (1 entries vote mm, 0 vote inches); check the units\n"),
            std::string::npos)
      << b.run.err;
  const auto agreeing = BuildPlasmac(PlasmacBlock(1, "Mild Steel 3 mm"), {"--units", "mm"});
  ASSERT_EQ(agreeing.run.status, 0) << agreeing.run.err;
  EXPECT_EQ(agreeing.run.err, "");
}
