"""Loading, saving and importing: every code each can raise, with the
library's message."""

import os
import pathlib
import sqlite3
import struct

import pytest

import sparlane
from conftest import make_sample, sample_records

E = sparlane.ErrorCode
READ_FAILURE = "Failed to read binary format"


def load_error(path):
    db = sparlane.Database()
    with pytest.raises(sparlane.Error) as raised:
        db.load(path)
    assert not db.is_loaded()
    return raised.value


def changed_sample(tmp_path, name, compression, change):
    path = tmp_path / name
    make_sample().save(path, compression)
    data = bytearray(path.read_bytes())
    path.write_bytes(bytes(change(data)))
    return path


def data_offset(data):
    return struct.unpack_from("<Q", data, 104)[0]


@pytest.mark.parametrize("compression", [sparlane.Compression.NONE, sparlane.Compression.LZ4])
def test_saved_file_loads_back_record_for_record(tmp_path, compression):
    path = tmp_path / "saved.slb"
    make_sample().save(path, compression)
    assert not (tmp_path / "saved.slb.tmp").exists()
    db = sparlane.Database()
    db.load(path)
    assert db.find_by_material("Mild steel") == sample_records()[:5]
    db.validate()


def test_save_compresses_with_lz4_by_default(tmp_path):
    make_sample().save(tmp_path / "default.slb")
    make_sample().save(tmp_path / "lz4.slb", sparlane.Compression.LZ4)
    assert (tmp_path / "default.slb").read_bytes()[112] == 1
    assert (tmp_path / "lz4.slb").read_bytes()[112] == 1


def test_paths_may_be_str_bytes_or_pathlike(tmp_path):
    db = make_sample()
    db.save(str(tmp_path / "a.slb"))
    db.save(os.fsencode(tmp_path / "b.slb"))
    db.save(pathlib.PurePosixPath(tmp_path / "c.slb"))
    for name in ("a.slb", "b.slb", "c.slb"):
        sparlane.Database().load(tmp_path / name)


def test_paths_of_other_types_are_type_errors():
    with pytest.raises(TypeError):
        sparlane.Database().load(42)


def test_non_ascii_path_round_trips(tmp_path):
    path = tmp_path / "Schnittdaten-äöü" / "Таб-日本.slb"
    path.parent.mkdir()
    make_sample().save(path)
    db = sparlane.Database()
    db.load(path)
    assert db.statistics().parameter_count == 6


def test_save_with_unknown_compression_is_invalid_parameter(tmp_path):
    path = tmp_path / "bad.slb"
    with pytest.raises(sparlane.Error) as raised:
        make_sample().save(path, 7)
    assert raised.value.code == E.INVALID_PARAMETER
    assert str(raised.value) == f"Failed to write binary format to: {path}"
    assert not path.exists()


def test_save_without_a_database_is_not_loaded(tmp_path):
    with pytest.raises(sparlane.Error) as raised:
        sparlane.Database().save(tmp_path / "x.slb")
    assert raised.value.code == E.NOT_LOADED
    assert raised.value.message == "Database not loaded"


def test_save_into_a_missing_folder_is_io_error(tmp_path):
    path = tmp_path / "absent" / "x.slb"
    with pytest.raises(sparlane.Error) as raised:
        make_sample().save(path)
    assert raised.value.code == E.IO_ERROR
    assert str(raised.value) == f"Failed to write binary format to: {path}"


def test_missing_file_is_file_not_found(tmp_path):
    error = load_error(tmp_path / "missing.slb")
    assert error.code == E.FILE_NOT_FOUND
    assert str(error) == f"Failed to open file: {tmp_path / 'missing.slb'}"


def test_folder_is_access_denied(tmp_path):
    error = load_error(tmp_path)
    assert error.code == E.ACCESS_DENIED
    assert str(error) == f"Failed to open file: {tmp_path}"


def test_overlong_file_name_is_io_error(tmp_path):
    error = load_error(tmp_path / ("n" * 300))
    assert error.code == E.IO_ERROR


def test_short_file_is_corrupted(tmp_path):
    path = tmp_path / "short.slb"
    path.write_bytes(bytes(1023))
    error = load_error(path)
    assert error.code == E.CORRUPTED_FILE
    assert str(error) == f"Failed to open file: {path}"


def test_zero_file_is_invalid_magic(tmp_path):
    path = tmp_path / "zeros.slb"
    path.write_bytes(bytes(2048))
    error = load_error(path)
    assert (error.code, error.message) == (E.INVALID_MAGIC, READ_FAILURE)


def test_version_two_is_unsupported(tmp_path):
    def version_two(data):
        struct.pack_into("<H", data, 4, 2)
        return data
    error = load_error(changed_sample(tmp_path, "v2.slb", sparlane.Compression.LZ4, version_two))
    assert (error.code, error.message) == (E.UNSUPPORTED_VERSION, READ_FAILURE)


def test_header_changed_after_saving_is_corrupted(tmp_path):
    def change_creator(data):
        data[150] ^= 0x20
        return data
    path = changed_sample(tmp_path, "crc.slb", sparlane.Compression.NONE, change_creator)
    error = load_error(path)
    assert (error.code, error.message) == (E.CORRUPTED_FILE, READ_FAILURE)


def test_short_record_data_is_invalid_data(tmp_path):
    path = changed_sample(tmp_path, "cut.slb", sparlane.Compression.NONE, lambda d: d[:-1])
    error = load_error(path)
    assert (error.code, error.message) == (E.INVALID_DATA, READ_FAILURE)


def test_short_block_head_is_invalid_parameter(tmp_path):
    path = changed_sample(tmp_path, "head.slb", sparlane.Compression.LZ4,
                          lambda d: d[:data_offset(d) + 7])
    error = load_error(path)
    assert (error.code, error.message) == (E.INVALID_PARAMETER, READ_FAILURE)


def test_broken_lz4_block_is_decompression_failed(tmp_path):
    def bad_block(data):
        # A match offset of zero is invalid LZ4: token 0x10, literal 'A', offset 0.
        bad = bytes([0x10, ord("A"), 0, 0, 0, 0, 0, 0])
        at = data_offset(data)
        return data[:at] + struct.pack("<II", 64 * 6, len(bad)) + bad
    error = load_error(changed_sample(tmp_path, "lz4.slb", sparlane.Compression.LZ4, bad_block))
    assert (error.code, error.message) == (E.DECOMPRESSION_FAILED, READ_FAILURE)


def test_failed_load_leaves_the_database_not_loaded(db, tmp_path):
    with pytest.raises(sparlane.Error):
        db.load(tmp_path / "missing.slb")
    assert not db.is_loaded()


def make_sqlite(path):
    with sqlite3.connect(path) as sql:
        sql.executescript("""
            CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
            CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
            CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
            CREATE TABLE parameters (vendor_id INTEGER, machine_model_id INTEGER,
              material_id INTEGER, thickness_mm REAL, cut_speed_mm_min REAL,
              cut_height_mm REAL, pierce_height_mm REAL, transfer_height_mm REAL,
              arc_voltage_v REAL, pierce_time_s REAL, kerf_width_mm REAL,
              current_amps INTEGER, flags INTEGER);
            INSERT INTO vendors VALUES (1, 'Air plasma');
            INSERT INTO machines VALUES (1, 'AIR-45A');
            INSERT INTO materials VALUES (1, 'Mild steel');
            INSERT INTO parameters
              VALUES (1, 1, 1, 6.35, 1651, 1.5, 3.8, 3.8, 128, 0.5, 1.5, 45, 0);
        """)
    sql.close()


def test_sqlite_import_imports_or_is_refused_with_the_rebuild_message(db, tmp_path):
    path = tmp_path / "import.db"
    make_sqlite(path)
    try:
        db.import_sqlite(path)
    except sparlane.Error as refusal:
        # A library built without SQLite: the store is left as it was.
        assert refusal.code == E.NOT_LOADED
        assert str(refusal) == "SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON"
        assert db.is_loaded()
        assert db.statistics().parameter_count == 6
        return
    assert db.is_loaded()
    found = db.find_exact("Mild steel", 6.35, "AIR-45A")
    assert found is not None and found.current_amps == 45
    with pytest.raises(sparlane.Error) as raised:
        db.import_sqlite(tmp_path / "missing.db")
    assert raised.value.code == E.FILE_NOT_FOUND
