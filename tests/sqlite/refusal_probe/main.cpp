// Checks, through the installed-style shared library of a default build, that
// ImportFromSQLite refuses with the fixed message and touches nothing.
// Built and run by scripts/stages/50-sqlite.sh; exit status 0 means refused.
#include <sys/stat.h>

#include <cstdio>
#include <string>

#include "sparlane/sparlane.h"

namespace {

int failures = 0;

void Check(bool ok, const char* what) {
  if (!ok) {
    std::fprintf(stderr, "sqlite refusal probe: %s\n", what);
    ++failures;
  }
}

bool Exists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string missing = argc > 1 ? argv[1] : "sparlane_refusal_probe_missing.db";
  std::remove(missing.c_str());
  const std::string message = "SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON";

  Sparlane::Database db;
  Check(db.ImportFromSQLite(missing) == Sparlane::ErrorCode::NotLoaded, "code is not NotLoaded");
  Check(db.GetLastError() == message, "message differs");
  Check(!db.IsLoaded(), "database counts as loaded");
  Check(!Exists(missing), "a file was created");

  Check(db.Create() == Sparlane::ErrorCode::Success, "Create failed");
  Check(db.AddMaterial("Kept") == Sparlane::ErrorCode::Success, "AddMaterial failed");
  Check(db.ImportFromSQLite("") == Sparlane::ErrorCode::NotLoaded, "empty path not refused");
  Check(db.IsLoaded(), "refusal closed the database");
  Check(db.GetMaterials().size() == 1, "refusal changed the store");
  if (failures == 0) std::printf("ImportFromSQLite refuses in this build\n");
  return failures == 0 ? 0 : 1;
}
