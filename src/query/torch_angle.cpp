// A tilted torch: the path through the plate is longer than the plate is
// thick.  std::cos and std::pow take their float overloads.
#include <cmath>

#include "sparlane/database.h"
#include "sparlane/testing.h"

namespace Sparlane {

namespace {

constexpr float kPi = 3.1415927f;

float CosineOfDegrees(float angle_degrees) { return std::cos(angle_degrees * kPi / 180.0f); }

}  // namespace

namespace Testing {

// Near 90 degrees it gives up and returns the base (the effective thickness
// below caps instead).
CuttingParameter AdjustForTorchAngle(const CuttingParameter& base, float angle_degrees) {
  if (angle_degrees < 0.001f) return base;
  const float k = CosineOfDegrees(angle_degrees);
  if (k < 0.01f) return base;
  CuttingParameter out = base;
  out.thickness_mm = base.thickness_mm / k;
  out.cut_speed_mm_min = base.cut_speed_mm_min * std::pow(k, 0.5f);
  out.pierce_time_s = base.pierce_time_s / k;
  out.flags = base.flags | kFlagAngleAdjusted;
  return out;
}

}  // namespace Testing

float Database::CalculateEffectiveThickness(float thickness, float angle_degrees) {
  if (thickness <= 0.0f) return 0.0f;
  if (angle_degrees < 0.0f || angle_degrees > 90.0f) return thickness;
  const float k = CosineOfDegrees(angle_degrees);
  if (k < 0.01f) return thickness * 100.0f;
  return thickness / k;
}

}  // namespace Sparlane
