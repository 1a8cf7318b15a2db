#include "query/thickness_series.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "query/record_search.h"

namespace Sparlane {

ThicknessSeries CollectThicknessSeries(const Store& store, std::uint16_t material_id,
                                       std::uint16_t machine_id) {
  const std::vector<CuttingParameter>& records = store.records();
  // (thickness, position): sorting the pairs gives thickness order with
  // table order among equals, whatever order the visit came in.
  std::vector<std::pair<float, std::size_t>> keyed;
  ForEachOfPair(store, material_id, machine_id, [&](std::size_t pos, const auto&) {
    const float t = records[pos].thickness_mm;
    if (std::isfinite(t) && t > 0.0f) keyed.emplace_back(t, pos);
  });
  std::sort(keyed.begin(), keyed.end());

  ThicknessSeries series;
  series.reserve(keyed.size());
  for (const auto& [thickness, pos] : keyed) {
    if (!series.empty() && thickness - series.back()->thickness_mm < kSeriesSameThickness) {
      continue;
    }
    series.push_back(&records[pos]);
  }
  return series;
}

}  // namespace Sparlane
