// export --plasmac: the material file byte for byte, its units, its
// numbering, and build reading it back to the same records.
#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>

#include "controller_export_checks.h"
#include "tool_runner.h"

using namespace tooltest;

namespace {

// NAME -> material number, for every section of a material file.
std::map<std::string, long> NumbersByName(const std::string& cfg) {
  static const std::regex section(R"(\[MATERIAL_NUMBER_(\d+)\]\nNAME = ([^\n]*)\n)");
  std::map<std::string, long> numbers;
  for (std::sregex_iterator it(cfg.begin(), cfg.end(), section), end; it != end; ++it) {
    numbers[(*it)[2]] = std::stol((*it)[1]);
  }
  return numbers;
}

// The value of KEY in the section whose NAME is name.
std::string ValueOf(const std::string& cfg, const std::string& name, const std::string& key) {
  const auto at = cfg.find("NAME = " + name + "\n");
  if (at == std::string::npos) return "<no entry " + name + ">";
  const auto end = cfg.find("\n\n", at);
  const auto line = cfg.find("\n" + key + " = ", at);
  if (line == std::string::npos || line > end) return "<no key " + key + ">";
  const auto value = line + key.size() + 4;
  return cfg.substr(value, cfg.find('\n', value) - value);
}

}  // namespace

TEST(PlasmacExport, MetricFileMatchesGolden) {
  const std::string out = ScratchDir() + "/AIR-20A_material.cfg";
  const auto run = RunTool({"export", SamplePath(), "--plasmac", out, "--machine", "AIR-20A"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + out + ": 23 entries for AIR-20A, in mm\n");
  EXPECT_EQ(run.err, "");
  ExpectGolden("plasmac_air_20a_mm.cfg", ReadText(out));
}

TEST(PlasmacExport, ImperialFileMatchesGolden) {
  const std::string out = ScratchDir() + "/AIR-20A_material.cfg";
  const auto run = RunTool(
      {"export", SamplePath(), "--plasmac", out, "--machine", "AIR-20A", "--units", "inch"});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, "wrote " + out + ": 23 entries for AIR-20A, in inch\n");
  ExpectGolden("plasmac_air_20a_inch.cfg", ReadText(out));
}

TEST(PlasmacExport, DerivedThicknessMatchesGolden) {
  const std::string out = ScratchDir() + "/AIR-45A_material.cfg";
  const auto run =
      RunTool({"export", SamplePath(), "--plasmac", out, "--machine", "AIR-45A", "--material",
               "Mild steel", "--thicknesses", "8,30"});
  ASSERT_EQ(run.status, 0) << run.err;
  ExpectGolden("plasmac_air_45a_derived.cfg", ReadText(out));
}

TEST(PlasmacExport, EveryFrontEndKeyIsWrittenInEverySection) {
  const std::string out = ScratchDir() + "/m.cfg";
  ASSERT_EQ(RunTool({"export", SamplePath(), "--plasmac", out, "--machine", "AIR-40A"}).status, 0);
  const std::string cfg = ReadText(out);
  const std::string keys =
      "NAME = [^\n]+\nKERF_WIDTH = [^\n]+\nPIERCE_HEIGHT = [^\n]+\nPIERCE_DELAY = [^\n]+\n"
      "PUDDLE_JUMP_HEIGHT = 0\nPUDDLE_JUMP_DELAY = 0\nCUT_HEIGHT = [^\n]+\nCUT_SPEED = [^\n]+\n"
      "CUT_AMPS = [^\n]+\nCUT_VOLTS = [^\n]+\nPAUSE_AT_END = 0\nGAS_PRESSURE = 0\nCUT_MODE = 1\n"
      "THICKNESS = [^\n]+\n\n";
  const std::regex file("(# [^\n]*\n)+\n(\\[MATERIAL_NUMBER_[1-9][0-9]{0,5}\\]\n" + keys + ")+");
  EXPECT_TRUE(std::regex_match(cfg, file)) << cfg.substr(0, 600);
  EXPECT_EQ(NumbersByName(cfg).size(), 34u);
}

TEST(PlasmacExport, InchFileDividesLengthsAndSpeedsButNotTimesVoltsOrAmps) {
  const std::string dir = ScratchDir();
  ASSERT_EQ(RunTool({"export", SamplePath(), "--plasmac", dir + "/mm.cfg", "--machine",
                     "AIR-45A"}).status, 0);
  ASSERT_EQ(RunTool({"export", SamplePath(), "--plasmac", dir + "/in.cfg", "--machine",
                     "AIR-45A", "--units", "inch"}).status, 0);
  const std::string mm = ReadText(dir + "/mm.cfg");
  const std::string in = ReadText(dir + "/in.cfg");
  // The sample's 16 gauge row: 1.524 mm, 6324.6 mm/min, kerf 1.3462, pierce
  // height 3.81, cut height 1.524, 0.1 s, 128 V, 45 A.
  const std::pair<const char*, const char*> expected[] = {
      {"KERF_WIDTH", "0.053"},  {"PIERCE_HEIGHT", "0.15"}, {"CUT_HEIGHT", "0.06"},
      {"CUT_SPEED", "249"},     {"THICKNESS", "0.06"},     {"PIERCE_DELAY", "0.1"},
      {"CUT_VOLTS", "128"},     {"CUT_AMPS", "45"},        {"PUDDLE_JUMP_HEIGHT", "0"}};
  for (const auto& [key, value] : expected) {
    EXPECT_EQ(ValueOf(in, "Mild steel 0.06 in", key), value) << key;
  }
  EXPECT_EQ(ValueOf(mm, "Mild steel 1.524 mm", "CUT_SPEED"), "6324.6");
  EXPECT_EQ(ValueOf(mm, "Mild steel 1.524 mm", "PIERCE_DELAY"), "0.1");
  EXPECT_NE(mm.find("# units: mm, mm/min; times in seconds\n"), std::string::npos);
  EXPECT_NE(in.find("# units: inch, inch/min; times in seconds\n"), std::string::npos);
  // The same plate keeps its number whatever the units.
  EXPECT_EQ(mm.substr(mm.find("[MATERIAL")).substr(0, 20),
            in.substr(in.find("[MATERIAL")).substr(0, 20));
}

TEST(PlasmacExport, BuildReadsBackTheSameRecordsInMm) {
  const std::string dir = ScratchDir();
  for (const auto& machine : SampleMachines()) {
    ExpectRoundTrip(dir, "--plasmac", machine, "mm");
  }
}

TEST(PlasmacExport, BuildReadsBackTheSameRecordsInInches) {
  const std::string dir = ScratchDir();
  for (const auto& machine : SampleMachines()) {
    ExpectRoundTrip(dir, "--plasmac", machine, "inch");
  }
}

TEST(PlasmacExport, RegeneratingGivesTheSameBytes) {
  const std::string dir = ScratchDir();
  const std::vector<std::string> args = {"--machine", "AIR-30A", "--gauges"};
  auto first = args, second = args;
  first.insert(first.begin(), {"export", SamplePath(), "--plasmac", dir + "/a.cfg"});
  second.insert(second.begin(), {"export", SamplePath(), "--plasmac", dir + "/b.cfg"});
  ASSERT_EQ(RunTool(first).status, 0);
  ASSERT_EQ(RunTool(second).status, 0);
  EXPECT_EQ(ReadText(dir + "/a.cfg"), ReadText(dir + "/b.cfg"));
}

TEST(PlasmacExport, AddedRowsAndMaterialsLeaveEveryNumberAsItWas) {
  const std::string dir = ScratchDir();
  ASSERT_EQ(RunTool({"export", SamplePath(), "--csv", dir + "/all.csv"}).status, 0);
  std::string csv = ReadText(dir + "/all.csv");
  const std::vector<std::string> options = {"--machine", "AIR-45A", "--material", "Mild steel",
                                            "--thicknesses", "8,11"};
  auto before_args = options, after_args = options;
  before_args.insert(before_args.begin(), {"export", SamplePath(), "--plasmac", dir + "/b.cfg"});
  after_args.insert(after_args.begin(), {"export", dir + "/more.slb", "--plasmac", dir + "/a.cfg"});
  ASSERT_EQ(RunTool(before_args).status, 0);
  // A row between listed ones, one below them all, and a material of its own.
  csv += "Air plasma,AIR-45A,Mild steel,8,1000,1.524,3.81,3.81,133,0.7,1.65,45,0\n"
         "Air plasma,AIR-45A,Mild steel,1.2,7000,1.524,3.81,3.81,127,0.1,1.3,45,0\n"
         "Air plasma,AIR-45A,Brass,3,2000,1.524,3.81,3.81,130,0.4,1.5,45,0\n";
  WriteText(dir + "/more.csv", csv);
  ASSERT_EQ(RunTool({"build", dir + "/more.slb", "--from-csv", dir + "/more.csv"}).status, 0);
  ASSERT_EQ(RunTool(after_args).status, 0);
  const auto before = NumbersByName(ReadText(dir + "/b.cfg"));
  const auto after = NumbersByName(ReadText(dir + "/a.cfg"));
  EXPECT_EQ(before.size(), 13u);
  EXPECT_EQ(after.size(), 14u);  // 8 mm is listed now, not derived
  std::size_t kept = 0;
  for (const auto& [name, number] : before) {
    const auto it = after.find(name);
    if (it == after.end()) continue;
    EXPECT_EQ(it->second, number) << name;
    ++kept;
  }
  EXPECT_EQ(kept, 12u);
  // The listed 8 mm row takes the number the derived 8 mm entry had.
  EXPECT_EQ(after.at("Mild steel 8 mm"),
            before.at("Mild steel 8 mm (derived, confidence 0.99)"));
  std::set<long> distinct;
  for (const auto& [name, number] : after) {
    EXPECT_GE(number, 1);
    EXPECT_LT(number, 1000000);
    distinct.insert(number);
  }
  EXPECT_EQ(distinct.size(), after.size());
}
