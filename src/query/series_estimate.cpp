// Laws, distances and confidence in double; a value becomes a float only
// when it is stored in the record.
#include "query/series_estimate.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <optional>

#include "sparlane/testing.h"

namespace Sparlane {
namespace {

using Field = float CuttingParameter::*;

// Continued in a straight line beyond the rows, floored at the series.
constexpr Field kLinearFields[] = {
    &CuttingParameter::cut_height_mm,      &CuttingParameter::pierce_height_mm,
    &CuttingParameter::transfer_height_mm, &CuttingParameter::arc_voltage_v,
    &CuttingParameter::pierce_time_s,      &CuttingParameter::kerf_width_mm};

constexpr double kNoEvidenceFit = 0.5;  // nothing to judge the law by
constexpr double kBeyondFactor = 0.7;   // outside the rows, never as sure as inside
constexpr double kLargestCurrent = 65535.0;

bool UsableSpeed(float speed) { return std::isfinite(speed) && speed > 0.0f; }

// v(t) = va * (t / ta)^k: a straight line of log speed against log thickness.
struct PowerLaw {
  double ta;
  double va;
  double k;
  double At(double t) const { return va * std::pow(t / ta, k); }
};

// The law through two rows (different thicknesses, as in a series); none
// when either speed is not finite or not > 0.
std::optional<PowerLaw> LawThrough(const CuttingParameter& a, const CuttingParameter& b) {
  if (!UsableSpeed(a.cut_speed_mm_min) || !UsableSpeed(b.cut_speed_mm_min)) return std::nullopt;
  const double ta = a.thickness_mm;
  const double va = a.cut_speed_mm_min;
  const double k = std::log(b.cut_speed_mm_min / va) / std::log(b.thickness_mm / ta);
  return PowerLaw{ta, va, k};
}

// 1 / (1 + the mean relative error of the law at the rows beside the
// pair); rows without a usable speed say nothing.
double FitAt(const std::optional<PowerLaw>& law,
             std::initializer_list<const CuttingParameter*> beside) {
  if (!law) return kNoEvidenceFit;
  double sum = 0.0;
  int count = 0;
  for (const CuttingParameter* row : beside) {
    if (row == nullptr || !UsableSpeed(row->cut_speed_mm_min)) continue;
    const double listed = row->cut_speed_mm_min;
    sum += std::fabs(law->At(row->thickness_mm) - listed) / listed;
    ++count;
  }
  return count == 0 ? kNoEvidenceFit : 1.0 / (1.0 + sum / count);
}

// Log distance from t to the nearer row of the pair over the pair's log span.
double LogDistance(float t, const CuttingParameter& a, const CuttingParameter& b) {
  const double to_a = std::fabs(std::log(static_cast<double>(t) / a.thickness_mm));
  const double to_b = std::fabs(std::log(static_cast<double>(t) / b.thickness_mm));
  return std::min(to_a, to_b) / std::fabs(std::log(static_cast<double>(b.thickness_mm) /
                                                   a.thickness_mm));
}

// A record was built, so even a confidence below float's range stays > 0.
float StoredConfidence(double confidence) {
  const float stored = static_cast<float>(confidence);
  return stored > 0.0f ? std::min(stored, 1.0f) : FLT_MIN;
}

// NaN for a value no float holds, so the finiteness check refuses it.
float StoredFloat(double value) {
  return std::fabs(value) <= FLT_MAX ? static_cast<float>(value)
                                     : std::numeric_limits<float>::quiet_NaN();
}

bool AllFinite(const CuttingParameter& p) {
  if (!std::isfinite(p.thickness_mm) || !std::isfinite(p.cut_speed_mm_min)) return false;
  for (Field field : kLinearFields) {
    if (!std::isfinite(p.*field)) return false;
  }
  return true;
}

const CuttingParameter* RowAt(const ThicknessSeries& series, std::ptrdiff_t i) {
  return i >= 0 && static_cast<std::size_t>(i) < series.size() ? series[i] : nullptr;
}

// The row within the same-thickness step of t: the nearer of the rows on
// either side, the thinner of two equally near.
const CuttingParameter* ListedRow(const ThicknessSeries& series, std::ptrdiff_t above, float t) {
  const CuttingParameter* best = nullptr;
  float best_distance = kSeriesSameThickness;
  for (const CuttingParameter* row : {RowAt(series, above - 1), RowAt(series, above)}) {
    if (row == nullptr) continue;
    const float distance = std::fabs(row->thickness_mm - t);
    if (distance < best_distance) {
      best = row;
      best_distance = distance;
    }
  }
  return best;
}

InterpolationResult Between(const ThicknessSeries& series, std::ptrdiff_t above, float t) {
  const CuttingParameter& a = *series[above - 1];
  const CuttingParameter& b = *series[above];
  InterpolationResult result{};
  result.parameter = Testing::InterpolateLinear(a, b, t);
  const std::optional<PowerLaw> law = LawThrough(a, b);
  if (law) result.parameter.cut_speed_mm_min = StoredFloat(law->At(t));
  const double fit = FitAt(law, {RowAt(series, above - 2), RowAt(series, above + 1)});
  result.confidence = StoredConfidence(fit * (1.0 - LogDistance(t, a, b)));
  return result;
}

double SmallestListed(const ThicknessSeries& series, Field field) {
  double smallest = std::numeric_limits<double>::infinity();
  for (const CuttingParameter* row : series) {
    if (std::isfinite(row->*field)) smallest = std::min<double>(smallest, row->*field);
  }
  return smallest;
}

double FastestListed(const ThicknessSeries& series) {
  double fastest = -std::numeric_limits<double>::infinity();
  for (const CuttingParameter* row : series) {
    if (std::isfinite(row->cut_speed_mm_min)) {
      fastest = std::max<double>(fastest, row->cut_speed_mm_min);
    }
  }
  return fastest;
}

// n + (n - s) * (t - tn) / (tn - ts): the line through s and n, continued.
double Continued(double at_n, double at_s, double t, double tn, double ts) {
  return at_n + (at_n - at_s) * (t - tn) / (tn - ts);
}

// From the nearest row n and the next one s; `below` when t is thinner
// than every row.
InterpolationResult Beyond(const ThicknessSeries& series, bool below, float t) {
  const std::ptrdiff_t last = static_cast<std::ptrdiff_t>(series.size()) - 1;
  const CuttingParameter& n = *series[below ? 0 : last];
  const CuttingParameter& s = *series[below ? 1 : last - 1];
  const CuttingParameter* inward = RowAt(series, below ? 2 : last - 2);

  InterpolationResult result{};
  result.parameter = n;
  result.parameter.thickness_mm = t;
  result.parameter.flags = n.flags | kFlagDerived;
  result.extrapolated = true;

  const std::optional<PowerLaw> law = LawThrough(n, s);
  double speed = law ? law->At(t) : Testing::ExtrapolateConservative(n, t).cut_speed_mm_min;
  speed = std::min(speed, FastestListed(series));  // NaN stays NaN
  result.parameter.cut_speed_mm_min = StoredFloat(speed);

  const double tn = n.thickness_mm;
  const double ts = s.thickness_mm;
  for (Field field : kLinearFields) {
    const double value = Continued(n.*field, s.*field, t, tn, ts);
    result.parameter.*field = StoredFloat(std::max(value, SmallestListed(series, field)));
  }
  double least_current = kLargestCurrent;
  for (const CuttingParameter* row : series) {
    least_current = std::min<double>(least_current, row->current_amps);
  }
  const double current = Continued(n.current_amps, s.current_amps, t, tn, ts);
  const double kept = std::min(std::max(current, least_current), kLargestCurrent);
  result.parameter.current_amps = static_cast<std::uint16_t>(std::round(kept));

  result.confidence = StoredConfidence(kBeyondFactor * FitAt(law, {inward}) /
                                       (1.0 + LogDistance(t, n, s)));
  return result;
}

InterpolationResult FromOneRow(const CuttingParameter& row, float t) {
  InterpolationResult result{};
  result.parameter = Testing::ExtrapolateConservative(row, t);
  result.extrapolated = true;
  const double distance = std::fabs(std::log(static_cast<double>(t) / row.thickness_mm));
  result.confidence = StoredConfidence(kBeyondFactor * kNoEvidenceFit / (1.0 + distance));
  return result;
}

}  // namespace

InterpolationResult EstimateFromSeries(const ThicknessSeries& series, float thickness) {
  if (series.empty()) return InterpolationResult{};
  const std::ptrdiff_t above =
      std::partition_point(series.begin(), series.end(),
                           [&](const CuttingParameter* row) { return row->thickness_mm < thickness; }) -
      series.begin();
  InterpolationResult result{};
  if (const CuttingParameter* listed = ListedRow(series, above, thickness)) {
    result.parameter = *listed;
    result.confidence = 1.0f;
  } else if (series.size() == 1) {
    result = FromOneRow(*series.front(), thickness);
  } else if (above == 0 || above == static_cast<std::ptrdiff_t>(series.size())) {
    result = Beyond(series, above == 0, thickness);
  } else {
    result = Between(series, above, thickness);
  }
  return AllFinite(result.parameter) ? result : InterpolationResult{};
}

}  // namespace Sparlane
