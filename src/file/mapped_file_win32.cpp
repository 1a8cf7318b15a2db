// MappedFile on Windows: UTF-8 path to UTF-16, CreateFileW, GetFileSizeEx,
// CreateFileMappingW and MapViewOfFile of the whole file, read-only.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <cstdint>
#include <vector>

#include "file/header_codec.h"
#include "file/mapped_file.h"
#include "sparlane/testing.h"

namespace Sparlane {
namespace {

HANDLE AsHandle(std::intptr_t h) { return reinterpret_cast<HANDLE>(h); }
std::intptr_t FromHandle(HANDLE h) { return reinterpret_cast<std::intptr_t>(h); }

ErrorCode CodeForOpenError(DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:  // 2
    case ERROR_PATH_NOT_FOUND:  // 3
      return ErrorCode::FileNotFound;
    case ERROR_ACCESS_DENIED:  // 5
      return ErrorCode::AccessDenied;
    default:
      return ErrorCode::IoError;
  }
}

ErrorCode CodeForMappingError(DWORD error) {
  // 8 (not enough memory) and 14 (out of memory).
  if (error == ERROR_NOT_ENOUGH_MEMORY || error == ERROR_OUTOFMEMORY) {
    return ErrorCode::OutOfMemory;
  }
  return ErrorCode::IoError;
}

}  // namespace

MappedFile::~MappedFile() { Close(); }

void MappedFile::Close() {
  if (view_ != nullptr) {
    UnmapViewOfFile(view_);
    view_ = nullptr;
  }
  if (mapping_ != kNoHandle) {
    CloseHandle(AsHandle(mapping_));
    mapping_ = kNoHandle;
  }
  if (file_ != kNoHandle) {
    CloseHandle(AsHandle(file_));
    file_ = kNoHandle;
  }
  size_ = 0;
  released_ = 0;
}

// VirtualUnlock on pages that are not locked takes them out of the working
// set (it reports ERROR_NOT_LOCKED, which is expected); they stay in the
// file cache and come back on the next access.
void MappedFile::ReleaseBefore(std::uint64_t offset) {
  if (view_ == nullptr) return;
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  const std::uint64_t page = info.dwPageSize;
  const std::uint64_t end = (offset < size_ ? offset : size_) / page * page;
  if (end <= released_) return;
  VirtualUnlock(const_cast<std::uint8_t*>(view_) + released_, static_cast<SIZE_T>(end - released_));
  released_ = end;
}

ErrorCode MappedFile::Open(const std::string& path) {
  Close();
  const std::string sanitized = Testing::SanitizePath(path);

  // Length -1 counts the terminating NUL, so the buffer ends with one.
  const int wide_length =
      MultiByteToWideChar(CP_UTF8, 0, sanitized.c_str(), -1, nullptr, 0);
  if (wide_length == 0) return ErrorCode::InvalidParameter;
  std::vector<wchar_t> wide(static_cast<std::size_t>(wide_length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, sanitized.c_str(), -1, wide.data(), wide_length);

  HANDLE file = CreateFileW(wide.data(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return CodeForOpenError(GetLastError());
  file_ = FromHandle(file);

  LARGE_INTEGER size{};
  if (!GetFileSizeEx(file, &size)) {
    CloseHandle(file);
    file_ = kNoHandle;
    return ErrorCode::IoError;
  }
  size_ = static_cast<std::uint64_t>(size.QuadPart);
  if (size_ < kHeaderSize) {
    CloseHandle(file);
    file_ = kNoHandle;
    return ErrorCode::CorruptedFile;
  }

  HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr);
  if (mapping == nullptr) {
    CloseHandle(file);
    file_ = kNoHandle;
    return CodeForMappingError(GetLastError());
  }
  mapping_ = FromHandle(mapping);

  void* view = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0);
  if (view == nullptr) {
    // Read the error before CloseHandle can replace it.
    const DWORD error = GetLastError();
    CloseHandle(mapping);
    CloseHandle(file);
    mapping_ = kNoHandle;
    file_ = kNoHandle;
    return CodeForMappingError(error);
  }
  view_ = static_cast<const std::uint8_t*>(view);
  return ErrorCode::Success;
}

}  // namespace Sparlane
