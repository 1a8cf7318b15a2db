// MappedFile on POSIX: open, fstat and one read-only mmap of the whole file.
// The path bytes are used as they are; there is no UTF-16 step here.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>

#include "file/header_codec.h"
#include "file/mapped_file.h"
#include "sparlane/testing.h"

namespace Sparlane {
namespace {

ErrorCode CodeForOpenErrno(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return ErrorCode::FileNotFound;
    case EACCES:
    case EPERM:
      return ErrorCode::AccessDenied;
    case ENOMEM:
      return ErrorCode::OutOfMemory;
    default:
      return ErrorCode::IoError;
  }
}

}  // namespace

MappedFile::~MappedFile() { Close(); }

void MappedFile::Close() {
  if (view_ != nullptr) {
    munmap(const_cast<std::uint8_t*>(view_), static_cast<std::size_t>(size_));
    view_ = nullptr;
  }
  mapping_ = kNoHandle;
  released_ = 0;
  if (file_ != kNoHandle) {
    ::close(static_cast<int>(file_));
    file_ = kNoHandle;
  }
  size_ = 0;
}

// MADV_DONTNEED on a private, never written file mapping drops the pages
// from this process only; the page cache keeps them and a later access maps
// them again.
void MappedFile::ReleaseBefore(std::uint64_t offset) {
  if (view_ == nullptr) return;
  const auto page = static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE));
  const std::uint64_t end = (offset < size_ ? offset : size_) / page * page;
  if (end <= released_) return;
  ::madvise(const_cast<std::uint8_t*>(view_) + released_, static_cast<std::size_t>(end - released_),
            MADV_DONTNEED);
  released_ = end;
}

ErrorCode MappedFile::Open(const std::string& path) {
  Close();
  const std::string sanitized = Testing::SanitizePath(path);
  // O_NONBLOCK keeps a FIFO from hanging the open; regular files ignore it.
  const int fd = ::open(sanitized.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) return CodeForOpenErrno(errno);
  file_ = fd;

  struct stat st {};
  if (::fstat(fd, &st) != 0) {
    Close();
    return ErrorCode::IoError;
  }
  // Opening a directory for reading is refused with access denied where the
  // file-mapping calls come from; give the same code here.
  if (S_ISDIR(st.st_mode)) {
    Close();
    return ErrorCode::AccessDenied;
  }
  const std::uint64_t size = st.st_size < 0 ? 0 : static_cast<std::uint64_t>(st.st_size);
  if (size < kHeaderSize) {
    Close();
    return ErrorCode::CorruptedFile;
  }
  if (size > std::numeric_limits<std::size_t>::max()) {
    Close();
    return ErrorCode::OutOfMemory;
  }
  void* view = ::mmap(nullptr, static_cast<std::size_t>(size), PROT_READ, MAP_PRIVATE, fd, 0);
  if (view == MAP_FAILED) {
    const int error = errno;
    Close();
    return error == ENOMEM ? ErrorCode::OutOfMemory : ErrorCode::IoError;
  }
  view_ = static_cast<const std::uint8_t*>(view);
  size_ = size;
  return ErrorCode::Success;
}

}  // namespace Sparlane
