// The per-material thickness index and the per-machine span index, and when
// each event of the store rebuilds them.
#include "store_test_util.h"

namespace sparlane_test {
namespace {


// A table of records with these (material, machine, thickness) triples at
// positions 0, 1, 2, ..., put in place without indexing; names are not
// needed by the rebuild.
struct Row {
  std::uint16_t material;
  std::uint16_t machine;
  float thickness;
};

void FillTable(Database& db, const std::vector<Row>& rows) {
  std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
  table.clear();
  for (const Row& r : rows) table.push_back(ValidRecord(r.thickness, 1, r.machine, r.material));
}

TEST(RecordIndexes, EmptyTableGivesEmptyIndexes) {
  Database db;
  DatabaseAccess::SetMaterialBuckets(db, 3, {{1.0f, 2.0f, 0, 1}});
  DatabaseAccess::SetMachineSpan(db, 3, {0, 1});
  DatabaseAccess::RebuildIndexes(db);
  EXPECT_TRUE(MaterialIndexOf(db).empty());
  EXPECT_TRUE(MachineIndexOf(db).empty());
}

TEST(RecordIndexes, MaterialBucketSpansThinnestToThickest) {
  Database db;
  FillTable(db, {{1, 1, 1.0f}, {1, 1, 1.5f}, {2, 1, 4.0f}, {2, 1, 5.0f},
                {3, 1, 6.0f}, {3, 1, 2.0f}, {3, 1, 10.0f}});
  DatabaseAccess::RebuildIndexes(db);
  const MaterialIndexView view = MaterialIndexOf(db);
  ASSERT_EQ(view.count(3), 1u);
  EXPECT_EQ(view.at(3), (std::vector<BucketView>{{2.0f, 10.0f, 5, 3}}));
  EXPECT_EQ(view.at(1), (std::vector<BucketView>{{1.0f, 1.5f, 0, 2}}));
  EXPECT_EQ(view.at(2), (std::vector<BucketView>{{4.0f, 5.0f, 2, 2}}));
}

TEST(RecordIndexes, EqualThinnestRecordsGiveTheSmallerPosition) {
  Database db;
  std::vector<Row> rows(8, Row{2, 1, 9.0f});
  rows[2] = {1, 1, 3.0f};
  rows[7] = {1, 1, 3.0f};
  FillTable(db, rows);
  DatabaseAccess::RebuildIndexes(db);
  EXPECT_EQ(MaterialIndexOf(db).at(1), (std::vector<BucketView>{{3.0f, 3.0f, 2, 2}}));
}

TEST(RecordIndexes, BucketCountsTheWholeTableNotTheRun) {
  Database db;
  FillTable(db, {{1, 1, 5.0f}, {2, 1, 1.0f}, {1, 1, 4.0f}, {2, 1, 2.0f}, {1, 1, 6.0f}});
  DatabaseAccess::RebuildIndexes(db);
  EXPECT_EQ(MaterialIndexOf(db).at(1), (std::vector<BucketView>{{4.0f, 6.0f, 2, 3}}));
  EXPECT_EQ(MaterialIndexOf(db).at(2), (std::vector<BucketView>{{1.0f, 2.0f, 1, 2}}));
}

TEST(RecordIndexes, MachineSpanIsSmallestPositionAndCount) {
  Database db;
  std::vector<Row> rows(10, Row{1, 1, 1.0f});
  rows[3].machine = 7;
  rows[9].machine = 7;
  rows[4].machine = 7;
  FillTable(db, rows);
  DatabaseAccess::RebuildIndexes(db);
  const MachineIndexView view = MachineIndexOf(db);
  // Positions 3 to 5, whatever those hold.
  EXPECT_EQ(view.at(7), (std::pair<std::uint64_t, std::uint64_t>{3, 3}));
  EXPECT_EQ(view.at(1), (std::pair<std::uint64_t, std::uint64_t>{0, 7}));
  EXPECT_EQ(view.size(), 2u);
}

TEST(RecordIndexes, EntriesExistExactlyForIdsThatRecordsCarry) {
  Database db;
  // Ids beyond the (empty) name tables and id 0 are indexed all the same.
  FillTable(db, {{0, 0, 1.0f}, {65535, 65535, 2.0f}, {40, 9, 3.0f}});
  DatabaseAccess::RebuildIndexes(db);
  const MaterialIndexView materials = MaterialIndexOf(db);
  const MachineIndexView machines = MachineIndexOf(db);
  EXPECT_EQ(materials.size(), 3u);
  EXPECT_EQ(materials.at(0), (std::vector<BucketView>{{1.0f, 1.0f, 0, 1}}));
  EXPECT_EQ(materials.at(65535), (std::vector<BucketView>{{2.0f, 2.0f, 1, 1}}));
  EXPECT_EQ(materials.at(40), (std::vector<BucketView>{{3.0f, 3.0f, 2, 1}}));
  EXPECT_EQ(machines.size(), 3u);
  EXPECT_EQ(machines.at(65535), (std::pair<std::uint64_t, std::uint64_t>{1, 1}));
}

TEST(RecordIndexes, RebuildReplacesStaleEntries) {
  Database db;
  DatabaseAccess::SetMaterialBuckets(db, 5, {{1.0f, 2.0f, 0, 1}, {3.0f, 4.0f, 1, 1}});
  DatabaseAccess::SetMachineSpan(db, 5, {9, 9});
  FillTable(db, {{5, 5, 7.0f}});
  DatabaseAccess::RebuildIndexes(db);
  EXPECT_EQ(MaterialIndexOf(db).at(5), (std::vector<BucketView>{{7.0f, 7.0f, 0, 1}}));
  EXPECT_EQ(MachineIndexOf(db).at(5), (std::pair<std::uint64_t, std::uint64_t>{0, 1}));
}

// --- when the store rebuilds ------------------------------------------------

class RebuildEvents : public ::testing::Test {
 protected:
  void SetUp() override {
    MakeCatalogue(db_, 3, 3);
    // Sorted by material, machine, thickness; the rebuild below indexes it.
    for (const Row& r : std::vector<Row>{{1, 1, 2.0f}, {1, 1, 4.0f}, {1, 2, 3.0f},
                                         {2, 2, 1.0f}, {2, 3, 8.0f}}) {
      ASSERT_EQ(db_.AddParameter(ValidRecord(r.thickness, 1, r.machine, r.material)),
                ErrorCode::Success);
    }
    ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  }

  // What a rebuild from the current table gives, computed on a copy.
  std::pair<MaterialIndexView, MachineIndexView> Fresh() {
    Database scratch;
    DatabaseAccess::LoadRecords(scratch, db_.GetParameters());
    return {MaterialIndexOf(scratch), MachineIndexOf(scratch)};
  }

  void ExpectIndexesMatchTable() {
    const auto fresh = Fresh();
    EXPECT_EQ(MaterialIndexOf(db_), fresh.first);
    EXPECT_EQ(MachineIndexOf(db_), fresh.second);
  }

  Database db_;
};

TEST_F(RebuildEvents, UpdateRebuildsBothIndexes) {
  EXPECT_EQ(MaterialIndexOf(db_),
            (MaterialIndexView{{1, {{2.0f, 4.0f, 0, 3}}}, {2, {{1.0f, 8.0f, 3, 2}}}}));
  EXPECT_EQ(MachineIndexOf(db_),
            (MachineIndexView{{1, {0, 2}}, {2, {2, 2}}, {3, {4, 1}}}));
  // Moving record 4 to material 3, machine 1 changes both indexes.
  ASSERT_EQ(db_.UpdateParameter(4, ValidRecord(0.5f, 1, 1, 3)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_),
            (MaterialIndexView{
                {1, {{2.0f, 4.0f, 0, 3}}}, {2, {{1.0f, 1.0f, 3, 1}}}, {3, {{0.5f, 0.5f, 4, 1}}}}));
  EXPECT_EQ(MachineIndexOf(db_), (MachineIndexView{{1, {0, 3}}, {2, {2, 2}}}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, AddParameterDoesNotRebuild) {
  const MaterialIndexView materials = MaterialIndexOf(db_);
  const MachineIndexView machines = MachineIndexOf(db_);
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.1f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(5.0f, 1, 3, 3)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_), materials);
  EXPECT_EQ(MachineIndexOf(db_), machines);
  EXPECT_EQ(MaterialIndexOf(db_).count(3), 0u);
  // The next successful update brings the appended records in.
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_).at(1), (std::vector<BucketView>{{0.1f, 4.0f, 5, 4}}));
  EXPECT_EQ(MachineIndexOf(db_).at(3), (std::pair<std::uint64_t, std::uint64_t>{4, 2}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, AppendedRecordOfAnIndexedMachineStaysOutsideItsSpan) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(6.0f, 1, 1, 1)), ErrorCode::Success);
  const auto span = MachineIndexOf(db_).at(1);
  EXPECT_LT(span.first + span.second, db_.GetParameters().size());  // position 5 not covered
  ASSERT_EQ(db_.UpdateParameter(3, ValidRecord(1.0f, 1, 2, 2)), ErrorCode::Success);
  EXPECT_EQ(MachineIndexOf(db_).at(1), (std::pair<std::uint64_t, std::uint64_t>{0, 3}));
}

TEST_F(RebuildEvents, DeleteRebuildsBothIndexes) {
  ASSERT_EQ(db_.DeleteParameter(0), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_),
            (MaterialIndexView{{1, {{3.0f, 4.0f, 1, 2}}}, {2, {{1.0f, 8.0f, 2, 2}}}}));
  EXPECT_EQ(MachineIndexOf(db_), (MachineIndexView{{1, {0, 1}}, {2, {1, 2}}, {3, {3, 1}}}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, DeletingTheOnlyRecordOfAMaterialDropsItsEntry) {
  ASSERT_EQ(db_.UpdateParameter(4, ValidRecord(8.0f, 1, 3, 3)), ErrorCode::Success);
  ASSERT_EQ(MaterialIndexOf(db_).count(3), 1u);
  ASSERT_EQ(db_.DeleteParameter(4), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_).count(3), 0u);
  EXPECT_EQ(MachineIndexOf(db_).count(3), 0u);
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, NameAdditionsDoNotRebuild) {
  // Make the stored indexes stale on purpose so a rebuild would show.
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(db_);
  const MachineIndexView machines = MachineIndexOf(db_);
  ASSERT_EQ(db_.AddMachine("V1", "M9", ""), ErrorCode::Success);
  ASSERT_EQ(db_.AddMaterial("Mat9"), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(db_), materials);
  EXPECT_EQ(MachineIndexOf(db_), machines);
}

TEST_F(RebuildEvents, CloseLeavesTheIndexes) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(db_);
  const MachineIndexView machines = MachineIndexOf(db_);
  db_.Close();
  EXPECT_EQ(MaterialIndexOf(db_), materials);
  EXPECT_EQ(MachineIndexOf(db_), machines);
}

TEST_F(RebuildEvents, CreateClearsTheIndexes) {
  ASSERT_FALSE(MaterialIndexOf(db_).empty());
  ASSERT_EQ(db_.Create(), ErrorCode::Success);
  EXPECT_TRUE(MaterialIndexOf(db_).empty());
  EXPECT_TRUE(MachineIndexOf(db_).empty());
}

TEST_F(RebuildEvents, FailedUpdateOrDeleteDoesNotRebuild) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(db_);
  const MachineIndexView machines = MachineIndexOf(db_);
  EXPECT_EQ(db_.UpdateParameter(0, CuttingParameter{}), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.UpdateParameter(99, ValidRecord()), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.DeleteParameter(99), ErrorCode::InvalidParameter);
  EXPECT_EQ(MaterialIndexOf(db_), materials);
  EXPECT_EQ(MachineIndexOf(db_), machines);
}

TEST_F(RebuildEvents, EveryBucketListHoldsOneValidBucket) {
  for (int i = 0; i < 40; ++i) {
    const auto material = static_cast<std::uint16_t>(1 + i % 3);
    const auto machine = static_cast<std::uint16_t>(1 + (i * 7) % 3);
    ASSERT_EQ(db_.AddParameter(ValidRecord(static_cast<float>((i * 13) % 17 + 1), 1, machine,
                                           material)),
              ErrorCode::Success);
  }
  ASSERT_EQ(db_.DeleteParameter(7), ErrorCode::Success);
  const std::vector<CuttingParameter> table = db_.GetParameters();
  for (const auto& entry : MaterialIndexOf(db_)) {
    ASSERT_EQ(entry.second.size(), 1u);
    const auto& b = entry.second.front();
    EXPECT_GE(b.count, 1u);
    EXPECT_LE(b.min_thickness, b.max_thickness);
    EXPECT_EQ(table[b.first].thickness_mm, b.min_thickness);
    EXPECT_EQ(table[b.first].material_id, entry.first);
  }
  for (const auto& entry : MachineIndexOf(db_)) {
    EXPECT_GE(entry.second.second, 1u);
    EXPECT_EQ(table[entry.second.first].machine_model_id, entry.first);
  }
  ExpectIndexesMatchTable();
}

}  // namespace
}  // namespace sparlane_test
