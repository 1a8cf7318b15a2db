/* Handles, Create, Close and the last-error message. */
#include "check.h"
#include "fixtures.h"

static void NewHandleIsNotLoadedAndHasNoMessage(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_is_loaded(db), 0);
  CHECK_STR(sparlane_db_last_error(db), "");
  sparlane_db_destroy(db);
}

static void CreateEmptyMakesALoadedEmptyDatabase(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_database_stats_t stats;
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_create_empty(db), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_is_loaded(db), 1);
  CHECK_INT(sparlane_db_statistics(db, &stats), SPARLANE_SUCCESS);
  CHECK_INT(stats.parameter_count, 0);
  CHECK_INT(stats.file_size_bytes, 0);
  CHECK_INT(sparlane_db_vendors(db, &names), 0);
  sparlane_db_destroy(db);
}

static void CreateEmptyDropsWhatWasThere(void) {
  sparlane_db_t* db = sample_db();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_create_empty(db), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_materials(db, &names), 0);
  sparlane_db_destroy(db);
}

static void CloseMarksNotLoadedAndKeepsTheNames(void) {
  sparlane_db_t* db = sample_db();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  sparlane_db_close(db);
  CHECK_INT(sparlane_db_is_loaded(db), 0);
  CHECK_INT(sparlane_db_materials(db, &names), 2);
  sparlane_name_list_free(&names);
  sparlane_db_destroy(db);
}

static void DestroyAndCloseAcceptNull(void) {
  sparlane_db_destroy(NULL);
  sparlane_db_close(NULL);
  CHECK_INT(sparlane_db_is_loaded(NULL), 0);
  CHECK_STR(sparlane_db_last_error(NULL), "");
  CHECK_INT(sparlane_db_create_empty(NULL), SPARLANE_INVALID_PARAMETER);
}

static void SuccessDoesNotClearTheMessage(void) {
  sparlane_db_t* db = sparlane_db_create();
  path_t missing = scratch_path("missing.slb");
  path_t expected = text_join("Failed to open file: ", missing.text);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_load(db, missing.text), SPARLANE_FILE_NOT_FOUND);
  CHECK_STR(sparlane_db_last_error(db), expected.text);
  CHECK_INT(sparlane_db_create_empty(db), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_add_material(db, "Mild steel"), SPARLANE_SUCCESS);
  CHECK_STR(sparlane_db_last_error(db), expected.text);
  sparlane_db_destroy(db);
}

static void OwnRefusalIsTheMessageUntilTheNextFailure(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_material(db, "Steel"), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  CHECK_INT(sparlane_db_load(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  /* A success leaves it; the library's next failure replaces it, even with
     the same text as before. */
  CHECK_INT(sparlane_db_create_empty(db), SPARLANE_SUCCESS);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  sparlane_db_close(db);
  CHECK_INT(sparlane_db_add_material(db, "Steel"), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  sparlane_db_destroy(db);
}

static void HandlesAreIndependent(void) {
  sparlane_db_t* a = sample_db();
  sparlane_db_t* b = sparlane_db_create();
  REQUIRE(a != NULL && b != NULL);
  CHECK_INT(sparlane_db_add_material(b, "x"), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(a), "");
  CHECK_INT(sparlane_db_is_loaded(a), 1);
  CHECK_INT(sparlane_db_is_loaded(b), 0);
  sparlane_db_destroy(a);
  sparlane_db_destroy(b);
}

const test_case lifecycle_tests[] = {
    {"NewHandleIsNotLoadedAndHasNoMessage", NewHandleIsNotLoadedAndHasNoMessage},
    {"CreateEmptyMakesALoadedEmptyDatabase", CreateEmptyMakesALoadedEmptyDatabase},
    {"CreateEmptyDropsWhatWasThere", CreateEmptyDropsWhatWasThere},
    {"CloseMarksNotLoadedAndKeepsTheNames", CloseMarksNotLoadedAndKeepsTheNames},
    {"DestroyAndCloseAcceptNull", DestroyAndCloseAcceptNull},
    {"SuccessDoesNotClearTheMessage", SuccessDoesNotClearTheMessage},
    {"OwnRefusalIsTheMessageUntilTheNextFailure", OwnRefusalIsTheMessageUntilTheNextFailure},
    {"HandlesAreIndependent", HandlesAreIndependent},
    TEST_END};
