// Parameter files written straight through the library, for records that
// slb-tool itself would refuse to build (unsafe values, names it refuses).
#ifndef SPARLANE_TESTS_TOOLS_TEST_DATABASE_H_
#define SPARLANE_TESTS_TOOLS_TEST_DATABASE_H_

#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace tooltest {

struct TestRecord {
  std::string vendor;
  std::string machine;
  std::string material;
  Sparlane::CuttingParameter values;  // ids are filled in
};

// A plausible record: thickness and speed given, the rest fixed (cut height
// 1.5, pierce and transfer height 3.8, 120 V, 0.5 s, kerf 1.5, 45 A).
Sparlane::CuttingParameter Settings(float thickness_mm, float speed_mm_min);

// Saves the records, in the order given, as an uncompressed parameter file.
// Fails the running test when the library refuses any of them.
void WriteDatabase(const std::string& path, const std::vector<TestRecord>& records);

// Replaces the first occurrence of the float from by to in the file's bytes
// (record data is not covered by the header checksum).
void PatchFloat(const std::string& path, float from, float to);

}  // namespace tooltest

#endif  // SPARLANE_TESTS_TOOLS_TEST_DATABASE_H_
