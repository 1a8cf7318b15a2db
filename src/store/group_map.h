// Material id or pair key -> its group in the position index.  The slot
// itself says where the group's first position is and how many positions it
// has, which is all a search over a contiguous group needs.
//
// Two layouts, the same answers.  When the keys fill most of the grid of
// their high and low halves (every machine lists most materials, the usual
// case), the ref is found by indexing that grid: no probe, and the grid is a
// fraction of the size of hash slots at half load, so a query at random over
// a large table touches fewer lines and pages.  Otherwise an open-addressing
// table of 32-byte slots, two to a cache line.
#ifndef SPARLANE_STORE_GROUP_MAP_H_
#define SPARLANE_STORE_GROUP_MAP_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/large_pages.h"

namespace Sparlane {

struct GroupRef {
  std::uint32_t group;           // index into the groups of its kind
  std::uint32_t first_position;  // smallest table position of the group
  std::uint32_t size;            // positions, appended ones included
  // For a pair: where FindExact's bisection over the material's bucket span
  // first probes inside the pair's run, [entry_lo, entry_hi) (see
  // EnterRun); known only for the runs of the last rebuild, unchanged since.
  std::uint32_t entry_lo;
  std::uint32_t entry_hi;
  bool entry_known;
};

class GroupMap {
 public:
  const GroupRef* Find(std::uint32_t key) const {
    if (!grid_.empty()) {
      const GroupRef* cell = GridCell(key);
      return cell == nullptr || cell->group == kEmpty ? nullptr : cell;
    }
    if (slots_.empty()) return nullptr;
    for (std::size_t i = Home(key);; i = (i + 1) & mask_) {
      const Slot& s = slots_[i];
      if (s.ref.group == kEmpty) return nullptr;
      if (s.key == key) return &s.ref;
    }
  }
  GroupRef* Find(std::uint32_t key) {
    return const_cast<GroupRef*>(static_cast<const GroupMap&>(*this).Find(key));
  }

  // Stores ref for a key not yet present.  A key outside the grid moves the
  // map to slots.
  void Insert(std::uint32_t key, const GroupRef& ref) {
    if (!grid_.empty()) {
      if (const GroupRef* cell = GridCell(key)) {
        *const_cast<GroupRef*>(cell) = ref;
        ++size_;
        return;
      }
      MoveGridToSlots();
    }
    if ((size_ + 1) * 2 > slots_.size()) Grow();
    Place(Slot{key, ref});
    ++size_;
  }

  // Room for count keys in slots.
  void Reserve(std::size_t count) {
    if (!grid_.empty()) return;
    std::size_t slots = slots_.empty() ? 16 : slots_.size();
    while (count * 2 > slots) slots *= 2;
    if (slots != slots_.size()) Rehash(slots);
  }

  // For an empty map: count keys will come, none with a high half above
  // max_high or a low half above max_low.  Lays out the grid when they fill
  // enough of it to take no more memory than slots would, else reserves
  // slots.
  void Plan(std::uint32_t max_high, std::uint32_t max_low, std::size_t count) {
    const std::uint64_t cells =
        (std::uint64_t{max_high & 0xFFFFu} + 1) * (std::uint64_t{max_low & 0xFFFFu} + 1);
    if (size_ != 0 || cells > 2 * std::uint64_t{count} + kSmallGrid) {
      Reserve(count);
      return;
    }
    slots_.clear();
    mask_ = 0;
    grid_rows_ = (max_high & 0xFFFFu) + 1;
    grid_width_ = (max_low & 0xFFFFu) + 1;
    grid_.assign(static_cast<std::size_t>(cells), EmptyRef());
  }

  std::size_t size() const { return size_; }
  bool grid() const { return !grid_.empty(); }

 private:
  static constexpr std::uint32_t kEmpty = 0xFFFFFFFFu;  // no group has this index
  // A grid this small costs less than its slots would, however sparse.
  static constexpr std::uint64_t kSmallGrid = 1024;
  static GroupRef EmptyRef() { return GroupRef{kEmpty, 0, 0, 0, 0, false}; }

  // The grid's cell for key, or null when the key lies outside the grid.
  const GroupRef* GridCell(std::uint32_t key) const {
    const std::uint32_t high = key >> 16;
    const std::uint32_t low = key & 0xFFFFu;
    if (high >= grid_rows_ || low >= grid_width_) return nullptr;
    return &grid_[static_cast<std::size_t>(high) * grid_width_ + low];
  }

  // Two slots to a cache line, none across two.
  struct alignas(32) Slot {
    std::uint32_t key = 0;
    GroupRef ref = EmptyRef();
  };

  std::size_t Home(std::uint32_t key) const {
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 32) & mask_;
  }

  void Place(const Slot& slot) {
    std::size_t i = Home(slot.key);
    while (slots_[i].ref.group != kEmpty) i = (i + 1) & mask_;
    slots_[i] = slot;
  }

  void Grow() { Rehash(slots_.empty() ? 16 : slots_.size() * 2); }

  void Rehash(std::size_t slot_count) {
    std::vector<Slot> old;
    old.swap(slots_);
    slots_.reserve(slot_count);
    AdviseLargePages(slots_.data(), slot_count * sizeof(Slot));
    slots_.assign(slot_count, Slot{});
    mask_ = slot_count - 1;
    for (const Slot& s : old) {
      if (s.ref.group != kEmpty) Place(s);
    }
  }

  void MoveGridToSlots() {
    std::vector<GroupRef> grid;
    grid.swap(grid_);
    std::size_t slots = 16;
    while ((size_ + 1) * 2 > slots) slots *= 2;
    Rehash(slots);
    for (std::size_t i = 0; i < grid.size(); ++i) {
      if (grid[i].group == kEmpty) continue;
      const auto high = static_cast<std::uint32_t>(i / grid_width_);
      const auto low = static_cast<std::uint32_t>(i % grid_width_);
      Place(Slot{(high << 16) | low, grid[i]});
    }
    grid_rows_ = 0;
    grid_width_ = 0;
  }

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::vector<GroupRef> grid_;  // row = key's high half, column = low half
  std::uint32_t grid_rows_ = 0;
  std::uint32_t grid_width_ = 0;
  std::size_t size_ = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_GROUP_MAP_H_
