// Name -> id for one name table.  Queries resolve two names each, so the
// lookup takes any string view (nothing is built per query), hashes a word
// at a time and finds the name in one flat array of slots: linear probing,
// each slot holding the hash, the id and where the name's bytes are kept.
#ifndef SPARLANE_STORE_NAME_ID_MAP_H_
#define SPARLANE_STORE_NAME_ID_MAP_H_

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace Sparlane {

class NameIdMap {
 public:
  // The id stored for name, or null.
  const std::uint16_t* Find(std::string_view name) const {
    if (size_ == 0) return nullptr;
    const std::uint64_t hash = Hash(name);
    for (std::size_t i = hash & mask_;; i = (i + 1) & mask_) {
      const Slot& s = slots_[i];
      if (!s.used) return nullptr;
      if (s.hash == hash && Holds(s, name)) return &s.id;
    }
  }

  // Maps name to id, replacing what it mapped to.
  void Set(std::string_view name, std::uint16_t id);

  // Forgets name; true when it was there.
  bool Erase(std::string_view name);

  void Clear();
  std::size_t size() const { return size_; }

  // Every entry, in no particular order: visit(name, id).
  template <typename Visit>
  void ForEach(Visit&& visit) const {
    for (const Slot& s : slots_) {
      if (s.used) visit(std::string_view(bytes_.data() + s.offset, s.length), s.id);
    }
  }

  // Whole words, then the last (possibly overlapping) word; the length is
  // mixed in first, so overlapping reads of different names do not collide
  // by construction.
  static std::uint64_t Hash(std::string_view name) {
    const char* p = name.data();
    const std::size_t n = name.size();
    std::uint64_t h = 0x9E3779B97F4A7C15ull * (n + 1);
    if (n >= 8) {
      const char* last = p + n - 8;
      for (; p < last; p += 8) h = Mix(h ^ Word(p));
      h = Mix(h ^ Word(last));
    } else if (n >= 4) {
      h = Mix(h ^ (HalfWord(p) | HalfWord(p + n - 4) << 32));
    } else if (n > 0) {
      h = Mix(h ^ (Byte(p[0]) | Byte(p[n / 2]) << 8 | Byte(p[n - 1]) << 16));
    }
    return Mix(h);
  }

 private:
  struct Slot {
    std::uint64_t hash = 0;
    std::uint32_t offset = 0;  // of the name in bytes_
    std::uint32_t length = 0;
    std::uint16_t id = 0;
    bool used = false;
  };

  bool Holds(const Slot& s, std::string_view name) const {
    return s.length == name.size() && SameBytes(bytes_.data() + s.offset, name.data(), name.size());
  }
  // Names are short: whole words, the last one overlapping, no library call.
  static bool SameBytes(const char* a, const char* b, std::size_t n) {
    if (n < 8) return n == 0 || std::memcmp(a, b, n) == 0;
    if (n <= 16) {
      return ((Word(a) ^ Word(b)) | (Word(a + n - 8) ^ Word(b + n - 8))) == 0;
    }
    for (std::size_t i = 0; i + 8 < n; i += 8) {
      if (Word(a + i) != Word(b + i)) return false;
    }
    return Word(a + n - 8) == Word(b + n - 8);
  }
  static std::uint64_t Word(const char* p) {
    std::uint64_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
  }
  static std::uint64_t HalfWord(const char* p) {
    std::uint32_t w;
    std::memcpy(&w, p, sizeof w);
    return w;
  }
  static std::uint64_t Byte(char c) { return static_cast<unsigned char>(c); }
  static std::uint64_t Mix(std::uint64_t x) {
    x ^= x >> 32;
    x *= 0xD6E8FEB86659FD93ull;
    x ^= x >> 32;
    return x;
  }
  // The slot holding name, or the empty slot where it would go.
  std::size_t Locate(std::string_view name, std::uint64_t hash) const;
  void Place(const Slot& slot);
  void Grow();

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t size_ = 0;
  std::string bytes_;  // the names' bytes, back to back; erased names stay until Clear
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_NAME_ID_MAP_H_
