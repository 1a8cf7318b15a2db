// Rules for cutting two parts along one shared line.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

constexpr float kMaxCommonLineThickness = 12.0f;

}  // namespace

CommonLineRules Database::GetCommonLineRules(const CuttingParameter& param) {
  CommonLineRules rules = calc::ZeroFilled<CommonLineRules>();
  const float t = param.thickness_mm;
  const float k = param.kerf_width_mm;
  rules.max_thickness_mm = kMaxCommonLineThickness;
  rules.allowed = t <= kMaxCommonLineThickness;
  rules.requires_tabs = false;
  rules.tab_width_mm = std::max(t * 0.5f, 3.0f);
  if (t > 8.0f) {
    rules.min_segment_length_mm = t * 4.0f;
    rules.line_spacing_mm = k * 3.0f + 5.0f;
  } else {
    rules.min_segment_length_mm = std::max(t * 3.0f, 25.0f);
    rules.line_spacing_mm = k + k + 3.0f;
  }
  return rules;
}

}  // namespace Sparlane
