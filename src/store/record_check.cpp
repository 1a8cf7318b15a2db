#include "store/record_check.h"

#include "store/record_fields.h"

namespace Sparlane {

namespace {

bool IdInTable(std::uint16_t id, std::size_t table_size) { return id != 0 && id <= table_size; }

}  // namespace

ErrorCode CheckRecord(DatabaseImpl& impl, const CuttingParameter& p) {
  const ErrorCode bad = ErrorCode::InvalidParameter;
  if (!AllFloatFieldsFinite(p)) {
    return impl.Fail(bad, "Parameter contains invalid float value (NaN or Inf)");
  }
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
