// Table-driven CRC-32, one byte at a time through the standard 256-entry table.
#include "file/crc32.h"

#include <array>

#include "sparlane/testing.h"

namespace Sparlane {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320u;

constexpr std::array<std::uint32_t, 256> MakeTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t c = i;
    for (int k = 0; k < 8; ++k) c = (c & 1u) ? (c >> 1) ^ kPolynomial : c >> 1;
    table[i] = c;
  }
  return table;
}

constexpr std::array<std::uint32_t, 256> kTable = MakeTable();

}  // namespace

std::uint32_t Crc32Update(std::uint32_t crc, const std::uint8_t* data, std::size_t length) {
  std::uint32_t c = crc ^ 0xFFFFFFFFu;
  for (std::size_t i = 0; i < length; ++i) c = kTable[(c ^ data[i]) & 0xFFu] ^ (c >> 8);
  return c ^ 0xFFFFFFFFu;
}

namespace Testing {

std::uint32_t CalculateCRC32(const std::uint8_t* data, std::size_t length) {
  if (data == nullptr || length == 0) return 0;
  return Crc32Update(0, data, length);
}

}  // namespace Testing
}  // namespace Sparlane
