// Usage errors exit 2; --help exits 0 for the program and every subcommand.
#include <gtest/gtest.h>

#include "tool_runner.h"

using tooltest::RunTool;
using tooltest::SamplePath;

TEST(Usage, NoSubcommandIsAUsageError) {
  const auto run = RunTool({});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("A subcommand is required"), std::string::npos) << run.err;
}

TEST(Usage, UnknownSubcommandIsAUsageError) {
  EXPECT_EQ(RunTool({"frobnicate"}).status, 2);
}

TEST(Usage, HelpExitsZeroForEverySubcommand) {
  const auto top = RunTool({"--help"});
  EXPECT_EQ(top.status, 0);
  for (const char* command :
       {"info", "validate", "list", "range", "query", "optimal", "calc", "export", "build"}) {
    const auto run = RunTool({command, "--help"});
    EXPECT_EQ(run.status, 0) << command;
    EXPECT_NE(run.out.find(command), std::string::npos) << run.out;
    EXPECT_NE(top.out.find(command), std::string::npos) << command;
  }
}

TEST(Usage, QueryWithoutMaterialIsAUsageError) {
  const auto run = RunTool({"query", SamplePath(), "--machine", "AIR-45A", "--thickness", "8"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("--material"), std::string::npos) << run.err;
}

TEST(Usage, ExactAndNearestTogetherIsAUsageError) {
  EXPECT_EQ(RunTool({"query", SamplePath(), "--material", "Mild steel", "--machine", "AIR-45A",
                     "--thickness", "8", "--exact", "0.1", "--nearest"})
                .status,
            2);
}

TEST(Usage, NegativeExactToleranceIsAUsageError) {
  EXPECT_EQ(RunTool({"query", SamplePath(), "--material", "Mild steel", "--machine", "AIR-45A",
                     "--thickness", "8", "--exact", "-1"})
                .status,
            2);
}

TEST(Usage, NonNumericThicknessIsAUsageError) {
  EXPECT_EQ(RunTool({"query", SamplePath(), "--material", "Mild steel", "--machine", "AIR-45A",
                     "--thickness", "eight"})
                .status,
            2);
}

TEST(Usage, ListOfAnUnknownTableIsAUsageError) {
  EXPECT_EQ(RunTool({"list", SamplePath(), "torches"}).status, 2);
}

TEST(Usage, ExportNeedsOneOutputFormat) {
  const auto run = RunTool({"export", SamplePath()});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("export needs exactly one of --csv, --json, --plasmac, --sheetcam"),
            std::string::npos)
      << run.err;
}

TEST(Usage, ExportWithCsvAndJsonIsAUsageError) {
  EXPECT_EQ(RunTool({"export", SamplePath(), "--csv", "a.csv", "--json", "a.json"}).status, 2);
}

TEST(Usage, BuildNeedsExactlyOneSource) {
  EXPECT_EQ(RunTool({"build", "out.slb"}).status, 2);
  EXPECT_EQ(RunTool({"build", "out.slb", "--from-csv", "a.csv", "--from-sqlite", "b.db"}).status,
            2);
}

TEST(Usage, MaterialFileImportNeedsVendorAndMachine) {
  const auto run = RunTool({"build", "out.slb", "--from-plasmac", "m.cfg", "--vendor", "V"});
  EXPECT_EQ(run.status, 2);
  EXPECT_NE(run.err.find("--machine"), std::string::npos) << run.err;
}

TEST(Usage, ImportOptionsWithCsvAreAUsageError) {
  EXPECT_EQ(RunTool({"build", "out.slb", "--from-csv", "a.csv", "--units", "mm"}).status, 2);
}

TEST(Usage, UnknownUnitsAreAUsageError) {
  EXPECT_EQ(RunTool({"build", "out.slb", "--from-plasmac", "m.cfg", "--vendor", "V",
                     "--machine", "M", "--units", "furlong"})
                .status,
            2);
}

TEST(Usage, UnknownQualityLevelIsAUsageError) {
  EXPECT_EQ(RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine", "AIR-45A",
                     "--thickness", "8", "--quality", "perfect"})
                .status,
            2);
}
