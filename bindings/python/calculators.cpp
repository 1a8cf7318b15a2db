// The calculators as module functions: pure, safe on any thread.
#include "convert.h"
#include "module.h"

namespace sparlane_py {

using Sparlane::CuttingParameter;
using Sparlane::Database;

void BindCalculators(py::module_& m) {
  m.def(
      "calculate_effective_thickness",
      [](Float32 thickness, Float32 angle_degrees) {
        return Float32{Database::CalculateEffectiveThickness(thickness.value, angle_degrees.value)};
      },
      py::arg("thickness"), py::arg("angle_degrees"),
      "Path length through a plate for a torch tilted by angle_degrees.");
  m.def(
      "estimate_cut_time",
      [](const CuttingParameter& p, Float32 cut_length_mm, unsigned int pierce_count) {
        return Database::EstimateCutTime(p, cut_length_mm.value, pierce_count);
      },
      py::arg("param"), py::arg("cut_length_mm"), py::arg("pierce_count"));
  m.def(
      "estimate_job_cost",
      [](const CuttingParameter& p, Float32 cut_length_mm, unsigned int pierce_count,
         const Sparlane::MaterialPricing& pricing, Float32 machine_rate_per_hour,
         Float32 consumable_set_price) {
        return Database::EstimateJobCost(p, cut_length_mm.value, pierce_count, pricing,
                                         machine_rate_per_hour.value, consumable_set_price.value);
      },
      py::arg("param"), py::arg("cut_length_mm"), py::arg("pierce_count"), py::arg("pricing"),
      py::arg("machine_rate_per_hour"), py::arg("consumable_set_price"));
  m.def(
      "estimate_consumable_life",
      [](const Sparlane::ConsumableUsage& usage, unsigned short current_amps) {
        return Database::EstimateConsumableLife(usage, current_amps);
      },
      py::arg("usage"), py::arg("current_amps"));
  m.def(
      "calculate_kerf_compensation",
      [](const CuttingParameter& p, bool is_inside) {
        return Database::CalculateKerfCompensation(p, is_inside);
      },
      py::arg("param"), py::arg("is_inside"));
  m.def(
      "calculate_lead_in_out",
      [](const CuttingParameter& p, bool limit_to_thickness) {
        return Database::CalculateLeadInOut(p, limit_to_thickness);
      },
      py::arg("param"), py::arg("limit_to_thickness"));
  m.def(
      "calculate_corner_slowdown",
      [](const CuttingParameter& p, Float32 corner_angle_deg) {
        return Database::CalculateCornerSlowdown(p, corner_angle_deg.value);
      },
      py::arg("param"), py::arg("corner_angle_deg"));
  m.def(
      "small_hole_params",
      [](const CuttingParameter& p, Float32 hole_diameter_mm) {
        return Database::GetSmallHoleParams(p, hole_diameter_mm.value);
      },
      py::arg("param"), py::arg("hole_diameter_mm"));
  m.def("calculate_part_spacing", &Database::CalculatePartSpacing, py::arg("param"));
  m.def("common_line_rules", &Database::GetCommonLineRules, py::arg("param"));
  m.def(
      "quality_profile",
      [](const CuttingParameter& p, std::uint8_t level) {
        return Database::GetQualityProfile(p, static_cast<Sparlane::QualityLevel>(level));
      },
      py::arg("param"), py::arg("level"), "level: a QualityLevel.");
  m.def("calculate_haz", &Database::CalculateHAZ, py::arg("param"));
  m.def(
      "bevel_limits",
      [](const CuttingParameter& p, const Name& name) {
        return Database::GetBevelLimits(p, name.bytes);
      },
      py::arg("param"), py::arg("name") = Name{}, "name is accepted and not consulted.");
}

}  // namespace sparlane_py
