// Adding, replacing and deleting records and names.
#include "handle.h"
#include "mirror.h"

using Sparlane::Database;
using sparlane_c::Fallible;
using sparlane_c::IsName;
using sparlane_c::LengthOf;
using sparlane_c::Name;

extern "C" {

int sparlane_db_add_parameter(sparlane_db_t* db, const sparlane_parameter_t* param) {
  if (db != nullptr && param == nullptr) {
    return db->Fail(SPARLANE_INVALID_PARAMETER, sparlane_c::kNullRecord);
  }
  return Fallible(db, [param](Database& d) { return d.AddParameter(sparlane_c::ToCpp(*param)); });
}

int sparlane_db_update_parameter(sparlane_db_t* db, uint32_t id,
                                 const sparlane_parameter_t* param) {
  if (db != nullptr && param == nullptr) {
    return db->Fail(SPARLANE_INVALID_PARAMETER, sparlane_c::kNullRecord);
  }
  return Fallible(
      db, [id, param](Database& d) { return d.UpdateParameter(id, sparlane_c::ToCpp(*param)); });
}

int sparlane_db_delete_parameter(sparlane_db_t* db, uint32_t id) {
  return Fallible(db, [id](Database& d) { return d.DeleteParameter(id); });
}

int sparlane_db_add_machine_n(sparlane_db_t* db, const char* vendor, size_t vendor_length,
                              const char* model, size_t model_length, const char* unused,
                              size_t unused_length) {
  const bool given =
      IsName(vendor, vendor_length) && IsName(model, model_length) && IsName(unused, unused_length);
  return sparlane_c::WithNames(db, given, [&](Database& d) {
    return d.AddMachine(Name(vendor, vendor_length), Name(model, model_length),
                        Name(unused, unused_length));
  });
}

int sparlane_db_add_machine(sparlane_db_t* db, const char* vendor, const char* model,
                            const char* unused) {
  return sparlane_db_add_machine_n(db, vendor, LengthOf(vendor), model, LengthOf(model), unused,
                                   sparlane_c::OptionalLengthOf(unused));
}

int sparlane_db_add_material_n(sparlane_db_t* db, const char* name, size_t name_length) {
  return sparlane_c::WithNames(db, IsName(name, name_length),
                               [&](Database& d) { return d.AddMaterial(Name(name, name_length)); });
}

int sparlane_db_add_material(sparlane_db_t* db, const char* name) {
  return sparlane_db_add_material_n(db, name, LengthOf(name));
}

}  // extern "C"
