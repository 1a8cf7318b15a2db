/* sparlane C interface.
 *
 * The whole Database interface for hosts written in C, for any compiler that
 * can call a C function in a shared library or DLL (MSVC included), and for
 * foreign-function interfaces.  Plain C types only; it compiles as C99, C11
 * and C++.  Behaviour, codes and messages are those of the C++ interface in
 * sparlane.h; this layer only converts types.
 *
 * Conventions
 *  - sparlane_db_t is an opaque handle: sparlane_db_create() makes one,
 *    sparlane_db_destroy() releases it.  Handle functions are named
 *    sparlane_db_<operation>; calculators sparlane_<operation>; the test
 *    primitives sparlane_testing_<operation>.
 *  - Fallible operations return an error code (SPARLANE_SUCCESS is 0) and, on
 *    failure, replace the handle's message (sparlane_db_last_error).  Success
 *    never clears it.
 *  - Queries return 1 when they found something and fill *out; otherwise
 *    they return 0 and *out holds the empty result (zeros, or the C++
 *    call's own no-match answer where it has one).  List queries return the
 *    number of items.  Queries never set the message.
 *  - A NULL handle or a NULL required pointer gives SPARLANE_INVALID_PARAMETER
 *    (or, for a query, the empty result); it never crashes.  Memory running
 *    out inside a call gives SPARLANE_OUT_OF_MEMORY with the message
 *    "Out of memory", or the empty result for a query.
 *  - Everything the library allocates, the library frees: lists with their
 *    own free function, strings with sparlane_free.  Never mix in free().
 *  - Strings are NUL-terminated UTF-8.  Functions ending in _n take a name as
 *    pointer plus length instead, for names that hold a NUL byte; returned
 *    names always carry their length too.
 *  - Threads: as in C++.  Concurrent calls taking a const handle are safe
 *    while no thread loads, creates, edits or closes that handle.
 */
#ifndef SPARLANE_C_H_
#define SPARLANE_C_H_

#include <stddef.h>
#include <stdint.h>

#include "export.h"
#include "version.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Compile-time layout checks that work in C99, C11 and C++. */
#if defined(__cplusplus) && __cplusplus >= 201103L
#define SPARLANE_C_ASSERT(cond, name) static_assert(cond, #name)
#elif !defined(__cplusplus) && defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define SPARLANE_C_ASSERT(cond, name) _Static_assert(cond, #name)
#else
#define SPARLANE_C_ASSERT(cond, name) typedef char sparlane_assert_##name[(cond) ? 1 : -1]
#endif

/* ------------------------------------------------------------------------
 * Codes and constants
 * ------------------------------------------------------------------------ */

/* Error codes, equal to Sparlane::ErrorCode.  9 is unassigned. */
enum {
  SPARLANE_SUCCESS = 0,
  SPARLANE_FILE_NOT_FOUND = 1,
  SPARLANE_INVALID_MAGIC = 2,
  SPARLANE_UNSUPPORTED_VERSION = 3,
  SPARLANE_CORRUPTED_FILE = 4,
  SPARLANE_INVALID_DATA = 5,
  SPARLANE_DECOMPRESSION_FAILED = 6,
  SPARLANE_OUT_OF_MEMORY = 7,
  SPARLANE_INVALID_PARAMETER = 8,
  SPARLANE_BUFFER_TOO_SMALL = 10,
  SPARLANE_CHECKSUM_MISMATCH = 11,
  SPARLANE_IO_ERROR = 12,
  SPARLANE_ACCESS_DENIED = 13,
  SPARLANE_ALREADY_EXISTS = 14,
  SPARLANE_NOT_LOADED = 15,
  SPARLANE_COMPRESSION_FAILED = 16
};

/* How sparlane_db_save stores the records (Sparlane::CompressionType). */
enum {
  SPARLANE_COMPRESSION_NONE = 0,
  SPARLANE_COMPRESSION_LZ4 = 1,
  SPARLANE_COMPRESSION_RESERVED = 2
};

/* Edge quality levels (Sparlane::QualityLevel). */
enum {
  SPARLANE_QUALITY_PRODUCTION = 0,
  SPARLANE_QUALITY_STANDARD = 1,
  SPARLANE_QUALITY_FINE = 2,
  SPARLANE_QUALITY_PRECISION = 3
};

/* Flag bits the library sets in sparlane_parameter_t.flags. */
#define SPARLANE_FLAG_DERIVED 0x10u
#define SPARLANE_FLAG_SPEED_CAPPED 0x20u
#define SPARLANE_FLAG_ANGLE_ADJUSTED 0x80u

/* ------------------------------------------------------------------------
 * Records
 * ------------------------------------------------------------------------ */

/* One row of the parameter table, byte for byte Sparlane::CuttingParameter
 * (64 bytes; C++ aligns it to 64, C needs only 4).  Ids are 1-based
 * positions in the name tables.  Zero-initialise new records. */
typedef struct sparlane_parameter_t {
  uint16_t vendor_id;
  uint16_t machine_model_id;
  uint16_t material_id;
  uint16_t aux_id;
  float thickness_mm;
  float cut_speed_mm_min;
  float cut_height_mm;
  float pierce_height_mm;
  float transfer_height_mm;
  float arc_voltage_v;
  float pierce_time_s;
  float kerf_width_mm;
  uint16_t current_amps;
  uint8_t reserved_42[6];
  uint32_t flags;
  uint8_t reserved_52[12];
} sparlane_parameter_t;

SPARLANE_C_ASSERT(sizeof(sparlane_parameter_t) == 64, parameter_size);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, aux_id) == 6, parameter_aux_id);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, thickness_mm) == 8, parameter_thickness);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, kerf_width_mm) == 36, parameter_kerf);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, current_amps) == 40, parameter_current);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, flags) == 48, parameter_flags);
SPARLANE_C_ASSERT(offsetof(sparlane_parameter_t, reserved_52) == 52, parameter_reserved_52);

/* The 1024-byte file header (Sparlane::FileHeader), for
 * sparlane_testing_validate_header. */
typedef struct sparlane_file_header_t {
  uint32_t magic;
  uint16_t version_major;
  uint16_t version_minor;
  int64_t created_time;
  uint32_t parameter_count;
  uint32_t vendor_count;
  uint32_t machine_count;
  uint32_t material_count;
  uint8_t reserved_32[16];
  uint64_t vendor_table_offset;
  uint64_t machine_table_offset;
  uint64_t material_table_offset;
  uint8_t reserved_72[8];
  uint64_t aux_offset_1;
  uint64_t aux_offset_2;
  uint8_t reserved_96[8];
  uint64_t parameter_data_offset;
  uint8_t compression;
  uint8_t reserved_113[3];
  uint32_t stats_compressed_size;
  uint32_t stats_uncompressed_size;
  uint8_t reserved_124[4];
  uint32_t header_crc32;
  uint8_t reserved_132[12];
  char creator[32];
  uint8_t reserved_176[848];
} sparlane_file_header_t;

SPARLANE_C_ASSERT(sizeof(sparlane_file_header_t) == 1024, file_header_size);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, created_time) == 8, file_header_created);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, vendor_table_offset) == 48, file_header_vendor);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, parameter_data_offset) == 104, file_header_data);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, compression) == 112, file_header_compression);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, header_crc32) == 128, file_header_crc);
SPARLANE_C_ASSERT(offsetof(sparlane_file_header_t, creator) == 144, file_header_creator);

/* Result of sparlane_db_interpolate and sparlane_testing_perform_interpolation.
 * confidence 0 means nothing was built. */
typedef struct sparlane_interpolation_t {
  sparlane_parameter_t parameter;
  float confidence;
  uint8_t extrapolated;
} sparlane_interpolation_t;

/* With no match the minimum is the largest finite float, the maximum its
 * negative, and valid 0. */
typedef struct sparlane_thickness_range_t {
  float min_thickness_mm;
  float max_thickness_mm;
  int32_t parameter_count;
  uint8_t valid;
} sparlane_thickness_range_t;

typedef struct sparlane_performance_metrics_t {
  uint64_t total_queries;
  uint64_t queries_found;
  uint64_t queries_not_found;
  double avg_query_time_us;
  double max_query_time_us;
  double min_query_time_us;
} sparlane_performance_metrics_t;

typedef struct sparlane_database_stats_t {
  uint32_t parameter_count;
  uint32_t vendor_count;
  uint32_t machine_count;
  uint32_t material_count;
  uint32_t consumable_set_count;
  uint64_t file_size_bytes;
  uint64_t uncompressed_size;
  uint64_t reserved_a;
  float compression_ratio;
  uint32_t reserved_b[3];
} sparlane_database_stats_t;

SPARLANE_C_ASSERT(sizeof(sparlane_database_stats_t) == 64, database_stats_size);

/* ------------------------------------------------------------------------
 * Calculator records (see sparlane.h for what each figure means)
 * ------------------------------------------------------------------------ */

typedef struct sparlane_cut_estimate_t {
  float cut_time_s;
  float pierce_time_total_s;
  float total_time_s;
  float cut_length_mm;
  uint32_t pierce_count;
} sparlane_cut_estimate_t;

typedef struct sparlane_material_pricing_t {
  float price_per_kg;
  float density_kg_m3;
  float material_utilization;
} sparlane_material_pricing_t;

typedef struct sparlane_job_cost_t {
  float material_cost;
  float consumable_cost;
  float machine_cost;
  float overhead_cost;
  float total_cost;
  float cost_per_meter;
  float cost_per_pierce;
} sparlane_job_cost_t;

typedef struct sparlane_consumable_usage_t {
  uint32_t usage_id;
  uint32_t starts;
  float arc_hours;
  float stress_factor_1;
  float stress_factor_2;
  float stress_factor_3;
  float stress_factor_4;
} sparlane_consumable_usage_t;

typedef struct sparlane_consumable_life_t {
  float primary_life_pct;
  float secondary_life_pct;
  float tertiary_life_pct;
  uint32_t primary_starts_left;
  uint32_t secondary_starts_left;
  float primary_hours_left;
  float secondary_hours_left;
  uint8_t primary_replace_soon;
  uint8_t secondary_replace_soon;
  uint8_t tertiary_replace_soon;
  uint8_t life_flag_reserved;
} sparlane_consumable_life_t;

typedef struct sparlane_consumable_set_t {
  uint16_t set_id;
  uint16_t rated_current_amps;
  char description[60];
  char nozzle_part[16];
  char electrode_part[16];
  char shield_part[16];
  char swirl_ring_part[16];
} sparlane_consumable_set_t;

SPARLANE_C_ASSERT(sizeof(sparlane_consumable_set_t) == 128, consumable_set_size);

typedef struct sparlane_kerf_compensation_t {
  float offset_mm;
  float kerf_width_mm;
  uint8_t is_inside;
} sparlane_kerf_compensation_t;

typedef struct sparlane_lead_in_out_t {
  float lead_in_length_mm;
  float lead_out_length_mm;
  float lead_in_angle_deg;
  float lead_in_radius_mm;
  float lead_out_radius_mm;
  float lead_out_angle_deg;
  uint8_t use_arc_lead_in;
  uint8_t use_lead_out;
} sparlane_lead_in_out_t;

typedef struct sparlane_corner_slowdown_t {
  float speed_factor;
  float decel_distance_mm;
  float slow_zone_mm;
  float accel_distance_mm;
  uint8_t sharp_corner;
  float sharp_corner_extension_mm;
} sparlane_corner_slowdown_t;

typedef struct sparlane_small_hole_params_t {
  float speed_factor;
  float current_factor;
  float min_diameter_mm;
  uint8_t small_hole;
  uint8_t very_small_hole;
  uint8_t hole_flag_reserved;
  float lead_in_max_mm;
} sparlane_small_hole_params_t;

typedef struct sparlane_part_spacing_t {
  float min_spacing_mm;
  float sheet_edge_margin_mm;
  float base_gap_mm;
  float kerf_width_mm;
  float recommended_spacing_mm;
} sparlane_part_spacing_t;

typedef struct sparlane_common_line_rules_t {
  uint8_t allowed;
  float max_thickness_mm;
  float min_segment_length_mm;
  float line_spacing_mm;
  uint8_t requires_tabs;
  float tab_width_mm;
} sparlane_common_line_rules_t;

typedef struct sparlane_quality_profile_t {
  uint8_t level; /* SPARLANE_QUALITY_* */
  float speed_factor;
  float current_factor;
  float surface_roughness_um;
  float tolerance_mm;
  float max_bevel_deg;
} sparlane_quality_profile_t;

typedef struct sparlane_heat_affected_zone_t {
  float haz_width_mm;
  float inner_zone_mm;
  float outer_zone_mm;
  uint8_t high_heat_input;
} sparlane_heat_affected_zone_t;

typedef struct sparlane_bevel_limits_t {
  float max_bevel_angle_deg;
  float max_land_height_mm;
  float recommended_angle_deg;
  uint8_t bevel_supported;
  uint8_t thick_plate;
  uint8_t very_thick_plate;
  float angle_speed_coefficient;
} sparlane_bevel_limits_t;

/* ------------------------------------------------------------------------
 * Lists, allocated by the library
 * ------------------------------------------------------------------------ */

/* Records in table order.  items is NULL when count is 0. */
typedef struct sparlane_parameter_list_t {
  sparlane_parameter_t* items;
  size_t count;
} sparlane_parameter_list_t;

/* A name: length bytes at data, followed by a NUL.  A name read from a file
 * may itself hold NUL bytes; length is the whole name. */
typedef struct sparlane_name_t {
  const char* data;
  size_t length;
} sparlane_name_t;

/* A name table: items[i] has id i + 1.  items is NULL when count is 0. */
typedef struct sparlane_name_list_t {
  sparlane_name_t* items;
  size_t count;
} sparlane_name_list_t;

/* Frees the list's memory and leaves it empty ({NULL, 0}).  NULL is fine. */
SPARLANE_API void sparlane_parameter_list_free(sparlane_parameter_list_t* list);
SPARLANE_API void sparlane_name_list_free(sparlane_name_list_t* list);

/* Frees a string the library returned.  NULL is fine. */
SPARLANE_API void sparlane_free(void* memory);

/* ------------------------------------------------------------------------
 * Version
 * ------------------------------------------------------------------------ */

/* "major.minor.patch" of the library; static storage. */
SPARLANE_API const char* sparlane_version(void);

/* major * 10000 + minor * 100 + patch; compare with SPARLANE_VERSION_NUMBER. */
SPARLANE_API int sparlane_version_number(void);

/* ------------------------------------------------------------------------
 * Lifecycle
 * ------------------------------------------------------------------------ */

typedef struct sparlane_db sparlane_db_t;

/* A new handle: not loaded, all tables empty.  NULL when out of memory. */
SPARLANE_API sparlane_db_t* sparlane_db_create(void);

/* Releases the handle and everything it holds.  NULL is fine. */
SPARLANE_API void sparlane_db_destroy(sparlane_db_t* db);

/* Makes a new, empty, loaded database with a fresh header (Create). */
SPARLANE_API int sparlane_db_create_empty(sparlane_db_t* db);

/* Releases the mapped file and marks the database not loaded. */
SPARLANE_API void sparlane_db_close(sparlane_db_t* db);

/* 1 while a database is created or loaded and not closed; else 0. */
SPARLANE_API int sparlane_db_is_loaded(const sparlane_db_t* db);

/* The message of the last failure ("" if none, or for a NULL handle).
 * Valid until the next call on this handle. */
SPARLANE_API const char* sparlane_db_last_error(const sparlane_db_t* db);

/* ------------------------------------------------------------------------
 * Files
 * ------------------------------------------------------------------------ */

/* Loads a parameter file (LoadFromBinary): FILE_NOT_FOUND, ACCESS_DENIED,
 * CORRUPTED_FILE, OUT_OF_MEMORY, IO_ERROR, INVALID_MAGIC,
 * UNSUPPORTED_VERSION, INVALID_DATA, DECOMPRESSION_FAILED, INVALID_PARAMETER.
 * A slow load succeeds and leaves a warning as the message. */
SPARLANE_API int sparlane_db_load(sparlane_db_t* db, const char* path);

/* Fills the database from an SQLite file (ImportFromSQLite); a build
 * without SQLite gives NOT_LOADED. */
SPARLANE_API int sparlane_db_import_sqlite(sparlane_db_t* db, const char* path);

/* Writes the database to path (SaveToBinary), compression one of
 * SPARLANE_COMPRESSION_*: NOT_LOADED, IO_ERROR, INVALID_PARAMETER. */
SPARLANE_API int sparlane_db_save(sparlane_db_t* db, const char* path, int compression);

/* ------------------------------------------------------------------------
 * Queries: never fail, never set the message
 * ------------------------------------------------------------------------ */

/* A record of the material and machine within tolerance of the thickness
 * (FindExact).  1 and *out filled when found; 0 otherwise. */
SPARLANE_API int sparlane_db_find_exact(const sparlane_db_t* db, const char* material,
                                        float thickness, const char* machine_model,
                                        float tolerance, sparlane_parameter_t* out);
SPARLANE_API int sparlane_db_find_exact_n(const sparlane_db_t* db, const char* material,
                                          size_t material_length, float thickness,
                                          const char* machine_model, size_t machine_model_length,
                                          float tolerance, sparlane_parameter_t* out);

/* The record with the closest thickness (FindNearest); 1 when found. */
SPARLANE_API int sparlane_db_find_nearest(const sparlane_db_t* db, const char* material,
                                          float thickness, const char* machine_model,
                                          sparlane_parameter_t* out);
SPARLANE_API int sparlane_db_find_nearest_n(const sparlane_db_t* db, const char* material,
                                            size_t material_length, float thickness,
                                            const char* machine_model,
                                            size_t machine_model_length,
                                            sparlane_parameter_t* out);

/* Records of a machine model, of one vendor or (vendor NULL or "") of any
 * (FindByMachine).  Fills *out and returns its count; free it with
 * sparlane_parameter_list_free. */
SPARLANE_API size_t sparlane_db_find_by_machine(const sparlane_db_t* db, const char* vendor,
                                                const char* machine_model,
                                                sparlane_parameter_list_t* out);
SPARLANE_API size_t sparlane_db_find_by_machine_n(const sparlane_db_t* db, const char* vendor,
                                                  size_t vendor_length, const char* machine_model,
                                                  size_t machine_model_length,
                                                  sparlane_parameter_list_t* out);

/* All records of a material in table order (FindByMaterial). */
SPARLANE_API size_t sparlane_db_find_by_material(const sparlane_db_t* db, const char* material,
                                                 sparlane_parameter_list_t* out);
SPARLANE_API size_t sparlane_db_find_by_material_n(const sparlane_db_t* db, const char* material,
                                                   size_t material_length,
                                                   sparlane_parameter_list_t* out);

/* Thickness span of a material on one machine, or (machine_model NULL or
 * "") on any (GetSupportedThicknessRange).  Returns out->valid. */
SPARLANE_API int sparlane_db_supported_thickness_range(const sparlane_db_t* db,
                                                       const char* material,
                                                       const char* machine_model,
                                                       sparlane_thickness_range_t* out);
SPARLANE_API int sparlane_db_supported_thickness_range_n(const sparlane_db_t* db,
                                                         const char* material,
                                                         size_t material_length,
                                                         const char* machine_model,
                                                         size_t machine_model_length,
                                                         sparlane_thickness_range_t* out);

/* Settings for a thickness (Interpolate).  *out is the library's result;
 * returns 1 when something was built (confidence > 0), else 0. */
SPARLANE_API int sparlane_db_interpolate(const sparlane_db_t* db, const char* material,
                                         float thickness, const char* machine_model,
                                         sparlane_interpolation_t* out);
SPARLANE_API int sparlane_db_interpolate_n(const sparlane_db_t* db, const char* material,
                                           size_t material_length, float thickness,
                                           const char* machine_model, size_t machine_model_length,
                                           sparlane_interpolation_t* out);

/* The fastest record of any machine for the material within tolerance
 * (FindOptimal); 1 when found. */
SPARLANE_API int sparlane_db_find_optimal(const sparlane_db_t* db, const char* material,
                                          float thickness, float tolerance,
                                          sparlane_parameter_t* out);
SPARLANE_API int sparlane_db_find_optimal_n(const sparlane_db_t* db, const char* material,
                                            size_t material_length, float thickness,
                                            float tolerance, sparlane_parameter_t* out);

/* base fitted to a machine whose top speed is max_speed (AdjustForMaxSpeed).
 * SUCCESS, or INVALID_PARAMETER for a NULL pointer. */
SPARLANE_API int sparlane_db_adjust_for_max_speed(const sparlane_db_t* db,
                                                  const sparlane_parameter_t* base,
                                                  float max_speed, sparlane_parameter_t* out);

/* Path length through a plate for a tilted torch (CalculateEffectiveThickness). */
SPARLANE_API float sparlane_calculate_effective_thickness(float thickness, float angle_degrees);

/* ------------------------------------------------------------------------
 * Logging and metrics
 * ------------------------------------------------------------------------ */

/* Switches the one-line query log on standard error (0 off, else on). */
SPARLANE_API void sparlane_db_set_query_logging(sparlane_db_t* db, int enabled);

/* Reads the query counters.  SUCCESS, or INVALID_PARAMETER for NULL. */
SPARLANE_API int sparlane_db_performance_metrics(const sparlane_db_t* db,
                                                 sparlane_performance_metrics_t* out);

/* Puts every counter back to its initial value. */
SPARLANE_API void sparlane_db_reset_performance_metrics(sparlane_db_t* db);

/* ------------------------------------------------------------------------
 * Integrity
 * ------------------------------------------------------------------------ */

/* Checks header checksum, record count, every record and the indexes
 * (Validate): NOT_LOADED, CHECKSUM_MISMATCH, INVALID_DATA. */
SPARLANE_API int sparlane_db_validate(sparlane_db_t* db);

/* ------------------------------------------------------------------------
 * Editing (in memory until saved)
 * ------------------------------------------------------------------------ */

/* Appends a checked record: NOT_LOADED, INVALID_PARAMETER. */
SPARLANE_API int sparlane_db_add_parameter(sparlane_db_t* db, const sparlane_parameter_t* param);

/* Overwrites the record at 0-based position id: NOT_LOADED, INVALID_PARAMETER. */
SPARLANE_API int sparlane_db_update_parameter(sparlane_db_t* db, uint32_t id,
                                              const sparlane_parameter_t* param);

/* Removes the record at 0-based position id: NOT_LOADED, INVALID_PARAMETER. */
SPARLANE_API int sparlane_db_delete_parameter(sparlane_db_t* db, uint32_t id);

/* Adds a machine model and, when new, its vendor; unused may be NULL:
 * NOT_LOADED, INVALID_PARAMETER, ALREADY_EXISTS. */
SPARLANE_API int sparlane_db_add_machine(sparlane_db_t* db, const char* vendor, const char* model,
                                         const char* unused);
SPARLANE_API int sparlane_db_add_machine_n(sparlane_db_t* db, const char* vendor,
                                           size_t vendor_length, const char* model,
                                           size_t model_length, const char* unused,
                                           size_t unused_length);

/* Adds a material: NOT_LOADED, INVALID_PARAMETER, ALREADY_EXISTS. */
SPARLANE_API int sparlane_db_add_material(sparlane_db_t* db, const char* name);
SPARLANE_API int sparlane_db_add_material_n(sparlane_db_t* db, const char* name,
                                            size_t name_length);

/* ------------------------------------------------------------------------
 * Catalogue
 * ------------------------------------------------------------------------ */

/* Copies of the name tables (GetVendors, GetMachines, GetMaterials).  Fill
 * *out and return its count; free it with sparlane_name_list_free. */
SPARLANE_API size_t sparlane_db_vendors(const sparlane_db_t* db, sparlane_name_list_t* out);
SPARLANE_API size_t sparlane_db_machines(const sparlane_db_t* db, sparlane_name_list_t* out);
SPARLANE_API size_t sparlane_db_materials(const sparlane_db_t* db, sparlane_name_list_t* out);

/* Counts and file figures (GetStatistics); all zero when not loaded.
 * SUCCESS, or INVALID_PARAMETER for NULL. */
SPARLANE_API int sparlane_db_statistics(const sparlane_db_t* db, sparlane_database_stats_t* out);

/* The consumable set with this id (GetConsumableSet); 1 when found. */
SPARLANE_API int sparlane_db_consumable_set(const sparlane_db_t* db, uint16_t set_id,
                                            sparlane_consumable_set_t* out);

/* ------------------------------------------------------------------------
 * Calculators: pure, safe on any thread.  Each returns SUCCESS, or
 * INVALID_PARAMETER when a pointer is NULL (then *out is untouched).
 * ------------------------------------------------------------------------ */

SPARLANE_API int sparlane_estimate_cut_time(const sparlane_parameter_t* param,
                                            float cut_length_mm, unsigned int pierce_count,
                                            sparlane_cut_estimate_t* out);
SPARLANE_API int sparlane_estimate_job_cost(const sparlane_parameter_t* param,
                                            float cut_length_mm, unsigned int pierce_count,
                                            const sparlane_material_pricing_t* pricing,
                                            float machine_rate_per_hour,
                                            float consumable_set_price, sparlane_job_cost_t* out);
SPARLANE_API int sparlane_estimate_consumable_life(const sparlane_consumable_usage_t* usage,
                                                   unsigned short current_amps,
                                                   sparlane_consumable_life_t* out);
SPARLANE_API int sparlane_calculate_kerf_compensation(const sparlane_parameter_t* param,
                                                      int is_inside,
                                                      sparlane_kerf_compensation_t* out);
SPARLANE_API int sparlane_calculate_lead_in_out(const sparlane_parameter_t* param,
                                                int limit_to_thickness,
                                                sparlane_lead_in_out_t* out);
SPARLANE_API int sparlane_calculate_corner_slowdown(const sparlane_parameter_t* param,
                                                    float corner_angle_deg,
                                                    sparlane_corner_slowdown_t* out);
SPARLANE_API int sparlane_small_hole_params(const sparlane_parameter_t* param,
                                            float hole_diameter_mm,
                                            sparlane_small_hole_params_t* out);
SPARLANE_API int sparlane_calculate_part_spacing(const sparlane_parameter_t* param,
                                                 sparlane_part_spacing_t* out);
SPARLANE_API int sparlane_common_line_rules(const sparlane_parameter_t* param,
                                            sparlane_common_line_rules_t* out);
/* level: SPARLANE_QUALITY_*; other values come back with every figure 0. */
SPARLANE_API int sparlane_quality_profile(const sparlane_parameter_t* param, uint8_t level,
                                          sparlane_quality_profile_t* out);
SPARLANE_API int sparlane_calculate_haz(const sparlane_parameter_t* param,
                                        sparlane_heat_affected_zone_t* out);
/* name is accepted and not consulted; NULL is fine. */
SPARLANE_API int sparlane_bevel_limits(const sparlane_parameter_t* param, const char* name,
                                       sparlane_bevel_limits_t* out);

/* ------------------------------------------------------------------------
 * Export
 * ------------------------------------------------------------------------ */

/* One CSV line per record (ExportToCSV): NOT_LOADED, IO_ERROR. */
SPARLANE_API int sparlane_db_export_csv(sparlane_db_t* db, const char* path);

/* The whole store as one JSON document (ExportToJSON): NOT_LOADED, IO_ERROR. */
SPARLANE_API int sparlane_db_export_json(sparlane_db_t* db, const char* path);

/* ------------------------------------------------------------------------
 * Testing: the primitives behind the database (Sparlane::Testing)
 * ------------------------------------------------------------------------ */

/* The stand-alone header test: SUCCESS, INVALID_MAGIC, UNSUPPORTED_VERSION,
 * INVALID_PARAMETER, CHECKSUM_MISMATCH (INVALID_PARAMETER also for NULL). */
SPARLANE_API int sparlane_testing_validate_header(const sparlane_file_header_t* header);

/* CRC-32 (IEEE, as in zip); 0 for NULL or zero length. */
SPARLANE_API uint32_t sparlane_testing_calculate_crc32(const void* data, size_t length);

/* The path rule: every "..", every NUL removed, at most 4096 bytes kept.
 * Returns a string to free with sparlane_free; NULL for a NULL path or when
 * out of memory.  The _n form also reports the result's length. */
SPARLANE_API char* sparlane_testing_sanitize_path(const char* path);
SPARLANE_API char* sparlane_testing_sanitize_path_n(const char* path, size_t length,
                                                    size_t* out_length);

/* Linear interpolation between two records at a thickness.  SUCCESS, or
 * INVALID_PARAMETER for a NULL pointer. */
SPARLANE_API int sparlane_testing_interpolate_linear(const sparlane_parameter_t* lower,
                                                     const sparlane_parameter_t* upper,
                                                     float thickness, sparlane_parameter_t* out);

/* Record and confidence from up to two neighbours; either may be NULL.
 * SUCCESS, or INVALID_PARAMETER when out is NULL. */
SPARLANE_API int sparlane_testing_perform_interpolation(const sparlane_parameter_t* lower,
                                                        const sparlane_parameter_t* upper,
                                                        float thickness,
                                                        sparlane_interpolation_t* out);

/* Conservative extrapolation of one record to another thickness. */
SPARLANE_API int sparlane_testing_extrapolate_conservative(const sparlane_parameter_t* source,
                                                           float thickness,
                                                           sparlane_parameter_t* out);

/* Record adjusted for a torch tilted by angle_degrees. */
SPARLANE_API int sparlane_testing_adjust_for_torch_angle(const sparlane_parameter_t* base,
                                                         float angle_degrees,
                                                         sparlane_parameter_t* out);

/* Strict physical-range check of one record: SUCCESS or INVALID_PARAMETER
 * (also for NULL). */
SPARLANE_API int sparlane_testing_validate_parameter(const sparlane_parameter_t* param);

/* 1 when value lies more than threshold sample deviations from the mean of
 * the count floats at sample; else 0 (also for NULL with count > 0, or when
 * out of memory). */
SPARLANE_API int sparlane_testing_is_statistical_outlier(float value, const float* sample,
                                                         size_t count, float threshold);

#ifdef __cplusplus
}  /* extern "C" */
#endif

#endif /* SPARLANE_C_H_ */
