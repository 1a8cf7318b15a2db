#include "material_entry.h"

#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "number_format.h"
#include "strict_check.h"
#include "text_fields.h"

namespace slb {
namespace {

constexpr double kMmPerInch = 25.4;

std::string NotPlaced(const MaterialEntry& entry, const std::string& reason) {
  return entry.Where() + ": entry \"" + Printable(entry.name) + "\" not placed: " + reason;
}

// A value past the float range becomes an infinity of its sign, which the
// strict record check then names; NaN stays NaN.
float ToFloat(double value) {
  if (value > std::numeric_limits<float>::max()) return std::numeric_limits<float>::infinity();
  if (value < -std::numeric_limits<float>::max()) return -std::numeric_limits<float>::infinity();
  return static_cast<float>(value);
}

std::string JoinKeys(const std::vector<std::string>& keys) {
  std::string text;
  for (const auto& key : keys) text += (text.empty() ? "" : ", ") + key;
  return text;
}

}  // namespace

std::optional<LengthUnit> UnitVotes::Winner() const {
  if (inch == mm) return std::nullopt;
  return inch > mm ? LengthUnit::Inch : LengthUnit::Millimetre;
}

void NoteMissingValues(MaterialEntry& entry, const MandatoryKeys& keys) {
  const std::pair<const char*, const std::optional<double>*> mandatory[] = {
      {keys.pierce_height, &entry.pierce_height},
      {keys.pierce_delay, &entry.pierce_delay},
      {keys.cut_height, &entry.cut_height},
      {keys.cut_speed, &entry.cut_speed}};
  for (const auto& [key, value] : mandatory) {
    if (!value->has_value()) entry.missing.push_back(key);
  }
}

UnitVotes CountUnitVotes(const std::vector<MaterialEntry>& entries) {
  UnitVotes votes;
  for (const auto& e : entries) {
    const double kerf = e.kerf_width.value_or(-1.0);
    const double pierce = e.pierce_height.value_or(-1.0);
    if ((kerf >= 0.4) || (pierce >= 1.5)) {
      ++votes.mm;
    } else if (kerf > 0.0 && kerf < 0.2 && pierce > 0.0 && pierce < 0.3) {
      ++votes.inch;
    } else if (!e.kerf_width && pierce > 0.0 && pierce < 0.3) {
      ++votes.inch;  // old files without a kerf key
    }
  }
  return votes;
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
    ImportRow row;
    row.source = entry.source;
    row.line = entry.line;
    row.vendor = options.vendor;
    row.machine = options.machine;
    row.material = material;
    double thickness_mm = 0.0;
    if (entry.thickness && *entry.thickness != 0.0) {
      thickness_mm = *entry.thickness * scale;  // a negative one is kept and refused later
    } else {
      std::string reason;
      const auto named = ThicknessFromName(entry.name, material, options.units, reason);
      if (!named) {
        warnings.push_back(NotPlaced(entry, reason));
        continue;
      }
      if (!named->note.empty()) {
        warnings.push_back(entry.Where() + ": entry \"" + Printable(entry.name) + "\": " +
                           named->note);
      }
      thickness_mm = named->mm;
      row.problem = named->problem;
    }
    if (row.problem.empty()) row.problem = entry.problem;
    auto& p = row.values;
    const std::pair<float*, double> fields[] = {
        {&p.thickness_mm, thickness_mm},
        {&p.cut_speed_mm_min, entry.cut_speed.value_or(0.0) * scale},
        {&p.cut_height_mm, entry.cut_height.value_or(0.0) * scale},
        {&p.pierce_height_mm, entry.pierce_height.value_or(0.0) * scale},
        {&p.arc_voltage_v, entry.cut_volts.value_or(0.0)},
        {&p.pierce_time_s, entry.pierce_delay.value_or(0.0)},
        {&p.kerf_width_mm, entry.kerf_width.value_or(0.0) * scale}};
    for (const auto& [field, value] : fields) *field = ToFloat(value);
    p.transfer_height_mm = p.pierce_height_mm;  // no material file has its own
    const double amps = std::round(entry.cut_amps.value_or(0.0));
    if (amps >= 0.0 && amps <= 65535.0) {
      p.current_amps = static_cast<std::uint16_t>(amps);
    } else if (row.problem.empty()) {
      row.problem = "current_amps must be 1 to 1000 A (is " + ExactDouble(amps) + ")";
    }

    if (row.problem.empty()) row.problem = StrictCheckFindingOfValues(p);
    if (!row.problem.empty()) {
      rows.push_back(std::move(row));  // refused by the build, with its reason
      continue;
    }
    // Only usable entries take a thickness, so a refused variant never hides
    // a usable one.
    const auto key = std::make_pair(material, p.thickness_mm);
    const auto earlier = placed.find(key);
    if (earlier != placed.end()) {
      warnings.push_back(NotPlaced(entry, "same material and thickness (" +
                                              ExactFloat(p.thickness_mm) + " mm) as \"" +
                                              Printable(earlier->second->name) + "\" at line " +
                                              std::to_string(earlier->second->line)));
      continue;
    }
    placed.emplace(key, &entry);
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace slb
