// sparlane: a database of plasma-cutting process parameters.
//
// One question, answered fast and exactly: with which settings do I cut this
// material, this thick, on this machine?  A host builds a Database in memory
// or loads a parameter file, then asks for records, interpolated settings and
// planning figures.
//
// Conventions
//  - Every fallible Database operation returns an ErrorCode and, on failure,
//    replaces the last-error message (GetLastError).  Success never clears it.
//  - Queries and calculators never fail: they return empty or zero results.
//  - Nothing returned refers into the database; records and lists are copies.
//  - Floats are single precision; lengths in mm, speeds in mm/min, times in
//    seconds, currents in whole amperes.
//  - Threads: concurrent const calls on one Database are safe while no thread
//    loads, creates, edits or closes it.  The library takes no locks.
//    Static calculators and Testing functions are safe on any thread.
#ifndef SPARLANE_SPARLANE_H_
#define SPARLANE_SPARLANE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "export.h"
#include "version.h"

namespace Sparlane {

// ---------------------------------------------------------------------------
// Records and codes
// ---------------------------------------------------------------------------

// The result of every fallible operation.  The values are part of the
// interface and never change; 9 is deliberately unassigned.
enum class ErrorCode : std::int32_t {
  Success = 0,
  FileNotFound = 1,
  InvalidMagic = 2,
  UnsupportedVersion = 3,
  CorruptedFile = 4,
  InvalidData = 5,
  DecompressionFailed = 6,
  OutOfMemory = 7,
  InvalidParameter = 8,
  BufferTooSmall = 10,
  ChecksumMismatch = 11,
  IoError = 12,
  AccessDenied = 13,
  AlreadyExists = 14,
  NotLoaded = 15,
  CompressionFailed = 16,
};

// Flag bits the library itself sets in CuttingParameter::flags.  Every other
// bit belongs to the data and is carried through untouched.
constexpr std::uint32_t kFlagDerived = 0x10;       // interpolated or extrapolated
constexpr std::uint32_t kFlagSpeedCapped = 0x20;   // speed set by AdjustForMaxSpeed
constexpr std::uint32_t kFlagAngleAdjusted = 0x80; // adjusted for torch angle

// One row of the parameter table: a vendor, machine model, material and
// thickness with its process settings.  Stored byte for byte in parameter
// files, so its layout is a file format: 64 bytes, little-endian.
// Ids are 1-based positions in the name tables; 0 means none.
// Zero-initialise new records (CuttingParameter p{}).
struct alignas(64) CuttingParameter {
  std::uint16_t vendor_id;
  std::uint16_t machine_model_id;
  std::uint16_t material_id;
  std::uint16_t aux_id;  // opaque; copied by every derived record
  float thickness_mm;
  float cut_speed_mm_min;
  float cut_height_mm;
  float pierce_height_mm;
  float transfer_height_mm;
  float arc_voltage_v;
  float pierce_time_s;
  float kerf_width_mm;
  std::uint16_t current_amps;
  std::uint8_t reserved_42[6];  // opaque, carried along unchanged
  std::uint32_t flags;
  std::uint8_t reserved_52[12];  // opaque, carried along unchanged
};

static_assert(sizeof(CuttingParameter) == 64, "CuttingParameter is 64 bytes");
static_assert(std::is_trivially_copyable<CuttingParameter>::value, "plain record");
static_assert(std::is_standard_layout<CuttingParameter>::value, "plain record");
static_assert(offsetof(CuttingParameter, vendor_id) == 0, "layout");
static_assert(offsetof(CuttingParameter, machine_model_id) == 2, "layout");
static_assert(offsetof(CuttingParameter, material_id) == 4, "layout");
static_assert(offsetof(CuttingParameter, aux_id) == 6, "layout");
static_assert(offsetof(CuttingParameter, thickness_mm) == 8, "layout");
static_assert(offsetof(CuttingParameter, cut_speed_mm_min) == 12, "layout");
static_assert(offsetof(CuttingParameter, cut_height_mm) == 16, "layout");
static_assert(offsetof(CuttingParameter, pierce_height_mm) == 20, "layout");
static_assert(offsetof(CuttingParameter, transfer_height_mm) == 24, "layout");
static_assert(offsetof(CuttingParameter, arc_voltage_v) == 28, "layout");
static_assert(offsetof(CuttingParameter, pierce_time_s) == 32, "layout");
static_assert(offsetof(CuttingParameter, kerf_width_mm) == 36, "layout");
static_assert(offsetof(CuttingParameter, current_amps) == 40, "layout");
static_assert(offsetof(CuttingParameter, reserved_42) == 42, "layout");
static_assert(offsetof(CuttingParameter, flags) == 48, "layout");
static_assert(offsetof(CuttingParameter, reserved_52) == 52, "layout");

// ---------------------------------------------------------------------------
// File header
// ---------------------------------------------------------------------------

// How the parameter data of a file is stored.
enum class CompressionType : int {
  None = 0,      // records raw
  LZ4 = 1,       // LZ4 blocks of at most 64 records
  Reserved = 2,  // accepted by header checks; no parameter data is written or read
};

// The fixed 1024-byte header at the start of every parameter file.
// All reserved bytes are zero when written and never interpreted.
struct FileHeader {
  std::uint32_t magic;  // "SPLN" (0x4E4C5053)
  std::uint16_t version_major;  // 1
  std::uint16_t version_minor;  // 0
  std::int64_t created_time;    // seconds since 1970-01-01 UTC
  std::uint32_t parameter_count;
  std::uint32_t vendor_count;
  std::uint32_t machine_count;
  std::uint32_t material_count;
  std::uint8_t reserved_32[16];
  std::uint64_t vendor_table_offset;
  std::uint64_t machine_table_offset;
  std::uint64_t material_table_offset;
  std::uint8_t reserved_72[8];
  std::uint64_t aux_offset_1;
  std::uint64_t aux_offset_2;
  std::uint8_t reserved_96[8];
  std::uint64_t parameter_data_offset;
  std::uint8_t compression;  // CompressionType
  std::uint8_t reserved_113[3];
  std::uint32_t stats_compressed_size;    // written 0; see GetStatistics
  std::uint32_t stats_uncompressed_size;  // written 0; see GetStatistics
  std::uint8_t reserved_124[4];
  std::uint32_t header_crc32;
  std::uint8_t reserved_132[12];  // outside the header checksum
  char creator[32];               // NUL-padded name of the writing tool
  std::uint8_t reserved_176[848];
};

static_assert(sizeof(FileHeader) == 1024, "FileHeader is 1024 bytes");
static_assert(std::is_trivially_copyable<FileHeader>::value, "plain record");
static_assert(offsetof(FileHeader, magic) == 0, "layout");
static_assert(offsetof(FileHeader, version_major) == 4, "layout");
static_assert(offsetof(FileHeader, version_minor) == 6, "layout");
static_assert(offsetof(FileHeader, created_time) == 8, "layout");
static_assert(offsetof(FileHeader, parameter_count) == 16, "layout");
static_assert(offsetof(FileHeader, vendor_count) == 20, "layout");
static_assert(offsetof(FileHeader, machine_count) == 24, "layout");
static_assert(offsetof(FileHeader, material_count) == 28, "layout");
static_assert(offsetof(FileHeader, vendor_table_offset) == 48, "layout");
static_assert(offsetof(FileHeader, machine_table_offset) == 56, "layout");
static_assert(offsetof(FileHeader, material_table_offset) == 64, "layout");
static_assert(offsetof(FileHeader, aux_offset_1) == 80, "layout");
static_assert(offsetof(FileHeader, aux_offset_2) == 88, "layout");
static_assert(offsetof(FileHeader, parameter_data_offset) == 104, "layout");
static_assert(offsetof(FileHeader, compression) == 112, "layout");
static_assert(offsetof(FileHeader, stats_compressed_size) == 116, "layout");
static_assert(offsetof(FileHeader, stats_uncompressed_size) == 120, "layout");
static_assert(offsetof(FileHeader, header_crc32) == 128, "layout");
static_assert(offsetof(FileHeader, creator) == 144, "layout");
static_assert(offsetof(FileHeader, reserved_176) == 176, "layout");

// ---------------------------------------------------------------------------
// Query results
// ---------------------------------------------------------------------------

// Result of Database::Interpolate.  confidence 0.0 means nothing was built.
struct InterpolationResult {
  CuttingParameter parameter;
  float confidence;   // 0.0 to 1.0
  bool extrapolated;  // outside the bracketing records
};

// Result of Testing::PerformInterpolation; same fields as InterpolationResult.
struct InterpolationResultInternal {
  CuttingParameter parameter;
  float confidence;
  bool extrapolated;
};

// Result of Database::GetSupportedThicknessRange.  With no match the minimum
// is the largest finite float and the maximum its negative.
struct SupportedThicknessRange {
  float min_thickness_mm;
  float max_thickness_mm;
  std::int32_t parameter_count;
  bool valid;  // parameter_count > 0
};

// Counters of the timed queries (FindExact, FindOptimal, Interpolate).
struct PerformanceMetrics {
  std::uint64_t total_queries;
  std::uint64_t queries_found;
  std::uint64_t queries_not_found;
  double avg_query_time_us;  // 0.0 when nothing was counted
  double max_query_time_us;  // 0.0 when nothing was counted
  double min_query_time_us;  // 1.0e9 when nothing was counted
};

// Result of Database::GetStatistics; all zero when not loaded.
struct DatabaseStats {
  std::uint32_t parameter_count;
  std::uint32_t vendor_count;
  std::uint32_t machine_count;
  std::uint32_t material_count;
  std::uint32_t consumable_set_count;
  std::uint64_t file_size_bytes;    // 0 for a database made by Create
  std::uint64_t uncompressed_size;  // header word at offset 120
  std::uint64_t reserved_a;         // always 0
  float compression_ratio;          // header word 116 / word 120, or 0
  std::uint32_t reserved_b[3];      // always 0
};

// ---------------------------------------------------------------------------
// Calculator records
// ---------------------------------------------------------------------------

struct CutEstimate {
  float cut_time_s;
  float pierce_time_total_s;
  float total_time_s;
  float cut_length_mm;
  std::uint32_t pierce_count;
};

struct MaterialPricing {
  float price_per_kg;
  float density_kg_m3;
  float material_utilization;  // below 0.1 counts as 0.1
};

struct JobCost {
  float material_cost;
  float consumable_cost;
  float machine_cost;
  float overhead_cost;
  float total_cost;
  float cost_per_meter;
  float cost_per_pierce;
};

struct ConsumableUsage {
  std::uint32_t usage_id;  // the host's own tag; not read by the library
  std::uint32_t starts;
  float arc_hours;
  float stress_factor_1;  // weight 1.0
  float stress_factor_2;  // weight 1.3
  float stress_factor_3;  // weight 1.5
  float stress_factor_4;  // weight 1.2
};

struct ConsumableLife {
  float primary_life_pct;
  float secondary_life_pct;
  float tertiary_life_pct;
  std::uint32_t primary_starts_left;
  std::uint32_t secondary_starts_left;
  float primary_hours_left;
  float secondary_hours_left;
  bool primary_replace_soon;
  bool secondary_replace_soon;
  bool tertiary_replace_soon;
  bool life_flag_reserved;  // always false
};

// A torch consumable set.  The library stores and returns it whole and never
// reads its fields.
struct ConsumableSet {
  std::uint16_t set_id;
  std::uint16_t rated_current_amps;
  char description[60];
  char nozzle_part[16];
  char electrode_part[16];
  char shield_part[16];
  char swirl_ring_part[16];
};

static_assert(sizeof(ConsumableSet) == 128, "ConsumableSet is 128 bytes");
static_assert(alignof(ConsumableSet) == 2, "ConsumableSet has 2-byte alignment");

struct KerfCompensation {
  float offset_mm;  // negative for inside cuts
  float kerf_width_mm;
  bool is_inside;
};

struct LeadInOut {
  float lead_in_length_mm;
  float lead_out_length_mm;
  float lead_in_angle_deg;
  float lead_in_radius_mm;
  float lead_out_radius_mm;
  float lead_out_angle_deg;
  bool use_arc_lead_in;
  bool use_lead_out;
};

struct CornerSlowdown {
  float speed_factor;  // fraction of cut speed at the corner
  float decel_distance_mm;
  float slow_zone_mm;
  float accel_distance_mm;
  bool sharp_corner;
  float sharp_corner_extension_mm;
};

struct SmallHoleParams {
  float speed_factor;
  float current_factor;
  float min_diameter_mm;
  bool small_hole;
  bool very_small_hole;
  bool hole_flag_reserved;  // always false
  float lead_in_max_mm;
};

struct PartSpacing {
  float min_spacing_mm;
  float sheet_edge_margin_mm;
  float base_gap_mm;
  float kerf_width_mm;
  float recommended_spacing_mm;
};

struct CommonLineRules {
  bool allowed;
  float max_thickness_mm;
  float min_segment_length_mm;
  float line_spacing_mm;
  bool requires_tabs;  // always false
  float tab_width_mm;
};

enum class QualityLevel : std::uint8_t {
  Production = 0,  // fastest, widest tolerances
  Standard = 1,
  Fine = 2,
  Precision = 3,  // slowest, tightest tolerances
};

struct EdgeQualityProfile {
  QualityLevel level;
  float speed_factor;
  float current_factor;
  float surface_roughness_um;
  float tolerance_mm;
  float max_bevel_deg;
};

struct HeatAffectedZone {
  float haz_width_mm;
  float inner_zone_mm;
  float outer_zone_mm;
  bool high_heat_input;
};

struct BevelLimits {
  float max_bevel_angle_deg;
  float max_land_height_mm;
  float recommended_angle_deg;
  bool bevel_supported;  // always true
  bool thick_plate;
  bool very_thick_plate;
  float angle_speed_coefficient;
};

// ---------------------------------------------------------------------------
// Database
// ---------------------------------------------------------------------------

// The parameter database.  A handle owning one body; movable, not copyable.
// A moved-from Database may only be destroyed or assigned to.
class SPARLANE_API Database {
 public:
  // Not loaded, all tables empty, no file.
  Database();
  ~Database();
  Database(Database&& other) noexcept;
  Database& operator=(Database&& other) noexcept;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // --- lifecycle ---------------------------------------------------------

  // Makes a new, empty, loaded database in memory with a fresh header.
  // Always returns Success.
  ErrorCode Create();

  // Releases the mapped file and marks the database not loaded.  Names,
  // records and indexes stay in memory until the next Create or load.
  void Close();

  // True while a database is created or loaded and not closed.
  bool IsLoaded() const;

  // The message of the last failure; success never clears it.
  std::string GetLastError() const;

  // --- files -------------------------------------------------------------

  // Closes, then loads a parameter file through a read-only mapping and
  // rebuilds the indexes.  Failures: FileNotFound, AccessDenied,
  // CorruptedFile, OutOfMemory, IoError, InvalidParameter ("Failed to open
  // file: " + path); InvalidMagic, UnsupportedVersion, CorruptedFile,
  // InvalidData, DecompressionFailed, InvalidParameter ("Failed to read
  // binary format").  A load slower than 5 ms succeeds and leaves a warning
  // as the last-error message.  A failed load leaves the database not loaded.
  ErrorCode LoadFromBinary(const std::string& path);

  // Import from an SQLite database.  Without SQLite support this returns
  // NotLoaded with "SQLite support not enabled. Rebuild with
  // -DENABLE_SQLITE=ON" and touches nothing.
  ErrorCode ImportFromSQLite(const std::string& path);

  // Writes the store to path through path + ".tmp" and a rename.
  // NotLoaded ("Database not loaded"); IoError, InvalidParameter,
  // BufferTooSmall, CompressionFailed ("Failed to write binary format to: "
  // + path).  Does not change the store.
  ErrorCode SaveToBinary(const std::string& path, CompressionType compression);

  // --- queries (never fail; empty results instead) -------------------------

  // A record of the material and machine whose thickness lies within
  // tolerance, found by bisection over the thickness index: the first the
  // bisection meets, not necessarily the closest.  Timed, counted, logged.
  std::optional<CuttingParameter> FindExact(const std::string& material, float thickness,
                                            const std::string& machine_model,
                                            float tolerance) const;

  // The record of the material and machine with the closest thickness; on
  // equal distances the earlier record in the table.
  std::optional<CuttingParameter> FindNearest(const std::string& material, float thickness,
                                              const std::string& machine_model) const;

  // Records of a machine model, optionally of one vendor (empty vendor: any).
  // Uses the machine index span as it lies when the model has one.
  std::vector<CuttingParameter> FindByMachine(const std::string& vendor,
                                              const std::string& machine_model) const;

  // All records of a material, in table order.
  std::vector<CuttingParameter> FindByMaterial(const std::string& material) const;

  // Thickness span covered for a material, optionally on one machine
  // (empty machine name: any).
  SupportedThicknessRange GetSupportedThicknessRange(const std::string& material,
                                                     const std::string& machine_model) const;

  // Settings for a thickness: a listed record, a linear interpolation between
  // the two bracketing records, or a conservative extrapolation, with a
  // confidence (0 when nothing could be built).  Timed, counted, logged.
  InterpolationResult Interpolate(const std::string& material, float thickness,
                                  const std::string& machine_model) const;

  // The fastest record of any machine for the material within tolerance of
  // the thickness.  Timed, counted, logged.
  std::optional<CuttingParameter> FindOptimal(const std::string& material, float thickness,
                                              float tolerance) const;

  // Fits a record to a machine whose top speed is max_speed: a real slower
  // neighbour (within 0.1 mm) if there is one, else the base capped at
  // max_speed with flag 0x20.
  CuttingParameter AdjustForMaxSpeed(const CuttingParameter& base, float max_speed) const;

  // Path length through a plate of this thickness for a tilted torch.
  static float CalculateEffectiveThickness(float thickness, float angle_degrees);

  // --- logging and metrics -------------------------------------------------

  // Switches the one-line query log on standard error.
  void SetQueryLogging(bool enabled);

  // Reads the query counters (not as one snapshot).  Safe beside queries.
  PerformanceMetrics GetPerformanceMetrics() const;

  // Puts every counter back to its initial value.  Safe beside queries.
  void ResetPerformanceMetrics();

  // --- integrity -----------------------------------------------------------

  // Checks header checksum, record count, every record and the indexes.
  // NotLoaded, ChecksumMismatch or InvalidData with a message naming the
  // finding; Success leaves the message as it was.
  ErrorCode Validate() const;

  // --- editing (changes live in memory until saved) ------------------------

  // Appends a checked record.  Does not rebuild the record indexes.
  // NotLoaded; InvalidParameter with the record check's message.
  ErrorCode AddParameter(const CuttingParameter& param);

  // Overwrites the record at 0-based position id, then rebuilds the indexes.
  // NotLoaded; InvalidParameter ("Parameter ID out of range: " + id, or the
  // record check's message).
  ErrorCode UpdateParameter(std::uint32_t id, const CuttingParameter& param);

  // Removes the record at 0-based position id; later records move down one.
  // NotLoaded; InvalidParameter ("Parameter ID out of range: " + id).
  ErrorCode DeleteParameter(std::uint32_t id);

  // Adds a machine model, and its vendor when new.  The third argument is
  // accepted and ignored.  NotLoaded; InvalidParameter (empty or over 255
  // bytes); AlreadyExists ("Machine model already exists: " + model).
  ErrorCode AddMachine(const std::string& vendor, const std::string& model,
                       const std::string& unused);

  // Adds a material.  NotLoaded; InvalidParameter (empty or over 255 bytes);
  // AlreadyExists ("Material already exists: " + name).
  ErrorCode AddMaterial(const std::string& name);

  // --- catalogue -----------------------------------------------------------

  // Copies of the name tables; element i has id i + 1.  Not affected by
  // Close.
  std::vector<std::string> GetVendors() const;
  std::vector<std::string> GetMachines() const;
  std::vector<std::string> GetMaterials() const;

  // Counts and file figures; all zero when not loaded.
  DatabaseStats GetStatistics() const;

  // --- calculators (pure; safe on any thread) --------------------------------

  static CutEstimate EstimateCutTime(const CuttingParameter& param, float cut_length_mm,
                                     unsigned int pierce_count);
  static JobCost EstimateJobCost(const CuttingParameter& param, float cut_length_mm,
                                 unsigned int pierce_count, const MaterialPricing& pricing,
                                 float machine_rate_per_hour, float consumable_set_price);
  static ConsumableLife EstimateConsumableLife(const ConsumableUsage& usage,
                                               unsigned short current_amps);

  // The consumable set with this id, if the store holds one.
  std::optional<ConsumableSet> GetConsumableSet(unsigned short set_id) const;

  static KerfCompensation CalculateKerfCompensation(const CuttingParameter& param,
                                                    bool is_inside);
  static LeadInOut CalculateLeadInOut(const CuttingParameter& param, bool limit_to_thickness);
  static CornerSlowdown CalculateCornerSlowdown(const CuttingParameter& param,
                                                float corner_angle_deg);
  static SmallHoleParams GetSmallHoleParams(const CuttingParameter& param,
                                            float hole_diameter_mm);
  static PartSpacing CalculatePartSpacing(const CuttingParameter& param);
  static CommonLineRules GetCommonLineRules(const CuttingParameter& param);
  static EdgeQualityProfile GetQualityProfile(const CuttingParameter& param, QualityLevel level);
  static HeatAffectedZone CalculateHAZ(const CuttingParameter& param);
  // name is accepted and not consulted.
  static BevelLimits GetBevelLimits(const CuttingParameter& param, const std::string& name);

  // --- export ----------------------------------------------------------------

  // One CSV line per record, names instead of ids.  NotLoaded; IoError
  // ("Failed to open file for writing: " + path, or "Error writing to file").
  ErrorCode ExportToCSV(const std::string& path);

  // The whole store as one JSON document.  Codes and messages as ExportToCSV.
  ErrorCode ExportToJSON(const std::string& path);

 private:
  struct Impl;
  friend struct DatabaseAccess;  // internal and test access to the body
  Impl* impl_;
};

// ---------------------------------------------------------------------------
// Testing: the primitives behind the database, exposed for direct use.
// All are pure and safe on any thread.
// ---------------------------------------------------------------------------
namespace Testing {

// The stand-alone header test: InvalidMagic, UnsupportedVersion,
// InvalidParameter (limits, offsets), ChecksumMismatch, or Success.
SPARLANE_API ErrorCode ValidateHeader(const FileHeader& header);

// CRC-32 (IEEE, as in zip); 0 for a null pointer or zero length.
SPARLANE_API std::uint32_t CalculateCRC32(const std::uint8_t* data, std::size_t length);

// Removes every "..", every NUL, and keeps at most 4096 bytes.
SPARLANE_API std::string SanitizePath(const std::string& path);

// Linear interpolation between two records at a thickness.
SPARLANE_API CuttingParameter InterpolateLinear(const CuttingParameter& lower,
                                                const CuttingParameter& upper, float thickness);

// Record and confidence from up to two neighbours; either may be null.
SPARLANE_API InterpolationResultInternal PerformInterpolation(const CuttingParameter* lower,
                                                              const CuttingParameter* upper,
                                                              float thickness);

// Conservative extrapolation of one record to another thickness.
SPARLANE_API CuttingParameter ExtrapolateConservative(const CuttingParameter& source,
                                                      float thickness);

// Record adjusted for a torch tilted by angle_degrees (flag 0x80).
SPARLANE_API CuttingParameter AdjustForTorchAngle(const CuttingParameter& base,
                                                  float angle_degrees);

// Strict physical-range check of one record: Success or InvalidParameter.
SPARLANE_API ErrorCode ValidateParameter(const CuttingParameter& p);

// True when value lies more than threshold sample deviations from the mean.
SPARLANE_API bool IsStatisticalOutlier(float value, const std::vector<float>& sample,
                                       float threshold);

}  // namespace Testing
}  // namespace Sparlane

#endif  // SPARLANE_SPARLANE_H_
