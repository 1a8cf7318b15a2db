// query --model: linear interpolation (the default) or the power model,
// with the same output fields and the same safety rules.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "sparlane/sparlane.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

// The object's keys, and those of every object inside it, with their paths.
void CollectKeys(const nlohmann::json& value, const std::string& path,
                 std::vector<std::string>& keys) {
  if (value.is_object()) {
    for (const auto& [key, inner] : value.items()) {
      keys.push_back(path + "/" + key);
      CollectKeys(inner, path + "/" + key, keys);
    }
  } else if (value.is_array()) {
    for (std::size_t i = 0; i < value.size(); ++i) {
      CollectKeys(value[i], path + "/" + std::to_string(i), keys);
    }
  }
}

}  // namespace

TEST(QueryModel, PowerModelTextMatchesGolden) {
  const auto run = RunTool(MildSteelAsk("query", "8", {"--model", "power"}));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  ExpectGolden("query_power_8mm.txt", run.out);
}

TEST(QueryModel, PowerModelJsonMatchesGolden) {
  const auto run = RunTool(MildSteelAsk("query", "8", {"--model", "power", "--json"}));
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectGolden("query_power_8mm.json", run.out);
}

TEST(QueryModel, LinearIsTheDefault) {
  const auto plain = RunTool(MildSteelAsk("query", "8"));
  EXPECT_EQ(plain.out, RunTool(MildSteelAsk("query", "8", {"--model", "linear"})).out);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "8", {"--json"})).out,
            RunTool(MildSteelAsk("query", "8", {"--model", "linear", "--json"})).out);
  EXPECT_EQ(plain.out.rfind("Mild steel 8 mm on AIR-45A (interpolate)\n", 0), 0u) << plain.out;
}

TEST(QueryModel, PowerJsonHasTheFieldsOfLinearJson) {
  for (const char* thickness : {"8", "2", "30"}) {
    const auto linear = nlohmann::json::parse(RunTool(MildSteelAsk("query", thickness, {"--json"})).out);
    const auto power =
        nlohmann::json::parse(RunTool(MildSteelAsk("query", thickness, {"--json", "--model", "power"})).out);
    std::vector<std::string> linear_keys, power_keys;
    CollectKeys(linear, "", linear_keys);
    CollectKeys(power, "", power_keys);
    EXPECT_EQ(power_keys, linear_keys) << thickness;
    EXPECT_EQ(power["neighbours"], linear["neighbours"]) << thickness;
  }
}

TEST(QueryModel, PowerModelGivesWhatTheLibraryEstimates) {
  Sparlane::Database db;
  ASSERT_EQ(db.LoadFromBinary(SamplePath()), Sparlane::ErrorCode::Success);
  for (const float thickness : {2.0f, 8.0f, 11.0f, 30.0f}) {
    const auto expected = db.Estimate("Mild steel", thickness, "AIR-45A");
    const auto run = RunTool(MildSteelAsk("query", nlohmann::json(thickness).dump(),
                                 {"--json", "--model", "power"}));
    ASSERT_EQ(run.status, 0) << run.err;
    const auto json = nlohmann::json::parse(run.out);
    const auto& p = json["parameter"];
    EXPECT_EQ(p["cut_speed_mm_min"].get<float>(), expected.parameter.cut_speed_mm_min);
    EXPECT_EQ(p["kerf_width_mm"].get<float>(), expected.parameter.kerf_width_mm);
    EXPECT_EQ(p["arc_voltage_v"].get<float>(), expected.parameter.arc_voltage_v);
    EXPECT_EQ(json["confidence"].get<float>(), expected.confidence);
    EXPECT_EQ(json["extrapolated"].get<bool>(), expected.extrapolated);
  }
  // Between the rows the two models differ in cut speed.
  EXPECT_NE(db.Estimate("Mild steel", 8.0f, "AIR-45A").parameter.cut_speed_mm_min,
            db.Interpolate("Mild steel", 8.0f, "AIR-45A").parameter.cut_speed_mm_min);
}

TEST(QueryModel, CalcUsesTheModelToo) {
  const auto run = RunTool({"calc", SamplePath(), "--material", "Mild steel", "--machine",
                            "AIR-45A", "--thickness", "8", "--length", "1000", "--model",
                            "power"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("record (interpolate, power model):\n"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("cut speed          985  mm/min"), std::string::npos) << run.out;
}

TEST(QueryModel, FarBeyondTheListedRowsIsRefusedWithEitherModel) {
  const auto linear = RunTool(MildSteelAsk("query", "40"));
  const auto power = RunTool(MildSteelAsk("query", "40", {"--model", "power"}));
  EXPECT_EQ(power.status, 1);
  EXPECT_EQ(power.out, "");
  EXPECT_EQ(power.err, linear.err);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "40", {"--model", "power", "--allow-extrapolation"})).status, 0);
}

TEST(QueryModel, ModelBesideExactOrNearestIsAUsageError) {
  const auto exact = RunTool(MildSteelAsk("query", "8", {"--model", "power", "--exact", "0"}));
  EXPECT_EQ(exact.status, 2);
  EXPECT_NE(exact.err.find("--exact excludes --model"), std::string::npos) << exact.err;
  const auto nearest = RunTool(MildSteelAsk("query", "8", {"--nearest", "--model", "linear"}));
  EXPECT_EQ(nearest.status, 2);
  EXPECT_NE(nearest.err.find("--nearest excludes --model"), std::string::npos) << nearest.err;
}

TEST(QueryModel, UnknownModelIsAUsageError) {
  for (const char* name : {"cubic", "0", "1", "Power", ""}) {
    const auto run = RunTool(MildSteelAsk("query", "8", {"--model", name}));
    EXPECT_EQ(run.status, 2) << name;
    EXPECT_EQ(run.out, "") << name;
    EXPECT_NE(run.err.find("--model"), std::string::npos) << run.err;
  }
}
