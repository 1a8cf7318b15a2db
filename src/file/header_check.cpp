// The two header tests: the loader's (knows the file size, uses the writer's
// checksum) and the stand-alone ValidateHeader (its own checksum rule, which
// deliberately differs, so saved headers fail it).
#include "file/header_check.h"

#include <cstring>

#include "file/crc32.h"
#include "file/header_checksum.h"
#include "file/header_codec.h"
#include "sparlane/testing.h"

namespace Sparlane {
namespace {

bool CountsExceedLimits(const FileHeader& h) {
  return h.parameter_count > kMaxParameterCount || h.vendor_count > kMaxNameCount ||
         h.machine_count > kMaxNameCount || h.material_count > kMaxNameCount;
}

// Non-zero offsets, in file order, must be >= 1024 and never decrease.
bool OffsetsInOrder(const FileHeader& h) {
  const std::uint64_t offsets[] = {h.aux_offset_1,          h.vendor_table_offset,
                                   h.machine_table_offset,  h.material_table_offset,
                                   h.parameter_data_offset, h.aux_offset_2};
  std::uint64_t previous = 0;
  for (std::uint64_t offset : offsets) {
    if (offset == 0) continue;
    if (offset < kHeaderSize || offset < previous) return false;
    previous = offset;
  }
  return true;
}

// CRC over all 1024 bytes with only the four checksum bytes zeroed.
std::uint32_t StandaloneChecksum(const FileHeader& h) {
  std::uint8_t bytes[kHeaderSize];
  EncodeHeader(h, bytes);
  std::memset(bytes + SPARLANE_HEADER_OFFSET(header_crc32), 0, sizeof h.header_crc32);
  return Crc32Update(0, bytes, kHeaderSize);
}

}  // namespace

ErrorCode CheckHeaderForLoad(const FileHeader& h, const std::uint8_t* header_bytes,
                             std::uint64_t size) {
  if (h.magic != kFileMagic) return ErrorCode::InvalidMagic;
  if (h.version_major != kFileVersionMajor) return ErrorCode::UnsupportedVersion;
  if (HeaderChecksumOfBytes(header_bytes) != h.header_crc32 || size < kHeaderSize) {
    return ErrorCode::CorruptedFile;
  }
  if (h.vendor_table_offset >= size || h.machine_table_offset >= size ||
      h.material_table_offset >= size) {
    return ErrorCode::CorruptedFile;
  }
  // An empty record array may start exactly at the end of the file.
  const bool data_past_end = h.parameter_count != 0 ? h.parameter_data_offset >= size
                                                    : h.parameter_data_offset > size;
  if (data_past_end) return ErrorCode::CorruptedFile;
  if (h.vendor_table_offset < kHeaderSize || h.vendor_table_offset >= h.machine_table_offset ||
      h.machine_table_offset >= h.material_table_offset ||
      h.material_table_offset > h.parameter_data_offset) {
    return ErrorCode::CorruptedFile;
  }
  if (CountsExceedLimits(h)) return ErrorCode::InvalidData;
  if (h.compression > 2) return ErrorCode::CorruptedFile;
  return ErrorCode::Success;
}

namespace Testing {

ErrorCode ValidateHeader(const FileHeader& h) {
  if (h.magic != kFileMagic) return ErrorCode::InvalidMagic;
  if (h.version_major != kFileVersionMajor) return ErrorCode::UnsupportedVersion;
  if (CountsExceedLimits(h)) return ErrorCode::InvalidParameter;
  if (h.aux_offset_1 >= 1 && h.aux_offset_1 <= 1023) return ErrorCode::InvalidParameter;
  if (!OffsetsInOrder(h)) return ErrorCode::InvalidParameter;
  if (h.header_crc32 != 0 && StandaloneChecksum(h) != h.header_crc32) {
    return ErrorCode::ChecksumMismatch;
  }
  return ErrorCode::Success;
}

}  // namespace Testing
}  // namespace Sparlane
