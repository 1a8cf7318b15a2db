/* The calculators through the C records: figures for a 10 mm plate at
 * 2000 mm/min, 65 A, kerf 1.5 mm, pierce time 0.5 s. */
#include <string.h>

#include "check.h"
#include "fixtures.h"

static sparlane_parameter_t plate(void) { return sample_record(1, 1, 1, 10.0f, 2000.0f); }

static void CutTime(void) {
  sparlane_parameter_t p = plate();
  sparlane_cut_estimate_t e;
  CHECK_INT(sparlane_estimate_cut_time(&p, 1000.0f, 4, &e), SPARLANE_SUCCESS);
  CHECK(e.cut_time_s == 30.0f);
  CHECK(e.pierce_time_total_s == 2.0f);
  CHECK(e.total_time_s == 32.0f);
  CHECK(e.cut_length_mm == 1000.0f);
  CHECK_INT(e.pierce_count, 4);
  CHECK_INT(sparlane_estimate_cut_time(NULL, 1000.0f, 4, &e), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_estimate_cut_time(&p, 1000.0f, 4, NULL), SPARLANE_INVALID_PARAMETER);
}

static void JobCost(void) {
  sparlane_parameter_t p = plate();
  sparlane_material_pricing_t pricing;
  sparlane_job_cost_t c;
  pricing.price_per_kg = 2.0f;
  pricing.density_kg_m3 = 7850.0f;
  pricing.material_utilization = 0.5f;
  CHECK_INT(sparlane_estimate_job_cost(&p, 1000.0f, 4, &pricing, 60.0f, 30.0f, &c),
            SPARLANE_SUCCESS);
  CHECK_NEAR(c.material_cost, 0.471);
  CHECK_NEAR(c.consumable_cost, 0.2);
  CHECK_NEAR(c.machine_cost, 32.0 / 60.0);
  CHECK_NEAR(c.overhead_cost, 32.0 / 3600.0 * 5.0);
  CHECK_NEAR(c.total_cost, 0.471 + 0.2 + 32.0 / 60.0 + 32.0 / 720.0);
  CHECK_NEAR(c.cost_per_meter, c.total_cost);
  CHECK_NEAR(c.cost_per_pierce, c.total_cost / 4.0);
  CHECK_INT(sparlane_estimate_job_cost(&p, 1000.0f, 4, NULL, 60.0f, 30.0f, &c),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_estimate_job_cost(NULL, 1000.0f, 4, &pricing, 60.0f, 30.0f, &c),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_estimate_job_cost(&p, 1000.0f, 4, &pricing, 60.0f, 30.0f, NULL),
            SPARLANE_INVALID_PARAMETER);
}

static void ConsumableLife(void) {
  sparlane_consumable_usage_t usage;
  sparlane_consumable_life_t life;
  memset(&usage, 0, sizeof usage);
  usage.usage_id = 7;
  usage.starts = 100;
  usage.arc_hours = 1.0f;
  usage.stress_factor_1 = 1.0f;
  CHECK_INT(sparlane_estimate_consumable_life(&usage, 45, &life), SPARLANE_SUCCESS);
  CHECK_NEAR(life.primary_life_pct, 100.0 - 100.0 / 3.0);
  CHECK_NEAR(life.secondary_life_pct, 100.0 - 100.0 / 6.0);
  CHECK_NEAR(life.tertiary_life_pct, 100.0 - 100.0 / 9.0);
  CHECK_INT(life.primary_starts_left, 500);
  CHECK_INT(life.secondary_starts_left, 800);
  CHECK(life.primary_hours_left == 2.0f);
  CHECK(life.secondary_hours_left == 5.0f);
  CHECK_INT(life.primary_replace_soon, 0);
  usage.arc_hours = 2.5f;
  CHECK_INT(sparlane_estimate_consumable_life(&usage, 45, &life), SPARLANE_SUCCESS);
  CHECK_INT(life.primary_replace_soon, 1);
  CHECK_INT(life.secondary_replace_soon, 0);
  CHECK_INT(life.life_flag_reserved, 0);
  CHECK_INT(sparlane_estimate_consumable_life(NULL, 45, &life), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_estimate_consumable_life(&usage, 45, NULL), SPARLANE_INVALID_PARAMETER);
}

static void KerfCompensation(void) {
  sparlane_parameter_t p = plate();
  sparlane_kerf_compensation_t k;
  CHECK_INT(sparlane_calculate_kerf_compensation(&p, 1, &k), SPARLANE_SUCCESS);
  CHECK(k.offset_mm == -0.75f && k.kerf_width_mm == 1.5f);
  CHECK_INT(k.is_inside, 1);
  CHECK_INT(sparlane_calculate_kerf_compensation(&p, 0, &k), SPARLANE_SUCCESS);
  CHECK(k.offset_mm == 0.75f);
  CHECK_INT(k.is_inside, 0);
  CHECK_INT(sparlane_calculate_kerf_compensation(NULL, 0, &k), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_calculate_kerf_compensation(&p, 0, NULL), SPARLANE_INVALID_PARAMETER);
}

static void LeadInOut(void) {
  sparlane_parameter_t p = plate();
  sparlane_lead_in_out_t l;
  CHECK_INT(sparlane_calculate_lead_in_out(&p, 0, &l), SPARLANE_SUCCESS);
  CHECK(l.lead_in_length_mm == 7.5f && l.lead_out_length_mm == 11.25f);
  CHECK(l.lead_in_angle_deg == 90.0f && l.lead_out_angle_deg == 45.0f);
  CHECK(l.lead_in_radius_mm == 3.75f && l.lead_out_radius_mm == 5.625f);
  CHECK_INT(l.use_arc_lead_in, 1);
  CHECK_INT(l.use_lead_out, 1);
  CHECK_INT(sparlane_calculate_lead_in_out(&p, 1, &l), SPARLANE_SUCCESS);
  CHECK(l.lead_in_length_mm == 5.0f && l.lead_out_length_mm == 10.0f);
  CHECK_INT(sparlane_calculate_lead_in_out(NULL, 1, &l), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_calculate_lead_in_out(&p, 1, NULL), SPARLANE_INVALID_PARAMETER);
}

static void CornerSlowdown(void) {
  sparlane_parameter_t p = plate();
  sparlane_corner_slowdown_t c;
  CHECK_INT(sparlane_calculate_corner_slowdown(&p, 120.0f, &c), SPARLANE_SUCCESS);
  CHECK_NEAR(c.speed_factor, 0.8);
  CHECK(c.decel_distance_mm == 20.0f && c.slow_zone_mm == 30.0f && c.accel_distance_mm == 20.0f);
  CHECK_INT(c.sharp_corner, 0);
  CHECK(c.sharp_corner_extension_mm == 0.0f);
  CHECK_INT(sparlane_calculate_corner_slowdown(&p, 20.0f, &c), SPARLANE_SUCCESS);
  CHECK_INT(c.sharp_corner, 1);
  CHECK(c.sharp_corner_extension_mm == 15.0f);
  CHECK_INT(sparlane_calculate_corner_slowdown(NULL, 20.0f, &c), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_calculate_corner_slowdown(&p, 20.0f, NULL), SPARLANE_INVALID_PARAMETER);
}

static void SmallHoles(void) {
  sparlane_parameter_t p = plate();
  sparlane_small_hole_params_t h;
  CHECK_INT(sparlane_small_hole_params(&p, 12.0f, &h), SPARLANE_SUCCESS);
  CHECK(h.speed_factor == 0.5f && h.current_factor == 0.8f);
  CHECK(h.min_diameter_mm == 2.25f && h.lead_in_max_mm == 20.0f);
  CHECK_INT(h.small_hole, 1);
  CHECK_INT(h.very_small_hole, 0);
  CHECK_INT(sparlane_small_hole_params(&p, 2.0f, &h), SPARLANE_SUCCESS);
  CHECK(h.speed_factor == 0.0f);
  CHECK_INT(h.very_small_hole, 1);
  CHECK_INT(h.hole_flag_reserved, 0);
  CHECK_INT(sparlane_small_hole_params(NULL, 2.0f, &h), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_small_hole_params(&p, 2.0f, NULL), SPARLANE_INVALID_PARAMETER);
}

static void PartSpacing(void) {
  sparlane_parameter_t p = plate();
  sparlane_part_spacing_t s;
  CHECK_INT(sparlane_calculate_part_spacing(&p, &s), SPARLANE_SUCCESS);
  CHECK(s.base_gap_mm == 7.5f && s.kerf_width_mm == 1.5f && s.min_spacing_mm == 9.0f);
  CHECK(s.recommended_spacing_mm == 11.0f && s.sheet_edge_margin_mm == 20.0f);
  CHECK_INT(sparlane_calculate_part_spacing(NULL, &s), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_calculate_part_spacing(&p, NULL), SPARLANE_INVALID_PARAMETER);
}

static void CommonLine(void) {
  sparlane_parameter_t p = plate();
  sparlane_common_line_rules_t r;
  CHECK_INT(sparlane_common_line_rules(&p, &r), SPARLANE_SUCCESS);
  CHECK_INT(r.allowed, 1);
  CHECK(r.max_thickness_mm == 12.0f && r.min_segment_length_mm == 40.0f);
  CHECK(r.line_spacing_mm == 9.5f && r.tab_width_mm == 5.0f);
  CHECK_INT(r.requires_tabs, 0);
  p.thickness_mm = 16.0f;
  CHECK_INT(sparlane_common_line_rules(&p, &r), SPARLANE_SUCCESS);
  CHECK_INT(r.allowed, 0);
  CHECK_INT(sparlane_common_line_rules(NULL, &r), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_common_line_rules(&p, NULL), SPARLANE_INVALID_PARAMETER);
}

static void QualityProfiles(void) {
  sparlane_parameter_t p = plate();
  sparlane_quality_profile_t q;
  CHECK_INT(sparlane_quality_profile(&p, SPARLANE_QUALITY_STANDARD, &q), SPARLANE_SUCCESS);
  CHECK_INT(q.level, SPARLANE_QUALITY_STANDARD);
  CHECK(q.speed_factor == 0.85f && q.current_factor == 0.95f);
  CHECK_NEAR(q.surface_roughness_um, 30.0);
  CHECK_NEAR(q.tolerance_mm, 0.45);
  CHECK_INT(sparlane_quality_profile(&p, SPARLANE_QUALITY_PRECISION, &q), SPARLANE_SUCCESS);
  CHECK(q.speed_factor == 0.5f);
  CHECK_INT(sparlane_quality_profile(&p, 9, &q), SPARLANE_SUCCESS);
  CHECK_INT(q.level, 9);
  CHECK(q.speed_factor == 0.0f && q.tolerance_mm == 0.0f);
  CHECK_INT(sparlane_quality_profile(NULL, 0, &q), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_quality_profile(&p, 0, NULL), SPARLANE_INVALID_PARAMETER);
}

static void HeatAffectedZone(void) {
  sparlane_parameter_t p = plate();
  sparlane_heat_affected_zone_t z;
  CHECK_INT(sparlane_calculate_haz(&p, &z), SPARLANE_SUCCESS);
  CHECK_NEAR(z.haz_width_mm, 0.7325);
  CHECK_NEAR(z.inner_zone_mm, 0.7325 * 0.3);
  CHECK_NEAR(z.outer_zone_mm, 0.7325 * 1.5);
  CHECK_INT(z.high_heat_input, 0);
  CHECK_INT(sparlane_calculate_haz(NULL, &z), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_calculate_haz(&p, NULL), SPARLANE_INVALID_PARAMETER);
}

static void BevelLimits(void) {
  sparlane_parameter_t p = plate();
  sparlane_bevel_limits_t b;
  CHECK_INT(sparlane_bevel_limits(&p, "any name", &b), SPARLANE_SUCCESS);
  CHECK(b.max_bevel_angle_deg == 43.0f && b.recommended_angle_deg == 38.0f);
  CHECK(b.max_land_height_mm == 6.0f && b.angle_speed_coefficient == 0.015f);
  CHECK_INT(b.bevel_supported, 1);
  CHECK_INT(b.thick_plate, 1);
  CHECK_INT(b.very_thick_plate, 1);
  CHECK_INT(sparlane_bevel_limits(&p, NULL, &b), SPARLANE_SUCCESS);
  CHECK(b.max_bevel_angle_deg == 43.0f);
  CHECK_INT(sparlane_bevel_limits(NULL, "x", &b), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_bevel_limits(&p, "x", NULL), SPARLANE_INVALID_PARAMETER);
}

const test_case calculators_tests[] = {
    {"CutTime", CutTime},
    {"JobCost", JobCost},
    {"ConsumableLife", ConsumableLife},
    {"KerfCompensation", KerfCompensation},
    {"LeadInOut", LeadInOut},
    {"CornerSlowdown", CornerSlowdown},
    {"SmallHoles", SmallHoles},
    {"PartSpacing", PartSpacing},
    {"CommonLine", CommonLine},
    {"QualityProfiles", QualityProfiles},
    {"HeatAffectedZone", HeatAffectedZone},
    {"BevelLimits", BevelLimits},
    TEST_END};
