// Runs the built slb-tool and captures its exit status, stdout and stderr.
#ifndef SPARLANE_TESTS_TOOLS_TOOL_RUNNER_H_
#define SPARLANE_TESTS_TOOLS_TOOL_RUNNER_H_

#include <string>
#include <vector>

namespace tooltest {

struct ToolRun {
  int status = -1;
  std::string out;
  std::string err;
};

ToolRun RunTool(const std::vector<std::string>& args);

// Runs slb-tool with directory as its current directory.
ToolRun RunToolIn(const std::string& directory, const std::vector<std::string>& args);

// Runs slb-tool with the shell's file size limit (ulimit -f) set to blocks,
// so that a write past it ends the program as an interrupt would.
ToolRun RunToolWithFileSizeLimit(int blocks, const std::vector<std::string>& args);

// The sample database the build makes from data/cut-charts.csv.
std::string SamplePath();

// `command` (query, calc or optimal) on the sample for Mild steel on AIR-45A
// at thickness (optimal takes no machine), then extra.  The sample lists
// that pair from 1.524 to 25.4 mm.
std::vector<std::string> MildSteelAsk(const std::string& command, const std::string& thickness,
                                      const std::vector<std::string>& extra = {});

// A fresh, empty directory for the running test.
std::string ScratchDir();

std::string ReadText(const std::string& path);
void WriteText(const std::string& path, const std::string& text);
bool FileExists(const std::string& path);

// The names in a directory, sorted, "." and ".." left out.
std::vector<std::string> DirectoryEntries(const std::string& dir);

// The real-world sample files, or "" when they are not around.
std::string RealWorldFile(const std::string& name);

// Replaces the rest of every line that starts with one of the prefixes by
// "<masked>", for output holding dates or timings.
std::string MaskLines(const std::string& text, const std::vector<std::string>& prefixes);

// The value and unit of the first table line "  <label>  <value>  <unit>"
// with blanks collapsed ("1100 mm/min"); "" when there is no such line.
std::string Field(const std::string& text, const std::string& label);

// Compares text with tests/tools/golden/<name>; with SLB_UPDATE_GOLDEN=1 in
// the environment the golden file is rewritten instead.
void ExpectGolden(const std::string& name, const std::string& text);

}  // namespace tooltest

#endif  // SPARLANE_TESTS_TOOLS_TOOL_RUNNER_H_
