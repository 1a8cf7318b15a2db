// The subsystems depend one way.  store/ is the base and includes only
// itself; every other folder builds on store/ and, where the table below
// says so, on one other subsystem.  Every #include of src/ is checked.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

// Folder -> the other folders it may include.  Small on purpose: a new edge
// is a design decision and belongs here, with its reason.
const std::map<std::string, std::set<std::string>> kAllowed = {
    {"store", {}},
    {"file", {"store"}},
    {"query", {"store"}},
    {"check", {"store", "file"}},  // Validate checks the file format's header checksum
    {"calc", {"store"}},
    {"export", {"store"}},
};

// The public interface, which every folder may include.
const char kPublic[] = "sparlane";

// The findings for one source file in folder, whose text is given: one line
// per include that runs against the table.
std::vector<std::string> Violations(const std::string& folder, const std::string& text) {
  std::vector<std::string> found;
  const auto allowed = kAllowed.find(folder);
  if (allowed == kAllowed.end()) {
    found.push_back("folder " + folder + " is not in the table");
    return found;
  }
  static const std::regex kInclude(R"(^\s*#\s*include\s*(["<])([^">]+)[">])");
  std::istringstream lines(text);
  std::string line;
  while (std::getline(lines, line)) {
    std::smatch m;
    if (!std::regex_search(line, m, kInclude)) continue;
    const std::string path = m[2];
    const std::size_t slash = path.find('/');
    const std::string target = slash == std::string::npos ? "" : path.substr(0, slash);
    const bool quoted = m[1] == "\"";
    if (!quoted && kAllowed.count(target) == 0) continue;  // a system or library header
    if (target == kPublic || target == folder || allowed->second.count(target) != 0) continue;
    found.push_back(folder + " includes \"" + path + "\"");
  }
  return found;
}

std::string ReadAll(const std::filesystem::path& p) {
  std::ifstream in(p, std::ios::binary);
  std::ostringstream out;
  out << in.rdbuf();
  return out.str();
}

TEST(IncludeDirection, TheRuleCatchesIncludesAgainstTheDirection) {
  EXPECT_TRUE(Violations("store", "#include \"store/store.h\"\n#include <vector>\n").empty());
  EXPECT_TRUE(Violations("query", "#include \"store/store.h\"\n#include \"sparlane/records.h\"")
                  .empty());
  EXPECT_TRUE(Violations("check", "#include \"file/header_checksum.h\"").empty());
  EXPECT_EQ(Violations("store", "#include \"file/mapped_file.h\""),
            (std::vector<std::string>{"store includes \"file/mapped_file.h\""}));
  EXPECT_EQ(Violations("store", "  #  include <query/pair_index.h>").size(), 1u);
  EXPECT_EQ(Violations("file", "#include \"query/record_search.h\"").size(), 1u);
  EXPECT_EQ(Violations("query", "#include \"file/file_parser.h\"").size(), 1u);
  EXPECT_EQ(Violations("export", "#include \"check/x.h\"\n#include \"calc/y.h\"").size(), 2u);
  EXPECT_EQ(Violations("calc", "#include \"zero_filled.h\"").size(), 1u);  // no folder
  EXPECT_EQ(Violations("tools", "").size(), 1u);  // a folder the table does not know
}

TEST(IncludeDirection, EveryIncludeInSrcFollowsTheTable) {
  namespace fs = std::filesystem;
  const fs::path src = fs::path(SPARLANE_SOURCE_DIR) / "src";
  ASSERT_TRUE(fs::is_directory(src)) << src;
  int files = 0;
  int includes = 0;
  std::vector<std::string> violations;
  for (const auto& entry : fs::recursive_directory_iterator(src)) {
    if (!entry.is_regular_file()) continue;
    const std::string ext = entry.path().extension().string();
    if (ext != ".h" && ext != ".cpp") continue;
    const fs::path relative = fs::relative(entry.path(), src);
    const std::string folder = relative.begin()->string();
    const std::string text = ReadAll(entry.path());
    ++files;
    for (std::size_t at = text.find("#include"); at != std::string::npos;
         at = text.find("#include", at + 1)) {
      ++includes;
    }
    for (const std::string& v : Violations(folder, text)) {
      violations.push_back(relative.generic_string() + ": " + v);
    }
  }
  EXPECT_GT(files, 50);
  EXPECT_GT(includes, 200);
  for (const std::string& v : violations) ADD_FAILURE() << v;
}

}  // namespace
