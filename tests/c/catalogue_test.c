/* Name tables and ids, the record table, the header, statistics and
 * consumable sets. */
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

static void NameTablesComeInIdOrderWithLengths(void) {
  sparlane_db_t* db = sample_db();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_vendors(db, &names), 2);
  REQUIRE(names.count == 2);
  CHECK_STR(names.items[0].data, "Air plasma");
  CHECK_INT(names.items[0].length, 10);
  CHECK_STR(names.items[1].data, "High definition");
  sparlane_name_list_free(&names);
  CHECK_INT(sparlane_db_machines(db, &names), 3);
  REQUIRE(names.count == 3);
  CHECK_STR(names.items[0].data, "AIR-45A");
  CHECK_STR(names.items[2].data, "HD-130");
  CHECK_INT(names.items[2].length, 6);
  sparlane_name_list_free(&names);
  CHECK_INT(sparlane_db_materials(db, &names), 2);
  REQUIRE(names.count == 2);
  CHECK_STR(names.items[1].data, "Stainless steel");
  sparlane_name_list_free(&names);
  sparlane_db_destroy(db);
}

static void EmptyTablesAndNullGiveAnEmptyList(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  memset(&names, 0xAB, sizeof names);
  CHECK_INT(sparlane_db_vendors(db, &names), 0);
  CHECK(names.items == NULL && names.count == 0);
  CHECK_INT(sparlane_db_machines(NULL, &names), 0);
  CHECK(names.items == NULL);
  CHECK_INT(sparlane_db_materials(db, NULL), 0);
  sparlane_name_list_free(&names);
  sparlane_name_list_free(NULL);
  sparlane_db_destroy(db);
}

static void NameIdsAreTheTablePositions(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_vendor_id(db, "Air plasma"), 1);
  CHECK_INT(sparlane_db_vendor_id(db, "High definition"), 2);
  CHECK_INT(sparlane_db_machine_id(db, "AIR-45A"), 1);
  CHECK_INT(sparlane_db_machine_id(db, "HD-130"), 3);
  CHECK_INT(sparlane_db_material_id(db, "Mild steel"), 1);
  CHECK_INT(sparlane_db_material_id(db, "Stainless steel"), 2);
  /* Exact bytes, case-sensitive, and each table on its own. */
  CHECK_INT(sparlane_db_material_id(db, "mild steel"), 0);
  CHECK_INT(sparlane_db_material_id(db, "Mild steel "), 0);
  CHECK_INT(sparlane_db_machine_id(db, "Air plasma"), 0);
  CHECK_INT(sparlane_db_vendor_id(db, "AIR-45A"), 0);
  CHECK_INT(sparlane_db_vendor_id(db, ""), 0);
  /* The tables stay readable after a close. */
  sparlane_db_close(db);
  CHECK_INT(sparlane_db_machine_id(db, "AIR-65A"), 2);
  sparlane_db_destroy(db);
}

static void NameIdsOfNothingAreZero(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_vendor_id(db, "Air plasma"), 0);
  CHECK_INT(sparlane_db_machine_id(db, "AIR-45A"), 0);
  CHECK_INT(sparlane_db_material_id(db, "Mild steel"), 0);
  sparlane_db_destroy(db);
  db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_vendor_id(NULL, "Air plasma"), 0);
  CHECK_INT(sparlane_db_machine_id(NULL, "AIR-45A"), 0);
  CHECK_INT(sparlane_db_material_id(NULL, "Mild steel"), 0);
  CHECK_INT(sparlane_db_vendor_id(db, NULL), 0);
  CHECK_INT(sparlane_db_machine_id(db, NULL), 0);
  CHECK_INT(sparlane_db_material_id(db, NULL), 0);
  CHECK_INT(sparlane_db_vendor_id_n(NULL, "Air plasma", 10), 0);
  CHECK_INT(sparlane_db_machine_id_n(NULL, "AIR-45A", 7), 0);
  CHECK_INT(sparlane_db_material_id_n(NULL, "Mild steel", 10), 0);
  sparlane_db_destroy(db);
}

static void ParametersCopyTheWholeTableInTableOrder(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t appended = sample_record(1, 3, 2, 2.0f, 6000.0f);
  sparlane_parameter_list_t list;
  size_t i;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_parameters(db, &list), kSampleRecords);
  REQUIRE(list.count == kSampleRecords && list.items != NULL);
  for (i = 0; i < kSampleRecords; ++i) {
    sparlane_parameter_t want = sample_table(i);
    CHECK(same_record(&list.items[i], &want));
  }
  sparlane_parameter_list_free(&list);
  CHECK(list.items == NULL && list.count == 0);
  /* An appended record is there at once, indexes or not. */
  REQUIRE(sparlane_db_add_parameter(db, &appended) == SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_parameters(db, &list), kSampleRecords + 1);
  REQUIRE(list.count == kSampleRecords + 1);
  CHECK(same_record(&list.items[kSampleRecords], &appended));
  sparlane_parameter_list_free(&list);
  REQUIRE(sparlane_db_delete_parameter(db, 0) == SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_parameters(db, &list), kSampleRecords);
  REQUIRE(list.count == kSampleRecords);
  {
    sparlane_parameter_t second = sample_table(1);
    CHECK(same_record(&list.items[0], &second));
  }
  sparlane_parameter_list_free(&list);
  sparlane_db_destroy(db);
}

static void ParametersOfNothingAreAnEmptyList(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_list_t list;
  REQUIRE(db != NULL);
  memset(&list, 0xAB, sizeof list);
  CHECK_INT(sparlane_db_parameters(db, &list), 0);
  CHECK(list.items == NULL && list.count == 0);
  memset(&list, 0xAB, sizeof list);
  CHECK_INT(sparlane_db_parameters(NULL, &list), 0);
  CHECK(list.items == NULL && list.count == 0);
  CHECK_INT(sparlane_db_parameters(db, NULL), 0);
  sparlane_db_destroy(db);
}

static void FileHeaderIsAllZeroBeforeCreateOrLoad(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_file_header_t header, zero;
  REQUIRE(db != NULL);
  memset(&header, 0xAB, sizeof header);
  memset(&zero, 0, sizeof zero);
  CHECK_INT(sparlane_db_file_header(db, &header), SPARLANE_SUCCESS);
  CHECK(memcmp(&header, &zero, sizeof header) == 0);
  CHECK_INT(sparlane_db_file_header(NULL, &header), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_file_header(db, NULL), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

static void FileHeaderOfACreatedDatabaseIsFresh(void) {
  sparlane_db_t* db = sample_db();
  sparlane_file_header_t header;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_file_header(db, &header), SPARLANE_SUCCESS);
  CHECK_INT(header.magic, 0x4E4C5053u);
  CHECK_INT(header.version_major, 1);
  CHECK_INT(header.version_minor, 0);
  CHECK(header.created_time > 0);
  CHECK_INT(header.vendor_table_offset, 0);
  CHECK_INT(header.parameter_data_offset, 0);
  sparlane_db_destroy(db);
}

static void FileHeaderOfALoadedFileIsTheFilesHeader(void) {
  path_t path = scratch_path("header.slb");
  sparlane_db_t* db = sparlane_db_create();
  sparlane_file_header_t header;
  unsigned char* bytes;
  size_t size = 0;
  REQUIRE(db != NULL);
  REQUIRE(save_sample(path.text, SPARLANE_COMPRESSION_LZ4) == SPARLANE_SUCCESS);
  bytes = read_file(path.text, &size);
  REQUIRE(bytes != NULL && size > sizeof header);
  CHECK_INT(sparlane_db_load(db, path.text), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_file_header(db, &header), SPARLANE_SUCCESS);
  CHECK(memcmp(&header, bytes, sizeof header) == 0);
  CHECK_INT(header.parameter_count, kSampleRecords);
  CHECK_INT(header.compression, SPARLANE_COMPRESSION_LZ4);
  free(bytes);
  sparlane_db_destroy(db);
}

static void StatisticsCountTheTables(void) {
  sparlane_db_t* db = sample_db();
  sparlane_database_stats_t stats;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_statistics(db, &stats), SPARLANE_SUCCESS);
  CHECK_INT(stats.parameter_count, kSampleRecords);
  CHECK_INT(stats.vendor_count, 2);
  CHECK_INT(stats.machine_count, 3);
  CHECK_INT(stats.material_count, 2);
  CHECK_INT(stats.consumable_set_count, 0);
  CHECK_INT(stats.file_size_bytes, 0);
  sparlane_db_close(db);
  CHECK_INT(sparlane_db_statistics(db, &stats), SPARLANE_SUCCESS);
  CHECK_INT(stats.parameter_count, 0);
  CHECK_INT(sparlane_db_statistics(NULL, &stats), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_statistics(db, NULL), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

static void StatisticsOfALoadedFileGiveItsSize(void) {
  path_t path = scratch_path("sized.slb");
  sparlane_db_t* db = sparlane_db_create();
  sparlane_database_stats_t stats;
  unsigned char* bytes;
  size_t size = 0;
  REQUIRE(db != NULL);
  REQUIRE(save_sample(path.text, SPARLANE_COMPRESSION_LZ4) == SPARLANE_SUCCESS);
  bytes = read_file(path.text, &size);
  REQUIRE(bytes != NULL);
  free(bytes);
  CHECK_INT(sparlane_db_load(db, path.text), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_statistics(db, &stats), SPARLANE_SUCCESS);
  CHECK_INT(stats.file_size_bytes, size);
  CHECK_INT(stats.parameter_count, kSampleRecords);
  sparlane_db_destroy(db);
}

static void UnknownConsumableSetIsNotFound(void) {
  sparlane_db_t* db = sample_db();
  sparlane_consumable_set_t set;
  REQUIRE(db != NULL);
  memset(&set, 0xAB, sizeof set);
  CHECK_INT(sparlane_db_consumable_set(db, 1, &set), 0);
  CHECK_INT(set.set_id, 0);
  CHECK_INT(set.description[0], 0);
  CHECK_INT(sparlane_db_consumable_set(NULL, 1, &set), 0);
  CHECK_INT(sparlane_db_consumable_set(db, 1, NULL), 0);
  sparlane_db_destroy(db);
}

const test_case catalogue_tests[] = {
    {"NameTablesComeInIdOrderWithLengths", NameTablesComeInIdOrderWithLengths},
    {"EmptyTablesAndNullGiveAnEmptyList", EmptyTablesAndNullGiveAnEmptyList},
    {"NameIdsAreTheTablePositions", NameIdsAreTheTablePositions},
    {"NameIdsOfNothingAreZero", NameIdsOfNothingAreZero},
    {"ParametersCopyTheWholeTableInTableOrder", ParametersCopyTheWholeTableInTableOrder},
    {"ParametersOfNothingAreAnEmptyList", ParametersOfNothingAreAnEmptyList},
    {"FileHeaderIsAllZeroBeforeCreateOrLoad", FileHeaderIsAllZeroBeforeCreateOrLoad},
    {"FileHeaderOfACreatedDatabaseIsFresh", FileHeaderOfACreatedDatabaseIsFresh},
    {"FileHeaderOfALoadedFileIsTheFilesHeader", FileHeaderOfALoadedFileIsTheFilesHeader},
    {"StatisticsCountTheTables", StatisticsCountTheTables},
    {"StatisticsOfALoadedFileGiveItsSize", StatisticsOfALoadedFileGiveItsSize},
    {"UnknownConsumableSetIsNotFound", UnknownConsumableSetIsNotFound},
    TEST_END};
