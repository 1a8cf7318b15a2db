// Loading converts the UTF-8 path to UTF-16; saving hands the same bytes to
// the narrow C file functions, which read them in the ANSI code page.
#include "windows_test_support.h"

namespace sparlane_windows_test {
namespace {

// German umlauts, Cyrillic and Japanese: outside every single ANSI code page.
const std::string kFolder = "Schnittdaten-\xC3\xA4\xC3\xB6\xC3\xBC";                 // äöü
const std::string kFile = "\xD0\xA2\xD0\xB0\xD0\xB1-\xE6\x97\xA5\xE6\x9C\xAC.bin";  // Таб-日本

TEST(UnicodePaths, LoadsAFileWhoseFolderAndNameAreNotAscii) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("plain.bin"));
  ASSERT_TRUE(CreateDirectoryW(dir.Wide(kFolder).c_str(), nullptr));
  const std::string name = kFolder + "\\" + kFile;
  ASSERT_TRUE(CopyFileW(dir.Wide("plain.bin").c_str(), dir.Wide(name).c_str(), TRUE));

  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8(name)), ErrorCode::Success) << db.GetLastError();
  EXPECT_EQ(db.GetStatistics().parameter_count, 2u);
  const auto found = db.FindNearest("Mild steel", 6.0f, "AIR-45A");
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->thickness_mm, 6.0f);
}

TEST(UnicodePaths, MissingNonAsciiFileIsReportedWithItsUtf8Path) {
  TempDir dir;
  Database db;
  EXPECT_EQ(db.LoadFromBinary(dir.Utf8(kFile)), ErrorCode::FileNotFound);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + dir.Utf8(kFile));
}

TEST(UnicodePaths, LoadedNonAsciiFileIsHeldUntilClose) {
  TempDir dir;
  SaveSampleFile(dir.Utf8("plain.bin"));
  ASSERT_TRUE(CopyFileW(dir.Wide("plain.bin").c_str(), dir.Wide(kFile).c_str(), TRUE));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir.Utf8(kFile)), ErrorCode::Success);
  EXPECT_FALSE(DeleteFileW(dir.Wide(kFile).c_str()));
  db.Close();
  EXPECT_TRUE(DeleteFileW(dir.Wide(kFile).c_str())) << GetLastError();
}

TEST(UnicodePaths, SaveWritesTheNameAsTheAnsiCodePageReadsIt) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(4.0f)});
  ASSERT_EQ(db.SaveToBinary(dir.Utf8(kFile), CompressionType::LZ4), ErrorCode::Success)
      << db.GetLastError();

  const std::wstring as_ansi = dir.wide() + L"\\" + Widen(kFile, CP_ACP);
  const std::wstring as_utf8 = dir.Wide(kFile);
  EXPECT_TRUE(Exists(as_ansi));
  EXPECT_FALSE(Exists(as_ansi + L".tmp"));
  if (as_ansi == as_utf8) {
    // A UTF-8 ANSI code page: both sides agree and the file loads back.
    Database again;
    EXPECT_EQ(again.LoadFromBinary(dir.Utf8(kFile)), ErrorCode::Success);
  } else {
    EXPECT_FALSE(Exists(as_utf8));
    Database again;
    EXPECT_EQ(again.LoadFromBinary(dir.Utf8(kFile)), ErrorCode::FileNotFound);
    // Under its ANSI reading the saved file is complete and loads.
    ASSERT_TRUE(CopyFileW(as_ansi.c_str(), dir.Wide("copy.bin").c_str(), TRUE));
    EXPECT_EQ(again.LoadFromBinary(dir.Utf8("copy.bin")), ErrorCode::Success);
    EXPECT_EQ(again.GetStatistics().parameter_count, 1u);
  }
}

TEST(UnicodePaths, AsciiPathSavesAndLoadsBothWays) {
  TempDir dir;
  Database db;
  FillSample(db, {SampleRecord(2.0f), SampleRecord(8.0f)});
  ASSERT_EQ(db.SaveToBinary(dir.Utf8("round.bin"), CompressionType::LZ4), ErrorCode::Success);
  Database again;
  ASSERT_EQ(again.LoadFromBinary(dir.Utf8("round.bin")), ErrorCode::Success);
  EXPECT_EQ(again.FindByMaterial("Mild steel").size(), 2u);
}

}  // namespace
}  // namespace sparlane_windows_test
