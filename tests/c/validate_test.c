/* Whole-database validation through the C interface. */
#include "check.h"
#include "fixtures.h"

/* The sample saved and loaded back, so header and table agree. */
static sparlane_db_t* loaded_sample(void) {
  path_t path = scratch_path("sample.slb");
  sparlane_db_t* db;
  if (save_sample(path.text, SPARLANE_COMPRESSION_LZ4) != SPARLANE_SUCCESS) return NULL;
  db = sparlane_db_create();
  if (db != NULL && sparlane_db_load(db, path.text) != SPARLANE_SUCCESS) {
    sparlane_db_destroy(db);
    return NULL;
  }
  return db;
}

static void LoadedFileValidates(void) {
  sparlane_db_t* db = loaded_sample();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_validate(db), SPARLANE_SUCCESS);
  CHECK_STR(sparlane_db_last_error(db), "");
  sparlane_db_destroy(db);
}

static void NothingLoadedIsNotLoaded(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_validate(db), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  CHECK_INT(sparlane_db_validate(NULL), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

static void AppendedRecordIsACountMismatch(void) {
  sparlane_db_t* db = loaded_sample();
  sparlane_parameter_t p = sample_record(1, 1, 1, 20.0f, 900.0f);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_parameter(db, &p), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_validate(db), SPARLANE_INVALID_DATA);
  CHECK_STR(sparlane_db_last_error(db), "Parameter count mismatch: header says 6, actual is 7");
  sparlane_db_destroy(db);
}

static void DeletionAfterLoadingBreaksTheHeaderChecksum(void) {
  /* Deleting rewrites the header's count, so the loaded checksum no longer
     fits the header. */
  sparlane_db_t* db = loaded_sample();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_delete_parameter(db, 5), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_validate(db), SPARLANE_CHECKSUM_MISMATCH);
  CHECK_STR(sparlane_db_last_error(db), "Header checksum mismatch");
  sparlane_db_destroy(db);
}

const test_case validate_tests[] = {
    {"LoadedFileValidates", LoadedFileValidates},
    {"NothingLoadedIsNotLoaded", NothingLoadedIsNotLoaded},
    {"AppendedRecordIsACountMismatch", AppendedRecordIsACountMismatch},
    {"DeletionAfterLoadingBreaksTheHeaderChecksum", DeletionAfterLoadingBreaksTheHeaderChecksum},
    TEST_END};
