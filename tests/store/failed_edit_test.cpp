// A failed edit changes the last-error message and nothing else: tables,
// name indexes, record indexes and every header byte stay as they were.
#include <functional>
#include <limits>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

struct FailingEdit {
  const char* what;
  std::function<ErrorCode(Database&)> run;
  ErrorCode code;
  std::string message;
};

CuttingParameter WithThickness(float t) {
  CuttingParameter p = ValidRecord();
  p.thickness_mm = t;
  return p;
}

std::vector<FailingEdit> FailingEdits() {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  return {
      {"add NaN", [=](Database& db) { return db.AddParameter(WithThickness(nan)); },
       ErrorCode::InvalidParameter, "Parameter contains invalid float value (NaN or Inf)"},
      {"add zero thickness", [](Database& db) { return db.AddParameter(WithThickness(0.0f)); },
       ErrorCode::InvalidParameter, "Material thickness must be positive"},
      {"add bad vendor", [](Database& db) { return db.AddParameter(ValidRecord(1.0f, 9, 1, 1)); },
       ErrorCode::InvalidParameter, "Invalid vendor ID"},
      {"add bad machine",
       [](Database& db) { return db.AddParameter(ValidRecord(1.0f, 1, 9, 1)); },
       ErrorCode::InvalidParameter, "Invalid machine model ID"},
      {"add bad material",
       [](Database& db) { return db.AddParameter(ValidRecord(1.0f, 1, 1, 9)); },
       ErrorCode::InvalidParameter, "Invalid material ID"},
      {"update out of range", [](Database& db) { return db.UpdateParameter(4, ValidRecord()); },
       ErrorCode::InvalidParameter, "Parameter ID out of range: 4"},
      {"update invalid record",
       [](Database& db) { return db.UpdateParameter(1, ValidRecord(1.0f, 1, 1, 0)); },
       ErrorCode::InvalidParameter, "Invalid material ID"},
      {"delete out of range", [](Database& db) { return db.DeleteParameter(4); },
       ErrorCode::InvalidParameter, "Parameter ID out of range: 4"},
      {"machine empty", [](Database& db) { return db.AddMachine("V1", "", ""); },
       ErrorCode::InvalidParameter, "Vendor and model names cannot be empty"},
      {"machine too long",
       [](Database& db) { return db.AddMachine("New", std::string(256, 'x'), ""); },
       ErrorCode::InvalidParameter, "Name exceeds maximum length"},
      {"machine exists", [](Database& db) { return db.AddMachine("New vendor", "M2", ""); },
       ErrorCode::AlreadyExists, "Machine model already exists: M2"},
      {"material empty", [](Database& db) { return db.AddMaterial(""); },
       ErrorCode::InvalidParameter, "Material name cannot be empty"},
      {"material too long", [](Database& db) { return db.AddMaterial(std::string(256, 'x')); },
       ErrorCode::InvalidParameter, "Material name exceeds maximum length"},
      {"material exists", [](Database& db) { return db.AddMaterial("Mat2"); },
       ErrorCode::AlreadyExists, "Material already exists: Mat2"},
  };
}

// Two machines, two materials, four records, indexes rebuilt, then one more
// appended record so the indexes are deliberately stale.
void Prepare(Database& db) {
  MakeCatalogue(db, 2, 2);
  ASSERT_EQ(db.AddParameter(ValidRecord(1.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(3.0f, 2, 2, 2)), ErrorCode::Success);
  ASSERT_EQ(db.DeleteParameter(2), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(3.0f, 2, 2, 2)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(0.5f, 2, 2, 1)), ErrorCode::Success);
  DatabaseAccess::Header(db).stats_compressed_size = 1234;  // arbitrary header bytes
}

TEST(FailedEdit, ChangesOnlyTheMessage) {
  for (const FailingEdit& edit : FailingEdits()) {
    SCOPED_TRACE(edit.what);
    Database db;
    Prepare(db);
    DatabaseAccess::SetLastError(db, "earlier message");
    const StoreSnapshot before = StoreSnapshot::Of(db);
    EXPECT_EQ(edit.run(db), edit.code);
    EXPECT_EQ(db.GetLastError(), edit.message);
    EXPECT_TRUE(StoreSnapshot::Of(db) == before);
  }
}

TEST(FailedEdit, NotLoadedChangesOnlyTheMessage) {
  for (const FailingEdit& edit : FailingEdits()) {
    SCOPED_TRACE(edit.what);
    Database db;
    Prepare(db);
    db.Close();
    const StoreSnapshot before = StoreSnapshot::Of(db);
    EXPECT_EQ(edit.run(db), ErrorCode::NotLoaded);
    EXPECT_EQ(db.GetLastError(), "Database not loaded");
    EXPECT_TRUE(StoreSnapshot::Of(db) == before);
  }
}

TEST(FailedEdit, SnapshotNoticesEveryKindOfChange) {
  // Guards the guard: a snapshot that missed changes would make the tests
  // above pass vacuously.
  using Access = Sparlane::DatabaseAccess;
  const std::vector<std::function<void(Database&)>> changes = {
      [](Database& db) { reinterpret_cast<std::uint8_t*>(&Access::Header(db))[1000] ^= 1; },
      [](Database& db) { Access::SetLoaded(db, false); },
      [](Database& db) { Access::NameList(db, NameKind::kVendor).push_back("x"); },
      [](Database& db) { Access::NameList(db, NameKind::kMachine)[0] += "x"; },
      [](Database& db) { Access::NameList(db, NameKind::kMaterial).pop_back(); },
      [](Database& db) { Access::SetNameId(db, NameKind::kVendor, "x", 1); },
      [](Database& db) { Access::SetNameId(db, NameKind::kMachine, "M1", 2); },
      [](Database& db) { Access::EraseNameId(db, NameKind::kMaterial, "Mat1"); },
      [](Database& db) { Access::Records(db)[3].reserved_52[0] ^= 1; },
      [](Database& db) {
        Sparlane::ThicknessBucket b = Access::Body(db).record_indexes().MaterialBuckets(1)->at(0);
        ++b.count;
        Access::SetMaterialBuckets(db, 1, {b});
      },
      [](Database& db) {
        const Sparlane::MachineSpan* s = Access::Body(db).record_indexes().MachineSpanOf(2);
        const Sparlane::MachineSpan span = s != nullptr ? *s : Sparlane::MachineSpan{0, 0};
        Access::SetMachineSpan(db, 2, {span.first + 1, span.count});
      },
      [](Database& db) { Access::PutConsumableSet(db, 1, Sparlane::ConsumableSet{}); },
  };
  for (std::size_t i = 0; i < changes.size(); ++i) {
    Database db;
    Prepare(db);
    const StoreSnapshot before = StoreSnapshot::Of(db);
    ASSERT_TRUE(StoreSnapshot::Of(db) == before);
    changes[i](db);
    EXPECT_FALSE(StoreSnapshot::Of(db) == before) << "change " << i;
  }
}

}  // namespace
}  // namespace sparlane_test
