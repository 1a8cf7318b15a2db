// Testing::ValidateParameter: the strict physical-range check of one record.
// Its limits are tighter than Validate's on purpose (300 mm, 20000 mm/min).
#include "sparlane/sparlane.h"
#include "store/record_fields.h"

namespace Sparlane {
namespace Testing {
namespace {

bool AnyHeightOrTimeNegative(const CuttingParameter& p) {
  return p.cut_height_mm < 0.0f || p.pierce_height_mm < 0.0f || p.transfer_height_mm < 0.0f ||
         p.pierce_time_s < 0.0f || p.kerf_width_mm < 0.0f;
}

}  // namespace

ErrorCode ValidateParameter(const CuttingParameter& p) {
  const ErrorCode bad = ErrorCode::InvalidParameter;
  if (!AllFloatFieldsFinite(p)) return bad;
  if (p.vendor_id == 0 || p.machine_model_id == 0 || p.material_id == 0) return bad;
  if (p.thickness_mm < 0.1f || p.thickness_mm > 300.0f) return bad;
  if (p.cut_speed_mm_min < 10.0f || p.cut_speed_mm_min > 20000.0f) return bad;
  if (p.current_amps == 0 || p.current_amps > 1000) return bad;
  if (p.arc_voltage_v < 20.0f || p.arc_voltage_v > 300.0f) return bad;
  if (AnyHeightOrTimeNegative(p)) return bad;
  // The torch pierces at least as high as it cuts.
  if (p.cut_height_mm > p.pierce_height_mm) return bad;
  return ErrorCode::Success;
}

}  // namespace Testing
}  // namespace Sparlane
