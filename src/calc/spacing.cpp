// Gap to leave between nested parts and at the sheet edge.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

// Thicker plate spreads more heat, so parts sit further apart.
float BaseGap(float t) {
  if (t < 3.0f) return 2.0f;
  if (t < 10.0f) return t * 0.5f;
  return t * 0.75f;
}

}  // namespace

PartSpacing Database::CalculatePartSpacing(const CuttingParameter& param) {
  PartSpacing spacing = calc::ZeroFilled<PartSpacing>();
  const float t = param.thickness_mm;
  const float k = param.kerf_width_mm;
  spacing.kerf_width_mm = k;
  spacing.base_gap_mm = BaseGap(t);
  spacing.min_spacing_mm = spacing.base_gap_mm + k;
  spacing.recommended_spacing_mm = spacing.min_spacing_mm + 2.0f;
  spacing.sheet_edge_margin_mm = std::max(t + t, 10.0f);
  return spacing;
}

}  // namespace Sparlane
