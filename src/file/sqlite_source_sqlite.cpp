// Read-only access to an SQLite file for the import.
#include <sqlite3.h>

#include <cerrno>
#include <cfloat>
#include <cmath>
#include <string>

#include "file/sqlite_source.h"

namespace Sparlane {

namespace {

ImportFailure OpenFailure(ErrorCode code, const std::string& path) {
  return ImportFailure{code, "Failed to open file: " + path};
}

ErrorCode CodeForOpenError(int rc, int system_errno) {
  if ((rc & 0xff) == SQLITE_NOMEM) return ErrorCode::OutOfMemory;
  if ((rc & 0xff) != SQLITE_CANTOPEN) return ErrorCode::IoError;
  switch (system_errno) {
    case ENOENT:
    case ENOTDIR:
      return ErrorCode::FileNotFound;
    case EACCES:
    case EPERM:
      return ErrorCode::AccessDenied;
    default:
      return ErrorCode::IoError;
  }
}

// SQLite reads ":memory:" and "file:..." as special names; "./" keeps them
// plain file names.
std::string PlainFileName(const std::string& path) {
  if (path[0] == ':' || path.compare(0, 5, "file:") == 0) return "./" + path;
  return path;
}

std::string LowerAscii(std::string s) {
  for (char& c : s) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return s;
}

// The first double past every int64; hi rounds up to it when near 2^63.
constexpr double kTwoTo63 = 9223372036854775808.0;

// The value as SQLite prints it, for messages.
std::string ValueText(sqlite3_stmt* stmt, int col) {
  const unsigned char* text = sqlite3_column_text(stmt, col);
  return text ? reinterpret_cast<const char*>(text) : "";
}

}  // namespace

SqliteStatement::~SqliteStatement() { sqlite3_finalize(stmt_); }

SqliteSource::~SqliteSource() { sqlite3_close(db_); }

ImportFailure SqliteSource::Open(const std::string& path) {
  // SQLite opens a private temporary database for an empty name.
  if (path.empty()) return OpenFailure(ErrorCode::FileNotFound, path);
  const int rc = sqlite3_open_v2(PlainFileName(path).c_str(), &db_, SQLITE_OPEN_READONLY, nullptr);
  if (rc != SQLITE_OK) {
    const int system_errno = db_ ? sqlite3_system_errno(db_) : 0;
    sqlite3_close(db_);
    db_ = nullptr;
    return OpenFailure(CodeForOpenError(rc, system_errno), path);
  }
  // A hostile file's schema must not run functions on our behalf.
  sqlite3_db_config(db_, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  sqlite3_db_config(db_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  return ImportFailure{};
}

ImportFailure SqliteSource::Prepare(const std::string& sql, SqliteStatement* stmt) const {
  const int rc = sqlite3_prepare_v2(db_, sql.c_str(), -1, stmt->out(), nullptr);
  return rc == SQLITE_OK ? ImportFailure{} : FailureFor(rc);
}

ImportFailure SqliteSource::FailureFor(int rc) const {
  ErrorCode code = ErrorCode::IoError;
  switch (rc & 0xff) {
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
      code = ErrorCode::CorruptedFile;
      break;
    case SQLITE_NOMEM:
      code = ErrorCode::OutOfMemory;
      break;
    case SQLITE_ERROR:
      code = ErrorCode::InvalidData;
      break;
    default:
      break;
  }
  return ImportFailure{code, std::string("SQLite import: ") + sqlite3_errmsg(db_)};
}

ImportFailure SqliteSource::HasTable(const std::string& table, bool* exists) const {
  SqliteStatement stmt;
  ImportFailure failure = Prepare(
      "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?1 COLLATE NOCASE", &stmt);
  if (failure.failed()) return failure;
  sqlite3_bind_text(stmt.get(), 1, table.data(), static_cast<int>(table.size()), SQLITE_STATIC);
  const int rc = sqlite3_step(stmt.get());
  if (rc != SQLITE_ROW && rc != SQLITE_DONE) return FailureFor(rc);
  *exists = rc == SQLITE_ROW;
  return ImportFailure{};
}

ImportFailure SqliteSource::ColumnsOf(const std::string& table,
                                      std::vector<std::string>* columns) const {
  SqliteStatement stmt;
  ImportFailure failure = Prepare("SELECT * FROM " + QuoteIdentifier(table) + " LIMIT 0", &stmt);
  if (failure.failed()) return failure;
  columns->clear();
  const int count = sqlite3_column_count(stmt.get());
  for (int i = 0; i < count; ++i) {
    const char* name = sqlite3_column_name(stmt.get(), i);
    columns->push_back(LowerAscii(name ? name : ""));
  }
  return ImportFailure{};
}

std::string QuoteIdentifier(const std::string& name) {
  std::string quoted = "\"";
  for (char c : name) {
    quoted += c;
    if (c == '"') quoted += '"';
  }
  return quoted + "\"";
}

std::string ReadInteger(sqlite3_stmt* stmt, int col, const char* name, std::int64_t lo,
                        std::int64_t hi, std::int64_t* out) {
  const std::string column = name;
  std::int64_t value = 0;
  switch (sqlite3_column_type(stmt, col)) {
    case SQLITE_NULL:
      return "NULL in column " + column;
    case SQLITE_INTEGER:
      value = sqlite3_column_int64(stmt, col);
      break;
    case SQLITE_FLOAT: {
      // A whole number stored as REAL is accepted; the range test comes
      // first so the conversion below is always defined.
      const double d = sqlite3_column_double(stmt, col);
      if (!(d == std::floor(d))) {
        return "column " + column + " is not a whole number: " + ValueText(stmt, col);
      }
      if (d < static_cast<double>(lo) || d > static_cast<double>(hi) || d >= kTwoTo63) {
        return "column " + column + " out of range: " + ValueText(stmt, col);
      }
      value = static_cast<std::int64_t>(d);
      break;
    }
    default:
      return "column " + column + " is not an integer";
  }
  if (value < lo || value > hi) {
    return "column " + column + " out of range: " + std::to_string(value);
  }
  *out = value;
  return "";
}

std::string ReadFloat(sqlite3_stmt* stmt, int col, const char* name, float* out) {
  const std::string column = name;
  switch (sqlite3_column_type(stmt, col)) {
    case SQLITE_NULL:
      return "NULL in column " + column;
    case SQLITE_INTEGER:
      *out = static_cast<float>(sqlite3_column_int64(stmt, col));
      return "";
    case SQLITE_FLOAT: {
      // Infinities pass through to the record check, which names them;
      // finite values beyond float range have no float to become.
      const double d = sqlite3_column_double(stmt, col);
      if (std::isfinite(d) && std::fabs(d) > static_cast<double>(FLT_MAX)) {
        return "column " + column + " out of range: " + ValueText(stmt, col);
      }
      *out = static_cast<float>(d);
      return "";
    }
    default:
      return "column " + column + " is not a number";
  }
}

std::string ReadText(sqlite3_stmt* stmt, int col, const char* name, std::string* out) {
  const std::string column = name;
  switch (sqlite3_column_type(stmt, col)) {
    case SQLITE_NULL:
      return "NULL in column " + column;
    case SQLITE_TEXT: {
      const unsigned char* text = sqlite3_column_text(stmt, col);
      const int bytes = sqlite3_column_bytes(stmt, col);
      out->assign(text ? reinterpret_cast<const char*>(text) : "",
                  text ? static_cast<std::size_t>(bytes) : 0);
      return "";
    }
    default:
      return "column " + column + " is not text";
  }
}

}  // namespace Sparlane
