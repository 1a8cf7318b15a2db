// build --from-plasmac / --from-sheetcam on real files from the wild and on
// small files written here.
#include <gtest/gtest.h>

#include "tool_runner.h"

using namespace tooltest;

namespace {

#define REQUIRE_REAL_WORLD(var, name)                                  \
  const std::string var = RealWorldFile(name);                         \
  if (var.empty()) GTEST_SKIP() << "real-world sample data not found"

std::string ExportCsv(const std::string& slb) {
  const std::string csv = slb + ".csv";
  EXPECT_EQ(RunTool({"export", slb, "--csv", csv}).status, 0);
  return ReadText(csv);
}

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

}  // namespace

TEST(ImportPlasmac, ImperialAndMetricFilesOfOneChartGiveTheSameRecords) {
  REQUIRE_REAL_WORLD(imperial, "qtplasmac-material-imperial-1.cfg");
  REQUIRE_REAL_WORLD(metric, "qtplasmac-material-metric-1.cfg");
  const std::string dir = ScratchDir();
  const auto a = RunTool({"build", dir + "/in.slb", "--from-plasmac", imperial, "--vendor", "Shop",
                          "--machine", "PM45", "--filter", "Mild Steel - 45 A - "});
  ASSERT_EQ(a.status, 0) << a.err;
  EXPECT_NE(a.out.find("values read as inches, 14 placed"), std::string::npos) << a.out;
  const auto b = RunTool({"build", dir + "/mm.slb", "--from-plasmac", metric, "--vendor", "Shop",
                          "--machine", "PM45", "--filter", "Mild Steel - 45 A - "});
  ASSERT_EQ(b.status, 0) << b.err;
  EXPECT_NE(b.out.find("values read as mm, 14 placed"), std::string::npos) << b.out;
  const std::string csv = ExportCsv(dir + "/in.slb");
  EXPECT_EQ(csv, ExportCsv(dir + "/mm.slb"));
  // 16 gauge steel, 249 in/min, 0.053 in kerf, 0.15 in pierce height.
  EXPECT_NE(csv.find("Shop,PM45,Mild steel,1.51892,6324.6,1.524,3.81,3.81,128,0.1,1.3462,45,0\n"),
            std::string::npos)
      << csv;
}

TEST(ImportPlasmac, DuplicateNumbersAndDuplicateThicknessesAreReported) {
  REQUIRE_REAL_WORLD(imperial, "qtplasmac-material-imperial-1.cfg");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", imperial, "--vendor",
                            "Shop", "--machine", "PM45"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find(imperial + ":1057: material number 66 appears again at line 1105; "
                                    "the later block wins"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find(imperial + ":17: entry \"Mild Steel - 45 A - 16 GA\" not placed: same "
                                    "material and thickness (1.51892 mm) as \"Mild Steel - 45 A "
                                    "- 16 GA\" at line 1"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.out.find("128 entries, values read as inches"), std::string::npos) << run.out;
}

TEST(ImportPlasmac, OldPlasmacFileWithRulesForTransliteratedNames) {
  REQUIRE_REAL_WORLD(path, "plasmac-material-metric-1.cfg");
  const std::string dir = ScratchDir();
  const auto run =
      RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "Shop", "--machine",
               "P65", "--material-rule", "stal=Mild steel", "--material-rule",
               "\xD1\x81\xD1\x82\xD0\xB0\xD0\xBB\xD1\x8C=Mild steel"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("6 entries, values read as mm, 5 placed"), std::string::npos) << run.out;
  EXPECT_NE(run.err.find(": no unit in the name; 3 taken as mm"), std::string::npos) << run.err;
  const std::string csv = ExportCsv(dir + "/out.slb");
  EXPECT_EQ(Count(csv, "\n"), 6u) << csv;
  // Sections come as 3, 4, 1, 2, 5; the records are sorted by thickness.
  EXPECT_LT(csv.find("Mild steel,1,"), csv.find("Mild steel,3,")) << csv;
}

TEST(ImportPlasmac, WithoutMaterialRulesUnknownNamesAreNotPlaced) {
  REQUIRE_REAL_WORLD(path, "plasmac-material-metric-1.cfg");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "Shop",
                            "--machine", "P65"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find(path + ":7: entry \"stal 3 mm\" not placed: no material rule matches "
                                "the name"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
}

TEST(ImportPlasmac, FallbackMaterialPlacesEveryNamedEntry) {
  REQUIRE_REAL_WORLD(path, "plasmac-material-metric-1.cfg");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "Shop",
                            "--machine", "P65", "--material", "Steel"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("5 placed"), std::string::npos) << run.out;
}

TEST(ImportPlasmac, OldMatFormatIsReadAsInchesAndAnIncompleteEntryIsReported) {
  REQUIRE_REAL_WORLD(path, "plasmac-material-v1-imperial-1.mat");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "Sim",
                            "--machine", "PC"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("8 entries, values read as inches, 7 placed"), std::string::npos)
      << run.out;
  EXPECT_NE(run.err.find(path + ":16: entry \"Mild Steel 18 GA\" not placed: missing "
                                "PIERCE_DELAY, CUT_HEIGHT, CUT_SPEED"),
            std::string::npos)
      << run.err;
  const std::string csv = ExportCsv(dir + "/out.slb");
  // "Mild Steel 3/16": a bare fraction is inches; no KERF_WIDTH key gives 0.
  EXPECT_NE(csv.find("Sim,PC,Mild steel,4.7625,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("Sim,PC,Mild steel,1.51892,6324.6,1.524,3.81,3.81,128,0.1,0,45,0\n"),
            std::string::npos)
      << csv;
}

TEST(ImportPlasmac, ThicknessRangesArePlacedAtTheirMiddle) {
  REQUIRE_REAL_WORLD(path, "qtplasmac-material-metric-2.cfg");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "Hot",
                            "--machine", "HS"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("\"Mild Steel/1.7-3.4mm\": the range 1.7-3.4mm is placed at its middle"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("\"Basic default Material\" not placed: no material rule matches"),
            std::string::npos);
  const std::string csv = ExportCsv(dir + "/out.slb");
  EXPECT_NE(csv.find("Hot,HS,Mild steel,2.55,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("Hot,HS,Mild steel,0.8,"), std::string::npos) << csv;
}

TEST(ImportPlasmac, NothingPlacedWritesNothing) {
  REQUIRE_REAL_WORLD(path, "qtplasmac-material-metric-3.cfg");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", path, "--vendor", "A",
                            "--machine", "B"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("slb-tool: no entries could be placed; nothing written to " + dir +
                         "/out.slb\n"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
}

TEST(ImportPlasmac, ExplicitThicknessKeyAndUnknownKeys) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/m.cfg",
            "[MATERIAL_NUMBER_1]  \r\nNAME = Plate\r\nKERF_WIDTH = 1.2\r\nPIERCE_HEIGHT = 3\r\n"
            "PIERCE_DELAY = 0.4\r\nCUT_HEIGHT = 1.5\r\nCUT_SPEED = 2500\r\nCUT_AMPS = 40.0\r\n"
            "CUT_VOLTS = 120\r\nTHICKNESS = 5.0\r\nFOO = 1\r\n#[MATERIAL_NUMBER_2]\r\n");
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/m.cfg",
                            "--vendor", "V", "--machine", "M", "--material", "Steel"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find(dir + "/m.cfg:11: unknown key FOO ignored"), std::string::npos)
      << run.err;
  EXPECT_EQ(ExportCsv(dir + "/out.slb").substr(ExportCsv(dir + "/out.slb").find('\n') + 1),
            "V,M,Steel,5,2500,1.5,3,3,120,0.4,1.2,40,0\n");
}

TEST(ImportPlasmac, UndecidableUnitsAskForTheUnitsOption) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/m.cfg",
            "[MATERIAL_NUMBER_1]\nNAME = Mild Steel 3 mm\nKERF_WIDTH = 0.3\nPIERCE_HEIGHT = 1\n"
            "PIERCE_DELAY = 0.4\nCUT_HEIGHT = 0.5\nCUT_SPEED = 250\nCUT_AMPS = 40\n"
            "CUT_VOLTS = 120\n");
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/m.cfg",
                            "--vendor", "V", "--machine", "M"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("give --units mm or --units inch"), std::string::npos) << run.err;
  const auto inch = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/m.cfg",
                             "--vendor", "V", "--machine", "M", "--units", "inch"});
  ASSERT_EQ(inch.status, 0) << inch.err;
  const std::string csv = ExportCsv(dir + "/out.slb");
  EXPECT_NE(csv.find("V,M,Mild steel,3,6350,12.7,25.4,25.4,120,0.4,7.62,40,0\n"), std::string::npos)
      << csv;
}

TEST(ImportPlasmac, EntryWithoutCurrentFailsTheBuildUnlessInvalidRowsAreSkipped) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/m.cfg",
            "[MATERIAL_NUMBER_1]\nNAME = Mild Steel 3 mm\nKERF_WIDTH = 1.5\nPIERCE_HEIGHT = 3\n"
            "PIERCE_DELAY = 0.4\nCUT_HEIGHT = 1.5\nCUT_SPEED = 2500\nCUT_AMPS = 40\n"
            "CUT_VOLTS = 120\n"
            "[MATERIAL_NUMBER_2]\nNAME = Mild Steel 6 mm\nKERF_WIDTH = 1.5\nPIERCE_HEIGHT = 3\n"
            "PIERCE_DELAY = 0.4\nCUT_HEIGHT = 1.5\nCUT_SPEED = 1500\nCUT_AMPS = \n"
            "CUT_VOLTS = 120\n");
  const std::vector<std::string> args = {"build",    dir + "/out.slb", "--from-plasmac",
                                         dir + "/m.cfg", "--vendor", "V",
                                         "--machine", "M"};
  const auto strict = RunTool(args);
  EXPECT_EQ(strict.status, 1);
  EXPECT_NE(strict.err.find("slb-tool: " + dir + "/m.cfg:10: current_amps must be 1 to 1000 A "
                            "(is 0)\n"),
            std::string::npos)
      << strict.err;
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
  auto skipping = args;
  skipping.push_back("--skip-invalid");
  const auto run = RunTool(skipping);
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("slb-tool: warning: " + dir + "/m.cfg:10: current_amps must be 1 to "
                         "1000 A (is 0); row skipped\n"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.out.find("wrote " + dir + "/out.slb: 1 records, 1 invalid rows skipped\n"),
            std::string::npos)
      << run.out;
}

TEST(ImportPlasmac, MissingFileIsReported) {
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/absent.cfg",
                            "--vendor", "V", "--machine", "M"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: " + dir + "/absent.cfg: cannot read the file\n");
}

TEST(ImportPlasmac, MalformedMaterialRuleIsReported) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/m.cfg", "[MATERIAL_NUMBER_1]\nNAME = x\n");
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/m.cfg",
                            "--vendor", "V", "--machine", "M", "--material-rule", "steel"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("--material-rule wants PATTERN=MATERIAL, got \"steel\""),
            std::string::npos)
      << run.err;
}

TEST(ImportSheetcam, FileWithoutPlasmaToolsImportsNothing) {
  REQUIRE_REAL_WORLD(path, "sheetcam-tools-1.tools");
  const std::string dir = ScratchDir();
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sheetcam", path, "--vendor", "A",
                            "--machine", "B"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("no plasma tools (Type=PlasmaTool) among 6 tool sections"),
            std::string::npos)
      << run.err;
  EXPECT_FALSE(FileExists(dir + "/out.slb"));
}

TEST(ImportSheetcam, PlasmaToolsBecomeRecords) {
  const std::string dir = ScratchDir();
  WriteText(dir + "/t.tools",
            "[Tool0]\nType=CodeTool\nName=THC-Disable\n"
            "[Tool1]\nType=PlasmaTool\nName=Mild steel 6mm 45A\nTool\\ number=1\n"
            "Kerf\\ width=1.5\nPierce\\ height=3.8\nPierce\\ delay=0.6\nCut\\ height=1.5\n"
            "Feed\\ rate=1430\nCut\\ current=45\nCut\\ voltage=130\n"
            "[Tool2]\nType=PlasmaTool\nName=Stainless 3 mm\nKerf\\ width=1.4\n"
            "Pierce\\ height=3.8\nPierce\\ delay=0.4\nCut\\ height=1.5\nFeed\\ rate=2500\n"
            "Preset\\ current=45\nPreset\\ volts=125\n"
            "[Tool3]\nType=PlasmaTool\nName=Aluminium 2 mm\nKerf\\ width=1.4\n"
            "[pathRules/Set0/Rule0]\nFeed\\ rate=0.6\n");
  const auto run = RunTool({"build", dir + "/out.slb", "--from-sheetcam", dir + "/t.tools",
                            "--vendor", "V", "--machine", "M"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find(dir + "/t.tools:25: entry \"Aluminium 2 mm\" not placed: missing "
                               "Pierce height, Pierce delay, Cut height, Feed rate"),
            std::string::npos)
      << run.err;
  const std::string csv = ExportCsv(dir + "/out.slb");
  EXPECT_NE(csv.find("V,M,Mild steel,6,1430,1.5,3.8,3.8,130,0.6,1.5,45,0\n"), std::string::npos)
      << csv;
  EXPECT_NE(csv.find("V,M,Stainless steel,3,2500,1.5,3.8,3.8,125,0.4,1.4,45,0\n"),
            std::string::npos)
      << csv;
}

TEST(ImportPlasmac, ThicknessIsReadFromGaugesFractionsAndUnits) {
  const std::string dir = ScratchDir();
  std::string cfg;
  const char* names[] = {"Stainless Steel - 45 A - 16 GA", "Aluminum - 45 A - 16 GA",
                         "Mild Steel - 45 A - 16 GA",      "Mild Steel - 45 A - 1/4 IN",
                         "Mild Steel - 45 A - 1 IN",       "Mild Steel - 45 A - 0.5 MM",
                         "Mild Steel - 45 A - 99 GA",      "Mild Steel"};
  int number = 0;
  for (const char* name : names) {
    cfg += "[MATERIAL_NUMBER_" + std::to_string(++number) + "]\nNAME = " + name +
           "\nKERF_WIDTH = 1.5\nPIERCE_HEIGHT = 3.8\nPIERCE_DELAY = 0.5\nCUT_HEIGHT = 1.5\n"
           "CUT_SPEED = 2000\nCUT_AMPS = 45\nCUT_VOLTS = 128\n";
  }
  WriteText(dir + "/m.cfg", cfg);
  const auto run = RunTool({"build", dir + "/out.slb", "--from-plasmac", dir + "/m.cfg",
                            "--vendor", "V", "--machine", "M"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.err.find("\"Mild Steel - 45 A - 99 GA\" not placed: no gauge table entry for "
                         "gauge 99"),
            std::string::npos)
      << run.err;
  EXPECT_NE(run.err.find("\"Mild Steel\" not placed: no thickness in the name"),
            std::string::npos)
      << run.err;
  const std::string csv = ExportCsv(dir + "/out.slb");
  EXPECT_NE(csv.find("V,M,Stainless steel,1.5875,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("V,M,Aluminium,1.29032,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("V,M,Mild steel,1.51892,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("V,M,Mild steel,6.35,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("V,M,Mild steel,25.4,"), std::string::npos) << csv;
  EXPECT_NE(csv.find("V,M,Mild steel,0.5,"), std::string::npos) << csv;
}
