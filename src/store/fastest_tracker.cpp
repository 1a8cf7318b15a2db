#include "store/fastest_tracker.h"

#include <algorithm>
#include <cstring>

namespace Sparlane {

namespace {

// -0.0 and 0.0 are one thickness: they compare equal and lie at the same
// distance from any requested thickness.
std::uint64_t HashOf(float thickness) {
  std::uint32_t bits = 0;
  if (thickness != 0.0f) std::memcpy(&bits, &thickness, sizeof bits);
  std::uint64_t h = (bits + 0x9E3779B97F4A7C15ull) * 0xD6E8FEB86659FD93ull;
  return h ^ (h >> 32);
}

}  // namespace

void FastestTracker::Reset() {
  entries_.clear();
  last_ = static_cast<std::size_t>(-1);
  if (++generation_ == 0) {
    std::fill(slots_.begin(), slots_.end(), Slot{});
    generation_ = 1;
  }
}

std::size_t FastestTracker::EntryFor(float thickness) {
  if ((entries_.size() + 1) * 2 > slots_.size()) Rehash(slots_.empty() ? 64 : slots_.size() * 2);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t i = HashOf(thickness) & mask;; i = (i + 1) & mask) {
    Slot& s = slots_[i];
    if (s.generation != generation_) {
      s = Slot{generation_, static_cast<std::uint32_t>(entries_.size())};
      entries_.push_back(FastestAtThickness{thickness, 0.0f, 0});
      return s.entry;
    }
    if (entries_[s.entry].thickness_mm == thickness) return s.entry;
  }
}

void FastestTracker::Rehash(std::size_t slot_count) {
  slots_.assign(slot_count, Slot{});
  generation_ = 1;
  const std::size_t mask = slot_count - 1;
  for (std::size_t e = 0; e < entries_.size(); ++e) {
    std::size_t i = HashOf(entries_[e].thickness_mm) & mask;
    while (slots_[i].generation == generation_) i = (i + 1) & mask;
    slots_[i] = Slot{generation_, static_cast<std::uint32_t>(e)};
  }
}

void FastestTracker::AppendSorted(std::vector<FastestAtThickness>& out) {
  const std::size_t from = out.size();
  out.insert(out.end(), entries_.begin(), entries_.end());
  std::sort(out.begin() + static_cast<std::ptrdiff_t>(from), out.end(),
            [](const FastestAtThickness& a, const FastestAtThickness& b) {
              return a.thickness_mm < b.thickness_mm;
            });
}

}  // namespace Sparlane
