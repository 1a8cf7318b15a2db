/* Memory running out inside a call: every allocation a call makes is failed
 * in turn, and each run must give OUT_OF_MEMORY with its message (or another
 * failure code with a message, where the C library itself reports the
 * failed allocation), or the empty result for a query; never a crash.
 *
 * glibc only: this program's malloc and aligned_alloc (behind C++'s aligned
 * new) replace the C library's for the whole process, the shared library and
 * the C++ runtime included, and pass on to glibc's own allocator.  Not built
 * under the sanitizers, which bring their own malloc. */
#include <stdlib.h>
#include <string.h>

#include "check.h"
#include "fixtures.h"

extern void* __libc_malloc(size_t size);
extern void* __libc_memalign(size_t alignment, size_t size);

/* volatile: the compiler takes malloc for the builtin and would otherwise
   assume a call cannot read these. */
static volatile long allocations_until_failure = -1; /* -1: never fail */
static volatile int failure_hit = 0;

/* True when this allocation is the one to fail. */
static int fails_now(void) {
  if (allocations_until_failure == 0) {
    allocations_until_failure = -1;
    failure_hit = 1;
    return 1;
  }
  if (allocations_until_failure > 0) --allocations_until_failure;
  return 0;
}

void* malloc(size_t size) { return fails_now() ? NULL : __libc_malloc(size); }

void* aligned_alloc(size_t alignment, size_t size) {
  return fails_now() ? NULL : __libc_memalign(alignment, size);
}

static void fail_allocation(long n) {
  failure_hit = 0;
  allocations_until_failure = n;
}

/* True when the armed failure happened; disarms it. */
static int failure_happened(void) {
  allocations_until_failure = -1;
  return failure_hit;
}

typedef int (*operation)(sparlane_db_t* db);

static const char* kLongName = "A material name long enough to need the heap for its copy";

static int op_load(sparlane_db_t* db) { return sparlane_db_load(db, scratch_path("s.slb").text); }
static int op_save(sparlane_db_t* db) {
  return sparlane_db_save(db, scratch_path("out.slb").text, SPARLANE_COMPRESSION_LZ4);
}
#if defined(SPARLANE_TEST_WITH_SQLITE)
static const int kImportOutcome = SPARLANE_FILE_NOT_FOUND;
#else
static const int kImportOutcome = SPARLANE_NOT_LOADED;
#endif
static int op_import(sparlane_db_t* db) {
  return sparlane_db_import_sqlite(db, scratch_path("x.db").text);
}
static int op_validate(sparlane_db_t* db) { return sparlane_db_validate(db); }
static int op_add_parameter(sparlane_db_t* db) {
  sparlane_parameter_t p = sample_record(1, 1, 1, 30.0f, 500.0f);
  return sparlane_db_add_parameter(db, &p);
}
static int op_update_parameter(sparlane_db_t* db) {
  sparlane_parameter_t p = sample_table(0);
  return sparlane_db_update_parameter(db, 0, &p);
}
static int op_delete_parameter(sparlane_db_t* db) { return sparlane_db_delete_parameter(db, 0); }
static int op_add_machine(sparlane_db_t* db) {
  return sparlane_db_add_machine(db, "A vendor with a long enough name", kLongName, NULL);
}
static int op_add_material(sparlane_db_t* db) { return sparlane_db_add_material(db, kLongName); }
static int op_export_csv(sparlane_db_t* db) {
  return sparlane_db_export_csv(db, scratch_path("out.csv").text);
}
static int op_export_json(sparlane_db_t* db) {
  return sparlane_db_export_json(db, scratch_path("out.json").text);
}

/* Fails allocation 0, 1, 2, ... of op until op runs without meeting the
 * failure, which must then give its usual result.  A run that meets it gives
 * OUT_OF_MEMORY with its message, another failure with a message (the C
 * library reporting the allocation its own way), or success (the C library
 * going on without a buffer).  Returns how many runs met the failure. */
static long run_with_each_allocation_failing(operation op, int expected, const char* name) {
  long n;
  long met = 0;
  int saw_out_of_memory = 0;
  for (n = 0; n < 100000; ++n) {
    sparlane_db_t* db = sample_db();
    int code;
    if (db == NULL) {
      check_failed(__FILE__, __LINE__, name);
      return met;
    }
    fail_allocation(n);
    code = op(db);
    if (!failure_happened()) {
      if (code != expected) check_failed_int(__FILE__, __LINE__, name, code, expected);
      sparlane_db_destroy(db);
      break;
    }
    ++met;
    if (code == SPARLANE_OUT_OF_MEMORY) {
      saw_out_of_memory = 1;
      if (strcmp(sparlane_db_last_error(db), "Out of memory") != 0 &&
          strstr(sparlane_db_last_error(db), "Failed to open file: ") == NULL) {
        check_failed_str(__FILE__, __LINE__, name, sparlane_db_last_error(db), "Out of memory");
      }
    } else if (code != SPARLANE_SUCCESS && code != expected &&
               sparlane_db_last_error(db)[0] == '\0') {
      check_failed_int(__FILE__, __LINE__, name, code, SPARLANE_OUT_OF_MEMORY);
    }
    /* Whatever state the failure left, the handle still answers. */
    sparlane_db_is_loaded(db);
    sparlane_db_destroy(db);
  }
  if (met > 0 && !saw_out_of_memory) check_failed(__FILE__, __LINE__, name);
  return met;
}

static void EveryFallibleCallReportsExhaustedMemory(void) {
  static const struct {
    operation op;
    int expected;
    const char* name;
  } ops[] = {{op_load, SPARLANE_SUCCESS, "load"},
             {op_save, SPARLANE_SUCCESS, "save"},
             {op_import, kImportOutcome, "import_sqlite"},
             {op_validate, SPARLANE_INVALID_DATA, "validate"},
             {op_add_parameter, SPARLANE_SUCCESS, "add_parameter"},
             {op_update_parameter, SPARLANE_SUCCESS, "update_parameter"},
             {op_delete_parameter, SPARLANE_SUCCESS, "delete_parameter"},
             {op_add_machine, SPARLANE_SUCCESS, "add_machine"},
             {op_add_material, SPARLANE_SUCCESS, "add_material"},
             {op_export_csv, SPARLANE_SUCCESS, "export_csv"},
             {op_export_json, SPARLANE_SUCCESS, "export_json"}};
  size_t i;
  REQUIRE(save_sample(scratch_path("s.slb").text, SPARLANE_COMPRESSION_LZ4) == SPARLANE_SUCCESS);
  for (i = 0; i < sizeof ops / sizeof ops[0]; ++i) {
    /* Each of them allocates, so the failure is met and reported. */
    CHECK(run_with_each_allocation_failing(ops[i].op, ops[i].expected, ops[i].name) > 0);
  }
}

static void HandleCreationGivesNullWhenMemoryRunsOut(void) {
  sparlane_db_t* db;
  fail_allocation(0);
  db = sparlane_db_create();
  CHECK(failure_happened());
  CHECK(db == NULL);
  db = sparlane_db_create();
  CHECK(db != NULL);
  sparlane_db_destroy(db);
}

static void QueriesGiveTheEmptyResultWhenMemoryRunsOut(void) {
  sparlane_db_t* db = sample_db();
  sparlane_parameter_t found;
  sparlane_parameter_list_t list;
  sparlane_name_list_t names;
  sparlane_interpolation_t r;
  const float sample[] = {1.0f, 2.0f, 3.0f, 50.0f};
  REQUIRE(db != NULL);
  REQUIRE(sparlane_db_add_material(db, kLongName) == SPARLANE_SUCCESS);

  fail_allocation(0);
  CHECK_INT(sparlane_db_find_exact(db, kLongName, 6.0f, "AIR-45A", 0.01f, &found), 0);
  CHECK(failure_happened());
  fail_allocation(0);
  CHECK_INT(sparlane_db_interpolate(db, kLongName, 6.0f, "AIR-45A", &r), 0);
  CHECK(failure_happened());
  CHECK(r.confidence == 0.0f);
  fail_allocation(0);
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 0);
  CHECK(failure_happened());
  CHECK(list.items == NULL && list.count == 0);
  fail_allocation(1);
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 0);
  CHECK(failure_happened());
  CHECK(list.items == NULL && list.count == 0);
  fail_allocation(0);
  CHECK_INT(sparlane_db_materials(db, &names), 0);
  CHECK(failure_happened());
  CHECK(names.items == NULL && names.count == 0);
  fail_allocation(0);
  CHECK(sparlane_testing_sanitize_path("some/path") == NULL);
  CHECK(failure_happened());
  fail_allocation(0);
  CHECK_INT(sparlane_testing_is_statistical_outlier(50.0f, sample, 4, 1.0f), 0);
  CHECK(failure_happened());
  /* And with memory back, the same calls answer. */
  CHECK_INT(sparlane_db_find_by_material(db, "Mild steel", &list), 5);
  sparlane_parameter_list_free(&list);
  CHECK_INT(sparlane_testing_is_statistical_outlier(50.0f, sample, 4, 1.0f), 1);
  sparlane_db_destroy(db);
}

static void FailureWhoseMessageCannotBeCopiedKeepsItsCode(void) {
  /* Some allocation inside a refused validate is the copy of the refusal's
     message: that run keeps NOT_LOADED and says memory ran out. */
  long n;
  int kept_code = 0;
  for (n = 0; n < 100; ++n) {
    sparlane_db_t* db = sparlane_db_create();
    int code;
    REQUIRE(db != NULL);
    fail_allocation(n);
    code = sparlane_db_validate(db);
    if (!failure_happened()) {
      CHECK_INT(code, SPARLANE_NOT_LOADED);
      CHECK_STR(sparlane_db_last_error(db), "Database not loaded");
      sparlane_db_destroy(db);
      break;
    }
    CHECK(code == SPARLANE_NOT_LOADED || code == SPARLANE_OUT_OF_MEMORY);
    CHECK_STR(sparlane_db_last_error(db), "Out of memory");
    if (code == SPARLANE_NOT_LOADED) kept_code = 1;
    sparlane_db_destroy(db);
  }
  CHECK(kept_code);
}

const test_case out_of_memory_tests[] = {
    {"EveryFallibleCallReportsExhaustedMemory", EveryFallibleCallReportsExhaustedMemory},
    {"HandleCreationGivesNullWhenMemoryRunsOut", HandleCreationGivesNullWhenMemoryRunsOut},
    {"QueriesGiveTheEmptyResultWhenMemoryRunsOut", QueriesGiveTheEmptyResultWhenMemoryRunsOut},
    {"FailureWhoseMessageCannotBeCopiedKeepsItsCode",
     FailureWhoseMessageCannotBeCopiedKeepsItsCode},
    TEST_END};
