// Loading, importing and saving parameter files.
#include "handle.h"

using Sparlane::Database;
using sparlane_c::WithPath;

extern "C" {

int sparlane_db_load(sparlane_db_t* db, const char* path) {
  return WithPath(db, path, [](Database& d, const std::string& p) { return d.LoadFromBinary(p); });
}

int sparlane_db_import_sqlite(sparlane_db_t* db, const char* path) {
  return WithPath(db, path,
                  [](Database& d, const std::string& p) { return d.ImportFromSQLite(p); });
}

int sparlane_db_save(sparlane_db_t* db, const char* path, int compression) {
  return WithPath(db, path, [compression](Database& d, const std::string& p) {
    return d.SaveToBinary(p, static_cast<Sparlane::CompressionType>(compression));
  });
}

}  // extern "C"
