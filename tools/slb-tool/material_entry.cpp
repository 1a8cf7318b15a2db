#include "material_entry.h"

#include <cmath>
#include <map>
#include <utility>

#include "number_format.h"
#include "text_fields.h"

namespace slb {
namespace {

constexpr double kMmPerInch = 25.4;

std::string NotPlaced(const MaterialEntry& entry, const std::string& reason) {
  return entry.Where() + ": entry \"" + entry.name + "\" not placed: " + reason;
}

std::string JoinKeys(const std::vector<std::string>& keys) {
  std::string text;
  for (const auto& key : keys) text += (text.empty() ? "" : ", ") + key;
  return text;
}

}  // namespace

std::optional<LengthUnit> GuessUnits(const std::vector<MaterialEntry>& entries) {
  int inch = 0;
  int mm = 0;
  for (const auto& e : entries) {
    const double kerf = e.kerf_width.value_or(-1.0);
    const double pierce = e.pierce_height.value_or(-1.0);
    if ((kerf >= 0.4) || (pierce >= 1.5)) {
      ++mm;
    } else if (kerf > 0.0 && kerf < 0.2 && pierce > 0.0 && pierce < 0.3) {
      ++inch;
    } else if (!e.kerf_width && pierce > 0.0 && pierce < 0.3) {
      ++inch;  // old files without a kerf key
    }
  }
  if (inch == mm) return std::nullopt;
  return inch > mm ? LengthUnit::Inch : LengthUnit::Millimetre;
}

bool PassesFilter(const MaterialEntry& entry, const PlacementOptions& options) {
  return options.filter.empty() ||
         Lower(entry.name).find(Lower(options.filter)) != std::string::npos;
}

std::vector<ImportRow> PlaceEntries(const std::vector<MaterialEntry>& entries,
                                    const PlacementOptions& options,
                                    std::vector<std::string>& warnings) {
  const double scale = options.units == LengthUnit::Inch ? kMmPerInch : 1.0;
  std::map<std::pair<std::string, float>, const MaterialEntry*> placed;
  std::vector<ImportRow> rows;
  for (const auto& entry : entries) {
    if (!PassesFilter(entry, options)) continue;
    if (!entry.missing.empty()) {
      warnings.push_back(NotPlaced(entry, "missing " + JoinKeys(entry.missing)));
      continue;
    }
    const std::string material =
        MaterialFromName(entry.name, options.material_rules, options.material);
    if (material.empty()) {
      warnings.push_back(NotPlaced(entry, "no material rule matches the name"));
      continue;
    }
    double thickness_mm = 0.0;
    if (entry.thickness && *entry.thickness > 0.0) {
      thickness_mm = *entry.thickness * scale;
    } else {
      std::string reason;
      const auto named = ThicknessFromName(entry.name, material, options.units, reason);
      if (!named) {
        warnings.push_back(NotPlaced(entry, reason));
        continue;
      }
      if (!named->note.empty()) {
        warnings.push_back(entry.Where() + ": entry \"" + entry.name + "\": " + named->note);
      }
      thickness_mm = named->mm;
    }
    ImportRow row;
    row.source = entry.source;
    row.line = entry.line;
    row.vendor = options.vendor;
    row.machine = options.machine;
    row.material = material;
    auto& p = row.values;
    p.thickness_mm = static_cast<float>(thickness_mm);
    p.cut_speed_mm_min = static_cast<float>(entry.cut_speed.value_or(0.0) * scale);
    p.cut_height_mm = static_cast<float>(entry.cut_height.value_or(0.0) * scale);
    p.pierce_height_mm = static_cast<float>(entry.pierce_height.value_or(0.0) * scale);
    p.transfer_height_mm = p.pierce_height_mm;  // no material file has its own
    p.arc_voltage_v = static_cast<float>(entry.cut_volts.value_or(0.0));
    p.pierce_time_s = static_cast<float>(entry.pierce_delay.value_or(0.0));
    p.kerf_width_mm = static_cast<float>(entry.kerf_width.value_or(0.0) * scale);
    const double amps = std::round(entry.cut_amps.value_or(0.0));
    p.current_amps = amps > 0.0 && amps <= 65535.0 ? static_cast<std::uint16_t>(amps) : 0;

    const auto key = std::make_pair(material, p.thickness_mm);
    const auto earlier = placed.find(key);
    if (earlier != placed.end()) {
      warnings.push_back(NotPlaced(entry, "same material and thickness (" +
                                              FormatNumber(p.thickness_mm) + " mm) as \"" +
                                              earlier->second->name + "\" at line " +
                                              std::to_string(earlier->second->line)));
      continue;
    }
    placed.emplace(key, &entry);
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace slb
