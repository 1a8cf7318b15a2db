// The per-material thickness index and the per-machine span index, and when
// each event of the store rebuilds them.
#include "store/indexes.h"
#include "store_test_util.h"

namespace sparlane_test {
namespace {

using Sparlane::RebuildMachineIndex;
using Sparlane::RebuildMaterialIndex;
using Sparlane::RebuildRecordIndexes;

// A body whose table holds records with these (material, machine, thickness)
// triples at positions 0, 1, 2, ...; names are not needed by the rebuild.
struct Row {
  std::uint16_t material;
  std::uint16_t machine;
  float thickness;
};

void FillTable(DatabaseImpl& d, const std::vector<Row>& rows) {
  d.parameters.clear();
  for (const Row& r : rows) d.parameters.push_back(ValidRecord(r.thickness, 1, r.machine, r.material));
}

TEST(RecordIndexes, EmptyTableGivesEmptyIndexes) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  d.material_ranges[3] = {{1.0f, 2.0f, 0, 1}};
  d.machine_records[3] = {0, 1};
  RebuildRecordIndexes(d);
  EXPECT_TRUE(d.material_ranges.empty());
  EXPECT_TRUE(d.machine_records.empty());
}

TEST(RecordIndexes, MaterialBucketSpansThinnestToThickest) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  FillTable(d, {{1, 1, 1.0f}, {1, 1, 1.5f}, {2, 1, 4.0f}, {2, 1, 5.0f},
                {3, 1, 6.0f}, {3, 1, 2.0f}, {3, 1, 10.0f}});
  RebuildMaterialIndex(d);
  const MaterialIndexView view = MaterialIndexOf(d);
  ASSERT_EQ(view.count(3), 1u);
  EXPECT_EQ(view.at(3), (std::vector<BucketView>{{2.0f, 10.0f, 5, 3}}));
  EXPECT_EQ(view.at(1), (std::vector<BucketView>{{1.0f, 1.5f, 0, 2}}));
  EXPECT_EQ(view.at(2), (std::vector<BucketView>{{4.0f, 5.0f, 2, 2}}));
}

TEST(RecordIndexes, EqualThinnestRecordsGiveTheSmallerPosition) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  std::vector<Row> rows(8, Row{2, 1, 9.0f});
  rows[2] = {1, 1, 3.0f};
  rows[7] = {1, 1, 3.0f};
  FillTable(d, rows);
  RebuildMaterialIndex(d);
  EXPECT_EQ(MaterialIndexOf(d).at(1), (std::vector<BucketView>{{3.0f, 3.0f, 2, 2}}));
}

TEST(RecordIndexes, BucketCountsTheWholeTableNotTheRun) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  FillTable(d, {{1, 1, 5.0f}, {2, 1, 1.0f}, {1, 1, 4.0f}, {2, 1, 2.0f}, {1, 1, 6.0f}});
  RebuildMaterialIndex(d);
  EXPECT_EQ(MaterialIndexOf(d).at(1), (std::vector<BucketView>{{4.0f, 6.0f, 2, 3}}));
  EXPECT_EQ(MaterialIndexOf(d).at(2), (std::vector<BucketView>{{1.0f, 2.0f, 1, 2}}));
}

TEST(RecordIndexes, MachineSpanIsSmallestPositionAndCount) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  std::vector<Row> rows(10, Row{1, 1, 1.0f});
  rows[3].machine = 7;
  rows[9].machine = 7;
  rows[4].machine = 7;
  FillTable(d, rows);
  RebuildMachineIndex(d);
  const MachineIndexView view = MachineIndexOf(d);
  // Positions 3 to 5, whatever those hold.
  EXPECT_EQ(view.at(7), (std::pair<std::uint64_t, std::uint64_t>{3, 3}));
  EXPECT_EQ(view.at(1), (std::pair<std::uint64_t, std::uint64_t>{0, 7}));
  EXPECT_EQ(view.size(), 2u);
}

TEST(RecordIndexes, EntriesExistExactlyForIdsThatRecordsCarry) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  // Ids beyond the (empty) name tables and id 0 are indexed all the same.
  FillTable(d, {{0, 0, 1.0f}, {65535, 65535, 2.0f}, {40, 9, 3.0f}});
  RebuildRecordIndexes(d);
  const MaterialIndexView materials = MaterialIndexOf(d);
  const MachineIndexView machines = MachineIndexOf(d);
  EXPECT_EQ(materials.size(), 3u);
  EXPECT_EQ(materials.at(0), (std::vector<BucketView>{{1.0f, 1.0f, 0, 1}}));
  EXPECT_EQ(materials.at(65535), (std::vector<BucketView>{{2.0f, 2.0f, 1, 1}}));
  EXPECT_EQ(materials.at(40), (std::vector<BucketView>{{3.0f, 3.0f, 2, 1}}));
  EXPECT_EQ(machines.size(), 3u);
  EXPECT_EQ(machines.at(65535), (std::pair<std::uint64_t, std::uint64_t>{1, 1}));
}

TEST(RecordIndexes, RebuildReplacesStaleEntries) {
  Database db;
  DatabaseImpl& d = DatabaseAccess::Body(db);
  d.material_ranges[5] = {{1.0f, 2.0f, 0, 1}, {3.0f, 4.0f, 1, 1}};
  d.machine_records[5] = {9, 9};
  FillTable(d, {{5, 5, 7.0f}});
  RebuildRecordIndexes(d);
  EXPECT_EQ(MaterialIndexOf(d).at(5), (std::vector<BucketView>{{7.0f, 7.0f, 0, 1}}));
  EXPECT_EQ(MachineIndexOf(d).at(5), (std::pair<std::uint64_t, std::uint64_t>{0, 1}));
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

  DatabaseImpl& Body() { return DatabaseAccess::Body(db_); }

  // What a rebuild from the current table gives, computed on a copy.
  std::pair<MaterialIndexView, MachineIndexView> Fresh() {
    Database scratch;
    DatabaseImpl& s = DatabaseAccess::Body(scratch);
    s.parameters = Body().parameters;
    RebuildRecordIndexes(s);
    return {MaterialIndexOf(s), MachineIndexOf(s)};
  }

  void ExpectIndexesMatchTable() {
    const auto fresh = Fresh();
    EXPECT_EQ(MaterialIndexOf(Body()), fresh.first);
    EXPECT_EQ(MachineIndexOf(Body()), fresh.second);
  }

  Database db_;
};

TEST_F(RebuildEvents, UpdateRebuildsBothIndexes) {
  EXPECT_EQ(MaterialIndexOf(Body()),
            (MaterialIndexView{{1, {{2.0f, 4.0f, 0, 3}}}, {2, {{1.0f, 8.0f, 3, 2}}}}));
  EXPECT_EQ(MachineIndexOf(Body()),
            (MachineIndexView{{1, {0, 2}}, {2, {2, 2}}, {3, {4, 1}}}));
  // Moving record 4 to material 3, machine 1 changes both indexes.
  ASSERT_EQ(db_.UpdateParameter(4, ValidRecord(0.5f, 1, 1, 3)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()),
            (MaterialIndexView{
                {1, {{2.0f, 4.0f, 0, 3}}}, {2, {{1.0f, 1.0f, 3, 1}}}, {3, {{0.5f, 0.5f, 4, 1}}}}));
  EXPECT_EQ(MachineIndexOf(Body()), (MachineIndexView{{1, {0, 3}}, {2, {2, 2}}}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, AddParameterDoesNotRebuild) {
  const MaterialIndexView materials = MaterialIndexOf(Body());
  const MachineIndexView machines = MachineIndexOf(Body());
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.1f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(5.0f, 1, 3, 3)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()), materials);
  EXPECT_EQ(MachineIndexOf(Body()), machines);
  EXPECT_EQ(Body().material_ranges.count(3), 0u);
  // The next successful update brings the appended records in.
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()).at(1), (std::vector<BucketView>{{0.1f, 4.0f, 5, 4}}));
  EXPECT_EQ(MachineIndexOf(Body()).at(3), (std::pair<std::uint64_t, std::uint64_t>{4, 2}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, AppendedRecordOfAnIndexedMachineStaysOutsideItsSpan) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(6.0f, 1, 1, 1)), ErrorCode::Success);
  const auto span = MachineIndexOf(Body()).at(1);
  EXPECT_LT(span.first + span.second, Body().parameters.size());  // position 5 not covered
  ASSERT_EQ(db_.UpdateParameter(3, ValidRecord(1.0f, 1, 2, 2)), ErrorCode::Success);
  EXPECT_EQ(MachineIndexOf(Body()).at(1), (std::pair<std::uint64_t, std::uint64_t>{0, 3}));
}

TEST_F(RebuildEvents, DeleteRebuildsBothIndexes) {
  ASSERT_EQ(db_.DeleteParameter(0), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()),
            (MaterialIndexView{{1, {{3.0f, 4.0f, 1, 2}}}, {2, {{1.0f, 8.0f, 2, 2}}}}));
  EXPECT_EQ(MachineIndexOf(Body()), (MachineIndexView{{1, {0, 1}}, {2, {1, 2}}, {3, {3, 1}}}));
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, DeletingTheOnlyRecordOfAMaterialDropsItsEntry) {
  ASSERT_EQ(db_.UpdateParameter(4, ValidRecord(8.0f, 1, 3, 3)), ErrorCode::Success);
  ASSERT_EQ(MaterialIndexOf(Body()).count(3), 1u);
  ASSERT_EQ(db_.DeleteParameter(4), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()).count(3), 0u);
  EXPECT_EQ(MachineIndexOf(Body()).count(3), 0u);
  ExpectIndexesMatchTable();
}

TEST_F(RebuildEvents, NameAdditionsDoNotRebuild) {
  // Make the stored indexes stale on purpose so a rebuild would show.
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(Body());
  const MachineIndexView machines = MachineIndexOf(Body());
  ASSERT_EQ(db_.AddMachine("V1", "M9", ""), ErrorCode::Success);
  ASSERT_EQ(db_.AddMaterial("Mat9"), ErrorCode::Success);
  EXPECT_EQ(MaterialIndexOf(Body()), materials);
  EXPECT_EQ(MachineIndexOf(Body()), machines);
}

TEST_F(RebuildEvents, CloseLeavesTheIndexes) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(Body());
  const MachineIndexView machines = MachineIndexOf(Body());
  db_.Close();
  EXPECT_EQ(MaterialIndexOf(Body()), materials);
  EXPECT_EQ(MachineIndexOf(Body()), machines);
}

TEST_F(RebuildEvents, CreateClearsTheIndexes) {
  ASSERT_FALSE(Body().material_ranges.empty());
  ASSERT_EQ(db_.Create(), ErrorCode::Success);
  EXPECT_TRUE(Body().material_ranges.empty());
  EXPECT_TRUE(Body().machine_records.empty());
}

TEST_F(RebuildEvents, FailedUpdateOrDeleteDoesNotRebuild) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(0.2f, 1, 2, 2)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(Body());
  const MachineIndexView machines = MachineIndexOf(Body());
  EXPECT_EQ(db_.UpdateParameter(0, CuttingParameter{}), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.UpdateParameter(99, ValidRecord()), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.DeleteParameter(99), ErrorCode::InvalidParameter);
  EXPECT_EQ(MaterialIndexOf(Body()), materials);
  EXPECT_EQ(MachineIndexOf(Body()), machines);
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
  for (const auto& entry : Body().material_ranges) {
    ASSERT_EQ(entry.second.size(), 1u);
    const auto& b = entry.second.front();
    EXPECT_GE(b.count, 1u);
    EXPECT_LE(b.min_thickness, b.max_thickness);
    EXPECT_EQ(Body().parameters[b.first].thickness_mm, b.min_thickness);
    EXPECT_EQ(Body().parameters[b.first].material_id, entry.first);
  }
  for (const auto& entry : Body().machine_records) {
    EXPECT_GE(entry.second.count, 1u);
    EXPECT_EQ(Body().parameters[entry.second.first].machine_model_id, entry.first);
  }
  ExpectIndexesMatchTable();
}

}  // namespace
}  // namespace sparlane_test
