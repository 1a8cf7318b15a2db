// The primitives behind the database, exposed for direct use and testing.
// All are pure and safe on any thread.
#ifndef SPARLANE_TESTING_H_
#define SPARLANE_TESTING_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "sparlane/export.h"
#include "sparlane/file_header.h"
#include "sparlane/records.h"
#include "sparlane/results.h"

namespace Sparlane {
namespace Testing {

// The stand-alone header test: InvalidMagic, UnsupportedVersion,
// InvalidParameter (count limits, offsets below 1024 or out of order),
// ChecksumMismatch (a non-zero checksum that differs from the CRC of all
// 1024 bytes with the checksum zeroed), or Success.  Its checksum rule
// differs from the loader's on purpose, so a saved header fails it unless
// its checksum is zeroed.
SPARLANE_API ErrorCode ValidateHeader(const FileHeader& header);

// CRC-32 (IEEE, as in zip); 0 for a null pointer or zero length.
SPARLANE_API std::uint32_t CalculateCRC32(const std::uint8_t* data, std::size_t length);

// Removes every "..", then every NUL, and keeps at most 4096 bytes.  Never
// fails; "" stays "".
SPARLANE_API std::string SanitizePath(const std::string& path);

// Linear interpolation between two records at a thickness: lower's fields
// with the settings moved by the clamped fraction (NaN counts as 0), the
// thickness set unclamped, the current rounded, flag 0x10.  Thicknesses
// closer than 0.001 give a copy of lower with flag 0x10 and lower's
// thickness.
SPARLANE_API CuttingParameter InterpolateLinear(const CuttingParameter& lower,
                                                const CuttingParameter& upper, float thickness);

// Record and confidence from up to two neighbours; either may be null.
// Both null: all zero, confidence 0.  Both given: the linear step,
// confidence 0.9 to 1.0.  One given: its extrapolation, confidence 0.7
// falling by 0.1 per mm of distance, never below 0.  A NaN thickness gives
// a NaN confidence.
SPARLANE_API InterpolationResultInternal PerformInterpolation(const CuttingParameter* lower,
                                                              const CuttingParameter* upper,
                                                              float thickness);

// Conservative extrapolation of one record to another thickness (flag
// 0x10): slower and higher for thicker plate, faster and lower for thinner.
// No guard: a target of 0 gives an infinite speed, a source thickness of 0
// or NaN gives NaN settings.
SPARLANE_API CuttingParameter ExtrapolateConservative(const CuttingParameter& source,
                                                      float thickness);

// Record adjusted for a torch tilted by angle_degrees (flag 0x80): thicker
// path, slower speed, longer pierce.  base unchanged for an angle below
// 0.001 degrees (negative ones included) or where the cosine drops below
// 0.01, as near 90 degrees; a NaN angle gives NaN fields.
SPARLANE_API CuttingParameter AdjustForTorchAngle(const CuttingParameter& base,
                                                  float angle_degrees);

// Strict physical-range check of one record: Success or InvalidParameter.
// Fails a NaN or infinite field, a zero id, thickness outside 0.1 to 300,
// speed outside 10 to 20000, current outside 1 to 1000, voltage outside 20
// to 300, a negative height, pierce time or kerf, and a cut height above
// the pierce height.
SPARLANE_API ErrorCode ValidateParameter(const CuttingParameter& p);

// Why ValidateParameter fails p: the first failing rule, in the order
// ValidateParameter tests them, as a short sentence naming the field
// ("cut_speed_mm_min must be 10 to 20000 mm/min"); "" exactly when
// ValidateParameter(p) is Success.
SPARLANE_API std::string ExplainParameter(const CuttingParameter& p);

// True when value lies more than threshold sample standard deviations from
// the sample mean.  False for fewer than 3 values, for a spread below
// 0.0001, and whenever a NaN is involved.
SPARLANE_API bool IsStatisticalOutlier(float value, const std::vector<float>& sample,
                                       float threshold);

}  // namespace Testing
}  // namespace Sparlane

#endif  // SPARLANE_TESTING_H_
