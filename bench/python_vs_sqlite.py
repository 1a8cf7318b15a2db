"""Per-call cost from Python: sparlane's interpolate and find_exact against
the same questions answered through Python's sqlite3 module on an indexed
SQLite copy of the same table (the schema of docs/sqlite-schema.md, plus
indexes on the names and on material, machine, thickness).

The table is synthetic: MATERIALS x MACHINES pairs with THICKNESSES listed
thicknesses each, in file order.  SQLite runs in memory, so it never waits
for a disk.  Each question set is asked REPEAT times by each side in turn;
the best pass counts.

Prints microseconds per call and the ratio SQLite / sparlane (goal: >= 10).

Usage: PYTHONPATH=<build>/python /usr/bin/python3 bench/python_vs_sqlite.py
       [--materials 15] [--machines 40] [--thicknesses 16] [--calls 20000]
"""

import argparse
import gc
import random
import sqlite3
import time

import sparlane

SCHEMA = """
CREATE TABLE vendors   (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
CREATE TABLE machines  (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT NOT NULL);
CREATE TABLE parameters (
  vendor_id INTEGER NOT NULL, machine_model_id INTEGER NOT NULL,
  material_id INTEGER NOT NULL, thickness_mm REAL NOT NULL,
  cut_speed_mm_min REAL NOT NULL, cut_height_mm REAL NOT NULL,
  pierce_height_mm REAL NOT NULL, transfer_height_mm REAL NOT NULL,
  arc_voltage_v REAL NOT NULL, pierce_time_s REAL NOT NULL,
  kerf_width_mm REAL NOT NULL, current_amps INTEGER NOT NULL, flags INTEGER NOT NULL);
CREATE UNIQUE INDEX machines_by_name ON machines(name);
CREATE UNIQUE INDEX materials_by_name ON materials(name);
CREATE INDEX parameters_by_pair ON parameters(material_id, machine_model_id, thickness_mm);
"""

COLUMNS = ("vendor_id, machine_model_id, material_id, thickness_mm, cut_speed_mm_min, "
           "cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v, "
           "pierce_time_s, kerf_width_mm, current_amps, flags")

PAIR = ("FROM parameters p JOIN materials m ON m.id = p.material_id "
        "JOIN machines k ON k.id = p.machine_model_id WHERE m.name = ? AND k.name = ? ")
FIND_EXACT = f"SELECT {COLUMNS} {PAIR} AND p.thickness_mm BETWEEN ? AND ? LIMIT 1"
AT_OR_BELOW = (f"SELECT {COLUMNS} {PAIR} AND p.thickness_mm <= ? "
               "ORDER BY p.thickness_mm DESC LIMIT 1")
AT_OR_ABOVE = f"SELECT {COLUMNS} {PAIR} AND p.thickness_mm >= ? ORDER BY p.thickness_mm LIMIT 1"

FLOATS = range(3, 11)  # thickness .. kerf in a row


def vendor_of(machine, machines):
    """Machines take turns among up to five vendors, so vendor ids appear in
    order 1, 2, ... as the machines are added."""
    return 1 + (machine - 1) % min(5, machines)


def build_rows(materials, machines, thicknesses):
    rows = []
    for material in range(1, materials + 1):
        for machine in range(1, machines + 1):
            for k in range(thicknesses):
                t = 0.5 + 1.5 * k
                rows.append((vendor_of(machine, machines), machine, material, t, 9000.0 / (1.0 + t),
                             1.5, 3.0 + 0.05 * t, 4.0, 110.0 + 2.0 * t, 0.1 * t,
                             1.2 + 0.03 * t, 30 + 5 * k, 0))
    return rows


def build_sparlane(names, rows):
    db = sparlane.Database()
    db.create()
    for vendor, machine in names["machines"]:
        db.add_machine(vendor, machine)
    for material in names["materials"]:
        db.add_material(material)
    fields = COLUMNS.split(", ")
    for row in rows:
        db.add_parameter(sparlane.CuttingParameter(**dict(zip(fields, row))))
    db.update_parameter(0, db.find_by_material(names["materials"][0])[0])  # rebuilds indexes
    return db


def build_sqlite(names, rows):
    sql = sqlite3.connect(":memory:")
    sql.executescript(SCHEMA)
    vendors = dict.fromkeys(v for v, _ in names["machines"])  # in order of first use
    sql.executemany("INSERT INTO vendors VALUES (?, ?)", enumerate(vendors, 1))
    sql.executemany("INSERT INTO machines VALUES (?, ?)",
                    ((i, m) for i, (_, m) in enumerate(names["machines"], 1)))
    sql.executemany("INSERT INTO materials VALUES (?, ?)", enumerate(names["materials"], 1))
    sql.executemany(f"INSERT INTO parameters ({COLUMNS}) VALUES ({', '.join('?' * 13)})", rows)
    sql.execute("ANALYZE")
    return sql


def sql_find_exact(sql, material, thickness, machine, tolerance=0.001):
    return sql.execute(FIND_EXACT, (material, machine, thickness - tolerance,
                                    thickness + tolerance)).fetchone()


def sql_interpolate(sql, material, thickness, machine):
    """Linear between the bracketing rows, as an application would do it."""
    lower = sql.execute(AT_OR_BELOW, (material, machine, thickness)).fetchone()
    upper = sql.execute(AT_OR_ABOVE, (material, machine, thickness)).fetchone()
    if lower is None or upper is None:
        return None
    span = upper[3] - lower[3]
    f = 0.0 if span == 0 else (thickness - lower[3]) / span
    row = list(lower)
    for i in FLOATS:
        row[i] = lower[i] + (upper[i] - lower[i]) * f
    row[3] = thickness
    row[11] = round(lower[11] + (upper[11] - lower[11]) * f)
    return row


def one_pass(call, questions):
    start = time.perf_counter()
    for q in questions:
        call(*q)
    return (time.perf_counter() - start) / len(questions) * 1e6


def best_passes(calls, questions, repeat):
    """Best microseconds per call of each, passes taken in turns so that a
    busy moment of the machine hits both alike; no garbage collection
    meanwhile, as in timeit."""
    best = [float("inf")] * len(calls)
    gc.collect()
    gc.disable()
    try:
        for _ in range(repeat):
            for i, call in enumerate(calls):
                best[i] = min(best[i], one_pass(call, questions))
    finally:
        gc.enable()
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--materials", type=int, default=15)
    parser.add_argument("--machines", type=int, default=40)
    parser.add_argument("--thicknesses", type=int, default=16)
    parser.add_argument("--calls", type=int, default=20000)
    parser.add_argument("--repeat", type=int, default=7)
    args = parser.parse_args()

    names = {
        "materials": [f"Material {i:02d}" for i in range(1, args.materials + 1)],
        "machines": [(f"Vendor {vendor_of(m, args.machines)}", f"MODEL-{m:03d}")
                     for m in range(1, args.machines + 1)],
    }
    rows = build_rows(args.materials, args.machines, args.thicknesses)
    db = build_sparlane(names, rows)
    sql = build_sqlite(names, rows)

    rng = random.Random(7)
    exact, between = [], []
    for _ in range(args.calls):
        material = rng.choice(names["materials"])
        machine = rng.choice(names["machines"])[1]
        k = rng.randrange(args.thicknesses - 1)
        exact.append((material, 0.5 + 1.5 * k, machine))
        between.append((material, 0.5 + 1.5 * k + 0.75, machine))

    # Both sides answer the same questions alike before they are timed.
    for material, t, machine in exact[:200]:
        ours = db.find_exact(material, t, machine)
        theirs = sql_find_exact(sql, material, t, machine)
        assert ours is not None and theirs is not None
        assert abs(ours.cut_speed_mm_min - theirs[4]) <= 1e-3 * theirs[4]
    for material, t, machine in between[:200]:
        ours = db.interpolate(material, t, machine)
        theirs = sql_interpolate(sql, material, t, machine)
        assert ours.confidence > 0 and theirs is not None
        assert abs(ours.parameter.cut_speed_mm_min - theirs[4]) <= 1e-3 * theirs[4]

    print(f"{len(rows)} records ({args.materials} materials x {args.machines} machines x "
          f"{args.thicknesses} thicknesses), {args.calls} calls per pass, best of {args.repeat}")
    print("microseconds per call from Python; ratio = sqlite3 / sparlane (goal >= 10)")
    for name, ours, theirs, questions in (
            ("find_exact", db.find_exact, lambda *q: sql_find_exact(sql, *q), exact),
            ("interpolate", db.interpolate, lambda *q: sql_interpolate(sql, *q), between)):
        ours_us, theirs_us = best_passes((ours, theirs), questions, args.repeat)
        print(f"ratio {name:<12} {theirs_us / ours_us:6.1f}x  "
              f"(sparlane {ours_us:.2f} us, sqlite3 {theirs_us:.2f} us)")


if __name__ == "__main__":
    main()
