// The process calculators: pure functions of one record and a few numbers.
#include "handle.h"
#include "mirror.h"

using Sparlane::Database;
using sparlane_c::Calculate;
using sparlane_c::ToCpp;

extern "C" {

int sparlane_estimate_cut_time(const sparlane_parameter_t* param, float cut_length_mm,
                               unsigned int pierce_count, sparlane_cut_estimate_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Database::EstimateCutTime(ToCpp(*param), cut_length_mm, pierce_count); });
}

int sparlane_estimate_job_cost(const sparlane_parameter_t* param, float cut_length_mm,
                               unsigned int pierce_count,
                               const sparlane_material_pricing_t* pricing,
                               float machine_rate_per_hour, float consumable_set_price,
                               sparlane_job_cost_t* out) {
  if (param == nullptr || pricing == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] {
    return Database::EstimateJobCost(ToCpp(*param), cut_length_mm, pierce_count,
                                     sparlane_c::Mirror<Sparlane::MaterialPricing>(*pricing),
                                     machine_rate_per_hour, consumable_set_price);
  });
}

int sparlane_estimate_consumable_life(const sparlane_consumable_usage_t* usage,
                                      unsigned short current_amps,
                                      sparlane_consumable_life_t* out) {
  if (usage == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] {
    return Database::EstimateConsumableLife(sparlane_c::Mirror<Sparlane::ConsumableUsage>(*usage),
                                            current_amps);
  });
}

int sparlane_calculate_kerf_compensation(const sparlane_parameter_t* param, int is_inside,
                                         sparlane_kerf_compensation_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Database::CalculateKerfCompensation(ToCpp(*param), is_inside != 0); });
}

int sparlane_calculate_lead_in_out(const sparlane_parameter_t* param, int limit_to_thickness,
                                   sparlane_lead_in_out_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Database::CalculateLeadInOut(ToCpp(*param), limit_to_thickness != 0); });
}

int sparlane_calculate_corner_slowdown(const sparlane_parameter_t* param, float corner_angle_deg,
                                       sparlane_corner_slowdown_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Database::CalculateCornerSlowdown(ToCpp(*param), corner_angle_deg); });
}

int sparlane_small_hole_params(const sparlane_parameter_t* param, float hole_diameter_mm,
                               sparlane_small_hole_params_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out,
                   [&] { return Database::GetSmallHoleParams(ToCpp(*param), hole_diameter_mm); });
}

int sparlane_calculate_part_spacing(const sparlane_parameter_t* param,
                                    sparlane_part_spacing_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] { return Database::CalculatePartSpacing(ToCpp(*param)); });
}

int sparlane_common_line_rules(const sparlane_parameter_t* param,
                               sparlane_common_line_rules_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] { return Database::GetCommonLineRules(ToCpp(*param)); });
}

int sparlane_quality_profile(const sparlane_parameter_t* param, uint8_t level,
                             sparlane_quality_profile_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] {
    return Database::GetQualityProfile(ToCpp(*param), static_cast<Sparlane::QualityLevel>(level));
  });
}

int sparlane_calculate_haz(const sparlane_parameter_t* param, sparlane_heat_affected_zone_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] { return Database::CalculateHAZ(ToCpp(*param)); });
}

int sparlane_bevel_limits(const sparlane_parameter_t* param, const char* name,
                          sparlane_bevel_limits_t* out) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Database::GetBevelLimits(ToCpp(*param), name != nullptr ? name : ""); });
}

}  // extern "C"
