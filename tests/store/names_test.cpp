// Name tables: AddMachine, AddMaterial, ids and the name indexes.
#include "store_test_util.h"

namespace sparlane_test {
namespace {


TEST(Names, NthNameHasIdNAndKeepsItAsTablesGrow) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  for (int i = 1; i <= 1500; ++i) {
    ASSERT_EQ(db.AddMaterial("material " + std::to_string(i)), ErrorCode::Success);
    ASSERT_EQ(db.AddMachine("vendor " + std::to_string(i % 7), "model " + std::to_string(i), "x"),
              ErrorCode::Success);
    // The earliest names keep their ids however many follow.
    ASSERT_EQ(db.GetMaterialId("material 1"), 1);
    ASSERT_EQ(db.GetMachineId("model 1"), 1);
  }
  const std::vector<std::string> materials = db.GetMaterials();
  ASSERT_EQ(materials.size(), 1500u);
  for (int i = 1; i <= 1500; ++i) {
    EXPECT_EQ(materials[i - 1], "material " + std::to_string(i));
    EXPECT_EQ(db.GetMaterialId("material " + std::to_string(i)), i);
    EXPECT_EQ(db.GetMachineId("model " + std::to_string(i)), i);
  }
  // Vendors appear in order of first use: vendor 1, 2, ..., 6, 0.
  const std::vector<std::string> vendors = db.GetVendors();
  ASSERT_EQ(vendors.size(), 7u);
  for (int i = 1; i <= 7; ++i) {
    EXPECT_EQ(vendors[i - 1], "vendor " + std::to_string(i % 7));
    EXPECT_EQ(db.GetVendorId("vendor " + std::to_string(i % 7)), i);
  }
  EXPECT_EQ(DatabaseAccess::NameIds(db, NameKind::kMaterial).size(), 1500u);
  EXPECT_EQ(DatabaseAccess::NameIds(db, NameKind::kMachine).size(), 1500u);
}

TEST(Names, MachinesShareAVendorAndModelsAreUniqueAcrossVendors) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);

  ASSERT_EQ(db.AddMachine("V", "M1", ""), ErrorCode::Success);
  EXPECT_EQ(db.GetVendorId("V"), 1);
  EXPECT_EQ(db.GetMachineId("M1"), 1);

  ASSERT_EQ(db.AddMachine("V", "M2", ""), ErrorCode::Success);
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V"}));
  EXPECT_EQ(db.GetMachineId("M2"), 2);

  EXPECT_EQ(db.AddMachine("W", "M1", ""), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.GetLastError(), "Machine model already exists: M1");
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V"}));
  EXPECT_EQ(db.GetVendorId("W"), 0);
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"M1", "M2"}));
}

TEST(Names, ThirdMachineArgumentIsNeitherCheckedNorStored) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("V", "M1", std::string(10000, 'z')), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("V", "M2", ""), ErrorCode::Success);
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"M1", "M2"}));
  EXPECT_EQ(db.GetLastError(), "");
}

TEST(Names, VendorMappedToIdZeroIsAddedAgain) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNameId(db, NameKind::kVendor, "V", 0);  // a broken entry counts as unknown
  ASSERT_EQ(db.AddMachine("V", "M1", ""), ErrorCode::Success);
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V"}));
  EXPECT_EQ(db.GetVendorId("V"), 1);
}

TEST(Names, NamesDifferingOnlyInCaseAreDistinct) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Steel"), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("steel"), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("STEEL"), ErrorCode::Success);
  EXPECT_EQ(db.GetMaterialId("Steel"), 1);
  EXPECT_EQ(db.GetMaterialId("steel"), 2);
  EXPECT_EQ(db.GetMaterialId("STEEL"), 3);

  ASSERT_EQ(db.AddMachine("Acme", "Cutter", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("ACME", "cutter", ""), ErrorCode::Success);
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"Acme", "ACME"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"Cutter", "cutter"}));
  EXPECT_EQ(db.GetVendorId("ACME"), 2);
  EXPECT_EQ(db.GetMachineId("cutter"), 2);
}

TEST(Names, NamesAreExactBytesWithoutTrimmingOrNormalising) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  const std::string with_nul("a\0b", 3);
  const std::string composed = "\xC3\xA9";     // e-acute, one code point
  const std::string decomposed = "e\xCC\x81";  // e + combining accent
  for (const std::string& name : {std::string("Steel"), std::string(" Steel"),
                                  std::string("Steel "), with_nul, std::string("a"), composed,
                                  decomposed}) {
    ASSERT_EQ(db.AddMaterial(name), ErrorCode::Success) << name;
  }
  const std::vector<std::string> materials = db.GetMaterials();
  ASSERT_EQ(materials.size(), 7u);
  EXPECT_EQ(materials[3], with_nul);
  EXPECT_EQ(materials[3].size(), 3u);
  EXPECT_EQ(materials[6], decomposed);
  EXPECT_EQ(db.AddMaterial(with_nul), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.GetLastError(), "Material already exists: " + with_nul);
}

TEST(Names, MaterialNameOf255BytesIsAcceptedAnd256Refused) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.AddMaterial(std::string(255, 'm')), ErrorCode::Success);
  EXPECT_EQ(db.AddMaterial(std::string(256, 'n')), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Material name exceeds maximum length");
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{std::string(255, 'm')}));
}

TEST(Names, VendorNameOf255BytesIsAcceptedAnd256Refused) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine(std::string(255, 'v'), "M1", ""), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine(std::string(256, 'w'), "M2", ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Name exceeds maximum length");
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{std::string(255, 'v')}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"M1"}));
}

TEST(Names, ModelNameOf255BytesIsAcceptedAnd256Refused) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine("V", std::string(255, 'm'), ""), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine("W", std::string(256, 'm'), ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Name exceeds maximum length");
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"V"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{std::string(255, 'm')}));
}

TEST(Names, LengthIsCountedInBytesNotCharacters) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  std::string two_byte_chars;
  for (int i = 0; i < 128; ++i) two_byte_chars += "\xC3\xA9";  // 128 characters, 256 bytes
  EXPECT_EQ(db.AddMaterial(two_byte_chars), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Material name exceeds maximum length");
  EXPECT_EQ(db.AddMaterial(two_byte_chars.substr(2)), ErrorCode::Success);
}

TEST(Names, EmptyVendorOrModelIsRefused) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine("", "M1", ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Vendor and model names cannot be empty");
  ASSERT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.AddMachine("V", "", ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Vendor and model names cannot be empty");
  // Emptiness is tested before length.
  EXPECT_EQ(db.AddMachine("", std::string(300, 'm'), ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Vendor and model names cannot be empty");
  EXPECT_EQ(db.AddMachine(std::string(300, 'v'), "", ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Vendor and model names cannot be empty");
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
}

TEST(Names, LengthIsTestedBeforeDuplicates) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("V", "M1", ""), ErrorCode::Success);
  EXPECT_EQ(db.AddMachine(std::string(256, 'v'), "M1", ""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Name exceeds maximum length");
}

TEST(Names, EmptyMaterialIsRefused) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  EXPECT_EQ(db.GetLastError(), "Material name cannot be empty");
  EXPECT_TRUE(db.GetMaterials().empty());
}

TEST(Names, SameMaterialTwiceIsAlreadyExists) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Aluminium 5083"), ErrorCode::Success);
  EXPECT_EQ(db.AddMaterial("Aluminium 5083"), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.GetLastError(), "Material already exists: Aluminium 5083");
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Aluminium 5083"}));
}

TEST(Names, NameEditsNeedALoadedDatabase) {
  Database db;
  EXPECT_EQ(db.AddMachine("V", "M", ""), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_EQ(db.AddMaterial(""), ErrorCode::NotLoaded);  // loaded flag first
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMaterials().empty());
}

TEST(Names, NameEditsLeaveHeaderCountsAndRecordIndexesAlone) {
  Database db;
  MakeCatalogue(db, 1, 1);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(db.UpdateParameter(0, ValidRecord()), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(db);
  const MachineIndexView machines = MachineIndexOf(db);
  ASSERT_EQ(db.AddMachine("V9", "M9", ""), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Mat9"), ErrorCode::Success);
  EXPECT_EQ(db.GetFileHeader().vendor_count, 0u);
  EXPECT_EQ(db.GetFileHeader().machine_count, 0u);
  EXPECT_EQ(db.GetFileHeader().material_count, 0u);
  EXPECT_EQ(MaterialIndexOf(db), materials);
  EXPECT_EQ(MachineIndexOf(db), machines);
}

TEST(Names, RepeatedNameInAListMapsToItsLastPosition) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  // Lists as a file may bring them; the maps are built as a load builds them.
  DatabaseAccess::SetNames(db, NameKind::kVendor, {"A", "B", "A"});
  DatabaseAccess::SetNames(db, NameKind::kMachine, {"X", "X", "Y", "X"});
  DatabaseAccess::SetNames(db, NameKind::kMaterial, {"S", "T", "S"});
  EXPECT_EQ(db.GetVendorId("A"), 3);
  EXPECT_EQ(db.GetVendorId("B"), 2);
  EXPECT_EQ(db.GetMachineId("X"), 4);
  EXPECT_EQ(db.GetMachineId("Y"), 3);
  EXPECT_EQ(db.GetMaterialId("S"), 3);
  EXPECT_EQ(DatabaseAccess::NameIds(db, NameKind::kVendor).size(), 2u);
  // The lists keep every entry; listings show duplicates as often as they occur.
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"A", "B", "A"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"X", "X", "Y", "X"}));
  // A duplicate already in the index is refused.
  EXPECT_EQ(db.AddMaterial("S"), ErrorCode::AlreadyExists);
}

TEST(Names, BuildingTheIndexesReplacesStaleEntries) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  DatabaseAccess::SetNameId(db, NameKind::kMaterial, "gone", 9);
  DatabaseAccess::SetNames(db, NameKind::kMaterial, {"kept"});
  EXPECT_EQ(db.GetMaterialId("gone"), 0);
  EXPECT_EQ(db.GetMaterialId("kept"), 1);
  EXPECT_EQ(DatabaseAccess::NameIds(db, NameKind::kMaterial).size(), 1u);
}

TEST(Names, UnknownNameResolvesToZero) {
  Database db;
  DatabaseAccess::SetNameId(db, NameKind::kMachine, "a", 1);
  DatabaseAccess::SetNameId(db, NameKind::kMachine, "zero", 0);
  EXPECT_EQ(db.GetMachineId("a"), 1);
  EXPECT_EQ(db.GetMachineId("b"), 0);
  EXPECT_EQ(db.GetMachineId("zero"), 0);
  EXPECT_EQ(db.GetMachineId(""), 0);
}

}  // namespace
}  // namespace sparlane_test
