// Database::ImportFromSQLite: the store read from an SQLite file (the schema
// is described in docs/sqlite-schema.md).  Everything is read and checked
// into staged parts first, so a failed import changes nothing but the
// loaded flag and the last-error message.
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "file/sqlite_source.h"
#include "sparlane/testing.h"
#include "store/store.h"

namespace Sparlane {

namespace {

constexpr std::int64_t kMaxNameBytes = 255;
constexpr std::int64_t kMaxNameRows = 65535;  // ids are 16-bit
constexpr std::int64_t kMaxParameterRows = 10000000;

const char* const kParameterColumns[] = {
    "vendor_id",          "machine_model_id", "material_id",   "thickness_mm",
    "cut_speed_mm_min",   "cut_height_mm",    "pierce_height_mm",
    "transfer_height_mm", "arc_voltage_v",    "pierce_time_s", "kerf_width_mm",
    "current_amps",       "flags"};

ImportFailure Invalid(std::string message) {
  return ImportFailure{ErrorCode::InvalidData, "SQLite import: " + std::move(message)};
}

ImportFailure RowFailure(const std::string& table, std::int64_t row, const std::string& why) {
  return Invalid("table " + table + ", row " + std::to_string(row) + ": " + why);
}

// The table exists and has every column named.
ImportFailure RequireTable(const SqliteSource& source, const std::string& table,
                           const std::vector<std::string>& required) {
  bool exists = false;
  ImportFailure failure = source.HasTable(table, &exists);
  if (failure.failed()) return failure;
  if (!exists) return Invalid("missing table " + table);
  std::vector<std::string> columns;
  failure = source.ColumnsOf(table, &columns);
  if (failure.failed()) return failure;
  for (const std::string& column : required) {
    if (std::find(columns.begin(), columns.end(), column) == columns.end()) {
      return Invalid("table " + table + " has no column " + column);
    }
  }
  return ImportFailure{};
}

// The id and name of one name-table row, checked as AddMachine and
// AddMaterial check names, so that the list round-trips through a file.
ImportFailure ReadNameRow(sqlite3_stmt* stmt, const std::string& table, std::int64_t expected_id,
                          std::unordered_set<std::string>& seen, std::string* name) {
  if (expected_id > kMaxNameRows) return Invalid("table " + table + " has more than 65535 rows");
  std::int64_t id = 0;
  std::string why = ReadInteger(stmt, 0, "id", INT64_MIN, INT64_MAX, &id);
  if (!why.empty()) return RowFailure(table, expected_id, why);
  if (id != expected_id) {
    return Invalid("table " + table + ": ids must run 1, 2, 3, ... without gaps; found id " +
                   std::to_string(id) + " where " + std::to_string(expected_id) +
                   " was expected");
  }
  why = ReadText(stmt, 1, "name", name);
  if (!why.empty()) return RowFailure(table, id, why);
  if (name->empty()) return RowFailure(table, id, "name is empty");
  if (static_cast<std::int64_t>(name->size()) > kMaxNameBytes) {
    return RowFailure(table, id, "name exceeds maximum length");
  }
  if (!seen.insert(*name).second) return RowFailure(table, id, "duplicate name " + *name);
  return ImportFailure{};
}

// Rows in id order; the row with id k becomes the name with id k.
ImportFailure ReadNameTable(const SqliteSource& source, const std::string& table,
                            std::vector<std::string>* names) {
  ImportFailure failure = RequireTable(source, table, {"id", "name"});
  if (failure.failed()) return failure;
  SqliteStatement stmt;
  failure = source.Prepare("SELECT \"id\", \"name\" FROM " + QuoteIdentifier(table) +
                               " ORDER BY \"id\"",
                           &stmt);
  if (failure.failed()) return failure;
  std::unordered_set<std::string> seen;
  names->clear();
  for (;;) {
    const int rc = sqlite3_step(stmt.get());
    if (rc == SQLITE_DONE) return ImportFailure{};
    if (rc != SQLITE_ROW) return source.FailureFor(rc);
    std::string name;
    failure = ReadNameRow(stmt.get(), table, static_cast<std::int64_t>(names->size()) + 1, seen,
                          &name);
    if (failure.failed()) return failure;
    names->push_back(std::move(name));
  }
}

// Columns 1.. of the parameter query into a record; "" or the reason.
std::string ReadRecord(sqlite3_stmt* stmt, CuttingParameter* p) {
  std::int64_t ids[3] = {0, 0, 0};
  for (int i = 0; i < 3; ++i) {
    std::string why = ReadInteger(stmt, 1 + i, kParameterColumns[i], 0, 65535, &ids[i]);
    if (!why.empty()) return why;
  }
  p->vendor_id = static_cast<std::uint16_t>(ids[0]);
  p->machine_model_id = static_cast<std::uint16_t>(ids[1]);
  p->material_id = static_cast<std::uint16_t>(ids[2]);

  float* const floats[] = {&p->thickness_mm,       &p->cut_speed_mm_min, &p->cut_height_mm,
                           &p->pierce_height_mm,   &p->transfer_height_mm,
                           &p->arc_voltage_v,      &p->pierce_time_s,    &p->kerf_width_mm};
  for (int i = 0; i < 8; ++i) {
    std::string why = ReadFloat(stmt, 4 + i, kParameterColumns[3 + i], floats[i]);
    if (!why.empty()) return why;
  }

  std::int64_t current = 0;
  std::int64_t flags = 0;
  std::string why = ReadInteger(stmt, 12, "current_amps", 0, 65535, &current);
  if (why.empty()) why = ReadInteger(stmt, 13, "flags", 0, 0xFFFFFFFFll, &flags);
  if (!why.empty()) return why;
  p->current_amps = static_cast<std::uint16_t>(current);
  p->flags = static_cast<std::uint32_t>(flags);
  return "";
}

std::string ParameterQuery() {
  std::string sql = "SELECT rowid";
  for (const char* column : kParameterColumns) sql += ", " + QuoteIdentifier(column);
  return sql + " FROM \"parameters\" ORDER BY rowid";
}

// Every row in rowid order, each passing the store's record check against
// the staged name tables; rows are named by their rowid.
ImportFailure ReadParameters(const SqliteSource& source, const NameTableSizes& names,
                             std::vector<CuttingParameter>& records) {
  ImportFailure failure = RequireTable(
      source, "parameters",
      std::vector<std::string>(std::begin(kParameterColumns), std::end(kParameterColumns)));
  if (failure.failed()) return failure;
  SqliteStatement probe;
  failure = source.Prepare("SELECT rowid FROM \"parameters\" LIMIT 0", &probe);
  if (failure.code == ErrorCode::InvalidData) {
    return Invalid("table parameters has no rowid (WITHOUT ROWID tables are not supported)");
  }
  if (failure.failed()) return failure;
  SqliteStatement stmt;
  failure = source.Prepare(ParameterQuery(), &stmt);
  if (failure.failed()) return failure;
  records.clear();
  for (;;) {
    const int rc = sqlite3_step(stmt.get());
    if (rc == SQLITE_DONE) return ImportFailure{};
    if (rc != SQLITE_ROW) return source.FailureFor(rc);
    const std::int64_t row = sqlite3_column_int64(stmt.get(), 0);
    if (static_cast<std::int64_t>(records.size()) >= kMaxParameterRows) {
      return Invalid("table parameters has more than 10000000 rows");
    }
    CuttingParameter p{};
    const std::string why = ReadRecord(stmt.get(), &p);
    if (!why.empty()) return RowFailure("parameters", row, why);
    if (const RecordRule* broken = FirstBrokenRule(RecordCheck::kStore, p, names)) {
      return RowFailure("parameters", row, broken->failure);
    }
    records.push_back(p);
  }
}

struct StagedImport {
  std::vector<std::string> vendors;
  std::vector<std::string> machines;
  std::vector<std::string> materials;
  std::vector<CuttingParameter> records;
};

ImportFailure ReadStore(const std::string& path, StagedImport& staged) {
  SqliteSource source;
  ImportFailure failure = source.Open(path);
  if (!failure.failed()) failure = ReadNameTable(source, "vendors", &staged.vendors);
  if (!failure.failed()) failure = ReadNameTable(source, "machines", &staged.machines);
  if (!failure.failed()) failure = ReadNameTable(source, "materials", &staged.materials);
  const NameTableSizes names{staged.vendors.size(), staged.machines.size(),
                             staged.materials.size()};
  if (!failure.failed()) failure = ReadParameters(source, names, staged.records);
  return failure;
}

}  // namespace

ErrorCode Database::ImportFromSQLite(const std::string& path) {
  Close();
  const std::string clean = Testing::SanitizePath(path);
  StagedImport staged;
  const ImportFailure failure = ReadStore(clean, staged);
  if (failure.failed()) return impl_->Fail(failure.code, failure.message);

  Create();  // fresh header and empty tables, as for a new database
  Store& s = *impl_;
  FileHeader header = s.header();
  header.parameter_count = static_cast<std::uint32_t>(staged.records.size());
  header.vendor_count = static_cast<std::uint32_t>(staged.vendors.size());
  header.machine_count = static_cast<std::uint32_t>(staged.machines.size());
  header.material_count = static_cast<std::uint32_t>(staged.materials.size());
  StoreParts parts;
  parts.header = header;
  parts.vendors = std::move(staged.vendors);
  parts.machines = std::move(staged.machines);
  parts.materials = std::move(staged.materials);
  parts.records = std::move(staged.records);
  s.Replace(std::move(parts));
  s.SortRecords();  // the order the indexes describe; rebuilds them
  return ErrorCode::Success;
}

}  // namespace Sparlane
