// optimal and calc.
#include <gtest/gtest.h>

#include <cstdlib>

#include "tool_runner.h"

using namespace tooltest;

TEST(Optimal, FastestRecordOfAnyMachine) {
  const auto run = RunTool({"optimal", SamplePath(), "--material", "Mild steel", "--thickness",
                            "6", "--tolerance", "0.5"});
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectGolden("optimal_mild_steel_6mm.txt", run.out);
}

TEST(Optimal, MissFailsWithAReason) {
  // Within the extrapolation limit of the rows (up to 25.4 mm), but no
  // listed row lies within the tolerance.
  const auto run = RunTool({"optimal", SamplePath(), "--material", "Mild steel", "--thickness",
                            "28", "--tolerance", "0.5"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no record of Mild steel within 0.5 mm of 28 mm\n");
}

TEST(Optimal, UnknownMaterialFails) {
  const auto run =
      RunTool({"optimal", SamplePath(), "--material", "Brass", "--thickness", "6"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: unknown material: Brass\n");
}

TEST(Calc, AllCalculatorsOnAnInterpolatedRecord) {
  const auto run = RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A", "--thickness", "8"});
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectGolden("calc_interpolate_8mm.txt", run.out);
}

TEST(Calc, CutTimeFollowsLengthSpeedAndPierces) {
  // The 6.35 mm row: 1219.2 mm/min, 0.6 s pierce.
  const auto run = RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A", "--thickness", "6.35", "--exact", "0", "--length",
                            "1219.2", "--pierces", "5", "--json"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("\"cut_length\": 1219.2,\n    \"pierces\": 5,\n    \"cut_time\": 60,\n"
                         "    \"pierce_time\": 3,\n    \"total_time\": 63\n"),
            std::string::npos)
      << run.out;
}

TEST(Calc, InputsChangeTheirCalculators) {
  const auto run = RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A", "--thickness", "6.35", "--nearest", "--inside",
                            "--corner-angle", "20", "--hole-diameter", "1", "--quality",
                            "precision", "--limit-lead"});
  ASSERT_EQ(run.status, 0) << run.err;
  auto section = [&](const std::string& title) {
    const auto at = run.out.find(title + ":\n");
    return at == std::string::npos ? std::string() : run.out.substr(at);
  };
  EXPECT_EQ(Field(section("kerf offset (inside cut)"), "offset"), "-0.775 mm");
  EXPECT_EQ(Field(section("corner slowdown at 20 deg"), "speed factor"), "0.344");
  EXPECT_EQ(Field(section("corner slowdown at 20 deg"), "sharp corner"), "yes");
  EXPECT_EQ(Field(section("small hole of 1 mm"), "speed factor"), "0");
  EXPECT_EQ(Field(section("small hole of 1 mm"), "very small hole"), "yes");
  EXPECT_EQ(Field(section("quality profile (precision)"), "speed factor"), "0.5");
  // Limited to half the 6.35 mm plate; the radius keeps the unlimited length.
  EXPECT_EQ(Field(run.out, "lead-in length"), "3.175 mm");
  EXPECT_EQ(Field(run.out, "lead-in radius"), "2.381 mm");
}

TEST(Calc, MissFailsLikeQuery) {
  const auto run = RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A", "--thickness", "8", "--exact", "0"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err, "slb-tool: no record of Mild steel on AIR-45A within 0 mm of 8 mm\n");
}
