// The one path rule: drop every "..", then every NUL, then cap at 4096 bytes.
// Removing rather than rejecting is the library's long-standing behaviour.
#include <algorithm>
#include <string>

#include "sparlane/testing.h"

namespace Sparlane {
namespace Testing {

std::string SanitizePath(const std::string& path) {
  constexpr std::size_t kMaxPathBytes = 4096;
  std::string out = path;
  // Searching again from the hit removes pairs that a removal brings together.
  std::size_t pos = 0;
  while ((pos = out.find("..", pos)) != std::string::npos) out.erase(pos, 2);
  out.erase(std::remove(out.begin(), out.end(), '\0'), out.end());
  if (out.size() > kMaxPathBytes) out.resize(kMaxPathBytes);
  return out;
}

}  // namespace Testing
}  // namespace Sparlane
