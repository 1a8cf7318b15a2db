"""The record classes: keyword construction, ==, repr, to_dict, pickling
and the checks on what a field can hold."""

import copy
import math
import pickle

import pytest

import sparlane
from conftest import record


def test_fields_left_out_are_zero():
    p = sparlane.CuttingParameter(thickness_mm=6.35)
    assert p.thickness_mm == 6.35
    assert p.vendor_id == 0 and p.cut_speed_mm_min == 0.0 and p.flags == 0
    assert p.reserved_42 == bytes(6) and p.reserved_52 == bytes(12)


def test_unknown_keyword_is_a_type_error():
    with pytest.raises(TypeError, match="unexpected keyword argument 'speed'"):
        sparlane.CuttingParameter(speed=1.0)


def test_floats_read_back_as_the_shortest_decimal_of_their_single_value():
    p = sparlane.CuttingParameter(thickness_mm=6.35, cut_speed_mm_min=1 / 3)
    assert p.thickness_mm == 6.35
    assert p.cut_speed_mm_min == 0.33333334
    p.arc_voltage_v = math.nan
    assert math.isnan(p.arc_voltage_v)
    p.kerf_width_mm = -math.inf
    assert p.kerf_width_mm == -math.inf


def test_values_that_do_not_fit_are_refused():
    p = sparlane.CuttingParameter()
    with pytest.raises(ValueError, match="current_amps must be between 0 and 65535"):
        p.current_amps = 65536
    with pytest.raises(ValueError):
        p.vendor_id = -1
    with pytest.raises(TypeError, match="flags must be an integer"):
        p.flags = 1.5
    with pytest.raises(TypeError, match="thickness_mm must be a number"):
        p.thickness_mm = "6"
    with pytest.raises(OverflowError):
        p.thickness_mm = 1e39
    with pytest.raises(ValueError, match="reserved_42 must be bytes of length 6"):
        p.reserved_42 = b"\1"
    p.flags = 0xFFFFFFFF
    p.reserved_42 = b"abcdef"
    assert (p.flags, p.reserved_42) == (0xFFFFFFFF, b"abcdef")


def test_equality_compares_every_field():
    a = record(1, 1, 1, 6.0, 3000.0)
    b = record(1, 1, 1, 6.0, 3000.0)
    assert a == b and not a != b
    b.reserved_52 = b"x" * 12
    assert a != b
    assert a != "a record"
    nan = sparlane.CuttingParameter(arc_voltage_v=math.nan)
    assert nan != sparlane.CuttingParameter(arc_voltage_v=math.nan)


def test_records_are_mutable_so_unhashable():
    with pytest.raises(TypeError):
        hash(sparlane.CuttingParameter())


def test_repr_names_each_field_and_leaves_out_zero_reserved_bytes():
    p = sparlane.CuttingParameter(vendor_id=2, thickness_mm=8.0, cut_speed_mm_min=1021.2,
                                  current_amps=45, flags=16)
    text = repr(p)
    assert text.startswith("CuttingParameter(vendor_id=2, machine_model_id=0,")
    assert "thickness_mm=8.0, cut_speed_mm_min=1021.2," in text
    assert "current_amps=45, flags=16)" in text
    assert "reserved" not in text
    p.reserved_52 = b"\1" + bytes(11)
    assert "reserved_52=b'\\x01" in repr(p)
    assert eval(repr(p), {"CuttingParameter": sparlane.CuttingParameter}) == p


def test_to_dict_gives_every_field_and_rebuilds_the_record():
    p = record(1, 2, 1, 6.0, 3500.0)
    d = p.to_dict()
    assert list(d)[:4] == ["vendor_id", "machine_model_id", "material_id", "aux_id"]
    assert d["cut_speed_mm_min"] == 3500.0 and d["machine_model_id"] == 2
    assert sparlane.CuttingParameter(**d) == p


def test_nested_record_in_to_dict_is_a_dict(db):
    d = db.interpolate("Mild steel", 8.0, "AIR-45A").to_dict()
    assert d["parameter"]["thickness_mm"] == 8.0
    assert d["extrapolated"] is False


def test_records_pickle_and_copy():
    p = record(1, 2, 1, 6.0, 3500.0)
    assert pickle.loads(pickle.dumps(p)) == p
    c = copy.deepcopy(p)
    c.flags = 1
    assert p.flags == 0
    r = sparlane.InterpolationResult(parameter=p, confidence=0.5)
    assert pickle.loads(pickle.dumps(r)) == r


def test_classes_are_shown_under_the_package_name():
    assert sparlane.CuttingParameter.__module__ == "sparlane"
    assert sparlane.Database.__module__ == "sparlane"
    assert sparlane.ErrorCode.__module__ == "sparlane"


def test_text_fields_are_str_within_their_size():
    s = sparlane.ConsumableSet(set_id=3, description="Nozzle 45 A", nozzle_part="220941")
    assert (s.description, s.nozzle_part, s.shield_part) == ("Nozzle 45 A", "220941", "")
    with pytest.raises(ValueError, match="nozzle_part holds at most 16 bytes"):
        s.nozzle_part = "x" * 17


def test_error_carries_code_and_message_and_pickles():
    e = sparlane.Error(sparlane.ErrorCode.IO_ERROR, "Error writing to file")
    assert (e.code, e.message, str(e)) == (sparlane.ErrorCode.IO_ERROR, "Error writing to file",
                                           "Error writing to file")
    again = pickle.loads(pickle.dumps(e))
    assert (again.code, str(again)) == (e.code, str(e))
    assert issubclass(sparlane.Error, Exception)


def test_enums_are_int_enums_with_the_library_values():
    assert sparlane.ErrorCode(12) is sparlane.ErrorCode.IO_ERROR
    assert [c.value for c in sparlane.ErrorCode] == [0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13,
                                                      14, 15, 16]
    assert int(sparlane.Compression.LZ4) == 1
    assert sparlane.QualityLevel.PRECISION == 3
