// How slb-tool prints numbers: exact (shortest round trip) for JSON and
// diagnostics, rounded per unit for the shop.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

#include "number_format.h"

namespace {

using slb::ShopNumber;
using slb::Unit;

// The shortest scientific form ("%.*e") that reads back as value.
std::string ShortestScientific(float value) {
  char text[64];
  for (int precision = 0;; ++precision) {
    std::snprintf(text, sizeof text, "%.*e", precision, static_cast<double>(value));
    float back = std::strtof(text, nullptr);
    if (std::memcmp(&back, &value, sizeof back) == 0) return text;
  }
}

bool SameFloat(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

}  // namespace

TEST(ExactFloat, ReadsBackAsTheSameFloatInTheFewestCharacters) {
  std::mt19937 random(5);
  for (int i = 0; i < 200000; ++i) {
    const std::uint32_t bits = static_cast<std::uint32_t>(random());
    float value;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) continue;
    const std::string text = slb::ExactFloat(value);
    ASSERT_TRUE(SameFloat(std::strtof(text.c_str(), nullptr), value)) << text;
    const std::string scientific = ShortestScientific(value);
    ASSERT_LE(text.size(), scientific.size()) << text << " vs " << scientific;
  }
}

TEST(ExactFloat, Examples) {
  EXPECT_EQ(slb::ExactFloat(8.0f), "8");
  EXPECT_EQ(slb::ExactFloat(0.1f), "0.1");
  EXPECT_EQ(slb::ExactFloat(1021.19995f), "1021.19995");
  EXPECT_EQ(slb::ExactFloat(300.00003f), "300.00003");
  EXPECT_EQ(slb::ExactFloat(1e30f), "1e+30");
  EXPECT_EQ(slb::ExactFloat(-3.0f), "-3");
  EXPECT_EQ(slb::ExactFloat(std::nanf("")), "nan");
  EXPECT_EQ(slb::ExactFloat(std::numeric_limits<float>::infinity()), "inf");
  EXPECT_EQ(slb::ExactFloat(-std::numeric_limits<float>::infinity()), "-inf");
}

TEST(ExactDouble, ShortestFormOfTheDouble) {
  EXPECT_EQ(slb::ExactDouble(0.1), "0.1");
  EXPECT_EQ(slb::ExactDouble(70000.0), "70000");
  EXPECT_EQ(slb::ExactDouble(0.125 * 25.4), "3.175");
  EXPECT_EQ(slb::ExactDouble(1e300), "1e+300");
  EXPECT_EQ(slb::ExactDouble(1.0 / 3.0), "0.3333333333333333");
}

TEST(ShopNumber, LengthsHaveAtMostThreeDecimals) {
  EXPECT_EQ(ShopNumber(1.5494f, Unit::kMillimetre), "1.549");
  EXPECT_EQ(ShopNumber(1.7526f, Unit::kMillimetre), "1.753");
  EXPECT_EQ(ShopNumber(6.35f, Unit::kMillimetre), "6.35");
  EXPECT_EQ(ShopNumber(8.0f, Unit::kMillimetre), "8");
  EXPECT_EQ(ShopNumber(0.0004f, Unit::kMillimetre), "0");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kMillimetre), "mm");
}

TEST(ShopNumber, SpeedsAreWholeNumbers) {
  EXPECT_EQ(ShopNumber(1021.19995f, Unit::kMillimetrePerMin), "1021");
  EXPECT_EQ(ShopNumber(838.2f, Unit::kMillimetrePerMin), "838");
  EXPECT_EQ(ShopNumber(2570.0f, Unit::kMillimetrePerMin), "2570");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kMillimetrePerMin), "mm/min");
}

TEST(ShopNumber, TimesHaveTwoDecimals) {
  EXPECT_EQ(ShopNumber(0.70393705f, Unit::kSecond), "0.70");
  EXPECT_EQ(ShopNumber(0.6f, Unit::kSecond), "0.60");
  EXPECT_EQ(ShopNumber(58.7544f, Unit::kSecond), "58.75");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kSecond), "s");
}

TEST(ShopNumber, VoltagesHaveOneDecimal) {
  EXPECT_EQ(ShopNumber(133.1181f, Unit::kVolt), "133.1");
  EXPECT_EQ(ShopNumber(130.0f, Unit::kVolt), "130.0");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kVolt), "V");
}

TEST(ShopNumber, CurrentsRoughnessAndCountsAreWholeNumbers) {
  EXPECT_EQ(ShopNumber(45, Unit::kAmpere), "45");
  EXPECT_EQ(ShopNumber(27.4f, Unit::kMicrometre), "27");
  EXPECT_EQ(ShopNumber(3, Unit::kCount), "3");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kAmpere), "A");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kMicrometre), "um");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kCount), "");
}

TEST(ShopNumber, AnglesHaveAtMostOneDecimal) {
  EXPECT_EQ(ShopNumber(90.0f, Unit::kDegree), "90");
  EXPECT_EQ(ShopNumber(2.64f, Unit::kDegree), "2.6");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kDegree), "deg");
}

TEST(ShopNumber, MoneyHasTwoDecimalsAndNoSymbol) {
  EXPECT_EQ(ShopNumber(1.43359f, Unit::kMoney), "1.43");
  EXPECT_EQ(ShopNumber(0.082581f, Unit::kMoney), "0.08");
  EXPECT_EQ(ShopNumber(5.0f, Unit::kMoney), "5.00");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kMoney), "");
}

TEST(ShopNumber, FactorsHaveAtMostThreeDecimals) {
  EXPECT_EQ(ShopNumber(0.015f, Unit::kFactor), "0.015");
  EXPECT_EQ(ShopNumber(0.6f, Unit::kFactor), "0.6");
  EXPECT_EQ(ShopNumber(0.45678f, Unit::kFactor), "0.457");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kFactor), "");
}

TEST(ShopNumber, ConfidenceHasTwoDecimals) {
  EXPECT_EQ(ShopNumber(0.992126f, Unit::kConfidence), "0.99");
  EXPECT_EQ(ShopNumber(0.3f, Unit::kConfidence), "0.30");
  EXPECT_EQ(ShopNumber(1.0f, Unit::kConfidence), "1.00");
  EXPECT_STREQ(slb::UnitSymbol(Unit::kConfidence), "");
}

TEST(ShopNumber, RoundsTheExactBinaryValueAndExactHalvesToEven) {
  EXPECT_EQ(ShopNumber(0.125, Unit::kSecond), "0.12");  // exactly halfway
  EXPECT_EQ(ShopNumber(0.375, Unit::kSecond), "0.38");  // exactly halfway
  EXPECT_EQ(ShopNumber(0.8275f, Unit::kMillimetre), "0.827");  // the float lies below .8275
  EXPECT_EQ(ShopNumber(2.5, Unit::kMillimetrePerMin), "2");
}

TEST(ShopNumber, ValueThatRoundsToZeroHasNoSign) {
  EXPECT_EQ(ShopNumber(-0.0001f, Unit::kMillimetre), "0");
  EXPECT_EQ(ShopNumber(-0.004f, Unit::kSecond), "0.00");
  EXPECT_EQ(ShopNumber(-0.0, Unit::kVolt), "0.0");
  EXPECT_EQ(ShopNumber(-0.8275f, Unit::kMillimetre), "-0.827");
}

TEST(ShopNumber, HugeAndNonFiniteValuesAreShownExact) {
  EXPECT_EQ(ShopNumber(999999999.0, Unit::kCount), "999999999");
  EXPECT_EQ(ShopNumber(1e30f, Unit::kMillimetre), "1e+30");
  EXPECT_EQ(ShopNumber(2.5e9, Unit::kSecond), "2.5e+09");
  EXPECT_EQ(ShopNumber(-1e12, Unit::kMoney), "-1e+12");
  EXPECT_EQ(ShopNumber(1.0e10 + 0.5, Unit::kSecond), "10000000000.5");
  EXPECT_EQ(ShopNumber(std::nan(""), Unit::kVolt), "nan");
  EXPECT_EQ(ShopNumber(std::numeric_limits<double>::infinity(), Unit::kMillimetre), "inf");
  EXPECT_EQ(ShopNumber(-std::numeric_limits<double>::infinity(), Unit::kSecond), "-inf");
}
