// Read-only whole-file memory mapping, one implementation per platform.
#ifndef SPARLANE_FILE_MAPPED_FILE_H_
#define SPARLANE_FILE_MAPPED_FILE_H_

#include <cstdint>
#include <string>

#include "sparlane/records.h"
#include "store/loaded_file.h"

namespace Sparlane {

// The LoadedFile a load keeps in the store.
class MappedFile final : public LoadedFile {
 public:
  MappedFile() = default;
  ~MappedFile() override;
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // Closes what the object holds, sanitises path and maps the whole file.
  // FileNotFound, AccessDenied, CorruptedFile (under 1024 bytes),
  // OutOfMemory, InvalidParameter (unconvertible path) or IoError.
  ErrorCode Open(const std::string& path);

  // Unmaps the view, then closes the mapping, then the file.  Harmless when
  // closed.
  void Close() override;

  // The bytes before offset will not be read again by this load: their
  // whole pages go back to the system (a later read maps them in again from
  // the file).  The view stays valid; harmless when closed.
  void ReleaseBefore(std::uint64_t offset);

  const std::uint8_t* view() const override { return view_; }
  std::uint64_t size() const override { return size_; }

 private:
  // Platform handles (a descriptor on POSIX, a HANDLE on Windows), kNoHandle
  // when not held.  POSIX needs no mapping handle: the view is the mapping.
  static constexpr std::intptr_t kNoHandle = -1;
  std::intptr_t file_ = kNoHandle;
  std::intptr_t mapping_ = kNoHandle;
  const std::uint8_t* view_ = nullptr;
  std::uint64_t size_ = 0;
  std::uint64_t released_ = 0;  // pages before this offset were given back
};

}  // namespace Sparlane

#endif  // SPARLANE_FILE_MAPPED_FILE_H_
