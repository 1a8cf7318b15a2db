#include "tool_paths.h"

#include <filesystem>
#include <system_error>

#include "sparlane/sparlane.h"

namespace slb {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kLongestLibraryPath = 4096;

std::string Refusal(const std::string& given, const std::string& why) {
  return "refusing the path \"" + given + "\": " + why;
}

}  // namespace

std::optional<std::string> ResolvePath(const std::string& given, std::string& error) {
  if (given.empty()) {
    error = "an empty path names no file";
    return std::nullopt;
  }
  if (given.find('\0') != std::string::npos) {
    error = Refusal(given, "it holds a NUL byte, which the library would drop");
    return std::nullopt;
  }
  std::error_code ec;
  const fs::path absolute = fs::absolute(fs::u8path(given), ec);
  if (ec) {
    error = Refusal(given, "cannot make it absolute: " + ec.message());
    return std::nullopt;
  }
  const std::string resolved = absolute.lexically_normal().u8string();
  if (resolved.find("..") != std::string::npos) {
    error = Refusal(given, "a name in it holds \"..\", which the library would remove; "
                           "rename the file or directory");
    return std::nullopt;
  }
  if (resolved.size() > kLongestLibraryPath) {
    error = Refusal(given, "its absolute form is longer than 4096 bytes, which the library "
                           "would cut");
    return std::nullopt;
  }
  // Whatever else the library's rule may change is refused too.
  if (Sparlane::Testing::SanitizePath(resolved) != resolved) {
    error = Refusal(given, "the library would change it");
    return std::nullopt;
  }
  return resolved;
}

}  // namespace slb
