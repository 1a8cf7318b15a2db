// Edge-quality profiles: slower cutting buys smoother, more accurate edges.
#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {

EdgeQualityProfile Database::GetQualityProfile(const CuttingParameter& param,
                                               QualityLevel level) {
  EdgeQualityProfile profile = calc::ZeroFilled<EdgeQualityProfile>();
  const float t = param.thickness_mm;
  // Unknown levels are echoed back with every figure left at zero.
  profile.level = level;
  switch (level) {
    case QualityLevel::Production:
      profile.speed_factor = 1.0f;
      profile.current_factor = 1.0f;
      profile.surface_roughness_um = t + t + 25.0f;
      profile.tolerance_mm = t * 0.02f + 0.5f;
      profile.max_bevel_deg = t * 0.1f + 3.0f;
      break;
    case QualityLevel::Standard:
      profile.speed_factor = 0.85f;
      profile.current_factor = 0.95f;
      profile.surface_roughness_um = t * 1.5f + 15.0f;
      profile.tolerance_mm = t * 0.015f + 0.3f;
      profile.max_bevel_deg = t * 0.08f + 2.0f;
      break;
    case QualityLevel::Fine:
      profile.speed_factor = 0.7f;
      profile.current_factor = 0.9f;
      profile.surface_roughness_um = t + 10.0f;
      profile.tolerance_mm = t * 0.01f + 0.2f;
      profile.max_bevel_deg = t * 0.05f + 1.5f;
      break;
    case QualityLevel::Precision:
      profile.speed_factor = 0.5f;
      profile.current_factor = 0.85f;
      profile.surface_roughness_um = t * 0.5f + 6.0f;
      profile.tolerance_mm = t * 0.005f + 0.1f;
      profile.max_bevel_deg = t * 0.03f + 1.0f;
      break;
  }
  return profile;
}

}  // namespace Sparlane
