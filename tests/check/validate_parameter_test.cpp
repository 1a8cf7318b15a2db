#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "check_fixtures.h"
#include "sparlane/sparlane.h"

namespace Sparlane {
namespace {

using check_test::GoodRecord;
using Testing::ValidateParameter;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();
constexpr ErrorCode kBad = ErrorCode::InvalidParameter;
constexpr ErrorCode kOk = ErrorCode::Success;

float Below(float x) { return std::nextafter(x, -kInf); }
float Above(float x) { return std::nextafter(x, kInf); }

TEST(ValidateParameter, GoodRecordPasses) { EXPECT_EQ(ValidateParameter(GoodRecord()), kOk); }

TEST(ValidateParameter, NonFiniteInAnyOfTheEightFloatsFails) {
  float CuttingParameter::*fields[] = {
      &CuttingParameter::thickness_mm,     &CuttingParameter::cut_speed_mm_min,
      &CuttingParameter::cut_height_mm,    &CuttingParameter::pierce_height_mm,
      &CuttingParameter::transfer_height_mm, &CuttingParameter::arc_voltage_v,
      &CuttingParameter::pierce_time_s,    &CuttingParameter::kerf_width_mm};
  for (auto field : fields) {
    for (float bad : {kNaN, -kNaN, kInf, -kInf}) {
      CuttingParameter p = GoodRecord();
      p.*field = bad;
      EXPECT_EQ(ValidateParameter(p), kBad);
    }
  }
}

TEST(ValidateParameter, ZeroIdFailsButIdsAreNotCheckedAgainstTables) {
  CuttingParameter p = GoodRecord();
  p.vendor_id = 0;
  EXPECT_EQ(ValidateParameter(p), kBad);
  p = GoodRecord();
  p.machine_model_id = 0;
  EXPECT_EQ(ValidateParameter(p), kBad);
  p = GoodRecord();
  p.material_id = 0;
  EXPECT_EQ(ValidateParameter(p), kBad);
  p = GoodRecord();
  p.vendor_id = p.machine_model_id = p.material_id = 65535;
  EXPECT_EQ(ValidateParameter(p), kOk);
}

TEST(ValidateParameter, ThicknessBoundsAreInclusive) {
  for (float t : {0.1f, 300.0f, 150.0f}) {
    CuttingParameter p = GoodRecord();
    p.thickness_mm = t;
    EXPECT_EQ(ValidateParameter(p), kOk) << t;
  }
  for (float t : {Below(0.1f), Above(300.0f), 0.0f, -6.0f}) {
    CuttingParameter p = GoodRecord();
    p.thickness_mm = t;
    EXPECT_EQ(ValidateParameter(p), kBad) << t;
  }
}

TEST(ValidateParameter, SpeedBoundsAreInclusive) {
  for (float s : {10.0f, 20000.0f}) {
    CuttingParameter p = GoodRecord();
    p.cut_speed_mm_min = s;
    EXPECT_EQ(ValidateParameter(p), kOk) << s;
  }
  for (float s : {Below(10.0f), Above(20000.0f), 0.0f, 100000.0f}) {
    CuttingParameter p = GoodRecord();
    p.cut_speed_mm_min = s;
    EXPECT_EQ(ValidateParameter(p), kBad) << s;
  }
}

TEST(ValidateParameter, CurrentFrom1To1000) {
  for (unsigned a : {1u, 1000u}) {
    CuttingParameter p = GoodRecord();
    p.current_amps = static_cast<std::uint16_t>(a);
    EXPECT_EQ(ValidateParameter(p), kOk) << a;
  }
  for (unsigned a : {0u, 1001u, 65535u}) {
    CuttingParameter p = GoodRecord();
    p.current_amps = static_cast<std::uint16_t>(a);
    EXPECT_EQ(ValidateParameter(p), kBad) << a;
  }
}

TEST(ValidateParameter, ArcVoltageBoundsAreInclusive) {
  for (float v : {20.0f, 300.0f}) {
    CuttingParameter p = GoodRecord();
    p.arc_voltage_v = v;
    EXPECT_EQ(ValidateParameter(p), kOk) << v;
  }
  for (float v : {Below(20.0f), Above(300.0f), 0.0f}) {
    CuttingParameter p = GoodRecord();
    p.arc_voltage_v = v;
    EXPECT_EQ(ValidateParameter(p), kBad) << v;
  }
}

TEST(ValidateParameter, NegativeHeightsTimesOrKerfFail) {
  float CuttingParameter::*fields[] = {
      &CuttingParameter::cut_height_mm, &CuttingParameter::pierce_height_mm,
      &CuttingParameter::transfer_height_mm, &CuttingParameter::pierce_time_s,
      &CuttingParameter::kerf_width_mm};
  for (auto field : fields) {
    CuttingParameter p = GoodRecord();
    p.*field = -std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(ValidateParameter(p), kBad);
  }
}

TEST(ValidateParameter, ZeroHeightsTimesAndKerfPass) {
  CuttingParameter p = GoodRecord();
  p.cut_height_mm = p.pierce_height_mm = p.transfer_height_mm = 0.0f;
  p.pierce_time_s = p.kerf_width_mm = -0.0f;
  EXPECT_EQ(ValidateParameter(p), kOk);
}

TEST(ValidateParameter, CutHeightEqualToPierceHeightPasses) {
  CuttingParameter p = GoodRecord();
  p.cut_height_mm = 3.0f;
  p.pierce_height_mm = 3.0f;
  EXPECT_EQ(ValidateParameter(p), kOk);
}

TEST(ValidateParameter, CutHeightAbovePierceHeightFails) {
  CuttingParameter p = GoodRecord();
  p.pierce_height_mm = 3.0f;
  p.cut_height_mm = Above(3.0f);
  EXPECT_EQ(ValidateParameter(p), kBad);
}

TEST(ValidateParameter, StricterThanValidateOnThicknessAndSpeed) {
  CuttingParameter p = GoodRecord();
  p.thickness_mm = 400.0f;
  EXPECT_EQ(ValidateParameter(p), kBad);
  p = GoodRecord();
  p.cut_speed_mm_min = 50000.0f;
  EXPECT_EQ(ValidateParameter(p), kBad);
}

TEST(ValidateParameter, OpaqueFieldsAreIgnored) {
  CuttingParameter p = GoodRecord();
  p.aux_id = 0;
  p.flags = 0xFFFFFFFFu;
  p.reserved_42[0] = 0xFF;
  p.reserved_52[11] = 0xFF;
  EXPECT_EQ(ValidateParameter(p), kOk);
}

TEST(ValidateParameter, AllZeroRecordFails) {
  CuttingParameter p{};
  EXPECT_EQ(ValidateParameter(p), kBad);
}

}  // namespace
}  // namespace Sparlane
