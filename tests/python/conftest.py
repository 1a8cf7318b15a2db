"""Shared fixtures of the Python package's tests.

The sample database: vendors "Air plasma" (1), "High definition" (2);
machines "AIR-45A" (1), "AIR-65A" (2), "HD-130" (3); materials
"Mild steel" (1), "Stainless steel" (2); records in this table order:

    0  Mild steel       AIR-45A   3 mm  5000 mm/min
    1  Mild steel       AIR-45A   6 mm  3000
    2  Mild steel       AIR-45A  10 mm  2000
    3  Mild steel       AIR-65A   6 mm  3500
    4  Mild steel       HD-130   12 mm  1500
    5  Stainless steel  AIR-45A   4 mm  2500
"""

import pytest

import sparlane


def record(vendor, machine, material, thickness, speed):
    return sparlane.CuttingParameter(
        vendor_id=vendor, machine_model_id=machine, material_id=material,
        thickness_mm=thickness, cut_speed_mm_min=speed, cut_height_mm=1.5,
        pierce_height_mm=3.5, transfer_height_mm=4.0, arc_voltage_v=120.0 + thickness,
        pierce_time_s=0.5, kerf_width_mm=1.5, current_amps=65)


SAMPLE_TABLE = [
    (1, 1, 1, 3.0, 5000.0),
    (1, 1, 1, 6.0, 3000.0),
    (1, 1, 1, 10.0, 2000.0),
    (1, 2, 1, 6.0, 3500.0),
    (2, 3, 1, 12.0, 1500.0),
    (1, 1, 2, 4.0, 2500.0),
]


def sample_records():
    return [record(*row) for row in SAMPLE_TABLE]


def make_sample():
    db = sparlane.Database()
    db.create()
    db.add_machine("Air plasma", "AIR-45A")
    db.add_machine("Air plasma", "AIR-65A")
    db.add_machine("High definition", "HD-130")
    db.add_material("Mild steel")
    db.add_material("Stainless steel")
    records = sample_records()
    for p in records:
        db.add_parameter(p)
    # Appends leave the record indexes alone; an update rebuilds them.
    db.update_parameter(0, records[0])
    return db


@pytest.fixture
def db():
    return make_sample()


@pytest.fixture
def sample_file(tmp_path):
    path = tmp_path / "sample.slb"
    make_sample().save(path)
    return path


@pytest.fixture
def loaded(sample_file):
    db = sparlane.Database()
    db.load(sample_file)
    return db
