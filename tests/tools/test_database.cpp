#include "test_database.h"

#include <gtest/gtest.h>

#include <cstring>

#include "tool_runner.h"

namespace tooltest {
Sparlane::CuttingParameter Settings(float thickness_mm, float speed_mm_min) {
  Sparlane::CuttingParameter p{};
  p.thickness_mm = thickness_mm;
  p.cut_speed_mm_min = speed_mm_min;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.8f;
  p.transfer_height_mm = 3.8f;
  p.arc_voltage_v = 120.0f;
  p.pierce_time_s = 0.5f;
  p.kerf_width_mm = 1.5f;
  p.current_amps = 45;
  return p;
}

void WriteDatabase(const std::string& path, const std::vector<TestRecord>& records) {
  Sparlane::Database db;
  ASSERT_EQ(db.Create(), Sparlane::ErrorCode::Success);
  for (const auto& r : records) {
    if (db.GetMachineId(r.machine) == 0) db.AddMachine(r.vendor, r.machine, "");
    if (db.GetMaterialId(r.material) == 0) db.AddMaterial(r.material);
  }
  for (const auto& r : records) {
    Sparlane::CuttingParameter p = r.values;
    p.vendor_id = db.GetVendorId(r.vendor);
    p.machine_model_id = db.GetMachineId(r.machine);
    p.material_id = db.GetMaterialId(r.material);
    ASSERT_EQ(db.AddParameter(p), Sparlane::ErrorCode::Success) << db.GetLastError();
  }
  ASSERT_EQ(db.SaveToBinary(path, Sparlane::CompressionType::None), Sparlane::ErrorCode::Success)
      << db.GetLastError();
}

void PatchFloat(const std::string& path, float from, float to) {
  std::string bytes = ReadText(path);
  char pattern[sizeof from];
  char replacement[sizeof to];
  std::memcpy(pattern, &from, sizeof from);
  std::memcpy(replacement, &to, sizeof to);
  const auto at = bytes.find(std::string(pattern, sizeof pattern));
  ASSERT_NE(at, std::string::npos) << "no float " << from << " in " << path;
  bytes.replace(at, sizeof replacement, replacement, sizeof replacement);
  WriteText(path, bytes);
}

}  // namespace tooltest
