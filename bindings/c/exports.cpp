// CSV and JSON exports.
#include "handle.h"

using Sparlane::Database;
using sparlane_c::WithPath;

extern "C" {

int sparlane_db_export_csv(sparlane_db_t* db, const char* path) {
  return WithPath(db, path, [](Database& d, const std::string& p) { return d.ExportToCSV(p); });
}

int sparlane_db_export_json(sparlane_db_t* db, const char* path) {
  return WithPath(db, path, [](Database& d, const std::string& p) { return d.ExportToJSON(p); });
}

}  // extern "C"
