/* Shared pieces of the C tests: a scratch directory per test, raw file
 * access, sample records and a small sample database. */
#ifndef SPARLANE_TESTS_C_FIXTURES_H_
#define SPARLANE_TESTS_C_FIXTURES_H_

#include <stddef.h>
#include <stdint.h>

#include <sparlane/c.h>

typedef struct path_t {
  char text[1024];
} path_t;

/* A fresh, empty scratch directory; the previous one is removed. */
void scratch_reset(void);
/* Removes the scratch directory and everything in it. */
void scratch_remove(void);
/* name inside the scratch directory (name may contain '/' for a sub-path). */
path_t scratch_path(const char* name);
/* Creates a directory inside the scratch directory. */
int scratch_mkdir(const char* name);

/* a followed by b, e.g. an expected message and its path. */
path_t text_join(const char* a, const char* b);

/* Little-endian integers inside a file image. */
uint64_t get_le(const unsigned char* at, int bytes);
void put_le(unsigned char* at, uint64_t value, int bytes);

int write_file(const char* path, const void* data, size_t size);
/* The whole file in memory (free with free()), or NULL. */
unsigned char* read_file(const char* path, size_t* size);
int file_exists(const char* path);

/* A valid record of the sample tables. */
sparlane_parameter_t sample_record(uint16_t vendor, uint16_t machine, uint16_t material,
                                   float thickness, float speed);

/* Vendors "Air plasma" (1), "High definition" (2); machines "AIR-45A" (1),
 * "AIR-65A" (2), "HD-130" (3); materials "Mild steel" (1),
 * "Stainless steel" (2).  Records, in this table order:
 *   0  Mild steel       AIR-45A   3 mm  5000 mm/min
 *   1  Mild steel       AIR-45A   6 mm  3000
 *   2  Mild steel       AIR-45A  10 mm  2000
 *   3  Mild steel       AIR-65A   6 mm  3500
 *   4  Mild steel       HD-130   12 mm  1500
 *   5  Stainless steel  AIR-45A   4 mm  2500
 * Indexes are rebuilt, so every query sees every record. */
sparlane_db_t* sample_db(void);
enum { kSampleRecords = 6 };
sparlane_parameter_t sample_table(size_t i);

/* sample_db() saved to path; 0 on success. */
int save_sample(const char* path, int compression);

/* Equal bytes. */
int same_record(const sparlane_parameter_t* a, const sparlane_parameter_t* b);

#endif /* SPARLANE_TESTS_C_FIXTURES_H_ */
