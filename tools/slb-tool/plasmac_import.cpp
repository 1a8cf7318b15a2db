#include "plasmac_import.h"

#include <map>
#include <optional>
#include <set>

#include "text_fields.h"

namespace slb {
namespace {

struct Block {
  MaterialEntry entry;
  std::optional<long> number;
  std::map<std::string, std::string> values;  // upper-case key -> non-empty value
  std::map<std::string, std::size_t> key_lines;  // where each key was last given
};

std::string Upper(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return out;
}

const std::set<std::string>& KnownKeys() {
  static const std::set<std::string> keys = {
      "NAME",          "KERF_WIDTH",        "THC",          "PIERCE_HEIGHT", "PIERCE_DELAY",
      "PUDDLE_JUMP_HEIGHT", "PUDDLE_JUMP_DELAY", "CUT_HEIGHT", "CUT_SPEED",   "CUT_AMPS",
      "CUT_VOLTS",     "PAUSE_AT_END",      "GAS_PRESSURE", "CUT_MODE",      "THICKNESS"};
  return keys;
}

// The key's value; a value that is given but cannot be read makes the
// entry unusable (its problem names the first such value).
std::optional<double> NumberOf(const Block& block, const char* key, MaterialEntry& entry) {
  const auto it = block.values.find(key);
  if (it == block.values.end()) return std::nullopt;
  NumberProblem problem;
  const auto value = ParseNumber(it->second, &problem);
  if (!value && entry.problem.empty()) {
    entry.problem = std::string(key) + " " + NumberProblemText(problem) + ": \"" +
                    Printable(it->second) + "\"";
  }
  return value;
}

MaterialEntry Finish(Block& block) {
  MaterialEntry entry = block.entry;
  if (const auto name = block.values.find("NAME"); name != block.values.end()) {
    entry.name = name->second;
  }
  entry.kerf_width = NumberOf(block, "KERF_WIDTH", entry);
  entry.pierce_height = NumberOf(block, "PIERCE_HEIGHT", entry);
  entry.pierce_delay = NumberOf(block, "PIERCE_DELAY", entry);
  entry.cut_height = NumberOf(block, "CUT_HEIGHT", entry);
  entry.cut_speed = NumberOf(block, "CUT_SPEED", entry);
  entry.cut_amps = NumberOf(block, "CUT_AMPS", entry);
  entry.cut_volts = NumberOf(block, "CUT_VOLTS", entry);
  entry.thickness = NumberOf(block, "THICKNESS", entry);
  NoteMissingValues(entry, {"PIERCE_HEIGHT", "PIERCE_DELAY", "CUT_HEIGHT", "CUT_SPEED"});
  return entry;
}

}  // namespace

bool ReadPlasmacFile(const std::string& path, std::vector<MaterialEntry>& entries,
                     std::vector<std::string>& warnings) {
  std::vector<std::string> lines;
  if (!ReadTextLines(path, lines)) return false;
  std::vector<Block> blocks;
  std::set<std::string> unknown_keys;
  bool in_block = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = Trim(lines[i]);
    const std::size_t line_number = i + 1;
    if (line.empty() || line.front() == '#' || line.front() == ';') continue;
    if (line.front() == '[' && line.back() == ']') {
      const std::string section(Trim(line.substr(1, line.size() - 2)));
      const std::string upper = Upper(section);
      in_block = false;
      if (upper.rfind("VERSION", 0) == 0) continue;  // a format marker, not a material
      Block block;
      block.entry.source = path;
      block.entry.line = line_number;
      static const std::string kNumbered = "MATERIAL_NUMBER_";
      if (upper.rfind(kNumbered, 0) == 0) {
        block.number = static_cast<long>(
            ParseUnsigned(section.substr(kNumbered.size()), 1u << 30).value_or(0));
      } else {
        block.entry.name = section;  // old format: the section names the material
      }
      blocks.push_back(std::move(block));
      in_block = true;
      continue;
    }
    const auto eq = line.find('=');
    if (!in_block || eq == std::string_view::npos) {
      warnings.push_back(path + ":" + std::to_string(line_number) + ": line ignored: " +
                         Printable(line));
      continue;
    }
    const std::string key = Upper(Trim(line.substr(0, eq)));
    const std::string value(Trim(line.substr(eq + 1)));
    if (!KnownKeys().count(key) && unknown_keys.insert(key).second) {
      warnings.push_back(path + ":" + std::to_string(line_number) + ": unknown key " + key +
                         " ignored");
    }
    Block& block = blocks.back();
    const auto earlier = block.key_lines.find(key);
    if (earlier != block.key_lines.end()) {
      warnings.push_back(path + ":" + std::to_string(line_number) + ": " + key +
                         " is given again in the block of line " +
                         std::to_string(block.entry.line) + " (first at line " +
                         std::to_string(earlier->second) + "); the later value is used");
    }
    block.key_lines[key] = line_number;
    // The last value given wins; an empty one counts as missing.
    if (value.empty()) {
      block.values.erase(key);
    } else {
      block.values[key] = value;
    }
  }

  // A number given twice: the later block replaces the earlier one.
  std::map<long, std::size_t> last_of_number;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    if (blocks[i].number) last_of_number[*blocks[i].number] = i;
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    if (blocks[i].number && last_of_number[*blocks[i].number] != i) {
      const auto& later = blocks[last_of_number[*blocks[i].number]];
      warnings.push_back(blocks[i].entry.Where() + ": material number " +
                         std::to_string(*blocks[i].number) + " appears again at line " +
                         std::to_string(later.entry.line) + "; the later block wins");
      continue;
    }
    entries.push_back(Finish(blocks[i]));
  }
  return true;
}

}  // namespace slb
