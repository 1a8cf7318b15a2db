/* The Testing primitives through the C interface. */
#include <math.h>
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

/* The header of a file the library saved. */
static int saved_header(sparlane_file_header_t* header) {
  path_t path = scratch_path("header.slb");
  unsigned char* bytes;
  size_t size = 0;
  if (save_sample(path.text, SPARLANE_COMPRESSION_LZ4) != SPARLANE_SUCCESS) return 0;
  bytes = read_file(path.text, &size);
  if (bytes == NULL || size < sizeof *header) {
    free(bytes);
    return 0;
  }
  memcpy(header, bytes, sizeof *header);
  free(bytes);
  return 1;
}

/* The stand-alone test's checksum: all 1024 bytes, checksum bytes zero. */
static void reseal(sparlane_file_header_t* header) {
  header->header_crc32 = 0;
  header->header_crc32 = sparlane_testing_calculate_crc32(header, sizeof *header);
}

static void HeaderTestResults(void) {
  sparlane_file_header_t header, h;
  REQUIRE(saved_header(&header));
  CHECK_INT(header.magic, 0x4E4C5053u);
  CHECK_INT(header.parameter_count, kSampleRecords);
  CHECK_INT(header.vendor_table_offset, 1024);
  /* The writer's checksum skips bytes 128-143; this test covers them. */
  CHECK_INT(sparlane_testing_validate_header(&header), SPARLANE_CHECKSUM_MISMATCH);
  h = header;
  h.header_crc32 = 0;
  CHECK_INT(sparlane_testing_validate_header(&h), SPARLANE_SUCCESS);
  h = header;
  reseal(&h);
  CHECK_INT(sparlane_testing_validate_header(&h), SPARLANE_SUCCESS);
  h = header;
  h.magic = 0x12345678u;
  CHECK_INT(sparlane_testing_validate_header(&h), SPARLANE_INVALID_MAGIC);
  h = header;
  h.version_major = 2;
  CHECK_INT(sparlane_testing_validate_header(&h), SPARLANE_UNSUPPORTED_VERSION);
  h = header;
  h.aux_offset_1 = 5;
  reseal(&h);
  CHECK_INT(sparlane_testing_validate_header(&h), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_validate_header(NULL), SPARLANE_INVALID_PARAMETER);
}

static void Crc32IsTheZipChecksum(void) {
  CHECK_INT(sparlane_testing_calculate_crc32("123456789", 9), 0xCBF43926u);
  CHECK_INT(sparlane_testing_calculate_crc32(NULL, 9), 0);
  CHECK_INT(sparlane_testing_calculate_crc32("abc", 0), 0);
}

static void SanitizePathDropsParentReferencesAndNulBytes(void) {
  size_t length = 99;
  char* clean = sparlane_testing_sanitize_path("data/../cut.slb");
  char* big_path = (char*)malloc(5001);
  REQUIRE(clean != NULL && big_path != NULL);
  CHECK_STR(clean, "data//cut.slb");
  sparlane_free(clean);
  clean = sparlane_testing_sanitize_path_n("a\0..b", 5, &length);
  REQUIRE(clean != NULL);
  CHECK_STR(clean, "ab");
  CHECK_INT(length, 2);
  sparlane_free(clean);
  memset(big_path, 'p', 5000);
  big_path[5000] = '\0';
  clean = sparlane_testing_sanitize_path_n(big_path, 5000, &length);
  REQUIRE(clean != NULL);
  CHECK_INT(length, 4096);
  CHECK_INT(strlen(clean), 4096);
  sparlane_free(clean);
  free(big_path);
  CHECK(sparlane_testing_sanitize_path(NULL) == NULL);
  CHECK(sparlane_testing_sanitize_path_n(NULL, 3, &length) == NULL);
  CHECK_INT(length, 0);
  clean = sparlane_testing_sanitize_path_n(NULL, 0, NULL);
  REQUIRE(clean != NULL);
  CHECK_STR(clean, "");
  sparlane_free(clean);
  sparlane_free(NULL);
}

static void InterpolateLinearBetweenTwoRecords(void) {
  sparlane_parameter_t lower = sample_record(1, 1, 1, 6.0f, 3000.0f);
  sparlane_parameter_t upper = sample_record(1, 1, 1, 10.0f, 2000.0f);
  sparlane_parameter_t out;
  upper.current_amps = 70;
  CHECK_INT(sparlane_testing_interpolate_linear(&lower, &upper, 8.0f, &out), SPARLANE_SUCCESS);
  CHECK(out.thickness_mm == 8.0f && out.cut_speed_mm_min == 2500.0f);
  CHECK_INT(out.current_amps, 68);
  CHECK_INT(out.flags, SPARLANE_FLAG_DERIVED);
  CHECK_INT(sparlane_testing_interpolate_linear(NULL, &upper, 8.0f, &out),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_interpolate_linear(&lower, NULL, 8.0f, &out),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_interpolate_linear(&lower, &upper, 8.0f, NULL),
            SPARLANE_INVALID_PARAMETER);
}

static void PerformInterpolationFromOneOrTwoNeighbours(void) {
  sparlane_parameter_t lower = sample_record(1, 1, 1, 6.0f, 3000.0f);
  sparlane_parameter_t upper = sample_record(1, 1, 1, 10.0f, 2000.0f);
  sparlane_interpolation_t r;
  CHECK_INT(sparlane_testing_perform_interpolation(&lower, &upper, 7.0f, &r), SPARLANE_SUCCESS);
  CHECK_NEAR(r.confidence, 0.95);
  CHECK_INT(r.extrapolated, 0);
  CHECK(r.parameter.cut_speed_mm_min == 2750.0f);
  CHECK_INT(sparlane_testing_perform_interpolation(NULL, &upper, 12.0f, &r), SPARLANE_SUCCESS);
  CHECK_INT(r.extrapolated, 1);
  CHECK_NEAR(r.confidence, 0.5);
  CHECK(r.parameter.thickness_mm == 12.0f);
  CHECK_INT(sparlane_testing_perform_interpolation(&lower, NULL, 6.0f, &r), SPARLANE_SUCCESS);
  CHECK_NEAR(r.confidence, 0.7);
  CHECK_INT(sparlane_testing_perform_interpolation(NULL, NULL, 6.0f, &r), SPARLANE_SUCCESS);
  CHECK(r.confidence == 0.0f);
  CHECK_INT(r.extrapolated, 0);
  CHECK_INT(sparlane_testing_perform_interpolation(&lower, &upper, 7.0f, NULL),
            SPARLANE_INVALID_PARAMETER);
}

static void ExtrapolateConservativelyBothWays(void) {
  sparlane_parameter_t source = sample_record(1, 1, 1, 10.0f, 2000.0f);
  sparlane_parameter_t out;
  CHECK_INT(sparlane_testing_extrapolate_conservative(&source, 40.0f, &out), SPARLANE_SUCCESS);
  CHECK(out.thickness_mm == 40.0f && out.cut_speed_mm_min == 1000.0f);
  CHECK(out.pierce_time_s == 1.0f);
  CHECK_NEAR(out.pierce_height_mm, 3.5 * 1.1);
  CHECK_INT(out.flags, SPARLANE_FLAG_DERIVED);
  CHECK_INT(sparlane_testing_extrapolate_conservative(&source, 5.0f, &out), SPARLANE_SUCCESS);
  CHECK_NEAR(out.cut_speed_mm_min, 2000.0 * pow(2.0, 0.7));
  CHECK(out.pierce_time_s == 0.25f);
  CHECK_INT(sparlane_testing_extrapolate_conservative(NULL, 5.0f, &out),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_extrapolate_conservative(&source, 5.0f, NULL),
            SPARLANE_INVALID_PARAMETER);
}

static void TorchAngleAdjustment(void) {
  sparlane_parameter_t base = sample_record(1, 1, 1, 10.0f, 2000.0f);
  sparlane_parameter_t out;
  CHECK_INT(sparlane_testing_adjust_for_torch_angle(&base, 0.0f, &out), SPARLANE_SUCCESS);
  CHECK(same_record(&out, &base));
  CHECK_INT(sparlane_testing_adjust_for_torch_angle(&base, 60.0f, &out), SPARLANE_SUCCESS);
  CHECK_NEAR(out.thickness_mm, 20.0);
  CHECK_NEAR(out.cut_speed_mm_min, 2000.0 * sqrt(0.5));
  CHECK_NEAR(out.pierce_time_s, 1.0);
  CHECK_INT(out.flags, SPARLANE_FLAG_ANGLE_ADJUSTED);
  CHECK_INT(sparlane_testing_adjust_for_torch_angle(NULL, 60.0f, &out),
            SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_adjust_for_torch_angle(&base, 60.0f, NULL),
            SPARLANE_INVALID_PARAMETER);
}

static void ValidateParameterChecksPhysicalRanges(void) {
  sparlane_parameter_t p = sample_record(1, 1, 1, 10.0f, 2000.0f);
  CHECK_INT(sparlane_testing_validate_parameter(&p), SPARLANE_SUCCESS);
  p.cut_height_mm = 5.0f; /* above the pierce height */
  CHECK_INT(sparlane_testing_validate_parameter(&p), SPARLANE_INVALID_PARAMETER);
  p = sample_record(1, 1, 1, 400.0f, 2000.0f);
  CHECK_INT(sparlane_testing_validate_parameter(&p), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_testing_validate_parameter(NULL), SPARLANE_INVALID_PARAMETER);
}

static void StatisticalOutlier(void) {
  const float sample[] = {10.0f, 11.0f, 9.0f, 10.0f, 10.0f};
  CHECK_INT(sparlane_testing_is_statistical_outlier(20.0f, sample, 5, 2.0f), 1);
  CHECK_INT(sparlane_testing_is_statistical_outlier(10.5f, sample, 5, 2.0f), 0);
  CHECK_INT(sparlane_testing_is_statistical_outlier(20.0f, sample, 2, 2.0f), 0);
  CHECK_INT(sparlane_testing_is_statistical_outlier(20.0f, NULL, 5, 2.0f), 0);
  CHECK_INT(sparlane_testing_is_statistical_outlier(20.0f, NULL, 0, 2.0f), 0);
}

const test_case testing_functions_tests[] = {
    {"HeaderTestResults", HeaderTestResults},
    {"Crc32IsTheZipChecksum", Crc32IsTheZipChecksum},
    {"SanitizePathDropsParentReferencesAndNulBytes", SanitizePathDropsParentReferencesAndNulBytes},
    {"InterpolateLinearBetweenTwoRecords", InterpolateLinearBetweenTwoRecords},
    {"PerformInterpolationFromOneOrTwoNeighbours", PerformInterpolationFromOneOrTwoNeighbours},
    {"ExtrapolateConservativelyBothWays", ExtrapolateConservativelyBothWays},
    {"TorchAngleAdjustment", TorchAngleAdjustment},
    {"ValidateParameterChecksPhysicalRanges", ValidateParameterChecksPhysicalRanges},
    {"StatisticalOutlier", StatisticalOutlier},
    TEST_END};
