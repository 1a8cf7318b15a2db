// Uses the installed header and shared library the way a host would.
#include <cstdio>

#include <sparlane/sparlane.h>

int main() {
  Sparlane::Database db;
  if (db.IsLoaded() || db.Create() != Sparlane::ErrorCode::Success || !db.IsLoaded()) {
    std::fprintf(stderr, "Create did not give a loaded database\n");
    return 1;
  }
  Sparlane::CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = 6.0f;
  p.cut_speed_mm_min = 3400.0f;
  p.current_amps = 65;
  if (db.AddMachine("Vendor", "Model", "") != Sparlane::ErrorCode::Success ||
      db.AddMaterial("Steel") != Sparlane::ErrorCode::Success ||
      db.AddParameter(p) != Sparlane::ErrorCode::Success) {
    std::fprintf(stderr, "editing failed: %s\n", db.GetLastError().c_str());
    return 1;
  }
  const Sparlane::DatabaseStats stats = db.GetStatistics();
  if (stats.parameter_count != 1 || stats.vendor_count != 1 || stats.machine_count != 1 ||
      stats.material_count != 1) {
    std::fprintf(stderr, "unexpected statistics\n");
    return 1;
  }
  std::printf("sparlane %d.%d.%d: %u record\n", SPARLANE_VERSION_MAJOR, SPARLANE_VERSION_MINOR,
              SPARLANE_VERSION_PATCH, stats.parameter_count);
  return 0;
}
