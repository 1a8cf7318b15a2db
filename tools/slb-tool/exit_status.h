// Exit statuses and the one way slb-tool reports a failure on stderr.
#ifndef SLB_TOOL_EXIT_STATUS_H_
#define SLB_TOOL_EXIT_STATUS_H_

#include <string>

#include "sparlane/sparlane.h"

namespace slb {

constexpr int kExitOk = 0;
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

// Prints "slb-tool: <message>" on stderr and returns kExitFailure.
int Fail(const std::string& message);

// Fails with the library's own last-error message.
int FailWithLibraryError(const Sparlane::Database& db);

// Prints "slb-tool: warning: <message>" on stderr.
void Warn(const std::string& message);

}  // namespace slb

#endif  // SLB_TOOL_EXIT_STATUS_H_
