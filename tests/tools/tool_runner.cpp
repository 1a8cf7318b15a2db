#include "tool_runner.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace tooltest {
namespace {

std::string Quote(const std::string& arg) {
  std::string quoted = "'";
  for (char c : arg) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

}  // namespace

std::string ReadText(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream buffer;
  buffer << in.rdbuf();
  return buffer.str();
}

void WriteText(const std::string& path, const std::string& text) {
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out << text;
}

bool FileExists(const std::string& path) { return std::filesystem::exists(path); }

std::string ScratchDir() {
  const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
  const std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) /
                                    "slb-tool-tests" /
                                    (std::string(info->test_suite_name()) + "." + info->name());
  std::filesystem::remove_all(dir);
  std::filesystem::create_directories(dir);
  return dir.string();
}

namespace {

ToolRun Run(const std::string& prefix, const std::vector<std::string>& args) {
  static int run_number = 0;
  const std::filesystem::path dir =
      std::filesystem::path(::testing::TempDir()) / "slb-tool-runs";
  std::filesystem::create_directories(dir);
  const std::string stem = (dir / std::to_string(++run_number)).string();
  const std::string out_path = stem + ".out";
  const std::string err_path = stem + ".err";
  std::string command = prefix + Quote(SLB_TOOL_PATH);
  for (const auto& arg : args) command += " " + Quote(arg);
  command += " >" + Quote(out_path) + " 2>" + Quote(err_path) + " </dev/null";
  const int raw = std::system(command.c_str());
  ToolRun run;
  run.status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
  run.out = ReadText(out_path);
  run.err = ReadText(err_path);
  return run;
}

}  // namespace

ToolRun RunTool(const std::vector<std::string>& args) { return Run(std::string(), args); }

ToolRun RunToolIn(const std::string& directory, const std::vector<std::string>& args) {
  return Run("cd " + Quote(directory) + " && exec ", args);
}

ToolRun RunToolWithFileSizeLimit(int blocks, const std::vector<std::string>& args) {
  return Run("ulimit -c 0 && ulimit -f " + std::to_string(blocks) + " && exec ", args);
}

std::vector<std::string> DirectoryEntries(const std::string& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string SamplePath() { return SLB_SAMPLE_SLB; }

std::vector<std::string> MildSteelAsk(const std::string& command, const std::string& thickness,
                                      const std::vector<std::string>& extra) {
  std::vector<std::string> args = {command,     SamplePath(), "--material", "Mild steel",
                                   "--machine", "AIR-45A",    "--thickness", thickness};
  if (command == "optimal") args.erase(args.begin() + 4, args.begin() + 6);
  args.insert(args.end(), extra.begin(), extra.end());
  return args;
}

std::string RealWorldFile(const std::string& name) {
  const std::string path = std::string(SPARLANE_SHARED_DIR) + "/data/real-world/" + name;
  return FileExists(path) ? path : std::string();
}

std::string MaskLines(const std::string& text, const std::vector<std::string>& prefixes) {
  std::istringstream in(text);
  std::string line;
  std::string out;
  while (std::getline(in, line)) {
    for (const auto& prefix : prefixes) {
      if (line.compare(0, prefix.size(), prefix) == 0) {
        line = prefix + "<masked>";
        break;
      }
    }
    out += line + "\n";
  }
  return out;
}

std::string Field(const std::string& text, const std::string& label) {
  std::istringstream in(text);
  std::string line;
  const std::string prefix = "  " + label + " ";
  while (std::getline(in, line)) {
    if (line.compare(0, prefix.size(), prefix) != 0) continue;
    std::istringstream words(line.substr(prefix.size()));
    std::string word;
    std::string value;
    while (words >> word) value += (value.empty() ? "" : " ") + word;
    return value;
  }
  return std::string();
}

void ExpectGolden(const std::string& name, const std::string& text) {
  const std::string path = std::string(SLB_GOLDEN_DIR) + "/" + name;
  const char* update = std::getenv("SLB_UPDATE_GOLDEN");
  if (update != nullptr && std::string(update) == "1") {
    WriteText(path, text);
    return;
  }
  ASSERT_TRUE(FileExists(path)) << "missing golden file " << path;
  EXPECT_EQ(ReadText(path), text) << "output differs from " << path;
}

}  // namespace tooltest
