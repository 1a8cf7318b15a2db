/* A C program outside the sparlane tree, built against an installed copy
 * with the C compiler and -lsparlane alone. */
#include <stdio.h>
#include <string.h>

#include <sparlane/c.h>

int main(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_t p;
  sparlane_database_stats_t stats;
  int ok;
  if (db == NULL) return 1;
  if (sparlane_version_number() != SPARLANE_VERSION_NUMBER) {
    fprintf(stderr, "header %d, library %d\n", SPARLANE_VERSION_NUMBER, sparlane_version_number());
    return 1;
  }
  memset(&p, 0, sizeof p);
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = 6.0f;
  p.cut_speed_mm_min = 3400.0f;
  p.current_amps = 65;
  ok = sparlane_db_create_empty(db) == SPARLANE_SUCCESS &&
       sparlane_db_add_machine(db, "Vendor", "Model", NULL) == SPARLANE_SUCCESS &&
       sparlane_db_add_material(db, "Steel") == SPARLANE_SUCCESS &&
       sparlane_db_add_parameter(db, &p) == SPARLANE_SUCCESS &&
       sparlane_db_statistics(db, &stats) == SPARLANE_SUCCESS && stats.parameter_count == 1;
  if (!ok) {
    fprintf(stderr, "C interface failed: %s\n", sparlane_db_last_error(db));
    sparlane_db_destroy(db);
    return 1;
  }
  printf("sparlane %s through the C interface: %u record\n", sparlane_version(),
         stats.parameter_count);
  sparlane_db_destroy(db);
  return 0;
}
