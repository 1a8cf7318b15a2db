"""Adding, replacing and deleting records and names: every refusal with its
code and message."""

import math

import pytest

import sparlane
from conftest import record, sample_records

E = sparlane.ErrorCode


def refusal(call, *args):
    with pytest.raises(sparlane.Error) as raised:
        call(*args)
    return raised.value.code, raised.value.message


def test_add_parameter_appends_a_checked_record(db):
    p = record(1, 2, 2, 8.0, 2200.0)
    db.add_parameter(p)
    assert db.statistics().parameter_count == 7
    assert db.find_by_material("Stainless steel") == [sample_records()[5], p]


@pytest.mark.parametrize("field, value, message", [
    ("kerf_width_mm", math.inf, "Parameter contains invalid float value (NaN or Inf)"),
    ("arc_voltage_v", math.nan, "Parameter contains invalid float value (NaN or Inf)"),
    ("thickness_mm", 0.0, "Material thickness must be positive"),
    ("cut_speed_mm_min", -1.0, "Cut speed must be positive"),
    ("current_amps", 0, "Process current must be non-zero"),
    ("vendor_id", 3, "Invalid vendor ID"),
    ("machine_model_id", 0, "Invalid machine model ID"),
    ("material_id", 9, "Invalid material ID"),
])
def test_add_and_update_refuse_each_bad_field(db, field, value, message):
    p = record(1, 1, 1, 5.0, 1000.0)
    setattr(p, field, value)
    assert refusal(db.add_parameter, p) == (E.INVALID_PARAMETER, message)
    assert refusal(db.update_parameter, 1, p) == (E.INVALID_PARAMETER, message)
    assert db.statistics().parameter_count == 6


def test_edits_without_a_database_are_not_loaded():
    db = sparlane.Database()
    p = record(1, 1, 1, 5.0, 1000.0)
    not_loaded = (E.NOT_LOADED, "Database not loaded")
    assert refusal(db.add_parameter, p) == not_loaded
    assert refusal(db.update_parameter, 0, p) == not_loaded
    assert refusal(db.delete_parameter, 0) == not_loaded
    assert refusal(db.add_machine, "V", "M") == not_loaded
    assert refusal(db.add_material, "Steel") == not_loaded


def test_update_replaces_the_record_at_a_position(db):
    db.update_parameter(1, record(1, 1, 1, 6.0, 3333.0))
    assert db.find_exact("Mild steel", 6.0, "AIR-45A").cut_speed_mm_min == 3333.0
    assert refusal(db.update_parameter, 6, record(1, 1, 1, 6.0, 1.0)) == (
        E.INVALID_PARAMETER, "Parameter ID out of range: 6")


def test_delete_moves_later_records_down(db):
    db.delete_parameter(1)
    assert db.find_by_material("Mild steel") == [sample_records()[i] for i in (0, 2, 3, 4)]
    assert refusal(db.delete_parameter, 4000000000) == (
        E.INVALID_PARAMETER, "Parameter ID out of range: 4000000000")


def test_positions_outside_32_bits_are_type_errors(db):
    with pytest.raises(TypeError):
        db.delete_parameter(-1)
    with pytest.raises(TypeError):
        db.delete_parameter(2 ** 32)


def test_add_machine_adds_its_vendor_once(db):
    db.add_machine("Air plasma", "AIR-85A", "ignored")
    db.add_machine("Water table", "WT-1")
    assert db.vendors() == ["Air plasma", "High definition", "Water table"]
    assert db.machines()[3:] == ["AIR-85A", "WT-1"]


def test_add_machine_refusals(db):
    assert refusal(db.add_machine, "Other", "AIR-45A") == (
        E.ALREADY_EXISTS, "Machine model already exists: AIR-45A")
    assert refusal(db.add_machine, "", "New") == (
        E.INVALID_PARAMETER, "Vendor and model names cannot be empty")
    assert refusal(db.add_machine, "V", "m" * 256) == (
        E.INVALID_PARAMETER, "Name exceeds maximum length")
    db.add_machine("V", "m" * 255)


def test_add_material_refusals(db):
    assert refusal(db.add_material, "Mild steel") == (
        E.ALREADY_EXISTS, "Material already exists: Mild steel")
    assert refusal(db.add_material, "") == (E.INVALID_PARAMETER, "Material name cannot be empty")
    assert refusal(db.add_material, "a" * 256) == (
        E.INVALID_PARAMETER, "Material name exceeds maximum length")
    db.add_material("mild steel")


def test_names_with_nul_and_undecodable_bytes_round_trip(db):
    db.add_material("Alu\0minium")
    db.add_material(b"Stahl \xff")
    names = db.materials()
    assert names[2] == "Alu\0minium"
    assert names[3].encode("utf-8", "surrogateescape") == b"Stahl \xff"
    db.add_parameter(record(1, 1, 4, 5.0, 4000.0))
    db.update_parameter(0, sample_records()[0])
    assert db.find_exact(names[3], 5.0, "AIR-45A").material_id == 4
    assert db.find_exact(b"Stahl \xff", 5.0, "AIR-45A").material_id == 4
    assert db.find_exact("Alu", 5.0, "AIR-45A") is None
