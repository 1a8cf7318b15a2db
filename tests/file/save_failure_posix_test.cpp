// Save failures that need the system's help to provoke: a file-size limit
// makes the writes fail partway through.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>

#include "file_bytes.h"
#include "../support/store_seam.h"

using namespace Sparlane;
using namespace filetest;

namespace {

// Caps the size of files this process may write, for one scope.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &saved_);
    previous_handler_ = std::signal(SIGXFSZ, SIG_IGN);  // fail the write instead
    rlimit capped = saved_;
    capped.rlim_cur = bytes;
    ok_ = setrlimit(RLIMIT_FSIZE, &capped) == 0;
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &saved_);
    std::signal(SIGXFSZ, previous_handler_);
  }
  bool ok() const { return ok_; }

 private:
  rlimit saved_{};
  void (*previous_handler_)(int) = nullptr;
  bool ok_ = false;
};

void FillRecords(Database& db, int records) {
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"Acme"});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {"Cutter"});
  DatabaseAccess::SetNames(db, NameKind::kMaterial, {"Steel"});
  std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
  for (int i = 0; i < records; ++i) table.push_back(SampleRecord(1, 1.0f + i, i % 50));
}

}  // namespace

TEST(SaveFailure, WriteFailingPartwayIsIoErrorAndLeavesNoTemporaryFile) {
  const std::string dir = ScratchDir("SaveWriteFails");
  ASSERT_FALSE(dir.empty());
  for (CompressionType c : {CompressionType::None, CompressionType::LZ4}) {
    Database db;
    FillRecords(db, 5000);
    const std::string path = dir + "/big.bin";
    ErrorCode code;
    {
      FileSizeLimit limit(4096);
      ASSERT_TRUE(limit.ok());
      code = db.SaveToBinary(path, c);
    }
    EXPECT_EQ(code, ErrorCode::IoError);
    EXPECT_EQ(db.GetLastError(), "Failed to write binary format to: " + path);
    EXPECT_FALSE(FileExists(path + ".tmp"));
    EXPECT_FALSE(FileExists(path));
  }
}

TEST(SaveFailure, FailedSaveKeepsTheOldTarget) {
  const std::string dir = ScratchDir("SaveKeepsOld");
  ASSERT_FALSE(dir.empty());
  const std::string path = dir + "/t.bin";
  ASSERT_TRUE(WriteFile(path, Bytes(100, 7)));
  Database db;
  FillRecords(db, 5000);
  {
    FileSizeLimit limit(4096);
    ASSERT_TRUE(limit.ok());
    EXPECT_EQ(db.SaveToBinary(path, CompressionType::None), ErrorCode::IoError);
  }
  EXPECT_EQ(ReadFile(path), Bytes(100, 7));
}
#endif
