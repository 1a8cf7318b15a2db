/* Windows: a C host hands the DLL a UTF-8 path that is not ASCII (German,
 * Cyrillic, Japanese: outside every single ANSI code page); the DLL loads
 * it, answers queries on it and exports it. */
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#include "check.h"
#include "fixtures.h"

/* "Schnittdaten-äöü" and "Таб-日本.slb" */
static const char kFolder[] = "Schnittdaten-\xC3\xA4\xC3\xB6\xC3\xBC";
static const char kFile[] = "\xD0\xA2\xD0\xB0\xD0\xB1-\xE6\x97\xA5\xE6\x9C\xAC.slb";

static int widen(const char* utf8, wchar_t* wide, int size) {
  return MultiByteToWideChar(CP_UTF8, 0, utf8, -1, wide, size) > 0;
}

/* The sample file copied to <scratch>\kFolder\kFile; its UTF-8 path. */
static int place_sample(path_t* target) {
  path_t plain = scratch_path("plain.slb");
  path_t folder = scratch_path(kFolder);
  wchar_t wide_plain[1024], wide_folder[1024], wide_target[1024];
  *target = text_join(folder.text, "\\");
  *target = text_join(target->text, kFile);
  return save_sample(plain.text, SPARLANE_COMPRESSION_LZ4) == SPARLANE_SUCCESS &&
         widen(plain.text, wide_plain, 1024) && widen(folder.text, wide_folder, 1024) &&
         widen(target->text, wide_target, 1024) && CreateDirectoryW(wide_folder, NULL) &&
         CopyFileW(wide_plain, wide_target, TRUE);
}

static void NonAsciiPathLoadsAnswersAndExports(void) {
  path_t target;
  path_t csv = scratch_path("export.csv");
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_t found;
  sparlane_interpolation_t r;
  unsigned char* bytes;
  size_t size = 0;
  REQUIRE(db != NULL);
  REQUIRE(place_sample(&target));
  CHECK_INT(sparlane_db_load(db, target.text), SPARLANE_SUCCESS);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.001f, &found), 1);
  CHECK(found.cut_speed_mm_min == 3000.0f);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 8.0f, "AIR-45A", &r), 1);
  CHECK_NEAR(r.parameter.cut_speed_mm_min, 2500.0f);
  CHECK_INT(sparlane_db_export_csv(db, csv.text), SPARLANE_SUCCESS);
  bytes = read_file(csv.text, &size);
  REQUIRE(bytes != NULL);
  CHECK(size > 7 && memcmp(bytes, "vendor,", 7) == 0);
  free(bytes);
  /* The loaded file is held until Close. */
  sparlane_db_close(db);
  sparlane_db_destroy(db);
}

static void MissingNonAsciiFileIsReportedWithItsUtf8Path(void) {
  path_t path = scratch_path(kFile);
  sparlane_db_t* db = sparlane_db_create();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_load(db, path.text), SPARLANE_FILE_NOT_FOUND);
  CHECK_STR(sparlane_db_last_error(db), text_join("Failed to open file: ", path.text).text);
  sparlane_db_destroy(db);
}

const test_case windows_host_tests[] = {
    {"NonAsciiPathLoadsAnswersAndExports", NonAsciiPathLoadsAnswersAndExports},
    {"MissingNonAsciiFileIsReportedWithItsUtf8Path", MissingNonAsciiFileIsReportedWithItsUtf8Path},
    TEST_END};
