// libFuzzer target: arbitrary bytes through the parameter-file parser.
//
// Input: one mode byte, then the file.  An odd mode byte rewrites the header
// checksum before parsing, so mutations get past the header into the name
// tables and LZ4 blocks instead of dying at the checksum.  Mode bit 1 also
// rebuilds the record indexes over whatever was loaded.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "file/byte_order.h"
#include "file/file_parser.h"
#include "file/header_checksum.h"
#include "file/header_codec.h"
#include "store/database_impl.h"
#include "store/indexes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const std::uint8_t mode = data[0];
  // An exact-size heap copy, so AddressSanitizer sees any read past the end.
  std::vector<std::uint8_t> file(data + 1, data + size);
  if ((mode & 1) && file.size() >= Sparlane::kHeaderSize) {
    Sparlane::StoreLE32(file.data() + Sparlane::HeaderOffset::kCrc,
                        Sparlane::HeaderChecksumOfBytes(file.data()));
  }
  Sparlane::DatabaseImpl store;
  const Sparlane::ErrorCode code =
      Sparlane::ParseParameterFile(file.data(), file.size(), store);
  if (code == Sparlane::ErrorCode::Success && (mode & 2)) {
    Sparlane::RebuildRecordIndexes(store);
  }
  return 0;
}
