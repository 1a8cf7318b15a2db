#include <cstdio>
#include <limits>
#include <string>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "export_fixtures.h"
#include "sparlane/sparlane.h"

namespace Sparlane {
namespace {

using export_test::FileExists;
using export_test::Fill;
using export_test::ReadFile;
using export_test::Record;
using export_test::TempPath;

const std::string kEmptyTail = "  \"parameters\": [\n  ]\n}\n";

// Record(...) as written, after its three name lines.
std::string NumberLines(const std::string& thickness) {
  return "      \"thickness_mm\": " + thickness + ",\n" +
         "      \"cut_speed_mm_min\": 2540.5,\n"
         "      \"cut_height_mm\": 1.5,\n"
         "      \"pierce_height_mm\": 3,\n"
         "      \"transfer_height_mm\": 0.0625,\n"
         "      \"arc_voltage_v\": 120,\n"
         "      \"pierce_time_s\": 0.1,\n"
         "      \"kerf_width_mm\": 1.23457e+06,\n"
         "      \"current_amps\": 65,\n"
         "      \"flags\": 144\n";
}

std::string RecordBlock(const std::string& vendor, const std::string& machine,
                        const std::string& material, const std::string& thickness) {
  return "    {\n      \"vendor\": \"" + vendor + "\",\n      \"machine\": \"" + machine +
         "\",\n      \"material\": \"" + material + "\",\n" + NumberLines(thickness) + "    }";
}

std::string ExportJson(Database& db) {
  const std::string path = TempPath(".json");
  EXPECT_EQ(db.ExportToJSON(path), ErrorCode::Success);
  std::string text = ReadFile(path);
  std::remove(path.c_str());
  return text;
}

nlohmann::json Parse(const std::string& text) { return nlohmann::json::parse(text); }

TEST(JsonExport, NotLoadedCreatesNoFile) {
  Database db;
  const std::string path = TempPath(".json");
  std::remove(path.c_str());
  EXPECT_EQ(db.ExportToJSON(path), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_FALSE(FileExists(path));
}

TEST(JsonExport, EmptyStoreDocument) {
  Database db;
  db.Create();
  const std::string text = ExportJson(db);
  EXPECT_EQ(text,
            "{\n  \"version\": \"1.0\",\n  \"vendors\": [],\n  \"machines\": [],\n"
            "  \"materials\": [],\n" + kEmptyTail);
  nlohmann::json doc = Parse(text);
  EXPECT_EQ(doc["version"], "1.0");
  EXPECT_TRUE(doc["parameters"].empty());
}

TEST(JsonExport, NameListsStayOnOneLine) {
  Database db;
  Fill(db, {"A", "B"}, {"M"}, {}, {});
  const std::string text = ExportJson(db);
  EXPECT_EQ(text, "{\n  \"version\": \"1.0\",\n  \"vendors\": [\"A\", \"B\"],\n"
                  "  \"machines\": [\"M\"],\n  \"materials\": [],\n" + kEmptyTail);
  nlohmann::json doc = Parse(text);
  EXPECT_EQ(doc["vendors"], nlohmann::json({"A", "B"}));
}

TEST(JsonExport, TwoRecordsOnlyTheFirstClosingBraceHasAComma) {
  Database db;
  Fill(db, {"V1", "V2"}, {"M1"}, {"Steel", "Alu"},
       {Record(2, 1, 1, 6.0f), Record(1, 1, 2, 1.5f)});
  const std::string text = ExportJson(db);
  EXPECT_EQ(text, "{\n  \"version\": \"1.0\",\n  \"vendors\": [\"V1\", \"V2\"],\n"
                  "  \"machines\": [\"M1\"],\n  \"materials\": [\"Steel\", \"Alu\"],\n"
                  "  \"parameters\": [\n" +
                      RecordBlock("V2", "M1", "Steel", "6") + ",\n" +
                      RecordBlock("V1", "M1", "Alu", "1.5") + "\n  ]\n}\n");
  nlohmann::json doc = Parse(text);
  ASSERT_EQ(doc["parameters"].size(), 2u);
  const nlohmann::json& first = doc["parameters"][0];
  EXPECT_EQ(first["vendor"], "V2");
  EXPECT_EQ(first["machine"], "M1");
  EXPECT_EQ(first["material"], "Steel");
  EXPECT_EQ(first["thickness_mm"].get<double>(), 6.0);
  EXPECT_EQ(first["cut_speed_mm_min"].get<double>(), 2540.5);
  EXPECT_EQ(first["transfer_height_mm"].get<double>(), 0.0625);
  EXPECT_EQ(first["pierce_time_s"].get<double>(), 0.1);
  EXPECT_EQ(first["kerf_width_mm"].get<double>(), 1.23457e+06);
  EXPECT_EQ(first["current_amps"].get<int>(), 65);
  EXPECT_EQ(first["flags"].get<unsigned>(), 144u);
  EXPECT_EQ(doc["parameters"][1]["thickness_mm"].get<double>(), 1.5);
}

TEST(JsonExport, KeysComeInTheFixedOrder) {
  Database db;
  Fill(db, {"V"}, {"M"}, {"S"}, {Record(1, 1, 1, 6.0f)});
  const std::string text = ExportJson(db);
  const char* keys[] = {"\"version\"", "\"vendors\"", "\"machines\"", "\"materials\"",
                        "\"parameters\"", "\"vendor\"", "\"machine\"", "\"material\"",
                        "\"thickness_mm\"", "\"cut_speed_mm_min\"", "\"cut_height_mm\"",
                        "\"pierce_height_mm\"", "\"transfer_height_mm\"", "\"arc_voltage_v\"",
                        "\"pierce_time_s\"", "\"kerf_width_mm\"", "\"current_amps\"",
                        "\"flags\""};
  std::size_t at = 0;
  for (const char* key : keys) {
    std::size_t found = text.find(key, at);
    ASSERT_NE(found, std::string::npos) << key;
    at = found + 1;
  }
  EXPECT_NO_THROW(Parse(text));
}

TEST(JsonExport, BackslashAndControlCharactersAreEscaped) {
  Database db;
  Fill(db, {"a\\b\tc"}, {"q\"\b\f\n\r"}, {"S"}, {Record(1, 1, 1, 6.0f)});
  const std::string text = ExportJson(db);
  EXPECT_NE(text.find("  \"vendors\": [\"a\\\\b\\tc\"],\n"), std::string::npos);
  EXPECT_NE(text.find("  \"machines\": [\"q\\\"\\b\\f\\n\\r\"],\n"), std::string::npos);
  EXPECT_NE(text.find("      \"vendor\": \"a\\\\b\\tc\",\n"), std::string::npos);
  nlohmann::json doc = Parse(text);
  EXPECT_EQ(doc["vendors"][0], "a\\b\tc");
  EXPECT_EQ(doc["parameters"][0]["machine"], "q\"\b\f\n\r");
}

TEST(JsonExport, OtherControlBytesAndHighBytesAreWrittenRaw) {
  Database db;
  Fill(db, {std::string("x\x01y\x1F", 4)}, {std::string("n\0l", 3)}, {"\xC3\xA9\xFF"},
       {Record(1, 1, 1, 6.0f)});
  const std::string text = ExportJson(db);
  EXPECT_NE(text.find(std::string("[\"x\x01y\x1F\"]")), std::string::npos);
  EXPECT_NE(text.find(std::string("[\"n\0l\"]", 7)), std::string::npos);
  EXPECT_NE(text.find("[\"\xC3\xA9\xFF\"]"), std::string::npos);
  EXPECT_EQ(text.find("\\u"), std::string::npos);
  // Raw control characters make the document invalid JSON, as documented.
  EXPECT_THROW(Parse(text), nlohmann::json::parse_error);
}

TEST(JsonExport, MissingNamesAreEmptyStringsAndTheRecordIsStillWritten) {
  Database db;
  Fill(db, {"V"}, {"M"}, {"S"}, {Record(1, 0, 2, 6.0f)});
  const std::string text = ExportJson(db);
  EXPECT_NE(text.find(RecordBlock("V", "", "", "6")), std::string::npos);
  nlohmann::json doc = Parse(text);
  EXPECT_EQ(doc["parameters"][0]["machine"], "");
  EXPECT_EQ(doc["parameters"][0]["material"], "");
}

TEST(JsonExport, VersionIsAlways1Point0) {
  Database db;
  Fill(db, {}, {}, {}, {});
  DatabaseAccess::Header(db).version_major = 7;
  DatabaseAccess::Header(db).version_minor = 3;
  const std::string text = ExportJson(db);
  EXPECT_EQ(text.substr(0, 24), "{\n  \"version\": \"1.0\",\n  ");
  EXPECT_EQ(Parse(text)["version"], "1.0");
}

TEST(JsonExport, NonFiniteFloatsAreWrittenUnguarded) {
  Database db;
  CuttingParameter p = Record(1, 1, 1, std::numeric_limits<float>::infinity());
  p.cut_height_mm = std::numeric_limits<float>::quiet_NaN();
  Fill(db, {"V"}, {"M"}, {"S"}, {p});
  const std::string text = ExportJson(db);
  EXPECT_NE(text.find("      \"thickness_mm\": inf,\n"), std::string::npos);
  EXPECT_NE(text.find("      \"cut_height_mm\": nan,\n"), std::string::npos);
  EXPECT_THROW(Parse(text), nlohmann::json::parse_error);
}

TEST(JsonExport, MissingDirectoryFailsToOpen) {
  Database db;
  db.Create();
  const std::string path = ::testing::TempDir() + "no_such_dir_for_export/../x.json";
  const std::string shown = ::testing::TempDir() + "no_such_dir_for_export//x.json";
  EXPECT_EQ(db.ExportToJSON(path), ErrorCode::IoError);
  EXPECT_EQ(db.GetLastError(), "Failed to open file for writing: " + shown);
}

TEST(JsonExport, SuccessKeepsThePreviousMessage) {
  Database db;
  db.Create();
  EXPECT_EQ(db.DeleteParameter(3), ErrorCode::InvalidParameter);
  EXPECT_NO_THROW(Parse(ExportJson(db)));
  EXPECT_EQ(db.GetLastError(), "Parameter ID out of range: 3");
}

}  // namespace
}  // namespace Sparlane
