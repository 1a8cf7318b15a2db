// Name tables, statistics and consumable sets.
#include <optional>

#include "handle.h"
#include "lists.h"
#include "mirror.h"

using Sparlane::Database;

namespace {

// Copies one name table into *out; the empty list for a NULL handle or
// when memory runs out.
template <typename Read>
size_t Names(const sparlane_db_t* db, sparlane_name_list_t* out, Read&& read) {
  if (out == nullptr) return 0;
  *out = {nullptr, 0};
  if (db == nullptr) return 0;
  return sparlane_c::Query(size_t{0}, [&] { return sparlane_c::PutNames(read(db->db), out); });
}

}  // namespace

extern "C" {

size_t sparlane_db_vendors(const sparlane_db_t* db, sparlane_name_list_t* out) {
  return Names(db, out, [](const Database& d) { return d.GetVendors(); });
}

size_t sparlane_db_machines(const sparlane_db_t* db, sparlane_name_list_t* out) {
  return Names(db, out, [](const Database& d) { return d.GetMachines(); });
}

size_t sparlane_db_materials(const sparlane_db_t* db, sparlane_name_list_t* out) {
  return Names(db, out, [](const Database& d) { return d.GetMaterials(); });
}

int sparlane_db_statistics(const sparlane_db_t* db, sparlane_database_stats_t* out) {
  if (db == nullptr) return SPARLANE_INVALID_PARAMETER;
  return sparlane_c::Calculate(out, [db] { return db->db.GetStatistics(); });
}

int sparlane_db_consumable_set(const sparlane_db_t* db, uint16_t set_id,
                               sparlane_consumable_set_t* out) {
  if (out == nullptr) return 0;
  using Set = std::optional<Sparlane::ConsumableSet>;
  const Set found = sparlane_c::Query(Set(), [&]() -> Set {
    if (db == nullptr) return {};
    return db->db.GetConsumableSet(set_id);
  });
  return sparlane_c::PutFound(found, out);
}

}  // extern "C"
