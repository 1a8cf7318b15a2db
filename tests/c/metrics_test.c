/* The performance counters and the query log. */
#if !defined(_WIN32)
#define _POSIX_C_SOURCE 200809L
#endif

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

#if defined(_WIN32)
#include <io.h>
#define dup _dup
#define dup2 _dup2
#define close _close
#define fileno _fileno
#else
#include <unistd.h>
#endif

static void CountersFollowTheTimedQueries(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_interpolation_t r;
  sparlane_performance_metrics_t m;
  REQUIRE(db != NULL);
  sparlane_db_reset_performance_metrics(db);
  sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.01f, &found);
  sparlane_db_find_exact(db, "Mild steel", 7.0f, "AIR-45A", 0.01f, &found);
  sparlane_db_interpolate(db, "Mild steel", 8.0f, "AIR-45A", &r);
  sparlane_db_find_optimal(db, "Mild steel", 6.0f, 0.01f, &found);
  CHECK_INT(sparlane_db_performance_metrics(db, &m), SPARLANE_SUCCESS);
  CHECK_INT(m.total_queries, 4);
  CHECK_INT(m.queries_found, 3);
  CHECK_INT(m.queries_not_found, 1);
  CHECK(m.min_query_time_us <= m.avg_query_time_us);
  CHECK(m.avg_query_time_us <= m.max_query_time_us);
  sparlane_db_destroy(db);
}

static void ResetPutsTheCountersBack(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_performance_metrics_t m;
  REQUIRE(db != NULL);
  sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.01f, &found);
  sparlane_db_reset_performance_metrics(db);
  CHECK_INT(sparlane_db_performance_metrics(db, &m), SPARLANE_SUCCESS);
  CHECK_INT(m.total_queries, 0);
  CHECK_INT(m.queries_found, 0);
  CHECK(m.avg_query_time_us == 0.0 && m.max_query_time_us == 0.0);
  CHECK(m.min_query_time_us == 1.0e9);
  sparlane_db_destroy(db);
}

static void MetricsRefuseNullAndTheSwitchesIgnoreIt(void) {
  sparlane_db_t* db = sample_db();
  sparlane_performance_metrics_t m;
  REQUIRE(db != NULL);
  CHECK_INT(sparlane_db_performance_metrics(NULL, &m), SPARLANE_INVALID_PARAMETER);
  CHECK_INT(sparlane_db_performance_metrics(db, NULL), SPARLANE_INVALID_PARAMETER);
  sparlane_db_set_query_logging(NULL, 1);
  sparlane_db_reset_performance_metrics(NULL);
  sparlane_db_destroy(db);
}

/* Runs one find_exact with standard error sent to a file; returns what was
 * written there (free with free()). */
static char* logged_output(sparlane_db_t* db) {
  path_t path = scratch_path("stderr.txt");
  FILE* sink = fopen(path.text, "wb");
  sparlane_parameter_t found;
  unsigned char* text;
  size_t size = 0;
  int saved;
  if (sink == NULL) return NULL;
  fflush(stderr);
  saved = dup(fileno(stderr));
  dup2(fileno(sink), fileno(stderr));
  sparlane_db_find_exact(db, "Mild steel", 6.0f, "AIR-45A", 0.01f, &found);
  fflush(stderr);
  dup2(saved, fileno(stderr));
  close(saved);
  fclose(sink);
  text = read_file(path.text, &size);
  if (text == NULL) return NULL;
  text = (unsigned char*)realloc(text, size + 1);
  if (text != NULL) text[size] = '\0';
  return (char*)text;
}

static void QueryLogWritesOneLinePerQueryWhenOn(void) {
  sparlane_db_t* db = sample_db();
  char* text;
  REQUIRE(db != NULL);
  text = logged_output(db);
  REQUIRE(text != NULL);
  CHECK_STR(text, "");
  free(text);
  sparlane_db_set_query_logging(db, 1);
  text = logged_output(db);
  REQUIRE(text != NULL);
  CHECK(strstr(text, "FindExact") != NULL);
  CHECK(strchr(text, '\n') == text + strlen(text) - 1);
  free(text);
  sparlane_db_set_query_logging(db, 0);
  text = logged_output(db);
  REQUIRE(text != NULL);
  CHECK_STR(text, "");
  free(text);
  sparlane_db_destroy(db);
}

const test_case metrics_tests[] = {
    {"CountersFollowTheTimedQueries", CountersFollowTheTimedQueries},
    {"ResetPutsTheCountersBack", ResetPutsTheCountersBack},
    {"MetricsRefuseNullAndTheSwitchesIgnoreIt", MetricsRefuseNullAndTheSwitchesIgnoreIt},
    {"QueryLogWritesOneLinePerQueryWhenOn", QueryLogWritesOneLinePerQueryWhenOn},
    TEST_END};
