// Construction, Create, Close, moves and the last-error message.
#include <chrono>
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

  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
  const Sparlane::FileHeader zero{};
  const Sparlane::FileHeader header = db.GetFileHeader();
  EXPECT_EQ(std::memcmp(&header, &zero, sizeof zero), 0);
  EXPECT_TRUE(db.GetParameters().empty());
  EXPECT_TRUE(DatabaseAccess::NameIds(db, NameKind::kVendor).empty() &&
              DatabaseAccess::NameIds(db, NameKind::kMachine).empty() &&
              DatabaseAccess::NameIds(db, NameKind::kMaterial).empty());
  EXPECT_TRUE(MaterialIndexOf(db).empty() && MachineIndexOf(db).empty());
  EXPECT_EQ(DatabaseAccess::Body(db).consumable_set_count(), 0u);
  EXPECT_FALSE(DatabaseAccess::QueryLogging(db));
  const Sparlane::QueryMetrics& metrics = DatabaseAccess::Body(db).metrics();
  EXPECT_EQ(metrics.query_count.load(), 0u);
  EXPECT_EQ(metrics.found_count.load(), 0u);
  EXPECT_EQ(metrics.not_found_count.load(), 0u);
  EXPECT_EQ(metrics.total_time_us.load(), 0.0);
  EXPECT_EQ(metrics.max_time_us.load(), 0.0);
  EXPECT_EQ(metrics.min_time_us.load(), 1.0e9);
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
  Sparlane::FileHeader& stale = DatabaseAccess::Header(db);
  std::memset(&stale, 0xAB, sizeof stale);  // leftovers of an earlier load
  // The fine system clock, as Create reads it: time() may lag it by a tick
  // and so fall a second behind just after a second begins.
  const auto seconds_now = [] {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
  };
  const std::int64_t before = seconds_now();
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  const std::int64_t after = seconds_now();

  const Sparlane::FileHeader header = db.GetFileHeader();
  EXPECT_EQ(header.magic, 0x4E4C5053u);
  EXPECT_EQ(std::memcmp(&header.magic, "SPLN", 4), 0);
  EXPECT_EQ(header.version_major, 1);
  EXPECT_EQ(header.version_minor, 0);
  EXPECT_GE(header.created_time, before);
  EXPECT_LE(header.created_time, after);

  // Every byte after created_time is zero: counts and offsets wait for a save.
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(&header);
  for (std::size_t i = 16; i < sizeof header; ++i) {
    ASSERT_EQ(bytes[i], 0) << "header byte " << i;
  }
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
}

TEST(Lifecycle, CreateClearsEverythingAnEarlierDatabaseHeld) {
  Database db;
  MakeCatalogue(db, 2, 2);
  ASSERT_EQ(db.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(db.UpdateParameter(0, ValidRecord(3.0f)), ErrorCode::Success);
  DatabaseAccess::PutConsumableSet(db, 7, Sparlane::ConsumableSet{});
  ASSERT_FALSE(MaterialIndexOf(db).empty());

  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_TRUE(db.GetVendors().empty());
  EXPECT_TRUE(db.GetMachines().empty());
  EXPECT_TRUE(db.GetMaterials().empty());
  EXPECT_TRUE(db.GetParameters().empty());
  EXPECT_EQ(DatabaseAccess::Body(db).consumable_set_count(), 0u);
  EXPECT_TRUE(DatabaseAccess::NameIds(db, NameKind::kVendor).empty() &&
              DatabaseAccess::NameIds(db, NameKind::kMachine).empty() &&
              DatabaseAccess::NameIds(db, NameKind::kMaterial).empty());
  EXPECT_TRUE(MaterialIndexOf(db).empty());
  EXPECT_TRUE(MachineIndexOf(db).empty());
  EXPECT_EQ(db.GetStatistics().parameter_count, 0u);
}

TEST(Lifecycle, CreateKeepsLastErrorCountersAndLogging) {
  Database db;
  EXPECT_EQ(db.AddMaterial("x"), ErrorCode::NotLoaded);
  db.SetQueryLogging(true);
  Sparlane::QueryMetrics& metrics = DatabaseAccess::Metrics(db);
  metrics.query_count = 5;
  metrics.min_time_us = 2.0;
  ASSERT_EQ(db.Create(), ErrorCode::Success);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
  EXPECT_TRUE(DatabaseAccess::QueryLogging(db));
  EXPECT_EQ(metrics.query_count.load(), 5u);
  EXPECT_EQ(metrics.min_time_us.load(), 2.0);
}

TEST(Lifecycle, CloseOnNeverLoadedObjectIsHarmlessTwice) {
  Database db;
  db.Close();
  EXPECT_FALSE(db.IsLoaded());
  EXPECT_EQ(DatabaseAccess::File(db), nullptr);
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
  EXPECT_TRUE(db.GetParameters().empty());
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
  const void* body = DatabaseAccess::BodyAddress(source);

  Database target(std::move(source));
  EXPECT_FALSE(DatabaseAccess::HasBody(source));  // NOLINT(bugprone-use-after-move)
  ASSERT_TRUE(DatabaseAccess::HasBody(target));
  EXPECT_EQ(DatabaseAccess::BodyAddress(target), body);
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
  const void* body = DatabaseAccess::BodyAddress(source);

  target = std::move(source);
  EXPECT_FALSE(DatabaseAccess::HasBody(source));  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(DatabaseAccess::BodyAddress(target), body);
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
