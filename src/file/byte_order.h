// Little-endian loads and stores of the file's integers, independent of the
// host's byte order and alignment.
#ifndef SPARLANE_FILE_BYTE_ORDER_H_
#define SPARLANE_FILE_BYTE_ORDER_H_

#include <cstdint>

namespace Sparlane {

inline std::uint16_t LoadLE16(const std::uint8_t* p) {
  return static_cast<std::uint16_t>(p[0] | (p[1] << 8));
}

inline std::uint32_t LoadLE32(const std::uint8_t* p) {
  return static_cast<std::uint32_t>(p[0]) | (static_cast<std::uint32_t>(p[1]) << 8) |
         (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

inline std::uint64_t LoadLE64(const std::uint8_t* p) {
  return static_cast<std::uint64_t>(LoadLE32(p)) |
         (static_cast<std::uint64_t>(LoadLE32(p + 4)) << 32);
}

inline void StoreLE16(std::uint8_t* p, std::uint16_t v) {
  p[0] = static_cast<std::uint8_t>(v);
  p[1] = static_cast<std::uint8_t>(v >> 8);
}

inline void StoreLE32(std::uint8_t* p, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

inline void StoreLE64(std::uint8_t* p, std::uint64_t v) {
  for (int i = 0; i < 8; ++i) p[i] = static_cast<std::uint8_t>(v >> (8 * i));
}

}  // namespace Sparlane

#endif  // SPARLANE_FILE_BYTE_ORDER_H_
