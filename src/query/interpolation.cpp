// The arithmetic of interpolation and conservative extrapolation.  Single
// precision in the written order; std::sqrt and std::pow take their float
// overloads so no step widens to double.
#include <algorithm>
#include <cmath>

#include "sparlane/testing.h"

namespace Sparlane {
namespace Testing {

namespace {

constexpr float kSameThickness = 0.001f;
constexpr float kSpanFloor = 0.0001f;

float Lerp(float lower, float upper, float f) { return lower + (upper - lower) * f; }

}  // namespace

CuttingParameter InterpolateLinear(const CuttingParameter& lower, const CuttingParameter& upper,
                                   float thickness) {
  CuttingParameter out = lower;
  out.flags = lower.flags | kFlagDerived;
  const float d = upper.thickness_mm - lower.thickness_mm;
  if (std::fabs(d) < kSameThickness) return out;  // keeps lower's thickness

  float f = (thickness - lower.thickness_mm) / d;
  if (std::isnan(f) || f < 0.0f) {
    f = 0.0f;
  } else if (f > 1.0f) {
    f = 1.0f;
  }
  out.thickness_mm = thickness;
  out.cut_speed_mm_min = Lerp(lower.cut_speed_mm_min, upper.cut_speed_mm_min, f);
  out.cut_height_mm = Lerp(lower.cut_height_mm, upper.cut_height_mm, f);
  out.pierce_height_mm = Lerp(lower.pierce_height_mm, upper.pierce_height_mm, f);
  out.transfer_height_mm = Lerp(lower.transfer_height_mm, upper.transfer_height_mm, f);
  out.arc_voltage_v = Lerp(lower.arc_voltage_v, upper.arc_voltage_v, f);
  out.pierce_time_s = Lerp(lower.pierce_time_s, upper.pierce_time_s, f);
  out.kerf_width_mm = Lerp(lower.kerf_width_mm, upper.kerf_width_mm, f);
  const float current = Lerp(static_cast<float>(lower.current_amps),
                             static_cast<float>(upper.current_amps), f);
  out.current_amps = static_cast<std::uint16_t>(std::round(current));  // half away from zero
  return out;
}

CuttingParameter ExtrapolateConservative(const CuttingParameter& source, float thickness) {
  CuttingParameter out = source;
  out.thickness_mm = thickness;
  out.flags = source.flags | kFlagDerived;
  const float x = thickness / source.thickness_mm;
  if (x > 1.0f) {  // thicker plate
    const float r = std::sqrt(x);
    out.cut_speed_mm_min = source.cut_speed_mm_min / r;
    out.pierce_height_mm = source.pierce_height_mm * 1.1f;
    out.transfer_height_mm = source.transfer_height_mm * 1.05f;
    out.pierce_time_s = source.pierce_time_s * r;
  } else {  // thinner or the same; no guard against x == 0
    out.cut_speed_mm_min = source.cut_speed_mm_min * std::pow(1.0f / x, 0.7f);
    out.pierce_height_mm = source.pierce_height_mm * 0.95f;
    out.transfer_height_mm = source.transfer_height_mm * 0.98f;
    out.pierce_time_s = source.pierce_time_s * x;
  }
  return out;
}

InterpolationResultInternal PerformInterpolation(const CuttingParameter* lower,
                                                 const CuttingParameter* upper, float thickness) {
  InterpolationResultInternal result{};
  if (lower == nullptr && upper == nullptr) return result;

  if (lower != nullptr && upper != nullptr) {
    const float d = upper->thickness_mm - lower->thickness_mm;
    if (std::fabs(d) < kSpanFloor) {
      result.parameter = *lower;
      result.parameter.flags |= kFlagDerived;
      result.confidence = 1.0f;
      return result;
    }
    // A negative d divides by the floor on purpose.
    const float f = (thickness - lower->thickness_mm) / std::max(d, kSpanFloor);
    result.parameter = InterpolateLinear(*lower, *upper, thickness);
    result.confidence = 1.0f - std::fabs(std::clamp(f, 0.0f, 1.0f) - 0.5f) * 0.2f;
    return result;
  }

  const CuttingParameter& source = lower != nullptr ? *lower : *upper;
  result.parameter = ExtrapolateConservative(source, thickness);
  result.extrapolated = true;
  result.confidence = std::max(0.7f - std::fabs(thickness - source.thickness_mm) / 10.0f, 0.0f);
  return result;
}

}  // namespace Testing
}  // namespace Sparlane
