// The input and result records of the process calculators (the static
// members of Database).  Every result record is zero-filled before a
// calculator sets it, so a field it leaves alone reads 0 or false.
#ifndef SPARLANE_CALCULATORS_H_
#define SPARLANE_CALCULATORS_H_

#include <cstdint>

namespace Sparlane {

struct CutEstimate {
  float cut_time_s;
  float pierce_time_total_s;
  float total_time_s;
  float cut_length_mm;         // the length passed in
  std::uint32_t pierce_count;  // the count passed in
};

struct MaterialPricing {
  float price_per_kg;
  float density_kg_m3;
  float material_utilization;  // below 0.1 counts as 0.1
};

struct JobCost {
  float material_cost;
  float consumable_cost;
  float machine_cost;
  float overhead_cost;
  float total_cost;
  float cost_per_meter;   // 0 for no length
  float cost_per_pierce;  // 0 for no pierces
};

struct ConsumableUsage {
  std::uint32_t usage_id;  // the host's own tag; not read by the library
  std::uint32_t starts;
  float arc_hours;
  float stress_factor_1;  // weight 1.0
  float stress_factor_2;  // weight 1.3
  float stress_factor_3;  // weight 1.5
  float stress_factor_4;  // weight 1.2
};

struct ConsumableLife {
  float primary_life_pct;    // 0 to 100
  float secondary_life_pct;  // 0 to 100
  float tertiary_life_pct;   // 0 to 100
  std::uint32_t primary_starts_left;
  std::uint32_t secondary_starts_left;
  float primary_hours_left;
  float secondary_hours_left;
  bool primary_replace_soon;  // life at 20 % or less
  bool secondary_replace_soon;
  bool tertiary_replace_soon;
  bool life_flag_reserved;  // always false
};

// A torch consumable set.  The library stores and returns it whole and never
// reads its fields.
struct ConsumableSet {
  std::uint16_t set_id;
  std::uint16_t rated_current_amps;
  char description[60];
  char nozzle_part[16];
  char electrode_part[16];
  char shield_part[16];
  char swirl_ring_part[16];
};

static_assert(sizeof(ConsumableSet) == 128, "ConsumableSet is 128 bytes");
static_assert(alignof(ConsumableSet) == 2, "ConsumableSet has 2-byte alignment");

struct KerfCompensation {
  float offset_mm;  // negative for inside cuts
  float kerf_width_mm;
  bool is_inside;
};

struct LeadInOut {
  float lead_in_length_mm;
  float lead_out_length_mm;
  float lead_in_angle_deg;
  float lead_in_radius_mm;
  float lead_out_radius_mm;
  float lead_out_angle_deg;
  bool use_arc_lead_in;
  bool use_lead_out;  // always true
};

struct CornerSlowdown {
  float speed_factor;  // fraction of cut speed at the corner, 0.3 to 1.0
  float decel_distance_mm;
  float slow_zone_mm;
  float accel_distance_mm;
  bool sharp_corner;  // below 30 degrees
  float sharp_corner_extension_mm;
};

struct SmallHoleParams {
  float speed_factor;    // 0 when the hole cannot be cut
  float current_factor;  // 0 when the hole cannot be cut
  float min_diameter_mm;
  bool small_hole;
  bool very_small_hole;
  bool hole_flag_reserved;  // always false
  float lead_in_max_mm;
};

struct PartSpacing {
  float min_spacing_mm;
  float sheet_edge_margin_mm;
  float base_gap_mm;
  float kerf_width_mm;
  float recommended_spacing_mm;
};

struct CommonLineRules {
  bool allowed;
  float max_thickness_mm;  // always 12
  float min_segment_length_mm;
  float line_spacing_mm;
  bool requires_tabs;  // always false
  float tab_width_mm;
};

enum class QualityLevel : std::uint8_t {
  Production = 0,  // fastest, widest tolerances
  Standard = 1,
  Fine = 2,
  Precision = 3,  // slowest, tightest tolerances
};

struct EdgeQualityProfile {
  QualityLevel level;  // the level asked for, even an unknown one
  float speed_factor;
  float current_factor;
  float surface_roughness_um;
  float tolerance_mm;
  float max_bevel_deg;
};

struct HeatAffectedZone {
  float haz_width_mm;  // at most 3
  float inner_zone_mm;
  float outer_zone_mm;
  bool high_heat_input;
};

struct BevelLimits {
  float max_bevel_angle_deg;
  float max_land_height_mm;
  float recommended_angle_deg;
  bool bevel_supported;  // always true
  bool thick_plate;
  bool very_thick_plate;
  float angle_speed_coefficient;  // always 0.015
};

}  // namespace Sparlane

#endif  // SPARLANE_CALCULATORS_H_
