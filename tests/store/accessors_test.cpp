// GetFileHeader, GetParameters and the name-to-id lookups.
#include <cstdio>
#include <cstring>
#include <unistd.h>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

bool AllZero(const Sparlane::FileHeader& h) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&h);
  for (std::size_t i = 0; i < sizeof h; ++i) {
    if (bytes[i] != 0) return false;
  }
  return true;
}

TEST(GetFileHeader, IsAllZeroOnANeverLoadedDatabase) {
  Database db;
  EXPECT_TRUE(AllZero(db.GetFileHeader()));
  db.Close();
  EXPECT_TRUE(AllZero(db.GetFileHeader()));
}

TEST(GetFileHeader, IsTheFreshHeaderAfterCreateAndSurvivesClose) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  const Sparlane::FileHeader h = db.GetFileHeader();
  EXPECT_EQ(h.magic, Sparlane::kFileMagic);
  EXPECT_EQ(h.version_major, Sparlane::kFileVersionMajor);
  EXPECT_EQ(h.parameter_count, 0u);
  EXPECT_GT(h.created_time, 0);
  db.Close();
  const Sparlane::FileHeader closed = db.GetFileHeader();
  EXPECT_EQ(std::memcmp(&h, &closed, sizeof h), 0);
}

TEST(GetFileHeader, IsACopyOfTheLoadedFilesHeader) {
  const std::string path =
      ::testing::TempDir() + "sparlane_header_" + std::to_string(::getpid()) + ".slb";
  Database source;
  MakeCatalogue(source, 2, 3);
  ASSERT_EQ(source.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(source.SaveToBinary(path, Sparlane::CompressionType::LZ4), ErrorCode::Success);
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path), ErrorCode::Success);
  std::FILE* f = std::fopen(path.c_str(), "rb");
  ASSERT_NE(f, nullptr);
  Sparlane::FileHeader on_disk{};
  ASSERT_EQ(std::fread(&on_disk, sizeof on_disk, 1, f), 1u);
  std::fclose(f);
  std::remove(path.c_str());
  Sparlane::FileHeader h = db.GetFileHeader();
  EXPECT_EQ(std::memcmp(&h, &on_disk, sizeof h), 0);  // the test machine is little-endian
  EXPECT_EQ(h.parameter_count, 1u);
  EXPECT_EQ(h.vendor_count, 2u);
  EXPECT_EQ(h.material_count, 3u);
  EXPECT_EQ(h.compression, 1);
  EXPECT_EQ(std::string(h.creator), "slb-tool v1.0");
  h.parameter_count = 99;  // a copy: the database keeps its own
  EXPECT_EQ(db.GetFileHeader().parameter_count, 1u);
}

TEST(GetParameters, IsTheWholeTableInOrderAsACopy) {
  Database db;
  EXPECT_TRUE(db.GetParameters().empty());
  MakeCatalogue(db, 2, 2);
  ASSERT_EQ(db.AddParameter(ValidRecord(9.0f, 2, 2, 2)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(1.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(5.0f, 1, 2, 1)), ErrorCode::Success);
  std::vector<CuttingParameter> table = db.GetParameters();
  ASSERT_EQ(table.size(), 3u);
  EXPECT_TRUE(SameBytes(table[0], ValidRecord(9.0f, 2, 2, 2)));
  EXPECT_TRUE(SameBytes(table[1], ValidRecord(1.0f, 1, 1, 1)));
  EXPECT_TRUE(SameBytes(table[2], ValidRecord(5.0f, 1, 2, 1)));
  table[0].thickness_mm = 77.0f;
  EXPECT_EQ(db.GetParameters()[0].thickness_mm, 9.0f);
  ASSERT_EQ(db.DeleteParameter(0), ErrorCode::Success);
  db.Close();  // kept in memory, like the name lists
  ASSERT_EQ(db.GetParameters().size(), 2u);
  EXPECT_EQ(db.GetParameters()[0].thickness_mm, 1.0f);
}

TEST(NameIds, FollowTheNameTables) {
  Database db;
  EXPECT_EQ(db.GetVendorId("V1"), 0);
  MakeCatalogue(db, 3, 2);
  EXPECT_EQ(db.GetVendorId("V1"), 1);
  EXPECT_EQ(db.GetVendorId("V3"), 3);
  EXPECT_EQ(db.GetMachineId("M2"), 2);
  EXPECT_EQ(db.GetMaterialId("Mat2"), 2);
  EXPECT_EQ(db.GetMaterialId("mat2"), 0);  // case-sensitive
  EXPECT_EQ(db.GetMaterialId("Mat2 "), 0);  // exact bytes
  EXPECT_EQ(db.GetMachineId(""), 0);
  EXPECT_EQ(db.GetVendorId("M1"), 0);  // each table on its own
  ASSERT_EQ(db.AddMaterial("Mat3"), ErrorCode::Success);
  EXPECT_EQ(db.GetMaterialId("Mat3"), 3);
  db.Close();
  EXPECT_EQ(db.GetMaterialId("Mat3"), 3);
}

TEST(NameIds, ADuplicatedNameMapsToItsLastId) {
  const std::string path =
      ::testing::TempDir() + "sparlane_dup_names_" + std::to_string(::getpid()) + ".slb";
  Database source;
  ASSERT_EQ(source.Create(), ErrorCode::Success);
  // Only a file can bring repeated names.
  DatabaseAccess::SetNames(source, NameKind::kVendor, {"A", "B", "A"});
  DatabaseAccess::SetNames(source, NameKind::kMachine, {"X", "X", "Y", "X"});
  DatabaseAccess::SetNames(source, NameKind::kMaterial, {"S", "T", "S"});
  ASSERT_EQ(source.SaveToBinary(path, Sparlane::CompressionType::None), ErrorCode::Success);
  Database db;
  ASSERT_EQ(db.LoadFromBinary(path), ErrorCode::Success);
  std::remove(path.c_str());
  EXPECT_EQ(db.GetVendorId("A"), 3);
  EXPECT_EQ(db.GetVendorId("B"), 2);
  EXPECT_EQ(db.GetMachineId("X"), 4);
  EXPECT_EQ(db.GetMachineId("Y"), 3);
  EXPECT_EQ(db.GetMaterialId("S"), 3);
  EXPECT_EQ(db.GetMaterialId("T"), 2);
  EXPECT_EQ(db.GetMaterialId("U"), 0);
}

}  // namespace
}  // namespace sparlane_test
