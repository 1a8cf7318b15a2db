// The body behind a Database: the header copy, the name tables, the record
// table and its indexes, the consumable sets, the file it was loaded from,
// the query counters, the logging switch and the last error.  Its state is
// private; this interface is what the other subsystems may do with it.
// Database::Impl is this class under the handle's own name.
#ifndef SPARLANE_STORE_STORE_H_
#define SPARLANE_STORE_STORE_H_

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "sparlane/calculators.h"
#include "sparlane/database.h"
#include "sparlane/file_header.h"
#include "sparlane/records.h"
#include "store/loaded_file.h"
#include "store/name_table.h"
#include "store/pair_index.h"
#include "store/query_metrics.h"
#include "store/record_indexes.h"
#include "store/record_rules.h"

namespace Sparlane {

enum class NameKind { kVendor, kMachine, kMaterial };

// The indexes of a record table, built alongside it (store/index_builder.h).
struct StoreIndexes {
  RecordIndexes records;
  PairIndex positions;
};

// What a load or an import puts into the store.  A part left empty keeps
// what the store held: a parse that fails part way hands over only the parts
// it had begun to fill, and those stay (as the load's contract says).
struct StoreParts {
  std::optional<FileHeader> header;
  std::optional<std::vector<std::string>> vendors;
  std::optional<std::vector<std::string>> machines;
  std::optional<std::vector<std::string>> materials;
  std::optional<std::vector<CuttingParameter>> records;
  // Built while the records were read; present only with the whole table.
  std::optional<StoreIndexes> indexes;
};

class Store {
 public:
  Store() = default;
  Store(const Store&) = delete;
  Store& operator=(const Store&) = delete;

  // --- lifecycle -----------------------------------------------------------

  // A new database: header replaced by fresh_header, every table and index
  // emptied, the consumable sets dropped, loaded.  The file object, the
  // counters, the logging switch and the last error stay.
  void Reset(const FileHeader& fresh_header);

  // Closes the file (the object stays, its bytes go) and clears the loaded
  // flag; everything else stays.
  void Close();

  bool loaded() const { return loaded_; }

  // --- loading -------------------------------------------------------------

  // Tears down and forgets the file object of an earlier load.
  void DropFile();

  // Puts each present part in place of the store's own; a name list brings
  // its map with it.  Indexes that came with the records are put in place
  // too; otherwise they are left to RebuildRecordIndexes.
  void Replace(StoreParts parts);

  // The end of a successful load: keeps the file (its bytes stay mapped
  // until Close) and marks the database loaded.
  void FinishLoad(std::unique_ptr<LoadedFile> file);

  // The file of the last load, or null; its view() is null once closed.
  const LoadedFile* file() const { return file_.get(); }

  // --- last error ----------------------------------------------------------

  // Replaces the last-error message and returns code.
  ErrorCode Fail(ErrorCode code, std::string message);
  // Replaces the message without a failure (the slow-load warning).
  void SetLastError(std::string message) { last_error_ = std::move(message); }
  const std::string& last_error() const { return last_error_; }

  // --- header --------------------------------------------------------------

  const FileHeader& header() const { return header_; }
  // The header's parameter_count follows the table (after a delete).
  void CountRecordsInHeader() {
    header_.parameter_count = static_cast<std::uint32_t>(records_.size());
  }

  // --- names ---------------------------------------------------------------

  const NameTable& names(NameKind kind) const;
  // The id a query resolves name to; 0 when unknown.
  std::uint16_t IdOf(NameKind kind, std::string_view name) const {
    return names(kind).IdOf(name);
  }
  // Appends name to its list and map; returns its id.
  std::uint16_t AddName(NameKind kind, const std::string& name);
  NameTableSizes name_table_sizes() const {
    return NameTableSizes{vendors_.names.size(), machines_.names.size(),
                          materials_.names.size()};
  }

  // --- records -------------------------------------------------------------

  const std::vector<CuttingParameter>& records() const { return records_; }

  // Appends one record.  The position index follows; the record indexes
  // deliberately do not, so appending stays linear.
  void Append(const CuttingParameter& record);
  // Overwrites or removes the record at pos (< records().size()), then
  // rebuilds the indexes.
  void Overwrite(std::size_t pos, const CuttingParameter& record);
  void Erase(std::size_t pos);
  // Stable sort into the order the indexes describe, then a rebuild.
  void SortRecords();

  // --- indexes -------------------------------------------------------------

  // The material and machine indexes and the position index, from the table
  // as it is, in one pass.
  void RebuildRecordIndexes();
  const RecordIndexes& record_indexes() const { return indexes_; }
  // The position index when it describes the table as it is, else null
  // (the queries then scan).
  const PairIndex* current_pair_index() const {
    return PairIndexCovers(pair_index_, records_.size()) ? &pair_index_ : nullptr;
  }

  // --- consumable sets -----------------------------------------------------

  const ConsumableSet* FindConsumableSet(std::uint16_t set_id) const;
  std::size_t consumable_set_count() const { return consumable_sets_.size(); }

  // --- query counters and log ----------------------------------------------

  // Counting a query does not change the database: the counters are atomic
  // and count through a const reference.
  const QueryMetrics& metrics() const { return metrics_; }
  QueryMetrics& metrics() { return metrics_; }
  bool query_logging() const { return query_logging_; }
  void set_query_logging(bool enabled) { query_logging_ = enabled; }

 private:
  friend struct DatabaseAccess;  // the tests' one door in (tests/support)

  NameTable& table(NameKind kind);

  std::unique_ptr<LoadedFile> file_;
  FileHeader header_{};
  bool loaded_ = false;

  NameTable vendors_;
  NameTable machines_;
  NameTable materials_;

  std::unordered_map<std::uint16_t, ConsumableSet> consumable_sets_;

  std::vector<CuttingParameter> records_;
  RecordIndexes indexes_;
  PairIndex pair_index_;  // positions per material and pair

  QueryMetrics metrics_;
  std::string last_error_;
  bool query_logging_ = false;
};

struct Database::Impl : Store {};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_STORE_H_
