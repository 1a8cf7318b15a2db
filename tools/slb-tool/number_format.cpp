#include "number_format.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace slb {

std::string FormatNumber(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%g", value);
  return text;
}

std::string FormatExactFloat(float value) {
  char text[64];
  for (int precision = 6; precision <= 9; ++precision) {
    std::snprintf(text, sizeof text, "%.*g", precision, static_cast<double>(value));
    if (std::strtof(text, nullptr) == value) break;
  }
  return text;
}

}  // namespace slb
