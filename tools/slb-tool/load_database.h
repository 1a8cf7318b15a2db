// Opening a parameter file for a subcommand, with the reason in words when
// it cannot be loaded.
#ifndef SLB_TOOL_LOAD_DATABASE_H_
#define SLB_TOOL_LOAD_DATABASE_H_

#include <string>

#include "sparlane/sparlane.h"

namespace slb {

// Resolves given (see ResolvePath) and loads it.  On failure prints
// "slb-tool: GIVEN: <cause> (<library message>)" and returns false.
bool LoadDatabase(Sparlane::Database& db, const std::string& given);

// The cause of a failed load in words, from the library's code and, for a
// corrupted file, the file's header: "file not found", "not a parameter file
// (bad magic)", "unsupported version", "header checksum mismatch",
// "truncated or corrupted", "LZ4 data corrupt", ...
std::string LoadFailureCause(Sparlane::ErrorCode code, const std::string& path);

}  // namespace slb

#endif  // SLB_TOOL_LOAD_DATABASE_H_
