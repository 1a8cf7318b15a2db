// Large-page advice through madvise where the system has it (Linux).
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

#include "store/large_pages.h"

namespace Sparlane {

void AdviseLargePages(const void* data, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  if (data == nullptr || bytes < kLargePageAdviceFrom) return;
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(data);
  const std::uintptr_t first = (begin + page - 1) / page * page;
  const std::uintptr_t last = (begin + bytes) / page * page;
  if (last > first) ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#else
  (void)data;
  (void)bytes;
#endif
}

void PrefaultForWriting(void* data, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
  const auto begin = reinterpret_cast<std::uintptr_t>(data);
  const std::uintptr_t first = begin / page * page;
  const std::uintptr_t last = (begin + bytes) / page * page;  // no page past the room
  // Older kernels refuse the call; the pages then fault in as they are written.
  if (data != nullptr && last > first) {
    ::madvise(reinterpret_cast<void*>(first), last - first, MADV_POPULATE_WRITE);
  }
#else
  (void)data;
  (void)bytes;
#endif
}

}  // namespace Sparlane
