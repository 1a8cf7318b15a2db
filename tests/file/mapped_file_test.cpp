#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>
#endif

#include "file/mapped_file.h"
#include "file_bytes.h"
#include "../support/store_seam.h"

using namespace Sparlane;
using namespace filetest;

namespace {

// Open descriptors of this process, or -1 where that cannot be counted.
int OpenDescriptorCount() {
#ifdef _WIN32
  // No descriptor table to list; under wine /proc/self/fd would list wine's
  // own descriptors.  The Windows tests count handles instead.
  return -1;
#endif
  std::error_code ec;
  std::filesystem::directory_iterator it("/proc/self/fd", ec);
  if (ec) return -1;
  int n = 0;
  for (; it != std::filesystem::directory_iterator(); it.increment(ec)) ++n;
  return n;
}

// Where descriptors can be counted, expects exactly this many.
void ExpectDescriptors(int expected) {
  const int n = OpenDescriptorCount();
  if (n >= 0) {
    EXPECT_EQ(n, expected);
  }
}

class MappedFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir_ = ScratchDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
    ASSERT_FALSE(dir_.empty());
  }
  std::string dir_;
};

}  // namespace

TEST_F(MappedFileTest, FileOfExactly1024BytesOpens) {
  Bytes bytes(1024);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 7);
  ASSERT_TRUE(WriteFile(dir_ + "/a", bytes));
  MappedFile f;
  ASSERT_EQ(f.Open(dir_ + "/a"), ErrorCode::Success);
  EXPECT_EQ(f.size(), 1024u);
  ASSERT_NE(f.view(), nullptr);
  EXPECT_EQ(0, std::memcmp(f.view(), bytes.data(), 1024));
  f.Close();
  EXPECT_EQ(f.view(), nullptr);
  EXPECT_EQ(f.size(), 0u);
  f.Close();  // harmless twice
}

TEST_F(MappedFileTest, FileOf1023BytesIsCorruptedAndLeavesNoDescriptor) {
  ASSERT_TRUE(WriteFile(dir_ + "/short", Bytes(1023, 1)));
  const int before = OpenDescriptorCount();
  MappedFile f;
  EXPECT_EQ(f.Open(dir_ + "/short"), ErrorCode::CorruptedFile);
  EXPECT_EQ(f.view(), nullptr);
  ExpectDescriptors(before);
}

TEST_F(MappedFileTest, EmptyFileIsCorrupted) {
  ASSERT_TRUE(WriteFile(dir_ + "/empty", Bytes()));
  MappedFile f;
  EXPECT_EQ(f.Open(dir_ + "/empty"), ErrorCode::CorruptedFile);
}

TEST_F(MappedFileTest, MissingFileAndMissingDirectoryAreFileNotFound) {
  MappedFile f;
  EXPECT_EQ(f.Open(dir_ + "/nope"), ErrorCode::FileNotFound);
  EXPECT_EQ(f.Open(dir_ + "/no-such-dir/file.bin"), ErrorCode::FileNotFound);
  EXPECT_EQ(f.Open(""), ErrorCode::FileNotFound);
}

TEST_F(MappedFileTest, PathThroughARegularFileIsFileNotFound) {
  ASSERT_TRUE(WriteFile(dir_ + "/plain", Bytes(2000, 0)));
  MappedFile f;
  EXPECT_EQ(f.Open(dir_ + "/plain/inner.bin"), ErrorCode::FileNotFound);  // ENOTDIR
}

TEST_F(MappedFileTest, DirectoryIsAccessDeniedAndLeavesNoDescriptor) {
  const int before = OpenDescriptorCount();
  MappedFile f;
  EXPECT_EQ(f.Open(dir_), ErrorCode::AccessDenied);
  ExpectDescriptors(before);
}

#ifndef _WIN32
TEST_F(MappedFileTest, UnreadableFileIsAccessDenied) {
  const std::string path = dir_ + "/locked";
  ASSERT_TRUE(WriteFile(path, Bytes(2048, 0)));
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  if (::geteuid() != 0) {
    MappedFile f;
    EXPECT_EQ(f.Open(path), ErrorCode::AccessDenied);
    return;
  }
  // Root reads mode-000 files; open it from a child that gave up root.
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(100);
    if (::access(path.c_str(), R_OK) == 0) ::_exit(101);
    MappedFile f;
    ::_exit(static_cast<int>(f.Open(path)));
  }
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  if (WEXITSTATUS(status) == 100) GTEST_SKIP() << "cannot drop root privileges here";
  if (WEXITSTATUS(status) == 101) GTEST_SKIP() << "mode-000 file still readable without root";
  EXPECT_EQ(WEXITSTATUS(status), static_cast<int>(ErrorCode::AccessDenied));
}
#endif

TEST_F(MappedFileTest, OpenSanitisesThePath) {
  ASSERT_TRUE(WriteFile(dir_ + "/ab", Bytes(1024, 0)));
  MappedFile f;
  EXPECT_EQ(f.Open(dir_ + "/a..b"), ErrorCode::Success);
  EXPECT_EQ(f.Open(dir_ + std::string("/a\0b", 4)), ErrorCode::Success);
}

TEST_F(MappedFileTest, SecondOpenReleasesTheFirstFile) {
  ASSERT_TRUE(WriteFile(dir_ + "/one", Bytes(1024, 1)));
  ASSERT_TRUE(WriteFile(dir_ + "/two", Bytes(3000, 2)));
  MappedFile f;
  ASSERT_EQ(f.Open(dir_ + "/one"), ErrorCode::Success);
  const int with_one = OpenDescriptorCount();
  ASSERT_EQ(f.Open(dir_ + "/two"), ErrorCode::Success);
  ExpectDescriptors(with_one);
  EXPECT_EQ(f.size(), 3000u);
  EXPECT_EQ(f.view()[2999], 2);
  // A failing open releases too.
  EXPECT_EQ(f.Open(dir_ + "/missing"), ErrorCode::FileNotFound);
  EXPECT_EQ(f.view(), nullptr);
  ExpectDescriptors(with_one - 1);
}

TEST_F(MappedFileTest, DatabaseCloseReleasesTheMappingButKeepsTheObject) {
  FileContents contents;
  ASSERT_TRUE(WriteFile(dir_ + "/db.bin", BuildFile(contents)));
  const int before = OpenDescriptorCount();
  Database db;
  ASSERT_EQ(db.LoadFromBinary(dir_ + "/db.bin"), ErrorCode::Success);
  ExpectDescriptors(before + 1);
  db.Close();
  ExpectDescriptors(before);
  ASSERT_NE(DatabaseAccess::File(db), nullptr);
  EXPECT_EQ(DatabaseAccess::File(db)->view(), nullptr);
}

TEST_F(MappedFileTest, LoadFromDirectoryReportsOpenFailure) {
  Database db;
  EXPECT_EQ(db.LoadFromBinary(dir_), ErrorCode::AccessDenied);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + dir_);
}

TEST_F(MappedFileTest, LoadThroughARegularFileIsFileNotFound) {
  ASSERT_TRUE(WriteFile(dir_ + "/plain", Bytes(2000, 0)));
  Database db;
  EXPECT_EQ(db.LoadFromBinary(dir_ + "/plain/x"), ErrorCode::FileNotFound);
  EXPECT_EQ(db.GetLastError(), "Failed to open file: " + dir_ + "/plain/x");
}

#ifndef _WIN32
TEST_F(MappedFileTest, FifoDoesNotHangAndIsCorrupted) {
  const std::string path = dir_ + "/fifo";
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  MappedFile f;
  EXPECT_EQ(f.Open(path), ErrorCode::CorruptedFile);
}
#endif

TEST_F(MappedFileTest, PagesGivenBackStayReadableThroughTheView) {
  Bytes bytes(3 * 1024 * 1024 + 777);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<std::uint8_t>(i * 13 + (i >> 12));
  ASSERT_TRUE(WriteFile(dir_ + "/big", bytes));
  MappedFile f;
  ASSERT_EQ(f.Open(dir_ + "/big"), ErrorCode::Success);
  const std::uint8_t* view = f.view();
  ASSERT_EQ(std::memcmp(view, bytes.data(), 4096), 0);  // touched, then given back
  f.ReleaseBefore(5000);
  f.ReleaseBefore(1024 * 1024 + 3);
  f.ReleaseBefore(1024);  // behind what was given back: nothing to do
  f.ReleaseBefore(bytes.size() + 1000000);  // past the end: up to the end
  EXPECT_EQ(f.view(), view);
  EXPECT_EQ(f.size(), bytes.size());
  EXPECT_EQ(std::memcmp(view, bytes.data(), bytes.size()), 0);
  f.Close();
  f.ReleaseBefore(100);  // closed: harmless
  EXPECT_EQ(f.view(), nullptr);
}

#ifdef __linux__
namespace {

// Resident kilobytes of the mapping that contains address, from smaps.
long ResidentKbOfMapping(const void* address) {
  std::ifstream smaps("/proc/self/smaps");
  const auto at = reinterpret_cast<std::uintptr_t>(address);
  std::string line;
  bool inside = false;
  while (std::getline(smaps, line)) {
    unsigned long long lo = 0, hi = 0;
    if (std::sscanf(line.c_str(), "%llx-%llx ", &lo, &hi) == 2 && line.find(':') > line.find(' ')) {
      inside = lo <= at && at < hi;
      continue;
    }
    if (inside && line.compare(0, 4, "Rss:") == 0) return std::atol(line.c_str() + 4);
  }
  return -1;
}

}  // namespace

// A load copies the records and gives the file's pages back as it goes: at
// the end the mapping holds at most the page the data ended in and what the
// system mapped around it, not the file.
TEST_F(MappedFileTest, LoadLeavesAlmostNothingOfTheFileResident) {
  for (std::uint8_t compression : {0, 1}) {
    FileContents contents;
    for (int i = 0; i < 50000; ++i) {
      contents.records.push_back(SampleRecord(1, 0.5f + static_cast<float>(i % 50), i % 200));
    }
    contents.compression = compression;
    ASSERT_TRUE(WriteFile(dir_ + "/many.bin", BuildFile(contents)));
    Database db;
    ASSERT_EQ(db.LoadFromBinary(dir_ + "/many.bin"), ErrorCode::Success);
    const LoadedFile* file = DatabaseAccess::File(db);
    ASSERT_NE(file, nullptr);
    ASSERT_NE(file->view(), nullptr);
    const long resident = ResidentKbOfMapping(file->view());
    ASSERT_GE(resident, 0);
    EXPECT_LE(resident, 68) << "compression " << int(compression) << ", file of "
                            << file->size() / 1024 << " KiB";
    EXPECT_EQ(db.GetParameters().size(), 50000u);
  }
}
#endif
