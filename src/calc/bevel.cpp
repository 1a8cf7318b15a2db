// How far the torch may tilt for bevel cuts on a plate of this thickness.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

constexpr float kMaxBevelDeg = 45.0f;
constexpr float kMinBevelDeg = 25.0f;

// Thicker plate allows less tilt, in three linear pieces.
float BevelAngleForThickness(float t) {
  if (t <= 6.0f) return 45.0f;
  if (t <= 12.0f) return 45.0f - (t - 6.0f) * 0.5f;
  if (t <= 25.0f) return 42.0f - (t - 12.0f) * 0.3f;
  return 38.0f - (t - 25.0f) * 0.2f;
}

// Higher current leaves a taller land; 200 A and up also allows 2 more degrees.
float LandHeight(unsigned current_amps) {
  if (current_amps >= 200) return 12.0f;
  if (current_amps >= 130) return 10.0f;
  if (current_amps >= 85) return 8.0f;
  return 6.0f;
}

}  // namespace

BevelLimits Database::GetBevelLimits(const CuttingParameter& param, const std::string& name) {
  static_cast<void>(name);  // accepted for the interface; the record alone decides
  BevelLimits limits = calc::ZeroFilled<BevelLimits>();
  const float t = param.thickness_mm;
  float a = std::min(BevelAngleForThickness(t), kMaxBevelDeg);
  a = std::max(a, kMinBevelDeg);
  limits.max_bevel_angle_deg = a;
  // Taken from the unraised angle, deliberately, even when 200 A raises it.
  limits.recommended_angle_deg = a - 5.0f;
  limits.max_land_height_mm = LandHeight(param.current_amps);
  if (param.current_amps >= 200) limits.max_bevel_angle_deg = std::min(a + 2.0f, kMaxBevelDeg);
  limits.bevel_supported = true;
  limits.thick_plate = t >= 6.0f;
  limits.very_thick_plate = t >= 10.0f;
  limits.angle_speed_coefficient = 0.015f;
  return limits;
}

}  // namespace Sparlane
