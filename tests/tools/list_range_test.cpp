// list and range.
#include <gtest/gtest.h>

#include "tool_runner.h"

using namespace tooltest;

TEST(List, MachinesInIdOrder) {
  const auto run = RunTool({"list", SamplePath(), "machines"});
  ASSERT_EQ(run.status, 0);
  ExpectGolden("list_machines.txt", run.out);
}

// Vendors take their ids as their first machine model (by name) registers them.
TEST(List, VendorsAndMaterials) {
  EXPECT_EQ(RunTool({"list", SamplePath(), "vendors"}).out,
            "Compact air plasma\nAir plasma\nShop\n");
  EXPECT_EQ(RunTool({"list", SamplePath(), "materials"}).out,
            "Aluminium\nMild steel\nStainless steel\n");
}

TEST(List, JsonIsAnArray) {
  EXPECT_EQ(RunTool({"list", SamplePath(), "materials", "--json"}).out,
            "[\n  \"Aluminium\",\n  \"Mild steel\",\n  \"Stainless steel\"\n]\n");
}

TEST(List, MissingFileIsExplainedNextToTheLibraryMessage) {
  const std::string path = ScratchDir() + "/absent.slb";
  const auto run = RunTool({"list", path, "vendors"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: " + path + ": file not found (Failed to open file: " + path + ")\n");
}

TEST(Range, OfAMaterialOnOneMachine) {
  const auto run = RunTool({"range", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Mild steel on AIR-45A: 1.524 to 25.4 mm (11 records)\n");
}

TEST(Range, OfAMaterialOnEveryMachine) {
  const auto run = RunTool({"range", SamplePath(), "--material", "Aluminium"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.out, "Aluminium: 1 to 20 mm (63 records)\n");
}

TEST(Range, Json) {
  const auto run = RunTool({"range", SamplePath(), "--material", "Aluminium", "--json"});
  ExpectGolden("range_aluminium.json", run.out);
}

TEST(Range, UnknownMaterialFails) {
  const auto run = RunTool({"range", SamplePath(), "--material", "Brass"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no records of Brass\n");
}
