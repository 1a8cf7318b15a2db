#include "strict_check.h"

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "number_format.h"

namespace slb {
namespace {

struct FloatField {
  const char* name;
  float value;
};

// The eight float fields in record order, as the check walks them.
std::vector<FloatField> FloatFields(const Sparlane::CuttingParameter& p) {
  return {{"thickness_mm", p.thickness_mm},         {"cut_speed_mm_min", p.cut_speed_mm_min},
          {"cut_height_mm", p.cut_height_mm},       {"pierce_height_mm", p.pierce_height_mm},
          {"transfer_height_mm", p.transfer_height_mm}, {"arc_voltage_v", p.arc_voltage_v},
          {"pierce_time_s", p.pierce_time_s},       {"kerf_width_mm", p.kerf_width_mm}};
}

bool Outside(float value, float low, float high) { return value < low || value > high; }

// The value of the field a reason starts with, as text.
std::string ValueOf(const Sparlane::CuttingParameter& p, const std::string& field) {
  for (const auto& f : FloatFields(p)) {
    if (field == f.name) return FormatNumber(f.value);
  }
  if (field == "current_amps") return std::to_string(p.current_amps);
  return "0";  // the ids, which are only ever reported when 0
}

}  // namespace

std::string StrictCheckReason(const Sparlane::CuttingParameter& p) {
  // Swapped for the library's own explanation once it offers one.
  for (const auto& f : FloatFields(p)) {
    if (!std::isfinite(f.value)) return std::string(f.name) + " must be a finite number";
  }
  const std::pair<const char*, std::uint16_t> ids[] = {
      {"vendor_id", p.vendor_id}, {"machine_model_id", p.machine_model_id},
      {"material_id", p.material_id}};
  for (const auto& [name, id] : ids) {
    if (id == 0) return std::string(name) + " must not be 0";
  }
  if (Outside(p.thickness_mm, 0.1f, 300.0f)) return "thickness_mm must be 0.1 to 300 mm";
  if (Outside(p.cut_speed_mm_min, 10.0f, 20000.0f)) {
    return "cut_speed_mm_min must be 10 to 20000 mm/min";
  }
  if (p.current_amps == 0 || p.current_amps > 1000) return "current_amps must be 1 to 1000 A";
  if (Outside(p.arc_voltage_v, 20.0f, 300.0f)) return "arc_voltage_v must be 20 to 300 V";
  const FloatField never_negative[] = {{"cut_height_mm", p.cut_height_mm},
                                       {"pierce_height_mm", p.pierce_height_mm},
                                       {"transfer_height_mm", p.transfer_height_mm},
                                       {"pierce_time_s", p.pierce_time_s},
                                       {"kerf_width_mm", p.kerf_width_mm}};
  for (const auto& f : never_negative) {
    if (f.value < 0.0f) return std::string(f.name) + " must not be negative";
  }
  if (p.cut_height_mm > p.pierce_height_mm) return "cut_height_mm must not exceed pierce_height_mm";
  return std::string();
}

std::string StrictCheckFinding(const Sparlane::CuttingParameter& p) {
  const std::string reason = StrictCheckReason(p);
  if (reason.empty()) return reason;
  const std::string field = reason.substr(0, reason.find(' '));
  std::string finding = reason + " (is " + ValueOf(p, field);
  if (reason == "cut_height_mm must not exceed pierce_height_mm") {
    finding += ", pierce_height_mm is " + FormatNumber(p.pierce_height_mm);
  }
  return finding + ")";
}

std::string StrictCheckFindingOfValues(const Sparlane::CuttingParameter& p) {
  Sparlane::CuttingParameter with_ids = p;
  with_ids.vendor_id = with_ids.machine_model_id = with_ids.material_id = 1;
  return StrictCheckFinding(with_ids);
}

}  // namespace slb
