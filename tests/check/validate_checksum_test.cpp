// The header-checksum step of Validate, on databases that came from a file.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "check_fixtures.h"
#include "sparlane/sparlane.h"
#include "file/mapped_file.h"

namespace Sparlane {
namespace {

using check_test::FillNames;
using check_test::GoodRecord;
using check_test::PutRecords;

// Bit-at-a-time CRC-32 (reflected 0xEDB88320), independent of the library.
std::uint32_t BitwiseCrc(const std::vector<std::uint8_t>& bytes) {
  std::uint32_t c = 0xFFFFFFFFu;
  for (std::uint8_t b : bytes) {
    c ^= b;
    for (int k = 0; k < 8; ++k) c = (c & 1u) ? (c >> 1) ^ 0xEDB88320u : c >> 1;
  }
  return c ^ 0xFFFFFFFFu;
}

// The writer's rule: bytes 0-127 then 144-1023, in one run.
std::uint32_t WriterChecksum(const FileHeader& header) {
  std::uint8_t raw[sizeof(FileHeader)];
  std::memcpy(raw, &header, sizeof raw);
  std::vector<std::uint8_t> covered(raw, raw + 128);
  covered.insert(covered.end(), raw + 144, raw + 1024);
  return BitwiseCrc(covered);
}

std::uint8_t* HeaderBytes(Database& db) {
  return reinterpret_cast<std::uint8_t*>(&DatabaseAccess::Header(db));
}

class ValidateChecksum : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = ::testing::TempDir() + "check_mapped_" +
            ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".bin";
    std::ofstream(path_, std::ios::binary) << std::string(2048, 'x');

    FillNames(db_);
    PutRecords(db_, {GoodRecord()});
    auto file = std::make_unique<MappedFile>();
    ASSERT_EQ(file->Open(path_), ErrorCode::Success);
    ASSERT_NE(file->view(), nullptr);
    file_ = file.get();
    DatabaseAccess::AttachFile(db_, std::move(file));
    FileHeader& header = DatabaseAccess::Header(db_);
    std::memcpy(header.creator, "checker", 7);
    header.reserved_176[100] = 0x5A;
    header.header_crc32 = WriterChecksum(header);
  }
  void TearDown() override {
    DatabaseAccess::AttachFile(db_, nullptr);
    std::remove(path_.c_str());
  }

  std::string path_;
  Database db_;
  MappedFile* file_ = nullptr;  // owned by db_
};

TEST_F(ValidateChecksum, MatchingWriterChecksumPasses) {
  EXPECT_EQ(db_.Validate(), ErrorCode::Success);
}

TEST_F(ValidateChecksum, ChangedCoveredByteIsAMismatch) {
  for (std::size_t offset : {0u, 16u, 127u, 144u, 200u, 1023u}) {
    std::uint8_t* bytes = HeaderBytes(db_);
    bytes[offset] ^= 0x01;
    EXPECT_EQ(db_.Validate(), ErrorCode::ChecksumMismatch) << offset;
    EXPECT_EQ(db_.GetLastError(), "Header checksum mismatch") << offset;
    bytes[offset] ^= 0x01;
  }
  EXPECT_EQ(db_.Validate(), ErrorCode::Success);
}

TEST_F(ValidateChecksum, ReservedBytesAfterTheChecksumAreNotCovered) {
  for (std::size_t offset = 132; offset < 144; ++offset) HeaderBytes(db_)[offset] = 0xA5;
  EXPECT_EQ(db_.Validate(), ErrorCode::Success);
}

TEST_F(ValidateChecksum, WrongStoredChecksumIsAMismatch) {
  DatabaseAccess::Header(db_).header_crc32 ^= 0x80000000u;
  EXPECT_EQ(db_.Validate(), ErrorCode::ChecksumMismatch);
  EXPECT_EQ(db_.GetLastError(), "Header checksum mismatch");
}

TEST_F(ValidateChecksum, ZeroStoredChecksumIsNotASkip) {
  DatabaseAccess::Header(db_).header_crc32 = 0;
  EXPECT_EQ(db_.Validate(), ErrorCode::ChecksumMismatch);
}

TEST_F(ValidateChecksum, ChecksumComesBeforeCountTest) {
  FileHeader& header = DatabaseAccess::Header(db_);
  header.parameter_count = 9;  // covered byte changed: checksum now wrong
  EXPECT_EQ(db_.Validate(), ErrorCode::ChecksumMismatch);
  header.header_crc32 = WriterChecksum(header);
  EXPECT_EQ(db_.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db_.GetLastError(), "Parameter count mismatch: header says 9, actual is 1");
}

TEST_F(ValidateChecksum, ClosedMappedFileSkipsTheTestAgain) {
  DatabaseAccess::Header(db_).header_crc32 ^= 1u;
  file_->Close();
  EXPECT_EQ(db_.Validate(), ErrorCode::Success);
}

// Through the real writer and reader: a saved file validates; the in-memory
// header copy is what is checked afterwards.
TEST(ValidateLoadedFile, SavedAndLoadedDatabaseValidates) {
  const std::string path = ::testing::TempDir() + "check_roundtrip.slb";
  Database source;
  FillNames(source);
  ASSERT_EQ(source.AddParameter(GoodRecord()), ErrorCode::Success);
  CuttingParameter second = GoodRecord();
  second.material_id = 2;
  second.thickness_mm = 12.7f;
  ASSERT_EQ(source.AddParameter(second), ErrorCode::Success);
  ASSERT_EQ(source.SaveToBinary(path, CompressionType::None), ErrorCode::Success);

  Database db;
  ASSERT_EQ(db.LoadFromBinary(path), ErrorCode::Success);
  EXPECT_EQ(db.Validate(), ErrorCode::Success);

  HeaderBytes(db)[135] ^= 0xFF;
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  HeaderBytes(db)[200] ^= 0xFF;
  EXPECT_EQ(db.Validate(), ErrorCode::ChecksumMismatch);
  EXPECT_EQ(db.GetLastError(), "Header checksum mismatch");
  std::remove(path.c_str());
}

TEST(ValidateLoadedFile, EmptyLoadedDatabaseValidates) {
  const std::string path = ::testing::TempDir() + "check_empty.slb";
  Database source;
  source.Create();
  ASSERT_EQ(source.SaveToBinary(path, CompressionType::LZ4), ErrorCode::Success);
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path), ErrorCode::Success);
  EXPECT_EQ(db.GetFileHeader().parameter_count, 0u);
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  std::remove(path.c_str());
}

}  // namespace
}  // namespace Sparlane
