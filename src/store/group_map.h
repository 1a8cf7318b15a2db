// Material id or pair key -> its group in the position index, in one flat
// array of 16-byte slots: a lookup is one probe, usually one cache line, and
// the slot itself says where the group's first position is and how many
// positions it has, which is all a search over a contiguous group needs.
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

  // Stores ref for a key not yet present.
  void Insert(std::uint32_t key, const GroupRef& ref) {
    if ((size_ + 1) * 2 > slots_.size()) Grow();
    Place(Slot{key, ref});
    ++size_;
  }

  void Reserve(std::size_t count) {
    std::size_t slots = slots_.empty() ? 16 : slots_.size();
    while (count * 2 > slots) slots *= 2;
    if (slots != slots_.size()) Rehash(slots);
  }

  std::size_t size() const { return size_; }

 private:
  static constexpr std::uint32_t kEmpty = 0xFFFFFFFFu;  // no group has this index
  // Two slots to a cache line, none across two.
  struct alignas(32) Slot {
    std::uint32_t key = 0;
    GroupRef ref{kEmpty, 0, 0, 0, 0, false};
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

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t size_ = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_GROUP_MAP_H_
