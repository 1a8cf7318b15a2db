#include <cstdio>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "export_fixtures.h"
#include "sparlane/sparlane.h"

namespace Sparlane {
namespace {

using export_test::FileExists;
using export_test::Fill;
using export_test::ReadFile;
using export_test::Record;
using export_test::TempPath;

const std::string kHeader =
    "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
    "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
    "current_amps,flags\n";
// Everything of Record() after the thickness column.
const std::string kTail = ",2540.5,1.5,3,0.0625,120,0.1,1.23457e+06,65,144\n";

std::string ExportCsv(Database& db, ErrorCode expected = ErrorCode::Success) {
  const std::string path = TempPath(".csv");
  EXPECT_EQ(db.ExportToCSV(path), expected);
  std::string text = ReadFile(path);
  std::remove(path.c_str());
  return text;
}

TEST(CsvExport, NotLoadedCreatesNoFile) {
  Database db;
  const std::string path = TempPath(".csv");
  std::remove(path.c_str());
  EXPECT_EQ(db.ExportToCSV(path), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_FALSE(FileExists(path));
}

TEST(CsvExport, ClosedDatabaseIsNotLoaded) {
  Database db;
  Fill(db, {"V"}, {"M"}, {"S"}, {Record(1, 1, 1, 6.0f)});
  db.Close();
  const std::string path = TempPath(".csv");
  EXPECT_EQ(db.ExportToCSV(path), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_FALSE(FileExists(path));
}

TEST(CsvExport, EmptyStoreWritesOnlyTheHeaderLine) {
  Database db;
  db.Create();
  EXPECT_EQ(ExportCsv(db), kHeader);
}

TEST(CsvExport, SuccessKeepsThePreviousMessage) {
  Database db;
  db.Create();
  EXPECT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  const std::string before = db.GetLastError();
  ExportCsv(db);
  EXPECT_EQ(db.GetLastError(), before);
}

TEST(CsvExport, RecordLineUsesNamesAndDefaultFloatFormat) {
  Database db;
  Fill(db, {"Vendor A", "Vendor B"}, {"M-45", "M-65"}, {"Mild steel", "Aluminium"},
       {Record(2, 1, 2, 10.0f), Record(1, 2, 1, 12.7f)});
  EXPECT_EQ(ExportCsv(db), kHeader + "Vendor B,M-45,Aluminium,10" + kTail +
                               "Vendor A,M-65,Mild steel,12.7" + kTail);
}

TEST(CsvExport, FloatsAreWrittenAsTheStreamWritesThem) {
  Database db;
  CuttingParameter p = Record(1, 1, 1, 0.1f);
  p.cut_speed_mm_min = 1234567.0f;
  p.cut_height_mm = 6.0f;
  p.pierce_height_mm = 0.0001f;
  p.transfer_height_mm = 0.00001f;
  p.arc_voltage_v = 999999.0f;
  p.pierce_time_s = 999999.5f;
  p.kerf_width_mm = -0.0f;
  p.current_amps = 65535;
  p.flags = 4294967295u;
  Fill(db, {"V"}, {"M"}, {"S"}, {p});
  EXPECT_EQ(ExportCsv(db),
            kHeader + "V,M,S,0.1,1.23457e+06,6,0.0001,1e-05,999999,1e+06,-0,65535,4294967295\n");
}

TEST(CsvExport, NonFiniteFloatsAreSpelledAsTheStreamDoes) {
  Database db;
  CuttingParameter p = Record(1, 1, 1, std::numeric_limits<float>::quiet_NaN());
  p.cut_speed_mm_min = std::numeric_limits<float>::infinity();
  p.cut_height_mm = -std::numeric_limits<float>::infinity();
  p.pierce_height_mm = -std::numeric_limits<float>::quiet_NaN();
  Fill(db, {"V"}, {"M"}, {"S"}, {p});
  // The spelling of a negative NaN is the platform's ("-nan" with glibc,
  // "nan" with the Windows runtime); the others are the same everywhere.
  std::ostringstream negative_nan;
  negative_nan << p.pierce_height_mm;
  EXPECT_TRUE(negative_nan.str() == "-nan" || negative_nan.str() == "nan") << negative_nan.str();
  EXPECT_EQ(ExportCsv(db), kHeader + "V,M,S,nan,inf,-inf," + negative_nan.str() +
                               ",0.0625,120,0.1,1.23457e+06,65,144\n");
}

TEST(CsvExport, IdZeroOrPastTheEndGivesEmptyColumns) {
  Database db;
  Fill(db, {"V1", "V2", "V3"}, {"M"}, {"S"},
       {Record(0, 1, 1, 6.0f), Record(4, 1, 1, 6.0f), Record(1, 0, 2, 6.0f),
        Record(3, 65535, 0, 6.0f)});
  EXPECT_EQ(ExportCsv(db), kHeader + ",M,S,6" + kTail + ",M,S,6" + kTail + "V1,,,6" + kTail +
                               "V3,,,6" + kTail);
}

TEST(CsvExport, NameWithCommaIsQuoted) {
  Database db;
  Fill(db, {"V"}, {"M"}, {"Steel, mild"}, {Record(1, 1, 1, 6.0f)});
  EXPECT_EQ(ExportCsv(db), kHeader + "V,M,\"Steel, mild\",6" + kTail);
}

TEST(CsvExport, NameWithQuoteIsQuotedWithTheQuoteDoubled) {
  Database db;
  Fill(db, {"Big \"Arc\" Co"}, {"\""}, {"S"}, {Record(1, 1, 1, 6.0f)});
  EXPECT_EQ(ExportCsv(db), kHeader + "\"Big \"\"Arc\"\" Co\",\"\"\"\",S,6" + kTail);
}

TEST(CsvExport, NameWithLineBreakIsWrittenRaw) {
  Database db;
  Fill(db, {"Two\nLines"}, {"Tab\there"}, {"CR\r"}, {Record(1, 1, 1, 6.0f)});
  EXPECT_EQ(ExportCsv(db), kHeader + "Two\nLines,Tab\there,CR\r,6" + kTail);
}

TEST(CsvExport, EmptyAndUtf8NamesAreWrittenAsTheyAre) {
  Database db;
  Fill(db, {""}, {"\xC3\xA9tau"}, {"S"}, {Record(1, 1, 1, 6.0f)});
  EXPECT_EQ(ExportCsv(db), kHeader + ",\xC3\xA9tau,S,6" + kTail);
}

TEST(CsvExport, RecordsKeepArrayOrder) {
  Database db;
  Fill(db, {"V"}, {"M"}, {"S"},
       {Record(1, 1, 1, 20.0f), Record(1, 1, 1, 2.0f), Record(1, 1, 1, 2540.5f)});
  EXPECT_EQ(ExportCsv(db),
            kHeader + "V,M,S,20" + kTail + "V,M,S,2" + kTail + "V,M,S,2540.5" + kTail);
}

TEST(CsvExport, RecordsAddedWithoutIndexRebuildAreExported) {
  Database db;
  db.Create();
  ASSERT_EQ(db.AddMachine("V", "M", "ignored"), ErrorCode::Success);
  ASSERT_EQ(db.AddMaterial("S"), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(Record(1, 1, 1, 6.0f)), ErrorCode::Success);
  EXPECT_EQ(ExportCsv(db), kHeader + "V,M,S,6" + kTail);
}

TEST(CsvExport, ExistingFileIsTruncated) {
  Database db;
  db.Create();
  const std::string path = TempPath(".csv");
  std::ofstream(path) << std::string(5000, 'z');
  EXPECT_EQ(db.ExportToCSV(path), ErrorCode::Success);
  EXPECT_EQ(ReadFile(path), kHeader);
  std::remove(path.c_str());
}

TEST(CsvExport, MissingDirectoryFailsToOpen) {
  Database db;
  db.Create();
  const std::string path = ::testing::TempDir() + "no_such_dir_for_export/x.csv";
  EXPECT_EQ(db.ExportToCSV(path), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + path);
}

TEST(CsvExport, MessageQuotesTheSanitisedPath) {
  Database db;
  db.Create();
  const std::string dir = ::testing::TempDir() + "no_such_dir_for_export";
  EXPECT_EQ(db.ExportToCSV(dir + "/../x.csv"), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + dir + "//x.csv");
}

TEST(CsvExport, PathIsSanitisedBeforeOpening) {
  Database db;
  db.Create();
  const std::string dir = ::testing::TempDir();
  const std::string clean = dir + "export_sanitised_ab.csv";
  std::remove(clean.c_str());
  EXPECT_EQ(db.ExportToCSV(dir + "export_sanitised_a..b.csv"), ErrorCode::Success);
  EXPECT_EQ(ReadFile(clean), kHeader);
  std::remove(clean.c_str());
}

TEST(CsvExport, DirectoryAsTargetFailsToOpen) {
  Database db;
  db.Create();
  std::string dir = ::testing::TempDir();
  EXPECT_EQ(db.ExportToCSV(dir), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + dir);
}

}  // namespace
}  // namespace Sparlane
