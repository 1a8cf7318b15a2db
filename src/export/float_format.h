// Floats in the default stream format ("%g", precision 6, classic locale),
// without the stream.
#ifndef SPARLANE_EXPORT_FLOAT_FORMAT_H_
#define SPARLANE_EXPORT_FLOAT_FORMAT_H_

namespace Sparlane {

// Longest output: "-1.17549e-38" (12 bytes).
constexpr int kFormattedFloatMax = 16;

// Writes value as printf("%.6g") in the "C" locale would and returns the end.
// out must have room for kFormattedFloatMax bytes.
char* FormatFloatGeneral6(float value, char* out);

}  // namespace Sparlane

#endif  // SPARLANE_EXPORT_FLOAT_FORMAT_H_
