// Small databases for the query tests: a catalogue made through the public
// API, and records placed either with AddParameter or through the test seam
// (for states the editing checks refuse: NaN, -0.0, unsorted tables).
#ifndef SPARLANE_TESTS_QUERY_QUERY_FIXTURE_H_
#define SPARLANE_TESTS_QUERY_QUERY_FIXTURE_H_

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"
#include "../support/catalogue.h"
#include "../support/store_seam.h"

namespace query_test {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::NameKind;
using Sparlane::ErrorCode;

// Every field set and distinct, so a copy can be told from a computed one.
inline CuttingParameter Record(std::uint16_t material, std::uint16_t machine, float thickness,
                               float speed = 2000.0f, std::uint16_t vendor = 1) {
  CuttingParameter p{};
  p.vendor_id = vendor;
  p.machine_model_id = machine;
  p.material_id = material;
  p.aux_id = 77;
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = speed;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f;
  p.transfer_height_mm = 4.0f;
  p.arc_voltage_v = 120.0f;
  p.pierce_time_s = 0.5f;
  p.kerf_width_mm = 1.7f;
  p.current_amps = 65;
  p.reserved_42[0] = 0xAB;
  p.flags = 0x1;
  p.reserved_52[11] = 0xCD;
  return p;
}

using test_support::SameBytes;

using test_support::MakeCatalogue;

// Replaces the table with records and rebuilds the record indexes, as a load
// does.
inline void LoadRecords(Database& db, const std::vector<CuttingParameter>& records) {
  DatabaseAccess::LoadRecords(db, records);
}

}  // namespace query_test

#endif  // SPARLANE_TESTS_QUERY_QUERY_FIXTURE_H_
