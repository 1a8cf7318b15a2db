// export --plasmac/--sheetcam with --thicknesses and --gauges: derived
// entries computed by the database, named as derived, held to the tool's
// extrapolation and strict-check rules; and the export's usage errors.
#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "controller_export_checks.h"
#include "test_database.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

std::vector<std::string> Export(const std::string& out, std::vector<std::string> extra) {
  std::vector<std::string> args = {"export",    SamplePath(), "--plasmac",  out,
                                   "--machine", "AIR-45A",    "--material", "Mild steel"};
  args.insert(args.end(), extra.begin(), extra.end());
  return args;
}

std::string Section(const std::string& cfg, const std::string& name) {
  const auto at = cfg.find("NAME = " + name + "\n");
  if (at == std::string::npos) return "";
  return cfg.substr(at, cfg.find("\n\n", at) - at + 1);
}

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

const char kAboveRefusal[] =
    "slb-tool: 40 mm is too far above the listed rows of Mild steel on AIR-45A (1.524 to 25.4 "
    "mm) to extrapolate safely: settings are given from 1.143 to 31.75 mm (25 % beyond the "
    "span); --allow-extrapolation gives them anyway\n";

}  // namespace

TEST(ControllerThicknesses, DerivedEntryHoldsWhatQueryGivesAndSaysItIsDerived) {
  for (const char* model : {"linear", "power"}) {
    const std::string out = ScratchDir() + "/m.cfg";
    const auto run = RunTool(Export(out, {"--thicknesses", "8", "--model", model}));
    ASSERT_EQ(run.status, 0) << run.err;
    const auto query = nlohmann::json::parse(
        RunTool({"query", SamplePath(), "--material", "Mild steel", "--machine", "AIR-45A",
                 "--thickness", "8", "--json", "--model", model})
            .out);
    const std::string cfg = ReadText(out);
    const std::string name =
        std::string("Mild steel 8 mm (derived, confidence ") +
        (std::string(model) == "linear" ? "0.99" : "0.43") + ")";
    const std::string section = Section(cfg, name);
    ASSERT_FALSE(section.empty()) << cfg;
    const auto& p = query["parameter"];
    EXPECT_NE(section.find("\nCUT_SPEED = " + p["cut_speed_mm_min"].dump() + "\n"),
              std::string::npos)
        << section;
    EXPECT_NE(section.find("\nKERF_WIDTH = " + p["kerf_width_mm"].dump() + "\n"),
              std::string::npos)
        << section;
    EXPECT_NE(section.find("\nCUT_VOLTS = " + p["arc_voltage_v"].dump() + "\n"),
              std::string::npos)
        << section;
    EXPECT_NE(section.find("\nTHICKNESS = 8\n"), std::string::npos) << section;
    EXPECT_NE(cfg.find(std::string("# entries marked \"derived\" are computed by the ") + model +
                       " model from the listed rows\n"),
              std::string::npos);
  }
}

TEST(ControllerThicknesses, ThicknessOfAListedRowIsNotWrittenTwice) {
  const std::string out = ScratchDir() + "/m.cfg";
  ASSERT_EQ(RunTool(Export(out, {"--thicknesses", "6.35,6.3505"})).status, 0);
  const std::string cfg = ReadText(out);
  EXPECT_EQ(Count(cfg, "[MATERIAL_NUMBER_"), 11u);
  EXPECT_EQ(Count(cfg, "derived"), 0u);
}

TEST(ControllerThicknesses, FarBeyondTheListedRowsIsRefusedAndNothingIsWritten) {
  const std::string out = ScratchDir() + "/m.cfg";
  WriteText(out, "before\n");
  const auto run = RunTool(Export(out, {"--thicknesses", "8,40"}));
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err, std::string(kAboveRefusal) + "slb-tool: nothing written to " + out + "\n");
  EXPECT_EQ(ReadText(out), "before\n");
}

TEST(ControllerThicknesses, AllowedExtrapolationIsNamedAsSuch) {
  const std::string out = ScratchDir() + "/m.cfg";
  const auto run = RunTool(Export(out, {"--thicknesses", "40", "--allow-extrapolation"}));
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_NE(ReadText(out).find("NAME = Mild steel 40 mm (derived, extrapolated, confidence "),
            std::string::npos);
}

TEST(ControllerThicknesses, GaugesOfTheMaterialsFamilyWithinTheLimit) {
  const std::string out = ScratchDir() + "/m.cfg";
  const auto run = RunTool({"export", SamplePath(), "--plasmac", out, "--machine", "AIR-20A",
                            "--gauges"});
  ASSERT_EQ(run.status, 0) << run.err;
  const std::string cfg = ReadText(out);
  // Steel 16 GA is 0.0598 in, stainless 16 GA 0.0625 in, aluminium 16 GA
  // 0.0508 in.
  EXPECT_NE(cfg.find("NAME = Mild steel 16 GA 1.51892 mm (derived, confidence "),
            std::string::npos);
  EXPECT_NE(cfg.find("NAME = Stainless steel 16 GA 1.5875 mm (derived, confidence "),
            std::string::npos);
  EXPECT_NE(cfg.find("NAME = Aluminium 16 GA 1.29032 mm (derived, confidence "),
            std::string::npos);
  EXPECT_EQ(cfg.find("Mild steel 23 GA"), std::string::npos);
  EXPECT_NE(run.err.find("slb-tool: warning: gauges 23, 24, 25, 26, 27, 28, 29, 30 of Mild steel "
                         "left out: they are too far from the listed rows of Mild steel on "
                         "AIR-20A (1 to 10 mm) to extrapolate safely: settings are given from "
                         "0.75 to 12.5 mm (25 % beyond the span); --allow-extrapolation gives "
                         "them anyway\n"),
            std::string::npos)
      << run.err;
  EXPECT_EQ(run.out, "wrote " + out + ": 77 entries for AIR-20A, in mm\n");
}

TEST(ControllerThicknesses, GaugeEntriesReadBackAtTheirGaugeThickness) {
  const std::string dir = ScratchDir();
  std::string first;
  for (const char* format : {"--plasmac", "--sheetcam"}) {
    for (const char* units : {"mm", "inch"}) {
      const std::string base = dir + "/g" + format + "-" + units;
      ASSERT_EQ(RunTool({"export", SamplePath(), format, base + ".out", "--machine", "AIR-20A",
                         "--gauges", "--units", units})
                    .status,
                0);
      const auto in = RunTool({"build", base + ".slb",
                               format[2] == 'p' ? "--from-plasmac" : "--from-sheetcam",
                               base + ".out", "--vendor", "Compact air plasma", "--machine",
                               "AIR-20A", "--units", units});
      ASSERT_EQ(in.status, 0) << in.err;
      EXPECT_NE(in.out.find("77 entries, values read as " +
                            std::string(units[0] == 'm' ? "mm" : "inches") + ", 77 placed"),
                std::string::npos)
          << in.out;
      const std::string rows = SortedRows(base + ".slb");
      EXPECT_NE(rows.find("Compact air plasma,AIR-20A,Mild steel,1.51892,"), std::string::npos);
      EXPECT_NE(rows.find("Compact air plasma,AIR-20A,Aluminium,1.29032,"), std::string::npos);
      // The material file has a THICKNESS key, the tool table only the
      // name: both read back the same.
      if (first.empty()) first = rows;
      EXPECT_EQ(rows, first) << format << " " << units;
    }
  }
}

TEST(ControllerThicknesses, MaterialWithoutGaugeTableGetsAWarning) {
  const std::string dir = ScratchDir();
  WriteDatabase(dir + "/b.slb", {{"Acme", "T1", "Brass", Settings(3, 2000)},
                                 {"Acme", "T1", "Brass", Settings(6, 1000)}});
  const auto run =
      RunTool({"export", dir + "/b.slb", "--plasmac", dir + "/b.cfg", "--machine", "T1",
               "--gauges"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err,
            "slb-tool: warning: no gauge table for Brass (only steel, galvanised steel, "
            "stainless steel and aluminium have one); only its listed rows are written\n");
  EXPECT_EQ(Count(ReadText(dir + "/b.cfg"), "[MATERIAL_NUMBER_"), 2u);
}

TEST(ControllerThicknesses, UnsafeListedRowRefusesTheExport) {
  const std::string dir = ScratchDir();
  auto odd = Settings(6, 2000);
  odd.kerf_width_mm = 1.2345f;  // a value found nowhere else in the file
  WriteDatabase(dir + "/u.slb", {{"Acme", "T1", "Mild steel", Settings(3, 3000)},
                                 {"Acme", "T1", "Mild steel", odd}});
  PatchFloat(dir + "/u.slb", 1.2345f, std::numeric_limits<float>::quiet_NaN());
  for (const char* format : {"--plasmac", "--sheetcam"}) {
    const auto run =
        RunTool({"export", dir + "/u.slb", format, dir + "/u.out", "--machine", "T1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("slb-tool: u.slb: "), std::string::npos) << run.err;
    EXPECT_NE(run.err.find(": kerf_width_mm must be a finite number (is nan)\n"),
              std::string::npos)
        << run.err;
    EXPECT_FALSE(FileExists(dir + "/u.out"));
  }
}

TEST(ControllerThicknesses, UnknownNamesAreReported) {
  const std::string dir = ScratchDir();
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"--machine", "NOPE"}, "slb-tool: unknown machine model: NOPE\n"},
      {{"--machine", "AIR-45A", "--vendor", "Nobody"}, "slb-tool: unknown vendor: Nobody\n"},
      {{"--machine", "AIR-45A", "--vendor", "Shop"}, "slb-tool: no records of AIR-45A by Shop\n"},
      {{"--machine", "AIR-45A", "--material", "Brass"}, "slb-tool: unknown material: Brass\n"},
      {{"--machine", "AIR-45A", "--material", "Aluminium"},
       "slb-tool: no records of Aluminium on AIR-45A\n"}};
  for (const auto& [options, message] : cases) {
    std::vector<std::string> args = {"export", SamplePath(), "--plasmac", dir + "/x.cfg"};
    args.insert(args.end(), options.begin(), options.end());
    const auto run = RunTool(args);
    EXPECT_EQ(run.status, 1) << message;
    EXPECT_EQ(run.err, message + "slb-tool: nothing written to " + dir + "/x.cfg\n");
    EXPECT_FALSE(FileExists(dir + "/x.cfg"));
  }
}

TEST(ControllerThicknesses, ExportOntoItsInputIsRefused) {
  const std::string dir = ScratchDir();
  ASSERT_EQ(RunTool({"export", SamplePath(), "--csv", dir + "/s.csv"}).status, 0);
  ASSERT_EQ(RunTool({"build", dir + "/s.slb", "--from-csv", dir + "/s.csv"}).status, 0);
  const std::string before = ReadText(dir + "/s.slb");
  const auto run = RunTool({"export", dir + "/s.slb", "--plasmac", dir + "/s.slb", "--machine",
                            "AIR-45A"});
  EXPECT_EQ(run.status, 1);
  EXPECT_NE(run.err.find("it is the input file"), std::string::npos) << run.err;
  EXPECT_EQ(ReadText(dir + "/s.slb"), before);
}

TEST(ControllerThicknesses, UsageErrors) {
  const std::string out = ScratchDir() + "/x.cfg";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"--plasmac", out}, "--machine is required"},
      {{"--sheetcam", out}, "--machine is required"},
      {{"--plasmac", out, "--sheetcam", out + "2", "--machine", "AIR-45A"},
       "export needs exactly one of --csv, --json, --plasmac, --sheetcam"},
      {{"--csv", out, "--units", "inch"}, "--units applies to --plasmac and --sheetcam only"},
      {{"--json", out, "--machine", "AIR-45A"},
       "--machine applies to --plasmac and --sheetcam only"},
      {{"--csv", out, "--gauges"}, "--gauges applies to --plasmac and --sheetcam only"},
      {{"--plasmac", out, "--machine", "AIR-45A", "--units", "feet"}, "--units"},
      {{"--plasmac", out, "--machine", "AIR-45A", "--thicknesses", "8", "--gauges"}, "excludes"},
      {{"--plasmac", out, "--machine", "AIR-45A", "--thicknesses", "8,0"}, "--thicknesses"},
      {{"--plasmac", out, "--machine", "AIR-45A", "--thicknesses", "nan"}, "--thicknesses"},
      {{"--plasmac", out, "--machine", "AIR-45A", "--model", "cubic"}, "--model"}};
  for (const auto& [options, message] : cases) {
    std::vector<std::string> args = {"export", SamplePath()};
    args.insert(args.end(), options.begin(), options.end());
    const auto run = RunTool(args);
    EXPECT_EQ(run.status, 2) << message;
    EXPECT_NE(run.err.find(message), std::string::npos) << run.err;
    EXPECT_FALSE(FileExists(out));
  }
}
