#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "file/header_checksum.h"
#include "file/header_codec.h"
#include "file_bytes.h"
#include "sparlane/sparlane.h"

using namespace Sparlane;
using namespace filetest;

namespace {

FileHeader DecodeBytes(const Bytes& b) {
  FileHeader h;
  std::memcpy(&h, b.data(), sizeof h);  // little-endian host
  return h;
}

FileHeader GoodHeader() {
  FileContents contents;
  Bytes file = BuildFile(contents);
  FileHeader h = DecodeBytes(file);
  h.header_crc32 = 0;
  return h;
}

}  // namespace

TEST(Crc32, CheckValueOfNineDigits) {
  const char* digits = "123456789";
  EXPECT_EQ(Testing::CalculateCRC32(reinterpret_cast<const std::uint8_t*>(digits), 9),
            0xCBF43926u);
}

TEST(Crc32, NullPointerOrZeroLengthGivesZero) {
  EXPECT_EQ(Testing::CalculateCRC32(nullptr, 100), 0u);
  const std::uint8_t byte = 0x55;
  EXPECT_EQ(Testing::CalculateCRC32(&byte, 0), 0u);
}

TEST(Crc32, MatchesBitwiseReferenceOnRandomInput) {
  std::mt19937 rng(7);
  for (int round = 0; round < 200; ++round) {
    Bytes data(rng() % 3000 + 1);
    for (auto& b : data) b = static_cast<std::uint8_t>(rng());
    EXPECT_EQ(Testing::CalculateCRC32(data.data(), data.size()),
              ReferenceCrc(data.data(), data.size()));
  }
}

TEST(HeaderCodec, EncodeDecodeKeepsEveryByte) {
  std::mt19937 rng(3);
  Bytes bytes(1024);
  for (auto& b : bytes) b = static_cast<std::uint8_t>(rng());
  const FileHeader h = DecodeHeader(bytes.data());
  Bytes again(1024);
  EncodeHeader(h, again.data());
  EXPECT_EQ(bytes, again);
  EXPECT_EQ(h.parameter_count, Get32(bytes, 16));
  EXPECT_EQ(h.parameter_data_offset, Get64(bytes, 104));
}

TEST(HeaderChecksum, SkipsBytes128To143AndCoversTheRest) {
  Bytes file = BuildFile(FileContents{});
  Bytes header(file.begin(), file.begin() + 1024);
  const std::uint32_t base = HeaderChecksumOfBytes(header.data());
  EXPECT_EQ(base, WriterChecksum(header));
  for (int offset = 0; offset < 1024; ++offset) {
    Bytes changed = header;
    changed[offset] ^= 0x5A;
    const bool skipped = offset >= 128 && offset < 144;
    EXPECT_EQ(HeaderChecksumOfBytes(changed.data()) == base, skipped) << "offset " << offset;
  }
}

TEST(ValidateHeader, AcceptsGoodHeaderWithZeroChecksum) {
  EXPECT_EQ(Testing::ValidateHeader(GoodHeader()), ErrorCode::Success);
}

TEST(ValidateHeader, ZeroChecksumSkipsTheChecksumTestWhateverTheContents) {
  FileHeader h = GoodHeader();
  h.reserved_176[500] = 0x77;
  h.creator[3] = 'X';
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
}

TEST(ValidateHeader, WrongMagicComesFirst) {
  FileHeader h = GoodHeader();
  h.magic = 0x12345678;
  h.version_major = 9;
  h.parameter_count = 20000000;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidMagic);
}

TEST(ValidateHeader, WrongMajorVersion) {
  FileHeader h = GoodHeader();
  h.version_major = 2;
  h.parameter_count = 20000000;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::UnsupportedVersion);
  h.version_major = 0;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::UnsupportedVersion);
}

TEST(ValidateHeader, MinorVersionIsNeverChecked) {
  FileHeader h = GoodHeader();
  h.version_minor = 999;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
}

TEST(ValidateHeader, CountLimitsGiveInvalidParameter) {
  FileHeader h = GoodHeader();
  h.parameter_count = 10000000;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
  h.parameter_count = 10000001;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  for (int which = 0; which < 3; ++which) {
    FileHeader g = GoodHeader();
    std::uint32_t* count = which == 0 ? &g.vendor_count : which == 1 ? &g.machine_count
                                                                      : &g.material_count;
    *count = 100000;
    EXPECT_EQ(Testing::ValidateHeader(g), ErrorCode::Success);
    *count = 100001;
    EXPECT_EQ(Testing::ValidateHeader(g), ErrorCode::InvalidParameter);
  }
}

TEST(ValidateHeader, AuxOffsetOneBelowHeaderIsRefused) {
  FileHeader h = GoodHeader();
  h.aux_offset_1 = 1;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  h.aux_offset_1 = 1023;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  h.aux_offset_1 = 1024;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
}

TEST(ValidateHeader, NonZeroOffsetsMustBeAtLeast1024AndNonDecreasing) {
  FileHeader h = GoodHeader();
  h.machine_table_offset = h.vendor_table_offset;  // equal is allowed
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
  h = GoodHeader();
  h.machine_table_offset = 0;  // zero offsets are skipped
  h.material_table_offset = 0;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
  h = GoodHeader();
  h.material_table_offset = h.machine_table_offset - 1;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  h = GoodHeader();
  h.aux_offset_2 = h.parameter_data_offset - 1;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  h.aux_offset_2 = h.parameter_data_offset;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
  h = GoodHeader();
  h.aux_offset_1 = h.vendor_table_offset + 1;  // aux 1 comes before the vendor table
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
  h = GoodHeader();
  h.vendor_table_offset = 0;
  h.machine_table_offset = 1000;  // below 1024, and now the first non-zero one
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
}

TEST(ValidateHeader, ChecksumRuleZeroesOnlyTheFourChecksumBytes) {
  FileHeader h = GoodHeader();
  h.reserved_132[0] = 9;  // covered by this rule, unlike the writer's
  Bytes bytes(1024);
  EncodeHeader(h, bytes.data());
  h.header_crc32 = ReferenceCrc(bytes.data(), 1024);
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::Success);
  h.reserved_132[0] = 10;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::ChecksumMismatch);
}

TEST(ValidateHeader, HeaderWrittenWithTheWritersChecksumFails) {
  Bytes file = BuildFile(FileContents{});
  const FileHeader h = DecodeBytes(file);
  ASSERT_NE(h.header_crc32, 0u);
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::ChecksumMismatch);
}

TEST(ValidateHeader, FailuresBeforeTheChecksumWin) {
  FileHeader h = GoodHeader();
  h.header_crc32 = 1;
  h.material_table_offset = 5;
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::InvalidParameter);
}
