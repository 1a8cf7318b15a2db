// list and range.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "test_database.h"
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

TEST(List, JsonOfNamesThatAreNotUtf8IsStillValidJson) {
  // Only a file written by other means holds such names; the tool refuses
  // them on import.
  const std::string dir = ScratchDir();
  WriteDatabase(dir + "/db.slb", {{"V", "M", "Steel \xff", Settings(2, 3000)}});
  const auto run = RunTool({"list", dir + "/db.slb", "materials", "--json"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(nlohmann::json::parse(run.out), nlohmann::json({"Steel \xEF\xBF\xBD"}));
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

TEST(Range, TextIsRoundedForTheShopAndJsonIsExact) {
  const std::string dir = ScratchDir();
  WriteDatabase(dir + "/db.slb", {{"V", "M", "Steel", Settings(1.5875f, 3000)},
                                  {"V", "M", "Steel", Settings(9.5250001f, 900)}});
  const auto text = RunTool({"range", dir + "/db.slb", "--material", "Steel"});
  EXPECT_EQ(text.out, "Steel: 1.587 to 9.525 mm (2 records)\n");
  const auto json = RunTool({"range", dir + "/db.slb", "--material", "Steel", "--json"});
  const auto doc = nlohmann::json::parse(json.out);
  EXPECT_EQ(doc["min_thickness_mm"].get<float>(), 1.5875f);
  EXPECT_EQ(doc["max_thickness_mm"].get<float>(), 9.5250001f);
  EXPECT_NE(json.out.find("\"min_thickness_mm\": 1.5875,"), std::string::npos) << json.out;
}

TEST(Range, UnknownMaterialFails) {
  const auto run = RunTool({"range", SamplePath(), "--material", "Brass"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no records of Brass\n");
}
