#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <filesystem>

#include "file/file_writer.h"
#include "file/lz4_blocks.h"
#include "file_bytes.h"
#include "../support/store_seam.h"

using namespace Sparlane;
using namespace filetest;

namespace {

class SaveTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = ScratchDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
    ASSERT_FALSE(dir_.empty());
  }
  std::string Path(const std::string& name) const { return dir_ + "/" + name; }

  // A created database filled directly, so opaque bytes are kept as given.
  void Fill(Database& db, int records) {
    ASSERT_EQ(db.Create(), ErrorCode::Success);
    DatabaseAccess::SetNames(db, NameKind::kVendor, {"Acme", "B"});
    DatabaseAccess::SetNames(db, NameKind::kMachine, {"Cutter 1", "Cutter 2", "C3"});
    DatabaseAccess::SetNames(db, NameKind::kMaterial, {"Mild Steel"});
    std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
    for (int i = 0; i < records; ++i) {
      table.push_back(SampleRecord(1, static_cast<float>(i) * 0.5f, i % 100));
    }
  }
  std::string dir_;
};

void ExpectSameStore(const Database& a, const Database& b) {
  EXPECT_EQ(a.GetVendors(), b.GetVendors());
  EXPECT_EQ(a.GetMachines(), b.GetMachines());
  EXPECT_EQ(a.GetMaterials(), b.GetMaterials());
  const std::vector<CuttingParameter> x = a.GetParameters();
  const std::vector<CuttingParameter> y = b.GetParameters();
  ASSERT_EQ(x.size(), y.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    ASSERT_TRUE(SameBytes(x[i], y[i])) << "record " << i;
  }
}

}  // namespace

TEST_F(SaveTest, NotLoadedGivesNotLoadedAndCreatesNoFile) {
  Database db;
  EXPECT_EQ(db.SaveToBinary(Path("x.bin"), CompressionType::None), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_FALSE(FileExists(Path("x.bin")));
  EXPECT_FALSE(FileExists(Path("x.bin.tmp")));
}

TEST_F(SaveTest, RawRoundTripKeepsEveryByteOfEveryRecord) {
  Database db;
  Fill(db, 200);
  ASSERT_EQ(db.SaveToBinary(Path("raw.bin"), CompressionType::None), ErrorCode::Success);
  EXPECT_FALSE(FileExists(Path("raw.bin.tmp")));
  Database back;
  ASSERT_EQ(back.LoadFromBinary(Path("raw.bin")), ErrorCode::Success);
  ExpectSameStore(db, back);
  EXPECT_EQ(back.GetParameters()[3].aux_id, 0xA003);
}

TEST_F(SaveTest, Lz4RoundTripKeepsEveryByteOfEveryRecord) {
  for (int n : {1, 63, 64, 65, 129, 1000}) {
    Database db;
    Fill(db, n);
    ASSERT_EQ(db.SaveToBinary(Path("lz.bin"), CompressionType::LZ4), ErrorCode::Success);
    EXPECT_FALSE(FileExists(Path("lz.bin.tmp")));
    Database back;
    ASSERT_EQ(back.LoadFromBinary(Path("lz.bin")), ErrorCode::Success) << n;
    ExpectSameStore(db, back);
  }
}

TEST_F(SaveTest, WrittenBytesFollowTheLayout) {
  Database db;
  Fill(db, 2);
  ASSERT_EQ(db.SaveToBinary(Path("f.bin"), CompressionType::None), ErrorCode::Success);
  const Bytes f = ReadFile(Path("f.bin"));
  FileContents contents;
  contents.vendors = {"Acme", "B"};
  contents.machines = {"Cutter 1", "Cutter 2", "C3"};
  contents.materials = {"Mild Steel"};
  contents.records = db.GetParameters();
  Bytes expected = BuildFile(contents);
  // The machine entries carry vendor id 1 in saved files.
  for (std::size_t at = Get64(expected, 56) + 8, i = 0; i < 3; ++i) {
    Put16(expected, at + 2, 1);
    at += 6 + contents.machines[i].size();
  }
  Put64(expected, 8, Get64(f, 8));  // created_time is "now"
  Reseal(expected);
  EXPECT_EQ(f, expected);
  const std::int64_t created = static_cast<std::int64_t>(Get64(f, 8));
  EXPECT_NEAR(static_cast<double>(created), static_cast<double>(std::time(nullptr)), 60.0);
}

TEST_F(SaveTest, SavedHeaderFailsTheStandaloneChecksumRule) {
  Database db;
  Fill(db, 1);
  ASSERT_EQ(db.SaveToBinary(Path("f.bin"), CompressionType::None), ErrorCode::Success);
  const Bytes f = ReadFile(Path("f.bin"));
  FileHeader h;
  std::memcpy(&h, f.data(), sizeof h);
  ASSERT_NE(h.header_crc32, 0u);
  EXPECT_EQ(Testing::ValidateHeader(h), ErrorCode::ChecksumMismatch);
}

TEST_F(SaveTest, EmptyDatabaseWritesDataOffsetAtEndOfFileAndLoads) {
  for (CompressionType c : {CompressionType::None, CompressionType::LZ4, CompressionType::Reserved}) {
    Database db;
    ASSERT_EQ(db.Create(), ErrorCode::Success);
    ASSERT_EQ(db.SaveToBinary(Path("empty.bin"), c), ErrorCode::Success);
    const Bytes f = ReadFile(Path("empty.bin"));
    EXPECT_EQ(Get64(f, 104), f.size());
    EXPECT_EQ(f.size(), 1024u + 8 + 8 + 8);
    Database back;
    EXPECT_EQ(back.LoadFromBinary(Path("empty.bin")), ErrorCode::Success);
    EXPECT_TRUE(back.IsLoaded());
  }
}

TEST_F(SaveTest, ReservedWritesNoDataAndSuchFileWithRecordsIsRefused) {
  Database db;
  Fill(db, 3);
  ASSERT_EQ(db.SaveToBinary(Path("r.bin"), CompressionType::Reserved), ErrorCode::Success);
  const Bytes f = ReadFile(Path("r.bin"));
  EXPECT_EQ(Get32(f, 16), 3u);
  EXPECT_EQ(f[112], 2);
  EXPECT_EQ(Get64(f, 104), f.size());
  Database back;
  EXPECT_EQ(back.LoadFromBinary(Path("r.bin")), ErrorCode::CorruptedFile);
  EXPECT_EQ(back.GetLastError(), "Failed to read binary format");
}

TEST_F(SaveTest, LongNamesAreCutTo255BytesAndTableSizeCountsFullLength) {
  Database db;
  Fill(db, 0);
  DatabaseAccess::SetNames(db, NameKind::kVendor, {std::string(300, 'v')});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {std::string(256, 'm')});
  ASSERT_EQ(db.SaveToBinary(Path("n.bin"), CompressionType::None), ErrorCode::Success);
  const Bytes f = ReadFile(Path("n.bin"));
  EXPECT_EQ(Get32(f, 1024 + 4), 4u + 303u);  // vendor table_size uses the uncut length
  EXPECT_EQ(f[1024 + 8 + 2], 255);
  EXPECT_EQ(Get64(f, 56), 1024u + 8 + 258);   // the entry occupies 258 bytes
  EXPECT_EQ(Get32(f, Get64(f, 56) + 4), 4u + 6 + 256);
  Database back;
  ASSERT_EQ(back.LoadFromBinary(Path("n.bin")), ErrorCode::Success);
  EXPECT_EQ(back.GetVendors()[0], std::string(255, 'v'));
  EXPECT_EQ(back.GetMachines()[0], std::string(255, 'm'));
}

TEST_F(SaveTest, ReplacesAnExistingTarget) {
  ASSERT_TRUE(WriteFile(Path("t.bin"), Bytes(10, 1)));
  Database db;
  Fill(db, 5);
  ASSERT_EQ(db.SaveToBinary(Path("t.bin"), CompressionType::LZ4), ErrorCode::Success);
  Database back;
  EXPECT_EQ(back.LoadFromBinary(Path("t.bin")), ErrorCode::Success);
}

TEST_F(SaveTest, SavingDoesNotChangeTheStoreOrItsHeader) {
  Database db;
  Fill(db, 3);
  const FileHeader before = db.GetFileHeader();
  ASSERT_EQ(db.SaveToBinary(Path("s.bin"), CompressionType::None), ErrorCode::Success);
  const FileHeader after = db.GetFileHeader();
  EXPECT_EQ(0, std::memcmp(&before, &after, sizeof before));
  EXPECT_EQ(db.GetParameters().size(), 3u);
  EXPECT_TRUE(db.IsLoaded());
}

TEST_F(SaveTest, UncreatableTemporaryFileIsIoError) {
  Database db;
  Fill(db, 1);
  const std::string path = Path("no-such-dir/x.bin");
  EXPECT_EQ(db.SaveToBinary(path, CompressionType::None), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + path);
}

TEST_F(SaveTest, FailedRenameIsIoErrorAndLeavesNoTemporaryFile) {
  // A non-empty directory as the target: removing it and renaming over it fail.
  ASSERT_TRUE(std::filesystem::create_directory(Path("target")));
  ASSERT_TRUE(WriteFile(Path("target/keep"), Bytes(1, 0)));
  Database db;
  Fill(db, 2);
  EXPECT_EQ(db.SaveToBinary(Path("target"), CompressionType::None), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + Path("target"));
  EXPECT_FALSE(FileExists(Path("target.tmp")));
  EXPECT_TRUE(FileExists(Path("target/keep")));
}

TEST_F(SaveTest, MessageUsesTheSanitisedPath) {
  Database db;
  Fill(db, 1);
  const std::string path = Path("missing..dir/x.bin");
  EXPECT_EQ(db.SaveToBinary(path, CompressionType::None), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + Path("missingdir/x.bin"));
}

TEST_F(SaveTest, SavesUnderTheSanitisedPath) {
  Database db;
  Fill(db, 1);
  ASSERT_EQ(db.SaveToBinary(Path("a..b.bin"), CompressionType::None), ErrorCode::Success);
  EXPECT_TRUE(FileExists(Path("ab.bin")));
}

TEST_F(SaveTest, UnknownCompressionValueIsRefusedWithoutAFile) {
  Database db;
  Fill(db, 1);
  EXPECT_EQ(db.SaveToBinary(Path("u.bin"), static_cast<CompressionType>(3)),
            ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + Path("u.bin"));
  EXPECT_FALSE(FileExists(Path("u.bin")));
  EXPECT_FALSE(FileExists(Path("u.bin.tmp")));
}

TEST(Lz4BlockWriter, RefusesNullBuffers) {
  std::uint8_t buffer[200];
  std::size_t written = 0;
  EXPECT_EQ(CompressLz4Block(nullptr, 64, buffer, sizeof buffer, &written),
            ErrorCode::InvalidParameter);
  EXPECT_EQ(CompressLz4Block(buffer, 64, nullptr, sizeof buffer, &written),
            ErrorCode::InvalidParameter);
}

TEST(Lz4BlockWriter, CapacityBelowTheBoundIsBufferTooSmall) {
  std::uint8_t source[64] = {};
  std::uint8_t target[200];
  std::size_t written = 0;
  EXPECT_EQ(CompressLz4Block(source, 64, target, 64 + 64 / 255 + 15, &written),
            ErrorCode::BufferTooSmall);
  EXPECT_EQ(CompressLz4Block(source, 64, target, 64 + 64 / 255 + 16, &written),
            ErrorCode::Success);
  EXPECT_GT(written, 0u);
}

TEST(Lz4BlockWriter, EmptyInputYieldsNothingAndIsCompressionFailed) {
  std::uint8_t source[1] = {};
  std::uint8_t target[64];
  std::size_t written = 0;
  // The default compressor reports 0 bytes for an empty block... or 1 on some
  // versions; whichever, a result below 1 must be CompressionFailed.
  const ErrorCode code = CompressLz4Block(source, 0, target, sizeof target, &written);
  const int raw = LZ4_compress_default(reinterpret_cast<const char*>(source),
                                       reinterpret_cast<char*>(target), 0, sizeof target);
  EXPECT_EQ(code, raw < 1 ? ErrorCode::CompressionFailed : ErrorCode::Success);
}

TEST(Lz4BlockWriter, BlocksHoldAtMost64RecordsInOrder) {
  std::vector<CuttingParameter> records;
  for (int i = 0; i < 130; ++i) records.push_back(SampleRecord(1, static_cast<float>(i), i));
  std::vector<std::uint8_t> out;
  ASSERT_EQ(EncodeLz4Blocks(records, out), ErrorCode::Success);
  std::size_t at = 0;
  std::vector<std::uint32_t> raw_sizes;
  while (at < out.size()) {
    raw_sizes.push_back(Get32(out, at));
    at += 8 + Get32(out, at + 4);
  }
  EXPECT_EQ(at, out.size());
  EXPECT_EQ(raw_sizes, (std::vector<std::uint32_t>{4096, 4096, 128}));
  std::vector<std::uint8_t> none;
  EXPECT_EQ(EncodeLz4Blocks({}, none), ErrorCode::Success);
  EXPECT_TRUE(none.empty());
}
