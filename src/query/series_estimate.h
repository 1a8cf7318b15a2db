// The estimator's arithmetic over a thickness series: a power law of
// thickness for the cut speed, straight lines for the other settings, and a
// confidence from the distance to the rows and how well the law fits.
#ifndef SPARLANE_QUERY_SERIES_ESTIMATE_H_
#define SPARLANE_QUERY_SERIES_ESTIMATE_H_

#include "query/thickness_series.h"
#include "sparlane/results.h"

namespace Sparlane {

// The estimate for a thickness that is finite and > 0 (Database::Estimate
// states the rules).  The empty result for an empty series or when a float
// field of the result would not be finite.
InterpolationResult EstimateFromSeries(const ThicknessSeries& series, float thickness);

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_SERIES_ESTIMATE_H_
