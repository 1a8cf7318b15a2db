// Construction, Create, Close, moves and the last-error message.
#include <ctime>
#include <type_traits>
#include <utility>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

TEST(ErrorCodes, KeepTheirNumbersAndLeaveNineFree) {
  static_assert(std::is_same<std::underlying_type<ErrorCode>::type, std::int32_t>::value,
                "32-bit codes");
  EXPECT_EQ(static_cast<int>(ErrorCode::Success), 0);
  EXPECT_EQ(static_cast<int>(ErrorCode::FileNotFound), 1);
  EXPECT_EQ(static_cast<int>(ErrorCode::InvalidMagic), 2);
  EXPECT_EQ(static_cast<int>(ErrorCode::UnsupportedVersion), 3);
  EXPECT_EQ(static_cast<int>(ErrorCode::CorruptedFile), 4);
  EXPECT_EQ(static_cast<int>(ErrorCode::InvalidData), 5);
  EXPECT_EQ(static_cast<int>(ErrorCode::DecompressionFailed), 6);
  EXPECT_EQ(static_cast<int>(ErrorCode::OutOfMemory), 7);
  EXPECT_EQ(static_cast<int>(ErrorCode::InvalidParameter), 8);
  EXPECT_EQ(static_cast<int>(ErrorCode::BufferTooSmall), 10);
  EXPECT_EQ(static_cast<int>(ErrorCode::ChecksumMismatch), 11);
  EXPECT_EQ(static_cast<int>(ErrorCode::IoError), 12);
  EXPECT_EQ(static_cast<int>(ErrorCode::AccessDenied), 13);
  EXPECT_EQ(static_cast<int>(ErrorCode::AlreadyExists), 14);
  EXPECT_EQ(static_cast<int>(ErrorCode::NotLoaded), 15);
  EXPECT_EQ(static_cast<int>(ErrorCode::CompressionFailed), 16);
}

TEST(Lifecycle, NewDatabaseIsNotLoadedAndEmpty) {
  Database db;
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.GetLastError(), "");
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
  EXPECT_TRUE(db.GetMaterials().empty());

  const DatabaseImpl& d = DatabaseAccess::Body(db);
  EXPECT_EQ(d.mapped_file, nullptr);
  const Sparlane::FileHeader zero{};
  EXPECT_EQ(std::memcmp(&d.header, &zero, sizeof zero), 0);
  EXPECT_TRUE(d.parameters.empty());
  EXPECT_TRUE(d.vendor_ids.empty() && d.machine_ids.empty() && d.material_ids.empty());
  EXPECT_TRUE(d.material_ranges.empty() && d.machine_records.empty());
  EXPECT_TRUE(d.consumable_sets.empty());
  EXPECT_FALSE(d.query_logging);
  EXPECT_EQ(d.metrics.query_count.load(), 0u);
  EXPECT_EQ(d.metrics.found_count.load(), 0u);
  EXPECT_EQ(d.metrics.not_found_count.load(), 0u);
  EXPECT_EQ(d.metrics.total_time_us.load(), 0.0);
  EXPECT_EQ(d.metrics.max_time_us.load(), 0.0);
  EXPECT_EQ(d.metrics.min_time_us.load(), 1.0e9);
}

TEST(Lifecycle, IsLoadedFollowsCreateAndClose) {
  Database db;
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_TRUE(db.IsLoaded());
  db.Close();
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_TRUE(db.IsLoaded());
}

TEST(Lifecycle, CreateWritesAFreshHeaderAndNothingElse) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  std::memset(&d.header, 0xAB, sizeof d.header);  // leftovers of an earlier load
  const std::int64_t before = static_cast<std::int64_t>(std::time(nullptr));
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  const std::int64_t after = static_cast<std::int64_t>(std::time(nullptr));

  EXPECT_EQ(d.header.magic, 0x4E4C5053u);
  EXPECT_EQ(std::memcmp(&d.header.magic, "SPLN", 4), 0);
  EXPECT_EQ(d.header.version_major, 1);
  EXPECT_EQ(d.header.version_minor, 0);
  EXPECT_GE(d.header.created_time, before);
  EXPECT_LE(d.header.created_time, after);

  // Every byte after created_time is zero: counts and offsets wait for a save.
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&d.header);
  for (std::size_t i = 16; i < sizeof d.header; ++i) {
    ASSERT_EQ(bytes[i], 0) << "header byte " << i;
  }
  EXPECT_EQ(d.mapped_file, nullptr);
}

TEST(Lifecycle, CreateClearsEverythingAnEarlierDatabaseHeld) {
  Database db;
  MakeCatalogue(db, 2, 2);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(db.UpdateParameter(0, ValidRecord(3.0f)), ErrorCode::Success);
  DatabaseImpl& d = DatabaseAccess::Body(db);
  d.consumable_sets[7] = Sparlane::ConsumableSet{};
  ASSERT_FALSE(d.material_ranges.empty());

  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
  EXPECT_TRUE(db.GetMaterials().empty());
  EXPECT_TRUE(d.parameters.empty());
  EXPECT_TRUE(d.consumable_sets.empty());
  EXPECT_TRUE(d.vendor_ids.empty() && d.machine_ids.empty() && d.material_ids.empty());
  EXPECT_TRUE(d.material_ranges.empty());
  EXPECT_TRUE(d.machine_records.empty());
  EXPECT_EQ(db.GetStatistics().parameter_count, 0u);
}

TEST(Lifecycle, CreateKeepsLastErrorCountersAndLogging) {
  Database db;
  EXPECT_EQ(db.AddMaterial("x"), ErrorCode::NotLoaded);
  DatabaseImpl& d = DatabaseAccess::Body(db);
  d.query_logging = true;
  d.metrics.query_count = 5;
  d.metrics.min_time_us = 2.0;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_TRUE(d.query_logging);
  EXPECT_EQ(d.metrics.query_count.load(), 5u);
  EXPECT_EQ(d.metrics.min_time_us.load(), 2.0);
}

TEST(Lifecycle, CloseOnNeverLoadedObjectIsHarmlessTwice) {
  Database db;
  db.Close();
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(DatabaseAccess::Body(db).mapped_file, nullptr);
  db.Close();
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(db.GetLastError(), "");
}

TEST(Lifecycle, CloseKeepsNamesRecordsIndexesAndHeader) {
  Database db;
  MakeCatalogue(db, 2, 3);
  ASSERT_EQ(db.AddParameter(ValidRecord(4.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db.AddParameter(ValidRecord(8.0f, 2, 2, 3)), ErrorCode::Success);
  ASSERT_EQ(db.DeleteParameter(5), ErrorCode::InvalidParameter);
  ASSERT_EQ(db.UpdateParameter(0, ValidRecord(4.0f, 1, 1, 1)), ErrorCode::Success);
  StoreSnapshot before = StoreSnapshot::Of(db);

  db.Close();
  StoreSnapshot after = StoreSnapshot::Of(db);
  EXPECT_FALSE(after.loaded);
  after.loaded = true;
  EXPECT_TRUE(after == before) << "Close changed something but the loaded flag";
  EXPECT_EQ(db.GetMaterials(), (std::vector<std::string>{"Mat1", "Mat2", "Mat3"}));
  EXPECT_EQ(db.GetLastError(), "Parameter ID out of range: 5");
}

TEST(Lifecycle, ClosedDatabaseRefusesEditsWithNotLoaded) {
  Database db;
  MakeCatalogue(db, 1, 1);
  ASSERT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  db.Close();
  EXPECT_EQ(db.GetLastError(), "Material name cannot be empty");
  EXPECT_EQ(db.AddParameter(ValidRecord()), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_TRUE(DatabaseAccess::Body(db).parameters.empty());
}

TEST(Lifecycle, FailureMessageSurvivesLaterSuccess) {
  Database db;
  MakeCatalogue(db, 1, 1);
  ASSERT_EQ(db.AddMaterial("Mat1"), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.AddMaterial("Mat2"), ErrorCode::Success);
  EXPECT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  EXPECT_EQ(db.Create(), ErrorCode::Success);
  db.Close();
  EXPECT_EQ(db.GetLastError(), "Material already exists: Mat1");
}

TEST(Lifecycle, EachFailureReplacesTheWholeMessage) {
  Database db;
  MakeCatalogue(db, 1, 1);
  ASSERT_EQ(db.AddMaterial(std::string(300, 'x')), ErrorCode::InvalidParameter);
  ASSERT_EQ(db.AddMaterial("Mat1"), ErrorCode::AlreadyExists);
  EXPECT_EQ(db.GetLastError(), "Material already exists: Mat1");
}

TEST(Lifecycle, MoveConstructionTransfersTheBody) {
  Database source;
  MakeCatalogue(source, 1, 2);
  ASSERT_EQ(source.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(source.AddMaterial("Mat1"), ErrorCode::AlreadyExists);
  const DatabaseImpl* body = &DatabaseAccess::Body(source);

  Database target(std::move(source));
  EXPECT_FALSE(DatabaseAccess::HasBody(source));  // NOLINT(bugprone-use-after-move)
  ASSERT_TRUE(DatabaseAccess::HasBody(target));
  EXPECT_EQ(&DatabaseAccess::Body(target), body);
  EXPECT_TRUE(target.IsLoaded());
  EXPECT_EQ(target.GetMaterials(), (std::vector<std::string>{"Mat1", "Mat2"}));
  EXPECT_EQ(target.GetStatistics().parameter_count, 1u);
  EXPECT_EQ(target.GetLastError(), "Material already exists: Mat1");
}

TEST(Lifecycle, MoveAssignmentTransfersTheBodyAndDropsTheOldOne) {
  Database source;
  MakeCatalogue(source, 2, 1);
  Database target;
  MakeCatalogue(target, 1, 3);
  const DatabaseImpl* body = &DatabaseAccess::Body(source);

  target = std::move(source);
  EXPECT_FALSE(DatabaseAccess::HasBody(source));  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(&DatabaseAccess::Body(target), body);
  EXPECT_EQ(target.GetMachines(), (std::vector<std::string>{"M1", "M2"}));
  EXPECT_EQ(target.GetMaterials(), (std::vector<std::string>{"Mat1"}));
}

TEST(Lifecycle, MovedFromHandleCanBeAssignedAgain) {
  Database a;
  MakeCatalogue(a, 1, 1);
  Database b(std::move(a));
  a = Database();  // NOLINT(bugprone-use-after-move)
  ASSERT_TRUE(DatabaseAccess::HasBody(a));
  EXPECT_FALSE(a.IsLoaded());
  EXPECT_TRUE(a.GetMaterials().empty());
  EXPECT_EQ(a.Create(), ErrorCode::Success);
  EXPECT_TRUE(b.IsLoaded());
}

TEST(Lifecycle, HandleIsOnePointerMovableAndNotCopyable) {
  static_assert(sizeof(Database) == sizeof(void*), "the handle holds one pointer");
  static_assert(!std::is_copy_constructible<Database>::value, "not copyable");
  static_assert(!std::is_copy_assignable<Database>::value, "not copyable");
  static_assert(std::is_nothrow_move_constructible<Database>::value, "movable");
  static_assert(std::is_nothrow_move_assignable<Database>::value, "movable");
  SUCCEED();
}

}  // namespace
}  // namespace sparlane_test
