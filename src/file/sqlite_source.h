// A read-only SQLite database opened for import, and typed reads of its
// columns that never trust the stored type.  Only built with SQLite support.
#ifndef SPARLANE_FILE_SQLITE_SOURCE_H_
#define SPARLANE_FILE_SQLITE_SOURCE_H_

#include <cstdint>
#include <string>
#include <vector>

#include "sparlane/records.h"

struct sqlite3;
struct sqlite3_stmt;

namespace Sparlane {

// Why an import step failed: the code to return and the whole message.
struct ImportFailure {
  ErrorCode code = ErrorCode::Success;
  std::string message;

  bool failed() const { return code != ErrorCode::Success; }
};

// One prepared statement; finalized on destruction.
class SqliteStatement {
 public:
  SqliteStatement() = default;
  ~SqliteStatement();
  SqliteStatement(const SqliteStatement&) = delete;
  SqliteStatement& operator=(const SqliteStatement&) = delete;

  sqlite3_stmt* get() const { return stmt_; }
  sqlite3_stmt** out() { return &stmt_; }

 private:
  sqlite3_stmt* stmt_ = nullptr;
};

// The source file.  Opening never creates a file: it is read-only, and a
// path that does not exist is refused before SQLite sees it.
class SqliteSource {
 public:
  SqliteSource() = default;
  ~SqliteSource();
  SqliteSource(const SqliteSource&) = delete;
  SqliteSource& operator=(const SqliteSource&) = delete;

  // FileNotFound, AccessDenied, OutOfMemory or IoError, each with
  // "Failed to open file: " + path.
  ImportFailure Open(const std::string& path);

  // True when a table (not a view) of this name exists, compared as SQLite
  // compares identifiers.  A file that is not a database fails here.
  ImportFailure HasTable(const std::string& table, bool* exists) const;

  // The column names of table, lower-cased.
  ImportFailure ColumnsOf(const std::string& table, std::vector<std::string>* columns) const;

  // Prepares sql; failure maps SQLite's code.
  ImportFailure Prepare(const std::string& sql, SqliteStatement* stmt) const;

  // The failure for an SQLite result code other than success, row or done.
  ImportFailure FailureFor(int rc) const;

 private:
  sqlite3* db_ = nullptr;
};

// "name" quoted as an SQL identifier.
std::string QuoteIdentifier(const std::string& name);

// Column reads.  Each returns an empty string on success and otherwise a
// short reason naming the column ("NULL in column flags").
std::string ReadInteger(sqlite3_stmt* stmt, int col, const char* name, std::int64_t lo,
                        std::int64_t hi, std::int64_t* out);
std::string ReadFloat(sqlite3_stmt* stmt, int col, const char* name, float* out);
std::string ReadText(sqlite3_stmt* stmt, int col, const char* name, std::string* out);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_SQLITE_SOURCE_H_
