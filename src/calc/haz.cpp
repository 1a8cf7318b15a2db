// Width of the heat-affected zone beside the cut.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

constexpr float kMaxHazWidthMm = 3.0f;

// Amperes per metre-per-minute of travel; 1.0 when the record has no speed,
// so a bad record never divides by zero.
float HeatFigure(const CuttingParameter& param) {
  if (!(param.cut_speed_mm_min > 0.0f)) return 1.0f;
  return static_cast<float>(param.current_amps) / (param.cut_speed_mm_min / 1000.0f);
}

}  // namespace

HeatAffectedZone Database::CalculateHAZ(const CuttingParameter& param) {
  HeatAffectedZone zone = calc::ZeroFilled<HeatAffectedZone>();
  const float t = param.thickness_mm;
  const float heat = HeatFigure(param);
  const float width = std::min(heat * 0.001f + 0.5f + t * 0.02f, kMaxHazWidthMm);
  zone.haz_width_mm = width;
  zone.inner_zone_mm = width * 0.3f;
  zone.outer_zone_mm = width * 1.5f;
  zone.high_heat_input = t > 20.0f || heat > 100.0f;
  return zone;
}

}  // namespace Sparlane
