// Every C record has the byte layout of its C++ original, field by field, so
// Mirror() may copy one into the other.  Compile-time only.
#include "mirror.h"

namespace sparlane_c {

SPARLANE_SAME_SIZE(sparlane_parameter_t, CuttingParameter);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, vendor_id);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, machine_model_id);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, material_id);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, aux_id);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, thickness_mm);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, cut_speed_mm_min);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, cut_height_mm);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, pierce_height_mm);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, transfer_height_mm);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, arc_voltage_v);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, pierce_time_s);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, kerf_width_mm);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, current_amps);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, reserved_42);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, flags);
SPARLANE_SAME_FIELD(sparlane_parameter_t, CuttingParameter, reserved_52);

SPARLANE_SAME_SIZE(sparlane_file_header_t, FileHeader);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, magic);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, version_major);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, version_minor);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, created_time);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, parameter_count);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, vendor_count);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, machine_count);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, material_count);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_32);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, vendor_table_offset);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, machine_table_offset);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, material_table_offset);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_72);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, aux_offset_1);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, aux_offset_2);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_96);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, parameter_data_offset);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, compression);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_113);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, stats_compressed_size);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, stats_uncompressed_size);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_124);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, header_crc32);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_132);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, creator);
SPARLANE_SAME_FIELD(sparlane_file_header_t, FileHeader, reserved_176);

SPARLANE_SAME_SIZE(sparlane_thickness_range_t, SupportedThicknessRange);
SPARLANE_SAME_FIELD(sparlane_thickness_range_t, SupportedThicknessRange, min_thickness_mm);
SPARLANE_SAME_FIELD(sparlane_thickness_range_t, SupportedThicknessRange, max_thickness_mm);
SPARLANE_SAME_FIELD(sparlane_thickness_range_t, SupportedThicknessRange, parameter_count);
SPARLANE_SAME_FIELD(sparlane_thickness_range_t, SupportedThicknessRange, valid);

SPARLANE_SAME_SIZE(sparlane_performance_metrics_t, PerformanceMetrics);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, total_queries);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, queries_found);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, queries_not_found);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, avg_query_time_us);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, max_query_time_us);
SPARLANE_SAME_FIELD(sparlane_performance_metrics_t, PerformanceMetrics, min_query_time_us);

SPARLANE_SAME_SIZE(sparlane_database_stats_t, DatabaseStats);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, parameter_count);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, vendor_count);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, machine_count);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, material_count);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, consumable_set_count);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, file_size_bytes);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, uncompressed_size);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, reserved_a);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, compression_ratio);
SPARLANE_SAME_FIELD(sparlane_database_stats_t, DatabaseStats, reserved_b);

SPARLANE_SAME_SIZE(sparlane_cut_estimate_t, CutEstimate);
SPARLANE_SAME_FIELD(sparlane_cut_estimate_t, CutEstimate, cut_time_s);
SPARLANE_SAME_FIELD(sparlane_cut_estimate_t, CutEstimate, pierce_time_total_s);
SPARLANE_SAME_FIELD(sparlane_cut_estimate_t, CutEstimate, total_time_s);
SPARLANE_SAME_FIELD(sparlane_cut_estimate_t, CutEstimate, cut_length_mm);
SPARLANE_SAME_FIELD(sparlane_cut_estimate_t, CutEstimate, pierce_count);

SPARLANE_SAME_SIZE(sparlane_material_pricing_t, MaterialPricing);
SPARLANE_SAME_FIELD(sparlane_material_pricing_t, MaterialPricing, price_per_kg);
SPARLANE_SAME_FIELD(sparlane_material_pricing_t, MaterialPricing, density_kg_m3);
SPARLANE_SAME_FIELD(sparlane_material_pricing_t, MaterialPricing, material_utilization);

SPARLANE_SAME_SIZE(sparlane_job_cost_t, JobCost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, material_cost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, consumable_cost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, machine_cost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, overhead_cost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, total_cost);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, cost_per_meter);
SPARLANE_SAME_FIELD(sparlane_job_cost_t, JobCost, cost_per_pierce);

SPARLANE_SAME_SIZE(sparlane_consumable_usage_t, ConsumableUsage);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, usage_id);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, starts);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, arc_hours);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, stress_factor_1);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, stress_factor_2);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, stress_factor_3);
SPARLANE_SAME_FIELD(sparlane_consumable_usage_t, ConsumableUsage, stress_factor_4);

SPARLANE_SAME_SIZE(sparlane_consumable_life_t, ConsumableLife);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, primary_life_pct);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, secondary_life_pct);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, tertiary_life_pct);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, primary_starts_left);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, secondary_starts_left);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, primary_hours_left);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, secondary_hours_left);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, primary_replace_soon);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, secondary_replace_soon);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, tertiary_replace_soon);
SPARLANE_SAME_FIELD(sparlane_consumable_life_t, ConsumableLife, life_flag_reserved);

SPARLANE_SAME_SIZE(sparlane_consumable_set_t, ConsumableSet);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, set_id);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, rated_current_amps);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, description);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, nozzle_part);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, electrode_part);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, shield_part);
SPARLANE_SAME_FIELD(sparlane_consumable_set_t, ConsumableSet, swirl_ring_part);

SPARLANE_SAME_SIZE(sparlane_kerf_compensation_t, KerfCompensation);
SPARLANE_SAME_FIELD(sparlane_kerf_compensation_t, KerfCompensation, offset_mm);
SPARLANE_SAME_FIELD(sparlane_kerf_compensation_t, KerfCompensation, kerf_width_mm);
SPARLANE_SAME_FIELD(sparlane_kerf_compensation_t, KerfCompensation, is_inside);

SPARLANE_SAME_SIZE(sparlane_lead_in_out_t, LeadInOut);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_in_length_mm);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_out_length_mm);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_in_angle_deg);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_in_radius_mm);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_out_radius_mm);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, lead_out_angle_deg);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, use_arc_lead_in);
SPARLANE_SAME_FIELD(sparlane_lead_in_out_t, LeadInOut, use_lead_out);

SPARLANE_SAME_SIZE(sparlane_corner_slowdown_t, CornerSlowdown);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, speed_factor);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, decel_distance_mm);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, slow_zone_mm);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, accel_distance_mm);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, sharp_corner);
SPARLANE_SAME_FIELD(sparlane_corner_slowdown_t, CornerSlowdown, sharp_corner_extension_mm);

SPARLANE_SAME_SIZE(sparlane_small_hole_params_t, SmallHoleParams);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, speed_factor);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, current_factor);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, min_diameter_mm);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, small_hole);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, very_small_hole);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, hole_flag_reserved);
SPARLANE_SAME_FIELD(sparlane_small_hole_params_t, SmallHoleParams, lead_in_max_mm);

SPARLANE_SAME_SIZE(sparlane_part_spacing_t, PartSpacing);
SPARLANE_SAME_FIELD(sparlane_part_spacing_t, PartSpacing, min_spacing_mm);
SPARLANE_SAME_FIELD(sparlane_part_spacing_t, PartSpacing, sheet_edge_margin_mm);
SPARLANE_SAME_FIELD(sparlane_part_spacing_t, PartSpacing, base_gap_mm);
SPARLANE_SAME_FIELD(sparlane_part_spacing_t, PartSpacing, kerf_width_mm);
SPARLANE_SAME_FIELD(sparlane_part_spacing_t, PartSpacing, recommended_spacing_mm);

SPARLANE_SAME_SIZE(sparlane_common_line_rules_t, CommonLineRules);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, allowed);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, max_thickness_mm);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, min_segment_length_mm);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, line_spacing_mm);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, requires_tabs);
SPARLANE_SAME_FIELD(sparlane_common_line_rules_t, CommonLineRules, tab_width_mm);

SPARLANE_SAME_SIZE(sparlane_quality_profile_t, EdgeQualityProfile);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, level);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, speed_factor);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, current_factor);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, surface_roughness_um);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, tolerance_mm);
SPARLANE_SAME_FIELD(sparlane_quality_profile_t, EdgeQualityProfile, max_bevel_deg);

SPARLANE_SAME_SIZE(sparlane_heat_affected_zone_t, HeatAffectedZone);
SPARLANE_SAME_FIELD(sparlane_heat_affected_zone_t, HeatAffectedZone, haz_width_mm);
SPARLANE_SAME_FIELD(sparlane_heat_affected_zone_t, HeatAffectedZone, inner_zone_mm);
SPARLANE_SAME_FIELD(sparlane_heat_affected_zone_t, HeatAffectedZone, outer_zone_mm);
SPARLANE_SAME_FIELD(sparlane_heat_affected_zone_t, HeatAffectedZone, high_heat_input);

SPARLANE_SAME_SIZE(sparlane_bevel_limits_t, BevelLimits);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, max_bevel_angle_deg);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, max_land_height_mm);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, recommended_angle_deg);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, bevel_supported);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, thick_plate);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, very_thick_plate);
SPARLANE_SAME_FIELD(sparlane_bevel_limits_t, BevelLimits, angle_speed_coefficient);
// The interpolation results differ in size (C does not align the record to
// 64 bytes) and are copied field by field; their fields still agree.
static_assert(sizeof(sparlane_interpolation_t::confidence) ==
                  sizeof(Sparlane::InterpolationResult::confidence),
              "confidence");
static_assert(sizeof(sparlane_interpolation_t::extrapolated) ==
                  sizeof(Sparlane::InterpolationResult::extrapolated),
              "extrapolated");
static_assert(sizeof(Sparlane::QualityLevel) == sizeof(std::uint8_t), "quality level is a byte");

}  // namespace sparlane_c
