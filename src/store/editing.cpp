// Adding, replacing and deleting parameter records.
#include <string>

#include "store/indexes.h"
#include "store/record_check.h"

namespace Sparlane {

namespace {

const char kNotLoaded[] = "Database not loaded";

ErrorCode OutOfRange(DatabaseImpl& d, std::uint32_t id) {
  return d.Fail(ErrorCode::InvalidParameter, "Parameter ID out of range: " + std::to_string(id));
}

}  // namespace

// Appends without rebuilding the record indexes, so bulk additions stay
// linear; the new record is found by index-driven queries after the next
// rebuild.
ErrorCode Database::AddParameter(const CuttingParameter& param) {
  DatabaseImpl& d = *impl_;
  if (!d.loaded) return d.Fail(ErrorCode::NotLoaded, kNotLoaded);
  const ErrorCode check = CheckRecord(d, param);
  if (check != ErrorCode::Success) return check;
  d.parameters.push_back(param);
  PairIndexAppended(d);
  return ErrorCode::Success;
}

ErrorCode Database::UpdateParameter(std::uint32_t id, const CuttingParameter& param) {
  DatabaseImpl& d = *impl_;
  if (!d.loaded) return d.Fail(ErrorCode::NotLoaded, kNotLoaded);
  if (id >= d.parameters.size()) return OutOfRange(d, id);
  const ErrorCode check = CheckRecord(d, param);
  if (check != ErrorCode::Success) return check;
  d.parameters[id] = param;
  RebuildRecordIndexes(d);
  return ErrorCode::Success;
}

ErrorCode Database::DeleteParameter(std::uint32_t id) {
  DatabaseImpl& d = *impl_;
  if (!d.loaded) return d.Fail(ErrorCode::NotLoaded, kNotLoaded);
  if (id >= d.parameters.size()) return OutOfRange(d, id);
  d.parameters.erase(d.parameters.begin() + id);
  d.header.parameter_count = static_cast<std::uint32_t>(d.parameters.size());
  RebuildRecordIndexes(d);
  return ErrorCode::Success;
}

}  // namespace Sparlane
