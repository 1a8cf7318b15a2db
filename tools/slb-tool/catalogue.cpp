#include "catalogue.h"

#include <algorithm>
#include <limits>

namespace slb {

Catalogue::Catalogue(const Sparlane::Database& db)
    : vendors_(db.GetVendors()),
      machines_(db.GetMachines()),
      materials_(db.GetMaterials()),
      machine_ids_(IdsOf(machines_)),
      material_ids_(IdsOf(materials_)) {}

std::string Catalogue::NameOf(const std::vector<std::string>& names, std::uint16_t id) {
  if (id == 0 || id > names.size()) return std::string();
  return names[id - 1u];
}

Catalogue::IdMap Catalogue::IdsOf(const std::vector<std::string>& names) {
  // Ids are 16-bit; names past 65535 cannot be referred to.
  const std::size_t limit =
      std::min<std::size_t>(names.size(), std::numeric_limits<std::uint16_t>::max());
  IdMap ids;
  ids.reserve(limit);
  for (std::size_t i = 0; i < limit; ++i) ids[names[i]] = static_cast<std::uint16_t>(i + 1);
  return ids;
}

std::optional<std::uint16_t> Catalogue::IdOf(const IdMap& ids, const std::string& name) {
  const auto it = ids.find(name);
  if (it == ids.end()) return std::nullopt;
  return it->second;
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
