#include "catalogue.h"

#include <algorithm>
#include <limits>

namespace slb {

Catalogue::Catalogue(const Sparlane::Database& db)
    : vendors_(db.GetVendors()), machines_(db.GetMachines()), materials_(db.GetMaterials()) {}

std::string Catalogue::NameOf(const std::vector<std::string>& names, std::uint16_t id) {
  if (id == 0 || id > names.size()) return std::string();
  return names[id - 1u];
}

std::optional<std::uint16_t> Catalogue::IdOf(const std::vector<std::string>& names,
                                             const std::string& name) {
  const std::size_t limit =
      std::min<std::size_t>(names.size(), std::numeric_limits<std::uint16_t>::max());
  for (std::size_t i = limit; i > 0; --i) {
    if (names[i - 1] == name) return static_cast<std::uint16_t>(i);
  }
  return std::nullopt;
}

std::vector<Sparlane::CuttingParameter> AllRecordsByMaterial(const Sparlane::Database& db,
                                                             const Catalogue& catalogue) {
  std::vector<Sparlane::CuttingParameter> records;
  const auto& materials = catalogue.Materials();
  for (std::size_t i = 0; i < materials.size(); ++i) {
    // A repeated material name resolves to its last id; list it once there.
    auto id = catalogue.MaterialId(materials[i]);
    if (!id || *id != i + 1) continue;
    auto of_material = db.FindByMaterial(materials[i]);
    records.insert(records.end(), of_material.begin(), of_material.end());
  }
  return records;
}

}  // namespace slb
