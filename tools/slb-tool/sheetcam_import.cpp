#include "sheetcam_import.h"

#include <map>
#include <optional>

#include "text_fields.h"

namespace slb {
namespace {

struct Section {
  std::string name;
  std::size_t line = 0;
  std::map<std::string, std::string> values;  // unescaped key -> value
  std::map<std::string, std::size_t> key_lines;  // where each key was last given
};

// Qt settings files escape blanks (and other bytes) in keys with a backslash.
std::string Unescape(std::string_view key) {
  std::string out;
  for (std::size_t i = 0; i < key.size(); ++i) {
    if (key[i] == '\\' && i + 1 < key.size()) ++i;
    out += key[i];
  }
  return out;
}

bool IsToolSection(const std::string& name) {
  if (name.rfind("Tool", 0) != 0 || name.size() == 4) return false;
  for (std::size_t i = 4; i < name.size(); ++i) {
    if (name[i] < '0' || name[i] > '9') return false;
  }
  return true;
}

// The first of the keys that has a value; a value that cannot be read makes
// the entry unusable (its problem names the first such value).
std::optional<double> FirstNumber(const Section& section, std::initializer_list<const char*> keys,
                                  MaterialEntry& entry) {
  for (const char* key : keys) {
    const auto it = section.values.find(key);
    if (it == section.values.end() || Trim(it->second).empty()) continue;
    NumberProblem problem;
    const auto value = ParseNumber(it->second, &problem);
    if (!value && entry.problem.empty()) {
      entry.problem = std::string(key) + " " + NumberProblemText(problem) + ": \"" +
                      Printable(it->second) + "\"";
    }
    return value;
  }
  return std::nullopt;
}

MaterialEntry ToEntry(const std::string& path, const Section& s) {
  MaterialEntry e;
  e.source = path;
  e.line = s.line;
  if (const auto name = s.values.find("Name"); name != s.values.end()) e.name = name->second;
  e.kerf_width = FirstNumber(s, {"Kerf width"}, e);
  e.pierce_height = FirstNumber(s, {"Pierce height"}, e);
  e.pierce_delay = FirstNumber(s, {"Pierce delay"}, e);
  e.cut_height = FirstNumber(s, {"Cut height"}, e);
  e.cut_speed = FirstNumber(s, {"Feed rate"}, e);
  e.cut_amps = FirstNumber(s, {"Cut current", "Preset current", "Tip Size -Amps"}, e);
  e.cut_volts = FirstNumber(s, {"Cut voltage", "Preset volts"}, e);
  NoteMissingValues(e, {"Pierce height", "Pierce delay", "Cut height", "Feed rate"});
  return e;
}

}  // namespace

bool ReadSheetcamFile(const std::string& path, std::vector<MaterialEntry>& entries,
                      std::vector<std::string>& warnings) {
  std::vector<std::string> lines;
  if (!ReadTextLines(path, lines)) return false;
  std::vector<Section> sections;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = Trim(lines[i]);
    if (line.empty() || line.front() == ';' || line.front() == '#') continue;
    if (line.front() == '[' && line.back() == ']') {
      sections.push_back({std::string(Trim(line.substr(1, line.size() - 2))), i + 1, {}, {}});
      continue;
    }
    const auto eq = line.find('=');
    if (sections.empty() || eq == std::string_view::npos) continue;
    Section& section = sections.back();
    const std::string key = Unescape(Trim(line.substr(0, eq)));
    const auto earlier = section.key_lines.find(key);
    if (earlier != section.key_lines.end()) {
      warnings.push_back(path + ":" + std::to_string(i + 1) + ": " + Printable(key) +
                         " is given again in [" + Printable(section.name) + "] (first at line " +
                         std::to_string(earlier->second) + "); the later value is used");
    }
    section.key_lines[key] = i + 1;
    section.values[key] = std::string(Trim(line.substr(eq + 1)));
  }
  std::size_t tools = 0;
  for (const auto& s : sections) {
    // Custom sections hold a post processor's own parameter definitions.
    if (!IsToolSection(s.name) || s.name.find("Custom") != std::string::npos) continue;
    ++tools;
    const auto type = s.values.find("Type");
    if (type == s.values.end() || type->second != "PlasmaTool") continue;
    entries.push_back(ToEntry(path, s));
  }
  if (entries.empty()) {
    warnings.push_back(path + ": no plasma tools (Type=PlasmaTool) among " +
                       std::to_string(tools) + " tool sections");
  }
  return true;
}

}  // namespace slb
