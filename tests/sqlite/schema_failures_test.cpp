#include <gtest/gtest.h>

#include <string>

#include "import_helpers.h"

using sparlane_test::Import;
using sparlane_test::SqliteFile;

namespace {

const char kVendors[] = "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);";
const char kMachines[] = "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT);";
const char kMaterials[] = "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);";
const char kParameters[] =
    "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
    " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
    " pierce_time_s, kerf_width_mm, current_amps, flags);";

}  // namespace

TEST(SqliteSchema, EmptyDatabaseIsMissingTableVendors) {
  SqliteFile file;
  file.Exec("PRAGMA user_version = 1;");
  EXPECT_INVALID_DATA(Import(file), "missing table vendors");
}

TEST(SqliteSchema, MissingMachinesTableIsNamed) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMaterials + kParameters);
  EXPECT_INVALID_DATA(Import(file), "missing table machines");
}

TEST(SqliteSchema, MissingMaterialsTableIsNamed) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + kParameters);
  EXPECT_INVALID_DATA(Import(file), "missing table materials");
}

TEST(SqliteSchema, MissingParametersTableIsNamed) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + kMaterials);
  EXPECT_INVALID_DATA(Import(file), "missing table parameters");
}

TEST(SqliteSchema, ViewDoesNotCountAsTable) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + kMaterials +
            "CREATE TABLE p2 (vendor_id, machine_model_id, material_id, thickness_mm,"
            " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm,"
            " arc_voltage_v, pierce_time_s, kerf_width_mm, current_amps, flags);"
            "CREATE VIEW parameters AS SELECT * FROM p2;");
  EXPECT_INVALID_DATA(Import(file), "missing table parameters");
}

TEST(SqliteSchema, MissingNameColumnIsNamed) {
  SqliteFile file;
  file.Exec(std::string("CREATE TABLE vendors (id INTEGER PRIMARY KEY, title TEXT);") +
            kMachines + kMaterials + kParameters);
  EXPECT_INVALID_DATA(Import(file), "table vendors has no column name");
}

TEST(SqliteSchema, MissingIdColumnIsNamed) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + "CREATE TABLE materials (name TEXT);" +
            kParameters);
  EXPECT_INVALID_DATA(Import(file), "table materials has no column id");
}

TEST(SqliteSchema, MissingParameterColumnIsNamed) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + kMaterials +
            "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
            " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm,"
            " arc_voltage_v, pierce_time_s, current_amps, flags);");
  EXPECT_INVALID_DATA(Import(file), "table parameters has no column kerf_width_mm");
}

TEST(SqliteSchema, EveryParameterColumnIsRequired) {
  const char* columns[] = {"vendor_id",        "machine_model_id",   "material_id",
                           "thickness_mm",     "cut_speed_mm_min",   "cut_height_mm",
                           "pierce_height_mm", "transfer_height_mm", "arc_voltage_v",
                           "pierce_time_s",    "kerf_width_mm",      "current_amps",
                           "flags"};
  for (const char* missing : columns) {
    SCOPED_TRACE(missing);
    std::string create = "CREATE TABLE parameters (other";
    for (const char* c : columns) {
      if (std::string(c) != missing) create += std::string(", ") + c;
    }
    SqliteFile file;
    file.Exec(std::string(kVendors) + kMachines + kMaterials + create + ");");
    EXPECT_INVALID_DATA(Import(file), std::string("table parameters has no column ") + missing);
  }
}

TEST(SqliteSchema, WithoutRowidParametersTableIsRefused) {
  SqliteFile file;
  file.Exec(std::string(kVendors) + kMachines + kMaterials +
            "CREATE TABLE parameters (vendor_id, machine_model_id, material_id,"
            " thickness_mm, cut_speed_mm_min, cut_height_mm, pierce_height_mm,"
            " transfer_height_mm, arc_voltage_v, pierce_time_s, kerf_width_mm, current_amps,"
            " flags, PRIMARY KEY (material_id, machine_model_id, thickness_mm)) WITHOUT ROWID;");
  EXPECT_INVALID_DATA(Import(file),
                      "table parameters has no rowid (WITHOUT ROWID tables are not supported)");
}

TEST(SqliteSchema, TableAndColumnNamesCompareWithoutCase) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE Vendors (ID INTEGER PRIMARY KEY, Name TEXT);"
      "CREATE TABLE MACHINES (Id INTEGER PRIMARY KEY, NAME TEXT);"
      "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE Parameters (Vendor_ID, MACHINE_MODEL_ID, material_id, THICKNESS_MM,"
      " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
      " pierce_time_s, kerf_width_mm, current_amps, FLAGS);" +
      std::string(sparlane_test::NamesSql()) + sparlane_test::ParameterRow(1, 1, 1, 2.0));
  const auto outcome = Import(file);
  EXPECT_EQ(outcome.code, Sparlane::ErrorCode::Success) << outcome.message;
  EXPECT_TRUE(outcome.loaded);
}
