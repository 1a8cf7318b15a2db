"""sparlane.testing: the primitives behind the database."""

import math
import zlib

import pytest

import sparlane
from sparlane import testing
from conftest import record, make_sample

E = sparlane.ErrorCode


@pytest.fixture
def header(tmp_path):
    path = tmp_path / "h.slb"
    make_sample().save(path)
    return sparlane.FileHeader.from_bytes(path.read_bytes())


def reseal(header):
    header.header_crc32 = 0
    header.header_crc32 = zlib.crc32(header.to_bytes())
    return header


def test_header_fields_read_from_a_saved_file(header):
    assert header.magic == 0x4E4C5053
    assert (header.version_major, header.parameter_count) == (1, 6)
    assert header.vendor_table_offset == 1024
    assert header.creator.startswith("slb-tool")
    assert len(header.to_bytes()) == 1024


def test_header_test_results(header):
    # The writer's checksum skips bytes 128-143; the stand-alone test covers them.
    assert testing.validate_header(header) == E.CHECKSUM_MISMATCH
    header.header_crc32 = 0
    assert testing.validate_header(header) is E.SUCCESS
    assert testing.validate_header(reseal(header)) == E.SUCCESS
    assert testing.validate_header(header.to_bytes()) == E.SUCCESS
    header.aux_offset_1 = 5
    assert testing.validate_header(reseal(header)) == E.INVALID_PARAMETER
    header.magic = 0x12345678
    assert testing.validate_header(header) == E.INVALID_MAGIC
    header.magic, header.version_major = 0x4E4C5053, 2
    assert testing.validate_header(header) == E.UNSUPPORTED_VERSION


def test_header_of_the_wrong_size_is_refused():
    with pytest.raises(ValueError):
        testing.validate_header(b"SPLN")
    with pytest.raises(ValueError):
        sparlane.FileHeader.from_bytes(bytes(100))


def test_crc32_is_the_zip_checksum():
    assert testing.calculate_crc32(b"123456789") == 0xCBF43926
    assert testing.calculate_crc32(bytearray(b"abc")) == zlib.crc32(b"abc")
    assert testing.calculate_crc32(memoryview(b"xyz")) == zlib.crc32(b"xyz")
    assert testing.calculate_crc32(b"") == 0


def test_sanitize_path_drops_parent_references_and_nul_bytes():
    assert testing.sanitize_path("data/../cut.slb") == "data//cut.slb"
    assert testing.sanitize_path("a\0..b") == "ab"
    assert testing.sanitize_path(b"a/../b\xff") == b"a//b\xff"
    assert len(testing.sanitize_path("p" * 5000)) == 4096


def test_interpolate_linear_between_two_records():
    lower, upper = record(1, 1, 1, 6.0, 3000.0), record(1, 1, 1, 10.0, 2000.0)
    upper.current_amps = 70
    out = testing.interpolate_linear(lower, upper, 8.0)
    assert (out.thickness_mm, out.cut_speed_mm_min, out.current_amps) == (8.0, 2500.0, 68)
    assert out.flags == sparlane.FLAG_DERIVED


def test_perform_interpolation_from_one_or_two_neighbours():
    lower, upper = record(1, 1, 1, 6.0, 3000.0), record(1, 1, 1, 10.0, 2000.0)
    r = testing.perform_interpolation(lower, upper, 7.0)
    assert r.confidence == pytest.approx(0.95) and not r.extrapolated
    assert r.parameter.cut_speed_mm_min == 2750.0
    r = testing.perform_interpolation(None, upper, 12.0)
    assert r.extrapolated and r.confidence == pytest.approx(0.5)
    assert testing.perform_interpolation(lower, None, 6.0).confidence == pytest.approx(0.7)
    nothing = testing.perform_interpolation(None, None, 6.0)
    assert nothing.confidence == 0.0 and not nothing.extrapolated


def test_extrapolate_conservatively_both_ways():
    source = record(1, 1, 1, 10.0, 2000.0)
    thicker = testing.extrapolate_conservative(source, 40.0)
    assert (thicker.cut_speed_mm_min, thicker.pierce_time_s) == (1000.0, 1.0)
    assert thicker.pierce_height_mm == pytest.approx(3.85, rel=1e-6)
    thinner = testing.extrapolate_conservative(source, 5.0)
    assert thinner.cut_speed_mm_min == pytest.approx(2000.0 * 2 ** 0.7, rel=1e-6)
    assert thinner.flags == sparlane.FLAG_DERIVED


def test_torch_angle_adjustment():
    base = record(1, 1, 1, 10.0, 2000.0)
    assert testing.adjust_for_torch_angle(base, 0.0) == base
    tilted = testing.adjust_for_torch_angle(base, 60.0)
    assert tilted.thickness_mm == pytest.approx(20.0, rel=1e-6)
    assert tilted.cut_speed_mm_min == pytest.approx(2000.0 * math.sqrt(0.5), rel=1e-6)
    assert tilted.flags == sparlane.FLAG_ANGLE_ADJUSTED


def test_validate_parameter_checks_physical_ranges():
    p = record(1, 1, 1, 10.0, 2000.0)
    assert testing.validate_parameter(p) is E.SUCCESS
    p.cut_height_mm = 5.0  # above the pierce height
    assert testing.validate_parameter(p) == E.INVALID_PARAMETER
    assert testing.validate_parameter(record(1, 1, 1, 400.0, 2000.0)) == E.INVALID_PARAMETER


def test_statistical_outlier():
    sample = [10.0, 11.0, 9.0, 10.0, 10.0]
    assert testing.is_statistical_outlier(20.0, sample, 2.0) is True
    assert testing.is_statistical_outlier(10.5, sample, 2.0) is False
    assert testing.is_statistical_outlier(20.0, iter(sample[:2]), 2.0) is False
    assert testing.is_statistical_outlier(20.0, (x for x in sample), 2.0) is True
