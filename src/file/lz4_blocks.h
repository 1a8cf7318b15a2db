// The LZ4 block layer of the parameter data: one block head (raw_size,
// compressed_size) and one raw LZ4 block per run of up to 64 records.
#ifndef SPARLANE_FILE_LZ4_BLOCKS_H_
#define SPARLANE_FILE_LZ4_BLOCKS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

#include "sparlane/records.h"

namespace Sparlane {

constexpr std::size_t kRecordsPerBlock = 64;
constexpr std::size_t kBlockHeadSize = 8;

// Largest output any LZ4 block of compressed_size bytes can decode to: each
// input byte yields at most 255 output bytes.
std::uint64_t MaxLz4Expansion(std::uint64_t compressed_size);

// The compressor's worst case for size input bytes (its compress bound):
// the output buffer a block needs.
std::uint64_t Lz4CompressBound(std::uint64_t size);

// Decodes one block whose head said raw_size (a non-zero multiple of 64)
// straight onto the end of out.  DecompressionFailed when the decoder reports
// an error, InvalidData when it yields a size other than raw_size.  A
// raw_size the input cannot possibly reach is refused with the same code the
// decoder would give, without allocating raw_size bytes.
ErrorCode DecodeLz4Block(const std::uint8_t* data, std::uint32_t compressed_size,
                         std::uint32_t raw_size, std::vector<CuttingParameter>& out);

// Compresses size bytes at source into target (capacity bytes) with the
// default compressor.  InvalidParameter for a null source or target,
// BufferTooSmall when capacity is below the compress bound, CompressionFailed
// when the compressor yields nothing; written gets the block's length.
ErrorCode CompressLz4Block(const std::uint8_t* source, std::size_t size, std::uint8_t* target,
                           std::size_t capacity, std::size_t* written);

// Appends the whole block run for records to out.
ErrorCode EncodeLz4Blocks(const std::vector<CuttingParameter>& records,
                          std::vector<std::uint8_t>& out);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_LZ4_BLOCKS_H_
