// A small open-addressing hash map from a 32-bit key to a 32-bit value: one
// probe into one flat array, where a node-based map would chase a pointer.
#ifndef SPARLANE_STORE_FLAT_ID_MAP_H_
#define SPARLANE_STORE_FLAT_ID_MAP_H_

#include <cstdint>
#include <vector>

namespace Sparlane {

class FlatIdMap {
 public:
  static constexpr std::uint32_t kAbsent = 0xFFFFFFFFu;

  // The value stored for key, or kAbsent.
  std::uint32_t Find(std::uint32_t key) const {
    if (slots_.empty()) return kAbsent;
    for (std::size_t i = Home(key);; i = (i + 1) & mask_) {
      const Slot& s = slots_[i];
      if (s.value == kAbsent) return kAbsent;
      if (s.key == key) return s.value;
    }
  }

  // Stores value (not kAbsent) for a key not yet present.
  void Insert(std::uint32_t key, std::uint32_t value) {
    if ((size_ + 1) * 2 > slots_.size()) Grow();
    Place(key, value);
    ++size_;
  }

  void Reserve(std::size_t count) {
    while (count * 2 > slots_.size()) Grow();
  }

 private:
  struct Slot {
    std::uint32_t key = 0;
    std::uint32_t value = kAbsent;
  };

  std::size_t Home(std::uint32_t key) const {
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 32) & mask_;
  }

  void Place(std::uint32_t key, std::uint32_t value) {
    std::size_t i = Home(key);
    while (slots_[i].value != kAbsent) i = (i + 1) & mask_;
    slots_[i] = Slot{key, value};
  }

  void Grow() {
    std::vector<Slot> old;
    old.swap(slots_);
    slots_.assign(old.empty() ? 16 : old.size() * 2, Slot{});
    mask_ = slots_.size() - 1;
    for (const Slot& s : old) {
      if (s.value != kAbsent) Place(s.key, s.value);
    }
  }

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t size_ = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_FLAT_ID_MAP_H_
