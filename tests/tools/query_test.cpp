// query: interpolated, exact and nearest settings.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "record_fields.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

std::vector<std::string> Query(const std::string& thickness, std::vector<std::string> extra = {}) {
  std::vector<std::string> args = {"query",    SamplePath(), "--material", "Mild steel",
                                   "--machine", "AIR-45A",   "--thickness", thickness};
  args.insert(args.end(), extra.begin(), extra.end());
  return args;
}

}  // namespace

TEST(Query, InterpolatesBetweenTwoListedRowsAndShowsThem) {
  const auto run = RunTool(Query("8"));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  ExpectGolden("query_interpolate_8mm.txt", run.out);
}

TEST(Query, InterpolationIsTheDefaultMode) {
  EXPECT_EQ(RunTool(Query("8")).out, RunTool(Query("8", {"--interpolate"})).out);
}

TEST(Query, AboveTheTableIsExtrapolatedFromTheThickestRow) {
  const auto run = RunTool(Query("30"));
  ASSERT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("confidence: 0.30\nextrapolated: yes\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("  below  AIR-45A          25.4"), std::string::npos) << run.out;
  EXPECT_EQ(run.out.find("  above"), std::string::npos);
}

TEST(Query, JsonCarriesConfidenceAndNeighbours) {
  const auto run = RunTool(Query("8", {"--json"}));
  ASSERT_EQ(run.status, 0);
  ExpectGolden("query_interpolate_8mm.json", run.out);
}

TEST(Query, TextIsRoundedForTheShop) {
  const auto run = RunTool(Query("8"));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(Field(run.out, "cut speed"), "1021 mm/min");
  EXPECT_EQ(Field(run.out, "arc voltage"), "133.1 V");
  EXPECT_EQ(Field(run.out, "pierce time"), "0.70 s");
  EXPECT_EQ(Field(run.out, "kerf width"), "1.655 mm");
  EXPECT_NE(run.out.find("confidence: 0.99\n"), std::string::npos) << run.out;
}

TEST(Query, JsonCarriesTheLibrarysFloatsExactly) {
  const auto run = RunTool(Query("8", {"--json"}));
  ASSERT_EQ(run.status, 0) << run.err;
  const auto doc = nlohmann::json::parse(run.out);
  Sparlane::Database db;
  ASSERT_EQ(db.LoadFromBinary(SamplePath()), Sparlane::ErrorCode::Success);
  const auto expected = db.Interpolate("Mild steel", 8.0f, "AIR-45A");
  const auto& p = expected.parameter;
  for (const auto& f : slb::kRecordFloatFields) {
    EXPECT_EQ(doc["parameter"][f.name].get<float>(), p.*f.member) << f.name;
  }
  EXPECT_EQ(doc["parameter"]["current_amps"], p.current_amps);
  EXPECT_EQ(doc["parameter"]["flags"], p.flags);
  EXPECT_EQ(doc["confidence"].get<float>(), expected.confidence);
}

TEST(Query, ExactWithinTolerance) {
  const auto run = RunTool(Query("6.3", {"--exact", "0.1"}));
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectGolden("query_exact.txt", run.out);
}

TEST(Query, ExactMissFailsWithAReason) {
  const auto run = RunTool(Query("8", {"--exact", "0.1"}));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err,
            "slb-tool: no record of Mild steel on AIR-45A within 0.1 mm of 8 mm\n");
}

TEST(Query, NearestListedRow) {
  const auto run = RunTool(Query("8.5", {"--nearest"}));
  ASSERT_EQ(run.status, 0);
  EXPECT_NE(run.out.find("Mild steel 8.5 mm on AIR-45A (nearest)\n"), std::string::npos);
  EXPECT_EQ(Field(run.out, "thickness"), "9.525 mm") << run.out;
  EXPECT_EQ(run.out.find("confidence"), std::string::npos);
}

TEST(Query, UnknownMachineFailsNamingIt) {
  const auto run = RunTool({"query", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-99A", "--thickness", "8"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: unknown machine model: AIR-99A\n");
}

TEST(Query, MaterialWithoutRecordsOnTheMachineFails) {
  const auto run = RunTool({"query", SamplePath(), "--material", "Aluminium", "--machine",
                            "AIR-45A", "--thickness", "8"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no settings can be built for Aluminium on AIR-45A at 8 mm\n");
}

TEST(Query, NegativeThicknessIsAUsageError) {
  const auto run = RunTool(Query("-2"));
  EXPECT_EQ(run.status, 2);
  EXPECT_EQ(run.out, "");
  EXPECT_NE(run.err.find("--thickness: \"-2\" must be greater than 0"), std::string::npos)
      << run.err;
}

TEST(Query, MissingFileIsExplainedNextToTheLibraryMessage) {
  const std::string path = ScratchDir() + "/absent.slb";
  const auto run = RunTool({"query", path, "--material", "Mild steel", "--machine", "AIR-45A",
                            "--thickness", "8"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: " + path + ": file not found (Failed to open file: " + path + ")\n");
}
