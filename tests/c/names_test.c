/* Names given as pointer and length, so a name may hold a NUL byte, and
 * names read back with their length. */
#include <string.h>

#include "check.h"
#include "fixtures.h"

static const char kNulName[] = "Alu\0minium"; /* 10 bytes */
static const size_t kNulLength = sizeof kNulName - 1;

/* The sample database plus material 3 = kNulName, on AIR-45A at 5 and 9 mm. */
static sparlane_db_t* db_with_nul_material(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t a = sample_record(1, 1, 3, 5.0f, 4000.0f);
  sparlane_parameter_t b = sample_record(1, 1, 3, 9.0f, 2000.0f);
  sparlane_parameter_t first = sample_table(0);
  if (db == NULL) return NULL;
  if (sparlane_db_add_material_n(db, kNulName, kNulLength) != SPARLANE_SUCCESS ||
      sparlane_db_add_parameter(db, &a) != SPARLANE_SUCCESS ||
      sparlane_db_add_parameter(db, &b) != SPARLANE_SUCCESS ||
      sparlane_db_update_parameter(db, 0, &first) != SPARLANE_SUCCESS) {
    sparlane_db_destroy(db);
    return NULL;
  }
  return db;
}

static void NameWithANulByteIsKeptWhole(void) {
  sparlane_db_t* db = db_with_nul_material();
  sparlane_name_list_t names;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_materials(db, &names), 3);
  REQUIRE(names.count == 3);
  CHECK_INT(names.items[2].length, kNulLength);
  CHECK(memcmp(names.items[2].data, kNulName, kNulLength + 1) == 0);
  CHECK_INT(names.items[0].length, 10);
  CHECK_STR(names.items[0].data, "Mild steel");
  sparlane_name_list_free(&names);
  CHECK(names.items == NULL && names.count == 0);
  sparlane_db_destroy(db);
}

static void QueriesFindANameWithANulByteByLength(void) {
  sparlane_db_t* db = db_with_nul_material();
  sparlane_parameter_t found;
  sparlane_parameter_list_t list, other;
  sparlane_thickness_range_t range;
  sparlane_interpolation_t r;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_exact_n(db, kNulName, kNulLength, 5.0f, "AIR-45A", 7, 0.01f, &found),
            1);
  CHECK_INT(found.material_id, 3);
  /* The same bytes up to the NUL are another name. */
  CHECK_INT(sparlane_db_find_exact(db, kNulName, 5.0f, "AIR-45A", 0.01f, &found), 0);
  CHECK_INT(sparlane_db_find_nearest_n(db, kNulName, kNulLength, 8.0f, "AIR-45A", 7, &found), 1);
  CHECK(found.thickness_mm == 9.0f);
  CHECK_INT(sparlane_db_find_by_material_n(db, kNulName, kNulLength, &list), 2);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_find_by_machine_n(db, "Air plasma!", 10, "AIR-45A!", 7, &list),
            sparlane_db_find_by_machine(db, "Air plasma", "AIR-45A", &other));
  CHECK(list.count > 0 && list.count == other.count);
  sparlane_parameter_list_free(&list);
  sparlane_parameter_list_free(&other);
  CHECK_INT(sparlane_db_find_by_machine_n(db, NULL, 0, "HD-130", 6, &list), 1);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_supported_thickness_range_n(db, kNulName, kNulLength, NULL, 0, &range), 1);
  CHECK(range.min_thickness_mm == 5.0f && range.max_thickness_mm == 9.0f);
  CHECK_INT(sparlane_db_interpolate_n(db, kNulName, kNulLength, 7.0f, "AIR-45A", 7, &r), 1);
  CHECK_NEAR(r.parameter.cut_speed_mm_min, 3000.0f);
  CHECK_INT(sparlane_db_find_optimal_n(db, kNulName, kNulLength, 9.0f, 0.01f, &found), 1);
  CHECK(found.cut_speed_mm_min == 2000.0f);
  sparlane_db_destroy(db);
}

static void LengthLimitsTheName(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  REQUIRE(db != NULL);
  /* Only the first 10 bytes count: "Mild steel". */
  CHECK_INT(sparlane_db_find_exact_n(db, "Mild steel and more", 10, 6.0f, "AIR-45A!", 7, 0.01f,
                                     &found),
            1);
  sparlane_db_destroy(db);
}

static void NullWithLengthZeroIsTheEmptyName(void) {
  sparlane_db_t* db = sample_db();
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_material_n(db, NULL, 0), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Material name cannot be empty");
  CHECK_INT(sparlane_db_add_machine_n(db, NULL, 0, "M", 1, NULL, 0), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Vendor and model names cannot be empty");
  sparlane_db_destroy(db);
}

static void NullWithALengthIsRefused(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_add_material_n(db, NULL, 3), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Name is NULL");
  CHECK_INT(sparlane_db_add_machine_n(db, "V", 1, NULL, 2, NULL, 0), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_machine_n(db, "V", 1, "M", 1, NULL, 4), SPARLANE_INVALID_PARAMETER);
  CHECK_STR(sparlane_db_last_error(db), "Name is NULL");
  CHECK_INT(sparlane_db_find_exact_n(db, NULL, 4, 6.0f, "AIR-45A", 7, 0.01f, &found), 0);
  CHECK_INT(sparlane_db_add_material_n(NULL, "x", 1), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_add_machine_n(NULL, "V", 1, "M", 1, NULL, 0), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

const test_case names_tests[] = {
    {"NameWithANulByteIsKeptWhole", NameWithANulByteIsKeptWhole},
    {"QueriesFindANameWithANulByteByLength", QueriesFindANameWithANulByteByLength},
    {"LengthLimitsTheName", LengthLimitsTheName},
    {"NullWithLengthZeroIsTheEmptyName", NullWithLengthZeroIsTheEmptyName},
    {"NullWithALengthIsRefused", NullWithALengthIsRefused},
    TEST_END};
