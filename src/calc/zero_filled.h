// Shared helpers of the calculators.
#ifndef SPARLANE_CALC_ZERO_FILLED_H_
#define SPARLANE_CALC_ZERO_FILLED_H_

#include <cfloat>
#include <cstring>
#include <type_traits>

// The calculators promise bit-identical results everywhere, which needs every
// float operation rounded to single precision as it happens.  x87 evaluation
// keeps excess precision; build such targets with -msse2 -mfpmath=sse.
#if defined(FLT_EVAL_METHOD) && FLT_EVAL_METHOD != 0 && FLT_EVAL_METHOD != -1
#error "sparlane calculators need single-precision float evaluation (FLT_EVAL_METHOD 0)"
#endif

namespace Sparlane {
namespace calc {

// A result record with every byte zero, padding included, so fields a
// calculator leaves alone read as 0 / false.
template <typename T>
inline T ZeroFilled() {
  static_assert(std::is_trivially_copyable<T>::value, "plain result record");
  T result;
  std::memset(&result, 0, sizeof result);
  return result;
}

}  // namespace calc
}  // namespace Sparlane

#endif  // SPARLANE_CALC_ZERO_FILLED_H_
