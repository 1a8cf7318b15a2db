#include "store/record_check.h"

#include <cmath>

namespace Sparlane {

namespace {

bool AllFloatsFinite(const CuttingParameter& p) {
  const float fields[] = {p.thickness_mm,       p.cut_speed_mm_min,   p.cut_height_mm,
                          p.pierce_height_mm,   p.transfer_height_mm, p.arc_voltage_v,
                          p.pierce_time_s,      p.kerf_width_mm};
  for (float f : fields) {
    if (!std::isfinite(f)) return false;
  }
  return true;
}

bool IdInTable(std::uint16_t id, std::size_t table_size) { return id != 0 && id <= table_size; }

}  // namespace

ErrorCode CheckRecord(DatabaseImpl& impl, const CuttingParameter& p) {
  const ErrorCode bad = ErrorCode::InvalidParameter;
  if (!AllFloatsFinite(p)) return impl.Fail(bad, "Parameter contains invalid float value (NaN or Inf)");
  if (p.thickness_mm <= 0) return impl.Fail(bad, "Material thickness must be positive");
  if (p.cut_speed_mm_min <= 0) return impl.Fail(bad, "Cut speed must be positive");
  if (p.current_amps == 0) return impl.Fail(bad, "Process current must be non-zero");
  if (!IdInTable(p.vendor_id, impl.vendors.size())) return impl.Fail(bad, "Invalid vendor ID");
  if (!IdInTable(p.machine_model_id, impl.machines.size())) {
    return impl.Fail(bad, "Invalid machine model ID");
  }
  if (!IdInTable(p.material_id, impl.materials.size())) return impl.Fail(bad, "Invalid material ID");
  return ErrorCode::Success;
}

}  // namespace Sparlane
