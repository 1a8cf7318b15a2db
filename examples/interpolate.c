/* Loads a parameter file and asks it for mild steel 8 mm on AIR-45A. */
#include <stdio.h>
#include <sparlane/c.h>

int main(int argc, char** argv) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_interpolation_t r;
  if (sparlane_db_load(db, argc > 1 ? argv[1] : "sample.slb") != SPARLANE_SUCCESS) {
    fprintf(stderr, "%s\n", sparlane_db_last_error(db));
    sparlane_db_destroy(db);
    return 1;
  }
  if (sparlane_db_interpolate(db, "Mild steel", 8.0f, "AIR-45A", &r))
    printf("%.0f mm/min at %u A, cut height %.2f mm, confidence %.2f\n",
           r.parameter.cut_speed_mm_min, r.parameter.current_amps,
           r.parameter.cut_height_mm, r.confidence);
  sparlane_db_destroy(db);
  return 0;
}
