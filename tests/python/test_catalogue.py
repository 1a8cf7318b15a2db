"""Name tables and ids, the record table, the header, statistics and
consumable sets."""

import pytest

import sparlane
from conftest import record, sample_records


def test_name_tables_come_in_id_order(db):
    assert db.vendors() == ["Air plasma", "High definition"]
    assert db.machines() == ["AIR-45A", "AIR-65A", "HD-130"]
    assert db.materials() == ["Mild steel", "Stainless steel"]


def test_empty_tables_give_empty_lists():
    db = sparlane.Database()
    assert (db.vendors(), db.machines(), db.materials()) == ([], [], [])


def test_name_ids_are_the_table_positions(db):
    assert [db.vendor_id(n) for n in ("Air plasma", "High definition")] == [1, 2]
    assert [db.machine_id(n) for n in ("AIR-45A", "AIR-65A", "HD-130")] == [1, 2, 3]
    assert [db.material_id(n) for n in ("Mild steel", "Stainless steel")] == [1, 2]
    assert db.material_id(b"Stainless steel") == 2


def test_unknown_names_have_id_zero(db):
    assert db.material_id("mild steel") == 0
    assert db.material_id("Mild steel ") == 0
    assert db.machine_id("Air plasma") == 0
    assert db.vendor_id("AIR-45A") == 0
    assert db.vendor_id("") == 0
    assert sparlane.Database().material_id("Mild steel") == 0


def test_name_ids_stay_readable_after_close(db):
    db.close()
    assert db.machine_id("AIR-65A") == 2


def test_name_ids_of_names_with_nul_and_undecodable_bytes(db):
    db.add_material("Alu\0minium")
    db.add_material(b"Kupfer \xff")
    assert db.material_id("Alu\0minium") == 3
    assert db.material_id("Alu") == 0
    assert db.material_id(b"Kupfer \xff") == 4
    assert db.material_id("Kupfer \udcff") == 4


def test_name_ids_take_only_names(db):
    with pytest.raises(TypeError):
        db.vendor_id(1)
    with pytest.raises(TypeError):
        db.material_id(None)


def test_parameters_copy_the_whole_table_in_table_order(db):
    assert db.parameters() == sample_records()
    appended = record(1, 3, 2, 2.0, 6000.0)
    db.add_parameter(appended)
    assert db.parameters() == sample_records() + [appended]
    db.delete_parameter(0)
    assert db.parameters() == sample_records()[1:] + [appended]


def test_parameters_are_copies(db):
    first = db.parameters()[0]
    first.cut_speed_mm_min = 1.0
    assert db.parameters()[0] == sample_records()[0]


def test_parameters_of_nothing_are_an_empty_list():
    assert sparlane.Database().parameters() == []


def test_file_header_is_all_zero_before_create_or_load():
    assert sparlane.Database().file_header() == sparlane.FileHeader()


def test_file_header_of_a_created_database_is_fresh(db):
    h = db.file_header()
    assert isinstance(h, sparlane.FileHeader)
    assert (h.magic, h.version_major, h.version_minor) == (0x4E4C5053, 1, 0)
    assert h.created_time > 0
    assert (h.vendor_table_offset, h.parameter_data_offset) == (0, 0)


def test_file_header_of_a_loaded_file_is_the_files_header(loaded, sample_file):
    h = loaded.file_header()
    assert h.to_bytes() == sample_file.read_bytes()[:1024]
    assert h.parameter_count == 6
    assert h.compression == sparlane.Compression.LZ4


def test_statistics_count_the_tables(db):
    s = db.statistics()
    assert (s.parameter_count, s.vendor_count, s.machine_count, s.material_count) == (6, 2, 3, 2)
    assert s.consumable_set_count == 0 and s.file_size_bytes == 0
    db.close()
    assert db.statistics() == sparlane.DatabaseStats()


def test_statistics_of_a_loaded_file_give_its_size(loaded, sample_file):
    assert loaded.statistics().file_size_bytes == sample_file.stat().st_size


def test_unknown_consumable_set_is_none(db):
    assert db.consumable_set(1) is None
    assert sparlane.Database().consumable_set(7) is None
