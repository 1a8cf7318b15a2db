// Testing::ExplainParameter: the reason of the first strict rule a record
// fails, in ValidateParameter's order, and "" exactly when it passes.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "check_fixtures.h"
#include "sparlane/sparlane.h"

namespace Sparlane {
namespace {

using check_test::GoodRecord;
using Testing::ExplainParameter;
using Testing::ValidateParameter;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();

// The strict check as it has always been written, test by test: the
// function under test must keep giving exactly its answers.
ErrorCode LiteralStrictCheck(const CuttingParameter& p) {
  const ErrorCode bad = ErrorCode::InvalidParameter;
  const float floats[] = {p.thickness_mm,     p.cut_speed_mm_min,   p.cut_height_mm,
                          p.pierce_height_mm, p.transfer_height_mm, p.arc_voltage_v,
                          p.pierce_time_s,    p.kerf_width_mm};
  for (float f : floats) {
    if (!std::isfinite(f)) return bad;
  }
  if (p.vendor_id == 0 || p.machine_model_id == 0 || p.material_id == 0) return bad;
  if (p.thickness_mm < 0.1f || p.thickness_mm > 300.0f) return bad;
  if (p.cut_speed_mm_min < 10.0f || p.cut_speed_mm_min > 20000.0f) return bad;
  if (p.current_amps == 0 || p.current_amps > 1000) return bad;
  if (p.arc_voltage_v < 20.0f || p.arc_voltage_v > 300.0f) return bad;
  if (p.cut_height_mm < 0.0f || p.pierce_height_mm < 0.0f || p.transfer_height_mm < 0.0f ||
      p.pierce_time_s < 0.0f || p.kerf_width_mm < 0.0f) {
    return bad;
  }
  if (p.cut_height_mm > p.pierce_height_mm) return bad;
  return ErrorCode::Success;
}

struct FloatField {
  const char* name;
  float CuttingParameter::*field;
};

const FloatField kFloats[] = {
    {"thickness_mm", &CuttingParameter::thickness_mm},
    {"cut_speed_mm_min", &CuttingParameter::cut_speed_mm_min},
    {"cut_height_mm", &CuttingParameter::cut_height_mm},
    {"pierce_height_mm", &CuttingParameter::pierce_height_mm},
    {"transfer_height_mm", &CuttingParameter::transfer_height_mm},
    {"arc_voltage_v", &CuttingParameter::arc_voltage_v},
    {"pierce_time_s", &CuttingParameter::pierce_time_s},
    {"kerf_width_mm", &CuttingParameter::kerf_width_mm},
};

TEST(ExplainParameter, PassingRecordHasNoReason) {
  EXPECT_EQ(ExplainParameter(GoodRecord()), "");
}

TEST(ExplainParameter, NamesTheFirstNonFiniteFloatInRecordOrder) {
  for (std::size_t i = 0; i < 8; ++i) {
    for (float bad : {kNaN, -kNaN, kInf, -kInf}) {
      CuttingParameter p = GoodRecord();
      // Every later float is bad too: the first one is named.
      for (std::size_t j = i; j < 8; ++j) p.*kFloats[j].field = bad;
      p.vendor_id = 0;
      EXPECT_EQ(ExplainParameter(p), std::string(kFloats[i].name) + " must be a finite number");
    }
  }
}

TEST(ExplainParameter, NamesTheFirstZeroId) {
  CuttingParameter p = GoodRecord();
  p.vendor_id = p.machine_model_id = p.material_id = 0;
  p.thickness_mm = 0.0f;
  EXPECT_EQ(ExplainParameter(p), "vendor_id must not be 0");
  p.vendor_id = 1;
  EXPECT_EQ(ExplainParameter(p), "machine_model_id must not be 0");
  p.machine_model_id = 1;
  EXPECT_EQ(ExplainParameter(p), "material_id must not be 0");
  p.material_id = 1;
  EXPECT_EQ(ExplainParameter(p), "thickness_mm must be 0.1 to 300 mm");
}

TEST(ExplainParameter, RangeRulesInTheirOrder) {
  CuttingParameter p = GoodRecord();
  p.thickness_mm = 300.5f;
  p.cut_speed_mm_min = 5.0f;
  p.current_amps = 1001;
  p.arc_voltage_v = 19.0f;
  p.kerf_width_mm = -1.0f;
  EXPECT_EQ(ExplainParameter(p), "thickness_mm must be 0.1 to 300 mm");
  p.thickness_mm = 0.1f;
  EXPECT_EQ(ExplainParameter(p), "cut_speed_mm_min must be 10 to 20000 mm/min");
  p.cut_speed_mm_min = 20000.0f;
  EXPECT_EQ(ExplainParameter(p), "current_amps must be 1 to 1000 A");
  p.current_amps = 0;
  EXPECT_EQ(ExplainParameter(p), "current_amps must be 1 to 1000 A");
  p.current_amps = 1000;
  EXPECT_EQ(ExplainParameter(p), "arc_voltage_v must be 20 to 300 V");
  p.arc_voltage_v = 300.5f;
  EXPECT_EQ(ExplainParameter(p), "arc_voltage_v must be 20 to 300 V");
  p.arc_voltage_v = 20.0f;
  EXPECT_EQ(ExplainParameter(p), "kerf_width_mm must not be negative");
  p.kerf_width_mm = 0.0f;
  EXPECT_EQ(ExplainParameter(p), "");
}

TEST(ExplainParameter, NamesTheFirstNegativeHeightTimeOrKerf) {
  const FloatField kChecked[] = {kFloats[2], kFloats[3], kFloats[4], kFloats[6], kFloats[7]};
  for (std::size_t i = 0; i < 5; ++i) {
    CuttingParameter p = GoodRecord();
    for (std::size_t j = i; j < 5; ++j) p.*kChecked[j].field = -0.5f;
    EXPECT_EQ(ExplainParameter(p), std::string(kChecked[i].name) + " must not be negative");
  }
  // -0.0 is not negative.
  CuttingParameter p = GoodRecord();
  p.pierce_time_s = -0.0f;
  EXPECT_EQ(ExplainParameter(p), "");
}

TEST(ExplainParameter, CutHeightAbovePierceHeightComesLast) {
  CuttingParameter p = GoodRecord();
  p.cut_height_mm = p.pierce_height_mm + 0.5f;
  EXPECT_EQ(ExplainParameter(p), "cut_height_mm must not exceed pierce_height_mm");
  p.cut_height_mm = p.pierce_height_mm;
  EXPECT_EQ(ExplainParameter(p), "");
}

// A record built from the values the rules sit on: NaN, infinities, -0.0,
// each bound and its float neighbours, and plain good values.
CuttingParameter RandomRecord(std::mt19937& rng) {
  auto pick = [&](std::initializer_list<float> values) {
    const std::size_t i = std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(rng);
    return *(values.begin() + static_cast<std::ptrdiff_t>(i));
  };
  auto near = [&](float bound) {
    switch (std::uniform_int_distribution<int>(0, 2)(rng)) {
      case 0: return std::nextafter(bound, -kInf);
      case 1: return bound;
      default: return std::nextafter(bound, kInf);
    }
  };
  // Mostly the good value, so that passing records are common too.
  auto often = [&](float good, float other) { return rng() % 5 == 0 ? other : good; };
  auto special = [&](float good) {
    return often(good, pick({kNaN, -kNaN, kInf, -kInf, -0.0f, 0.0f, -1.0f}));
  };
  CuttingParameter p = GoodRecord();
  p.vendor_id = static_cast<std::uint16_t>(often(1.0f, pick({0.0f, 65535.0f})));
  p.machine_model_id = static_cast<std::uint16_t>(often(2.0f, 0.0f));
  p.material_id = static_cast<std::uint16_t>(often(3.0f, 0.0f));
  p.thickness_mm = pick({near(0.1f), near(300.0f), special(6.0f)});
  p.cut_speed_mm_min = pick({near(10.0f), near(20000.0f), special(2500.0f)});
  p.cut_height_mm = special(1.5f);
  p.pierce_height_mm = pick({special(3.0f), near(p.cut_height_mm)});
  p.transfer_height_mm = special(3.0f);
  p.arc_voltage_v = pick({near(20.0f), near(300.0f), special(120.0f)});
  p.pierce_time_s = special(0.5f);
  p.kerf_width_mm = special(1.7f);
  p.current_amps =
      static_cast<std::uint16_t>(often(45.0f, pick({0.0f, 1.0f, 1000.0f, 1001.0f, 65535.0f})));
  return p;
}

TEST(ExplainParameter, AgreesWithValidateParameterOnRandomRecords) {
  std::mt19937 rng(13);
  int passing = 0;
  for (int round = 0; round < 200000; ++round) {
    const CuttingParameter p = RandomRecord(rng);
    const ErrorCode code = ValidateParameter(p);
    ASSERT_EQ(code, LiteralStrictCheck(p)) << "round " << round;
    const std::string why = ExplainParameter(p);
    ASSERT_EQ(why.empty(), code == ErrorCode::Success) << "round " << round << ": " << why;
    if (code == ErrorCode::Success) ++passing;
  }
  // Both outcomes are well represented.
  EXPECT_GT(passing, 1000);
  EXPECT_LT(passing, 190000);
}

TEST(ExplainParameter, AgreesWithValidateParameterOnRandomBitPatterns) {
  std::mt19937 rng(29);
  for (int round = 0; round < 100000; ++round) {
    CuttingParameter p = GoodRecord();
    // One to three fields replaced by arbitrary bits (any NaN payload).
    for (int k = std::uniform_int_distribution<int>(1, 3)(rng); k > 0; --k) {
      const std::uint32_t bits = rng();
      std::memcpy(&(p.*kFloats[rng() % 8].field), &bits, sizeof bits);
    }
    if (rng() % 4 == 0) p.current_amps = static_cast<std::uint16_t>(rng());
    const ErrorCode code = ValidateParameter(p);
    ASSERT_EQ(code, LiteralStrictCheck(p)) << "round " << round;
    ASSERT_EQ(ExplainParameter(p).empty(), code == ErrorCode::Success) << "round " << round;
  }
}

}  // namespace
}  // namespace Sparlane
