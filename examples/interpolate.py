"""Loads a parameter file and asks it for mild steel 8 mm on AIR-45A."""
import sys

import sparlane

with sparlane.Database() as db:
    db.load(sys.argv[1] if len(sys.argv) > 1 else "sample.slb")
    r = db.interpolate("Mild steel", 8.0, "AIR-45A")
    p = r.parameter
    print(f"{p.cut_speed_mm_min:.0f} mm/min at {p.current_amps} A, "
          f"cut height {p.cut_height_mm:.2f} mm, confidence {r.confidence:.2f}")
