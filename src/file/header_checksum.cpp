#include "file/header_checksum.h"

#include "file/crc32.h"
#include "file/header_codec.h"

namespace Sparlane {

std::uint32_t HeaderChecksumOfBytes(const std::uint8_t* bytes) {
  std::uint32_t crc = Crc32Update(0, bytes, 128);
  return Crc32Update(crc, bytes + 144, kHeaderSize - 144);
}

std::uint32_t HeaderChecksum(const FileHeader& header) {
  std::uint8_t bytes[kHeaderSize];
  EncodeHeader(header, bytes);
  return HeaderChecksumOfBytes(bytes);
}

}  // namespace Sparlane
