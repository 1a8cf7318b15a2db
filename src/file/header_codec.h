// FileHeader <-> its 1024 little-endian file bytes, field by field at the
// offsets the public header asserts.
#ifndef SPARLANE_FILE_HEADER_CODEC_H_
#define SPARLANE_FILE_HEADER_CODEC_H_

#include <cstddef>
#include <cstdint>

#include "sparlane/file_header.h"

namespace Sparlane {

constexpr std::uint64_t kHeaderSize = sizeof(FileHeader);

// Where a field sits in the file: its offset in FileHeader, whose layout is
// the file's.
#define SPARLANE_HEADER_OFFSET(field) offsetof(::Sparlane::FileHeader, field)

void EncodeHeader(const FileHeader& header, std::uint8_t out[kHeaderSize]);
FileHeader DecodeHeader(const std::uint8_t bytes[kHeaderSize]);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_HEADER_CODEC_H_
