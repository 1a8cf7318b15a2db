// How far beyond its listed rows a cut chart may be stretched.
//
// Settings extrapolated beyond the thinnest or thickest listed row get less
// trustworthy the further out they go.  A thickness is within the limit
// when it lies no more than 25 % of the span's end value outside the span:
// from 0.75 x the thinnest to 1.25 x the thickest listed thickness.  Beyond
// that, settings are refused unless the user allows extrapolation.
#ifndef SLB_TOOL_EXTRAPOLATION_LIMIT_H_
#define SLB_TOOL_EXTRAPOLATION_LIMIT_H_

#include <optional>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace slb {

struct ThicknessSpan {
  float thinnest_mm = 0.0f;
  float thickest_mm = 0.0f;

  double LowestAllowed() const;   // 0.75 x thinnest, as a float
  double HighestAllowed() const;  // 1.25 x thickest, as a float
  // True when the thickness (as a float) lies within the allowed range,
  // ends included.
  bool Allows(double thickness_mm) const;
};

// The span of the records' finite thicknesses; nullopt when there is none.
std::optional<ThicknessSpan> SpanOf(const std::vector<Sparlane::CuttingParameter>& records);

// Why thickness_mm is refused: names what the span belongs to (e.g.
// "Mild steel on AIR-45A"), the span and the allowed range, and the option
// that allows it.
std::string ExtrapolationRefusal(double thickness_mm, const ThicknessSpan& span,
                                 const std::string& what);

// Why thicknesses outside the span's allowed range are not given: names
// the span, the allowed range and the option that allows them.
std::string BeyondLimit(const ThicknessSpan& span, const std::string& what);

}  // namespace slb

#endif  // SLB_TOOL_EXTRAPOLATION_LIMIT_H_
