// The strict-check findings: the library's own reason (Testing::
// ExplainParameter) for the first rule broken, with the offending values,
// and none exactly when Testing::ValidateParameter passes the record.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "strict_check.h"
#include "test_database.h"

namespace {

using Sparlane::CuttingParameter;

CuttingParameter Valid() {
  CuttingParameter p = tooltest::Settings(6, 2000);
  p.vendor_id = p.machine_model_id = p.material_id = 1;
  return p;
}

// Values around every limit of the check, and some that break nothing.
float PickFloat(std::mt19937& random) {
  static const float values[] = {
      0.0f, -0.0f, -1.0f, 0.1f, 0.0999999f, 1.5f, 3.8f, 10.0f, 9.99999f, 20.0f, 19.9999f,
      120.0f, 300.0f, 300.00003f, 20000.0f, 20000.002f, 1e30f,
      std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity(),
      -std::numeric_limits<float>::infinity(), std::numeric_limits<float>::denorm_min()};
  return values[std::uniform_int_distribution<std::size_t>(0, std::size(values) - 1)(random)];
}

}  // namespace

TEST(StrictCheckFinding, ValidRecordHasNoFinding) {
  EXPECT_EQ(slb::StrictCheckFinding(Valid()), "");
}

TEST(StrictCheckFinding, IsTheLibrarysReasonOnRecordsAroundEveryLimit) {
  std::mt19937 random(12);
  const std::uint16_t amps[] = {0, 1, 45, 1000, 1001, 65535};
  for (int i = 0; i < 200000; ++i) {
    CuttingParameter p = Valid();
    // Change a few fields at a time so that single rules are reached too.
    float* floats[] = {&p.thickness_mm,       &p.cut_speed_mm_min, &p.cut_height_mm,
                       &p.pierce_height_mm,   &p.transfer_height_mm, &p.arc_voltage_v,
                       &p.pierce_time_s,      &p.kerf_width_mm};
    const int changes = std::uniform_int_distribution<int>(1, 3)(random);
    for (int c = 0; c < changes; ++c) {
      const int field = std::uniform_int_distribution<int>(0, 10)(random);
      if (field < 8) {
        *floats[field] = PickFloat(random);
      } else if (field == 8) {
        p.current_amps = amps[std::uniform_int_distribution<int>(0, 5)(random)];
      } else if (field == 9) {
        p.vendor_id = static_cast<std::uint16_t>(random() % 2);
      } else {
        p.material_id = static_cast<std::uint16_t>(random() % 2);
      }
    }
    const bool library_passes =
        Sparlane::Testing::ValidateParameter(p) == Sparlane::ErrorCode::Success;
    const std::string finding = slb::StrictCheckFinding(p);
    ASSERT_EQ(finding.empty(), library_passes) << finding;
    if (library_passes) continue;
    const std::string reason = Sparlane::Testing::ExplainParameter(p);
    ASSERT_EQ(finding.substr(0, reason.size() + 5), reason + " (is ") << finding;
  }
}

TEST(StrictCheckFinding, EachRuleHasItsText) {
  struct Case {
    void (*change)(CuttingParameter&);
    const char* finding;
  };
  const Case cases[] = {
      {[](CuttingParameter& p) { p.kerf_width_mm = std::nanf(""); },
       "kerf_width_mm must be a finite number (is nan)"},
      {[](CuttingParameter& p) { p.machine_model_id = 0; }, "machine_model_id must not be 0 (is 0)"},
      {[](CuttingParameter& p) { p.thickness_mm = 0.05f; },
       "thickness_mm must be 0.1 to 300 mm (is 0.05)"},
      {[](CuttingParameter& p) { p.cut_speed_mm_min = 9; },
       "cut_speed_mm_min must be 10 to 20000 mm/min (is 9)"},
      {[](CuttingParameter& p) { p.current_amps = 0; }, "current_amps must be 1 to 1000 A (is 0)"},
      {[](CuttingParameter& p) { p.arc_voltage_v = 301; }, "arc_voltage_v must be 20 to 300 V (is 301)"},
      {[](CuttingParameter& p) { p.transfer_height_mm = -1; },
       "transfer_height_mm must not be negative (is -1)"},
      {[](CuttingParameter& p) { p.cut_height_mm = 4; },
       "cut_height_mm must not exceed pierce_height_mm (is 4, pierce_height_mm is 3.8)"},
  };
  for (const auto& c : cases) {
    CuttingParameter p = Valid();
    c.change(p);
    EXPECT_EQ(slb::StrictCheckFinding(p), c.finding);
  }
}

TEST(StrictCheckFinding, TheFirstBrokenRuleInTheCheckOrderIsNamed) {
  CuttingParameter p = Valid();
  p.kerf_width_mm = -1;         // rule 7
  p.arc_voltage_v = 5;          // rule 6
  p.thickness_mm = 400;         // rule 3
  EXPECT_EQ(slb::StrictCheckFinding(p), "thickness_mm must be 0.1 to 300 mm (is 400)");
  p.vendor_id = 0;              // rule 2
  p.material_id = 0;
  EXPECT_EQ(slb::StrictCheckFinding(p), "vendor_id must not be 0 (is 0)");
  p.pierce_height_mm = std::numeric_limits<float>::infinity();  // rule 1
  p.cut_speed_mm_min = std::nanf("");
  EXPECT_EQ(slb::StrictCheckFinding(p), "cut_speed_mm_min must be a finite number (is nan)");
}

TEST(StrictCheckFinding, ValueJustOutsideALimitIsShownExactlyNotAsTheLimit) {
  CuttingParameter p = Valid();
  p.thickness_mm = 300.00003f;
  EXPECT_EQ(slb::StrictCheckFinding(p), "thickness_mm must be 0.1 to 300 mm (is 300.00003)");
  p = Valid();
  p.cut_speed_mm_min = 9.99999f;
  EXPECT_EQ(slb::StrictCheckFinding(p),
            "cut_speed_mm_min must be 10 to 20000 mm/min (is 9.99999)");
}

TEST(StrictCheckFinding, ValuesAloneAreCheckedWithIdsTakenAsGiven) {
  CuttingParameter p = Valid();
  p.vendor_id = p.machine_model_id = p.material_id = 0;
  EXPECT_EQ(slb::StrictCheckFindingOfValues(p), "");
  p.pierce_time_s = -2;
  EXPECT_EQ(slb::StrictCheckFindingOfValues(p), "pierce_time_s must not be negative (is -2)");
}
