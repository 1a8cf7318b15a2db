// FormatFloatGeneral6 against the exact conversion it stands in for.
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "export/float_format.h"

namespace Sparlane {
namespace {

std::string Fast(float v) {
  char buf[kFormattedFloatMax];
  return std::string(buf, FormatFloatGeneral6(v, buf));
}

std::string Exact(float v) {
  char buf[64];
  return std::string(buf, std::to_chars(buf, buf + sizeof buf, v, std::chars_format::general,
                                        6).ptr);
}

std::string Streamed(float v) {
  std::ostringstream out;
  out << v;
  return out.str();
}

float FromBits(std::uint32_t bits) {
  float f;
  std::memcpy(&f, &bits, sizeof f);
  return f;
}

TEST(FloatFormat, ExamplesAsTheStreamWritesThem) {
  EXPECT_EQ(Fast(10.0f), "10");
  EXPECT_EQ(Fast(6.0f), "6");
  EXPECT_EQ(Fast(0.1f), "0.1");
  EXPECT_EQ(Fast(12.7f), "12.7");
  EXPECT_EQ(Fast(2540.5f), "2540.5");
  EXPECT_EQ(Fast(0.0625f), "0.0625");
  EXPECT_EQ(Fast(1234567.0f), "1.23457e+06");
  EXPECT_EQ(Fast(100000.0f), "100000");
  EXPECT_EQ(Fast(1000000.0f), "1e+06");
  EXPECT_EQ(Fast(999999.5f), "1e+06");
  EXPECT_EQ(Fast(0.0001f), "0.0001");
  EXPECT_EQ(Fast(0.00001f), "1e-05");
  EXPECT_EQ(Fast(-2.5e-20f), "-2.5e-20");
  EXPECT_EQ(Fast(3.0e38f), "3e+38");
  EXPECT_EQ(Fast(0.0f), "0");
  EXPECT_EQ(Fast(-0.0f), "-0");
  EXPECT_EQ(Fast(std::numeric_limits<float>::infinity()), "inf");
  EXPECT_EQ(Fast(-std::numeric_limits<float>::infinity()), "-inf");
  EXPECT_EQ(Fast(std::numeric_limits<float>::quiet_NaN()), "nan");
  EXPECT_EQ(Fast(-std::numeric_limits<float>::quiet_NaN()), "-nan");
  for (float v : {10.0f, 0.1f, 12.7f, 2540.5f, 0.0625f, 1234567.0f, -0.0f}) {
    EXPECT_EQ(Fast(v), Streamed(v)) << v;
  }
}

// Floats whose shortest form is a six-digit midpoint (seven digits ending in
// 5) are the case where the shortest digits cannot decide the rounding.
TEST(FloatFormat, SixDigitMidpointsRoundLikeTheExactConversion) {
  int midpoints = 0;
  float v = 1.0f;
  for (int k = 0; k < 1000000; ++k, v = std::nextafter(v, 1e30f)) {
    char buf[64];
    char* end = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::scientific).ptr;
    const std::string s(buf, end);
    const std::string digits = s.substr(0, s.find('e'));
    if (digits.size() == 8 && digits.back() == '5') ++midpoints;  // "d.dddddd", last 5
    ASSERT_EQ(Fast(v), Exact(v)) << s;
  }
  EXPECT_GT(midpoints, 100);
}

TEST(FloatFormat, RoundingThatCarriesIntoANewDecade) {
  for (float v : {9.999995f, 99999.95f, 999999.5f, 9999995.0f, 0.00009999995f, 9.9999951e-5f}) {
    EXPECT_EQ(Fast(v), Exact(v)) << v;
    EXPECT_EQ(Fast(-v), Exact(-v)) << v;
  }
}

TEST(FloatFormat, RandomBitPatternsMatchTheExactConversion) {
  std::mt19937 rng(99);
  for (int k = 0; k < 1000000; ++k) {
    const float v = FromBits(static_cast<std::uint32_t>(rng()));
    ASSERT_EQ(Fast(v), Exact(v)) << std::hexfloat << v;
  }
}

TEST(FloatFormat, SubnormalsMatchTheExactConversion) {
  for (std::uint32_t bits = 1; bits < 0x00800000u; bits += 997) {
    ASSERT_EQ(Fast(FromBits(bits)), Exact(FromBits(bits))) << bits;
    ASSERT_EQ(Fast(FromBits(bits | 0x80000000u)), Exact(FromBits(bits | 0x80000000u))) << bits;
  }
}

}  // namespace
}  // namespace Sparlane
