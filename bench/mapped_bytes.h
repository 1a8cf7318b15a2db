// A whole file mapped read-only, as the floors of the load benchmarks map
// it: open, fstat, one mmap; unmapped and closed on destruction.
#ifndef SPARLANE_BENCH_MAPPED_BYTES_H_
#define SPARLANE_BENCH_MAPPED_BYTES_H_

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace bench {

struct MappedBytes {
  int fd = -1;
  const std::uint8_t* data = nullptr;
  std::size_t size = 0;

  explicit MappedBytes(const std::string& path) {
    fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat st {};
    if (fd < 0 || ::fstat(fd, &st) != 0) Fail(path);
    size = static_cast<std::size_t>(st.st_size);
    void* view = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    if (view == MAP_FAILED) Fail(path);
    data = static_cast<const std::uint8_t*>(view);
  }
  ~MappedBytes() {
    ::munmap(const_cast<std::uint8_t*>(data), size);
    ::close(fd);
  }
  MappedBytes(const MappedBytes&) = delete;
  MappedBytes& operator=(const MappedBytes&) = delete;

 private:
  [[noreturn]] static void Fail(const std::string& path) {
    std::fprintf(stderr, "cannot map %s\n", path.c_str());
    std::exit(1);
  }
};

}  // namespace bench

#endif  // SPARLANE_BENCH_MAPPED_BYTES_H_
