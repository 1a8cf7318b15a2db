// query, calc and optimal never hand out unsafe settings: the thickness
// must be a finite positive number, extrapolation far beyond the listed
// rows needs --allow-extrapolation, and settings failing the strict record
// check are refused with the reason.
#include <gtest/gtest.h>

#include <limits>

#include "test_database.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

// Mild steel on AIR-45A: settings are given from 1.143 to 31.75 mm (25 %
// beyond the listed span).

const char kAboveRefusal[] =
    "slb-tool: 40 mm is too far above the listed rows of Mild steel on AIR-45A (1.524 to 25.4 "
    "mm) to extrapolate safely: settings are given from 1.143 to 31.75 mm (25 % beyond the "
    "span); --allow-extrapolation gives them anyway\n";

}  // namespace

TEST(QuerySafety, ThicknessThatIsNotAFinitePositiveNumberIsAUsageError) {
  for (const char* command : {"query", "calc", "optimal"}) {
    for (const char* thickness : {"0", "-1", "nan", "inf", "-inf", "1e40", "1e-50", "8mm"}) {
      const auto run = RunTool(MildSteelAsk(command, thickness));
      EXPECT_EQ(run.status, 2) << command << " " << thickness;
      EXPECT_EQ(run.out, "") << command << " " << thickness;
      EXPECT_NE(run.err.find("--thickness"), std::string::npos) << run.err;
    }
  }
  EXPECT_NE(RunTool(MildSteelAsk("query", "1e40")).err.find("\"1e40\" is out of range"), std::string::npos);
  EXPECT_NE(RunTool(MildSteelAsk("query", "nan")).err.find("\"nan\" is not a finite number"),
            std::string::npos);
}

TEST(QuerySafety, ToleranceThatIsNotAFiniteNumberIsAUsageError) {
  for (const char* tolerance : {"nan", "inf", "-0.5"}) {
    EXPECT_EQ(RunTool(MildSteelAsk("query", "8", {"--exact", tolerance})).status, 2) << tolerance;
    EXPECT_EQ(RunTool(MildSteelAsk("calc", "8", {"--exact", tolerance})).status, 2) << tolerance;
    EXPECT_EQ(RunTool(MildSteelAsk("optimal", "8", {"--tolerance", tolerance})).status, 2) << tolerance;
  }
}

TEST(QuerySafety, FarAboveTheListedRowsIsRefusedNamingTheSpan) {
  const auto run = RunTool(MildSteelAsk("query", "40"));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, kAboveRefusal);
  const auto calc = RunTool(MildSteelAsk("calc", "40"));
  EXPECT_EQ(calc.status, 1);
  EXPECT_EQ(calc.err, kAboveRefusal);
  // Every mode: a listed row far from the thickness is no safer.
  EXPECT_EQ(RunTool(MildSteelAsk("query", "40", {"--nearest"})).err, kAboveRefusal);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "40", {"--exact", "20"})).err, kAboveRefusal);
}

TEST(QuerySafety, FarBelowTheListedRowsIsRefused) {
  const auto run = RunTool(MildSteelAsk("query", "0.01"));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: 0.01 mm is too far below the listed rows of Mild steel on AIR-45A (1.524 "
            "to 25.4 mm) to extrapolate safely: settings are given from 1.143 to 31.75 mm (25 % "
            "beyond the span); --allow-extrapolation gives them anyway\n");
}

TEST(QuerySafety, TheLimitIsAQuarterBeyondEachEndOfTheSpan) {
  EXPECT_EQ(RunTool(MildSteelAsk("query", "31.75")).status, 0);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "31.76")).status, 1);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "1.143")).status, 0);
  EXPECT_EQ(RunTool(MildSteelAsk("query", "1.142")).status, 1);
}

TEST(QuerySafety, AllowedExtrapolationPrintsItsConfidence) {
  const auto run = RunTool(MildSteelAsk("query", "40", {"--allow-extrapolation"}));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(run.out.find("confidence: "), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("extrapolated: yes\n"), std::string::npos) << run.out;
  const auto calc = RunTool(MildSteelAsk("calc", "40", {"--allow-extrapolation"}));
  ASSERT_EQ(calc.status, 0) << calc.err;
  EXPECT_NE(calc.out.find("confidence: "), std::string::npos) << calc.out;
  EXPECT_NE(calc.out.find("extrapolated: yes\n"), std::string::npos) << calc.out;
  const auto json = RunTool(MildSteelAsk("calc", "40", {"--allow-extrapolation", "--json"}));
  EXPECT_NE(json.out.find("\"extrapolated\": true"), std::string::npos) << json.out;
}

TEST(QuerySafety, OptimalUsesTheSpanOfTheMaterialOnAnyMachine) {
  const auto run = RunTool(MildSteelAsk("optimal", "40", {"--tolerance", "20"}));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.err,
            "slb-tool: 40 mm is too far above the listed rows of Mild steel (1 to 25.4 mm) to "
            "extrapolate safely: settings are given from 0.75 to 31.75 mm (25 % beyond the "
            "span); --allow-extrapolation gives them anyway\n");
  const auto allowed = RunTool(MildSteelAsk("optimal", "40", {"--tolerance", "20", "--allow-extrapolation"}));
  ASSERT_EQ(allowed.status, 0) << allowed.err;
  EXPECT_NE(allowed.out.find("fastest record of Mild steel within 20 mm of 40 mm\n"),
            std::string::npos)
      << allowed.out;
}

TEST(QuerySafety, ExtrapolatedSettingsOutsideTheStrictCheckAreNotShownEvenWhenAllowed) {
  // At 0.01 mm the extrapolated speed is far above 20000 mm/min.
  const auto run = RunTool(MildSteelAsk("query", "0.01", {"--allow-extrapolation"}));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("slb-tool: the settings found for Mild steel on AIR-45A at 0.01 mm fail "
                          "the strict record check and are not shown: thickness_mm must be 0.1 "
                          "to 300 mm (is 0.01)\n",
                          0),
            0u)
      << run.err;
}

TEST(QuerySafety, SettingsBuiltFromAnAbsurdRowAreNotShown) {
  const std::string path = ScratchDir() + "/absurd.slb";
  WriteDatabase(path, {{"V", "M", "Steel", Settings(1, 8000)},
                       {"V", "M", "Steel", Settings(1e23f, 1e20f)}});
  const auto run = RunTool({"query", path, "--material", "Steel", "--machine", "M",
                            "--thickness", "5"});
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, "slb-tool: the listed row of Steel on M at 1e+23 mm that the settings are "
                     "built from fails the strict record check, so none are shown: thickness_mm "
                     "must be 0.1 to 300 mm (is 1e+23)\n");
}

TEST(QuerySafety, ListedRowWithANonFiniteFieldIsNotShown) {
  const std::string path = ScratchDir() + "/nan.slb";
  auto odd = Settings(6, 1500);
  odd.kerf_width_mm = 1.2345f;  // a value found nowhere else in the file
  WriteDatabase(path, {{"V", "M", "Steel", Settings(3, 2500)}, {"V", "M", "Steel", odd}});
  PatchFloat(path, 1.2345f, std::numeric_limits<float>::quiet_NaN());
  for (const char* mode : {"--nearest", "--exact"}) {
    std::vector<std::string> args = {"query", path, "--material", "Steel", "--machine", "M",
                                     "--thickness", "6", mode};
    if (std::string(mode) == "--exact") args.push_back("0");
    const auto run = RunTool(args);
    EXPECT_EQ(run.status, 1) << mode;
    EXPECT_EQ(run.out, "") << mode;
    EXPECT_EQ(run.err, "slb-tool: the settings found for Steel on M at 6 mm fail the strict "
                       "record check and are not shown: kerf_width_mm must be a finite number "
                       "(is nan)\n")
        << mode;
  }
  const auto calc = RunTool({"calc", path, "--material", "Steel", "--machine", "M",
                             "--thickness", "6", "--nearest"});
  EXPECT_EQ(calc.status, 1);
  EXPECT_EQ(calc.out, "");
  const auto optimal = RunTool({"optimal", path, "--material", "Steel", "--thickness", "6"});
  EXPECT_EQ(optimal.status, 1);
  EXPECT_NE(optimal.err.find("kerf_width_mm must be a finite number (is nan)"), std::string::npos)
      << optimal.err;
}

TEST(QuerySafety, CalcRefusesNumbersThatAreNotFiniteOrAreNegative) {
  for (const char* option : {"--length", "--density", "--price-per-kg", "--machine-rate",
                             "--consumable-price", "--hole-diameter", "--corner-angle"}) {
    for (const char* value : {"nan", "inf", "-1"}) {
      const auto run = RunTool(MildSteelAsk("calc", "8", {option, value}));
      EXPECT_EQ(run.status, 2) << option << " " << value;
      EXPECT_EQ(run.out, "") << option << " " << value;
      EXPECT_NE(run.err.find(option), std::string::npos) << run.err;
    }
  }
  for (const char* value : {"0", "1.5", "nan"}) {
    EXPECT_EQ(RunTool(MildSteelAsk("calc", "8", {"--utilization", value})).status, 2) << value;
  }
  EXPECT_EQ(RunTool(MildSteelAsk("calc", "8", {"--pierces", "-1"})).status, 2);
  EXPECT_EQ(RunTool(MildSteelAsk("calc", "8", {"--length", "0", "--utilization", "1"})).status, 0);
}
