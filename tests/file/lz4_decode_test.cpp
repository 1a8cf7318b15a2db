// The bounded block decoder against the literal rule (a scratch array of the
// full raw_size), on random and mutated blocks.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "file/lz4_blocks.h"
#include "file_bytes.h"

using namespace Sparlane;
using namespace filetest;

namespace {

ErrorCode LiteralDecode(const Bytes& block, std::uint32_t raw_size,
                        std::vector<CuttingParameter>& out) {
  std::vector<CuttingParameter> scratch(raw_size / 64);
  const int got = LZ4_decompress_safe(reinterpret_cast<const char*>(block.data()),
                                      reinterpret_cast<char*>(scratch.data()),
                                      static_cast<int>(block.size()), static_cast<int>(raw_size));
  if (got < 0) return ErrorCode::DecompressionFailed;
  if (static_cast<std::uint32_t>(got) != raw_size) return ErrorCode::InvalidData;
  out.insert(out.end(), scratch.begin(), scratch.end());
  return ErrorCode::Success;
}

Bytes Compress(const Bytes& raw) {
  Bytes b = Lz4Block(raw);
  return Bytes(b.begin() + 8, b.end());
}

}  // namespace

TEST(Lz4Decode, BoundedDecoderMatchesLiteralOnRandomBlocks) {
  std::mt19937 rng(99);
  int successes = 0, short_results = 0, errors = 0;
  for (int round = 0; round < 4000; ++round) {
    // Highly compressible raw data so that large raw sizes are reachable.
    Bytes raw(64 * (1 + rng() % 200), 0);
    const int pattern = static_cast<int>(rng() % 4);
    for (std::size_t i = 0; i < raw.size(); ++i) {
      raw[i] = pattern == 0 ? 0 : static_cast<std::uint8_t>(pattern == 1 ? i % 7 : rng() % 3);
    }
    Bytes block = Compress(raw);
    if (rng() % 2) {
      const int edits = 1 + static_cast<int>(rng() % 3);
      for (int e = 0; e < edits; ++e) block[rng() % block.size()] = static_cast<std::uint8_t>(rng());
    }
    std::uint32_t raw_size = static_cast<std::uint32_t>(raw.size());
    switch (rng() % 4) {
      case 0: break;
      case 1: raw_size = 64 * (1 + rng() % 400); break;
      case 2: raw_size = static_cast<std::uint32_t>(64 * (block.size() * 255 / 64 + rng() % 40)); break;
      case 3: raw_size = 64 * (1 + rng() % 4); break;
    }
    std::vector<CuttingParameter> expected, got;
    const ErrorCode want = LiteralDecode(block, raw_size, expected);
    const ErrorCode have = DecodeLz4Block(block.data(), static_cast<std::uint32_t>(block.size()),
                                          raw_size, got);
    ASSERT_EQ(have, want) << "round " << round << " raw_size " << raw_size;
    ASSERT_EQ(got.size(), expected.size());
    for (std::size_t i = 0; i < got.size(); ++i) ASSERT_TRUE(SameBytes(got[i], expected[i]));
    if (want == ErrorCode::Success) ++successes;
    if (want == ErrorCode::InvalidData) ++short_results;
    if (want == ErrorCode::DecompressionFailed) ++errors;
  }
  // Every outcome must actually have been exercised.
  EXPECT_GT(successes, 100);
  EXPECT_GT(short_results, 100);
  EXPECT_GT(errors, 100);
}

TEST(Lz4Decode, UnreachableRawSizeIsDecidedByTheDecoder) {
  Bytes raw(640, 0);
  const Bytes good = Compress(raw);
  std::vector<CuttingParameter> out;
  // Far larger than the block can produce: a clean decode gives a short result.
  EXPECT_EQ(DecodeLz4Block(good.data(), static_cast<std::uint32_t>(good.size()), 64u << 20, out),
            ErrorCode::InvalidData);
  // A broken block with the same raw_size is a decoder error first.
  Bytes broken = {0x10, 'A', 0x00, 0x00};
  EXPECT_EQ(DecodeLz4Block(broken.data(), 4, 64u << 20, out), ErrorCode::DecompressionFailed);
  EXPECT_TRUE(out.empty());
}

TEST(Lz4Decode, SizesBeyondIntAreDecoderErrors) {
  Bytes raw(640, 0);
  const Bytes good = Compress(raw);
  std::vector<CuttingParameter> out;
  EXPECT_EQ(DecodeLz4Block(good.data(), static_cast<std::uint32_t>(good.size()),
                           0x80000000u, out),
            ErrorCode::DecompressionFailed);
  // What the literal rule does: the size turns negative and the decoder refuses.
  CuttingParameter scratch[10];
  EXPECT_LT(LZ4_decompress_safe(reinterpret_cast<const char*>(good.data()),
                                reinterpret_cast<char*>(scratch), static_cast<int>(good.size()),
                                static_cast<int>(0x80000000u - 0x100000000ll)),
            0);
}

TEST(Lz4Decode, MaxExpansionBoundsEveryRealBlock) {
  for (std::size_t n : {64u, 4096u, 65536u, 1u << 20}) {
    const Bytes block = Compress(Bytes(n, 0));
    EXPECT_LE(n, MaxLz4Expansion(block.size()));
  }
}
