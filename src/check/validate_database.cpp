// Database::Validate: header checksum, record count, every record, then the
// two record indexes.  The first finding wins; nothing is repaired.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "file/header_checksum.h"
#include "store/database_impl.h"

namespace Sparlane {
namespace {

// Only these five; transfer height, pierce time and kerf width are
// deliberately not part of the float test here.
bool HasNonFiniteCoreField(const CuttingParameter& p) {
  return !std::isfinite(p.thickness_mm) || !std::isfinite(p.cut_speed_mm_min) ||
         !std::isfinite(p.cut_height_mm) || !std::isfinite(p.pierce_height_mm) ||
         !std::isfinite(p.arc_voltage_v);
}

bool IdOutOfTable(std::uint16_t id, std::size_t table_size) {
  return id == 0 || id > table_size;
}

// first + count <= record_count, without wrapping.
bool SpanFits(std::uint64_t first, std::uint64_t count, std::uint64_t record_count) {
  return count <= record_count && first <= record_count - count;
}

ErrorCode CheckRecord(DatabaseImpl& impl, const CuttingParameter& p, std::size_t i) {
  // Built only for a finding: a passing record costs no allocation.
  auto where = [i] { return " in parameter " + std::to_string(i); };
  if (IdOutOfTable(p.vendor_id, impl.vendors.size())) {
    return impl.Fail(ErrorCode::InvalidData,
                     "Invalid vendor_id " + std::to_string(p.vendor_id) + where());
  }
  if (IdOutOfTable(p.machine_model_id, impl.machines.size())) {
    return impl.Fail(ErrorCode::InvalidData,
                     "Invalid machine_model_id " + std::to_string(p.machine_model_id) + where());
  }
  if (IdOutOfTable(p.material_id, impl.materials.size())) {
    return impl.Fail(ErrorCode::InvalidData,
                     "Invalid material_id " + std::to_string(p.material_id) + where());
  }
  if (HasNonFiniteCoreField(p)) {
    return impl.Fail(ErrorCode::InvalidData, "Invalid float value (NaN or Inf)" + where());
  }
  if (!(p.thickness_mm > 0.0f) || p.thickness_mm > 500.0f) {
    return impl.Fail(ErrorCode::InvalidData, "Thickness out of range" + where());
  }
  if (!(p.cut_speed_mm_min > 0.0f) || p.cut_speed_mm_min > 100000.0f) {
    return impl.Fail(ErrorCode::InvalidData, "Cut speed out of range" + where());
  }
  return ErrorCode::Success;
}

ErrorCode CheckIndexes(DatabaseImpl& impl) {
  const std::uint64_t record_count = impl.parameters.size();
  for (const auto& entry : impl.material_ranges) {
    for (const ThicknessBucket& bucket : entry.second) {
      if (!SpanFits(bucket.first, bucket.count, record_count)) {
        return impl.Fail(ErrorCode::InvalidData, "Thickness index points beyond parameter array");
      }
    }
  }
  for (const auto& entry : impl.machine_records) {
    if (!SpanFits(entry.second.first, entry.second.count, record_count)) {
      return impl.Fail(ErrorCode::InvalidData, "Machine index points beyond parameter array");
    }
  }
  return ErrorCode::Success;
}

}  // namespace

ErrorCode Database::Validate() const {
  // The last-error text is the only thing written; it is mutable state of the
  // body by design.
  DatabaseImpl& impl = *impl_;
  if (!impl.loaded) return impl.Fail(ErrorCode::NotLoaded, "Database not loaded");

  const bool from_file = impl.mapped_file && impl.mapped_file->view() != nullptr;
  if (from_file && HeaderChecksum(impl.header) != impl.header.header_crc32) {
    return impl.Fail(ErrorCode::ChecksumMismatch, "Header checksum mismatch");
  }

  if (impl.parameters.size() != impl.header.parameter_count) {
    return impl.Fail(ErrorCode::InvalidData,
                     "Parameter count mismatch: header says " +
                         std::to_string(impl.header.parameter_count) + ", actual is " +
                         std::to_string(impl.parameters.size()));
  }

  for (std::size_t i = 0; i < impl.parameters.size(); ++i) {
    ErrorCode code = CheckRecord(impl, impl.parameters[i], i);
    if (code != ErrorCode::Success) return code;
  }
  return CheckIndexes(impl);
}

}  // namespace Sparlane
