// Writing SQLite source files for the import tests through the C API.
#ifndef SPARLANE_TESTS_SQLITE_SQLITE_FIXTURE_H_
#define SPARLANE_TESTS_SQLITE_SQLITE_FIXTURE_H_

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "sparlane/sparlane.h"

namespace sparlane_test {

// The documented schema.
inline const char* SchemaSql() {
  return "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
         "CREATE TABLE machines (id INTEGER PRIMARY KEY, vendor_id INTEGER, name TEXT NOT NULL);"
         "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
         "CREATE TABLE parameters (vendor_id INTEGER, machine_model_id INTEGER,"
         " material_id INTEGER, thickness_mm REAL, cut_speed_mm_min REAL, cut_height_mm REAL,"
         " pierce_height_mm REAL, transfer_height_mm REAL, arc_voltage_v REAL,"
         " pierce_time_s REAL, kerf_width_mm REAL, current_amps INTEGER, flags INTEGER);";
}

// Two vendors, two machines, two materials.
inline const char* NamesSql() {
  return "INSERT INTO vendors VALUES (1, 'Vendor A'), (2, 'Vendor B');"
         "INSERT INTO machines (id, name) VALUES (1, 'M-45'), (2, 'M-65');"
         "INSERT INTO materials VALUES (1, 'Mild steel'), (2, 'Aluminium');";
}

// A parameter row with every column given; the values are distinct per
// thickness so records can be told apart.
inline std::string ParameterRow(int vendor, int machine, int material, double thickness,
                                double speed = 1000.0, int current = 45, long long flags = 0) {
  char buf[512];
  std::snprintf(buf, sizeof buf,
                "INSERT INTO parameters VALUES (%d, %d, %d, %.17g, %.17g, 1.5, 3.8, 3.9,"
                " %.17g, %.17g, %.17g, %d, %lld);",
                vendor, machine, material, thickness, speed, 100.0 + thickness,
                0.1 * thickness, 1.0 + thickness / 100.0, current, flags);
  return buf;
}

// A fresh SQLite file at a per-test path, removed again at the end.
class SqliteFile {
 public:
  SqliteFile() {
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    // The pid keeps concurrent runs of the suite apart.
    path_ = ::testing::TempDir() + "sparlane_sqlite_" + std::to_string(::getpid()) + "_" +
            info->test_suite_name() + "_" + info->name() + ".db";
    std::remove(path_.c_str());
  }
  ~SqliteFile() {
    Close();
    std::remove(path_.c_str());
    std::remove((path_ + ".tmp").c_str());
    std::remove((path_ + ".bin").c_str());
  }
  SqliteFile(const SqliteFile&) = delete;
  SqliteFile& operator=(const SqliteFile&) = delete;

  const std::string& path() const { return path_; }

  // Runs sql against the file, creating it on first use.
  void Exec(const std::string& sql) {
    if (!db_) {
      ASSERT_EQ(sqlite3_open_v2(path_.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                                nullptr),
                SQLITE_OK);
      // Test files need no durability; syncing made the suite slow.
      sqlite3_exec(db_, "PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY;", nullptr,
                   nullptr, nullptr);
    }
    char* error = nullptr;
    const int rc = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error);
    const std::string message = error ? error : "";
    sqlite3_free(error);
    ASSERT_EQ(rc, SQLITE_OK) << message << "\n" << sql;
  }

  // The documented schema with the standard names, plus extra sql.
  void Standard(const std::string& extra = "") {
    Exec(std::string(SchemaSql()) + NamesSql() + extra);
  }

  void Close() {
    sqlite3_close(db_);
    db_ = nullptr;
  }

 private:
  std::string path_;
  sqlite3* db_ = nullptr;
};

}  // namespace sparlane_test

#endif  // SPARLANE_TESTS_SQLITE_SQLITE_FIXTURE_H_
