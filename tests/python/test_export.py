"""CSV and JSON exports."""

import json
import os

import pytest

import sparlane
from conftest import record

E = sparlane.ErrorCode
CSV_HEADER = ("vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
              "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
              "current_amps,flags")


def test_csv_has_a_header_and_one_line_per_record(db, tmp_path):
    db.export_csv(tmp_path / "out.csv")
    lines = (tmp_path / "out.csv").read_text().splitlines()
    assert lines[0] == CSV_HEADER
    assert len(lines) == 7
    assert lines[5].startswith("High definition,HD-130,Mild steel,12,1500,")


def test_json_is_a_document_with_every_name(db, tmp_path):
    db.export_json(str(tmp_path / "out.json"))
    text = (tmp_path / "out.json").read_text()
    json.loads(text)
    assert '"Stainless steel"' in text and '"HD-130"' in text


@pytest.mark.parametrize("export", ["export_csv", "export_json"])
def test_exports_without_a_database_are_not_loaded(tmp_path, export):
    with pytest.raises(sparlane.Error) as raised:
        getattr(sparlane.Database(), export)(tmp_path / "x")
    assert (raised.value.code, raised.value.message) == (E.NOT_LOADED, "Database not loaded")


@pytest.mark.parametrize("export", ["export_csv", "export_json"])
def test_exports_into_a_missing_folder_are_io_errors(db, tmp_path, export):
    path = tmp_path / "absent" / "x"
    with pytest.raises(sparlane.Error) as raised:
        getattr(db, export)(path)
    assert raised.value.code == E.IO_ERROR
    assert str(raised.value) == f"Failed to open file for writing: {path}"


@pytest.mark.skipif(not os.path.exists("/dev/full"), reason="needs /dev/full")
@pytest.mark.parametrize("export", ["export_csv", "export_json"])
def test_exports_to_a_full_device_are_write_errors(db, export):
    # Enough records that the writes pass any buffer and meet the full disk.
    for i in range(2000):
        db.add_parameter(record(1, 1, 1, 1.0 + i, 1000.0))
    with pytest.raises(sparlane.Error) as raised:
        getattr(db, export)("/dev/full")
    assert (raised.value.code, str(raised.value)) == (E.IO_ERROR, "Error writing to file")
