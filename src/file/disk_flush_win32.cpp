#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include "file/disk_flush.h"

namespace Sparlane {

// The saver's paths are narrow (ANSI code page) throughout, so this is too.
bool FlushFileToDisk(const std::string& path) {
  HANDLE file = CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                            nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  const bool ok = FlushFileBuffers(file) != 0;
  CloseHandle(file);
  return ok;
}

// NTFS journals the rename itself; directories cannot be flushed by handle.
void FlushParentDirectoryToDisk(const std::string&) {}

}  // namespace Sparlane
