/* CSV and JSON exports through the C interface. */
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

static const char kCsvHeader[] =
    "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
    "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
    "current_amps,flags";

static size_t count_lines(const char* text, size_t size) {
  size_t i, lines = 0;
  for (i = 0; i < size; ++i) {
    if (text[i] == '\n') ++lines;
  }
  return lines;
}

static void CsvHasAHeaderAndOneLinePerRecord(void) {
  sparlane_db_t* db = sample_db();
  path_t path = scratch_path("out.csv");
  unsigned char* bytes;
  char* text;
  size_t size = 0;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_export_csv(db, path.text), SPARLANE_SUCCESS);
  bytes = read_file(path.text, &size);
  REQUIRE(bytes != NULL);
  CHECK(size > sizeof kCsvHeader && memcmp(bytes, kCsvHeader, sizeof kCsvHeader - 1) == 0);
  CHECK_INT(count_lines((const char*)bytes, size), 1 + kSampleRecords);
  text = (char*)realloc(bytes, size + 1);
  REQUIRE(text != NULL);
  text[size] = '\0';
  CHECK(strstr(text, "\nHigh definition,HD-130,Mild steel,12,1500,") != NULL);
  free(text);
  sparlane_db_destroy(db);
}

static void JsonHoldsEveryName(void) {
  sparlane_db_t* db = sample_db();
  path_t path = scratch_path("out.json");
  unsigned char* bytes;
  size_t size = 0;
  char* text;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_export_json(db, path.text), SPARLANE_SUCCESS);
  bytes = read_file(path.text, &size);
  REQUIRE(bytes != NULL);
  text = (char*)realloc(bytes, size + 1);
  REQUIRE(text != NULL);
  text[size] = '\0';
  CHECK(text[0] == '{');
  CHECK(strstr(text, "\"Stainless steel\"") != NULL);
  CHECK(strstr(text, "\"HD-130\"") != NULL);
  free(text);
  sparlane_db_destroy(db);
}

static void ExportsWithoutADatabaseAreNotLoaded(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_export_csv(db, scratch_path("a.csv").text), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  CHECK_INT(sparlane_db_export_json(db, scratch_path("a.json").text), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  sparlane_db_destroy(db);
}

static void ExportsIntoAMissingFolderAreIoErrors(void) {
  sparlane_db_t* db = sample_db();
  path_t path = scratch_path("absent/out.txt");
  path_t message = text_join("Failed to open file for writing: ", path.text);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_export_csv(db, path.text), SPARLANE_IO_ERROR);
  CHECK_STR(sparlane_db_last_error(db), message.text);
  CHECK_INT(sparlane_db_export_json(db, path.text), SPARLANE_IO_ERROR);
  CHECK_STR(sparlane_db_last_error(db), message.text);
  sparlane_db_destroy(db);
}

#if defined(__linux__)
static void ExportsToAFullDeviceAreWriteErrors(void) {
  /* Enough records that the writes pass any buffer and meet the full disk. */
  sparlane_db_t* db = sample_db();
  int i;
  REQUIRE(db != NULL);
  for (i = 0; i < 2000; ++i) {
    sparlane_parameter_t p = sample_record(1, 1, 1, 1.0f + (float)i, 1000.0f);
    REQUIRE(sparlane_db_add_parameter(db, &p) == SPARLANE_SUCCESS);
  }
  if (!file_exists("/dev/full")) {
    sparlane_db_destroy(db);
    return;
  }
  CHECK_INT(sparlane_db_export_csv(db, "/dev/full"), SPARLANE_IO_ERROR);
  CHECK_STR(sparlane_db_last_error(db), "Error writing to file");
  CHECK_INT(sparlane_db_export_json(db, "/dev/full"), SPARLANE_IO_ERROR);
  CHECK_STR(sparlane_db_last_error(db), "Error writing to file");
  sparlane_db_destroy(db);
}
#endif

static void ExportsRefuseANullPath(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_export_csv(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  CHECK_INT(sparlane_db_export_json(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_export_csv(NULL, "x.csv"), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_export_json(NULL, "x.json"), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

const test_case export_tests[] = {
    {"CsvHasAHeaderAndOneLinePerRecord", CsvHasAHeaderAndOneLinePerRecord},
    {"JsonHoldsEveryName", JsonHoldsEveryName},
    {"ExportsWithoutADatabaseAreNotLoaded", ExportsWithoutADatabaseAreNotLoaded},
    {"ExportsIntoAMissingFolderAreIoErrors", ExportsIntoAMissingFolderAreIoErrors},
#if defined(__linux__)
    {"ExportsToAFullDeviceAreWriteErrors", ExportsToAFullDeviceAreWriteErrors},
#endif
    {"ExportsRefuseANullPath", ExportsRefuseANullPath},
    TEST_END};
