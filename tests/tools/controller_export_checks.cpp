#include "controller_export_checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tool_runner.h"

namespace tooltest {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string Join(std::vector<std::string> lines) {
  std::sort(lines.begin(), lines.end());
  std::string text;
  for (const auto& line : lines) text += line + "\n";
  return text;
}

std::string CsvOf(const std::string& slb) {
  const std::string csv = slb + ".csv";
  const auto run = RunTool({"export", slb, "--csv", csv});
  EXPECT_EQ(run.status, 0) << run.err;
  return ReadText(csv);
}

}  // namespace

std::vector<std::string> SampleMachines() {
  const auto machines = Lines(RunTool({"list", SamplePath(), "machines"}).out);
  EXPECT_EQ(machines.size(), 11u);
  return machines;
}

std::string SampleRowsOf(const std::string& dir, const std::string& machine) {
  const std::string csv = dir + "/sample.csv";
  const auto run = RunTool({"export", SamplePath(), "--csv", csv});
  EXPECT_EQ(run.status, 0) << run.err;
  std::vector<std::string> rows;
  for (const auto& line : Lines(ReadText(csv))) {
    if (line.find("," + machine + ",") != std::string::npos) rows.push_back(line);
  }
  return Join(rows);
}

std::string SortedRows(const std::string& slb) {
  auto lines = Lines(CsvOf(slb));
  if (!lines.empty()) lines.erase(lines.begin());
  return Join(lines);
}

void ExpectRoundTrip(const std::string& scratch, const std::string& format,
                     const std::string& machine, const std::string& units) {
  const std::string dir = scratch + "/" + machine + "-" + units;
  std::filesystem::create_directories(dir);
  const std::string exported = dir + "/" + machine + (format == "--plasmac" ? ".cfg" : ".tools");
  const auto out = RunTool({"export", SamplePath(), format, exported, "--machine", machine,
                            "--units", units});
  ASSERT_EQ(out.status, 0) << out.err;
  const std::string rows = SampleRowsOf(dir, machine);
  ASSERT_FALSE(rows.empty());
  const std::string vendor = rows.substr(0, rows.find(','));
  const std::string from = format == "--plasmac" ? "--from-plasmac" : "--from-sheetcam";
  const auto in = RunTool({"build", dir + "/back.slb", from, exported, "--vendor", vendor,
                           "--machine", machine, "--units", units});
  ASSERT_EQ(in.status, 0) << in.err;
  EXPECT_EQ(in.err, "") << machine << " " << units;
  EXPECT_EQ(SortedRows(dir + "/back.slb"), rows) << format << " " << machine << " " << units;
}

}  // namespace tooltest
