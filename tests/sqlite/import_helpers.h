// Running one import and capturing what it reports.
#ifndef SPARLANE_TESTS_SQLITE_IMPORT_HELPERS_H_
#define SPARLANE_TESTS_SQLITE_IMPORT_HELPERS_H_

#include <string>

#include "sparlane/sparlane.h"
#include "sqlite_fixture.h"

namespace sparlane_test {

struct ImportOutcome {
  Sparlane::ErrorCode code;
  std::string message;
  bool loaded;
};

inline ImportOutcome ImportPath(const std::string& path) {
  Sparlane::Database db;
  const Sparlane::ErrorCode code = db.ImportFromSQLite(path);
  return ImportOutcome{code, db.GetLastError(), db.IsLoaded()};
}

inline ImportOutcome Import(SqliteFile& file) {
  file.Close();
  return ImportPath(file.path());
}

}  // namespace sparlane_test

// The import failed with InvalidData and exactly this message, not loaded.
#define EXPECT_INVALID_DATA(outcome, text)                              \
  do {                                                                  \
    const ::sparlane_test::ImportOutcome o_ = (outcome);                \
    EXPECT_EQ(o_.code, ::Sparlane::ErrorCode::InvalidData);             \
    EXPECT_EQ(o_.message, std::string("SQLite import: ") + (text));     \
    EXPECT_FALSE(o_.loaded);                                            \
  } while (0)

#endif  // SPARLANE_TESTS_SQLITE_IMPORT_HELPERS_H_
