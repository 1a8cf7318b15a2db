// Settings for holes that are small compared with the plate thickness.
#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {

SmallHoleParams Database::GetSmallHoleParams(const CuttingParameter& param,
                                             float hole_diameter_mm) {
  SmallHoleParams hole = calc::ZeroFilled<SmallHoleParams>();
  const float t = param.thickness_mm;
  const float d = hole_diameter_mm;
  hole.min_diameter_mm = param.kerf_width_mm * 1.5f;
  hole.lead_in_max_mm = t + t;
  hole.hole_flag_reserved = false;
  const float ratio = d / t;

  // Narrower than the kerf allows: cannot be cut at all.
  if (hole.min_diameter_mm > d) {
    hole.speed_factor = 0.0f;
    hole.current_factor = 0.0f;
    hole.small_hole = true;
    hole.very_small_hole = true;
    return hole;
  }
  // A ratio on a bound takes the higher factors; an infinite or NaN ratio
  // (zero thickness) fails every test and gets full settings.
  if (ratio < 1.0f) {
    hole.speed_factor = 0.4f;
    hole.current_factor = 0.7f;
    hole.small_hole = true;
    hole.very_small_hole = true;
  } else if (ratio < 1.5f) {
    hole.speed_factor = 0.5f;
    hole.current_factor = 0.8f;
    hole.small_hole = true;
  } else if (ratio < 2.0f) {
    hole.speed_factor = 0.6f;
    hole.current_factor = 0.9f;
  } else {
    hole.speed_factor = 1.0f;
    hole.current_factor = 1.0f;
  }
  return hole;
}

}  // namespace Sparlane
