/* A small test harness for the C test program: named test cases, checks that
 * report file and line and keep going, and a runner. */
#ifndef SPARLANE_TESTS_C_CHECK_H_
#define SPARLANE_TESTS_C_CHECK_H_

#include <stddef.h>

typedef struct test_case {
  const char* name;
  void (*run)(void);
} test_case;

/* Each test file ends its table with TEST_END. */
#define TEST_END {NULL, NULL}

void check_failed(const char* file, int line, const char* text);
void check_failed_int(const char* file, int line, const char* text, long long actual,
                      long long expected);
void check_failed_str(const char* file, int line, const char* text, const char* actual,
                      const char* expected);
void check_failed_float(const char* file, int line, const char* text, double actual,
                        double expected);
int check_near(double actual, double expected);
int check_same_text(const char* actual, const char* expected);

#define CHECK(cond) \
  do { \
    if (!(cond)) check_failed(__FILE__, __LINE__, #cond); \
  } while (0)

#define CHECK_INT(actual, expected) \
  do { \
    long long check_a_ = (long long)(actual); \
    long long check_e_ = (long long)(expected); \
    if (check_a_ != check_e_) \
      check_failed_int(__FILE__, __LINE__, #actual, check_a_, check_e_); \
  } while (0)

#define CHECK_STR(actual, expected) \
  do { \
    const char* check_a_ = (actual); \
    const char* check_e_ = (expected); \
    if (!check_same_text(check_a_, check_e_)) \
      check_failed_str(__FILE__, __LINE__, #actual, check_a_, check_e_); \
  } while (0)

/* Floats: equal within a relative 1e-5 (results of float arithmetic). */
#define CHECK_NEAR(actual, expected) \
  do { \
    double check_a_ = (double)(actual); \
    double check_e_ = (double)(expected); \
    if (!check_near(check_a_, check_e_)) \
      check_failed_float(__FILE__, __LINE__, #actual, check_a_, check_e_); \
  } while (0)

/* Stops the current test when a precondition fails. */
#define REQUIRE(cond) \
  do { \
    if (!(cond)) { \
      check_failed(__FILE__, __LINE__, #cond); \
      return; \
    } \
  } while (0)

#endif /* SPARLANE_TESTS_C_CHECK_H_ */
