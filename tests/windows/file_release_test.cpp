// Windows refuses to delete a file that is open or mapped, so deleting is the
// proof that the library let go of it.
#include "windows_test_support.h"

#include "file/mapped_file.h"

namespace sparlane_windows_test {
namespace {

TEST(FileRelease, LoadedFileCannotBeDeleted) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("held.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("held.bin")), ErrorCode::Success);
  EXPECT_FALSE(DeleteFileW(dir.Wide("held.bin").c_str()));
  EXPECT_TRUE(Exists(dir.Wide("held.bin")));
}

TEST(FileRelease, CloseLetsTheFileBeDeleted) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("table.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("table.bin")), ErrorCode::Success);
  db.Close();
  EXPECT_TRUE(DeleteFileW(dir.Wide("table.bin").c_str())) << GetLastError();
  EXPECT_FALSE(Exists(dir.Wide("table.bin")));
}

TEST(FileRelease, RecordsStayReadableAfterTheFileIsClosedAndDeleted) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("table.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("table.bin")), ErrorCode::Success);
  db.Close();
  ASSERT_TRUE(DeleteFileW(dir.Wide("table.bin").c_str()));
  EXPECT_EQ(db.GetMaterials(), std::vector<std::string>{"Mild steel"});
  EXPECT_EQ(db.GetMachines(), std::vector<std::string>{"AIR-45A"});
}

TEST(FileRelease, DestroyingTheDatabaseLetsTheFileBeDeleted) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("table.bin"));
  {
    Database db;
    ASSERT_EQ(db.LoadFromBinary(dir.Utf8("table.bin")), ErrorCode::Success);
  }
  EXPECT_TRUE(DeleteFileW(dir.Wide("table.bin").c_str())) << GetLastError();
}

TEST(FileRelease, SecondLoadReleasesTheFirstFile) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("first.bin"));
  SaveSampleFile(dir.Utf8("second.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("first.bin")), ErrorCode::Success);
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("second.bin")), ErrorCode::Success);
  EXPECT_TRUE(DeleteFileW(dir.Wide("first.bin").c_str())) << GetLastError();
  EXPECT_FALSE(DeleteFileW(dir.Wide("second.bin").c_str()));
}

TEST(FileRelease, FailedParseReleasesTheFile) {
  TempDir dir;
  ASSERT_TRUE(WriteAll(dir.Wide("zeros.bin"), std::vector<std::uint8_t>(4096, 0)));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("zeros.bin")), ErrorCode::InvalidMagic);
  EXPECT_TRUE(DeleteFileW(dir.Wide("zeros.bin").c_str())) << GetLastError();
}

TEST(FileRelease, ShortFileLeavesNoHandleOpen) {
  TempDir dir;
  ASSERT_TRUE(WriteAll(dir.Wide("short.bin"), std::vector<std::uint8_t>(1023, 1)));
  Sparlane::MappedFile file;
  ASSERT_EQ(file.Open(dir.Utf8("short.bin")), ErrorCode::CorruptedFile);
  EXPECT_EQ(file.view(), nullptr);
  EXPECT_TRUE(DeleteFileW(dir.Wide("short.bin").c_str())) << GetLastError();
}

TEST(FileRelease, MappedFileReopenReleasesThePreviousFile) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("a.bin"));
  SaveSampleFile(dir.Utf8("b.bin"));
  Sparlane::MappedFile file;
  ASSERT_EQ(file.Open(dir.Utf8("a.bin")), ErrorCode::Success);
  ASSERT_EQ(file.Open(dir.Utf8("b.bin")), ErrorCode::Success);
  EXPECT_TRUE(DeleteFileW(dir.Wide("a.bin").c_str())) << GetLastError();
  file.Close();
  EXPECT_EQ(file.view(), nullptr);
  EXPECT_EQ(file.size(), 0u);
  EXPECT_TRUE(DeleteFileW(dir.Wide("b.bin").c_str())) << GetLastError();
}

TEST(FileRelease, MappedFileCloseTwiceIsHarmless) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("a.bin"));
  Sparlane::MappedFile file;
  ASSERT_EQ(file.Open(dir.Utf8("a.bin")), ErrorCode::Success);
  file.Close();
  file.Close();
  EXPECT_TRUE(DeleteFileW(dir.Wide("a.bin").c_str())) << GetLastError();
}

TEST(FileRelease, LoadedFileCanBeReadByOthers) {
  // Share mode read: other readers are welcome while the table is loaded.
  TempDir dir;
  SaveSampleFile(dir.Utf8("shared.bin"));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8("shared.bin")), ErrorCode::Success);
  HANDLE reader = CreateFileW(dir.Wide("shared.bin").c_str(), GENERIC_READ,
                              FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                              nullptr);
  EXPECT_NE(reader, INVALID_HANDLE_VALUE);
  if (reader != INVALID_HANDLE_VALUE) CloseHandle(reader);
  HANDLE writer = CreateFileW(dir.Wide("shared.bin").c_str(), GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  EXPECT_EQ(writer, INVALID_HANDLE_VALUE);
  if (writer != INVALID_HANDLE_VALUE) CloseHandle(writer);
}

}  // namespace
}  // namespace sparlane_windows_test
