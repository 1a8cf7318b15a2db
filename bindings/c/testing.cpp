// The Testing primitives.
#include <cstdlib>
#include <cstring>
#include <vector>

#include "handle.h"
#include "mirror.h"

using sparlane_c::Calculate;
using sparlane_c::ToCpp;
namespace Testing = Sparlane::Testing;

namespace {

// A library-owned copy of text for the host, or NULL when memory runs out.
char* CopyOut(const std::string& text, size_t* out_length) {
  char* copy = static_cast<char*>(std::malloc(text.size() + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text.data(), text.size());
  copy[text.size()] = '\0';
  if (out_length != nullptr) *out_length = text.size();
  return copy;
}

}  // namespace

extern "C" {

int sparlane_testing_validate_header(const sparlane_file_header_t* header) {
  if (header == nullptr) return SPARLANE_INVALID_PARAMETER;
  return static_cast<int>(
      Testing::ValidateHeader(sparlane_c::Mirror<Sparlane::FileHeader>(*header)));
}

uint32_t sparlane_testing_calculate_crc32(const void* data, size_t length) {
  return Testing::CalculateCRC32(static_cast<const std::uint8_t*>(data), length);
}

char* sparlane_testing_sanitize_path_n(const char* path, size_t length, size_t* out_length) {
  if (out_length != nullptr) *out_length = 0;
  if (!sparlane_c::IsName(path, length)) return nullptr;
  try {
    return CopyOut(Testing::SanitizePath(sparlane_c::Name(path, length)), out_length);
  } catch (...) {
    return nullptr;
  }
}

char* sparlane_testing_sanitize_path(const char* path) {
  return sparlane_testing_sanitize_path_n(path, sparlane_c::LengthOf(path), nullptr);
}

int sparlane_testing_interpolate_linear(const sparlane_parameter_t* lower,
                                        const sparlane_parameter_t* upper, float thickness,
                                        sparlane_parameter_t* out) {
  if (lower == nullptr || upper == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(
      out, [&] { return Testing::InterpolateLinear(ToCpp(*lower), ToCpp(*upper), thickness); });
}

int sparlane_testing_perform_interpolation(const sparlane_parameter_t* lower,
                                           const sparlane_parameter_t* upper, float thickness,
                                           sparlane_interpolation_t* out) {
  if (out == nullptr) return SPARLANE_INVALID_PARAMETER;
  Sparlane::CuttingParameter low{};
  Sparlane::CuttingParameter high{};
  if (lower != nullptr) low = ToCpp(*lower);
  if (upper != nullptr) high = ToCpp(*upper);
  sparlane_c::InterpolationToC(
      Testing::PerformInterpolation(lower != nullptr ? &low : nullptr,
                                    upper != nullptr ? &high : nullptr, thickness),
      out);
  return SPARLANE_SUCCESS;
}

int sparlane_testing_extrapolate_conservative(const sparlane_parameter_t* source, float thickness,
                                              sparlane_parameter_t* out) {
  if (source == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out,
                   [&] { return Testing::ExtrapolateConservative(ToCpp(*source), thickness); });
}

int sparlane_testing_adjust_for_torch_angle(const sparlane_parameter_t* base, float angle_degrees,
                                            sparlane_parameter_t* out) {
  if (base == nullptr) return SPARLANE_INVALID_PARAMETER;
  return Calculate(out, [&] { return Testing::AdjustForTorchAngle(ToCpp(*base), angle_degrees); });
}

int sparlane_testing_validate_parameter(const sparlane_parameter_t* param) {
  if (param == nullptr) return SPARLANE_INVALID_PARAMETER;
  return static_cast<int>(Testing::ValidateParameter(ToCpp(*param)));
}

int sparlane_testing_is_statistical_outlier(float value, const float* sample, size_t count,
                                            float threshold) {
  if (sample == nullptr && count != 0) return 0;
  return sparlane_c::Query(0, [&] {
    const std::vector<float> values(sample, sample + count);
    return Testing::IsStatisticalOutlier(value, values, threshold) ? 1 : 0;
  });
}

}  // extern "C"
