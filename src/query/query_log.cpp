#include "query/query_log.h"

#include <cstdio>

namespace Sparlane {

namespace {

// "%f" of a float (promoted to double), six decimals.
std::string Decimal(float value) {
  char text[64];
  const int n = std::snprintf(text, sizeof text, "%f", static_cast<double>(value));
  if (n < 0) return std::string();
  if (static_cast<std::size_t>(n) < sizeof text) return std::string(text, static_cast<std::size_t>(n));
  // Huge values (up to about 3.4e38) need more room than the common case.
  std::string big(static_cast<std::size_t>(n) + 1, '\0');
  std::snprintf(&big[0], big.size(), "%f", static_cast<double>(value));
  big.resize(static_cast<std::size_t>(n));
  return big;
}

}  // namespace

void LogQuery(const char* operation, const std::string& detail, double elapsed_us) {
  std::fprintf(stderr, "[Sparlane] %s: %s (%.2f \xC2\xB5" "s)\n", operation, detail.c_str(),
               elapsed_us);
}

std::string FindExactDetail(const std::string& material, float thickness,
                            const std::string& machine_model, bool found) {
  return material + ", " + Decimal(thickness) + "mm, " + machine_model + " -> " +
         (found ? "found" : "not found");
}

std::string FindOptimalDetail(const std::string& material, float thickness, const float* speed) {
  std::string detail = material + ", " + Decimal(thickness) + "mm -> ";
  if (speed == nullptr) return detail + "not found";
  return detail + Decimal(*speed) + " mm/min";
}

std::string InterpolateDetail(const std::string& material, float thickness,
                              const std::string& machine_model, float confidence,
                              bool extrapolated) {
  std::string detail = material + ", " + Decimal(thickness) + "mm, " + machine_model +
                       " -> conf=" + Decimal(confidence);
  if (extrapolated) detail += " (extrapolated)";
  return detail;
}

}  // namespace Sparlane
