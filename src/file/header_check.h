// The header test applied while loading, against the file's size.
#ifndef SPARLANE_FILE_HEADER_CHECK_H_
#define SPARLANE_FILE_HEADER_CHECK_H_

#include <cstdint>

#include "sparlane/file_header.h"
#include "sparlane/records.h"

namespace Sparlane {

constexpr std::uint32_t kMaxParameterCount = 10000000;
constexpr std::uint32_t kMaxNameCount = 100000;

// InvalidMagic, UnsupportedVersion, CorruptedFile (checksum, offsets,
// compression), InvalidData (count limits) or Success.  header_bytes are the
// 1024 file bytes the header was decoded from.
ErrorCode CheckHeaderForLoad(const FileHeader& header, const std::uint8_t* header_bytes,
                             std::uint64_t file_size);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_HEADER_CHECK_H_
