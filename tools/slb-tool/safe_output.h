// Replacing a user's file without ever losing it.
//
// The new content is written into a private directory made beside the
// target (unique name, created exclusively; mode 0700 on POSIX), so
// nothing another user or an earlier run left at "TARGET.tmp" or elsewhere
// can redirect the writing.  The finished file gets the permission bits of
// the file it replaces and is renamed over the target in one step; the
// directory is removed on success, on failure and on an interrupt.
#ifndef SLB_TOOL_SAFE_OUTPUT_H_
#define SLB_TOOL_SAFE_OUTPUT_H_

#include <functional>
#include <string>

namespace slb {

// Why target must not be replaced, or "" when it may: it is missing, or a
// regular file with no other hard link.  A directory, FIFO, device or
// symbolic link is refused (a link is not silently replaced by a file), and
// so is a file with other hard links (replacing it would split them).
std::string TargetProblem(const std::string& target);

// Writes the staging file at the path it is given and returns "" or why it
// failed.  The path lies in a fresh private directory and does not exist yet.
using StagedWrite = std::function<std::string(const std::string& staging_path)>;

// Checks target, calls write, then puts the staged file in target's place.
// Returns "" on success, else the reason; target is then untouched and no
// temporary file or directory is left.  target must be absolute.
std::string ReplaceFile(const std::string& target, const StagedWrite& write);

// True when both paths exist and are the same file (device and inode).
bool SameFile(const std::string& a, const std::string& b);

// Why a run that reads input must not write the output named out_given
// (out_path, resolved): it is the input file itself, by any name, or its
// TargetProblem.  "" when it may.
std::string OutputProblem(const std::string& out_given, const std::string& out_path,
                          const std::string& input);

}  // namespace slb

#endif  // SLB_TOOL_SAFE_OUTPUT_H_
