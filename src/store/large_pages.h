// Large arrays a load fills once and the queries then read at random
// positions (the record table, its thickness column).  Where the system can
// back them with large pages they are advised to be: a load takes a few
// large page faults instead of one fault per small page, and the queries
// miss the TLB far less.  The advice changes no contents.
#ifndef SPARLANE_STORE_LARGE_PAGES_H_
#define SPARLANE_STORE_LARGE_PAGES_H_

#include <algorithm>
#include <cstddef>
#include <limits>
#include <new>
#include <vector>

namespace Sparlane {

// Below this an array cannot hold a whole large page, and is left alone.
constexpr std::size_t kLargePageAdviceFrom = std::size_t{2} << 20;

// Advises the whole pages inside [data, data + bytes).  Memory an allocator
// later reuses for something else keeps the advice; the cost is at most
// that many bytes backed by large pages.  A refusal changes nothing.
void AdviseLargePages(const void* data, std::size_t bytes);

// Maps the pages of [data, data + bytes) ready for writing in one system
// call where the system offers one; contents stay as they are.
void PrefaultForWriting(void* data, std::size_t bytes);

// Gives blocks of a large page or more a start on a large-page boundary and
// a whole number of large pages, all advised: a block from the plain heap
// starts just past a boundary, which leaves its first and last stretch on
// small pages.  Smaller blocks come from the plain heap.
template <typename T>
struct LargePageAllocator {
  using value_type = T;

  LargePageAllocator() = default;
  template <typename U>
  LargePageAllocator(const LargePageAllocator<U>&) noexcept {}

  T* allocate(std::size_t n) {
    if (n > (std::numeric_limits<std::size_t>::max() - kLargePageAdviceFrom) / sizeof(T)) {
      throw std::bad_array_new_length();
    }
    const std::size_t bytes = n * sizeof(T);
    if (bytes < kLargePageAdviceFrom) return static_cast<T*>(::operator new(bytes));
    const std::size_t whole = WholeLargePages(bytes);
    void* block = ::operator new(whole, std::align_val_t{kLargePageAdviceFrom});
    AdviseLargePages(block, whole);
    return static_cast<T*>(block);
  }

  void deallocate(T* block, std::size_t n) noexcept {
    if (n * sizeof(T) < kLargePageAdviceFrom) {
      ::operator delete(block);
    } else {
      ::operator delete(block, std::align_val_t{kLargePageAdviceFrom});
    }
  }

  friend bool operator==(const LargePageAllocator&, const LargePageAllocator&) { return true; }
  friend bool operator!=(const LargePageAllocator&, const LargePageAllocator&) { return false; }

 private:
  static std::size_t WholeLargePages(std::size_t bytes) {
    return (bytes + kLargePageAdviceFrom - 1) / kLargePageAdviceFrom * kLargePageAdviceFrom;
  }
};

// An array a load fills once and queries read at random positions.
template <typename T>
using LargeArray = std::vector<T, LargePageAllocator<T>>;

// Reserves room for count elements (nothing is constructed) and advises it.
template <typename T>
void ReserveLargeArray(std::vector<T>& array, std::size_t count) {
  array.reserve(count);
  AdviseLargePages(array.data(), array.capacity() * sizeof(T));
}

// Fills a reserved array's room a window ahead of its end, so that growing
// it takes a system call per window instead of a page fault per page, and
// room that is never reached (a load that fails) is never touched.
template <typename T>
class PrefaultAhead {
 public:
  // Call before the array grows by more elements.
  template <typename Alloc>
  void Before(std::vector<T, Alloc>& array, std::size_t more) {
    if (array.data() != data_) {  // a new block: nothing of it is known to be mapped
      data_ = array.data();
      ready_ = array.size();
    }
    const std::size_t need = array.size() + more;
    if (need <= ready_) return;
    // The window grows with what was filled, so a table that stays small
    // (or a load that fails early) maps little ahead.
    const std::size_t window =
        std::min(std::max(array.size() * sizeof(T), kMinWindowBytes), kMaxWindowBytes);
    std::size_t until = ready_ + window / sizeof(T);
    if (until < need) until = need;
    if (until > array.capacity()) until = array.capacity();
    if (until > ready_) PrefaultForWriting(array.data() + ready_, (until - ready_) * sizeof(T));
    ready_ = until;
  }

 private:
  static constexpr std::size_t kMinWindowBytes = std::size_t{64} << 10;
  static constexpr std::size_t kMaxWindowBytes = std::size_t{1} << 20;
  const T* data_ = nullptr;
  std::size_t ready_ = 0;  // elements from data_ whose pages are mapped
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_LARGE_PAGES_H_
