// libFuzzer target: arbitrary bytes through the parameter-file parser.
//
// Input: one mode byte, then the file.  An odd mode byte rewrites the header
// checksum before parsing, so mutations get past the header into the name
// tables and LZ4 blocks instead of dying at the checksum.  Whatever loads
// must survive the LZ4 block writer and reader unchanged.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "file/byte_order.h"
#include "file/file_parser.h"
#include "file/header_checksum.h"
#include "file/header_codec.h"
#include "file/lz4_blocks.h"

namespace {

void CheckLz4RoundTrip(const std::vector<Sparlane::CuttingParameter>& records) {
  std::vector<std::uint8_t> blocks;
  if (Sparlane::EncodeLz4Blocks(records, blocks) != Sparlane::ErrorCode::Success) std::abort();
  std::vector<Sparlane::CuttingParameter> back;
  std::size_t pos = 0;
  while (pos < blocks.size()) {
    const std::uint32_t raw = Sparlane::LoadLE32(blocks.data() + pos);
    const std::uint32_t compressed = Sparlane::LoadLE32(blocks.data() + pos + 4);
    if (Sparlane::DecodeLz4Block(blocks.data() + pos + 8, compressed, raw, back) !=
        Sparlane::ErrorCode::Success) {
      std::abort();
    }
    pos += 8 + compressed;
  }
  if (back.size() != records.size() ||
      (!records.empty() &&
       std::memcmp(back.data(), records.data(), records.size() * sizeof records[0]) != 0)) {
    std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const std::uint8_t mode = data[0];
  // An exact-size heap copy, so AddressSanitizer sees any read past the end.
  std::vector<std::uint8_t> file(data + 1, data + size);
  if ((mode & 1) && file.size() >= Sparlane::kHeaderSize) {
    Sparlane::StoreLE32(file.data() + SPARLANE_HEADER_OFFSET(header_crc32),
                        Sparlane::HeaderChecksumOfBytes(file.data()));
  }
  Sparlane::StoreParts parts;
  if (Sparlane::ParseParameterFile(file.data(), file.size(), parts) ==
      Sparlane::ErrorCode::Success) {
    CheckLz4RoundTrip(*parts.records);
  }
  return 0;
}
