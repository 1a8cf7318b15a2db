// The interpolation arithmetic, with expected values worked out here in float
// in the documented order.
#include <cmath>
#include <limits>

#include "query_fixture.h"

namespace query_test {
namespace {

using Sparlane::kFlagDerived;
namespace T = Sparlane::Testing;

CuttingParameter Lower() {
  CuttingParameter p = Record(3, 4, 5.0f, 3000.0f, 2);
  p.current_amps = 65;
  return p;
}

CuttingParameter Upper() {
  CuttingParameter p = Record(3, 4, 10.0f, 1800.0f, 2);
  p.cut_height_mm = 2.5f;
  p.pierce_height_mm = 5.0f;
  p.transfer_height_mm = 6.0f;
  p.arc_voltage_v = 140.0f;
  p.pierce_time_s = 1.2f;
  p.kerf_width_mm = 2.3f;
  p.current_amps = 130;
  p.aux_id = 99;
  p.flags = 0x4;
  return p;
}

float Lerp(float a, float b, float f) { return a + (b - a) * f; }

void ExpectLinear(const CuttingParameter& got, float t, float f) {
  const CuttingParameter lo = Lower();
  const CuttingParameter up = Upper();
  EXPECT_EQ(got.thickness_mm, t);
  EXPECT_EQ(got.cut_speed_mm_min, Lerp(lo.cut_speed_mm_min, up.cut_speed_mm_min, f));
  EXPECT_EQ(got.cut_height_mm, Lerp(lo.cut_height_mm, up.cut_height_mm, f));
  EXPECT_EQ(got.pierce_height_mm, Lerp(lo.pierce_height_mm, up.pierce_height_mm, f));
  EXPECT_EQ(got.transfer_height_mm, Lerp(lo.transfer_height_mm, up.transfer_height_mm, f));
  EXPECT_EQ(got.arc_voltage_v, Lerp(lo.arc_voltage_v, up.arc_voltage_v, f));
  EXPECT_EQ(got.pierce_time_s, Lerp(lo.pierce_time_s, up.pierce_time_s, f));
  EXPECT_EQ(got.kerf_width_mm, Lerp(lo.kerf_width_mm, up.kerf_width_mm, f));
  EXPECT_EQ(got.current_amps, static_cast<std::uint16_t>(std::round(Lerp(65.0f, 130.0f, f))));
  // Ids, aux id, reserved bytes: the lower record's; flags gain the derived bit.
  CuttingParameter rest = got;
  CuttingParameter want = lo;
  for (CuttingParameter* p : {&rest, &want}) {
    p->thickness_mm = p->cut_speed_mm_min = p->cut_height_mm = p->pierce_height_mm = 0;
    p->transfer_height_mm = p->arc_voltage_v = p->pierce_time_s = p->kerf_width_mm = 0;
    p->current_amps = 0;
  }
  want.flags |= kFlagDerived;
  EXPECT_TRUE(SameBytes(rest, want));
}

TEST(InterpolateLinear, MidpointIsTheMeanWithCurrentRoundedHalfAway) {
  const CuttingParameter r = T::InterpolateLinear(Lower(), Upper(), 7.5f);
  ExpectLinear(r, 7.5f, 0.5f);
  EXPECT_EQ(r.current_amps, 98);  // 97.5 rounds away from zero
  EXPECT_EQ(r.flags, 0x1u | kFlagDerived);
}

TEST(InterpolateLinear, FractionIsComputedInFloat) {
  const float t = 6.3f;
  ExpectLinear(T::InterpolateLinear(Lower(), Upper(), t), t, (t - 5.0f) / (10.0f - 5.0f));
}

TEST(InterpolateLinear, FractionClampsButThicknessDoesNot) {
  ExpectLinear(T::InterpolateLinear(Lower(), Upper(), 20.0f), 20.0f, 1.0f);
  ExpectLinear(T::InterpolateLinear(Lower(), Upper(), 1.0f), 1.0f, 0.0f);
}

TEST(InterpolateLinear, NaNFractionBecomesZero) {
  const CuttingParameter r = T::InterpolateLinear(Lower(), Upper(), std::nanf(""));
  EXPECT_TRUE(std::isnan(r.thickness_mm));
  EXPECT_EQ(r.cut_speed_mm_min, Lower().cut_speed_mm_min);
  EXPECT_EQ(r.current_amps, 65);
}

TEST(InterpolateLinear, EqualThicknessReturnsLowerWithItsOwnThickness) {
  CuttingParameter up = Upper();
  up.thickness_mm = 5.0f + 0.0009f;
  const CuttingParameter r = T::InterpolateLinear(Lower(), up, 7.0f);
  CuttingParameter want = Lower();
  want.flags |= kFlagDerived;
  EXPECT_TRUE(SameBytes(r, want));
}

TEST(InterpolateLinear, UpperThinnerThanLowerStillSteps) {
  // d = 5 - 10 = -5; f = (7.5 - 10) / -5 = 0.5.
  const CuttingParameter r = T::InterpolateLinear(Upper(), Lower(), 7.5f);
  EXPECT_EQ(r.cut_speed_mm_min, Lerp(1800.0f, 3000.0f, 0.5f));
  EXPECT_EQ(r.aux_id, 99);
}

TEST(ExtrapolateConservative, ThickerPlateDividesSpeedByRootOfRatio) {
  const CuttingParameter s = Upper();
  const CuttingParameter r = T::ExtrapolateConservative(s, 20.0f);
  const float root = std::sqrt(20.0f / 10.0f);
  EXPECT_EQ(r.thickness_mm, 20.0f);
  EXPECT_EQ(r.cut_speed_mm_min, s.cut_speed_mm_min / root);
  EXPECT_EQ(r.pierce_height_mm, s.pierce_height_mm * 1.1f);
  EXPECT_EQ(r.transfer_height_mm, s.transfer_height_mm * 1.05f);
  EXPECT_EQ(r.pierce_time_s, s.pierce_time_s * root);
  EXPECT_EQ(r.cut_height_mm, s.cut_height_mm);
  EXPECT_EQ(r.arc_voltage_v, s.arc_voltage_v);
  EXPECT_EQ(r.kerf_width_mm, s.kerf_width_mm);
  EXPECT_EQ(r.current_amps, s.current_amps);
  EXPECT_EQ(r.aux_id, s.aux_id);
  EXPECT_EQ(r.flags, s.flags | kFlagDerived);
}

TEST(ExtrapolateConservative, ThinnerPlateRaisesSpeedByPowerSevenTenths) {
  const CuttingParameter s = Lower();
  const CuttingParameter r = T::ExtrapolateConservative(s, 2.5f);
  const float x = 2.5f / 5.0f;
  EXPECT_EQ(r.cut_speed_mm_min, s.cut_speed_mm_min * std::pow(1.0f / x, 0.7f));
  EXPECT_EQ(r.pierce_height_mm, s.pierce_height_mm * 0.95f);
  EXPECT_EQ(r.transfer_height_mm, s.transfer_height_mm * 0.98f);
  EXPECT_EQ(r.pierce_time_s, s.pierce_time_s * 0.5f);
  EXPECT_EQ(r.reserved_52[11], s.reserved_52[11]);
}

TEST(ExtrapolateConservative, SameThicknessTakesTheThinnerBranch) {
  const CuttingParameter s = Lower();
  const CuttingParameter r = T::ExtrapolateConservative(s, 5.0f);
  EXPECT_EQ(r.cut_speed_mm_min, s.cut_speed_mm_min);
  EXPECT_EQ(r.pierce_height_mm, s.pierce_height_mm * 0.95f);
  EXPECT_EQ(r.transfer_height_mm, s.transfer_height_mm * 0.98f);
}

TEST(ExtrapolateConservative, ZeroThicknessGivesInfiniteSpeed) {
  const CuttingParameter r = T::ExtrapolateConservative(Lower(), 0.0f);
  EXPECT_TRUE(std::isinf(r.cut_speed_mm_min));
  EXPECT_EQ(r.pierce_time_s, 0.0f);
}

TEST(PerformInterpolation, NoRecordsGiveZeroedResult) {
  const auto r = T::PerformInterpolation(nullptr, nullptr, 5.0f);
  EXPECT_TRUE(SameBytes(r.parameter, CuttingParameter{}));
  EXPECT_EQ(r.confidence, 0.0f);
  EXPECT_FALSE(r.extrapolated);
}

TEST(PerformInterpolation, FarExtrapolationClampsConfidenceToZero) {
  const CuttingParameter up = Upper();
  const auto r = T::PerformInterpolation(nullptr, &up, up.thickness_mm + 20.0f);
  EXPECT_EQ(r.confidence, 0.0f);
  EXPECT_TRUE(r.extrapolated);
  EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(up, 30.0f)));
}

TEST(PerformInterpolation, OneRecordConfidenceFallsByTenthPerMillimetre) {
  const CuttingParameter lo = Lower();
  const auto r = T::PerformInterpolation(&lo, nullptr, 3.0f);
  EXPECT_EQ(r.confidence, 0.7f - std::fabs(3.0f - 5.0f) / 10.0f);
  EXPECT_TRUE(r.extrapolated);
  EXPECT_TRUE(SameBytes(r.parameter, T::ExtrapolateConservative(lo, 3.0f)));
}

TEST(PerformInterpolation, BothRecordsInterpolateWithPointTwoSlope) {
  const CuttingParameter lo = Lower();
  const CuttingParameter up = Upper();
  const auto mid = T::PerformInterpolation(&lo, &up, 7.5f);
  EXPECT_EQ(mid.confidence, 1.0f);
  EXPECT_FALSE(mid.extrapolated);
  EXPECT_TRUE(SameBytes(mid.parameter, T::InterpolateLinear(lo, up, 7.5f)));
  const auto end = T::PerformInterpolation(&lo, &up, 10.0f);
  EXPECT_EQ(end.confidence, 1.0f - std::fabs(1.0f - 0.5f) * 0.2f);
  const float t = 6.0f;
  const float f = (t - 5.0f) / 5.0f;
  EXPECT_EQ(T::PerformInterpolation(&lo, &up, t).confidence,
            1.0f - std::fabs(f - 0.5f) * 0.2f);
  // Outside the two the fraction clamps for the confidence only.
  const auto beyond = T::PerformInterpolation(&lo, &up, 40.0f);
  EXPECT_EQ(beyond.confidence, 1.0f - std::fabs(1.0f - 0.5f) * 0.2f);
  EXPECT_FALSE(beyond.extrapolated);
}

TEST(PerformInterpolation, UpperThinnerDividesByTheFloor) {
  const CuttingParameter lo = Upper();  // 10 mm
  const CuttingParameter up = Lower();  // 5 mm
  // f = (7.5 - 10) / 0.0001, clamped to 0: confidence 0.9; the record uses the true d.
  const auto r = T::PerformInterpolation(&lo, &up, 7.5f);
  EXPECT_EQ(r.confidence, 1.0f - std::fabs(0.0f - 0.5f) * 0.2f);
  EXPECT_TRUE(SameBytes(r.parameter, T::InterpolateLinear(lo, up, 7.5f)));
  EXPECT_EQ(r.parameter.cut_speed_mm_min, Lerp(1800.0f, 3000.0f, 0.5f));
  // t beyond the thinner one: f > 0 becomes huge, clamped to 1.
  EXPECT_EQ(T::PerformInterpolation(&lo, &up, 12.0f).confidence, 1.0f - std::fabs(1.0f - 0.5f) * 0.2f);
}

TEST(PerformInterpolation, NearlyEqualThicknessCopiesLowerWithDerivedBit) {
  const CuttingParameter lo = Lower();
  CuttingParameter up = Upper();
  up.thickness_mm = 5.00005f;
  const auto r = T::PerformInterpolation(&lo, &up, 9.0f);
  CuttingParameter want = lo;
  want.flags |= kFlagDerived;
  EXPECT_TRUE(SameBytes(r.parameter, want));
  EXPECT_EQ(r.confidence, 1.0f);
  EXPECT_FALSE(r.extrapolated);
}

}  // namespace
}  // namespace query_test
