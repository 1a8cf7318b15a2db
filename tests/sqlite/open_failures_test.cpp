#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include "import_helpers.h"

using Sparlane::Database;
using Sparlane::ErrorCode;
using sparlane_test::ImportPath;
using sparlane_test::SqliteFile;

namespace {

bool Exists(const std::string& path) {
  struct stat st;
  return ::stat(path.c_str(), &st) == 0;
}

// Per process, so concurrent runs do not meet.
std::string TempPath(const std::string& leaf) {
  return ::testing::TempDir() + std::to_string(::getpid()) + "_" + leaf;
}

}  // namespace

TEST(SqliteOpen, MissingFileIsFileNotFoundAndCreatesNoFile) {
  const std::string path = TempPath("sparlane_sqlite_missing.db");
  std::remove(path.c_str());
  const auto outcome = ImportPath(path);
  EXPECT_EQ(outcome.code, ErrorCode::FileNotFound);
  EXPECT_EQ(outcome.message, "Failed to open file: " + path);
  EXPECT_FALSE(outcome.loaded);
  EXPECT_FALSE(Exists(path));
}

TEST(SqliteOpen, MissingDirectoryIsFileNotFound) {
  const std::string path = TempPath("sparlane_no_such_dir/x.db");
  const auto outcome = ImportPath(path);
  EXPECT_EQ(outcome.code, ErrorCode::FileNotFound);
  EXPECT_EQ(outcome.message, "Failed to open file: " + path);
}

TEST(SqliteOpen, EmptyPathIsFileNotFound) {
  const auto outcome = ImportPath("");
  EXPECT_EQ(outcome.code, ErrorCode::FileNotFound);
  EXPECT_EQ(outcome.message, "Failed to open file: ");
  EXPECT_FALSE(outcome.loaded);
}

TEST(SqliteOpen, MemoryNameIsAFileNameNotAnInMemoryDatabase) {
  const auto outcome = ImportPath(":memory:");
  EXPECT_EQ(outcome.code, ErrorCode::FileNotFound);
  EXPECT_EQ(outcome.message, "Failed to open file: :memory:");
}

TEST(SqliteOpen, MessageCarriesTheSanitisedPath) {
  const std::string path = TempPath("sparlane_a/../sparlane_missing2.db");
  const auto outcome = ImportPath(path);
  EXPECT_EQ(outcome.code, ErrorCode::FileNotFound);
  EXPECT_EQ(outcome.message, "Failed to open file: " + Sparlane::Testing::SanitizePath(path));
  EXPECT_EQ(outcome.message.find(".."), std::string::npos);
}

TEST(SqliteOpen, DirectoryIsAnIoError) {
  const auto outcome = ImportPath(::testing::TempDir());
  EXPECT_EQ(outcome.code, ErrorCode::IoError);
  EXPECT_EQ(outcome.message, "Failed to open file: " + ::testing::TempDir());
  EXPECT_FALSE(outcome.loaded);
}

TEST(SqliteOpen, TextFileIsCorruptedFile) {
  const std::string path = TempPath("sparlane_sqlite_text.db");
  {
    std::ofstream out(path, std::ios::binary);
    out << std::string(4096, 'x');
  }
  const auto outcome = ImportPath(path);
  std::remove(path.c_str());
  EXPECT_EQ(outcome.code, ErrorCode::CorruptedFile);
  EXPECT_EQ(outcome.message, "SQLite import: file is not a database");
  EXPECT_FALSE(outcome.loaded);
}

TEST(SqliteOpen, DamagedDatabaseFailsWithoutLoading) {
  SqliteFile file;
  file.Standard();
  for (int i = 0; i < 200; ++i) file.Exec(sparlane_test::ParameterRow(1, 1, 1, 1.0 + i));
  file.Close();
  {
    // Scribble over the second page onwards: the schema survives, the data
    // pages do not.
    std::fstream io(file.path(), std::ios::in | std::ios::out | std::ios::binary);
    io.seekp(4096);
    const std::string junk(8192, '\xA5');
    io.write(junk.data(), static_cast<std::streamsize>(junk.size()));
  }
  const auto outcome = ImportPath(file.path());
  EXPECT_NE(outcome.code, ErrorCode::Success);
  EXPECT_EQ(outcome.code, ErrorCode::CorruptedFile) << outcome.message;
  EXPECT_FALSE(outcome.loaded);
}

// Code of importing path, with 100 added when the message is not the open
// failure's.  Root reads every file, so as root the import runs in a child
// that has dropped to an unprivileged user.
int ImportCodeAsUser(const std::string& path) {
  auto run = [&path]() {
    Database db;
    const int code = static_cast<int>(db.ImportFromSQLite(path));
    return db.GetLastError() == "Failed to open file: " + path ? code : code + 100;
  };
  if (::geteuid() != 0) return run();
  const pid_t child = ::fork();
  if (child == 0) {
    if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(99);
    ::_exit(run());
  }
  int status = 0;
  if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

TEST(SqliteOpen, UnreadableFileIsAccessDenied) {
  SqliteFile file;
  file.Standard();
  file.Close();
  ASSERT_EQ(::chmod(file.path().c_str(), 0), 0);
  const int code = ImportCodeAsUser(file.path());
  ::chmod(file.path().c_str(), 0644);
  EXPECT_EQ(code, static_cast<int>(ErrorCode::AccessDenied));
}

// Random damage anywhere in a valid file: the import either succeeds with a
// loaded database or fails cleanly with a file or data code; never crashes.
TEST(SqliteOpen, RandomlyDamagedFilesFailCleanly) {
  SqliteFile file;
  file.Standard();
  for (int i = 0; i < 60; ++i) file.Exec(sparlane_test::ParameterRow(1 + i % 2, 1, 1, 1.0 + i));
  file.Close();
  std::string pristine;
  {
    std::ifstream in(file.path(), std::ios::binary);
    pristine.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  ASSERT_GT(pristine.size(), 4096u);
  std::uint32_t state = 777;
  auto next = [&state](std::uint32_t n) {
    state = state * 1664525u + 1013904223u;
    return (state >> 8) % n;
  };
  int failures = 0;
  for (int round = 0; round < 150; ++round) {
    std::string damaged = pristine;
    const int flips = 1 + static_cast<int>(next(8));
    for (int k = 0; k < flips; ++k) {
      damaged[next(static_cast<std::uint32_t>(damaged.size()))] = static_cast<char>(next(256));
    }
    {
      std::ofstream out(file.path(), std::ios::binary | std::ios::trunc);
      out.write(damaged.data(), static_cast<std::streamsize>(damaged.size()));
    }
    Database db;
    const ErrorCode code = db.ImportFromSQLite(file.path());
    EXPECT_EQ(db.IsLoaded(), code == ErrorCode::Success) << round;
    if (code == ErrorCode::Success) continue;
    ++failures;
    EXPECT_TRUE(code == ErrorCode::CorruptedFile || code == ErrorCode::InvalidData ||
                code == ErrorCode::IoError)
        << round << ": " << static_cast<int>(code) << " " << db.GetLastError();
    EXPECT_FALSE(db.GetLastError().empty());
  }
  EXPECT_GT(failures, 0);  // the damage was noticed at least sometimes
}
