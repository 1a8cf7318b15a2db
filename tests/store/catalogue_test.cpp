// Name listings and GetStatistics.
#include <cstdio>
#include <fstream>
#include <memory>

#include <unistd.h>

#include "file/mapped_file.h"
#include "store_test_util.h"

namespace sparlane_test {
namespace {

using Sparlane::DatabaseStats;
using Sparlane::MappedFile;

bool AllZero(const DatabaseStats& s) {
  return s.parameter_count == 0 && s.vendor_count == 0 && s.machine_count == 0 &&
         s.material_count == 0 && s.consumable_set_count == 0 && s.file_size_bytes == 0 &&
         s.uncompressed_size == 0 && s.reserved_a == 0 && s.compression_ratio == 0.0f &&
         s.reserved_b[0] == 0 && s.reserved_b[1] == 0 && s.reserved_b[2] == 0;
}

TEST(Catalogue, ListingsAreCopiesInIdOrder) {
  Database db;
  MakeCatalogue(db, 3, 2);
  std::vector<std::string> machines = db.GetMachines();
  EXPECT_EQ(machines, (std::vector<std::string>{"M1", "M2", "M3"}));
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V1", "V2", "V3"}));
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mat1", "Mat2"}));
  machines[0] = "changed";
  EXPECT_EQ(db.GetMachines()[0], "M1");
}

TEST(Catalogue, NeverLoadedObjectListsNothing) {
  Database db;
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
  EXPECT_TRUE(db.GetMaterials().empty());
  EXPECT_TRUE(AllZero(db.GetStatistics()));
}

TEST(Catalogue, ListingsIgnoreTheLoadedFlag) {
  Database db;
  // Data retained from an earlier load, never loaded now.
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"kept"});
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"kept"}));
  EXPECT_EQ(db.GetVendorId("kept"), 1);
}

TEST(Catalogue, StatisticsAfterCreateAndEdits) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("V", "M", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("A"), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("B"), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  const DatabaseStats s = db.GetStatistics();
  EXPECT_EQ(s.parameter_count, 1u);
  EXPECT_EQ(s.vendor_count, 1u);
  EXPECT_EQ(s.machine_count, 1u);
  EXPECT_EQ(s.material_count, 2u);
  EXPECT_EQ(s.consumable_set_count, 0u);
  EXPECT_EQ(s.file_size_bytes, 0u);
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);
  EXPECT_EQ(s.reserved_a, 0u);
}

TEST(Catalogue, CreatedDatabaseIgnoresHeaderSizeWords) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  Sparlane::FileHeader& header = DatabaseAccess::Header(db);
  header.stats_compressed_size = 300;
  header.stats_uncompressed_size = 600;
  const DatabaseStats s = db.GetStatistics();
  EXPECT_EQ(s.file_size_bytes, 0u);
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);
}

TEST(Catalogue, CountsFollowTheTablesNotTheHeader) {
  Database db;
  MakeCatalogue(db, 2, 2);
  Sparlane::FileHeader& header = DatabaseAccess::Header(db);
  header.parameter_count = 77;
  header.vendor_count = 77;
  header.machine_count = 77;
  header.material_count = 77;
  EXPECT_EQ(db.GetStatistics().parameter_count, 0u);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  const DatabaseStats s = db.GetStatistics();
  EXPECT_EQ(s.parameter_count, 1u);  // at once, though the header still says 77
  EXPECT_EQ(s.vendor_count, 2u);
  EXPECT_EQ(s.machine_count, 2u);
  EXPECT_EQ(s.material_count, 2u);
  EXPECT_EQ(db.GetFileHeader().parameter_count, 77u);
}

TEST(Catalogue, ConsumableSetsAreCounted) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::PutConsumableSet(db, 1, Sparlane::ConsumableSet{});
  DatabaseAccess::PutConsumableSet(db, 400, Sparlane::ConsumableSet{});
  EXPECT_EQ(db.GetStatistics().consumable_set_count, 2u);
}

TEST(Catalogue, ClosedDatabaseHasZeroStatisticsButKeepsItsLists) {
  Database db;
  MakeCatalogue(db, 1, 2);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  DatabaseAccess::PutConsumableSet(db, 3, Sparlane::ConsumableSet{});
  db.Close();
  EXPECT_TRUE(AllZero(db.GetStatistics()));
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mat1", "Mat2"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"M1"}));
}

// A database whose body holds a real mapped file, as after a load.
class MappedStatistics : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = ::testing::TempDir() + "sparlane_stats_" + std::to_string(::getpid()) + ".bin";
    {
      std::ofstream out(path_, std::ios::binary);
      const std::string bytes(kFileSize, '\x5a');
      out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    ASSERT_EQ(db_.Create(), ErrorCode::Success);
    auto file = std::make_unique<MappedFile>();
    ASSERT_EQ(file->Open(path_), ErrorCode::Success);
    ASSERT_NE(file->view(), nullptr);
    DatabaseAccess::AttachFile(db_, std::move(file));
  }
  void TearDown() override {
    db_.Close();
    std::remove(path_.c_str());
  }

  DatabaseStats StatsWith(std::uint32_t word116, std::uint32_t word120) {
    Sparlane::FileHeader& header = DatabaseAccess::Header(db_);
    header.stats_compressed_size = word116;
    header.stats_uncompressed_size = word120;
    return db_.GetStatistics();
  }

  static constexpr std::size_t kFileSize = 3000;
  std::string path_;
  Database db_;
};

TEST_F(MappedStatistics, ReportsFileSizeAndHeaderWords) {
  const DatabaseStats s = StatsWith(300, 1200);
  EXPECT_EQ(s.file_size_bytes, kFileSize);
  EXPECT_EQ(s.uncompressed_size, 1200u);
  EXPECT_EQ(s.compression_ratio, 0.25f);
  EXPECT_EQ(s.reserved_a, 0u);
  EXPECT_EQ(s.reserved_b[0] | s.reserved_b[1] | s.reserved_b[2], 0u);
}

TEST_F(MappedStatistics, ZeroHeaderWordsGiveZeroRatio) {
  DatabaseStats s = StatsWith(0, 0);
  EXPECT_EQ(s.file_size_bytes, kFileSize);
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);

  s = StatsWith(500, 0);  // no division by zero
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);

  s = StatsWith(0, 800);
  EXPECT_EQ(s.uncompressed_size, 800u);
  EXPECT_EQ(s.compression_ratio, 0.0f);
}

TEST_F(MappedStatistics, RatioIsComputedInSinglePrecision) {
  // Both words become floats first: 16777217 rounds to 16777216.
  const DatabaseStats s = StatsWith(16777217u, 16777216u);
  EXPECT_EQ(s.compression_ratio, 1.0f);
  EXPECT_EQ(s.uncompressed_size, 16777216u);
  const DatabaseStats big = StatsWith(0xFFFFFFFFu, 1u);
  EXPECT_EQ(big.compression_ratio, 4294967296.0f);
  EXPECT_EQ(StatsWith(1u, 3u).compression_ratio, 1.0f / 3.0f);
}

TEST_F(MappedStatistics, ClosedFileIsReportedAsNoFile) {
  db_.Close();
  EXPECT_TRUE(AllZero(db_.GetStatistics()));
  DatabaseAccess::SetLoaded(db_, true);  // loaded again, but the view is gone
  const DatabaseStats s = StatsWith(300, 1200);
  EXPECT_EQ(s.file_size_bytes, 0u);
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);
}

}  // namespace
}  // namespace sparlane_test
