#include "sheetcam_export.h"

#include <utility>

namespace slb {
namespace {

std::string SettingsValue(const std::string& value) {
  const bool edge_blank = !value.empty() && (value.front() == ' ' || value.back() == ' ');
  if (!edge_blank && value.find_first_of(",;#\"\\") == std::string::npos) return value;
  std::string quoted = "\"";
  for (char c : value) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

}  // namespace

std::string SheetcamToolTable(const ControllerFile& file) {
  std::string text;
  for (const auto& line : HeaderLines(file, "SheetCam tool table")) text += "; " + line + "\n";
  const double length = file.LengthScale();
  for (std::size_t i = 0; i < file.entries.size(); ++i) {
    const auto& entry = file.entries[i];
    const auto& p = entry.settings;
    const std::pair<const char*, std::string> keys[] = {
        {"Type", "PlasmaTool"},
        {"Name", SettingsValue(EntryName(entry, file))},
        {"Tool\\ number", std::to_string(entry.number)},
        {"Kerf\\ width", SettingText(p.kerf_width_mm, length)},
        {"Pierce\\ height", SettingText(p.pierce_height_mm, length)},
        {"Pierce\\ delay", SettingText(p.pierce_time_s, 1.0)},
        {"Cut\\ height", SettingText(p.cut_height_mm, length)},
        {"Feed\\ rate", SettingText(p.cut_speed_mm_min, length)},
        {"Pause\\ at\\ end\\ of\\ cut", "0"},
        {"Cut\\ current", std::to_string(p.current_amps)},
        {"Cut\\ voltage", SettingText(p.arc_voltage_v, 1.0)}};
    text += "[Tool" + std::to_string(i) + "]\n";
    for (const auto& [key, value] : keys) text += std::string(key) + "=" + value + "\n";
  }
  return text;
}

}  // namespace slb
