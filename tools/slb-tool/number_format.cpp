#include "number_format.h"

#include <charconv>
#include <cmath>

namespace slb {
namespace {

// Enough for the shortest form of any double and for fixed text below 1e9.
constexpr std::size_t kTextSize = 64;

template <typename T>
std::string Shortest(T value) {
  char text[kTextSize];
  const auto result = std::to_chars(text, text + sizeof text, value);
  return std::string(text, result.ptr);
}

struct Rounding {
  int decimals;
  bool drop_trailing_zeros;
};

Rounding RoundingOf(Unit unit) {
  switch (unit) {
    case Unit::kMillimetre: return {3, true};
    case Unit::kSecond: return {2, false};
    case Unit::kVolt: return {1, false};
    case Unit::kDegree: return {1, true};
    case Unit::kMoney: return {2, false};
    case Unit::kFactor: return {3, true};
    case Unit::kConfidence: return {2, false};
    case Unit::kMillimetrePerMin:
    case Unit::kAmpere:
    case Unit::kMicrometre:
    case Unit::kCount: break;
  }
  return {0, false};
}

void DropTrailingZeros(std::string& text) {
  if (text.find('.') == std::string::npos) return;
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
}

// "-0", "-0.00": a value that rounds to zero is shown without its sign.
void DropSignOfZero(std::string& text) {
  if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
}

}  // namespace

std::string ExactFloat(float value) { return Shortest(value); }

std::string ExactDouble(double value) { return Shortest(value); }

const char* UnitSymbol(Unit unit) {
  switch (unit) {
    case Unit::kMillimetre: return "mm";
    case Unit::kMillimetrePerMin: return "mm/min";
    case Unit::kSecond: return "s";
    case Unit::kVolt: return "V";
    case Unit::kAmpere: return "A";
    case Unit::kDegree: return "deg";
    case Unit::kMicrometre: return "um";
    case Unit::kMoney:
    case Unit::kFactor:
    case Unit::kConfidence:
    case Unit::kCount: break;
  }
  return "";
}

std::string ShopNumber(double value, Unit unit) {
  if (!(std::fabs(value) < 1e9)) {
    const float as_float = static_cast<float>(value);
    return static_cast<double>(as_float) == value ? ExactFloat(as_float) : ExactDouble(value);
  }
  const Rounding rounding = RoundingOf(unit);
  char text[kTextSize];
  const auto result =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, rounding.decimals);
  std::string shown(text, result.ptr);
  if (rounding.drop_trailing_zeros) DropTrailingZeros(shown);
  DropSignOfZero(shown);
  return shown;
}

}  // namespace slb
