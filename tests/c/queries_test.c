/* Lookups, interpolation and adjustments on the sample database. */
#include <float.h>
#include <math.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

static int all_zero(const void* data, size_t size) {
  const unsigned char* bytes = (const unsigned char*)data;
  size_t i;
  for (i = 0; i < size; ++i) {
    if (bytes[i] != 0) return 0;
  }
  return 1;
}

static void FindExactGivesTheStoredRecord(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_parameter_t expected = sample_table(1);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.0005f, "AIR-45A", 0.001f, &found), 1);
  CHECK(same_record(&found, &expected));
  sparlane_db_destroy(db);
}

static void FindExactMissGivesZeroAndAZeroedRecord(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  REQUIRE(db != NULL);
  memset(&found, 0xAB, sizeof found);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 7.0f, "AIR-45A", 0.001f, &found), 0);
  CHECK(all_zero(&found, sizeof found));
  memset(&found, 0xAB, sizeof found);
  CHECK_INT(sparlane_db_find_exact(db, "Copper", 6.0f, "AIR-45A", 0.001f, &found), 0);
  CHECK(all_zero(&found, sizeof found));
  sparlane_db_destroy(db);
}

static void QueriesWithNullArgumentsGiveTheEmptyResult(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_parameter_list_t list;
  sparlane_thickness_range_t range;
  sparlane_interpolation_t result;
  REQUIRE(db != NULL);
  memset(&found, 0xAB, sizeof found);
  CHECK_INT(sparlane_db_find_exact(NULL, "Mild steel", 6.0f, "AIR-45A", 0.01f, &found), 0);
  CHECK(all_zero(&found, sizeof found));
  CHECK_INT(sparlane_db_find_exact(db, NULL, 6.0f, "AIR-45A", 0.01f, &found), 0);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.0f, NULL, 0.01f, &found), 0);
  CHECK_INT(sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.01f, NULL), 0);
  CHECK_INT(sparlane_db_find_nearest(db, NULL, 6.0f, "AIR-45A", &found), 0);
  CHECK_INT(sparlane_db_find_nearest(NULL, "Mild steel", 6.0f, "AIR-45A", &found), 0);
  CHECK_INT(sparlane_db_find_nearest(db, "Mild steel", 6.0f, "AIR-45A", NULL), 0);
  CHECK_INT(sparlane_db_find_optimal(db, NULL, 6.0f, 0.1f, &found), 0);
  CHECK_INT(sparlane_db_find_optimal(NULL, "Mild steel", 6.0f, 0.1f, &found), 0);
  CHECK_INT(sparlane_db_find_optimal(db, "Mild steel", 6.0f, 0.1f, NULL), 0);
  CHECK_INT(sparlane_db_find_by_machine(db, NULL, NULL, &list), 0);
  CHECK(list.items == NULL && list.count == 0);
  CHECK_INT(sparlane_db_find_by_machine(NULL, NULL, "AIR-45A", &list), 0);
  CHECK_INT(sparlane_db_find_by_machine(db, NULL, "AIR-45A", NULL), 0);
  CHECK_INT(sparlane_db_find_by_material(db, NULL, &list), 0);
  CHECK(list.items == NULL && list.count == 0);
  CHECK_INT(sparlane_db_find_by_material(NULL, "Mild steel", &list), 0);
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", NULL), 0);
  memset(&range, 0xAB, sizeof range);
  CHECK_INT(sparlane_db_supported_thickness_range(db, NULL, "AIR-45A", &range), 0);
  CHECK(all_zero(&range, sizeof range));
  CHECK_INT(sparlane_db_supported_thickness_range(NULL, "Mild steel", NULL, &range), 0);
  CHECK_INT(sparlane_db_supported_thickness_range(db, "Mild steel", NULL, NULL), 0);
  memset(&result, 0xAB, sizeof result);
  CHECK_INT(sparlane_db_interpolate(NULL, "Mild steel", 8.0f, "AIR-45A", &result), 0);
  CHECK(result.confidence == 0.0f && result.extrapolated == 0);
  CHECK(all_zero(&result.parameter, sizeof result.parameter));
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 8.0f, NULL, &result), 0);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 8.0f, "AIR-45A", NULL), 0);
  sparlane_db_destroy(db);
}

static void FindNearestGivesTheClosestThickness(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_parameter_t expected = sample_table(1);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_nearest(db, "Mild steel", 7.0f, "AIR-45A", &found), 1);
  CHECK(same_record(&found, &expected));
  CHECK_INT(sparlane_db_find_nearest(db, "Mild steel", 7.0f, "HD-999", &found), 0);
  sparlane_db_destroy(db);
}

static void FindByMachineCopiesTheMachineSpanOfTheTable(void) {
  /* AIR-45A's records are 0, 1, 2 and 5; its index span, taken as it lies,
     covers positions 0 to 3. */
  sparlane_db_t* db = sample_db();
  sparlane_parameter_list_t list;
  size_t i;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_by_machine(db, NULL, "AIR-45A", &list), 4);
  REQUIRE(list.count == 4 && list.items != NULL);
  for (i = 0; i < 4; ++i) {
    sparlane_parameter_t want = sample_table(i);
    CHECK(same_record(&list.items[i], &want));
  }
  sparlane_parameter_list_free(&list);
  CHECK(list.items == NULL && list.count == 0);
  CHECK_INT(sparlane_db_find_by_machine(db, "", "HD-130", &list), 1);
  REQUIRE(list.count == 1);
  CHECK_INT(list.items[0].thickness_mm, 12);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_find_by_machine(db, "High definition", "HD-130", &list), 1);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_find_by_machine(db, "Air plasma", "HD-130", &list), 0);
  CHECK(list.items == NULL && list.count == 0);
  CHECK_INT(sparlane_db_find_by_machine(db, NULL, "AIR-99", &list), 0);
  sparlane_db_destroy(db);
}

static void FindByMaterialListsEveryMachine(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_list_t list;
  sparlane_parameter_t want = sample_table(5);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 5);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_find_by_material(db, "Stainless steel", &list), 1);
  REQUIRE(list.count == 1);
  CHECK(same_record(&list.items[0], &want));
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_db_find_by_material(db, "Copper", &list), 0);
  CHECK(list.items == NULL);
  sparlane_parameter_list_free(&list);
  sparlane_parameter_list_free(NULL);
  sparlane_db_destroy(db);
}

static void ThicknessRangeOfOneMachineOrOfAny(void) {
  sparlane_db_t* db = sample_db();
  sparlane_thickness_range_t range;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_supported_thickness_range(db, "Mild steel", "AIR-45A", &range), 1);
  CHECK(range.min_thickness_mm == 3.0f && range.max_thickness_mm == 10.0f);
  CHECK_INT(range.parameter_count, 3);
  CHECK_INT(range.valid, 1);
  CHECK_INT(sparlane_db_supported_thickness_range(db, "Mild steel", NULL, &range), 1);
  CHECK(range.min_thickness_mm == 3.0f && range.max_thickness_mm == 12.0f);
  CHECK_INT(range.parameter_count, 5);
  CHECK_INT(sparlane_db_supported_thickness_range(db, "Mild steel", "", &range), 1);
  CHECK_INT(range.parameter_count, 5);
  CHECK_INT(sparlane_db_supported_thickness_range(db, "Copper", NULL, &range), 0);
  CHECK_INT(range.valid, 0);
  CHECK_INT(range.parameter_count, 0);
  CHECK(range.min_thickness_mm == FLT_MAX && range.max_thickness_mm == -FLT_MAX);
  sparlane_db_destroy(db);
}

static void InterpolateBetweenTwoListedThicknesses(void) {
  sparlane_db_t* db = sample_db();
  sparlane_interpolation_t r;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 8.0f, "AIR-45A", &r), 1);
  CHECK_NEAR(r.confidence, 1.0f);
  CHECK_INT(r.extrapolated, 0);
  CHECK(r.parameter.thickness_mm == 8.0f);
  CHECK_NEAR(r.parameter.cut_speed_mm_min, 2500.0f);
  CHECK_NEAR(r.parameter.arc_voltage_v, 128.0f);
  CHECK(r.parameter.flags & SPARLANE_FLAG_DERIVED);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 7.0f, "AIR-45A", &r), 1);
  CHECK_NEAR(r.confidence, 0.9f);
  CHECK_NEAR(r.parameter.cut_speed_mm_min, 2750.0f);
  sparlane_db_destroy(db);
}

static void InterpolateAtAListedThicknessGivesTheRecord(void) {
  sparlane_db_t* db = sample_db();
  sparlane_interpolation_t r;
  sparlane_parameter_t expected = sample_table(2);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 10.0f, "AIR-45A", &r), 1);
  CHECK(r.confidence == 1.0f);
  CHECK(same_record(&r.parameter, &expected));
  sparlane_db_destroy(db);
}

static void InterpolateBeyondTheTableExtrapolates(void) {
  sparlane_db_t* db = sample_db();
  sparlane_interpolation_t r;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", 20.0f, "AIR-45A", &r), 1);
  CHECK_INT(r.extrapolated, 1);
  CHECK_NEAR(r.confidence, 0.3f);
  CHECK_NEAR(r.parameter.cut_speed_mm_min, 2000.0 / sqrt(2.0));
  sparlane_db_destroy(db);
}

static void InterpolateWithNothingToBuildOnGivesZeroConfidence(void) {
  sparlane_db_t* db = sample_db();
  sparlane_interpolation_t r;
  REQUIRE(db != NULL);
  memset(&r, 0xAB, sizeof r);
  CHECK_INT(sparlane_db_interpolate(db, "Copper", 8.0f, "AIR-45A", &r), 0);
  CHECK(r.confidence == 0.0f && r.extrapolated == 0);
  CHECK(all_zero(&r.parameter, sizeof r.parameter));
  CHECK_INT(sparlane_db_interpolate(db, "Mild steel", -1.0f, "AIR-45A", &r), 0);
  sparlane_db_destroy(db);
}

static void FindOptimalGivesTheFastestMachine(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_parameter_t expected = sample_table(3);
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_find_optimal(db, "Mild steel", 6.0f, 0.01f, &found), 1);
  CHECK(same_record(&found, &expected));
  CHECK_INT(sparlane_db_find_optimal(db, "Mild steel", 8.0f, 0.01f, &found), 0);
  sparlane_db_destroy(db);
}

static void AdjustForMaxSpeedCapsTheSpeed(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t base = sample_table(1);
  sparlane_parameter_t out;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_adjust_for_max_speed(db, &base, 2500.0f, &out), SPARLANE_SUCCESS);
  CHECK(out.cut_speed_mm_min == 2500.0f);
  CHECK(out.flags & SPARLANE_FLAG_SPEED_CAPPED);
  CHECK_INT(sparlane_db_adjust_for_max_speed(db, &base, 4000.0f, &out), SPARLANE_SUCCESS);
  CHECK(same_record(&out, &base));
  CHECK_INT(sparlane_db_adjust_for_max_speed(NULL, &base, 1.0f, &out), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_adjust_for_max_speed(db, NULL, 1.0f, &out), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_adjust_for_max_speed(db, &base, 1.0f, NULL), SPARLANE_INVALID_PARAMETER);
  sparlane_db_destroy(db);
}

static void EffectiveThicknessOfATiltedTorch(void) {
  CHECK(sparlane_calculate_effective_thickness(10.0f, 0.0f) == 10.0f);
  CHECK_NEAR(sparlane_calculate_effective_thickness(10.0f, 60.0f), 20.0f);
  CHECK(sparlane_calculate_effective_thickness(0.0f, 30.0f) == 0.0f);
  CHECK(sparlane_calculate_effective_thickness(10.0f, 100.0f) == 10.0f);
}

const test_case queries_tests[] = {
    {"FindExactGivesTheStoredRecord", FindExactGivesTheStoredRecord},
    {"FindExactMissGivesZeroAndAZeroedRecord", FindExactMissGivesZeroAndAZeroedRecord},
    {"QueriesWithNullArgumentsGiveTheEmptyResult", QueriesWithNullArgumentsGiveTheEmptyResult},
    {"FindNearestGivesTheClosestThickness", FindNearestGivesTheClosestThickness},
    {"FindByMachineCopiesTheMachineSpanOfTheTable", FindByMachineCopiesTheMachineSpanOfTheTable},
    {"FindByMaterialListsEveryMachine", FindByMaterialListsEveryMachine},
    {"ThicknessRangeOfOneMachineOrOfAny", ThicknessRangeOfOneMachineOrOfAny},
    {"InterpolateBetweenTwoListedThicknesses", InterpolateBetweenTwoListedThicknesses},
    {"InterpolateAtAListedThicknessGivesTheRecord", InterpolateAtAListedThicknessGivesTheRecord},
    {"InterpolateBeyondTheTableExtrapolates", InterpolateBeyondTheTableExtrapolates},
    {"InterpolateWithNothingToBuildOnGivesZeroConfidence",
     InterpolateWithNothingToBuildOnGivesZeroConfidence},
    {"FindOptimalGivesTheFastestMachine", FindOptimalGivesTheFastestMachine},
    {"AdjustForMaxSpeedCapsTheSpeed", AdjustForMaxSpeedCapsTheSpeed},
    {"EffectiveThicknessOfATiltedTorch", EffectiveThicknessOfATiltedTorch},
    TEST_END};
