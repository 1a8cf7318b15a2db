// The parameter database.
#ifndef SPARLANE_DATABASE_H_
#define SPARLANE_DATABASE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sparlane/calculators.h"
#include "sparlane/export.h"
#include "sparlane/file_header.h"
#include "sparlane/records.h"
#include "sparlane/results.h"

namespace Sparlane {

// A handle owning one body; movable, not copyable.  A moved-from Database
// may only be destroyed or assigned to.
class SPARLANE_API Database {
 public:
  // Not loaded, all tables empty, header all zero, no file.
  Database();
  ~Database();
  Database(Database&& other) noexcept;
  Database& operator=(Database&& other) noexcept;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // --- lifecycle ---------------------------------------------------------

  // Makes a new, empty, loaded database in memory with a fresh header
  // (magic, version 1.0, creation time; counts and offsets zero until a
  // save).  Always returns Success; the last error, the query counters and
  // the logging switch are kept.
  ErrorCode Create();

  // Releases the mapped file and marks the database not loaded.  Names,
  // records, indexes and header stay in memory until the next Create or
  // load.  Harmless when not loaded.
  void Close();

  // True while a database is created or loaded and not closed.
  bool IsLoaded() const;

  // The message of the last failure ("" if none yet); success never clears
  // it.
  std::string GetLastError() const;

  // --- files -------------------------------------------------------------

  // Closes, then loads a parameter file through a read-only mapping and
  // rebuilds the indexes.  Failures: FileNotFound, AccessDenied,
  // CorruptedFile, OutOfMemory, IoError, InvalidParameter ("Failed to open
  // file: " + path); InvalidMagic, UnsupportedVersion, CorruptedFile,
  // InvalidData, DecompressionFailed, InvalidParameter ("Failed to read
  // binary format").  The path loses every ".." and NUL first (see
  // Testing::SanitizePath) and messages show it so.  A load slower than
  // 5 ms succeeds and leaves a warning as the last-error message.  A failed
  // load leaves the database not loaded; names and records the parser had
  // already read before the failure stay in memory.
  ErrorCode LoadFromBinary(const std::string& path);

  // Import from an SQLite database.  Without SQLite support this returns
  // NotLoaded with "SQLite support not enabled. Rebuild with
  // -DENABLE_SQLITE=ON" and touches nothing.
  ErrorCode ImportFromSQLite(const std::string& path);

  // Writes the store to path through path + ".tmp" and a rename.
  // NotLoaded ("Database not loaded"); IoError, InvalidParameter (a
  // compression value outside the enumeration), BufferTooSmall,
  // CompressionFailed ("Failed to write binary format to: " + path).  Does
  // not change the store.
  ErrorCode SaveToBinary(const std::string& path, CompressionType compression);

  // --- queries (never fail; empty results instead) -------------------------
  // Every query returns its empty result when the database is not loaded or
  // a name is unknown (names are exact bytes, case-sensitive).  The searches
  // assume the table in (material_id, machine_model_id, thickness_mm)
  // order, as files are written (see SortParameters); on any other order
  // they return what their bisections and index spans meet.

  // A record of the material and machine whose thickness lies within
  // tolerance, found by bisection over the thickness index: the first the
  // bisection meets, not necessarily the closest.  Empty, and not counted,
  // for a negative, infinite or NaN thickness; the tolerance is not checked.
  // Timed, counted, logged.
  std::optional<CuttingParameter> FindExact(const std::string& material, float thickness,
                                            const std::string& machine_model,
                                            float tolerance) const;

  // The record of the material and machine with the closest thickness; on
  // equal distances the earlier record in the table.  Any thickness is
  // accepted; a NaN one matches nothing.
  std::optional<CuttingParameter> FindNearest(const std::string& material, float thickness,
                                              const std::string& machine_model) const;

  // Records of a machine model, optionally of one vendor (empty vendor: any;
  // unknown vendor: none).  Uses the machine index span as it lies when the
  // model has one.
  std::vector<CuttingParameter> FindByMachine(const std::string& vendor,
                                              const std::string& machine_model) const;

  // All records of a material, in table order.
  std::vector<CuttingParameter> FindByMaterial(const std::string& material) const;

  // Thickness span covered for a material, optionally on one machine
  // (empty machine name: any).  NaN thicknesses are counted but move
  // neither bound.
  SupportedThicknessRange GetSupportedThicknessRange(const std::string& material,
                                                     const std::string& machine_model) const;

  // Settings for a thickness: a listed record, a linear interpolation between
  // the two bracketing records, or a conservative extrapolation, with a
  // confidence.  Confidence 0 and an all-zero record for a negative,
  // infinite or NaN thickness (not counted) or for a material and machine
  // without records (counted).  Timed, counted, logged.
  InterpolationResult Interpolate(const std::string& material, float thickness,
                                  const std::string& machine_model) const;

  // Settings for a thickness with the cut speed following a power law of
  // thickness, as plasma charts do (docs/estimate.md gives the reasons).
  // Opt-in beside Interpolate, which it leaves unchanged.  The series is
  // every record of the material and machine wherever it lies in the table
  // (order and indexes do not matter), without rows whose thickness is not
  // finite or not > 0, ordered by thickness then table position; of rows
  // closer than 0.001 mm the first is kept.
  //  - A row within 0.001 mm (the nearer; the thinner of equals): that row
  //    unchanged, confidence 1, not extrapolated.
  //  - Between rows a and b: InterpolateLinear(a, b, thickness) with the
  //    speed replaced by va * (t / ta)^k, k = ln(vb / va) / ln(tb / ta),
  //    when both speeds are finite and > 0.
  //  - Beyond the rows, from the nearest row n and the next s: a copy of n
  //    with the thickness, flag 0x10 and extrapolated set; speed by the law
  //    through n and s (else ExtrapolateConservative's speed from n), never
  //    above the fastest listed speed; the other float fields
  //    n + (n - s) * (t - tn) / (tn - ts), never below the smallest value
  //    the series lists for that field; current_amps likewise, rounded half
  //    away from zero, at most 65535.
  //  - A series of one row: ExtrapolateConservative(row, thickness).
  // Confidence: with u the log distance to the nearer row of the pair used
  // over the pair's log span, and fit = 1 / (1 + mean relative error of the
  // pair's law at the adjacent rows) (0.5 without such a row or law):
  // fit * (1 - u) between rows, 0.7 * fit / (1 + u) beyond them,
  // 0.35 / (1 + |ln(t / t_row)|) for one row; always in (0, 1] when a record
  // is returned.  Confidence 0, an all-zero record and extrapolated false
  // when not loaded, for a thickness that is not finite or not > 0, an
  // unknown name, no usable row, or a result with a field that is not
  // finite.  Not timed, counted or logged.
  InterpolationResult Estimate(const std::string& material, float thickness,
                               const std::string& machine_model) const;

  // The fastest record of any machine for the material within tolerance of
  // the thickness; the first of equal speeds, never one of speed 0 or less.
  // Empty, and not counted, for a negative, infinite or NaN thickness.
  // Timed, counted, logged.
  std::optional<CuttingParameter> FindOptimal(const std::string& material, float thickness,
                                              float tolerance) const;

  // Fits a record to a machine whose top speed is max_speed: a real slower
  // neighbour of the same material and machine within 0.1 mm if there is
  // one, else base capped at max_speed with flag 0x20.  base unchanged when
  // not loaded or when max_speed is not below its speed (a NaN either way).
  CuttingParameter AdjustForMaxSpeed(const CuttingParameter& base, float max_speed) const;

  // Path length through a plate of this thickness for a torch tilted by
  // angle_degrees: thickness / cos(angle).  0 for a thickness of 0 or less;
  // the thickness itself for an angle outside 0 to 90; 100 x thickness
  // where the cosine drops below 0.01.  A NaN argument gives NaN.
  static float CalculateEffectiveThickness(float thickness, float angle_degrees);

  // --- logging and metrics -------------------------------------------------

  // Switches the one-line query log on standard error.  Off at construction;
  // Create and loads keep it.
  void SetQueryLogging(bool enabled);

  // Reads the query counters (not as one snapshot).  Safe beside queries.
  PerformanceMetrics GetPerformanceMetrics() const;

  // Puts every counter back to its initial value.  Safe beside queries.
  void ResetPerformanceMetrics();

  // --- integrity -----------------------------------------------------------

  // Checks header checksum (for a database loaded from a file), record
  // count, every record and the indexes; the first finding wins.  NotLoaded
  // ("Database not loaded"), ChecksumMismatch or InvalidData with a message
  // naming the finding and the record's position; Success leaves the
  // message as it was.  Repairs nothing.
  ErrorCode Validate() const;

  // --- editing (changes live in memory until saved) ------------------------

  // Appends a checked record.  Does not rebuild the record indexes, so the
  // index-driven queries see it only after the next rebuild.  NotLoaded;
  // InvalidParameter with the record check's message (NaN or infinite
  // field, thickness or speed not above 0, current 0, an id outside its
  // name table).
  ErrorCode AddParameter(const CuttingParameter& param);

  // Overwrites the record at 0-based position id, then rebuilds the indexes.
  // NotLoaded; InvalidParameter ("Parameter ID out of range: " + id, or the
  // record check's message).
  ErrorCode UpdateParameter(std::uint32_t id, const CuttingParameter& param);

  // Removes the record at 0-based position id; later records move down one
  // and the header's record count follows.  NotLoaded; InvalidParameter
  // ("Parameter ID out of range: " + id).
  ErrorCode DeleteParameter(std::uint32_t id);

  // Sorts the record table into the order the searches assume: material_id,
  // then machine_model_id, then thickness_mm, each ascending.  Records with
  // equal keys keep their order (-0.0 and 0.0 are equal), and a NaN
  // thickness sorts after every other thickness of its material and
  // machine.  Then rebuilds the record indexes.  Names, header and the
  // records' bytes are unchanged.  NotLoaded ("Database not loaded").
  ErrorCode SortParameters();

  // Adds a machine model, and its vendor when new.  The third argument is
  // accepted and ignored.  NotLoaded; InvalidParameter (empty or over 255
  // bytes, or a full name table); AlreadyExists ("Machine model already
  // exists: " + model).
  ErrorCode AddMachine(const std::string& vendor, const std::string& model,
                       const std::string& unused);

  // Adds a material.  NotLoaded; InvalidParameter (empty or over 255 bytes,
  // or a full name table); AlreadyExists ("Material already exists: " +
  // name).
  ErrorCode AddMaterial(const std::string& name);

  // --- catalogue -----------------------------------------------------------
  // These read what the store holds whether or not it is loaded: after
  // Close, and after a failed load, the data of the last load or edit.

  // Copies of the name tables; element i has id i + 1.
  std::vector<std::string> GetVendors() const;
  std::vector<std::string> GetMachines() const;
  std::vector<std::string> GetMaterials() const;

  // The id a query resolves a name to: exact bytes, case-sensitive; a name
  // listed twice maps to its last id; 0 for an unknown name.  Ids are
  // 16-bit: in a table longer than 65535 names (possible only in a file)
  // later names get their position's low 16 bits.
  std::uint16_t GetVendorId(const std::string& name) const;
  std::uint16_t GetMachineId(const std::string& name) const;
  std::uint16_t GetMaterialId(const std::string& name) const;

  // A copy of the whole record table in table order.
  std::vector<CuttingParameter> GetParameters() const;

  // A copy of the header in memory: the file's after a load, a fresh one
  // after Create (counts and offsets 0; a save writes its own), all zero on
  // a database never created or loaded.
  FileHeader GetFileHeader() const;

  // Counts and file figures; all zero when not loaded.
  DatabaseStats GetStatistics() const;

  // --- calculators (pure; safe on any thread) --------------------------------
  // They read only their arguments, never fail and guard only where said:
  // otherwise a NaN, negative or zero field flows through the arithmetic
  // into the result.

  // Cut time at the record's speed plus pierce_count pierces.  All three
  // times 0 when the length or the speed is not above 0 (or NaN), even with
  // pierces asked for.
  static CutEstimate EstimateCutTime(const CuttingParameter& param, float cut_length_mm,
                                     unsigned int pierce_count);

  // Kerf material, consumables, machine time and a fixed 5.0 per hour of
  // overhead.  No cut time when the speed is not above 0; utilisation below
  // 0.1 counts as 0.1; cost_per_meter 0 for a length not above 0 and
  // cost_per_pierce 0 for no pierces.
  static JobCost EstimateJobCost(const CuttingParameter& param, float cut_length_mm,
                                 unsigned int pierce_count, const MaterialPricing& pricing,
                                 float machine_rate_per_hour, float consumable_set_price);

  // Remaining life of the three wear parts.  current_amps 0 gets the
  // factor of 45 A, 1 to 30 A that of 30 A; a load figure below 0.01 (all
  // stress factors 0, or negative) counts as 1.0.  Percentages lie in 0 to
  // 100 and nothing left is negative; a NaN stress factor gives NaN
  // percentages and hours and 0 starts left.
  static ConsumableLife EstimateConsumableLife(const ConsumableUsage& usage,
                                               unsigned short current_amps);

  // The consumable set with this id, if the store holds one; works loaded or
  // not.
  std::optional<ConsumableSet> GetConsumableSet(unsigned short set_id) const;

  // Offset of half the kerf, negative for an inside cut.
  static KerfCompensation CalculateKerfCompensation(const CuttingParameter& param,
                                                    bool is_inside);

  // Lead-in at least 3 mm (0.75 x thickness), lead-out 1.5 x lead-in.
  // limit_to_thickness caps the lengths at half the thickness and the
  // thickness; the radii keep the uncapped sizes, so a thickness of 0 or
  // less gives lengths of 0 or less with it.
  static LeadInOut CalculateLeadInOut(const CuttingParameter& param, bool limit_to_thickness);

  // Slowdown at a corner: the angle is taken within 0 to 180 degrees (beyond
  // either end counts as that end), giving speed factors from 0.3 to 1.0.
  // A NaN angle gives a NaN factor and no sharp corner.
  static CornerSlowdown CalculateCornerSlowdown(const CuttingParameter& param,
                                                float corner_angle_deg);

  // Settings for a hole of this diameter.  Below 1.5 kerf widths the hole
  // cannot be cut (both factors 0, both flags set).  Otherwise the factors
  // fall with diameter / thickness; a ratio that is infinite or NaN (a
  // thickness of 0) gets full settings.
  static SmallHoleParams GetSmallHoleParams(const CuttingParameter& param,
                                            float hole_diameter_mm);

  // Gap between nested parts, growing with thickness, and an edge margin of
  // at least 10 mm.
  static PartSpacing CalculatePartSpacing(const CuttingParameter& param);

  // Common-line cutting: allowed up to 12 mm (not for a NaN thickness).
  static CommonLineRules GetCommonLineRules(const CuttingParameter& param);

  // The edge-quality profile of a level.  A level outside the enumeration is
  // returned as given with every number 0.
  static EdgeQualityProfile GetQualityProfile(const CuttingParameter& param, QualityLevel level);

  // Heat-affected zone, at most 3 mm wide.  A speed not above 0 (or NaN)
  // gives the heat figure 1.0 instead of a division.
  static HeatAffectedZone CalculateHAZ(const CuttingParameter& param);

  // Bevel limits: for a finite thickness the angle lies within 25 to 45
  // degrees.  name is accepted and not consulted.
  static BevelLimits GetBevelLimits(const CuttingParameter& param, const std::string& name);

  // --- export ----------------------------------------------------------------

  // One CSV line per record, names instead of ids (an id outside its table
  // writes an empty name).  NotLoaded; IoError ("Failed to open file for
  // writing: " + path, or "Error writing to file").
  ErrorCode ExportToCSV(const std::string& path);

  // The whole store as one JSON document.  Non-finite numbers are written as
  // the C++ stream spells them, so such a document is not valid JSON.  Codes
  // and messages as ExportToCSV.
  ErrorCode ExportToJSON(const std::string& path);

 private:
  struct Impl;
  // The library's own tests reach the body through this; no installed
  // header defines it.
  friend struct DatabaseAccess;
  Impl* impl_;
};

}  // namespace Sparlane

#endif  // SPARLANE_DATABASE_H_
