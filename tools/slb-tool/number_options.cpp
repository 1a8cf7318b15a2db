#include "number_options.h"

#include <cmath>
#include <string>

#include "text_fields.h"

namespace slb {
namespace {

enum class Bound { kAny, kNonNegative, kPositive, kFraction };

CLI::Validator NumberCheck(Bound bound, const char* description) {
  return CLI::Validator(
      [bound](std::string& text) -> std::string {
        NumberProblem problem;
        const auto value = ParseFloat(text, &problem);
        if (!value) return "\"" + text + "\" " + NumberProblemText(problem);
        if (!std::isfinite(*value)) return "\"" + text + "\" is not a finite number";
        if (bound == Bound::kNonNegative && *value < 0.0f) {
          return "\"" + text + "\" must not be negative";
        }
        if ((bound == Bound::kPositive || bound == Bound::kFraction) && !(*value > 0.0f)) {
          return "\"" + text + "\" must be greater than 0";
        }
        if (bound == Bound::kFraction && *value > 1.0f) {
          return "\"" + text + "\" must not be greater than 1";
        }
        return std::string();
      },
      description);
}

}  // namespace

CLI::Validator FiniteNumber() { return NumberCheck(Bound::kAny, "NUMBER"); }
CLI::Validator FiniteNonNegative() { return NumberCheck(Bound::kNonNegative, "NUMBER >= 0"); }
CLI::Validator FinitePositive() { return NumberCheck(Bound::kPositive, "NUMBER > 0"); }
CLI::Validator FiniteFraction() { return NumberCheck(Bound::kFraction, "0 < NUMBER <= 1"); }

}  // namespace slb
