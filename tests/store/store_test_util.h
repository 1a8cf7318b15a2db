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
#include "store/database_impl.h"
#include "../support/catalogue.h"

namespace sparlane_test {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::DatabaseImpl;
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

// The record indexes as ordered maps, so whole indexes compare with ==.
struct BucketView {
  float min_thickness;
  float max_thickness;
  std::uint64_t first;
  std::uint64_t count;
};

inline bool operator==(const BucketView& a, const BucketView& b) {
  // Compare float bits so NaN and -0.0 are told apart exactly.
  return std::memcmp(&a.min_thickness, &b.min_thickness, sizeof(float)) == 0 &&
         std::memcmp(&a.max_thickness, &b.max_thickness, sizeof(float)) == 0 &&
         a.first == b.first && a.count == b.count;
}

inline std::ostream& operator<<(std::ostream& os, const BucketView& b) {
  return os << "{min " << b.min_thickness << ", max " << b.max_thickness << ", first " << b.first
            << ", count " << b.count << "}";
}

using MaterialIndexView = std::map<std::uint16_t, std::vector<BucketView>>;
using MachineIndexView = std::map<std::uint16_t, std::pair<std::uint64_t, std::uint64_t>>;

inline MaterialIndexView MaterialIndexOf(const DatabaseImpl& d) {
  MaterialIndexView view;
  for (const auto& entry : d.material_ranges) {
    std::vector<BucketView>& out = view[entry.first];
    for (const auto& b : entry.second) {
      out.push_back({b.min_thickness, b.max_thickness, b.first, b.count});
    }
  }
  return view;
}

inline MachineIndexView MachineIndexOf(const DatabaseImpl& d) {
  MachineIndexView view;
  for (const auto& entry : d.machine_records) {
    view[entry.first] = {entry.second.first, entry.second.count};
  }
  return view;
}

template <typename Index>
std::map<std::string, std::uint16_t> Sorted(const Index& index) {
  return std::map<std::string, std::uint16_t>(index.begin(), index.end());
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
    const DatabaseImpl& d = DatabaseAccess::Body(db);
    StoreSnapshot s;
    const auto* h = reinterpret_cast<const std::uint8_t*>(&d.header);
    s.header_bytes.assign(h, h + sizeof d.header);
    s.loaded = d.loaded;
    s.vendors = d.vendors;
    s.machines = d.machines;
    s.materials = d.materials;
    s.vendor_ids = Sorted(d.vendor_ids);
    s.machine_ids = Sorted(d.machine_ids);
    s.material_ids = Sorted(d.material_ids);
    const auto* p = reinterpret_cast<const std::uint8_t*>(d.parameters.data());
    s.parameter_bytes.assign(p, p + d.parameters.size() * sizeof(CuttingParameter));
    s.material_index = MaterialIndexOf(d);
    s.machine_index = MachineIndexOf(d);
    s.consumable_sets = d.consumable_sets.size();
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
