// What a successful load leaves in the name indexes and the record indexes:
// a file written from one database and read into another.
#include <cstdio>

#include <unistd.h>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

using Sparlane::CompressionType;

class LoadIndexes : public ::testing::Test {
 protected:
  void SetUp() override {
    path_ = ::testing::TempDir() + "sparlane_load_indexes_" + std::to_string(::getpid()) + ".slb";
    Database source;
    MakeCatalogue(source, 3, 3);
    // Not sorted: the loaded indexes describe this order exactly as it is.
    const float thickness[] = {6.0f, 2.0f, 10.0f, 3.0f, 3.0f, 1.0f, 8.0f};
    const std::uint16_t material[] = {2, 2, 1, 2, 3, 1, 2};
    const std::uint16_t machine[] = {3, 1, 1, 3, 2, 3, 1};
    for (int i = 0; i < 7; ++i) {
      CuttingParameter p = ValidRecord(thickness[i], 1, machine[i], material[i]);
      if (i == 3) {  // opaque fields must come back byte for byte
        p.aux_id = 0xA55A;
        p.flags = 0x8000F00Fu;
        for (int b = 0; b < 6; ++b) p.reserved_42[b] = static_cast<std::uint8_t>(0xC0 + b);
        for (int b = 0; b < 12; ++b) p.reserved_52[b] = static_cast<std::uint8_t>(0x30 + b);
      }
      ASSERT_EQ(source.AddParameter(p), ErrorCode::Success);
    }
    table_ = source.GetParameters();
    ASSERT_EQ(source.SaveToBinary(path_, CompressionType::None), ErrorCode::Success)
        << source.GetLastError();
  }
  void TearDown() override { std::remove(path_.c_str()); }

  std::string path_;
  std::vector<CuttingParameter> table_;
};

TEST_F(LoadIndexes, LoadRebuildsBothRecordIndexes) {
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success) << db.GetLastError();
  ASSERT_TRUE(db.IsLoaded());
  const std::vector<CuttingParameter> records = db.GetParameters();
  ASSERT_EQ(records.size(), table_.size());
  for (std::size_t i = 0; i < table_.size(); ++i) EXPECT_TRUE(SameBytes(records[i], table_[i]));
  EXPECT_EQ(records[3].aux_id, 0xA55A);

  EXPECT_EQ(MaterialIndexOf(db), (MaterialIndexView{{1, {{1.0f, 10.0f, 5, 2}}},
                                                   {2, {{2.0f, 8.0f, 1, 4}}},
                                                   {3, {{3.0f, 3.0f, 4, 1}}}}));
  EXPECT_EQ(MachineIndexOf(db), (MachineIndexView{{1, {1, 3}}, {2, {4, 1}}, {3, {0, 3}}}));
}

TEST_F(LoadIndexes, LoadReplacesStaleIndexesAndBuildsNameIndexes) {
  Database db;
  MakeCatalogue(db, 1, 1);
  DatabaseAccess::SetMaterialBuckets(db, 40, {{1.0f, 1.0f, 0, 1}});
  DatabaseAccess::SetMachineSpan(db, 40, {0, 1});
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success) << db.GetLastError();
  EXPECT_EQ(MaterialIndexOf(db).count(40), 0u);
  EXPECT_EQ(MachineIndexOf(db).count(40), 0u);
  EXPECT_EQ(MaterialIndexOf(db).size(), 3u);
  EXPECT_EQ(db.GetVendorId("V3"), 3);
  EXPECT_EQ(db.GetMachineId("M2"), 2);
  EXPECT_EQ(db.GetMaterialId("Mat3"), 3);
  EXPECT_EQ(DatabaseAccess::NameIds(db, NameKind::kMaterial).size(), 3u);
}

TEST_F(LoadIndexes, LoadedStatisticsReportTheMappedFile) {
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success) << db.GetLastError();
  std::FILE* f = std::fopen(path_.c_str(), "rb");
  ASSERT_NE(f, nullptr);
  std::fseek(f, 0, SEEK_END);
  const long size = std::ftell(f);
  std::fclose(f);
  const Sparlane::DatabaseStats s = db.GetStatistics();
  EXPECT_EQ(s.file_size_bytes, static_cast<std::uint64_t>(size));
  EXPECT_EQ(s.parameter_count, 7u);
  EXPECT_EQ(s.vendor_count, 3u);
  EXPECT_EQ(s.machine_count, 3u);
  EXPECT_EQ(s.material_count, 3u);
  // The writer leaves header words 116 and 120 zero: no ratio, no division.
  EXPECT_EQ(s.uncompressed_size, 0u);
  EXPECT_EQ(s.compression_ratio, 0.0f);
}

TEST_F(LoadIndexes, CloseAfterLoadKeepsIndexesAndReleasesTheFile) {
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success) << db.GetLastError();
  const MaterialIndexView materials = MaterialIndexOf(db);
  const MachineIndexView machines = MachineIndexOf(db);
  db.Close();
  EXPECT_FALSE(db.IsLoaded());
  const Sparlane::LoadedFile* file = DatabaseAccess::File(db);
  ASSERT_NE(file, nullptr);  // the object stays, its mapping goes
  EXPECT_EQ(file->view(), nullptr);
  EXPECT_EQ(file->size(), 0u);
  EXPECT_EQ(MaterialIndexOf(db), materials);
  EXPECT_EQ(MachineIndexOf(db), machines);
  EXPECT_EQ(db.GetMaterials().size(), 3u);
}

TEST_F(LoadIndexes, CreateAfterLoadEmptiesEverything) {
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path_), ErrorCode::Success) << db.GetLastError();
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
  EXPECT_TRUE(db.GetMaterials().empty());
  EXPECT_TRUE(db.GetParameters().empty());
  EXPECT_TRUE(MaterialIndexOf(db).empty());
  EXPECT_TRUE(MachineIndexOf(db).empty());
  EXPECT_TRUE(DatabaseAccess::NameIds(db, NameKind::kVendor).empty());
  EXPECT_EQ(db.GetVendorId("V1"), 0);
  EXPECT_EQ(db.GetStatistics().file_size_bytes, 0u);
}

}  // namespace
}  // namespace sparlane_test
