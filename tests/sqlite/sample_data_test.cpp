// The sample cut charts, written into an SQLite file and imported: every row
// arrives, and the CSV export of the imported store lists the same rows.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "import_helpers.h"

using Sparlane::Database;
using Sparlane::ErrorCode;
using sparlane_test::SqliteFile;

namespace {

const std::string kSample = std::string(SPARLANE_SHARED_DIR) + "/data/cut-charts.csv";

std::vector<std::string> ReadLines(const std::string& path) {
  std::ifstream in(path);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Split(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream in(line);
  for (std::string f; std::getline(in, f, ',');) fields.push_back(f);
  return fields;
}

// 1-based position of name in names, appending it when new.
int IdFor(std::vector<std::string>& names, const std::string& name) {
  auto it = std::find(names.begin(), names.end(), name);
  if (it == names.end()) it = names.insert(names.end(), name);
  return static_cast<int>(it - names.begin()) + 1;
}

std::string Quoted(const std::string& s) { return "'" + s + "'"; }

// The sample rows as SQL, names linked by id in order of first appearance.
std::string SampleAsSql(const std::vector<std::string>& lines) {
  std::vector<std::string> vendors, machines, materials;
  std::string rows;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<std::string> f = Split(lines[i]);
    if (f.size() != 13) continue;
    rows += "INSERT INTO parameters VALUES (" + std::to_string(IdFor(vendors, f[0])) + ", " +
            std::to_string(IdFor(machines, f[1])) + ", " + std::to_string(IdFor(materials, f[2]));
    for (int k = 3; k < 13; ++k) rows += ", " + f[k];
    rows += ");";
  }
  std::string sql = sparlane_test::SchemaSql();
  for (std::size_t i = 0; i < vendors.size(); ++i) {
    sql += "INSERT INTO vendors VALUES (" + std::to_string(i + 1) + ", " + Quoted(vendors[i]) +
           ");";
  }
  for (std::size_t i = 0; i < machines.size(); ++i) {
    sql += "INSERT INTO machines (id, name) VALUES (" + std::to_string(i + 1) + ", " +
           Quoted(machines[i]) + ");";
  }
  for (std::size_t i = 0; i < materials.size(); ++i) {
    sql += "INSERT INTO materials VALUES (" + std::to_string(i + 1) + ", " +
           Quoted(materials[i]) + ");";
  }
  return sql + rows;
}

}  // namespace

TEST(SqliteSampleData, ImportedChartsExportTheSameRows) {
  const std::vector<std::string> lines = ReadLines(kSample);
  if (lines.size() < 2) GTEST_SKIP() << "no sample data at " << kSample;
  SqliteFile file;
  file.Exec(SampleAsSql(lines));
  file.Close();

  Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success) << db.GetLastError();
  EXPECT_EQ(db.GetStatistics().parameter_count, lines.size() - 1);
  EXPECT_EQ(db.Validate(), ErrorCode::Success) << db.GetLastError();

  const std::string csv = file.path() + ".tmp";
  ASSERT_EQ(db.ExportToCSV(csv), ErrorCode::Success) << db.GetLastError();
  std::vector<std::string> exported = ReadLines(csv);
  std::vector<std::string> original = lines;
  ASSERT_FALSE(exported.empty());
  EXPECT_EQ(exported.front(), original.front());  // same column names
  std::sort(exported.begin() + 1, exported.end());
  std::sort(original.begin() + 1, original.end());
  EXPECT_EQ(exported, original);
}

TEST(SqliteSampleData, InterpolatesBetweenImportedChartRows) {
  const std::vector<std::string> lines = ReadLines(kSample);
  if (lines.size() < 2) GTEST_SKIP() << "no sample data at " << kSample;
  SqliteFile file;
  file.Exec(SampleAsSql(lines));
  file.Close();
  Database db;
  ASSERT_EQ(db.ImportFromSQLite(file.path()), ErrorCode::Success) << db.GetLastError();

  // Every listed row is found again at its own thickness, unchanged.
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<std::string> f = Split(lines[i]);
    ASSERT_EQ(f.size(), 13u);
    const float t = std::stof(f[3]);
    const auto hit = db.Interpolate(f[2], t, f[1]);
    EXPECT_EQ(hit.confidence, 1.0f) << lines[i];
    EXPECT_EQ(hit.parameter.cut_speed_mm_min, std::stof(f[4])) << lines[i];
    EXPECT_EQ(hit.parameter.flags & Sparlane::kFlagDerived, 0u) << lines[i];
  }
}
