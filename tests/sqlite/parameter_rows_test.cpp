#include <gtest/gtest.h>

#include <string>

#include "import_helpers.h"

using sparlane_test::Import;
using sparlane_test::ParameterRow;
using sparlane_test::SqliteFile;

namespace {

// A good row first, then the row under test with rowid 7.
sparlane_test::ImportOutcome ImportWithRow(const std::string& values) {
  SqliteFile file;
  file.Standard(ParameterRow(1, 1, 1, 2.0) + "INSERT INTO parameters (rowid, vendor_id," +
                " machine_model_id, material_id, thickness_mm, cut_speed_mm_min, cut_height_mm," +
                " pierce_height_mm, transfer_height_mm, arc_voltage_v, pierce_time_s," +
                " kerf_width_mm, current_amps, flags) VALUES (7, " + values + ");");
  return Import(file);
}

const char kGood[] = "1, 2, 2, 5.0, 1200, 1.5, 3.8, 3.9, 120, 0.5, 1.2, 45, 0";

// kGood with the field at index replaced by value.
std::string With(int index, const std::string& value) {
  std::string fields[13];
  std::string rest = kGood;
  for (int i = 0; i < 13; ++i) {
    const std::size_t comma = rest.find(", ");
    fields[i] = rest.substr(0, comma);
    rest = comma == std::string::npos ? "" : rest.substr(comma + 2);
  }
  fields[index] = value;
  std::string out;
  for (int i = 0; i < 13; ++i) out += (i ? ", " : "") + fields[i];
  return out;
}

}  // namespace

TEST(SqliteParameters, GoodRowImports) {
  const auto outcome = ImportWithRow(kGood);
  EXPECT_EQ(outcome.code, Sparlane::ErrorCode::Success) << outcome.message;
}

TEST(SqliteParameters, NullInAnyColumnNamesTheRowAndColumn) {
  const char* columns[] = {"vendor_id",        "machine_model_id",   "material_id",
                           "thickness_mm",     "cut_speed_mm_min",   "cut_height_mm",
                           "pierce_height_mm", "transfer_height_mm", "arc_voltage_v",
                           "pierce_time_s",    "kerf_width_mm",      "current_amps",
                           "flags"};
  for (int i = 0; i < 13; ++i) {
    SCOPED_TRACE(columns[i]);
    EXPECT_INVALID_DATA(ImportWithRow(With(i, "NULL")),
                        std::string("table parameters, row 7: NULL in column ") + columns[i]);
  }
}

TEST(SqliteParameters, TextInFloatColumnIsNotANumber) {
  EXPECT_INVALID_DATA(ImportWithRow(With(4, "'fast'")),
                      "table parameters, row 7: column cut_speed_mm_min is not a number");
}

TEST(SqliteParameters, BlobInFloatColumnIsNotANumber) {
  EXPECT_INVALID_DATA(ImportWithRow(With(10, "x'00'")),
                      "table parameters, row 7: column kerf_width_mm is not a number");
}

TEST(SqliteParameters, TextInIntegerColumnIsNotAnInteger) {
  EXPECT_INVALID_DATA(ImportWithRow(With(11, "'45 A'")),
                      "table parameters, row 7: column current_amps is not an integer");
}

TEST(SqliteParameters, FractionalCurrentIsNotAWholeNumber) {
  EXPECT_INVALID_DATA(ImportWithRow(With(11, "45.5")),
                      "table parameters, row 7: column current_amps is not a whole number: 45.5");
}

TEST(SqliteParameters, WholeRealInIntegerColumnIsAccepted) {
  // Columns without a declared type keep 45.0 as a REAL value.
  SqliteFile file;
  file.Exec(
      "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT);"
      "CREATE TABLE parameters (vendor_id, machine_model_id, material_id, thickness_mm,"
      " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
      " pierce_time_s, kerf_width_mm, current_amps, flags);" +
      std::string(sparlane_test::NamesSql()) +
      "INSERT INTO parameters VALUES (1.0, 2.0, 1.0, 5, 1200, 1.5, 3.8, 3.9, 120, 0.5, 1.2,"
      " 45.0, 16.0);");
  file.Close();
  Sparlane::Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), Sparlane::ErrorCode::Success) << db.GetLastError();
  const auto rows = db.FindByMaterial("Mild steel");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].current_amps, 45);
  EXPECT_EQ(rows[0].flags, 16u);
  EXPECT_EQ(rows[0].machine_model_id, 2);
  EXPECT_EQ(rows[0].thickness_mm, 5.0f);
}

TEST(SqliteParameters, CurrentAbove65535IsOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(11, "70000")),
                      "table parameters, row 7: column current_amps out of range: 70000");
}

TEST(SqliteParameters, NegativeIdIsOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(0, "-1")),
                      "table parameters, row 7: column vendor_id out of range: -1");
}

TEST(SqliteParameters, IdAbove65535IsOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(2, "65536")),
                      "table parameters, row 7: column material_id out of range: 65536");
}

TEST(SqliteParameters, FlagsAbove32BitsAreOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(12, "4294967296")),
                      "table parameters, row 7: column flags out of range: 4294967296");
}

TEST(SqliteParameters, NegativeFlagsAreOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(12, "-1")),
                      "table parameters, row 7: column flags out of range: -1");
}

TEST(SqliteParameters, AllFlagBitsAreKept) {
  SqliteFile file;
  file.Standard(ParameterRow(1, 1, 1, 2.0, 1000.0, 45, 4294967295LL));
  file.Close();
  Sparlane::Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), Sparlane::ErrorCode::Success);
  const auto rows = db.FindByMaterial("Mild steel");
  ASSERT_EQ(rows.size(), 1u);
  EXPECT_EQ(rows[0].flags, 4294967295u);
}

TEST(SqliteParameters, FloatBeyondSinglePrecisionIsOutOfRange) {
  EXPECT_INVALID_DATA(ImportWithRow(With(5, "1e39")),
                      "table parameters, row 7: column cut_height_mm out of range: 1.0e+39");
}

TEST(SqliteParameters, InfinityFailsTheFloatCheck) {
  EXPECT_INVALID_DATA(
      ImportWithRow(With(10, "9e999")),
      "table parameters, row 7: Parameter contains invalid float value (NaN or Inf)");
}

TEST(SqliteParameters, ZeroThicknessIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(3, "0")),
                      "table parameters, row 7: Material thickness must be positive");
}

TEST(SqliteParameters, NegativeSpeedIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(4, "-5")),
                      "table parameters, row 7: Cut speed must be positive");
}

TEST(SqliteParameters, ZeroCurrentIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(11, "0")),
                      "table parameters, row 7: Process current must be non-zero");
}

TEST(SqliteParameters, VendorIdPastTheTableIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(0, "3")), "table parameters, row 7: Invalid vendor ID");
}

TEST(SqliteParameters, VendorIdEqualToTheCountIsAccepted) {
  const auto outcome = ImportWithRow(With(0, "2"));
  EXPECT_EQ(outcome.code, Sparlane::ErrorCode::Success) << outcome.message;
}

TEST(SqliteParameters, MachineIdZeroIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(1, "0")),
                      "table parameters, row 7: Invalid machine model ID");
}

TEST(SqliteParameters, MaterialIdPastTheTableIsRefused) {
  EXPECT_INVALID_DATA(ImportWithRow(With(2, "9")),
                      "table parameters, row 7: Invalid material ID");
}

TEST(SqliteParameters, FloatCheckComesBeforeThicknessCheck) {
  EXPECT_INVALID_DATA(
      ImportWithRow(With(3, "-9e999")),
      "table parameters, row 7: Parameter contains invalid float value (NaN or Inf)");
}

TEST(SqliteParameters, NegativeHeightsAndZeroVoltageAreAccepted) {
  const auto outcome = ImportWithRow(With(5, "-1.5"));
  EXPECT_EQ(outcome.code, Sparlane::ErrorCode::Success) << outcome.message;
  const auto zero_voltage = ImportWithRow(With(8, "0"));
  EXPECT_EQ(zero_voltage.code, Sparlane::ErrorCode::Success) << zero_voltage.message;
}

TEST(SqliteParameters, FirstBadRowInRowidOrderIsReported) {
  SqliteFile file;
  file.Standard(
      "INSERT INTO parameters (rowid, vendor_id, machine_model_id, material_id, thickness_mm,"
      " cut_speed_mm_min, cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v,"
      " pierce_time_s, kerf_width_mm, current_amps, flags) VALUES"
      " (9, 1, 1, 1, 0, 1000, 1, 1, 1, 1, 1, 1, 45, 0),"
      " (4, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 45, 0);");
  EXPECT_INVALID_DATA(Import(file), "table parameters, row 4: Cut speed must be positive");
}
