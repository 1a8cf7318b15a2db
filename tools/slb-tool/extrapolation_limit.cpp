#include "extrapolation_limit.h"

#include <cmath>

#include "number_format.h"

namespace slb {

constexpr double kMargin = 0.25;

// The limits are rounded to floats, the precision of the thicknesses they
// are compared with, so that the printed limit is itself allowed.
double ThicknessSpan::LowestAllowed() const {
  return static_cast<float>(thinnest_mm * (1.0 - kMargin));
}

double ThicknessSpan::HighestAllowed() const {
  return static_cast<float>(thickest_mm * (1.0 + kMargin));
}

bool ThicknessSpan::Allows(double thickness_mm) const {
  const double t = static_cast<float>(thickness_mm);
  return t >= LowestAllowed() && t <= HighestAllowed();
}

std::optional<ThicknessSpan> SpanOf(const std::vector<Sparlane::CuttingParameter>& records) {
  std::optional<ThicknessSpan> span;
  for (const auto& r : records) {
    if (!std::isfinite(r.thickness_mm)) continue;
    if (!span) {
      span = ThicknessSpan{r.thickness_mm, r.thickness_mm};
      continue;
    }
    if (r.thickness_mm < span->thinnest_mm) span->thinnest_mm = r.thickness_mm;
    if (r.thickness_mm > span->thickest_mm) span->thickest_mm = r.thickness_mm;
  }
  return span;
}

namespace {

// Thicknesses and their limits are floats; each is shown exactly.
std::string Mm(double float_value) { return ExactFloat(static_cast<float>(float_value)); }

}  // namespace

std::string ExtrapolationRefusal(double thickness_mm, const ThicknessSpan& span,
                                 const std::string& what) {
  const bool below = thickness_mm < span.LowestAllowed();
  return Mm(thickness_mm) + " mm is too far " + (below ? "below" : "above") +
         " the listed rows of " + what + " (" + Mm(span.thinnest_mm) + " to " +
         Mm(span.thickest_mm) + " mm) to extrapolate safely: settings are given "
         "from " + Mm(span.LowestAllowed()) + " to " +
         Mm(span.HighestAllowed()) +
         " mm (25 % beyond the span); --allow-extrapolation gives them anyway";
}

}  // namespace slb
