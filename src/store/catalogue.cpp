// Name listings, the accessors of the tables and header, and the statistics
// summary.
#include "store/store.h"

namespace Sparlane {

std::vector<std::string> Database::GetVendors() const {
  return impl_->names(NameKind::kVendor).names;
}
std::vector<std::string> Database::GetMachines() const {
  return impl_->names(NameKind::kMachine).names;
}
std::vector<std::string> Database::GetMaterials() const {
  return impl_->names(NameKind::kMaterial).names;
}

std::uint16_t Database::GetVendorId(const std::string& name) const {
  return impl_->names(NameKind::kVendor).IdOf(name);
}
std::uint16_t Database::GetMachineId(const std::string& name) const {
  return impl_->names(NameKind::kMachine).IdOf(name);
}
std::uint16_t Database::GetMaterialId(const std::string& name) const {
  return impl_->names(NameKind::kMaterial).IdOf(name);
}

std::vector<CuttingParameter> Database::GetParameters() const { return impl_->records(); }

FileHeader Database::GetFileHeader() const { return impl_->header(); }

DatabaseStats Database::GetStatistics() const {
  DatabaseStats stats{};
  const Store& s = *impl_;
  if (!s.loaded()) return stats;
  stats.parameter_count = static_cast<std::uint32_t>(s.records().size());
  const NameTableSizes names = s.name_table_sizes();
  stats.vendor_count = static_cast<std::uint32_t>(names.vendors);
  stats.machine_count = static_cast<std::uint32_t>(names.machines);
  stats.material_count = static_cast<std::uint32_t>(names.materials);
  stats.consumable_set_count = static_cast<std::uint32_t>(s.consumable_set_count());
  if (s.file() == nullptr || s.file()->view() == nullptr) return stats;
  stats.file_size_bytes = s.file()->size();
  const std::uint32_t compressed = s.header().stats_compressed_size;
  const std::uint32_t uncompressed = s.header().stats_uncompressed_size;
  stats.uncompressed_size = uncompressed;
  if (compressed != 0 && uncompressed != 0) {
    stats.compression_ratio = static_cast<float>(compressed) / static_cast<float>(uncompressed);
  }
  return stats;
}

}  // namespace Sparlane
