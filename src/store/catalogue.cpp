// Name listings and the statistics summary.
#include "store/database_impl.h"

namespace Sparlane {

std::vector<std::string> Database::GetVendors() const { return impl_->vendors; }
std::vector<std::string> Database::GetMachines() const { return impl_->machines; }
std::vector<std::string> Database::GetMaterials() const { return impl_->materials; }

DatabaseStats Database::GetStatistics() const {
  DatabaseStats stats{};
  const DatabaseImpl& d = *impl_;
  if (!d.loaded) return stats;
  stats.parameter_count = static_cast<std::uint32_t>(d.parameters.size());
  stats.vendor_count = static_cast<std::uint32_t>(d.vendors.size());
  stats.machine_count = static_cast<std::uint32_t>(d.machines.size());
  stats.material_count = static_cast<std::uint32_t>(d.materials.size());
  stats.consumable_set_count = static_cast<std::uint32_t>(d.consumable_sets.size());
  if (!d.mapped_file || d.mapped_file->view() == nullptr) return stats;
  stats.file_size_bytes = d.mapped_file->size();
  const std::uint32_t compressed = d.header.stats_compressed_size;
  const std::uint32_t uncompressed = d.header.stats_uncompressed_size;
  stats.uncompressed_size = uncompressed;
  if (compressed != 0 && uncompressed != 0) {
    stats.compression_ratio = static_cast<float>(compressed) / static_cast<float>(uncompressed);
  }
  return stats;
}

}  // namespace Sparlane
