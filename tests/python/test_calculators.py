"""The calculators as module functions: figures for a 10 mm plate at
2000 mm/min, 65 A, kerf 1.5 mm, pierce time 0.5 s."""

import pytest

import sparlane
from conftest import record

approx = pytest.approx


@pytest.fixture
def plate():
    return record(1, 1, 1, 10.0, 2000.0)


def test_cut_time_adds_pierce_time_to_travel_time(plate):
    e = sparlane.estimate_cut_time(plate, 1000.0, 4)
    assert (e.cut_time_s, e.pierce_time_total_s, e.total_time_s) == (30.0, 2.0, 32.0)
    assert (e.cut_length_mm, e.pierce_count) == (1000.0, 4)


def test_job_cost_by_kind(plate):
    pricing = sparlane.MaterialPricing(price_per_kg=2.0, density_kg_m3=7850.0,
                                       material_utilization=0.5)
    c = sparlane.estimate_job_cost(plate, 1000.0, 4, pricing, 60.0, 30.0)
    assert c.material_cost == approx(0.471, rel=1e-5)
    assert c.consumable_cost == approx(0.2, rel=1e-5)
    assert c.machine_cost == approx(32.0 / 60.0, rel=1e-5)
    assert c.overhead_cost == approx(32.0 / 720.0, rel=1e-5)
    assert c.total_cost == approx(0.471 + 0.2 + 32.0 / 60.0 + 32.0 / 720.0, rel=1e-5)
    assert c.cost_per_meter == approx(c.total_cost, rel=1e-6)
    assert c.cost_per_pierce == approx(c.total_cost / 4, rel=1e-6)


def test_consumable_life_left(plate):
    usage = sparlane.ConsumableUsage(usage_id=7, starts=100, arc_hours=1.0, stress_factor_1=1.0)
    life = sparlane.estimate_consumable_life(usage, 45)
    assert life.primary_life_pct == approx(100 - 100 / 3, rel=1e-5)
    assert life.secondary_life_pct == approx(100 - 100 / 6, rel=1e-5)
    assert life.tertiary_life_pct == approx(100 - 100 / 9, rel=1e-5)
    assert (life.primary_starts_left, life.secondary_starts_left) == (500, 800)
    assert (life.primary_hours_left, life.secondary_hours_left) == (2.0, 5.0)
    assert not life.primary_replace_soon
    usage.arc_hours = 2.5
    life = sparlane.estimate_consumable_life(usage, 45)
    assert life.primary_replace_soon and not life.secondary_replace_soon


def test_kerf_compensation_offsets_half_the_kerf(plate):
    inside = sparlane.calculate_kerf_compensation(plate, True)
    assert (inside.offset_mm, inside.kerf_width_mm, inside.is_inside) == (-0.75, 1.5, True)
    assert sparlane.calculate_kerf_compensation(plate, False).offset_mm == 0.75


def test_lead_in_and_out(plate):
    lead = sparlane.calculate_lead_in_out(plate, False)
    assert (lead.lead_in_length_mm, lead.lead_out_length_mm) == (7.5, 11.25)
    assert (lead.lead_in_angle_deg, lead.lead_out_angle_deg) == (90.0, 45.0)
    assert (lead.lead_in_radius_mm, lead.lead_out_radius_mm) == (3.75, 5.625)
    assert lead.use_arc_lead_in and lead.use_lead_out
    limited = sparlane.calculate_lead_in_out(plate, True)
    assert (limited.lead_in_length_mm, limited.lead_out_length_mm) == (5.0, 10.0)


def test_corner_slowdown(plate):
    c = sparlane.calculate_corner_slowdown(plate, 120.0)
    assert c.speed_factor == approx(0.8, rel=1e-6)
    assert (c.decel_distance_mm, c.slow_zone_mm, c.accel_distance_mm) == (20.0, 30.0, 20.0)
    assert not c.sharp_corner and c.sharp_corner_extension_mm == 0.0
    sharp = sparlane.calculate_corner_slowdown(plate, 20.0)
    assert sharp.sharp_corner and sharp.sharp_corner_extension_mm == 15.0


def test_small_holes(plate):
    h = sparlane.small_hole_params(plate, 12.0)
    assert (h.speed_factor, h.current_factor, h.min_diameter_mm, h.lead_in_max_mm) == (
        0.5, 0.8, 2.25, 20.0)
    assert h.small_hole and not h.very_small_hole
    too_small = sparlane.small_hole_params(plate, 2.0)
    assert too_small.speed_factor == 0.0 and too_small.very_small_hole


def test_part_spacing(plate):
    s = sparlane.calculate_part_spacing(plate)
    assert (s.base_gap_mm, s.kerf_width_mm, s.min_spacing_mm) == (7.5, 1.5, 9.0)
    assert (s.recommended_spacing_mm, s.sheet_edge_margin_mm) == (11.0, 20.0)


def test_common_line_rules(plate):
    r = sparlane.common_line_rules(plate)
    assert r.allowed and not r.requires_tabs
    assert (r.max_thickness_mm, r.min_segment_length_mm, r.line_spacing_mm, r.tab_width_mm) == (
        12.0, 40.0, 9.5, 5.0)
    plate.thickness_mm = 16.0
    assert not sparlane.common_line_rules(plate).allowed


def test_quality_profiles(plate):
    q = sparlane.quality_profile(plate, sparlane.QualityLevel.STANDARD)
    assert q.level is sparlane.QualityLevel.STANDARD
    assert (q.speed_factor, q.current_factor) == (0.85, 0.95)
    assert q.surface_roughness_um == approx(30.0) and q.tolerance_mm == approx(0.45)
    assert sparlane.quality_profile(plate, 3).speed_factor == 0.5
    unknown = sparlane.quality_profile(plate, 9)
    assert unknown.level == 9 and unknown.speed_factor == 0.0
    assert "level=9" in repr(unknown)
    assert "level=QualityLevel.STANDARD" in repr(q)


def test_heat_affected_zone(plate):
    z = sparlane.calculate_haz(plate)
    assert z.haz_width_mm == approx(0.7325, rel=1e-6)
    assert z.inner_zone_mm == approx(0.7325 * 0.3, rel=1e-5)
    assert z.outer_zone_mm == approx(0.7325 * 1.5, rel=1e-5)
    assert not z.high_heat_input


def test_bevel_limits(plate):
    b = sparlane.bevel_limits(plate)
    assert (b.max_bevel_angle_deg, b.recommended_angle_deg) == (43.0, 38.0)
    assert b.max_land_height_mm == 6.0
    assert b.bevel_supported and b.thick_plate and b.very_thick_plate
    assert b.angle_speed_coefficient == 0.015
    assert sparlane.bevel_limits(plate, "any name") == b
