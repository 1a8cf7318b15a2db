// The parameter record and the error codes: the vocabulary every other
// header speaks.
#ifndef SPARLANE_RECORDS_H_
#define SPARLANE_RECORDS_H_

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace Sparlane {

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

}  // namespace Sparlane

#endif  // SPARLANE_RECORDS_H_
