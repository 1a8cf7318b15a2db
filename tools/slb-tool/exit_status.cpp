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

}  // namespace slb
