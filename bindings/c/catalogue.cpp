// Name tables and ids, the record table, the header, statistics and
// consumable sets.
#include <optional>
#include <string>

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

// The id of a name in one table; 0 for a NULL handle or name, or when
// memory runs out.
uint16_t IdOf(const sparlane_db_t* db, const char* name, size_t length,
              uint16_t (Database::*id_of)(const std::string&) const) {
  if (db == nullptr || !sparlane_c::IsName(name, length)) return 0;
  return sparlane_c::Query(uint16_t{0},
                           [&] { return (db->db.*id_of)(sparlane_c::Name(name, length)); });
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

uint16_t sparlane_db_vendor_id_n(const sparlane_db_t* db, const char* name, size_t name_length) {
  return IdOf(db, name, name_length, &Database::GetVendorId);
}

uint16_t sparlane_db_vendor_id(const sparlane_db_t* db, const char* name) {
  return sparlane_db_vendor_id_n(db, name, sparlane_c::LengthOf(name));
}

uint16_t sparlane_db_machine_id_n(const sparlane_db_t* db, const char* name, size_t name_length) {
  return IdOf(db, name, name_length, &Database::GetMachineId);
}

uint16_t sparlane_db_machine_id(const sparlane_db_t* db, const char* name) {
  return sparlane_db_machine_id_n(db, name, sparlane_c::LengthOf(name));
}

uint16_t sparlane_db_material_id_n(const sparlane_db_t* db, const char* name, size_t name_length) {
  return IdOf(db, name, name_length, &Database::GetMaterialId);
}

uint16_t sparlane_db_material_id(const sparlane_db_t* db, const char* name) {
  return sparlane_db_material_id_n(db, name, sparlane_c::LengthOf(name));
}

size_t sparlane_db_parameters(const sparlane_db_t* db, sparlane_parameter_list_t* out) {
  if (out == nullptr) return 0;
  *out = {nullptr, 0};
  if (db == nullptr) return 0;
  return sparlane_c::Query(size_t{0},
                           [&] { return sparlane_c::PutRecords(db->db.GetParameters(), out); });
}

int sparlane_db_file_header(const sparlane_db_t* db, sparlane_file_header_t* out) {
  if (db == nullptr) return SPARLANE_INVALID_PARAMETER;
  return sparlane_c::Calculate(out, [db] { return db->db.GetFileHeader(); });
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
