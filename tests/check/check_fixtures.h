// Small in-memory databases for the integrity-check tests.
#ifndef SPARLANE_TESTS_CHECK_CHECK_FIXTURES_H_
#define SPARLANE_TESTS_CHECK_CHECK_FIXTURES_H_

#include <cstdint>
#include <string>

#include "sparlane/sparlane.h"
#include "../support/store_seam.h"

namespace Sparlane {
namespace check_test {

// A record that every check accepts with 3 vendors, 2 machines, 2 materials.
inline CuttingParameter GoodRecord() {
  CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = 6.0f;
  p.cut_speed_mm_min = 2540.0f;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f;
  p.transfer_height_mm = 3.0f;
  p.arc_voltage_v = 120.0f;
  p.pierce_time_s = 0.5f;
  p.kerf_width_mm = 1.7f;
  p.current_amps = 45;
  return p;
}

// Created database with vendors V1..V3, machines M1 (of V1), M2 (of V2),
// M3 (of V3) and materials Steel, Aluminium; no records.
inline void FillNames(Database& db) {
  db.Create();
  db.AddMachine("V1", "M1", "");
  db.AddMachine("V2", "M2", "");
  db.AddMachine("V3", "M3", "");
  db.AddMaterial("Steel");
  db.AddMaterial("Aluminium");
}

// Appends records as they stand (no record check) and makes the header
// count agree, so that Validate reaches the per-record tests.
inline void PutRecords(Database& db, std::initializer_list<CuttingParameter> records) {
  std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
  for (const CuttingParameter& p : records) table.push_back(p);
  DatabaseAccess::Header(db).parameter_count = static_cast<std::uint32_t>(table.size());
}

}  // namespace check_test
}  // namespace Sparlane

#endif  // SPARLANE_TESTS_CHECK_CHECK_FIXTURES_H_
