#if !defined(_WIN32)
#define _POSIX_C_SOURCE 200809L
#endif

#include "fixtures.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#if defined(_WIN32)
#include <direct.h>
#include <windows.h>
#else
#include <dirent.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

static char scratch[512];

#if defined(_WIN32)
static void remove_tree(const char* dir) {
  char pattern[1100];
  WIN32_FIND_DATAA entry;
  HANDLE find;
  snprintf(pattern, sizeof pattern, "%s\\*", dir);
  find = FindFirstFileA(pattern, &entry);
  if (find != INVALID_HANDLE_VALUE) {
    do {
      char full[1100];
      if (strcmp(entry.cFileName, ".") == 0 || strcmp(entry.cFileName, "..") == 0) continue;
      snprintf(full, sizeof full, "%s\\%s", dir, entry.cFileName);
      if (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
        remove_tree(full);
      } else {
        SetFileAttributesA(full, FILE_ATTRIBUTE_NORMAL);
        DeleteFileA(full);
      }
    } while (FindNextFileA(find, &entry));
    FindClose(find);
  }
  RemoveDirectoryA(dir);
}

static int make_scratch(void) {
  static unsigned serial = 0;
  char base[MAX_PATH + 1];
  DWORD length = GetTempPathA(sizeof base, base);
  unsigned attempt;
  if (length == 0 || length > MAX_PATH) return -1;
  for (attempt = 0; attempt < 1000; ++attempt) {
    snprintf(scratch, sizeof scratch, "%ssparlane-c-%lu-%u", base,
             (unsigned long)GetCurrentProcessId(), ++serial);
    if (CreateDirectoryA(scratch, NULL)) return 0;
  }
  return -1;
}
#else
static void remove_tree(const char* dir) {
  DIR* d = opendir(dir);
  if (d != NULL) {
    struct dirent* entry;
    while ((entry = readdir(d)) != NULL) {
      char full[1100];
      struct stat st;
      if (strcmp(entry->d_name, ".") == 0 || strcmp(entry->d_name, "..") == 0) continue;
      snprintf(full, sizeof full, "%s/%s", dir, entry->d_name);
      if (lstat(full, &st) == 0 && S_ISDIR(st.st_mode)) {
        chmod(full, 0700);
        remove_tree(full);
      } else {
        unlink(full);
      }
    }
    closedir(d);
  }
  rmdir(dir);
}

static int make_scratch(void) {
  const char* base = getenv("TMPDIR");
  if (base == NULL || base[0] == '\0') base = "/tmp";
  snprintf(scratch, sizeof scratch, "%s/sparlane-c-XXXXXX", base);
  return mkdtemp(scratch) != NULL ? 0 : -1;
}
#endif

void scratch_remove(void) {
  if (scratch[0] != '\0') remove_tree(scratch);
  scratch[0] = '\0';
}

void scratch_reset(void) {
  scratch_remove();
  if (make_scratch() != 0) {
    fprintf(stderr, "cannot create a scratch directory\n");
    exit(2);
  }
}

path_t scratch_path(const char* name) {
  path_t p;
#if defined(_WIN32)
  snprintf(p.text, sizeof p.text, "%s\\%s", scratch, name);
#else
  snprintf(p.text, sizeof p.text, "%s/%s", scratch, name);
#endif
  return p;
}

int scratch_mkdir(const char* name) {
  path_t p = scratch_path(name);
#if defined(_WIN32)
  return _mkdir(p.text);
#else
  return mkdir(p.text, 0700);
#endif
}

path_t text_join(const char* a, const char* b) {
  path_t p;
  snprintf(p.text, sizeof p.text, "%s%s", a, b);
  return p;
}

uint64_t get_le(const unsigned char* at, int bytes) {
  uint64_t value = 0;
  int i;
  for (i = bytes - 1; i >= 0; --i) value = (value << 8) | at[i];
  return value;
}

void put_le(unsigned char* at, uint64_t value, int bytes) {
  int i;
  for (i = 0; i < bytes; ++i) at[i] = (unsigned char)(value >> (8 * i));
}

int write_file(const char* path, const void* data, size_t size) {
  FILE* f = fopen(path, "wb");
  size_t written;
  if (f == NULL) return -1;
  written = size > 0 ? fwrite(data, 1, size, f) : 0;
  if (fclose(f) != 0 || written != size) return -1;
  return 0;
}

unsigned char* read_file(const char* path, size_t* size) {
  FILE* f = fopen(path, "rb");
  unsigned char* data = NULL;
  size_t used = 0;
  size_t capacity = 0;
  if (f == NULL) return NULL;
  for (;;) {
    size_t got;
    if (used == capacity) {
      unsigned char* grown;
      capacity = capacity ? capacity * 2 : 4096;
      grown = (unsigned char*)realloc(data, capacity);
      if (grown == NULL) {
        free(data);
        fclose(f);
        return NULL;
      }
      data = grown;
    }
    got = fread(data + used, 1, capacity - used, f);
    used += got;
    if (got == 0) break;
  }
  fclose(f);
  *size = used;
  return data;
}

int file_exists(const char* path) {
  FILE* f = fopen(path, "rb");
  if (f == NULL) return 0;
  fclose(f);
  return 1;
}

sparlane_parameter_t sample_record(uint16_t vendor, uint16_t machine, uint16_t material,
                                   float thickness, float speed) {
  sparlane_parameter_t p;
  memset(&p, 0, sizeof p);
  p.vendor_id = vendor;
  p.machine_model_id = machine;
  p.material_id = material;
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = speed;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.5f;
  p.transfer_height_mm = 4.0f;
  p.arc_voltage_v = 120.0f + thickness;
  p.pierce_time_s = 0.5f;
  p.kerf_width_mm = 1.5f;
  p.current_amps = 65;
  return p;
}

sparlane_parameter_t sample_table(size_t i) {
  switch (i) {
    case 0: return sample_record(1, 1, 1, 3.0f, 5000.0f);
    case 1: return sample_record(1, 1, 1, 6.0f, 3000.0f);
    case 2: return sample_record(1, 1, 1, 10.0f, 2000.0f);
    case 3: return sample_record(1, 2, 1, 6.0f, 3500.0f);
    case 4: return sample_record(2, 3, 1, 12.0f, 1500.0f);
    default: return sample_record(1, 1, 2, 4.0f, 2500.0f);
  }
}

sparlane_db_t* sample_db(void) {
  sparlane_db_t* db = sparlane_db_create();
  sparlane_parameter_t first = sample_table(0);
  size_t i;
  int ok;
  if (db == NULL) return NULL;
  ok = sparlane_db_create_empty(db) == SPARLANE_SUCCESS &&
       sparlane_db_add_machine(db, "Air plasma", "AIR-45A", NULL) == SPARLANE_SUCCESS &&
       sparlane_db_add_machine(db, "Air plasma", "AIR-65A", NULL) == SPARLANE_SUCCESS &&
       sparlane_db_add_machine(db, "High definition", "HD-130", NULL) == SPARLANE_SUCCESS &&
       sparlane_db_add_material(db, "Mild steel") == SPARLANE_SUCCESS &&
       sparlane_db_add_material(db, "Stainless steel") == SPARLANE_SUCCESS;
  for (i = 0; ok && i < kSampleRecords; ++i) {
    sparlane_parameter_t p = sample_table(i);
    ok = sparlane_db_add_parameter(db, &p) == SPARLANE_SUCCESS;
  }
  /* Appends leave the record indexes alone; an update rebuilds them. */
  ok = ok && sparlane_db_update_parameter(db, 0, &first) == SPARLANE_SUCCESS;
  if (!ok) {
    fprintf(stderr, "sample database: %s\n", sparlane_db_last_error(db));
    sparlane_db_destroy(db);
    return NULL;
  }
  return db;
}

int save_sample(const char* path, int compression) {
  sparlane_db_t* db = sample_db();
  int code;
  if (db == NULL) return -1;
  code = sparlane_db_save(db, path, compression);
  sparlane_db_destroy(db);
  return code;
}

int same_record(const sparlane_parameter_t* a, const sparlane_parameter_t* b) {
  return memcmp(a, b, sizeof *a) == 0;
}
