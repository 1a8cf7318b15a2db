// Adding, replacing, deleting and sorting parameter records.
#include <string>

#include "store/store.h"

namespace Sparlane {

namespace {

const char kNotLoaded[] = "Database not loaded";

ErrorCode OutOfRange(Store& s, std::uint32_t id) {
  return s.Fail(ErrorCode::InvalidParameter, "Parameter ID out of range: " + std::to_string(id));
}

// Success, or InvalidParameter with the store check's message.
ErrorCode CheckRecord(Store& s, const CuttingParameter& p) {
  const RecordRule* broken = FirstBrokenRule(RecordCheck::kStore, p, s.name_table_sizes());
  if (broken == nullptr) return ErrorCode::Success;
  return s.Fail(ErrorCode::InvalidParameter, broken->failure);
}

}  // namespace

// Appends without rebuilding the record indexes, so bulk additions stay
// linear; the new record is found by index-driven queries after the next
// rebuild.
ErrorCode Database::AddParameter(const CuttingParameter& param) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, kNotLoaded);
  const ErrorCode check = CheckRecord(s, param);
  if (check != ErrorCode::Success) return check;
  s.Append(param);
  return ErrorCode::Success;
}

ErrorCode Database::UpdateParameter(std::uint32_t id, const CuttingParameter& param) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, kNotLoaded);
  if (id >= s.records().size()) return OutOfRange(s, id);
  const ErrorCode check = CheckRecord(s, param);
  if (check != ErrorCode::Success) return check;
  s.Overwrite(id, param);
  return ErrorCode::Success;
}

ErrorCode Database::DeleteParameter(std::uint32_t id) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, kNotLoaded);
  if (id >= s.records().size()) return OutOfRange(s, id);
  s.Erase(id);
  s.CountRecordsInHeader();
  return ErrorCode::Success;
}

ErrorCode Database::SortParameters() {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, kNotLoaded);
  s.SortRecords();
  return ErrorCode::Success;
}

}  // namespace Sparlane
