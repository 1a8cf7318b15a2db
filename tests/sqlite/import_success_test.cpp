#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "import_helpers.h"
#include "../support/store_seam.h"

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::ErrorCode;
using sparlane_test::ParameterRow;
using sparlane_test::SqliteFile;

namespace {

// Rows deliberately out of order: material 2 before 1, thick before thin.
std::string UnsortedRows() {
  return ParameterRow(2, 2, 2, 6.0, 900) + ParameterRow(1, 1, 1, 10.0, 800) +
         ParameterRow(1, 1, 1, 5.0, 2000) + ParameterRow(2, 2, 1, 3.0, 3000) +
         ParameterRow(1, 1, 2, 1.0, 5000) + ParameterRow(1, 1, 1, 2.0, 4000);
}

void ImportStandard(SqliteFile& file, Database& db, const std::string& rows) {
  file.Standard(rows);
  file.Close();
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success) << db.GetLastError();
}

bool SameBytes(const CuttingParameter& a, const CuttingParameter& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

}  // namespace

TEST(SqliteImport, LoadsNamesInIdOrder) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  EXPECT_TRUE(db.IsLoaded());
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"Vendor A", "Vendor B"}));
  EXPECT_EQ(db.GetMachines(), (std::vector<std::string>{"M-45", "M-65"}));
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mild steel", "Aluminium"}));
}

TEST(SqliteImport, NameRowsInsertedOutOfOrderAreTakenById) {
  SqliteFile file;
  file.Exec(std::string(sparlane_test::SchemaSql()) +
            "INSERT INTO vendors VALUES (2, 'Second'), (1, 'First');"
            "INSERT INTO machines VALUES (1, 1, 'M');"
            "INSERT INTO materials VALUES (1, 'S');");
  file.Close();
  Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success) << db.GetLastError();
  EXPECT_EQ(db.GetVendors(), (std::vector<std::string>{"First", "Second"}));
}

TEST(SqliteImport, RecordsAreSortedByMaterialMachineThickness) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  const auto records = db.GetParameters();
  ASSERT_EQ(records.size(), 6u);
  const float expected_thickness[] = {2.0f, 5.0f, 10.0f, 3.0f, 1.0f, 6.0f};
  const int expected_material[] = {1, 1, 1, 1, 2, 2};
  const int expected_machine[] = {1, 1, 1, 2, 1, 2};
  for (std::size_t i = 0; i < records.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(records[i].thickness_mm, expected_thickness[i]);
    EXPECT_EQ(records[i].material_id, expected_material[i]);
    EXPECT_EQ(records[i].machine_model_id, expected_machine[i]);
  }
}

TEST(SqliteImport, EqualKeysKeepRowidOrder) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db,
                 ParameterRow(1, 1, 1, 4.0, 100, 45, 1) + ParameterRow(1, 1, 1, 4.0, 100, 45, 2) +
                     ParameterRow(1, 1, 1, 1.0, 100, 45, 3) +
                     ParameterRow(1, 1, 1, 4.0, 100, 45, 4));
  const auto records = db.GetParameters();
  ASSERT_EQ(records.size(), 4u);
  EXPECT_EQ(records[0].flags, 3u);
  EXPECT_EQ(records[1].flags, 1u);
  EXPECT_EQ(records[2].flags, 2u);
  EXPECT_EQ(records[3].flags, 4u);
}

TEST(SqliteImport, EveryFieldIsCarriedIntoTheRecord) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db,
                 "INSERT INTO parameters VALUES (2, 1, 2, 6.35, 1234.5, 1.25, 3.5, 4.25, 118.5,"
                 " 0.75, 1.625, 65, 4097);");
  const auto records = db.GetParameters();
  ASSERT_EQ(records.size(), 1u);
  CuttingParameter expected{};
  expected.vendor_id = 2;
  expected.machine_model_id = 1;
  expected.material_id = 2;
  expected.thickness_mm = 6.35f;
  expected.cut_speed_mm_min = 1234.5f;
  expected.cut_height_mm = 1.25f;
  expected.pierce_height_mm = 3.5f;
  expected.transfer_height_mm = 4.25f;
  expected.arc_voltage_v = 118.5f;
  expected.pierce_time_s = 0.75f;
  expected.kerf_width_mm = 1.625f;
  expected.current_amps = 65;
  expected.flags = 4097;
  EXPECT_TRUE(SameBytes(records[0], expected));
}

TEST(SqliteImport, HeaderIsFreshWithCounts) {
  SqliteFile file;
  Database db;
  const auto before = std::chrono::duration_cast<std::chrono::seconds>(
                          std::chrono::system_clock::now().time_since_epoch())
                          .count();
  ImportStandard(file, db, UnsortedRows());
  const Sparlane::FileHeader h = db.GetFileHeader();
  EXPECT_EQ(h.magic, 0x4E4C5053u);
  EXPECT_EQ(h.version_major, 1);
  EXPECT_EQ(h.version_minor, 0);
  EXPECT_GE(h.created_time, before);
  EXPECT_LE(h.created_time, before + 60);
  EXPECT_EQ(h.parameter_count, 6u);
  EXPECT_EQ(h.vendor_count, 2u);
  EXPECT_EQ(h.machine_count, 2u);
  EXPECT_EQ(h.material_count, 2u);
  EXPECT_EQ(h.parameter_data_offset, 0u);
  EXPECT_EQ(h.header_crc32, 0u);
  const auto stats = db.GetStatistics();
  EXPECT_EQ(stats.parameter_count, 6u);
  EXPECT_EQ(stats.vendor_count, 2u);
}

TEST(SqliteImport, IndexesAreBuilt) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  EXPECT_EQ(db.GetMaterialId("Aluminium"), 2);
  EXPECT_EQ(db.GetMachineId("M-65"), 2);
  EXPECT_EQ(db.GetVendorId("Vendor A"), 1);
  const auto steel = DatabaseAccess::MaterialIndex(db).at(1);
  ASSERT_EQ(steel.size(), 1u);
  EXPECT_EQ(steel[0].first, 0u);
  EXPECT_EQ(steel[0].count, 4u);
  EXPECT_EQ(steel[0].min_thickness, 2.0f);
  EXPECT_EQ(steel[0].max_thickness, 10.0f);
  EXPECT_EQ(DatabaseAccess::MachineIndex(db).at(2).first, 3u);
}

TEST(SqliteImport, QueriesAnswerFromTheImportedStore) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  const auto exact = db.FindExact("Mild steel", 5.0f, "M-45", 0.01f);
  ASSERT_TRUE(exact.has_value());
  EXPECT_EQ(exact->cut_speed_mm_min, 2000.0f);

  const auto mid = db.Interpolate("Mild steel", 7.5f, "M-45");
  EXPECT_FLOAT_EQ(mid.parameter.cut_speed_mm_min, 1400.0f);
  EXPECT_FALSE(mid.extrapolated);
  EXPECT_FLOAT_EQ(mid.confidence, 1.0f);
  EXPECT_NE(mid.parameter.flags & Sparlane::kFlagDerived, 0u);

  EXPECT_EQ(db.FindByMachine("", "M-65").size(), 2u);
  const auto range = db.GetSupportedThicknessRange("Mild steel", "M-45");
  EXPECT_TRUE(range.valid);
  EXPECT_EQ(range.min_thickness_mm, 2.0f);
  EXPECT_EQ(range.max_thickness_mm, 10.0f);
}

TEST(SqliteImport, SaveAndLoadRoundTripKeepsEverything) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  const std::string bin = file.path() + ".bin";
  ASSERT_EQ(db.SaveToBinary(bin, Sparlane::CompressionType::LZ4), ErrorCode::Success)
      << db.GetLastError();
  Database loaded;
  ASSERT_EQ(loaded.LoadFromBinary(bin), ErrorCode::Success) << loaded.GetLastError();
  EXPECT_EQ(loaded.GetVendors(), db.GetVendors());
  EXPECT_EQ(loaded.GetMachines(), db.GetMachines());
  EXPECT_EQ(loaded.GetMaterials(), db.GetMaterials());
  const auto a = db.GetParameters();
  const auto b = loaded.GetParameters();
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) EXPECT_TRUE(SameBytes(a[i], b[i])) << i;
  EXPECT_EQ(loaded.Validate(), ErrorCode::Success) << loaded.GetLastError();
}

TEST(SqliteImport, EmptyParameterTableLoadsAnEmptyStore) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, "");
  EXPECT_TRUE(db.IsLoaded());
  EXPECT_TRUE(db.GetParameters().empty());
  EXPECT_TRUE(DatabaseAccess::MaterialIndex(db).empty());
  EXPECT_EQ(db.GetMaterials().size(), 2u);
}

TEST(SqliteImport, ExtraColumnsAndTablesAreIgnored) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE notes (text TEXT);"
      "CREATE TABLE vendors (name TEXT, country TEXT, id INTEGER PRIMARY KEY);"
      "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT, max_speed REAL);"
      "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE parameters (comment TEXT, flags INTEGER, current_amps INTEGER,"
      " kerf_width_mm, pierce_time_s, arc_voltage_v, transfer_height_mm, pierce_height_mm,"
      " cut_height_mm, cut_speed_mm_min, thickness_mm, material_id, machine_model_id,"
      " vendor_id);"
      "INSERT INTO vendors VALUES ('V', 'X', 1);"
      "INSERT INTO machines VALUES (1, 'M', 9000);"
      "INSERT INTO materials VALUES (1, 'S');"
      "INSERT INTO parameters VALUES ('hi', 0, 40, 1.1, 0.2, 110, 3, 3.5, 1.5, 2500, 3, 1, 1, 1);");
  file.Close();
  Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success) << db.GetLastError();
  const auto rows = db.FindByMaterial("S");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].thickness_mm, 3.0f);
  EXPECT_EQ(rows[0].cut_speed_mm_min, 2500.0f);
  EXPECT_EQ(rows[0].kerf_width_mm, 1.1f);
  EXPECT_EQ(rows[0].current_amps, 40);
}

TEST(SqliteImport, ReplacesAPreviouslyCreatedStore) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Old material"), ErrorCode::Success);
  ASSERT_EQ(db.AddMachine("Old vendor", "Old model", ""), ErrorCode::Success);
  SqliteFile file;
  ImportStandard(file, db, UnsortedRows());
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mild steel", "Aluminium"}));
  EXPECT_EQ(DatabaseAccess::NameIds(db, Sparlane::NameKind::kMaterial).count("Old material"), 0u);
}

TEST(SqliteImport, SuccessLeavesTheLastErrorAsItWas) {
  Database db;
  ASSERT_EQ(db.AddMaterial("x"), ErrorCode::NotLoaded);
  SqliteFile file;
  ImportStandard(file, db, UnsortedRows());
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
}

TEST(SqliteImport, FailedImportLeavesNotLoadedAndTheStoreUntouched) {
  Database db;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("Kept"), ErrorCode::Success);
  SqliteFile file;
  file.Standard(ParameterRow(1, 1, 1, 0.0));
  file.Close();
  EXPECT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::InvalidData);
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.GetMaterials(), std::vector<std::string>{"Kept"});
  EXPECT_EQ(db.AddMaterial("More"), ErrorCode::NotLoaded);
}

TEST(SqliteImport, SourceFileIsNotModified) {
  SqliteFile file;
  file.Standard(UnsortedRows());
  file.Close();
  std::FILE* f = std::fopen(file.path().c_str(), "rb");
  ASSERT_NE(f, nullptr);
  std::string before;
  for (int c; (c = std::fgetc(f)) != EOF;) before += static_cast<char>(c);
  std::fclose(f);
  Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success);
  f = std::fopen(file.path().c_str(), "rb");
  ASSERT_NE(f, nullptr);
  std::string after;
  for (int c; (c = std::fgetc(f)) != EOF;) after += static_cast<char>(c);
  std::fclose(f);
  EXPECT_EQ(before, after);
}

TEST(SqliteImport, ReplacesALoadedFileAndReleasesItsMapping) {
  SqliteFile file;
  Database source;
  ImportStandard(file, source, ParameterRow(1, 1, 1, 3.0));
  const std::string bin = file.path() + ".bin";
  ASSERT_EQ(source.SaveToBinary(bin, Sparlane::CompressionType::None), ErrorCode::Success);

  Database db;
  ASSERT_EQ(db.LoadFromBinary(bin), ErrorCode::Success) << db.GetLastError();
  ASSERT_GT(db.GetStatistics().file_size_bytes, 0u);
  SqliteFile other;
  other.Exec(std::string(sparlane_test::SchemaSql()) +
             "INSERT INTO vendors VALUES (1, 'New vendor');"
             "INSERT INTO machines (id, name) VALUES (1, 'New model');"
             "INSERT INTO materials VALUES (1, 'New material');" +
             ParameterRow(1, 1, 1, 8.0) + ParameterRow(1, 1, 1, 4.0));
  other.Close();
  ASSERT_EQ(db.ImportFromSQLite(other.path()), ErrorCode::Success) << db.GetLastError();
  EXPECT_EQ(db.GetMaterials(), std::vector<std::string>{"New material"});
  const auto stats = db.GetStatistics();
  EXPECT_EQ(stats.file_size_bytes, 0u);
  EXPECT_EQ(stats.parameter_count, 2u);
  EXPECT_FALSE(db.FindExact("Mild steel", 3.0f, "M-45", 0.01f).has_value());
  EXPECT_TRUE(db.FindExact("New material", 4.0f, "New model", 0.01f).has_value());
}

TEST(SqliteImport, ImportedStoreAcceptsEditsLikeALoadedOne) {
  SqliteFile file;
  Database db;
  ImportStandard(file, db, UnsortedRows());
  EXPECT_EQ(db.AddMaterial("Copper"), ErrorCode::Success);
  EXPECT_EQ(db.AddMaterial("Aluminium"), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.AddMachine("Vendor A", "M-45", ""), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.DeleteParameter(0), ErrorCode::Success);
  EXPECT_EQ(db.Validate(), ErrorCode::Success) << db.GetLastError();
}

// The import's order against the plain definition: a stable sort of the
// rows, taken in rowid order, by (material, machine, thickness).
TEST(SqliteImport, OrderMatchesAStableSortOfRandomRows) {
  struct Key {
    int material, machine;
    float thickness;
    std::uint32_t tag;  // the row's rowid, carried in flags
  };
  std::uint32_t state = 12345;
  auto next = [&state](std::uint32_t n) {
    state = state * 1103515245u + 12345u;
    return (state >> 16) % n;
  };
  for (int round = 0; round < 5; ++round) {
    SCOPED_TRACE(round);
    std::vector<Key> keys;
    std::string rows;
    const int count = 50 + static_cast<int>(next(200));
    for (int i = 0; i < count; ++i) {
      const std::uint32_t rowid = 1000 + next(100000);  // random rowid order
      const Key k{1 + static_cast<int>(next(2)), 1 + static_cast<int>(next(2)),
                  0.5f * static_cast<float>(1 + next(6)), rowid};
      char buf[512];
      std::snprintf(buf, sizeof buf,
                    "INSERT OR IGNORE INTO parameters (rowid, vendor_id, machine_model_id,"
                    " material_id, thickness_mm, cut_speed_mm_min, cut_height_mm,"
                    " pierce_height_mm, transfer_height_mm, arc_voltage_v, pierce_time_s,"
                    " kerf_width_mm, current_amps, flags) VALUES (%u, 1, %d, %d, %g, 100, 1, 1,"
                    " 1, 1, 1, 1, 45, %u);",
                    k.tag, k.machine, k.material, static_cast<double>(k.thickness), k.tag);
      rows += buf;
      if (std::none_of(keys.begin(), keys.end(), [&k](const Key& o) { return o.tag == k.tag; })) {
        keys.push_back(k);
      }
    }
    SqliteFile file;
    Database db;
    ImportStandard(file, db, rows);
    std::sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) { return a.tag < b.tag; });
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
      if (a.material != b.material) return a.material < b.material;
      if (a.machine != b.machine) return a.machine < b.machine;
      return a.thickness < b.thickness;
    });
    const auto records = db.GetParameters();
    ASSERT_EQ(records.size(), keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) ASSERT_EQ(records[i].flags, keys[i].tag) << i;
  }
}
