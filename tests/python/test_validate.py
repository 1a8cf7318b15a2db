"""Whole-database validation."""

import pytest

import sparlane
from conftest import record

E = sparlane.ErrorCode


def test_loaded_file_validates(loaded):
    assert loaded.validate() is None


def test_nothing_loaded_is_not_loaded():
    with pytest.raises(sparlane.Error) as raised:
        sparlane.Database().validate()
    assert (raised.value.code, raised.value.message) == (E.NOT_LOADED, "Database not loaded")


def test_appended_record_is_a_count_mismatch(loaded):
    loaded.add_parameter(record(1, 1, 1, 20.0, 900.0))
    with pytest.raises(sparlane.Error) as raised:
        loaded.validate()
    assert raised.value.code == E.INVALID_DATA
    assert str(raised.value) == "Parameter count mismatch: header says 6, actual is 7"


def test_deletion_after_loading_breaks_the_header_checksum(loaded):
    loaded.delete_parameter(5)
    with pytest.raises(sparlane.Error) as raised:
        loaded.validate()
    assert raised.value.code == E.CHECKSUM_MISMATCH
    assert str(raised.value) == "Header checksum mismatch"
