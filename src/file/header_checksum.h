// The checksum the writer stores in header_crc32 and the loader checks.
#ifndef SPARLANE_FILE_HEADER_CHECKSUM_H_
#define SPARLANE_FILE_HEADER_CHECKSUM_H_

#include <cstdint>

#include "sparlane/file_header.h"

namespace Sparlane {

// One CRC-32 run over the 1024 header bytes with the checksum and the 12
// reserved bytes after it skipped, not zeroed.
std::uint32_t HeaderChecksumOfBytes(const std::uint8_t* header_bytes);

// The same over the header's little-endian file bytes.
std::uint32_t HeaderChecksum(const FileHeader& header);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_HEADER_CHECKSUM_H_
