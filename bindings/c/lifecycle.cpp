// Handles: making and releasing them, Create, Close and the last error.
#include <new>

#include "handle.h"

extern "C" {

sparlane_db_t* sparlane_db_create(void) {
  try {
    return new sparlane_db();
  } catch (...) {
    return nullptr;
  }
}

void sparlane_db_destroy(sparlane_db_t* db) { delete db; }

int sparlane_db_create_empty(sparlane_db_t* db) {
  return sparlane_c::Fallible(db, [](Sparlane::Database& d) { return d.Create(); });
}

void sparlane_db_close(sparlane_db_t* db) {
  if (db != nullptr) db->db.Close();
}

int sparlane_db_is_loaded(const sparlane_db_t* db) {
  return db != nullptr && db->db.IsLoaded() ? 1 : 0;
}

const char* sparlane_db_last_error(const sparlane_db_t* db) {
  return db != nullptr ? db->message() : "";
}

}  // extern "C"
