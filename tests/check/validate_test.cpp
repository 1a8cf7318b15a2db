#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "check_fixtures.h"
#include "sparlane/sparlane.h"
#include "file/mapped_file.h"

namespace Sparlane {
namespace {

using check_test::FillNames;
using check_test::GoodRecord;
using check_test::PutRecords;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();

TEST(Validate, NeverLoadedIsNotLoaded) {
  Database db;
  EXPECT_EQ(db.Validate(), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
}

TEST(Validate, ClosedIsNotLoaded) {
  Database db;
  FillNames(db);
  db.Close();
  EXPECT_EQ(db.Validate(), ErrorCode::NotLoaded);
  EXPECT_EQ(db.GetLastError(), "Database not loaded");
}

TEST(Validate, EmptyCreatedDatabasePassesAndKeepsMessage) {
  Database db;
  db.Create();
  EXPECT_EQ(db.AddMaterial(""), ErrorCode::InvalidParameter);
  const std::string before = db.GetLastError();
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  EXPECT_EQ(db.GetLastError(), before);
}

TEST(Validate, InMemoryDatabaseSkipsChecksumWhateverItHolds) {
  Database db;
  FillNames(db);
  DatabaseAccess::Header(db).header_crc32 = 0xDEADBEEFu;
  PutRecords(db, {GoodRecord()});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, MappedFileWithoutViewSkipsChecksum) {
  Database db;
  FillNames(db);
  DatabaseAccess::AttachFile(db, std::make_unique<MappedFile>());  // closed: null view
  DatabaseAccess::Header(db).header_crc32 = 0x12345678u;
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, HeaderCountDifferingFromRecordsIsInvalidData) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord(), GoodRecord(), GoodRecord()});
  DatabaseAccess::Header(db).parameter_count = 2;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Parameter count mismatch: header says 2, actual is 3");
}

TEST(Validate, AddParameterWithoutHeaderUpdateIsACountMismatch) {
  Database db;
  FillNames(db);
  ASSERT_EQ(db.AddParameter(GoodRecord()), ErrorCode::Success);
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Parameter count mismatch: header says 0, actual is 1");
}

TEST(Validate, LargeCountsArePlainDecimal) {
  Database db;
  FillNames(db);
  DatabaseAccess::Header(db).parameter_count = 4294967295u;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Parameter count mismatch: header says 4294967295, actual is 0");
}

TEST(Validate, VendorIdEqualToVendorCountPasses) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.vendor_id = 3;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, VendorIdPastCountNamesIdAndPosition) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.vendor_id = 4;
  PutRecords(db, {p, GoodRecord()});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid vendor_id 4 in parameter 0");
  EXPECT_TRUE(db.IsLoaded());
}

TEST(Validate, VendorIdZeroFails) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.vendor_id = 0;
  PutRecords(db, {GoodRecord(), p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid vendor_id 0 in parameter 1");
}

TEST(Validate, MachineIdOutOfTableFails) {
  Database db;
  FillNames(db);
  CuttingParameter ok = GoodRecord();
  ok.machine_model_id = 3;
  CuttingParameter p = GoodRecord();
  p.machine_model_id = 65535;
  PutRecords(db, {ok, GoodRecord(), p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid machine_model_id 65535 in parameter 2");

  DatabaseAccess::Records(db)[2].machine_model_id = 0;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid machine_model_id 0 in parameter 2");
}

TEST(Validate, MaterialIdOutOfTableFails) {
  Database db;
  FillNames(db);
  CuttingParameter ok = GoodRecord();
  ok.material_id = 2;
  CuttingParameter p = GoodRecord();
  p.material_id = 3;
  PutRecords(db, {ok, p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid material_id 3 in parameter 1");

  DatabaseAccess::Records(db)[1].material_id = 0;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid material_id 0 in parameter 1");
}

TEST(Validate, IdTestsRunVendorMachineMaterialInThatOrder) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.vendor_id = 9;
  p.machine_model_id = 9;
  p.material_id = 9;
  p.thickness_mm = kNaN;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid vendor_id 9 in parameter 0");
  DatabaseAccess::Records(db)[0].vendor_id = 1;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid machine_model_id 9 in parameter 0");
  DatabaseAccess::Records(db)[0].machine_model_id = 1;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid material_id 9 in parameter 0");
  DatabaseAccess::Records(db)[0].material_id = 1;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid float value (NaN or Inf) in parameter 0");
}

TEST(Validate, NonFiniteInEachOfTheFiveCheckedFieldsFails) {
  float CuttingParameter::*fields[] = {
      &CuttingParameter::thickness_mm, &CuttingParameter::cut_speed_mm_min,
      &CuttingParameter::cut_height_mm, &CuttingParameter::pierce_height_mm,
      &CuttingParameter::arc_voltage_v};
  for (float bad : {kNaN, kInf, -kInf}) {
    for (auto field : fields) {
      Database db;
      FillNames(db);
      CuttingParameter p = GoodRecord();
      p.*field = bad;
      PutRecords(db, {GoodRecord(), GoodRecord(), GoodRecord(), p});
      EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
      EXPECT_EQ(db.GetLastError(), "Invalid float value (NaN or Inf) in parameter 3");
    }
  }
}

TEST(Validate, NonFiniteTransferPierceTimeAndKerfPass) {
  float CuttingParameter::*fields[] = {&CuttingParameter::transfer_height_mm,
                                       &CuttingParameter::pierce_time_s,
                                       &CuttingParameter::kerf_width_mm};
  for (float bad : {kNaN, kInf, -kInf}) {
    for (auto field : fields) {
      Database db;
      FillNames(db);
      CuttingParameter p = GoodRecord();
      p.*field = bad;
      PutRecords(db, {p});
      EXPECT_EQ(db.Validate(), ErrorCode::Success);
    }
  }
}

TEST(Validate, NaNKerfPassesValidateButFailsValidateParameter) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.kerf_width_mm = kNaN;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  EXPECT_EQ(Testing::ValidateParameter(p), ErrorCode::InvalidParameter);
}

ErrorCode ValidateWithThickness(float thickness, std::string* message) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.thickness_mm = thickness;
  PutRecords(db, {GoodRecord(), p});
  ErrorCode code = db.Validate();
  *message = db.GetLastError();
  return code;
}

TEST(Validate, ThicknessUpTo500Passes) {
  std::string message;
  EXPECT_EQ(ValidateWithThickness(500.0f, &message), ErrorCode::Success);
  EXPECT_EQ(ValidateWithThickness(std::numeric_limits<float>::denorm_min(), &message),
            ErrorCode::Success);
}

TEST(Validate, ThicknessOutOfRangeFails) {
  for (float t : {500.1f, std::nextafter(500.0f, 1000.0f), 0.0f, -0.0f, -1.0f}) {
    std::string message;
    EXPECT_EQ(ValidateWithThickness(t, &message), ErrorCode::InvalidData) << t;
    EXPECT_EQ(message, "Thickness out of range in parameter 1") << t;
  }
}

ErrorCode ValidateWithSpeed(float speed, std::string* message) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.cut_speed_mm_min = speed;
  PutRecords(db, {p});
  ErrorCode code = db.Validate();
  *message = db.GetLastError();
  return code;
}

TEST(Validate, CutSpeedUpTo100000Passes) {
  std::string message;
  EXPECT_EQ(ValidateWithSpeed(100000.0f, &message), ErrorCode::Success);
}

TEST(Validate, CutSpeedOutOfRangeFails) {
  for (float s : {0.0f, -5.0f, std::nextafter(100000.0f, 1e6f)}) {
    std::string message;
    EXPECT_EQ(ValidateWithSpeed(s, &message), ErrorCode::InvalidData) << s;
    EXPECT_EQ(message, "Cut speed out of range in parameter 0") << s;
  }
}

TEST(Validate, ThicknessTestComesBeforeSpeedTest) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.thickness_mm = 0.0f;
  p.cut_speed_mm_min = 0.0f;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Thickness out of range in parameter 0");
}

TEST(Validate, FirstBadRecordInArrayOrderIsReported) {
  Database db;
  FillNames(db);
  CuttingParameter slow = GoodRecord();
  slow.cut_speed_mm_min = 0.0f;
  CuttingParameter bad_vendor = GoodRecord();
  bad_vendor.vendor_id = 7;
  PutRecords(db, {GoodRecord(), slow, bad_vendor});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Cut speed out of range in parameter 1");
}

TEST(Validate, OtherFieldsAreNotTested) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.current_amps = 0;
  p.cut_height_mm = -4.0f;
  p.arc_voltage_v = -1.0f;
  p.flags = 0xFFFFFFFFu;
  p.aux_id = 77;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, RebuiltIndexesPass) {
  Database db;
  FillNames(db);
  CuttingParameter a = GoodRecord();
  CuttingParameter b = GoodRecord();
  b.material_id = 2;
  b.machine_model_id = 2;
  PutRecords(db, {a, b, a});
  DatabaseAccess::RebuildIndexes(db);
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, ThicknessBucketEndingAtRecordCountPasses) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord(), GoodRecord()});
  DatabaseAccess::SetMaterialBuckets(db, 1, {ThicknessBucket{1.0f, 2.0f, 1, 1}});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, ThicknessBucketPastRecordsFails) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord(), GoodRecord()});
  DatabaseAccess::SetMaterialBuckets(db, 1, {ThicknessBucket{1.0f, 2.0f, 0, 2},
                                                 ThicknessBucket{1.0f, 2.0f, 1, 2}});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Thickness index points beyond parameter array");
}

TEST(Validate, HugeIndexValuesDoNotWrapIntoRange) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord()});
  DatabaseAccess::SetMachineSpan(db, 1, MachineSpan{~std::uint64_t{0}, 2});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Machine index points beyond parameter array");
}

TEST(Validate, MachineSpanPastRecordsFails) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord(), GoodRecord(), GoodRecord()});
  DatabaseAccess::SetMachineSpan(db, 1, MachineSpan{0, 3});
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
  DatabaseAccess::SetMachineSpan(db, 2, MachineSpan{2, 2});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Machine index points beyond parameter array");
}

TEST(Validate, ThicknessIndexIsCheckedBeforeMachineIndex) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord()});
  DatabaseAccess::SetMachineSpan(db, 1, MachineSpan{5, 1});
  DatabaseAccess::SetMaterialBuckets(db, 1, {ThicknessBucket{1.0f, 2.0f, 5, 1}});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Thickness index points beyond parameter array");
}

TEST(Validate, RecordsAreCheckedBeforeIndexes) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.material_id = 0;
  PutRecords(db, {p});
  DatabaseAccess::SetMachineSpan(db, 1, MachineSpan{5, 1});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Invalid material_id 0 in parameter 0");
}

TEST(Validate, IndexesAfterAddParameterStillFitTheArray) {
  Database db;
  FillNames(db);
  PutRecords(db, {GoodRecord()});
  DatabaseAccess::RebuildIndexes(db);
  ASSERT_EQ(db.AddParameter(GoodRecord()), ErrorCode::Success);
  DatabaseAccess::Header(db).parameter_count = 2;
  EXPECT_EQ(db.Validate(), ErrorCode::Success);
}

TEST(Validate, CountMismatchComesBeforeRecordTests) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.vendor_id = 0;
  PutRecords(db, {p});
  DatabaseAccess::Header(db).parameter_count = 0;
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_EQ(db.GetLastError(), "Parameter count mismatch: header says 0, actual is 1");
}

TEST(Validate, DatabaseStaysUsableAfterAFinding) {
  Database db;
  FillNames(db);
  CuttingParameter p = GoodRecord();
  p.thickness_mm = 600.0f;
  PutRecords(db, {p});
  EXPECT_EQ(db.Validate(), ErrorCode::InvalidData);
  EXPECT_TRUE(db.IsLoaded());
  EXPECT_EQ(db.GetParameters().size(), 1u);
  EXPECT_EQ(DatabaseAccess::Records(db)[0].thickness_mm, 600.0f);
  EXPECT_EQ(db.AddMaterial("Copper"), ErrorCode::Success);
}

}  // namespace
}  // namespace Sparlane
