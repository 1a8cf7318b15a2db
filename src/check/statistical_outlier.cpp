// Testing::IsStatisticalOutlier: distance from the sample mean in sample
// standard deviations.  Everything in 32-bit floats, in sample order, so the
// result is the same on every platform.
#include <cmath>
#include <cstddef>
#include <vector>

#include "sparlane/testing.h"

namespace Sparlane {
namespace Testing {

bool IsStatisticalOutlier(float value, const std::vector<float>& sample, float threshold) {
  const std::size_t n = sample.size();
  if (n < 3) return false;

  float sum = 0.0f;
  for (float x : sample) sum += x;
  const float mean = sum / static_cast<float>(n);

  float squares = 0.0f;
  for (float x : sample) {
    const float d = x - mean;
    squares += d * d;
  }
  const float variance = squares / static_cast<float>(n - 1);
  const float deviation = std::sqrt(variance);

  // No spread, no outliers.  A NaN deviation falls through and compares false.
  if (deviation < 0.0001f) return false;
  return std::fabs((value - mean) / deviation) > threshold;
}

}  // namespace Testing
}  // namespace Sparlane
