/* Name tables, statistics and consumable sets. */
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
    {"StatisticsCountTheTables", StatisticsCountTheTables},
    {"StatisticsOfALoadedFileGiveItsSize", StatisticsOfALoadedFileGiveItsSize},
    {"UnknownConsumableSetIsNotFound", UnknownConsumableSetIsNotFound},
    TEST_END};
