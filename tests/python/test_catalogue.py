"""Name tables, statistics and consumable sets."""

import sparlane


def test_name_tables_come_in_id_order(db):
    assert db.vendors() == ["Air plasma", "High definition"]
    assert db.machines() == ["AIR-45A", "AIR-65A", "HD-130"]
    assert db.materials() == ["Mild steel", "Stainless steel"]


def test_empty_tables_give_empty_lists():
    db = sparlane.Database()
    assert (db.vendors(), db.machines(), db.materials()) == ([], [], [])


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
