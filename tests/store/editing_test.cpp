// AddParameter, UpdateParameter, DeleteParameter and the record check.
#include <cmath>
#include <limits>

#include "store_test_util.h"

namespace sparlane_test {
namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

class Editing : public ::testing::Test {
 protected:
  void SetUp() override { MakeCatalogue(db_, 3, 4); }

  // Adds a record and expects the given failure.
  void ExpectRefused(const CuttingParameter& p, const std::string& message) {
    const std::size_t before = Records().size();
    EXPECT_EQ(db_.AddParameter(p), ErrorCode::InvalidParameter);
    EXPECT_EQ(db_.GetLastError(), message);
    EXPECT_EQ(Records().size(), before);
  }

  std::vector<CuttingParameter> Records() const { return db_.GetParameters(); }

  Database db_;
};

// The eight float fields in record order.
float* FloatField(CuttingParameter& p, int i) {
  float* fields[] = {&p.thickness_mm,       &p.cut_speed_mm_min, &p.cut_height_mm,
                     &p.pierce_height_mm,   &p.transfer_height_mm, &p.arc_voltage_v,
                     &p.pierce_time_s,      &p.kerf_width_mm};
  return fields[i];
}

TEST_F(Editing, AddAppendsACopyAtTheEnd) {
  CuttingParameter a = ValidRecord(3.0f, 1, 1, 1);
  CuttingParameter b = ValidRecord(5.0f, 2, 3, 4);
  ASSERT_EQ(db_.AddParameter(a), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(b), ErrorCode::Success);
  a.thickness_mm = 99.0f;  // the table holds its own copy
  ASSERT_EQ(Records().size(), 2u);
  EXPECT_EQ(Records()[0].thickness_mm, 3.0f);
  EXPECT_TRUE(SameBytes(Records()[1], b));
  EXPECT_EQ(db_.GetLastError(), "");
}

TEST_F(Editing, OpaqueFieldsSurviveAddAndUpdateUnchanged) {
  CuttingParameter p = ValidRecord();
  p.aux_id = 0xBEEF;
  for (int i = 0; i < 6; ++i) p.reserved_42[i] = static_cast<std::uint8_t>(0xA0 + i);
  for (int i = 0; i < 12; ++i) p.reserved_52[i] = static_cast<std::uint8_t>(0x50 + i);
  p.flags = 0xFFFFFF4Fu;  // unknown bits and none of the library's own
  ASSERT_EQ(db_.AddParameter(p), ErrorCode::Success);
  EXPECT_TRUE(SameBytes(Records()[0], p));
  p.flags = 0xF0u;
  p.aux_id = 1;
  ASSERT_EQ(db_.UpdateParameter(0, p), ErrorCode::Success);
  EXPECT_TRUE(SameBytes(Records()[0], p));
}

TEST_F(Editing, ExactDuplicateRecordsAreAccepted) {
  ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(Records().size(), 2u);
  EXPECT_TRUE(SameBytes(Records()[0], Records()[1]));
}

TEST_F(Editing, AddLeavesHeaderCountAndRecordIndexesAlone) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(2.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f)), ErrorCode::Success);
  const MaterialIndexView materials = MaterialIndexOf(db_);
  const MachineIndexView machines = MachineIndexOf(db_);
  const std::uint32_t header_count = db_.GetFileHeader().parameter_count;

  ASSERT_EQ(db_.AddParameter(ValidRecord(1.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(4.0f, 1, 2, 2)), ErrorCode::Success);
  EXPECT_EQ(db_.GetFileHeader().parameter_count, header_count);
  EXPECT_EQ(MaterialIndexOf(db_), materials);
  EXPECT_EQ(MachineIndexOf(db_), machines);
  EXPECT_EQ(db_.GetStatistics().parameter_count, 3u);
}

TEST_F(Editing, NegativeAndZeroSecondaryFieldsAreAccepted) {
  CuttingParameter p = ValidRecord();
  p.cut_height_mm = -1.0f;
  EXPECT_EQ(db_.AddParameter(p), ErrorCode::Success);
  p.pierce_height_mm = 0.0f;
  p.transfer_height_mm = -3.0f;
  p.arc_voltage_v = -120.0f;
  p.pierce_time_s = 0.0f;
  p.kerf_width_mm = -0.5f;
  EXPECT_EQ(db_.AddParameter(p), ErrorCode::Success);
  EXPECT_EQ(Records().size(), 2u);
}

TEST_F(Editing, EveryNonFiniteFloatFieldIsRefused) {
  for (int field = 0; field < 8; ++field) {
    for (float bad : {kNaN, kInf, -kInf}) {
      CuttingParameter p = ValidRecord();
      *FloatField(p, field) = bad;
      SCOPED_TRACE("field " + std::to_string(field) + " value " + std::to_string(bad));
      ExpectRefused(p, "Parameter contains invalid float value (NaN or Inf)");
    }
  }
}

TEST_F(Editing, NaNThicknessFailsTheFloatTestBeforeThePositiveTest) {
  CuttingParameter p = ValidRecord();
  p.thickness_mm = kNaN;
  ExpectRefused(p, "Parameter contains invalid float value (NaN or Inf)");
}

TEST_F(Editing, InfiniteKerfAloneIsRefusedAsInvalidFloat) {
  CuttingParameter p = ValidRecord();
  p.kerf_width_mm = kInf;
  ExpectRefused(p, "Parameter contains invalid float value (NaN or Inf)");
}

TEST_F(Editing, FloatTestComesBeforeEveryOtherTest) {
  CuttingParameter p{};  // zero thickness, speed, current and ids
  p.pierce_time_s = kNaN;
  ExpectRefused(p, "Parameter contains invalid float value (NaN or Inf)");
}

TEST_F(Editing, ZeroOrNegativeThicknessIsRefused) {
  CuttingParameter p = ValidRecord();
  p.thickness_mm = 0.0f;
  ExpectRefused(p, "Material thickness must be positive");
  p.thickness_mm = -0.0f;
  ExpectRefused(p, "Material thickness must be positive");
  p.thickness_mm = -2.0f;
  ExpectRefused(p, "Material thickness must be positive");
  p.thickness_mm = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(db_.AddParameter(p), ErrorCode::Success);
}

TEST_F(Editing, ZeroOrNegativeSpeedIsRefused) {
  CuttingParameter p = ValidRecord();
  p.cut_speed_mm_min = 0.0f;
  p.current_amps = 0;  // speed is tested first
  ExpectRefused(p, "Cut speed must be positive");
  p.current_amps = 65;
  p.cut_speed_mm_min = -100.0f;
  ExpectRefused(p, "Cut speed must be positive");
}

TEST_F(Editing, ThicknessIsTestedBeforeSpeed) {
  CuttingParameter p = ValidRecord();
  p.thickness_mm = 0.0f;
  p.cut_speed_mm_min = 0.0f;
  ExpectRefused(p, "Material thickness must be positive");
}

TEST_F(Editing, ZeroCurrentIsRefusedBeforeIds) {
  CuttingParameter p = ValidRecord();
  p.current_amps = 0;
  p.vendor_id = 0;
  ExpectRefused(p, "Process current must be non-zero");
}

TEST_F(Editing, AllZeroRecordIsRefused) {
  ExpectRefused(CuttingParameter{}, "Material thickness must be positive");
  // With valid settings, zero ids are refused at the first id test.
  CuttingParameter p = ValidRecord(6.0f, 0, 0, 0);
  ExpectRefused(p, "Invalid vendor ID");
}

TEST_F(Editing, VendorIdUpToTheVendorCountIsAccepted) {
  EXPECT_EQ(db_.AddParameter(ValidRecord(6.0f, 3, 1, 1)), ErrorCode::Success);
  ExpectRefused(ValidRecord(6.0f, 4, 1, 1), "Invalid vendor ID");
  ExpectRefused(ValidRecord(6.0f, 0, 1, 1), "Invalid vendor ID");
  ExpectRefused(ValidRecord(6.0f, 0xFFFF, 1, 1), "Invalid vendor ID");
}

TEST_F(Editing, MachineIdUpToTheMachineCountIsAccepted) {
  EXPECT_EQ(db_.AddParameter(ValidRecord(6.0f, 1, 3, 1)), ErrorCode::Success);
  ExpectRefused(ValidRecord(6.0f, 1, 4, 1), "Invalid machine model ID");
  ExpectRefused(ValidRecord(6.0f, 1, 0, 1), "Invalid machine model ID");
  // Vendor before machine.
  ExpectRefused(ValidRecord(6.0f, 4, 4, 1), "Invalid vendor ID");
}

TEST_F(Editing, MaterialIdUpToTheMaterialCountIsAccepted) {
  EXPECT_EQ(db_.AddParameter(ValidRecord(6.0f, 1, 1, 4)), ErrorCode::Success);
  ExpectRefused(ValidRecord(6.0f, 1, 1, 5), "Invalid material ID");
  ExpectRefused(ValidRecord(6.0f, 1, 1, 0), "Invalid material ID");
  // Machine before material.
  ExpectRefused(ValidRecord(6.0f, 1, 0, 0), "Invalid machine model ID");
}

TEST_F(Editing, MachineNeedNotBelongToTheVendor) {
  // M1 was added with V1, yet vendor 2 with machine 1 passes: the store
  // keeps no link between a model and its vendor.
  EXPECT_EQ(db_.AddParameter(ValidRecord(6.0f, 2, 1, 1)), ErrorCode::Success);
}

TEST_F(Editing, IdsAreCheckedAgainstTheCurrentTableSizes) {
  ExpectRefused(ValidRecord(6.0f, 1, 1, 5), "Invalid material ID");
  ASSERT_EQ(db_.AddMaterial("Mat5"), ErrorCode::Success);
  EXPECT_EQ(db_.AddParameter(ValidRecord(6.0f, 1, 1, 5)), ErrorCode::Success);
}

TEST_F(Editing, EditsNeedALoadedDatabase) {
  ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  db_.Close();
  EXPECT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::NotLoaded);
  EXPECT_EQ(db_.GetLastError(), "Database not loaded");
  // The loaded flag is tested before the id range and the record.
  EXPECT_EQ(db_.UpdateParameter(99, CuttingParameter{}), ErrorCode::NotLoaded);
  EXPECT_EQ(db_.GetLastError(), "Database not loaded");
  ASSERT_EQ(db_.AddMaterial(""), ErrorCode::NotLoaded);
  EXPECT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f)), ErrorCode::NotLoaded);
  EXPECT_EQ(db_.DeleteParameter(0), ErrorCode::NotLoaded);
  EXPECT_EQ(db_.GetLastError(), "Database not loaded");
  ASSERT_EQ(Records().size(), 1u);
  EXPECT_TRUE(SameBytes(Records()[0], ValidRecord()));
}

TEST_F(Editing, AppendedRecordIsOutsideAnIndexedMachineUntilTheNextRebuild) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(4.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.FindByMachine("", "M1").size(), 2u);

  ASSERT_EQ(db_.AddParameter(ValidRecord(8.0f, 1, 1, 3)), ErrorCode::Success);
  std::vector<CuttingParameter> found = db_.FindByMachine("", "M1");
  ASSERT_EQ(found.size(), 2u);
  for (const auto& p : found) EXPECT_NE(p.thickness_mm, 8.0f);

  ASSERT_EQ(db_.UpdateParameter(1, ValidRecord(4.0f, 1, 1, 1)), ErrorCode::Success);
  found = db_.FindByMachine("", "M1");
  ASSERT_EQ(found.size(), 3u);
  EXPECT_EQ(found.back().thickness_mm, 8.0f);
}

TEST_F(Editing, AppendedRecordOfAnUnindexedMachineIsFoundByTheScan) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord(2.0f, 1, 1, 1)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(5.0f, 3, 3, 1)), ErrorCode::Success);
  ASSERT_EQ(MachineIndexOf(db_).count(3), 0u);
  const std::vector<CuttingParameter> found = db_.FindByMachine("", "M3");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0].thickness_mm, 5.0f);
}

TEST_F(Editing, UpdateOverwritesAllSixtyFourBytes) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(2.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(4.0f)), ErrorCode::Success);
  CuttingParameter p = ValidRecord(9.0f, 2, 2, 2);
  p.aux_id = 7;
  p.reserved_52[11] = 0xEE;
  ASSERT_EQ(db_.UpdateParameter(1, p), ErrorCode::Success);
  EXPECT_TRUE(SameBytes(Records()[1], p));
  EXPECT_EQ(Records()[0].thickness_mm, 2.0f);
  EXPECT_EQ(db_.GetLastError(), "");
}

TEST_F(Editing, UpdateOutOfRangeNamesTheIdInDecimal) {
  for (int i = 0; i < 12; ++i) ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  EXPECT_EQ(db_.UpdateParameter(12, ValidRecord()), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 12");
  EXPECT_EQ(db_.UpdateParameter(4294967295u, ValidRecord()), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 4294967295");
  EXPECT_EQ(db_.UpdateParameter(11, ValidRecord(1.0f)), ErrorCode::Success);
}

TEST_F(Editing, UpdateOnEmptyTableIsOutOfRange) {
  EXPECT_EQ(db_.UpdateParameter(0, ValidRecord()), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 0");
}

TEST_F(Editing, UpdateReportsTheRangeBeforeAnInvalidRecord) {
  ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  CuttingParameter bad = ValidRecord();
  bad.thickness_mm = kNaN;
  EXPECT_EQ(db_.UpdateParameter(1, bad), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 1");
}

TEST_F(Editing, UpdateWithInvalidRecordLeavesTheTable) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(3.0f)), ErrorCode::Success);
  CuttingParameter bad = ValidRecord(5.0f);
  bad.material_id = 9;
  EXPECT_EQ(db_.UpdateParameter(0, bad), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Invalid material ID");
  EXPECT_TRUE(SameBytes(Records()[0], ValidRecord(3.0f)));
}

TEST_F(Editing, DeleteMovesLaterRecordsDownInOrder) {
  ASSERT_EQ(db_.AddParameter(ValidRecord(1.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(2.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.AddParameter(ValidRecord(3.0f)), ErrorCode::Success);
  ASSERT_EQ(db_.DeleteParameter(0), ErrorCode::Success);
  ASSERT_EQ(Records().size(), 2u);
  EXPECT_TRUE(SameBytes(Records()[0], ValidRecord(2.0f)));
  EXPECT_TRUE(SameBytes(Records()[1], ValidRecord(3.0f)));
  EXPECT_EQ(db_.GetLastError(), "");
}

TEST_F(Editing, DeleteFromTheMiddleKeepsOrderWithoutSwapping) {
  for (int i = 1; i <= 5; ++i) {
    ASSERT_EQ(db_.AddParameter(ValidRecord(static_cast<float>(i))), ErrorCode::Success);
  }
  ASSERT_EQ(db_.DeleteParameter(1), ErrorCode::Success);
  std::vector<float> left;
  for (const auto& p : Records()) left.push_back(p.thickness_mm);
  EXPECT_EQ(left, (std::vector<float>{1.0f, 3.0f, 4.0f, 5.0f}));
}

TEST_F(Editing, DeletePastTheEndIsOutOfRange) {
  for (int i = 0; i < 3; ++i) ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  EXPECT_EQ(db_.DeleteParameter(3), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 3");
  EXPECT_EQ(Records().size(), 3u);
  EXPECT_EQ(db_.DeleteParameter(4294967295u), ErrorCode::InvalidParameter);
  EXPECT_EQ(db_.GetLastError(), "Parameter ID out of range: 4294967295");
}

TEST_F(Editing, DeleteSetsTheHeaderCountToTheNewSize) {
  for (int i = 0; i < 4; ++i) ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  EXPECT_EQ(db_.GetFileHeader().parameter_count, 0u);  // appends do not count
  ASSERT_EQ(db_.DeleteParameter(2), ErrorCode::Success);
  EXPECT_EQ(db_.GetFileHeader().parameter_count, 3u);
  ASSERT_EQ(db_.DeleteParameter(0), ErrorCode::Success);
  EXPECT_EQ(db_.GetFileHeader().parameter_count, 2u);
}

TEST_F(Editing, DeletingTheLastRecordEmptiesTheIndexes) {
  ASSERT_EQ(db_.AddParameter(ValidRecord()), ErrorCode::Success);
  ASSERT_EQ(db_.UpdateParameter(0, ValidRecord()), ErrorCode::Success);
  ASSERT_FALSE(MaterialIndexOf(db_).empty());
  ASSERT_EQ(db_.DeleteParameter(0), ErrorCode::Success);
  EXPECT_TRUE(Records().empty());
  EXPECT_TRUE(MaterialIndexOf(db_).empty());
  EXPECT_TRUE(MachineIndexOf(db_).empty());
  EXPECT_EQ(db_.GetFileHeader().parameter_count, 0u);
}

}  // namespace
}  // namespace sparlane_test
