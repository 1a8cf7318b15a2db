// Paths given on the command line, made safe to hand to the library.
#ifndef SLB_TOOL_TOOL_PATHS_H_
#define SLB_TOOL_TOOL_PATHS_H_

#include <optional>
#include <string>

namespace slb {

// The library drops every ".." and NUL from a path it is given and cuts it
// to 4096 bytes, so "../x.slb" would mean "/x.slb" to it.  This returns the
// absolute form of given (relative to the current directory) with every "."
// and ".." segment resolved by name, as a shell's "cd" does.  When even that
// form would be changed by the library (a name holding "..", a NUL byte, or
// more than 4096 bytes), it returns nullopt and sets error to a sentence
// that names the path.
std::optional<std::string> ResolvePath(const std::string& given, std::string& error);

}  // namespace slb

#endif  // SLB_TOOL_TOOL_PATHS_H_
