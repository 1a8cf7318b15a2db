/* The C interface's test program, written in C and linked with the C
 * compiler against the shared library only.  Usage: test_c [name-filter] */
#include <stdio.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

extern int check_failures;

extern const test_case version_tests[];
extern const test_case lifecycle_tests[];
extern const test_case files_tests[];
extern const test_case queries_tests[];
extern const test_case names_tests[];
extern const test_case metrics_tests[];
extern const test_case validate_tests[];
extern const test_case editing_tests[];
extern const test_case catalogue_tests[];
extern const test_case calculators_tests[];
extern const test_case export_tests[];
extern const test_case testing_functions_tests[];
#if defined(SPARLANE_TEST_ALLOCATION_FAILURES)
extern const test_case out_of_memory_tests[];
#endif
#if defined(_WIN32)
extern const test_case windows_host_tests[];
#endif

static const test_case* const suites[] = {
    version_tests,   lifecycle_tests,   files_tests,      queries_tests,
    names_tests,     metrics_tests,     validate_tests,   editing_tests,
    catalogue_tests, calculators_tests, export_tests,     testing_functions_tests,
#if defined(SPARLANE_TEST_ALLOCATION_FAILURES)
    out_of_memory_tests,
#endif
#if defined(_WIN32)
    windows_host_tests,
#endif
    NULL};

int main(int argc, char** argv) {
  const char* filter = argc > 1 ? argv[1] : NULL;
  int run = 0;
  int failed = 0;
  size_t s;
  for (s = 0; suites[s] != NULL; ++s) {
    const test_case* t;
    for (t = suites[s]; t->name != NULL; ++t) {
      int before = check_failures;
      if (filter != NULL && strstr(t->name, filter) == NULL) continue;
      scratch_reset();
      t->run();
      ++run;
      if (check_failures != before) {
        ++failed;
        printf("[FAILED] %s\n", t->name);
      } else {
        printf("[ok] %s\n", t->name);
      }
    }
  }
  scratch_remove();
  printf("%d tests, %d failed\n", run, failed);
  return failed == 0 && run > 0 ? 0 : 1;
}
