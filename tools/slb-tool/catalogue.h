// The name tables of a database, for turning ids into names and back.
#ifndef SLB_TOOL_CATALOGUE_H_
#define SLB_TOOL_CATALOGUE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "sparlane/sparlane.h"

namespace slb {

class Catalogue {
 public:
  explicit Catalogue(const Sparlane::Database& db);

  // The name of a 1-based id; empty for 0 or an id past the table.
  std::string Vendor(std::uint16_t id) const { return NameOf(vendors_, id); }
  std::string Machine(std::uint16_t id) const { return NameOf(machines_, id); }
  std::string Material(std::uint16_t id) const { return NameOf(materials_, id); }

  // The id the library resolves a name to: a repeated name takes the id of
  // its last occurrence, as the library's name maps do.
  std::optional<std::uint16_t> MachineId(const std::string& name) const {
    return IdOf(machine_ids_, name);
  }
  std::optional<std::uint16_t> MaterialId(const std::string& name) const {
    return IdOf(material_ids_, name);
  }

  const std::vector<std::string>& Vendors() const { return vendors_; }
  const std::vector<std::string>& Machines() const { return machines_; }
  const std::vector<std::string>& Materials() const { return materials_; }

 private:
  using IdMap = std::unordered_map<std::string, std::uint16_t>;

  static std::string NameOf(const std::vector<std::string>& names, std::uint16_t id);
  static IdMap IdsOf(const std::vector<std::string>& names);
  static std::optional<std::uint16_t> IdOf(const IdMap& ids, const std::string& name);

  std::vector<std::string> vendors_;
  std::vector<std::string> machines_;
  std::vector<std::string> materials_;
  IdMap machine_ids_;
  IdMap material_ids_;
};

// Every record of the database with a known material, in table order per
// material.  The public API has no listing of all records; this is the
// closest it offers.
std::vector<Sparlane::CuttingParameter> AllRecordsByMaterial(const Sparlane::Database& db,
                                                             const Catalogue& catalogue);

}  // namespace slb

#endif  // SLB_TOOL_CATALOGUE_H_
