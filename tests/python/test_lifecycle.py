"""Database objects: create, close, the context manager and last_error."""

import sparlane


def test_new_database_is_not_loaded_and_has_no_message():
    db = sparlane.Database()
    assert not db.is_loaded()
    assert db.last_error() == ""
    assert repr(db) == "<sparlane.Database, not loaded>"


def test_create_makes_an_empty_loaded_database():
    db = sparlane.Database()
    assert db.create() is None
    assert db.is_loaded()
    assert db.statistics().parameter_count == 0
    assert db.vendors() == []
    assert repr(db) == "<sparlane.Database, 0 records>"


def test_create_drops_what_was_there(db):
    db.create()
    assert db.materials() == []


def test_close_marks_not_loaded_and_keeps_the_names(db):
    db.close()
    assert not db.is_loaded()
    assert db.materials() == ["Mild steel", "Stainless steel"]


def test_context_manager_closes_on_exit(sample_file):
    with sparlane.Database() as db:
        db.load(sample_file)
        assert db.is_loaded()
    assert not db.is_loaded()


def test_context_manager_closes_when_the_block_raises(sample_file):
    try:
        with sparlane.Database() as db:
            db.load(sample_file)
            raise KeyError("from the block")
    except KeyError:
        pass
    assert not db.is_loaded()


def test_success_does_not_clear_the_message(tmp_path):
    db = sparlane.Database()
    missing = tmp_path / "missing.slb"
    try:
        db.load(missing)
    except sparlane.Error:
        pass
    db.create()
    db.add_material("Mild steel")
    assert db.last_error() == f"Failed to open file: {missing}"


def test_version_is_the_library_version():
    major, minor, patch = (int(part) for part in sparlane.__version__.split("."))
    assert major >= 1 and minor >= 0 and patch >= 0


def test_flags_are_the_library_bits():
    assert sparlane.FLAG_DERIVED == 0x10
    assert sparlane.FLAG_SPEED_CAPPED == 0x20
    assert sparlane.FLAG_ANGLE_ADJUSTED == 0x80
