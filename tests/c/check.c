#include "check.h"

#include <math.h>
#include <stdio.h>
#include <string.h>

int check_failures = 0;

void check_failed(const char* file, int line, const char* text) {
  ++check_failures;
  fprintf(stderr, "%s:%d: check failed: %s\n", file, line, text);
}

void check_failed_int(const char* file, int line, const char* text, long long actual,
                      long long expected) {
  ++check_failures;
  fprintf(stderr, "%s:%d: %s is %lld, expected %lld\n", file, line, text, actual, expected);
}

void check_failed_str(const char* file, int line, const char* text, const char* actual,
                      const char* expected) {
  ++check_failures;
  fprintf(stderr, "%s:%d: %s is \"%s\", expected \"%s\"\n", file, line, text,
          actual ? actual : "(null)", expected ? expected : "(null)");
}

void check_failed_float(const char* file, int line, const char* text, double actual,
                        double expected) {
  ++check_failures;
  fprintf(stderr, "%s:%d: %s is %.9g, expected %.9g\n", file, line, text, actual, expected);
}

int check_near(double actual, double expected) {
  double scale = fabs(expected) > 1.0 ? fabs(expected) : 1.0;
  return fabs(actual - expected) <= 1e-5 * scale;
}

int check_same_text(const char* actual, const char* expected) {
  if (actual == NULL || expected == NULL) return actual == expected;
  return strcmp(actual, expected) == 0;
}
