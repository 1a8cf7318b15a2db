// Every way the Windows open can fail, seen through LoadFromBinary: the
// system error that CreateFileW reports, the code the table gives it, and
// the loader's message.
#include "windows_test_support.h"

#include "file/mapped_file.h"

namespace sparlane_windows_test {
namespace {

// What CreateFileW, called the way the mapped file calls it, says about path.
DWORD OpenErrorOf(const std::wstring& path) {
  HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return GetLastError();
  CloseHandle(file);
  return ERROR_SUCCESS;
}

void ExpectLoadFails(const std::string& path, ErrorCode code) {
  Database db;
  EXPECT_EQ(db.LoadFromBinary(path), code);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + path);
  EXPECT_FALSE(db.IsLoaded());
}

TEST(OpenErrors, MissingDirectoryIsFileNotFoundThroughError3) {
  TempDir dir;
  const std::string path = dir.Utf8("no-such-folder\\table.bin");
  ASSERT_EQ(OpenErrorOf(dir.Wide("no-such-folder\\table.bin")), DWORD{ERROR_PATH_NOT_FOUND});
  ExpectLoadFails(path, ErrorCode::FileNotFound);
}

TEST(OpenErrors, MissingFileIsFileNotFoundThroughError2) {
  TempDir dir;
  ASSERT_EQ(OpenErrorOf(dir.Wide("absent.bin")), DWORD{ERROR_FILE_NOT_FOUND});
  ExpectLoadFails(dir.Utf8("absent.bin"), ErrorCode::FileNotFound);
}

TEST(OpenErrors, DirectoryIsAccessDeniedThroughError5) {
  TempDir dir;
  ASSERT_TRUE(CreateDirectoryW(dir.Wide("folder").c_str(), nullptr));
  ASSERT_EQ(OpenErrorOf(dir.Wide("folder")), DWORD{ERROR_ACCESS_DENIED});
  ExpectLoadFails(dir.Utf8("folder"), ErrorCode::AccessDenied);
}

TEST(OpenErrors, FileOpenElsewhereWithoutSharingIsIoErrorThroughError32) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("locked.bin"));
  HANDLE holder = CreateFileW(dir.Wide("locked.bin").c_str(), GENERIC_READ, 0, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(holder, INVALID_HANDLE_VALUE);
  EXPECT_EQ(OpenErrorOf(dir.Wide("locked.bin")), DWORD{ERROR_SHARING_VIOLATION});
  ExpectLoadFails(dir.Utf8("locked.bin"), ErrorCode::IoError);
  CloseHandle(holder);

  Database db;
  EXPECT_EQ(db.LoadFromBinary(dir.Utf8("locked.bin")), ErrorCode::Success) << db.GetLastError();
}

TEST(OpenErrors, FileOpenElsewhereForWritingIsIoError) {
  // Share mode read only refuses a file that someone already writes.
  TempDir dir;
  SaveSampleFile(dir.Utf8("busy.bin"));
  HANDLE writer = CreateFileW(dir.Wide("busy.bin").c_str(), GENERIC_WRITE,
                              FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(writer, INVALID_HANDLE_VALUE);
  EXPECT_EQ(OpenErrorOf(dir.Wide("busy.bin")), DWORD{ERROR_SHARING_VIOLATION});
  ExpectLoadFails(dir.Utf8("busy.bin"), ErrorCode::IoError);
  CloseHandle(writer);
}

TEST(OpenErrors, InvalidNameIsIoError) {
  TempDir dir;
  const DWORD error = OpenErrorOf(dir.Wide("bad<name>.bin"));
  ASSERT_NE(error, DWORD{ERROR_SUCCESS});
  ASSERT_NE(error, DWORD{ERROR_FILE_NOT_FOUND});
  ASSERT_NE(error, DWORD{ERROR_PATH_NOT_FOUND});
  ASSERT_NE(error, DWORD{ERROR_ACCESS_DENIED});
  ExpectLoadFails(dir.Utf8("bad<name>.bin"), ErrorCode::IoError);
}

TEST(OpenErrors, InvalidUtf8IsReplacedNotRefused) {
  // The conversion runs without MB_ERR_INVALID_CHARS: bad bytes become
  // U+FFFD and the open goes ahead, so such a path is simply not found.
  TempDir dir;
  const std::string bad = "\xFF\xFE-\xC3.bin";
  ASSERT_GT(MultiByteToWideChar(CP_UTF8, 0, bad.c_str(), -1, nullptr, 0), 0);
  ExpectLoadFails(dir.Utf8(bad), ErrorCode::FileNotFound);
}

TEST(OpenErrors, FileShorterThanHeaderIsCorrupted) {
  TempDir dir;
  ASSERT_TRUE(WriteAll(dir.Wide("short.bin"), std::vector<std::uint8_t>(1023, 0)));
  ExpectLoadFails(dir.Utf8("short.bin"), ErrorCode::CorruptedFile);
}

TEST(OpenErrors, EmptyFileIsCorrupted) {
  // An empty file cannot be mapped at all; the size test comes first.
  TempDir dir;
  ASSERT_TRUE(WriteAll(dir.Wide("empty.bin"), {}));
  ExpectLoadFails(dir.Utf8("empty.bin"), ErrorCode::CorruptedFile);
}

TEST(OpenErrors, FileOfExactlyHeaderSizeMaps) {
  TempDir dir;
  std::vector<std::uint8_t> bytes(1024);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
  ASSERT_TRUE(WriteAll(dir.Wide("header.bin"), bytes));
  Sparlane::MappedFile file;
  ASSERT_EQ(file.Open(dir.Utf8("header.bin")), ErrorCode::Success);
  ASSERT_EQ(file.size(), 1024u);
  EXPECT_EQ(std::vector<std::uint8_t>(file.view(), file.view() + 1024), bytes);
}

TEST(OpenErrors, ParentReferencesAreRemovedBeforeOpening) {
  // "..\\" loses its dots, so the message names the path actually tried.
  TempDir dir;
  const std::string given = dir.Utf8("..\\absent.bin");
  const std::string tried = dir.Utf8("\\absent.bin");
  Database db;
  EXPECT_EQ(db.LoadFromBinary(given), ErrorCode::FileNotFound);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + tried);
}

TEST(OpenErrors, ParseFailureAfterASuccessfulOpenKeepsTheParserMessage) {
  TempDir dir;
  ASSERT_TRUE(WriteAll(dir.Wide("zeros.bin"), std::vector<std::uint8_t>(2048, 0)));
  Database db;
  EXPECT_EQ(db.LoadFromBinary(dir.Utf8("zeros.bin")), ErrorCode::InvalidMagic);
  EXPECT_EQ(db.GetLastError(), "Failed to read binary format");
}

}  // namespace
}  // namespace sparlane_windows_test
