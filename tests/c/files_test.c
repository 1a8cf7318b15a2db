/* Loading, saving and importing through the C interface: every code each
 * call can give, with the library's message. */
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

#if defined(SPARLANE_TEST_WITH_SQLITE)
#include <sqlite3.h>
#endif

static const char kReadFailure[] = "Failed to read binary format";

/* Loads path into a fresh handle; returns the code, message in *message. */
static int load_code(const char* path, path_t* message) {
  sparlane_db_t* db = sparlane_db_create();
  int code;
  if (db == NULL) return -1;
  code = sparlane_db_load(db, path);
  if (message != NULL) *message = text_join(sparlane_db_last_error(db), "");
  if (code != SPARLANE_SUCCESS) CHECK_INT(sparlane_db_is_loaded(db), 0);
  sparlane_db_destroy(db);
  return code;
}

/* A saved sample file changed by change() and written back. */
static path_t changed_sample(const char* name, int compression,
                             void (*change)(unsigned char* bytes, size_t* size)) {
  path_t path = scratch_path(name);
  unsigned char* bytes;
  unsigned char* grown;
  size_t size = 0;
  if (save_sample(path.text, compression) != SPARLANE_SUCCESS) return path;
  bytes = read_file(path.text, &size);
  if (bytes == NULL) return path;
  grown = (unsigned char*)realloc(bytes, size + 64);
  if (grown != NULL) {
    change(grown, &size);
    write_file(path.text, grown, size);
    bytes = grown;
  }
  free(bytes);
  return path;
}

static path_t write_failure(const char* path) {
  return text_join("Failed to write binary format to: ", path);
}

static size_t data_offset(const unsigned char* bytes) { return (size_t)get_le(bytes + 104, 8); }

static void SavedFileLoadsBackRecordForRecord(void) {
  const int kinds[] = {SPARLANE_COMPRESSION_NONE, SPARLANE_COMPRESSION_LZ4};
  size_t k;
  for (k = 0; k < 2; ++k) {
    path_t path = scratch_path(k == 0 ? "raw.slb" : "lz4.slb");
    sparlane_db_t* db = sparlane_db_create();
    sparlane_parameter_list_t list;
    size_t i;
    REQUIRE(db != NULL);
    CHECK_INT(save_sample(path.text, kinds[k]), SPARLANE_SUCCESS);
    CHECK(!file_exists(text_join(path.text, ".tmp").text));
    CHECK_INT(sparlane_db_load(db, path.text), SPARLANE_SUCCESS);
    CHECK_INT(sparlane_db_is_loaded(db), 1);
    CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 5);
    for (i = 0; i < list.count; ++i) {
      sparlane_parameter_t expected = sample_table(i);
      CHECK(same_record(&list.items[i], &expected));
    }
    sparlane_parameter_list_free(&list);
    CHECK_INT(sparlane_db_validate(db), SPARLANE_SUCCESS);
    sparlane_db_destroy(db);
  }
}

static size_t file_size(const char* path) {
  size_t size = 0;
  unsigned char* bytes = read_file(path, &size);
  free(bytes);
  return bytes != NULL ? size : 0;
}

static void ReservedCompressionSavesNoRecordData(void) {
  path_t raw = scratch_path("raw.slb");
  path_t reserved = scratch_path("reserved.slb");
  CHECK_INT(save_sample(raw.text, SPARLANE_COMPRESSION_NONE), SPARLANE_SUCCESS);
  CHECK_INT(save_sample(reserved.text, SPARLANE_COMPRESSION_RESERVED), SPARLANE_SUCCESS);
  CHECK_INT(file_size(raw.text) - file_size(reserved.text), 64 * kSampleRecords);
}

static void SaveWithUnknownCompressionIsInvalidParameter(void) {
  path_t path = scratch_path("bad.slb");
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_save(db, path.text, 7), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), write_failure(path.text).text);
  CHECK(!file_exists(path.text));
  sparlane_db_destroy(db);
}

static void SaveWithoutADatabaseIsNotLoaded(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_save(db, scratch_path("x.slb").text, SPARLANE_COMPRESSION_LZ4),
            SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
  sparlane_db_destroy(db);
}

static void SaveIntoAMissingFolderIsIoError(void) {
  path_t path = scratch_path("absent/x.slb");
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_save(db, path.text, SPARLANE_COMPRESSION_LZ4), SPARLANE_IO_ERROR);
  CHECK_STR(sparlane_db_last_error(db), write_failure(path.text).text);
  sparlane_db_destroy(db);
}

static void SaveAndLoadRefuseANullPath(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_save(db, NULL, SPARLANE_COMPRESSION_LZ4), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  CHECK_INT(sparlane_db_is_loaded(db), 1);
  CHECK_INT(sparlane_db_load(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  CHECK_INT(sparlane_db_save(NULL, "x", 0), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_load(NULL, "x"), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

static void MissingFileIsFileNotFound(void) {
  path_t path = scratch_path("missing.slb");
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_FILE_NOT_FOUND);
  CHECK_STR(message.text, text_join("Failed to open file: ", path.text).text);
}

static void FolderIsAccessDenied(void) {
  path_t path = scratch_path("folder");
  path_t message;
  REQUIRE(scratch_mkdir("folder") == 0);
  CHECK_INT(load_code(path.text, &message), SPARLANE_ACCESS_DENIED);
  CHECK_STR(message.text, text_join("Failed to open file: ", path.text).text);
}

#if !defined(_WIN32)
static void OverlongFileNameIsIoError(void) {
  char name[301];
  path_t path, message;
  memset(name, 'n', 300);
  name[300] = '\0';
  path = scratch_path(name);
  CHECK_INT(load_code(path.text, &message), SPARLANE_IO_ERROR);
  CHECK_STR(message.text, text_join("Failed to open file: ", path.text).text);
}
#endif

static void ShortFileIsCorrupted(void) {
  unsigned char bytes[1023];
  path_t path = scratch_path("short.slb");
  path_t message;
  memset(bytes, 0, sizeof bytes);
  REQUIRE(write_file(path.text, bytes, sizeof bytes) == 0);
  CHECK_INT(load_code(path.text, &message), SPARLANE_CORRUPTED_FILE);
  CHECK_STR(message.text, text_join("Failed to open file: ", path.text).text);
}

static void ZeroFileIsInvalidMagic(void) {
  unsigned char bytes[2048];
  path_t path = scratch_path("zeros.slb");
  path_t message;
  memset(bytes, 0, sizeof bytes);
  REQUIRE(write_file(path.text, bytes, sizeof bytes) == 0);
  CHECK_INT(load_code(path.text, &message), SPARLANE_INVALID_MAGIC);
  CHECK_STR(message.text, kReadFailure);
}

static void make_version_two(unsigned char* bytes, size_t* size) {
  (void)size;
  put_le(bytes + 4, 2, 2);
}

static void VersionTwoIsUnsupported(void) {
  path_t path = changed_sample("v2.slb", SPARLANE_COMPRESSION_LZ4, make_version_two);
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_UNSUPPORTED_VERSION);
  CHECK_STR(message.text, kReadFailure);
}

static void change_creator(unsigned char* bytes, size_t* size) {
  (void)size;
  bytes[150] ^= 0x20;
}

static void HeaderChangedAfterSavingIsCorrupted(void) {
  path_t path = changed_sample("crc.slb", SPARLANE_COMPRESSION_NONE, change_creator);
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_CORRUPTED_FILE);
  CHECK_STR(message.text, kReadFailure);
}

static void cut_last_byte(unsigned char* bytes, size_t* size) {
  (void)bytes;
  --*size;
}

static void ShortRecordDataIsInvalidData(void) {
  path_t path = changed_sample("cut.slb", SPARLANE_COMPRESSION_NONE, cut_last_byte);
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_INVALID_DATA);
  CHECK_STR(message.text, kReadFailure);
}

static void cut_inside_block_head(unsigned char* bytes, size_t* size) {
  *size = data_offset(bytes) + 7;
}

static void ShortBlockHeadIsInvalidParameter(void) {
  path_t path = changed_sample("head.slb", SPARLANE_COMPRESSION_LZ4, cut_inside_block_head);
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(message.text, kReadFailure);
}

static void replace_block_with_bad_lz4(unsigned char* bytes, size_t* size) {
  /* A match offset of zero is invalid LZ4: token 0x10, literal 'A', offset 0. */
  static const unsigned char bad[8] = {0x10, 'A', 0, 0, 0, 0, 0, 0};
  size_t at = data_offset(bytes);
  put_le(bytes + at, 64u * kSampleRecords, 4);
  put_le(bytes + at + 4, sizeof bad, 4);
  memcpy(bytes + at + 8, bad, sizeof bad);
  *size = at + 8 + sizeof bad;
}

static void BrokenLz4BlockIsDecompressionFailed(void) {
  path_t path = changed_sample("lz4.slb", SPARLANE_COMPRESSION_LZ4, replace_block_with_bad_lz4);
  path_t message;
  CHECK_INT(load_code(path.text, &message), SPARLANE_DECOMPRESSION_FAILED);
  CHECK_STR(message.text, kReadFailure);
}

static void FailedLoadLeavesTheDatabaseNotLoaded(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_load(db, scratch_path("missing.slb").text), SPARLANE_FILE_NOT_FOUND);
  CHECK_INT(sparlane_db_is_loaded(db), 0);
  sparlane_db_destroy(db);
}

#if defined(SPARLANE_TEST_WITH_SQLITE)
static void SqliteFileImports(void) {
  path_t path = scratch_path("import.db");
  sqlite3* sql = NULL;
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_t found;
  char text[4096];
  REQUIRE(db != NULL);
  REQUIRE(sqlite3_open(path.text, &sql) == SQLITE_OK);
  CHECK_INT(sqlite3_exec(sql,
                         "CREATE TABLE vendors (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
                         "CREATE TABLE machines (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
                         "CREATE TABLE materials (id INTEGER PRIMARY KEY, name TEXT NOT NULL);"
                         "CREATE TABLE parameters (vendor_id INTEGER, machine_model_id INTEGER,"
                         " material_id INTEGER, thickness_mm REAL, cut_speed_mm_min REAL,"
                         " cut_height_mm REAL, pierce_height_mm REAL, transfer_height_mm REAL,"
                         " arc_voltage_v REAL, pierce_time_s REAL, kerf_width_mm REAL,"
                         " current_amps INTEGER, flags INTEGER);"
                         "INSERT INTO vendors VALUES (1, 'Air plasma');"
                         "INSERT INTO machines VALUES (1, 'AIR-45A');"
                         "INSERT INTO materials VALUES (1, 'Mild steel');"
                         "INSERT INTO parameters VALUES (1, 1, 1, 6.35, 1651, 1.5, 3.8, 3.8, 128,"
                         " 0.5, 1.5, 45, 0);",
                         NULL, NULL, NULL),
            SQLITE_OK);
  sqlite3_close(sql);
  CHECK_INT(sparlane_db_import_sqlite(db, path.text), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_is_loaded(db), 1);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.35f, "AIR-45A", 0.001f, &found), 1);
  CHECK_INT(found.current_amps, 45);
  CHECK_INT(sparlane_db_import_sqlite(db, scratch_path("missing.db").text),
            SPARLANE_FILE_NOT_FOUND);
  CHECK_STR(sparlane_db_last_error(db),
            text_join("Failed to open file: ", scratch_path("missing.db").text).text);
  CHECK_INT(sparlane_db_is_loaded(db), 0);
  memset(text, 'x', sizeof text);
  REQUIRE(write_file(scratch_path("text.db").text, text, sizeof text) == 0);
  CHECK_INT(sparlane_db_import_sqlite(db, scratch_path("text.db").text), SPARLANE_CORRUPTED_FILE);
  CHECK_STR(sparlane_db_last_error(db), "SQLite import: file is not a database");
  sparlane_db_destroy(db);
}
#else
static void SqliteImportIsRefusedWithoutSqlite(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_import_sqlite(db, scratch_path("any.db").text), SPARLANE_NOT_LOADED);
  CHECK_STR(sparlane_db_last_error(db),
            "SQLite support not enabled. Rebuild with -DENABLE_SQLITE=ON");
  CHECK_INT(sparlane_db_is_loaded(db), 1);
  sparlane_db_destroy(db);
}
#endif

static void ImportRefusesANullPath(void) {
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_import_sqlite(db, NULL), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Path is NULL");
  CHECK_INT(sparlane_db_import_sqlite(NULL, "x.db"), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

const test_case files_tests[] = {
    {"SavedFileLoadsBackRecordForRecord", SavedFileLoadsBackRecordForRecord},
    {"ReservedCompressionSavesNoRecordData", ReservedCompressionSavesNoRecordData},
    {"SaveWithUnknownCompressionIsInvalidParameter", SaveWithUnknownCompressionIsInvalidParameter},
    {"SaveWithoutADatabaseIsNotLoaded", SaveWithoutADatabaseIsNotLoaded},
    {"SaveIntoAMissingFolderIsIoError", SaveIntoAMissingFolderIsIoError},
    {"SaveAndLoadRefuseANullPath", SaveAndLoadRefuseANullPath},
    {"MissingFileIsFileNotFound", MissingFileIsFileNotFound},
    {"FolderIsAccessDenied", FolderIsAccessDenied},
#if !defined(_WIN32)
    {"OverlongFileNameIsIoError", OverlongFileNameIsIoError},
#endif
    {"ShortFileIsCorrupted", ShortFileIsCorrupted},
    {"ZeroFileIsInvalidMagic", ZeroFileIsInvalidMagic},
    {"VersionTwoIsUnsupported", VersionTwoIsUnsupported},
    {"HeaderChangedAfterSavingIsCorrupted", HeaderChangedAfterSavingIsCorrupted},
    {"ShortRecordDataIsInvalidData", ShortRecordDataIsInvalidData},
    {"ShortBlockHeadIsInvalidParameter", ShortBlockHeadIsInvalidParameter},
    {"BrokenLz4BlockIsDecompressionFailed", BrokenLz4BlockIsDecompressionFailed},
    {"FailedLoadLeavesTheDatabaseNotLoaded", FailedLoadLeavesTheDatabaseNotLoaded},
#if defined(SPARLANE_TEST_WITH_SQLITE)
    {"SqliteFileImports", SqliteFileImports},
#else
    {"SqliteImportIsRefusedWithoutSqlite", SqliteImportIsRefusedWithoutSqlite},
#endif
    {"ImportRefusesANullPath", ImportRefusesANullPath},
    TEST_END};
