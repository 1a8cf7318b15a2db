#include "plasmac_export.h"

#include <utility>

namespace slb {

std::string PlasmacMaterialFile(const ControllerFile& file) {
  std::string text;
  for (const auto& line : HeaderLines(file, "QtPlasmaC material file")) text += "# " + line + "\n";
  text += "\n";
  const double length = file.LengthScale();
  for (const auto& entry : file.entries) {
    const auto& p = entry.settings;
    const std::pair<const char*, std::string> keys[] = {
        {"NAME", EntryName(entry, file)},
        {"KERF_WIDTH", SettingText(p.kerf_width_mm, length)},
        {"PIERCE_HEIGHT", SettingText(p.pierce_height_mm, length)},
        {"PIERCE_DELAY", SettingText(p.pierce_time_s, 1.0)},
        {"PUDDLE_JUMP_HEIGHT", "0"},
        {"PUDDLE_JUMP_DELAY", "0"},
        {"CUT_HEIGHT", SettingText(p.cut_height_mm, length)},
        {"CUT_SPEED", SettingText(p.cut_speed_mm_min, length)},
        {"CUT_AMPS", std::to_string(p.current_amps)},
        {"CUT_VOLTS", SettingText(p.arc_voltage_v, 1.0)},
        {"PAUSE_AT_END", "0"},
        {"GAS_PRESSURE", "0"},
        {"CUT_MODE", "1"},
        {"THICKNESS", SettingText(p.thickness_mm, length)}};
    text += "[MATERIAL_NUMBER_" + std::to_string(entry.number) + "]\n";
    for (const auto& [key, value] : keys) text += std::string(key) + " = " + value + "\n";
    text += "\n";
  }
  return text;
}

}  // namespace slb
