// The name tables of a database, for turning ids into names and back.
#ifndef SLB_TOOL_CATALOGUE_H_
#define SLB_TOOL_CATALOGUE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace slb {

// Reads db's names once; db must outlive the catalogue.
class Catalogue {
 public:
  explicit Catalogue(const Sparlane::Database& db);

  // The name of a 1-based id; empty for 0 or an id past the table.
  std::string Vendor(std::uint16_t id) const { return NameOf(vendors_, id); }
  std::string Machine(std::uint16_t id) const { return NameOf(machines_, id); }
  std::string Material(std::uint16_t id) const { return NameOf(materials_, id); }

  // The id the library's queries resolve a name to (Database::GetMachineId
  // and GetMaterialId); nullopt for a name they do not know.
  std::optional<std::uint16_t> MachineId(const std::string& name) const;
  std::optional<std::uint16_t> MaterialId(const std::string& name) const;

 private:
  static std::string NameOf(const std::vector<std::string>& names, std::uint16_t id);

  const Sparlane::Database& db_;
  std::vector<std::string> vendors_;
  std::vector<std::string> machines_;
  std::vector<std::string> materials_;
};

}  // namespace slb

#endif  // SLB_TOOL_CATALOGUE_H_
