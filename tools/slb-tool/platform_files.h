// The few file operations slb-tool needs that differ between POSIX and
// Windows; each platform file implements all of them.
#ifndef SLB_TOOL_PLATFORM_FILES_H_
#define SLB_TOOL_PLATFORM_FILES_H_

#include <string>

namespace slb {
namespace platform {

// Creates a new directory named prefix plus a unique suffix, failing rather
// than reusing anything that exists; on POSIX its mode is 0700.  Returns
// its path, or "" with error set.
std::string MakePrivateDirectory(const std::string& prefix, std::string& error);

// Renames from to to in one step, replacing a file at to.  False with error
// set on failure.
bool RenameOver(const std::string& from, const std::string& to, std::string& error);

// While a file is being staged in directory, an interrupt (Ctrl-C, a
// terminating signal) removes file, file + ".tmp" and directory before the
// program ends.  Paths are copied; one staging at a time.
void GuardStaging(const std::string& directory, const std::string& file);
void ReleaseStaging();

}  // namespace platform
}  // namespace slb

#endif  // SLB_TOOL_PLATFORM_FILES_H_
