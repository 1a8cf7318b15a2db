// export --sheetcam: the tool table byte for byte, and build reading it
// back to the same records.
#include <gtest/gtest.h>

#include <regex>

#include "controller_export_checks.h"
#include "test_database.h"
#include "tool_runner.h"

using namespace tooltest;

TEST(SheetcamExport, MetricTableMatchesGolden) {
  const std::string out = ScratchDir() + "/AIR-20A.tools";
  const auto run = RunTool({"export", SamplePath(), "--sheetcam", out, "--machine", "AIR-20A"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + out + ": 23 entries for AIR-20A, in mm\n");
  EXPECT_EQ(run.err, "");
  ExpectGolden("sheetcam_air_20a_mm.tools", ReadText(out));
}

TEST(SheetcamExport, ImperialTableMatchesGoldenAndWarnsAboutSheetcamUnits) {
  const std::string out = ScratchDir() + "/AIR-45A.tools";
  const auto run = RunTool({"export", SamplePath(), "--sheetcam", out, "--machine", "AIR-45A",
                            "--units", "inch", "--thicknesses", "8"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "slb-tool: warning: SheetCam keeps lengths in mm whatever it displays; the table is "
            "written in inches for a set-up that reads them so\n");
  ExpectGolden("sheetcam_air_45a_inch.tools", ReadText(out));
}

TEST(SheetcamExport, EverySectionIsAPlasmaToolWithTheImportedKeys) {
  const std::string out = ScratchDir() + "/m.tools";
  ASSERT_EQ(RunTool({"export", SamplePath(), "--sheetcam", out, "--machine", "AIR-40A"}).status,
            0);
  const std::string keys =
      "Type=PlasmaTool\nName=[^\n]+\nTool\\\\ number=[1-9][0-9]{0,5}\nKerf\\\\ width=[^\n]+\n"
      "Pierce\\\\ height=[^\n]+\nPierce\\\\ delay=[^\n]+\nCut\\\\ height=[^\n]+\n"
      "Feed\\\\ rate=[^\n]+\nPause\\\\ at\\\\ end\\\\ of\\\\ cut=0\nCut\\\\ current=[^\n]+\n"
      "Cut\\\\ voltage=[^\n]+\n";
  const std::regex file("(; [^\n]*\n)+(\\[Tool[0-9]+\\]\n" + keys + ")+");
  const std::string text = ReadText(out);
  EXPECT_TRUE(std::regex_match(text, file)) << text.substr(0, 600);
  EXPECT_NE(text.find("[Tool33]\n"), std::string::npos);
  EXPECT_EQ(text.find("[Tool34]\n"), std::string::npos);
}

TEST(SheetcamExport, BuildReadsBackTheSameRecordsInMm) {
  const std::string dir = ScratchDir();
  for (const auto& machine : SampleMachines()) {
    ExpectRoundTrip(dir, "--sheetcam", machine, "mm");
  }
}

TEST(SheetcamExport, BuildReadsBackTheSameRecordsInInches) {
  const std::string dir = ScratchDir();
  for (const auto& machine : SampleMachines()) {
    ExpectRoundTrip(dir, "--sheetcam", machine, "inch");
  }
}

TEST(SheetcamExport, NamesWithSettingsCharactersAreQuotedAndReadBack) {
  const std::string dir = ScratchDir();
  WriteDatabase(dir + "/q.slb", {{"Acme", "T1", "Steel, \"mild\"; #1", Settings(6, 2000)}});
  const auto out = RunTool({"export", dir + "/q.slb", "--sheetcam", dir + "/q.tools",
                            "--machine", "T1"});
  ASSERT_EQ(out.status, 0) << out.err;
  const std::string text = ReadText(dir + "/q.tools");
  EXPECT_NE(text.find("\nName=\"Steel, \\\"mild\\\"; #1 6 mm\"\n"), std::string::npos)
      << text;
  const auto in = RunTool({"build", dir + "/back.slb", "--from-sheetcam", dir + "/q.tools",
                           "--vendor", "Acme", "--machine", "T1", "--material-rule",
                           "steel=Steel, \"mild\"; #1"});
  ASSERT_EQ(in.status, 0) << in.err;
  EXPECT_EQ(SortedRows(dir + "/back.slb"), SortedRows(dir + "/q.slb"));
}
