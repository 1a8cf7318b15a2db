#include "store/name_id_map.h"

namespace Sparlane {

std::size_t NameIdMap::Locate(std::string_view name, std::uint64_t hash) const {
  std::size_t i = hash & mask_;
  while (slots_[i].used && !(slots_[i].hash == hash && Holds(slots_[i], name))) i = (i + 1) & mask_;
  return i;
}

void NameIdMap::Set(std::string_view name, std::uint16_t id) {
  if ((size_ + 1) * 2 > slots_.size()) Grow();
  const std::uint64_t hash = Hash(name);
  Slot& s = slots_[Locate(name, hash)];
  if (!s.used) {
    s.hash = hash;
    s.offset = static_cast<std::uint32_t>(bytes_.size());
    s.length = static_cast<std::uint32_t>(name.size());
    s.used = true;
    bytes_.append(name.data(), name.size());
    ++size_;
  }
  s.id = id;
}

bool NameIdMap::Erase(std::string_view name) {
  if (size_ == 0) return false;
  std::size_t i = Locate(name, Hash(name));
  if (!slots_[i].used) return false;
  slots_[i] = Slot{};
  --size_;
  // Slots after the hole in the same run may have probed past it: put each
  // back where a lookup will find it.
  for (std::size_t j = (i + 1) & mask_; slots_[j].used; j = (j + 1) & mask_) {
    const Slot moved = slots_[j];
    slots_[j] = Slot{};
    Place(moved);
  }
  return true;
}

void NameIdMap::Clear() {
  slots_.clear();
  mask_ = 0;
  size_ = 0;
  bytes_.clear();
}

void NameIdMap::Place(const Slot& slot) {
  std::size_t i = slot.hash & mask_;
  while (slots_[i].used) i = (i + 1) & mask_;
  slots_[i] = slot;
}

void NameIdMap::Grow() {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(old.empty() ? 16 : old.size() * 2, Slot{});
  mask_ = slots_.size() - 1;
  for (const Slot& s : old) {
    if (s.used) Place(s);
  }
}

}  // namespace Sparlane
