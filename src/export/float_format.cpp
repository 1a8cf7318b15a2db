// Six significant digits of a float, fast.
//
// A normal float is exactly m * 2^e (m below 2^24).  For 1e-5 <= |f| < 1e7
// the six-digit rounding q = round(f * 10^(5 - k)), k = floor(log10 |f|),
// is computed exactly as a quotient of two 64-bit integers and rounded half
// to even, as printf rounds the exact binary value.  Everything else (zero,
// subnormals, huge or tiny magnitudes, infinities, NaNs) takes the standard
// conversion.  Both paths are locale-independent.
#include "export/float_format.h"

#include <charconv>
#include <cstdint>
#include <cstring>

namespace Sparlane {
namespace {

constexpr int kMinExponent = -5;  // fast path: 1e-5 <= |f| < 1e7
constexpr int kMaxExponent = 6;

constexpr std::uint64_t kPow10[] = {1ull,        10ull,        100ull,       1000ull,
                                    10000ull,    100000ull,    1000000ull,   10000000ull,
                                    100000000ull, 1000000000ull, 10000000000ull};
// Rough decade thresholds to pick k; the exact test follows.
constexpr double kDecadeStart[] = {1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1e0,
                                   1e1,  1e2,  1e3,  1e4,  1e5,  1e6, 1e7};

char* FormatExact(float value, char* out) {
  return std::to_chars(out, out + kFormattedFloatMax, value, std::chars_format::general, 6).ptr;
}

// m * 2^e * 10^(5 - k) as numerator / denominator.
struct Fraction {
  std::uint64_t numerator;
  std::uint64_t denominator;
};

Fraction Scaled(std::uint32_t m, int e, int k) {
  const int p = 5 - k;  // -1 to 10
  std::uint64_t num = m;
  std::uint64_t den = 1;
  if (p >= 0) {
    num *= kPow10[p];
  } else {
    den = kPow10[-p];
  }
  if (e >= 0) {
    num <<= e;
  } else {
    den <<= -e;
  }
  return {num, den};
}

// Digits of value = d.ddddd * 10^exponent, trailing zeros dropped.
struct SixDigits {
  char digits[8];
  int count;
  int exponent;
};

char* PutExponentForm(const SixDigits& d, char* out) {
  *out++ = d.digits[0];
  if (d.count > 1) {
    *out++ = '.';
    std::memcpy(out, d.digits + 1, static_cast<std::size_t>(d.count - 1));
    out += d.count - 1;
  }
  *out++ = 'e';
  int e = d.exponent;
  *out++ = e < 0 ? '-' : '+';
  if (e < 0) e = -e;
  if (e < 10) *out++ = '0';
  return std::to_chars(out, out + 4, e).ptr;
}

char* PutFixedForm(const SixDigits& d, char* out) {
  if (d.exponent < 0) {
    *out++ = '0';
    *out++ = '.';
    for (int i = -1; i > d.exponent; --i) *out++ = '0';
    std::memcpy(out, d.digits, static_cast<std::size_t>(d.count));
    return out + d.count;
  }
  const int whole = d.exponent + 1;
  for (int i = 0; i < whole; ++i) *out++ = i < d.count ? d.digits[i] : '0';
  if (d.count > whole) {
    *out++ = '.';
    std::memcpy(out, d.digits + whole, static_cast<std::size_t>(d.count - whole));
    out += d.count - whole;
  }
  return out;
}

// False when |value| lies outside the fast path's range.
bool RoundToSixDigits(std::uint32_t bits, SixDigits* d) {
  const int biased = static_cast<int>((bits >> 23) & 0xFFu);
  if (biased == 0 || biased == 0xFF) return false;  // zero, subnormal, inf, NaN
  const std::uint32_t m = (bits & 0x7FFFFFu) | 0x800000u;
  const int e = biased - 150;

  float magnitude;
  const std::uint32_t abs_bits = bits & 0x7FFFFFFFu;
  std::memcpy(&magnitude, &abs_bits, sizeof magnitude);
  if (magnitude < kDecadeStart[0] || magnitude >= kDecadeStart[12]) return false;
  int k = kMinExponent;
  while (k < kMaxExponent && magnitude >= kDecadeStart[k - kMinExponent + 1]) ++k;

  // Settle k exactly: 10^5 <= f * 10^(5 - k) < 10^6.
  Fraction f = Scaled(m, e, k);
  std::uint64_t q = f.numerator / f.denominator;
  if (q < 100000u) {
    if (--k < kMinExponent) return false;
    f = Scaled(m, e, k);
    q = f.numerator / f.denominator;
  } else if (q >= 1000000u) {
    if (++k > kMaxExponent) return false;
    f = Scaled(m, e, k);
    q = f.numerator / f.denominator;
  }
  const std::uint64_t twice_rest = 2 * (f.numerator - q * f.denominator);
  if (twice_rest > f.denominator || (twice_rest == f.denominator && (q & 1u) != 0)) ++q;
  if (q == 1000000u) {
    q = 100000u;
    ++k;
  }

  for (int i = 5; i >= 0; --i) {
    d->digits[i] = static_cast<char>('0' + q % 10);
    q /= 10;
  }
  d->count = 6;
  while (d->count > 1 && d->digits[d->count - 1] == '0') --d->count;
  d->exponent = k;
  return true;
}

}  // namespace

char* FormatFloatGeneral6(float value, char* out) {
  std::uint32_t bits;
  std::memcpy(&bits, &value, sizeof bits);
  SixDigits d;
  if (!RoundToSixDigits(bits, &d)) return FormatExact(value, out);
  if ((bits >> 31) != 0) *out++ = '-';
  // The general format's rule: exponent form below 1e-4 and from 1e6 up,
  // judged on the rounded value.
  if (d.exponent < -4 || d.exponent >= 6) return PutExponentForm(d, out);
  return PutFixedForm(d, out);
}

}  // namespace Sparlane
