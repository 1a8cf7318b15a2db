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

char* FormatExact(float value, char* out) {
  return std::to_chars(out, out + kFormattedFloatMax, value, std::chars_format::general, 6).ptr;
}

// f * 10^(5 - k) = m * 2^e * 10^(5 - k), split into a truncated quotient and
// a comparison of the rest with one half.  Below 1e6 the divisor is a power
// of two, so a shift does; only the top decade divides by ten.
struct Scaled {
  std::uint64_t quotient;
  std::uint64_t twice_rest;
  std::uint64_t divisor;
};

Scaled Scale(std::uint32_t m, int e, int k) {
  const int p = 5 - k;  // -1 to 10
  std::uint64_t numerator = m;
  if (p >= 0) numerator *= kPow10[p];
  if (e > 0) numerator <<= e;
  const int shift = e < 0 ? -e : 0;
  if (p >= 0) {
    const std::uint64_t quotient = numerator >> shift;
    const std::uint64_t rest = numerator - (quotient << shift);
    return {quotient, 2 * rest, std::uint64_t{1} << shift};
  }
  const std::uint64_t divisor = kPow10[-p] << shift;
  const std::uint64_t quotient = numerator / divisor;
  return {quotient, 2 * (numerator - quotient * divisor), divisor};
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

  // floor(log10(2^E)) for the binary exponent E, 1233 / 4096 standing in
  // for log10(2) (exact for every float exponent): k itself or one below.
  // The quotient settles it; a k that does not give 10^5 <= quotient < 10^6
  // is never used.
  const int binary_exponent = biased - 127;
  const int scaled = binary_exponent * 1233;
  int k = scaled >= 0 ? scaled / 4096 : -((-scaled + 4095) / 4096);
  if (k < kMinExponent - 1 || k > kMaxExponent) return false;
  if (k < kMinExponent) k = kMinExponent;

  Scaled s = Scale(m, e, k);
  if (s.quotient >= 1000000u) {
    if (++k > kMaxExponent) return false;
    s = Scale(m, e, k);
  }
  if (s.quotient < 100000u || s.quotient >= 1000000u) return false;
  std::uint64_t q = s.quotient;
  if (s.twice_rest > s.divisor || (s.twice_rest == s.divisor && (q & 1u) != 0)) ++q;
  if (q == 1000000u) {
    q = 100000u;
    ++k;
  }

  std::uint32_t digits = static_cast<std::uint32_t>(q);  // below 10^6
  for (int i = 5; i >= 0; --i) {
    d->digits[i] = static_cast<char>('0' + digits % 10);
    digits /= 10;
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
