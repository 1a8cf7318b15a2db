// Saving on Windows: rename does not replace an existing file, so the target
// is removed first; a target that cannot be removed makes the save fail.
#include "windows_test_support.h"

namespace sparlane_windows_test {
namespace {

TEST(SaveReplace, SavingTwiceOverTheSameFileReplacesIt) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(3.0f)});
  ASSERT_EQ(db.SaveToBinary(dir.Utf8("t.bin"), CompressionType::None), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(SampleRecord(9.0f)), ErrorCode::Success);
  ASSERT_EQ(db.SaveToBinary(dir.Utf8("t.bin"), CompressionType::None), ErrorCode::Success)
      << db.GetLastError();
  EXPECT_FALSE(Exists(dir.Wide("t.bin.tmp")));
  Database again;
  ASSERT_EQ(again.LoadFromBinary(dir.Utf8("t.bin")), ErrorCode::Success);
  EXPECT_EQ(again.GetStatistics().parameter_count, 2u);
}

TEST(SaveReplace, TargetHeldOpenByAnotherHandleFailsWithIoError) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("held.bin"));
  const std::vector<std::uint8_t> before = ReadAll(dir.Wide("held.bin"));
  HANDLE holder = CreateFileW(dir.Wide("held.bin").c_str(), GENERIC_READ, FILE_SHARE_READ,
                              nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);

  Database db;
  FillSample(db, {SampleRecord(5.0f)});
  EXPECT_EQ(db.SaveToBinary(dir.Utf8("held.bin"), CompressionType::None), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + dir.Utf8("held.bin"));
  EXPECT_FALSE(Exists(dir.Wide("held.bin.tmp")));
  CloseHandle(holder);
  EXPECT_EQ(ReadAll(dir.Wide("held.bin")), before);
}

TEST(SaveReplace, SavingOverTheLoadedFileFailsAndKeepsIt) {
  // The loaded file is mapped: it can be neither removed nor replaced.
  TempDir dir;
  SaveSampleFile(dir.Utf8("own.bin"));
  const std::vector<std::uint8_t> before = ReadAll(dir.Wide("own.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("own.bin")), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(SampleRecord(12.0f)), ErrorCode::Success);
  EXPECT_EQ(db.SaveToBinary(dir.Utf8("own.bin"), CompressionType::LZ4), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + dir.Utf8("own.bin"));
  EXPECT_FALSE(Exists(dir.Wide("own.bin.tmp")));
  EXPECT_EQ(ReadAll(dir.Wide("own.bin")), before);

  // Once closed, the same save goes through.
  db.Close();
  Database edited;
  FillSample(edited, {SampleRecord(3.0f), SampleRecord(12.0f), SampleRecord(20.0f)});
  EXPECT_EQ(edited.SaveToBinary(dir.Utf8("own.bin"), CompressionType::LZ4), ErrorCode::Success);
  Database again;
  ASSERT_EQ(again.LoadFromBinary(dir.Utf8("own.bin")), ErrorCode::Success);
  EXPECT_EQ(again.GetStatistics().parameter_count, 3u);
}

TEST(SaveReplace, MissingFolderFailsWithIoError) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(5.0f)});
  const std::string path = dir.Utf8("absent\\t.bin");
  EXPECT_EQ(db.SaveToBinary(path, CompressionType::LZ4), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + path);
}

TEST(SaveReplace, ExportToMissingFolderFailsWithIoError) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(5.0f)});
  const std::string path = dir.Utf8("absent\\t.csv");
  EXPECT_EQ(db.ExportToCSV(path), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + path);
  EXPECT_EQ(db.ExportToJSON(path), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + path);
}

}  // namespace
}  // namespace sparlane_windows_test
