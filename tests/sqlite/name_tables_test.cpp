#include <gtest/gtest.h>

#include <string>

#include "import_helpers.h"

using sparlane_test::Import;
using sparlane_test::SqliteFile;

namespace {

const char kRest[] =
    "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT);"
    "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
    "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
    " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
    " pierce_time_s, kerf_width_mm, current_amps, flags);";

// A vendors table built by sql, the other tables empty.
sparlane_test::ImportOutcome ImportVendors(const std::string& sql) {
  SqliteFile file;
  file.Exec(sql + kRest);
  return Import(file);
}

}  // namespace

TEST(SqliteNames, IdsMustStartAtOne) {
  EXPECT_INVALID_DATA(
      ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                    "INSERT INTO vendors VALUES (0, 'A'), (1, 'B');"),
      "table vendors: ids must run 1, 2, 3, ... without gaps; found id 0 where 1 was expected");
}

TEST(SqliteNames, GapInIdsIsRefused) {
  EXPECT_INVALID_DATA(
      ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                    "INSERT INTO vendors VALUES (1, 'A'), (2, 'B'), (4, 'D');"),
      "table vendors: ids must run 1, 2, 3, ... without gaps; found id 4 where 3 was expected");
}

TEST(SqliteNames, RepeatedIdIsRefused) {
  EXPECT_INVALID_DATA(
      ImportVendors("CREATE TABLE vendors (id INTEGER, name TEXT);"
                    "INSERT INTO vendors VALUES (1, 'A'), (1, 'B');"),
      "table vendors: ids must run 1, 2, 3, ... without gaps; found id 1 where 2 was expected");
}

TEST(SqliteNames, NullIdIsRefused) {
  EXPECT_INVALID_DATA(ImportVendors("CREATE TABLE vendors (id INTEGER, name TEXT);"
                                    "INSERT INTO vendors VALUES (NULL, 'A');"),
                      "table vendors, row 1: NULL in column id");
}

TEST(SqliteNames, TextIdIsRefused) {
  EXPECT_INVALID_DATA(ImportVendors("CREATE TABLE vendors (id, name TEXT);"
                                    "INSERT INTO vendors VALUES ('one', 'A');"),
                      "table vendors, row 1: column id is not an integer");
}

TEST(SqliteNames, NullNameIsRefused) {
  EXPECT_INVALID_DATA(ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                                    "INSERT INTO vendors VALUES (1, 'A'), (2, NULL);"),
                      "table vendors, row 2: NULL in column name");
}

TEST(SqliteNames, NumberAsNameIsRefused) {
  EXPECT_INVALID_DATA(ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name);"
                                    "INSERT INTO vendors VALUES (1, 42);"),
                      "table vendors, row 1: column name is not text");
}

TEST(SqliteNames, EmptyNameIsRefused) {
  EXPECT_INVALID_DATA(ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                                    "INSERT INTO vendors VALUES (1, '');"),
                      "table vendors, row 1: name is empty");
}

TEST(SqliteNames, NameOf255BytesIsAcceptedAnd256Refused) {
  const std::string ok(255, 'n');
  const auto accepted =
      ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                    "INSERT INTO vendors VALUES (1, '" + ok + "');");
  EXPECT_EQ(accepted.code, Sparlane::ErrorCode::Success) << accepted.message;
  EXPECT_INVALID_DATA(
      ImportVendors("CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
                    "INSERT INTO vendors VALUES (1, '" + ok + "n');"),
      "table vendors, row 1: name exceeds maximum length");
}

TEST(SqliteNames, DuplicateNameIsRefused) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
      " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
      " pierce_time_s, kerf_width_mm, current_amps, flags);"
      "INSERT INTO materials VALUES (1, 'Steel'), (2, 'steel'), (3, 'Steel');");
  EXPECT_INVALID_DATA(Import(file), "table materials, row 3: duplicate name Steel");
}

TEST(SqliteNames, MachineTableIsCheckedToo) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
      " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
      " pierce_time_s, kerf_width_mm, current_amps, flags);"
      "INSERT INTO machines VALUES (2, 'M');");
  EXPECT_INVALID_DATA(
      Import(file),
      "table machines: ids must run 1, 2, 3, ... without gaps; found id 2 where 1 was expected");
}

TEST(SqliteNames, MoreThan65535RowsAreRefused) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 65536)"
      " INSERT INTO vendors SELECT i, 'v' || i FROM n;" +
      std::string(kRest));
  EXPECT_INVALID_DATA(Import(file), "table vendors has more than 65535 rows");
}

TEST(SqliteNames, Exactly65535RowsAreAccepted) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 65535)"
      " INSERT INTO vendors SELECT i, 'v' || i FROM n;" +
      std::string(kRest));
  file.Close();
  Sparlane::Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), Sparlane::ErrorCode::Success) << db.GetLastError();
  const auto vendors = db.GetVendors();
  ASSERT_EQ(vendors.size(), 65535u);
  EXPECT_EQ(vendors.back(), "v65535");
}

TEST(SqliteNames, Utf8AndCaseArePreservedExactly) {
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "INSERT INTO vendors VALUES (1, 'Schwei\xC3\x9F' || 'technik'), (2, 'schweisstechnik');" +
      std::string(kRest));
  file.Close();
  Sparlane::Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), Sparlane::ErrorCode::Success) << db.GetLastError();
  const std::vector<std::string> expected = {"Schwei\xC3\x9Ftechnik", "schweisstechnik"};
  EXPECT_EQ(db.GetVendors(), expected);
}
