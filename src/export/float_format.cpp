// Six significant digits of a float, fast.
//
// The shortest decimal D that reads back as a normal float f lies within
// half an ulp of f, and an ulp of a normal float (at most 2^-23 of it) is
// far below half a step of the six-digit grid (at least 10^-6 of it).  So:
//  - D with at most six digits is exactly f rounded to six digits;
//  - D with more digits rounds to the same six digits as f, unless D is
//    itself the midpoint between two six-digit neighbours (seven digits
//    ending in 5): then f may lie on either side and the exact rounding
//    decides.
// Zero, subnormals, infinities, NaNs and that one midpoint case take the
// exact conversion.  Both conversions are locale-independent.
#include "export/float_format.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace Sparlane {
namespace {

char* FormatExact(float value, char* out) {
  return std::to_chars(out, out + kFormattedFloatMax, value, std::chars_format::general, 6).ptr;
}

// Six significant digits and a decimal exponent: value = d.ddddd * 10^exponent.
struct SixDigits {
  char digits[8];
  int count;  // 1 to 6, no trailing zeros
  int exponent;
};

// Rounds the shortest scientific form to six digits; false when it is a
// six-digit midpoint.
bool RoundShortest(const char* begin, const char* end, SixDigits* r) {
  char all[12];
  int n = 0;
  const char* p = begin;
  for (; p < end && *p != 'e'; ++p) {
    if (*p != '.') all[n++] = *p;
  }
  int exponent = 0;
  std::from_chars(p + 1 + (p[1] == '+'), end, exponent);

  if (n > 6) {
    if (n == 7 && all[6] == '5') return false;
    const bool up = all[6] >= '5';
    n = 6;
    if (up) {
      int i = 5;
      while (i >= 0 && all[i] == '9') all[i--] = '0';
      if (i < 0) {
        all[0] = '1';
        n = 1;
        ++exponent;
      } else {
        ++all[i];
      }
    }
  }
  while (n > 1 && all[n - 1] == '0') --n;
  std::memcpy(r->digits, all, static_cast<std::size_t>(n));
  r->count = n;
  r->exponent = exponent;
  return true;
}

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

}  // namespace

char* FormatFloatGeneral6(float value, char* out) {
  if (!std::isnormal(value)) return FormatExact(value, out);

  char shortest[kFormattedFloatMax + 8];
  const std::to_chars_result s =
      std::to_chars(shortest, shortest + sizeof shortest, value, std::chars_format::scientific);
  const char* begin = shortest;
  const bool negative = *begin == '-';
  if (negative) ++begin;

  SixDigits d;
  if (!RoundShortest(begin, s.ptr, &d)) return FormatExact(value, out);

  if (negative) *out++ = '-';
  // The general format's rule: exponent form below 1e-4 and from 1e6 up.
  if (d.exponent < -4 || d.exponent >= 6) return PutExponentForm(d, out);
  return PutFixedForm(d, out);
}

}  // namespace Sparlane
