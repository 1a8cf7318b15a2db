// Adding machine models (with their vendors) and materials.
#include <string>

#include "store/store.h"

namespace Sparlane {

namespace {

constexpr std::size_t kMaxNameLength = 255;
// Ids are 16-bit; a table past this could not be referred to by a record.
constexpr std::size_t kMaxTableEntries = 65535;

ErrorCode TableFull(Store& s) {
  return s.Fail(ErrorCode::InvalidParameter, "Name table is full (65535 entries)");
}

}  // namespace

ErrorCode Database::AddMachine(const std::string& vendor, const std::string& model,
                               const std::string& /*unused*/) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, "Database not loaded");
  if (vendor.empty() || model.empty()) {
    return s.Fail(ErrorCode::InvalidParameter, "Vendor and model names cannot be empty");
  }
  if (vendor.size() > kMaxNameLength || model.size() > kMaxNameLength) {
    return s.Fail(ErrorCode::InvalidParameter, "Name exceeds maximum length");
  }
  if (s.names(NameKind::kMachine).Contains(model)) {
    return s.Fail(ErrorCode::AlreadyExists, "Machine model already exists: " + model);
  }
  // A vendor mapped to id 0 counts as unknown and is added again.
  const bool new_vendor = s.names(NameKind::kVendor).IdOf(vendor) == 0;
  if (s.names(NameKind::kMachine).names.size() >= kMaxTableEntries) return TableFull(s);
  if (new_vendor && s.names(NameKind::kVendor).names.size() >= kMaxTableEntries) {
    return TableFull(s);
  }
  if (new_vendor) s.AddName(NameKind::kVendor, vendor);
  s.AddName(NameKind::kMachine, model);
  return ErrorCode::Success;
}

ErrorCode Database::AddMaterial(const std::string& name) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, "Database not loaded");
  if (name.empty()) return s.Fail(ErrorCode::InvalidParameter, "Material name cannot be empty");
  if (name.size() > kMaxNameLength) {
    return s.Fail(ErrorCode::InvalidParameter, "Material name exceeds maximum length");
  }
  if (s.names(NameKind::kMaterial).Contains(name)) {
    return s.Fail(ErrorCode::AlreadyExists, "Material already exists: " + name);
  }
  if (s.names(NameKind::kMaterial).names.size() >= kMaxTableEntries) return TableFull(s);
  s.AddName(NameKind::kMaterial, name);
  return ErrorCode::Success;
}

}  // namespace Sparlane
