#include "catalogue.h"

namespace slb {
namespace {

std::optional<std::uint16_t> Known(std::uint16_t id) {
  if (id == 0) return std::nullopt;
  return id;
}

}  // namespace

Catalogue::Catalogue(const Sparlane::Database& db)
    : db_(db),
      vendors_(db.GetVendors()),
      machines_(db.GetMachines()),
      materials_(db.GetMaterials()) {}

std::string Catalogue::NameOf(const std::vector<std::string>& names, std::uint16_t id) {
  if (id == 0 || id > names.size()) return std::string();
  return names[id - 1u];
}

std::optional<std::uint16_t> Catalogue::MachineId(const std::string& name) const {
  return Known(db_.GetMachineId(name));
}

std::optional<std::uint16_t> Catalogue::MaterialId(const std::string& name) const {
  return Known(db_.GetMaterialId(name));
}

}  // namespace slb
