#include "file/lz4_blocks.h"

#include <lz4.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

#include "file/byte_order.h"

namespace Sparlane {
namespace {

// Slack beyond the largest possible output, so that none of the decoder's
// end-of-buffer tests (all within a few dozen bytes of the end) can differ
// between the bounded buffer and a buffer of the full raw_size.
constexpr std::uint64_t kDecodeSlack = 1024;

ErrorCode ResultCode(int decoded, std::uint32_t raw_size) {
  if (decoded < 0) return ErrorCode::DecompressionFailed;
  if (static_cast<std::uint64_t>(decoded) != raw_size) return ErrorCode::InvalidData;
  return ErrorCode::Success;
}

// raw_size beyond anything compressed_size can produce: the outcome is an
// error or a short result either way, so decode into a buffer just large
// enough to tell the two apart.
ErrorCode DecodeUnreachableSize(const std::uint8_t* data, std::uint32_t compressed_size,
                                std::uint32_t raw_size) {
  const std::uint64_t capacity = MaxLz4Expansion(compressed_size) + kDecodeSlack;
  std::unique_ptr<char[]> scratch(new char[static_cast<std::size_t>(capacity)]);
  const int decoded = LZ4_decompress_safe(reinterpret_cast<const char*>(data), scratch.get(),
                                          static_cast<int>(compressed_size),
                                          static_cast<int>(capacity));
  return ResultCode(decoded, raw_size);
}

}  // namespace

std::uint64_t MaxLz4Expansion(std::uint64_t compressed_size) { return compressed_size * 255; }

std::uint64_t Lz4CompressBound(std::uint64_t size) { return size + size / 255 + 16; }

ErrorCode DecodeLz4Block(const std::uint8_t* data, std::uint32_t compressed_size,
                         std::uint32_t raw_size, std::vector<CuttingParameter>& out) {
  // The decoder takes int sizes; larger ones turn negative on the way in and
  // the decoder refuses them outright.
  if (compressed_size > static_cast<std::uint32_t>(INT_MAX) ||
      raw_size > static_cast<std::uint32_t>(INT_MAX)) {
    return ErrorCode::DecompressionFailed;
  }
  if (raw_size > MaxLz4Expansion(compressed_size) + kDecodeSlack) {
    return DecodeUnreachableSize(data, compressed_size, raw_size);
  }
  // Straight into the array: room for raw_size bytes at its end, given back
  // when the block does not decode.
  const std::size_t before = out.size();
  out.resize(before + (raw_size + sizeof(CuttingParameter) - 1) / sizeof(CuttingParameter));
  const int decoded = LZ4_decompress_safe(reinterpret_cast<const char*>(data),
                                          reinterpret_cast<char*>(out.data() + before),
                                          static_cast<int>(compressed_size),
                                          static_cast<int>(raw_size));
  const ErrorCode code = ResultCode(decoded, raw_size);
  out.resize(code == ErrorCode::Success ? before + raw_size / sizeof(CuttingParameter) : before);
  return code;
}

ErrorCode CompressLz4Block(const std::uint8_t* source, std::size_t size, std::uint8_t* target,
                           std::size_t capacity, std::size_t* written) {
  if (source == nullptr || target == nullptr) return ErrorCode::InvalidParameter;
  if (Lz4CompressBound(size) > capacity) return ErrorCode::BufferTooSmall;
  const int result =
      LZ4_compress_default(reinterpret_cast<const char*>(source), reinterpret_cast<char*>(target),
                           static_cast<int>(size), static_cast<int>(capacity));
  if (result < 1) return ErrorCode::CompressionFailed;
  *written = static_cast<std::size_t>(result);
  return ErrorCode::Success;
}

ErrorCode EncodeLz4Blocks(const std::vector<CuttingParameter>& records,
                          std::vector<std::uint8_t>& out) {
  if (records.empty()) return ErrorCode::Success;
  const std::size_t raw_total = records.size() * sizeof(CuttingParameter);
  out.reserve(out.size() + raw_total / 2);
  for (std::size_t first = 0; first < records.size(); first += kRecordsPerBlock) {
    const std::size_t count = std::min(kRecordsPerBlock, records.size() - first);
    const std::size_t raw_size = count * sizeof(CuttingParameter);
    const auto bound = static_cast<std::size_t>(Lz4CompressBound(raw_size));
    const std::size_t head_at = out.size();
    out.resize(head_at + kBlockHeadSize + bound);
    std::size_t written = 0;
    const ErrorCode code =
        CompressLz4Block(reinterpret_cast<const std::uint8_t*>(&records[first]), raw_size,
                         out.data() + head_at + kBlockHeadSize, bound, &written);
    if (code != ErrorCode::Success) {
      out.resize(head_at);
      return code;
    }
    StoreLE32(out.data() + head_at, static_cast<std::uint32_t>(raw_size));
    StoreLE32(out.data() + head_at + 4, static_cast<std::uint32_t>(written));
    out.resize(head_at + kBlockHeadSize + written);
  }
  return ErrorCode::Success;
}

}  // namespace Sparlane
