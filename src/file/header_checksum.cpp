#include "file/header_checksum.h"

#include "file/crc32.h"
#include "file/header_codec.h"

namespace Sparlane {

namespace {

// The checksum and the reserved bytes after it, up to the creator name.
constexpr std::size_t kSkipFrom = SPARLANE_HEADER_OFFSET(header_crc32);
constexpr std::size_t kSkipTo = SPARLANE_HEADER_OFFSET(creator);

}  // namespace

std::uint32_t HeaderChecksumOfBytes(const std::uint8_t* bytes) {
  std::uint32_t crc = Crc32Update(0, bytes, kSkipFrom);
  return Crc32Update(crc, bytes + kSkipTo, kHeaderSize - kSkipTo);
}

std::uint32_t HeaderChecksum(const FileHeader& header) {
  std::uint8_t bytes[kHeaderSize];
  EncodeHeader(header, bytes);
  return HeaderChecksumOfBytes(bytes);
}

}  // namespace Sparlane
