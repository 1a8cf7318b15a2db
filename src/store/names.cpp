// Adding machine models (with their vendors) and materials.
#include <string>

#include "store/indexes.h"

namespace Sparlane {

namespace {

constexpr std::size_t kMaxNameLength = 255;
// Ids are 16-bit; a table past this could not be referred to by a record.
constexpr std::size_t kMaxTableEntries = 65535;

ErrorCode TableFull(DatabaseImpl& d) {
  return d.Fail(ErrorCode::InvalidParameter, "Name table is full (65535 entries)");
}

std::uint16_t Append(std::vector<std::string>& table, NameIndex& index, const std::string& name) {
  table.push_back(name);
  const auto id = static_cast<std::uint16_t>(table.size());
  index[name] = id;
  return id;
}

}  // namespace

ErrorCode Database::AddMachine(const std::string& vendor, const std::string& model,
                               const std::string& /*unused*/) {
  DatabaseImpl& d = *impl_;
  if (!d.loaded) return d.Fail(ErrorCode::NotLoaded, "Database not loaded");
  if (vendor.empty() || model.empty()) {
    return d.Fail(ErrorCode::InvalidParameter, "Vendor and model names cannot be empty");
  }
  if (vendor.size() > kMaxNameLength || model.size() > kMaxNameLength) {
    return d.Fail(ErrorCode::InvalidParameter, "Name exceeds maximum length");
  }
  if (d.machine_ids.count(model) != 0) {
    return d.Fail(ErrorCode::AlreadyExists, "Machine model already exists: " + model);
  }
  const bool new_vendor = ResolveName(d.vendor_ids, vendor) == 0;
  if (d.machines.size() >= kMaxTableEntries) return TableFull(d);
  if (new_vendor && d.vendors.size() >= kMaxTableEntries) return TableFull(d);
  if (new_vendor) Append(d.vendors, d.vendor_ids, vendor);
  Append(d.machines, d.machine_ids, model);
  return ErrorCode::Success;
}

ErrorCode Database::AddMaterial(const std::string& name) {
  DatabaseImpl& d = *impl_;
  if (!d.loaded) return d.Fail(ErrorCode::NotLoaded, "Database not loaded");
  if (name.empty()) return d.Fail(ErrorCode::InvalidParameter, "Material name cannot be empty");
  if (name.size() > kMaxNameLength) {
    return d.Fail(ErrorCode::InvalidParameter, "Material name exceeds maximum length");
  }
  if (d.material_ids.count(name) != 0) {
    return d.Fail(ErrorCode::AlreadyExists, "Material already exists: " + name);
  }
  if (d.materials.size() >= kMaxTableEntries) return TableFull(d);
  Append(d.materials, d.material_ids, name);
  return ErrorCode::Success;
}

}  // namespace Sparlane
