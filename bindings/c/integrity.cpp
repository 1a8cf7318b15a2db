// Whole-database validation.
#include "handle.h"

extern "C" {

int sparlane_db_validate(sparlane_db_t* db) {
  return sparlane_c::Fallible(db, [](Sparlane::Database& d) { return d.Validate(); });
}

}  // extern "C"
