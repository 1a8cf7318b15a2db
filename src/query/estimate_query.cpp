// Database::Estimate: the pair's thickness series and the estimate from it.
// Untimed and uncounted: the counters belong to FindExact, Interpolate and
// FindOptimal.
#include <cmath>

#include "query/series_estimate.h"
#include "query/thickness_series.h"

namespace Sparlane {

InterpolationResult Database::Estimate(const std::string& material, float thickness,
                                       const std::string& machine_model) const {
  const Store& s = *impl_;
  if (!s.loaded() || !std::isfinite(thickness) || !(thickness > 0.0f)) {
    return InterpolationResult{};
  }
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  const std::uint16_t machine_id = s.IdOf(NameKind::kMachine, machine_model);
  if (material_id == 0 || machine_id == 0) return InterpolationResult{};
  return EstimateFromSeries(CollectThicknessSeries(s, material_id, machine_id), thickness);
}

}  // namespace Sparlane
