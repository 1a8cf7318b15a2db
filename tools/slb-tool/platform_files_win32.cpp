// Windows: a directory with a random name made by CreateDirectoryW (which
// fails when the name exists) and MoveFileExW to replace the target.
#include <windows.h>

#include <random>
#include <string>

#include "platform_files.h"

namespace slb {
namespace platform {
namespace {

std::wstring Wide(const std::string& utf8) {
  if (utf8.empty()) return std::wstring();
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, nullptr, 0);
  if (length <= 0) return std::wstring();
  std::wstring wide(static_cast<std::size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, &wide[0], length);
  wide.resize(static_cast<std::size_t>(length - 1));
  return wide;
}

std::string SystemErrorText(DWORD code) {
  char text[256] = {0};
  const DWORD n = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                 nullptr, code, 0, text, sizeof text, nullptr);
  std::string message(text, n);
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r' ||
                              message.back() == '.')) {
    message.pop_back();
  }
  return message.empty() ? "system error " + std::to_string(code) : message;
}

}  // namespace

std::string MakePrivateDirectory(const std::string& prefix, std::string& error) {
  static const char kLetters[] = "abcdefghijklmnopqrstuvwxyz0123456789";
  std::random_device seed;
  std::mt19937 random(seed());
  std::uniform_int_distribution<int> pick(0, static_cast<int>(sizeof kLetters) - 2);
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::string name = prefix;
    for (int i = 0; i < 8; ++i) name += kLetters[pick(random)];
    // The directory inherits the parent's access list, as a user's files do.
    if (CreateDirectoryW(Wide(name).c_str(), nullptr)) return name;
    const DWORD code = GetLastError();
    if (code != ERROR_ALREADY_EXISTS) {
      error = SystemErrorText(code);
      return std::string();
    }
  }
  error = "no unused name found";
  return std::string();
}

bool RenameOver(const std::string& from, const std::string& to, std::string& error) {
  if (MoveFileExW(Wide(from).c_str(), Wide(to).c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    return true;
  }
  error = SystemErrorText(GetLastError());
  return false;
}

// Console interrupts are not intercepted; a stray directory beside the
// target is all an interrupt can leave.
void GuardStaging(const std::string&, const std::string&) {}
void ReleaseStaging() {}

}  // namespace platform
}  // namespace slb
