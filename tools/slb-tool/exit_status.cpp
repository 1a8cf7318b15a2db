#include "exit_status.h"

#include <cstdio>

namespace slb {

int Fail(const std::string& message) {
  std::fprintf(stderr, "slb-tool: %s\n", message.c_str());
  return kExitFailure;
}

int FailWithLibraryError(const Sparlane::Database& db) { return Fail(db.GetLastError()); }

void Warn(const std::string& message) {
  std::fprintf(stderr, "slb-tool: warning: %s\n", message.c_str());
}

bool LoadDatabase(Sparlane::Database& db, const std::string& path) {
  if (db.LoadFromBinary(path) != Sparlane::ErrorCode::Success) {
    FailWithLibraryError(db);
    return false;
  }
  return true;
}

}  // namespace slb
