// The one door from the tests, benchmarks and fuzz seeds into a Database's
// body.  Everything else goes through the public interface; this header is
// for what no public call can show or make: index contents, the loaded file
// object, and states that only a hostile file or a broken invariant would
// leave (unchecked records, stale name maps, index spans past the table).
//
// It is the only test-side file that includes a store header, so a change of
// the store's layout touches this file and the few tests that use it.
#ifndef SPARLANE_TESTS_SUPPORT_STORE_SEAM_H_
#define SPARLANE_TESTS_SUPPORT_STORE_SEAM_H_

#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "sparlane/sparlane.h"
#include "store/store.h"

namespace Sparlane {

// The record indexes as ordered maps, so whole indexes compare with ==.
struct BucketView {
  float min_thickness;
  float max_thickness;
  std::uint64_t first;
  std::uint64_t count;
};

inline bool operator==(const BucketView& a, const BucketView& b) {
  // Compare float bits so NaN and -0.0 are told apart exactly.
  return std::memcmp(&a.min_thickness, &b.min_thickness, sizeof(float)) == 0 &&
         std::memcmp(&a.max_thickness, &b.max_thickness, sizeof(float)) == 0 &&
         a.first == b.first && a.count == b.count;
}

inline std::ostream& operator<<(std::ostream& os, const BucketView& b) {
  return os << "{min " << b.min_thickness << ", max " << b.max_thickness << ", first " << b.first
            << ", count " << b.count << "}";
}

using MaterialIndexView = std::map<std::uint16_t, std::vector<BucketView>>;
using MachineIndexView = std::map<std::uint16_t, std::pair<std::uint64_t, std::uint64_t>>;
using NameIdsView = std::map<std::string, std::uint16_t>;

struct DatabaseAccess {
  // --- the body ------------------------------------------------------------

  // False for a moved-from handle, whose body went to the new owner.
  static bool HasBody(const Database& db) { return db.impl_ != nullptr; }
  static const void* BodyAddress(const Database& db) { return db.impl_; }
  // The store as the library's subsystems see it, read-only.
  static const Store& Body(const Database& db) { return *db.impl_; }

  // --- what no public call shows ---------------------------------------------

  static MaterialIndexView MaterialIndex(const Database& db) {
    MaterialIndexView view;
    db.impl_->indexes_.material_ranges.ForEach(
        [&](std::uint16_t id, const std::vector<ThicknessBucket>& list) {
          std::vector<BucketView>& out = view[id];
          for (const ThicknessBucket& b : list) {
            out.push_back({b.min_thickness, b.max_thickness, b.first, b.count});
          }
        });
    return view;
  }

  static MachineIndexView MachineIndex(const Database& db) {
    MachineIndexView view;
    db.impl_->indexes_.machine_records.ForEach(
        [&](std::uint16_t id, const MachineSpan& span) { view[id] = {span.first, span.count}; });
    return view;
  }

  // Every entry of a name map, stale ones included.
  static NameIdsView NameIds(const Database& db, NameKind kind) {
    NameIdsView view;
    db.impl_->names(kind).ids.ForEach(
        [&](std::string_view name, std::uint16_t id) { view[std::string(name)] = id; });
    return view;
  }

  // The file object of the last load, or null.
  static const LoadedFile* File(const Database& db) { return db.impl_->file(); }

  static bool QueryLogging(const Database& db) { return db.impl_->query_logging(); }
  static QueryMetrics& Metrics(Database& db) { return db.impl_->metrics(); }

  // --- states no public call makes -----------------------------------------

  // The header in memory, to change as a stale or edited one would be.
  static FileHeader& Header(Database& db) { return db.impl_->header_; }

  // The record table as it stands: changes bypass the record check and leave
  // every index as it was (call RebuildIndexes for what a load does).
  static std::vector<CuttingParameter>& Records(Database& db) { return db.impl_->records_; }
  static void RebuildIndexes(Database& db) { db.impl_->RebuildRecordIndexes(); }
  // Appended as AddParameter appends (the position index follows, the record
  // indexes do not), without the record check.
  static void Append(Database& db, const CuttingParameter& record) { db.impl_->Append(record); }
  // The table replaced and indexed, as a load of those records would leave it.
  static void LoadRecords(Database& db, std::vector<CuttingParameter> records) {
    db.impl_->records_ = std::move(records);
    db.impl_->RebuildRecordIndexes();
  }

  // A name list replaced, its map rebuilt from it.
  static void SetNames(Database& db, NameKind kind, std::vector<std::string> names) {
    db.impl_->table(kind).Assign(std::move(names));
  }
  // The list alone, its map left as it is.
  static std::vector<std::string>& NameList(Database& db, NameKind kind) {
    return db.impl_->table(kind).names;
  }
  // A name map entry set or removed, whatever the list says.
  static void SetNameId(Database& db, NameKind kind, const std::string& name,
                        std::uint16_t id) {
    db.impl_->table(kind).ids.Set(name, id);
  }
  static void EraseNameId(Database& db, NameKind kind, const std::string& name) {
    db.impl_->table(kind).ids.Erase(name);
  }

  // Index entries set by hand, as no rebuild would leave them.
  static void SetMaterialBuckets(Database& db, std::uint16_t material_id,
                                 std::vector<ThicknessBucket> buckets) {
    db.impl_->indexes_.SetBuckets(material_id, std::move(buckets));
  }
  static void SetMachineSpan(Database& db, std::uint16_t machine_id, MachineSpan span) {
    db.impl_->indexes_.machine_records.Set(machine_id, span);
  }

  // Nothing in the library fills the consumable sets.
  static void PutConsumableSet(Database& db, std::uint16_t set_id, const ConsumableSet& set) {
    db.impl_->consumable_sets_[set_id] = set;
  }

  static void SetLastError(Database& db, std::string message) {
    db.impl_->SetLastError(std::move(message));
  }
  static void SetLoaded(Database& db, bool loaded) { db.impl_->loaded_ = loaded; }
  // A file object put in place as a load would keep it.
  static void AttachFile(Database& db, std::unique_ptr<LoadedFile> file) {
    db.impl_->file_ = std::move(file);
  }
};

}  // namespace Sparlane

#endif  // SPARLANE_TESTS_SUPPORT_STORE_SEAM_H_
