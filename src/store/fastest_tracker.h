// The fastest record at each distinct thickness among records seen one by
// one in table order: what FindOptimal would choose among the records of one
// thickness.  Tables list the same thicknesses for machine after machine, so
// the entry after the last one used is tried before the hash table.
#ifndef SPARLANE_STORE_FASTEST_TRACKER_H_
#define SPARLANE_STORE_FASTEST_TRACKER_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "store/record_indexes.h"

namespace Sparlane {

class FastestTracker {
 public:
  // Forgets every record seen.
  void Reset();

  // A record that can never be chosen (speed not above 0, NaN thickness) is
  // ignored; of equal speeds at one thickness the first stays.
  void Add(float thickness, float speed, std::uint32_t position) {
    last_ = Put(thickness, speed, position, last_);
  }

  // count records in table order, the first at first_position.
  void Add(const CuttingParameter* records, std::size_t count, std::uint32_t first_position) {
    std::size_t last = last_;
    for (std::size_t k = 0; k < count; ++k) {
      last = Put(records[k].thickness_mm, records[k].cut_speed_mm_min,
                 first_position + static_cast<std::uint32_t>(k), last);
    }
    last_ = last;
  }

  // The entries, ascending by thickness, appended to out.
  void AppendSorted(std::vector<FastestAtThickness>& out);

 private:
  struct Slot {
    std::uint32_t generation = 0;  // a slot of an older generation is empty
    std::uint32_t entry = 0;
  };

  // Returns the entry used (or last when the record was ignored).
  std::size_t Put(float thickness, float speed, std::uint32_t position, std::size_t last) {
    if (!(speed > 0.0f) || thickness != thickness) return last;
    std::size_t i = last + 1;
    if (i >= entries_.size() || !(entries_[i].thickness_mm == thickness)) i = EntryFor(thickness);
    FastestAtThickness& e = entries_[i];
    if (speed > e.cut_speed_mm_min) {
      e.cut_speed_mm_min = speed;
      e.position = position;
    }
    return i;
  }

  std::size_t EntryFor(float thickness);
  void Rehash(std::size_t slot_count);

  std::vector<FastestAtThickness> entries_;
  std::vector<Slot> slots_;
  std::uint32_t generation_ = 1;
  std::size_t last_ = static_cast<std::size_t>(-1);  // none: last_ + 1 is entry 0
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_FASTEST_TRACKER_H_
