// The body behind Database: everything the handle owns.
#ifndef SPARLANE_STORE_DATABASE_IMPL_H_
#define SPARLANE_STORE_DATABASE_IMPL_H_

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "file/mapped_file.h"
#include "query/pair_index.h"
#include "query/query_metrics.h"
#include "sparlane/sparlane.h"

namespace Sparlane {

// One run of a material's records, thinnest first.
struct ThicknessBucket {
  float min_thickness;
  float max_thickness;
  std::uint64_t first;
  std::uint64_t count;
};

// The run of table positions a machine model's records are taken to occupy.
struct MachineSpan {
  std::uint64_t first;
  std::uint64_t count;
};

using NameIndex = std::unordered_map<std::string, std::uint16_t>;

// The body's contents.  Internal code works on DatabaseImpl; Database::Impl
// (private to the handle) is this type under the handle's own name.
struct DatabaseImpl {
  std::unique_ptr<MappedFile> mapped_file;
  FileHeader header{};
  bool loaded = false;

  // Name tables: element i has id i + 1.
  std::vector<std::string> vendors;
  std::vector<std::string> machines;
  std::vector<std::string> materials;

  NameIndex vendor_ids;
  NameIndex machine_ids;
  NameIndex material_ids;

  std::unordered_map<std::uint16_t, ConsumableSet> consumable_sets;

  std::vector<CuttingParameter> parameters;

  std::unordered_map<std::uint16_t, std::vector<ThicknessBucket>> material_ranges;
  std::unordered_map<std::uint16_t, MachineSpan> machine_records;

  QueryMetrics metrics;
  PairIndex pair_index;  // positions per material and pair; kept by the store

  std::string last_error;
  bool query_logging = false;

  // Replaces the last-error message and returns code.
  ErrorCode Fail(ErrorCode code, std::string message) {
    last_error = std::move(message);
    return code;
  }
};

struct Database::Impl : DatabaseImpl {};

// Internal and test-only access to a Database's body.
struct DatabaseAccess {
  static DatabaseImpl& Body(Database& db) { return *db.impl_; }
  static const DatabaseImpl& Body(const Database& db) { return *db.impl_; }
  // False for a moved-from handle, whose body went to the new owner.
  static bool HasBody(const Database& db) { return db.impl_ != nullptr; }
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_DATABASE_IMPL_H_
