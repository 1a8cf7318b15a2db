// Slowdown at a corner: the sharper the corner, the slower the torch.
#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

// Piecewise linear in the corner angle; the pieces meet at 150, 90 and 45
// degrees: full speed for a straight line, 0.3 for a reversal.
float CornerSpeedFactor(float a) {
  if (a >= 150.0f) return 1.0f;
  if (a >= 90.0f) return (a - 90.0f) / 60.0f * 0.4f + 0.6f;
  if (a >= 45.0f) return (a - 45.0f) / 45.0f * 0.2f + 0.4f;
  return a / 45.0f * 0.1f + 0.3f;
}

}  // namespace

CornerSlowdown Database::CalculateCornerSlowdown(const CuttingParameter& param,
                                                 float corner_angle_deg) {
  CornerSlowdown corner = calc::ZeroFilled<CornerSlowdown>();
  const float t = param.thickness_mm;
  float a = corner_angle_deg;
  if (a > 180.0f) a = 180.0f;
  if (a < 0.0f) a = 0.0f;

  corner.speed_factor = CornerSpeedFactor(a);
  corner.decel_distance_mm = t + t;
  corner.slow_zone_mm = t * 3.0f;
  corner.accel_distance_mm = t + t;
  corner.sharp_corner = a < 30.0f;
  corner.sharp_corner_extension_mm = corner.sharp_corner ? t * 1.5f : 0.0f;
  return corner;
}

}  // namespace Sparlane
