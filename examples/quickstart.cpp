// A first tour of sparlane: build a small cut chart in memory, list what it
// holds and ask it for the settings of a thickness it does not list.
#include <cstdio>
#include <string>
#include <vector>

#include <sparlane/sparlane.h>

namespace {

// A record of mild steel on the first machine; ids are 1-based table positions.
Sparlane::CuttingParameter MildSteel(float thickness_mm, float speed_mm_min,
                                     std::uint16_t current_amps) {
  Sparlane::CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = thickness_mm;
  p.cut_speed_mm_min = speed_mm_min;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f;
  p.transfer_height_mm = 3.0f;
  p.arc_voltage_v = 120.0f + thickness_mm;
  p.pierce_time_s = 0.05f * thickness_mm;
  p.kerf_width_mm = 1.2f + 0.05f * thickness_mm;
  p.current_amps = current_amps;
  return p;
}

void PrintList(const char* title, const std::vector<std::string>& names) {
  std::printf("%s:\n", title);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::printf("  %zu  %s\n", i + 1, names[i].c_str());
  }
}

bool Check(Sparlane::ErrorCode code, const Sparlane::Database& db, const char* what) {
  if (code == Sparlane::ErrorCode::Success) return true;
  std::fprintf(stderr, "%s failed (%d): %s\n", what, static_cast<int>(code),
               db.GetLastError().c_str());
  return false;
}

}  // namespace

int main() {
  Sparlane::Database db;
  db.Create();

  bool ok = Check(db.AddMachine("Northfield", "NF-200", ""), db, "AddMachine") &&
            Check(db.AddMaterial("Mild Steel"), db, "AddMaterial") &&
            Check(db.AddMaterial("Stainless 304"), db, "AddMaterial");
  const Sparlane::CuttingParameter chart[] = {
      MildSteel(3.0f, 5200.0f, 45), MildSteel(6.0f, 3400.0f, 65),
      MildSteel(10.0f, 2100.0f, 85), MildSteel(16.0f, 1300.0f, 130)};
  for (const auto& record : chart) {
    ok = ok && Check(db.AddParameter(record), db, "AddParameter");
  }
  if (!ok) return 1;

  // Appends leave the record indexes alone; rewriting one record rebuilds
  // them, so the lookups below see the whole chart.
  if (!Check(db.UpdateParameter(0, chart[0]), db, "UpdateParameter")) return 1;

  PrintList("Vendors", db.GetVendors());
  PrintList("Machines", db.GetMachines());
  PrintList("Materials", db.GetMaterials());

  const Sparlane::DatabaseStats stats = db.GetStatistics();
  std::printf("Statistics: %u records, %u vendors, %u machines, %u materials, %llu file bytes\n",
              stats.parameter_count, stats.vendor_count, stats.machine_count,
              stats.material_count, static_cast<unsigned long long>(stats.file_size_bytes));

  const Sparlane::InterpolationResult answer = db.Interpolate("Mild Steel", 8.0f, "NF-200");
  std::printf("Mild Steel 8 mm on NF-200: %.0f mm/min at %u A, kerf %.2f mm (confidence %.2f%s)\n",
              answer.parameter.cut_speed_mm_min, answer.parameter.current_amps,
              answer.parameter.kerf_width_mm, answer.confidence,
              answer.extrapolated ? ", extrapolated" : "");
  return 0;
}
