"""Lookups, interpolation and adjustments on the sample database."""

import math

import pytest

import sparlane
from conftest import sample_records

# The largest float, read back as the shortest decimal of its single value.
FLT_MAX = 3.4028235e38


def test_find_exact_gives_the_stored_record(db):
    assert db.find_exact("Mild steel", 6.0005, "AIR-45A") == sample_records()[1]


def test_find_exact_uses_the_given_tolerance(db):
    assert db.find_exact("Mild steel", 6.05, "AIR-45A") is None
    assert db.find_exact("Mild steel", 6.05, "AIR-45A", tolerance=0.1) == sample_records()[1]


def test_find_exact_miss_and_unknown_names_give_none(db):
    assert db.find_exact("Mild steel", 7.0, "AIR-45A") is None
    assert db.find_exact("Copper", 6.0, "AIR-45A") is None
    assert db.find_exact("Mild steel", 6.0, "AIR-99") is None


def test_queries_without_a_database_give_empty_results():
    db = sparlane.Database()
    assert db.find_exact("Mild steel", 6.0, "AIR-45A") is None
    assert db.find_nearest("Mild steel", 6.0, "AIR-45A") is None
    assert db.find_by_machine("", "AIR-45A") == []
    assert db.find_by_material("Mild steel") == []
    assert db.find_optimal("Mild steel", 6.0) is None
    result = db.interpolate("Mild steel", 6.0, "AIR-45A")
    assert result.confidence == 0.0 and not result.extrapolated
    assert result.parameter == sparlane.CuttingParameter()


def test_names_may_be_bytes(db):
    assert db.find_exact(b"Mild steel", 6.0, b"AIR-45A") == sample_records()[1]


def test_names_of_other_types_are_type_errors(db):
    with pytest.raises(TypeError):
        db.find_exact(1, 6.0, "AIR-45A")


def test_find_nearest_gives_the_closest_thickness(db):
    assert db.find_nearest("Mild steel", 7.0, "AIR-45A") == sample_records()[1]
    assert db.find_nearest("Mild steel", 7.0, "HD-999") is None


def test_find_by_machine_copies_the_machine_span_of_the_table(db):
    # AIR-45A's records are 0, 1, 2 and 5; its index span, taken as it lies,
    # covers positions 0 to 3.
    assert db.find_by_machine("", "AIR-45A") == sample_records()[:4]
    assert db.find_by_machine("High definition", "HD-130") == [sample_records()[4]]
    assert db.find_by_machine("Air plasma", "HD-130") == []


def test_find_by_material_lists_every_machine(db):
    assert db.find_by_material("Mild steel") == sample_records()[:5]
    assert db.find_by_material("Stainless steel") == [sample_records()[5]]
    assert db.find_by_material("Copper") == []


def test_thickness_range_of_one_machine_or_of_any(db):
    r = db.supported_thickness_range("Mild steel", "AIR-45A")
    assert (r.min_thickness_mm, r.max_thickness_mm, r.parameter_count, r.valid) == (3, 10, 3, True)
    r = db.supported_thickness_range("Mild steel")
    assert (r.min_thickness_mm, r.max_thickness_mm, r.parameter_count) == (3, 12, 5)
    r = db.supported_thickness_range("Copper")
    assert not r.valid and r.parameter_count == 0
    assert (r.min_thickness_mm, r.max_thickness_mm) == (FLT_MAX, -FLT_MAX)


def test_interpolate_between_two_listed_thicknesses(db):
    r = db.interpolate("Mild steel", 8.0, "AIR-45A")
    assert r.confidence == pytest.approx(1.0)
    assert not r.extrapolated
    assert r.parameter.thickness_mm == 8.0
    assert r.parameter.cut_speed_mm_min == 2500.0
    assert r.parameter.flags & sparlane.FLAG_DERIVED
    r = db.interpolate("Mild steel", 7.0, "AIR-45A")
    assert r.confidence == pytest.approx(0.9)
    assert r.parameter.cut_speed_mm_min == 2750.0


def test_interpolate_at_a_listed_thickness_gives_the_record(db):
    r = db.interpolate("Mild steel", 10.0, "AIR-45A")
    assert r.confidence == 1.0
    assert r.parameter == sample_records()[2]


def test_interpolate_beyond_the_table_extrapolates(db):
    r = db.interpolate("Mild steel", 20.0, "AIR-45A")
    assert r.extrapolated
    assert r.confidence == pytest.approx(0.3)
    assert r.parameter.cut_speed_mm_min == pytest.approx(2000.0 / math.sqrt(2.0), rel=1e-6)


def test_interpolate_with_nothing_to_build_on_gives_zero_confidence(db):
    for material, thickness in (("Copper", 8.0), ("Mild steel", -1.0), ("Mild steel", math.nan)):
        r = db.interpolate(material, thickness, "AIR-45A")
        assert r.confidence == 0.0 and not r.extrapolated


def test_find_optimal_gives_the_fastest_machine(db):
    assert db.find_optimal("Mild steel", 6.0, 0.01) == sample_records()[3]
    assert db.find_optimal("Mild steel", 6.0) == sample_records()[3]
    assert db.find_optimal("Mild steel", 8.0, 0.01) is None


def test_adjust_for_max_speed_caps_the_speed(db):
    base = sample_records()[1]
    capped = db.adjust_for_max_speed(base, 2500.0)
    assert capped.cut_speed_mm_min == 2500.0
    assert capped.flags & sparlane.FLAG_SPEED_CAPPED
    assert db.adjust_for_max_speed(base, 4000.0) == base


def test_thickness_beyond_single_precision_is_overflow_error(db):
    with pytest.raises(OverflowError):
        db.find_exact("Mild steel", 1e39, "AIR-45A")
    assert db.find_exact("Mild steel", FLT_MAX, "AIR-45A") is None


def test_effective_thickness_of_a_tilted_torch():
    assert sparlane.calculate_effective_thickness(10.0, 0.0) == 10.0
    assert sparlane.calculate_effective_thickness(10.0, 60.0) == pytest.approx(20.0, rel=1e-6)
    assert sparlane.calculate_effective_thickness(0.0, 30.0) == 0.0
    assert sparlane.calculate_effective_thickness(10.0, 100.0) == 10.0


def test_records_of_an_interpolation_share_nothing_with_the_database(db):
    r = db.interpolate("Mild steel", 8.0, "AIR-45A")
    r.parameter.cut_speed_mm_min = 1.0
    assert r.parameter.cut_speed_mm_min == 1.0
    assert db.interpolate("Mild steel", 8.0, "AIR-45A").parameter.cut_speed_mm_min == 2500.0


def test_queries_take_arguments_by_position_or_keyword(db):
    expected = sample_records()[1]
    assert db.find_exact(material="Mild steel", thickness=6.0, machine_model="AIR-45A") == expected
    assert db.find_exact("Mild steel", 6.0, machine_model="AIR-45A", tolerance=0.01) == expected
    assert db.find_nearest("Mild steel", machine_model="AIR-45A", thickness=7.0) == expected
    assert db.find_optimal("Mild steel", thickness=6.0, tolerance=0.01) == sample_records()[3]
    assert db.interpolate(machine_model="AIR-45A", material="Mild steel",
                          thickness=8.0).parameter.cut_speed_mm_min == 2500.0


@pytest.mark.parametrize("call, message", [
    (lambda db: db.find_exact("Mild steel", 6.0), "missing required argument 'machine_model'"),
    (lambda db: db.find_exact("Mild steel", 6.0, "AIR-45A", 0.1, 1), "takes at most 4 arguments"),
    (lambda db: db.interpolate("Mild steel", 6.0, "AIR-45A", speed=1),
     "unexpected keyword argument 'speed'"),
    (lambda db: db.find_nearest("Mild steel", 6.0, "AIR-45A", material="x"),
     "multiple values for argument 'material'"),
    (lambda db: db.find_optimal("Mild steel", "6"), "thickness: cannot take str"),
    (lambda db: db.find_exact(None, 6.0, "AIR-45A"), "material: cannot take NoneType"),
])
def test_query_arguments_are_checked_as_python_checks_them(db, call, message):
    with pytest.raises(TypeError, match=message):
        call(db)


def test_query_signatures_are_visible():
    import inspect
    assert list(inspect.signature(sparlane.Database.find_exact).parameters) == [
        "self", "material", "thickness", "machine_model", "tolerance"]
    tolerance = inspect.signature(sparlane.Database.find_optimal).parameters["tolerance"]
    assert tolerance.default == 0.001
