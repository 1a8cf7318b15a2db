// Values keyed by a 16-bit id, kept in one array indexed by the id: a lookup
// is one bounds test and one load where a hash map would hash and chase a
// node.  The array grows to the largest id stored (at most 65,536 slots).
#ifndef SPARLANE_STORE_ID_TABLE_H_
#define SPARLANE_STORE_ID_TABLE_H_

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Sparlane {

template <typename V>
class IdTable {
 public:
  // The value stored for id, or null.
  const V* Find(std::uint16_t id) const {
    if (id >= slots_.size() || !slots_[id].present) return nullptr;
    return &slots_[id].value;
  }

  // Stores value for id, replacing what was there.
  void Set(std::uint16_t id, V value) {
    if (id >= slots_.size()) slots_.resize(std::size_t{id} + 1);
    Slot& s = slots_[id];
    if (!s.present) ++count_;
    s.value = std::move(value);
    s.present = true;
  }

  // Forgets id's value; harmless when there is none.
  void Erase(std::uint16_t id) {
    if (id >= slots_.size() || !slots_[id].present) return;
    slots_[id] = Slot{};
    --count_;
  }

  std::size_t size() const { return count_; }

  void Clear() {
    slots_.clear();
    count_ = 0;
  }

  // Every stored value in ascending id order: visit(id, value).
  template <typename Visit>
  void ForEach(Visit&& visit) const {
    for (std::size_t id = 0; id < slots_.size(); ++id) {
      if (slots_[id].present) visit(static_cast<std::uint16_t>(id), slots_[id].value);
    }
  }

 private:
  struct Slot {
    V value{};
    bool present = false;
  };
  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_ID_TABLE_H_
