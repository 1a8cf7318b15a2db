/* The run-time version calls agree with the header the host compiled with. */
#include <stdio.h>

#include "check.h"
#include "fixtures.h"

static void VersionStringIsTheHeaderVersion(void) {
  char expected[32];
  snprintf(expected, sizeof expected, "%d.%d.%d", SPARLANE_VERSION_MAJOR, SPARLANE_VERSION_MINOR,
           SPARLANE_VERSION_PATCH);
  CHECK_STR(sparlane_version(), expected);
}

static void VersionNumberIsMajorMinorPatchInOneInteger(void) {
  CHECK_INT(sparlane_version_number(), SPARLANE_VERSION_NUMBER);
  CHECK_INT(sparlane_version_number(), SPARLANE_VERSION_MAJOR * 10000 +
                                           SPARLANE_VERSION_MINOR * 100 + SPARLANE_VERSION_PATCH);
}

const test_case version_tests[] = {
    {"VersionStringIsTheHeaderVersion", VersionStringIsTheHeaderVersion},
    {"VersionNumberIsMajorMinorPatchInOneInteger", VersionNumberIsMajorMinorPatchInOneInteger},
    TEST_END};
