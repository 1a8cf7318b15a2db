// Name tables as written: ids from 1, names cut to 255 bytes, and a
// table_size that counts the uncut lengths (readers only bounds-test it).
#include <algorithm>

#include "file/byte_order.h"
#include "file/file_writer.h"

namespace Sparlane {

std::vector<std::uint8_t> EncodeNameTable(const std::vector<std::string>& names,
                                          bool machine_form) {
  constexpr std::size_t kMaxNameBytes = 255;
  const std::uint64_t fixed = machine_form ? 6 : 3;
  std::uint64_t table_size = 4;
  std::uint64_t bytes = 8;
  for (const std::string& name : names) {
    table_size += fixed + name.size();
    bytes += fixed + std::min(name.size(), kMaxNameBytes);
  }

  std::vector<std::uint8_t> out(static_cast<std::size_t>(bytes));
  std::uint8_t* p = out.data();
  StoreLE32(p, static_cast<std::uint32_t>(names.size()));
  StoreLE32(p + 4, static_cast<std::uint32_t>(table_size));
  p += 8;
  std::uint32_t id = 1;
  for (const std::string& name : names) {
    const std::size_t length = std::min(name.size(), kMaxNameBytes);
    StoreLE16(p, static_cast<std::uint16_t>(id++));
    p += 2;
    if (machine_form) {
      StoreLE16(p, 1);  // vendor_id: always 1; readers ignore it
      p += 2;
    }
    *p++ = static_cast<std::uint8_t>(length);
    std::copy(name.data(), name.data() + length, p);
    p += length;
    if (machine_form) *p++ = 0;  // extra_length
  }
  return out;
}

}  // namespace Sparlane
