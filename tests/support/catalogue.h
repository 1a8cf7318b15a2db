// Fixtures shared by the store and query tests.
#ifndef SPARLANE_TESTS_SUPPORT_CATALOGUE_H_
#define SPARLANE_TESTS_SUPPORT_CATALOGUE_H_

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "sparlane/sparlane.h"

namespace test_support {

inline bool SameBytes(const Sparlane::CuttingParameter& a, const Sparlane::CuttingParameter& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A created database with vendors V1..Vn (one machine M1..Mn each) and
// materials Mat1..Matk, so every id equals the number in its name.
inline void MakeCatalogue(Sparlane::Database& db, int machines, int materials) {
  using Sparlane::ErrorCode;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  for (int i = 1; i <= machines; ++i) {
    ASSERT_EQ(db.AddMachine("V" + std::to_string(i), "M" + std::to_string(i), ""),
              ErrorCode::Success);
  }
  for (int i = 1; i <= materials; ++i) {
    ASSERT_EQ(db.AddMaterial("Mat" + std::to_string(i)), ErrorCode::Success);
  }
}

}  // namespace test_support

#endif  // SPARLANE_TESTS_SUPPORT_CATALOGUE_H_
