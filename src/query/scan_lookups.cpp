// FindNearest, FindByMachine, FindByMaterial, GetSupportedThicknessRange:
// the untimed lookups that look at every matching record.
#include <cfloat>
#include <cmath>

#include "query/record_search.h"

namespace Sparlane {

std::optional<CuttingParameter> Database::FindNearest(const std::string& material,
                                                      float thickness,
                                                      const std::string& machine_model) const {
  const Store& s = *impl_;
  if (!s.loaded()) return std::nullopt;
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  const std::uint16_t machine_id = s.IdOf(NameKind::kMachine, machine_model);
  if (material_id == 0 || machine_id == 0) return std::nullopt;

  const CuttingParameter* best = nullptr;
  float best_distance = FLT_MAX;
  ForEachRecordOfPair(s, material_id, machine_id, [&](std::size_t, const CuttingParameter& r) {
    const float distance = std::fabs(r.thickness_mm - thickness);
    if (distance < best_distance) {
      best_distance = distance;
      best = &r;
    }
  });
  if (best == nullptr) return std::nullopt;
  return *best;
}

std::vector<CuttingParameter> Database::FindByMachine(const std::string& vendor,
                                                      const std::string& machine_model) const {
  const Store& s = *impl_;
  std::vector<CuttingParameter> found;
  if (!s.loaded()) return found;
  const bool any_vendor = vendor.empty();
  const std::uint16_t vendor_id = any_vendor ? 0 : s.IdOf(NameKind::kVendor, vendor);
  if (!any_vendor && vendor_id == 0) return found;
  const std::uint16_t machine_id = s.IdOf(NameKind::kMachine, machine_model);
  if (machine_id == 0) return found;

  const std::vector<CuttingParameter>& records = s.records();
  if (const MachineSpan* span = s.record_indexes().MachineSpanOf(machine_id)) {
    // The span is taken as it lies: its records are not checked for the machine.
    const TableSpan run = ClampToTable(span->first, span->count, records.size());
    found.reserve(run.count);
    for (std::uint64_t pos = run.first; pos < run.first + run.count; ++pos) {
      if (any_vendor || records[pos].vendor_id == vendor_id) found.push_back(records[pos]);
    }
    return found;
  }
  for (const CuttingParameter& r : records) {
    if (r.machine_model_id == machine_id && (any_vendor || r.vendor_id == vendor_id)) {
      found.push_back(r);
    }
  }
  return found;
}

std::vector<CuttingParameter> Database::FindByMaterial(const std::string& material) const {
  const Store& s = *impl_;
  std::vector<CuttingParameter> found;
  if (!s.loaded()) return found;
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  if (material_id == 0) return found;
  ForEachOfMaterial(s, material_id,
                    [&](std::size_t pos, const auto&) { found.push_back(s.records()[pos]); });
  return found;
}

SupportedThicknessRange Database::GetSupportedThicknessRange(
    const std::string& material, const std::string& machine_model) const {
  const Store& s = *impl_;
  SupportedThicknessRange range{FLT_MAX, -FLT_MAX, 0, false};
  if (!s.loaded()) return range;
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  if (material_id == 0) return range;
  const bool any_machine = machine_model.empty();
  const std::uint16_t machine_id = any_machine ? 0 : s.IdOf(NameKind::kMachine, machine_model);
  if (!any_machine && machine_id == 0) return range;

  std::int64_t count = 0;
  auto widen = [&](std::size_t, const auto& r) {
    // Strict comparisons: a NaN thickness moves neither bound, and of -0.0
    // and 0.0 the first one met stays.
    if (r.thickness_mm < range.min_thickness_mm) range.min_thickness_mm = r.thickness_mm;
    if (r.thickness_mm > range.max_thickness_mm) range.max_thickness_mm = r.thickness_mm;
    ++count;
  };
  if (any_machine) {
    ForEachOfMaterial(s, material_id, widen);
  } else {
    ForEachOfPair(s, material_id, machine_id, widen);
  }
  range.parameter_count = static_cast<std::int32_t>(count);
  range.valid = range.parameter_count > 0;
  return range;
}

}  // namespace Sparlane
