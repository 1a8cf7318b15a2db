// Helpers shared by the store tests: valid records, small catalogues and a
// byte-exact snapshot of everything a failed operation must leave alone.
#ifndef SPARLANE_TESTS_STORE_STORE_TEST_UTIL_H_
#define SPARLANE_TESTS_STORE_STORE_TEST_UTIL_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <map>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "sparlane/sparlane.h"
#include "../support/catalogue.h"
#include "../support/store_seam.h"

namespace sparlane_test {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::ErrorCode;

// A record that passes the record check on a catalogue with at least one
// vendor, machine and material.
inline CuttingParameter ValidRecord(float thickness = 6.0f, std::uint16_t vendor = 1,
                                    std::uint16_t machine = 1, std::uint16_t material = 1) {
  CuttingParameter p{};
  p.vendor_id = vendor;
  p.machine_model_id = machine;
  p.material_id = material;
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = 2500.0f;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f;
  p.transfer_height_mm = 3.0f;
  p.arc_voltage_v = 125.0f;
  p.pierce_time_s = 0.4f;
  p.kerf_width_mm = 1.6f;
  p.current_amps = 65;
  return p;
}

using test_support::SameBytes;

using test_support::MakeCatalogue;

using Sparlane::BucketView;
using Sparlane::MachineIndexView;
using Sparlane::MaterialIndexView;
using Sparlane::NameKind;

inline MaterialIndexView MaterialIndexOf(const Database& db) {
  return DatabaseAccess::MaterialIndex(db);
}
inline MachineIndexView MachineIndexOf(const Database& db) {
  return DatabaseAccess::MachineIndex(db);
}

// Everything of the body that a failed operation must leave untouched.
struct StoreSnapshot {
  std::vector<std::uint8_t> header_bytes;
  bool loaded = false;
  std::vector<std::string> vendors, machines, materials;
  std::map<std::string, std::uint16_t> vendor_ids, machine_ids, material_ids;
  std::vector<std::uint8_t> parameter_bytes;
  MaterialIndexView material_index;
  MachineIndexView machine_index;
  std::size_t consumable_sets = 0;

  static StoreSnapshot Of(const Database& db) {
    StoreSnapshot s;
    const Sparlane::FileHeader header = db.GetFileHeader();
    const auto* h = reinterpret_cast<const std::uint8_t*>(&header);
    s.header_bytes.assign(h, h + sizeof header);
    s.loaded = db.IsLoaded();
    s.vendors = db.GetVendors();
    s.machines = db.GetMachines();
    s.materials = db.GetMaterials();
    s.vendor_ids = DatabaseAccess::NameIds(db, NameKind::kVendor);
    s.machine_ids = DatabaseAccess::NameIds(db, NameKind::kMachine);
    s.material_ids = DatabaseAccess::NameIds(db, NameKind::kMaterial);
    const std::vector<CuttingParameter> records = db.GetParameters();
    const auto* p = reinterpret_cast<const std::uint8_t*>(records.data());
    s.parameter_bytes.assign(p, p + records.size() * sizeof(CuttingParameter));
    s.material_index = MaterialIndexOf(db);
    s.machine_index = MachineIndexOf(db);
    s.consumable_sets = DatabaseAccess::Body(db).consumable_set_count();
    return s;
  }

  bool operator==(const StoreSnapshot& o) const {
    return header_bytes == o.header_bytes && loaded == o.loaded && vendors == o.vendors &&
           machines == o.machines && materials == o.materials && vendor_ids == o.vendor_ids &&
           machine_ids == o.machine_ids && material_ids == o.material_ids &&
           parameter_bytes == o.parameter_bytes && material_index == o.material_index &&
           machine_index == o.machine_index && consumable_sets == o.consumable_sets;
  }
};

}  // namespace sparlane_test

#endif  // SPARLANE_TESTS_STORE_STORE_TEST_UTIL_H_
