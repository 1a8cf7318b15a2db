/* Adding, replacing and deleting records and names: every refusal with its
 * code and message. */
#include <math.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

static sparlane_database_stats_t stats_of(const sparlane_db_t* db) {
  sparlane_database_stats_t stats;
  memset(&stats, 0, sizeof stats);
  sparlane_db_statistics(db, &stats);
  return stats;
}

static void AddParameterAppendsACheckedRecord(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t p = sample_record(1, 2, 2, 8.0f, 2200.0f);
  sparlane_parameter_list_t list;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_parameter(db, &p), SPARLANE_SUCCESS);
  CHECK_INT(stats_of(db).parameter_count, kSampleRecords + 1);
  CHECK_INT(sparlane_db_find_by_material(db, "Stainless steel", &list), 2);
  REQUIRE(list.count == 2);
  CHECK(same_record(&list.items[1], &p));
  sparlane_parameter_list_free(&list);
  sparlane_db_destroy(db);
}

static void AddParameterRefusesEachBadField(void) {
  struct {
    const char* message;
    sparlane_parameter_t record;
  } cases[7];
  sparlane_db_t* db = sample_db();
  size_t i;
  REQUIRE(db != NULL);
  for (i = 0; i < 7; ++i) cases[i].record = sample_record(1, 1, 1, 5.0f, 1000.0f);
  cases[0].message = "Parameter contains invalid float value (NaN or Inf)";
  cases[0].record.kerf_width_mm = INFINITY;
  cases[1].message = "Material thickness must be positive";
  cases[1].record.thickness_mm = 0.0f;
  cases[2].message = "Cut speed must be positive";
  cases[2].record.cut_speed_mm_min = -1.0f;
  cases[3].message = "Process current must be non-zero";
  cases[3].record.current_amps = 0;
  cases[4].message = "Invalid vendor ID";
  cases[4].record.vendor_id = 3;
  cases[5].message = "Invalid machine model ID";
  cases[5].record.machine_model_id = 0;
  cases[6].message = "Invalid material ID";
  cases[6].record.material_id = 9;
  for (i = 0; i < 7; ++i) {
    CHECK_INT(sparlane_db_add_parameter(db, &cases[i].record), SPARLANE_INVALID_PARAMETER);
    CHECK_STR(sparlane_db_last_error(db), cases[i].message);
    CHECK_INT(sparlane_db_update_parameter(db, 1, &cases[i].record), SPARLANE_INVALID_PARAMETER);
    CHECK_STR(sparlane_db_last_error(db), cases[i].message);
  }
  CHECK_INT(stats_of(db).parameter_count, kSampleRecords);
  sparlane_db_destroy(db);
}

static void EditsWithoutADatabaseAreNotLoaded(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_t p = sample_record(1, 1, 1, 5.0f, 1000.0f);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_parameter(db, &p), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  CHECK_INT(sparlane_db_update_parameter(db, 0, &p), SPARLANE_NOT_LOADED);
  CHECK_INT(sparlane_db_delete_parameter(db, 0), SPARLANE_NOT_LOADED);
  CHECK_INT(sparlane_db_add_machine(db, "V", "M", NULL), SPARLANE_NOT_LOADED);
  CHECK_INT(sparlane_db_add_material(db, "Steel"), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  sparlane_db_destroy(db);
}

static void EditsRefuseNullArguments(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t p = sample_record(1, 1, 1, 5.0f, 1000.0f);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_parameter(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Parameter record is NULL");
  CHECK_INT(sparlane_db_update_parameter(db, 0, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_machine(db, NULL, "M", NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Name is NULL");
  CHECK_INT(sparlane_db_add_machine(db, "V", NULL, ""), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_material(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Name is NULL");
  CHECK_INT(sparlane_db_add_parameter(NULL, &p), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_update_parameter(NULL, 0, &p), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_delete_parameter(NULL, 0), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_machine(NULL, "V", "M", NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_material(NULL, "x"), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(stats_of(db).parameter_count, kSampleRecords);
  sparlane_db_destroy(db);
}

static void UpdateReplacesTheRecordAtAPosition(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t p = sample_record(1, 1, 1, 6.0f, 3333.0f);
  sparlane_parameter_t found;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_update_parameter(db, 1, &p), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.001f, &found), 1);
  CHECK(found.cut_speed_mm_min == 3333.0f);
  CHECK_INT(sparlane_db_update_parameter(db, 6, &p), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Parameter ID out of range: 6");
  sparlane_db_destroy(db);
}

static void DeleteMovesLaterRecordsDown(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_list_t list;
  sparlane_parameter_t third = sample_table(2);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_delete_parameter(db, 1), SPARLANE_SUCCESS);
  CHECK_INT(stats_of(db).parameter_count, kSampleRecords - 1);
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 4);
  REQUIRE(list.count == 4);
  CHECK(same_record(&list.items[1], &third));
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_delete_parameter(db, 4000000000u), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Parameter ID out of range: 4000000000");
  sparlane_db_destroy(db);
}

static void AddMachineAddsItsVendorOnce(void) {
  sparlane_db_t* db = sample_db();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_machine(db, "Air plasma", "AIR-85A", "ignored"), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_add_machine(db, "Water table", "WT-1", NULL), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_vendors(db, &names), 3);
  sparlane_name_list_free(&names);
  CHECK_INT(sparlane_db_machines(db, &names), 5);
  REQUIRE(names.count == 5);
  CHECK_STR(names.items[3].data, "AIR-85A");
  sparlane_name_list_free(&names);
  sparlane_db_destroy(db);
}

static void AddMachineRefusals(void) {
  sparlane_db_t* db = sample_db();
  char long_name[257];
  REQUIRE(db != NULL);
  memset(long_name, 'm', 256);
  long_name[256] = '\0';
  CHECK_INT(sparlane_db_add_machine(db, "Other", "AIR-45A", NULL), SPARLANE_ALREADY_EXISTS);
  CHECK_STR(sparlane_db_last_error(db), "Machine model already exists: AIR-45A");
  CHECK_INT(sparlane_db_add_machine(db, "", "New", NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Vendor and model names cannot be empty");
  CHECK_INT(sparlane_db_add_machine(db, "V", long_name, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Name exceeds maximum length");
  long_name[255] = '\0';
  CHECK_INT(sparlane_db_add_machine(db, "V", long_name, NULL), SPARLANE_SUCCESS);
  sparlane_db_destroy(db);
}

static void AddMaterialRefusals(void) {
  sparlane_db_t* db = sample_db();
  char long_name[257];
  REQUIRE(db != NULL);
  memset(long_name, 'a', 256);
  long_name[256] = '\0';
  CHECK_INT(sparlane_db_add_material(db, "Mild steel"), SPARLANE_ALREADY_EXISTS);
  CHECK_STR(sparlane_db_last_error(db), "Material already exists: Mild steel");
  CHECK_INT(sparlane_db_add_material(db, ""), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Material name cannot be empty");
  CHECK_INT(sparlane_db_add_material(db, long_name), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Material name exceeds maximum length");
  CHECK_INT(sparlane_db_add_material(db, "mild steel"), SPARLANE_SUCCESS);
  sparlane_db_destroy(db);
}

const test_case editing_tests[] = {
    {"AddParameterAppendsACheckedRecord", AddParameterAppendsACheckedRecord},
    {"AddParameterRefusesEachBadField", AddParameterRefusesEachBadField},
    {"EditsWithoutADatabaseAreNotLoaded", EditsWithoutADatabaseAreNotLoaded},
    {"EditsRefuseNullArguments", EditsRefuseNullArguments},
    {"UpdateReplacesTheRecordAtAPosition", UpdateReplacesTheRecordAtAPosition},
    {"DeleteMovesLaterRecordsDown", DeleteMovesLaterRecordsDown},
    {"AddMachineAddsItsVendorOnce", AddMachineAddsItsVendorOnce},
    {"AddMachineRefusals", AddMachineRefusals},
    {"AddMaterialRefusals", AddMaterialRefusals},
    TEST_END};
