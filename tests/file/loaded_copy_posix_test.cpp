// A loaded database is a copy of its file: a file truncated or overwritten
// in place while it is loaded (a plain `cp` over it) changes nothing that
// the database answers, and nothing reads the old mapping again.  Windows
// keeps a loaded file from being written, so this is a POSIX test.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "file_bytes.h"
#include "sparlane/sparlane.h"

using namespace Sparlane;
using namespace filetest;

namespace {

// Enough records for the load to copy and give back many windows of the
// file: 40,000 records are 2.5 MB.
std::vector<CuttingParameter> ManyRecords(std::size_t n, float speed_base) {
  std::vector<CuttingParameter> records;
  for (std::size_t i = 0; i < n; ++i) {
    CuttingParameter r = SampleRecord(static_cast<std::uint16_t>(1 + (i / 800) % 2),
                                      0.5f + static_cast<float>(i % 40), static_cast<int>(i % 200));
    r.material_id = static_cast<std::uint16_t>(1 + i / 20000);
    r.cut_speed_mm_min = speed_base + static_cast<float>(i % 97);
    records.push_back(r);
  }
  return records;
}

FileContents Contents(std::uint8_t compression, float speed_base) {
  FileContents c;
  c.vendors = {"Acme"};
  c.machines = {"Cutter 1", "Cutter 2"};
  c.materials = {"Mild Steel", "Stainless"};
  c.records = ManyRecords(40000, speed_base);
  c.compression = compression;
  return c;
}

// Rewrites path in place, as cp does: the same file, truncated, then filled.
void OverwriteInPlace(const std::string& path, const Bytes& bytes) {
  const int fd = ::open(path.c_str(), O_WRONLY | O_TRUNC);
  ASSERT_GE(fd, 0);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    ASSERT_GT(n, 0);
    done += static_cast<std::size_t>(n);
  }
  ASSERT_EQ(::close(fd), 0);
}

void TruncateInPlace(const std::string& path) {
  ASSERT_EQ(::truncate(path.c_str(), 0), 0);
}

// What the database answers, recorded to compare before and after.
struct Answers {
  std::vector<CuttingParameter> records;
  std::vector<std::optional<CuttingParameter>> exact;
  std::vector<std::optional<CuttingParameter>> optimal;
  std::vector<float> interpolated_speed;
  std::vector<std::optional<CuttingParameter>> nearest;

  static Answers Of(const Database& db) {
    Answers a;
    a.records = db.GetParameters();
    for (const char* material : {"Mild Steel", "Stainless"}) {
      for (const char* machine : {"Cutter 1", "Cutter 2"}) {
        for (float t : {0.5f, 3.5f, 12.5f, 39.5f, 41.0f}) {
          a.exact.push_back(db.FindExact(material, t, machine, 0.01f));
          a.interpolated_speed.push_back(db.Interpolate(material, t + 0.25f, machine).parameter.cut_speed_mm_min);
          a.nearest.push_back(db.FindNearest(material, t + 0.3f, machine));
        }
      }
      for (float t : {0.5f, 7.5f, 39.5f}) a.optimal.push_back(db.FindOptimal(material, t, 0.01f));
    }
    return a;
  }
};

bool Same(const std::optional<CuttingParameter>& a, const std::optional<CuttingParameter>& b) {
  return a.has_value() == b.has_value() && (!a || SameBytes(*a, *b));
}

void ExpectSameAnswers(const Answers& before, const Answers& after) {
  ASSERT_EQ(before.records.size(), after.records.size());
  for (std::size_t i = 0; i < before.records.size(); ++i) {
    ASSERT_TRUE(SameBytes(before.records[i], after.records[i])) << "record " << i;
  }
  ASSERT_EQ(before.exact.size(), after.exact.size());
  for (std::size_t i = 0; i < before.exact.size(); ++i) {
    EXPECT_TRUE(Same(before.exact[i], after.exact[i])) << i;
    EXPECT_TRUE(Same(before.nearest[i], after.nearest[i])) << i;
    EXPECT_EQ(before.interpolated_speed[i], after.interpolated_speed[i]) << i;
  }
  for (std::size_t i = 0; i < before.optimal.size(); ++i) {
    EXPECT_TRUE(Same(before.optimal[i], after.optimal[i])) << i;
  }
}

class LoadedCopyTest : public ::testing::TestWithParam<std::uint8_t> {
 protected:
  void SetUp() override {
    dir_ = ScratchDir(::testing::UnitTest::GetInstance()->current_test_info()->name());
    ASSERT_FALSE(dir_.empty());
    path_ = dir_ + "/params.bin";
  }
  std::string dir_;
  std::string path_;
};

TEST_P(LoadedCopyTest, TruncatedThenRewrittenFileChangesNothingLoaded) {
  const FileContents original = Contents(GetParam(), 1000.0f);
  ASSERT_TRUE(WriteFile(path_, BuildFile(original)));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success);
  const Answers before = Answers::Of(db);
  ASSERT_EQ(before.records.size(), original.records.size());
  ASSERT_TRUE(before.exact.front().has_value());

  TruncateInPlace(path_);
  ExpectSameAnswers(before, Answers::Of(db));

  // Other records, another size, another compression: a different file
  // under the same name and inode.
  FileContents other = Contents(GetParam() == 0 ? 1 : 0, 5000.0f);
  other.records.resize(1234);
  OverwriteInPlace(path_, BuildFile(other));
  ExpectSameAnswers(before, Answers::Of(db));
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  const std::string csv = dir_ + "/out.csv";
  EXPECT_EQ(db.ExportToCSV(csv), ErrorCode::Success);

  // The next load reads the new file.
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success);
  EXPECT_EQ(db.GetParameters().size(), 1234u);
}

TEST_P(LoadedCopyTest, FileCutShortWhileLoadedIsNeverReadAgain) {
  ASSERT_TRUE(WriteFile(path_, BuildFile(Contents(GetParam(), 2000.0f))));
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success);
  const Answers before = Answers::Of(db);
  // Cut inside the header: any read of the old mapping past here would
  // fault; queries, saves and closing must not touch it.
  ASSERT_EQ(::truncate(path_.c_str(), 100), 0);
  ExpectSameAnswers(before, Answers::Of(db));
  EXPECT_EQ(db.SaveToBinary(dir_ + "/copy.bin", CompressionType::LZ4), ErrorCode::Success);
  db.Close();
  Database reloaded;
  ASSERT_EQ(reloaded.LoadFromBinary(dir_ + "/copy.bin"), ErrorCode::Success);
  ExpectSameAnswers(before, Answers::Of(reloaded));
}

INSTANTIATE_TEST_SUITE_P(RawAndLz4, LoadedCopyTest, ::testing::Values(0, 1));

}  // namespace
#endif  // _WIN32
