#include "store/record_order.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace Sparlane {

bool SortsBefore(const CuttingParameter& a, const CuttingParameter& b) {
  if (a.material_id != b.material_id) return a.material_id < b.material_id;
  if (a.machine_model_id != b.machine_model_id) return a.machine_model_id < b.machine_model_id;
  const bool a_nan = std::isnan(a.thickness_mm);
  const bool b_nan = std::isnan(b.thickness_mm);
  if (a_nan || b_nan) return !a_nan && b_nan;
  return a.thickness_mm < b.thickness_mm;
}

// Positions are sorted rather than the records: the standard sorts' scratch
// buffers ignore the record's 64-byte alignment.  The position breaks ties,
// which makes the sort stable.
void SortByIndexKey(std::vector<CuttingParameter>& records) {
  std::vector<std::size_t> order(records.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(), [&records](std::size_t x, std::size_t y) {
    if (SortsBefore(records[x], records[y])) return true;
    if (SortsBefore(records[y], records[x])) return false;
    return x < y;
  });
  std::vector<CuttingParameter> sorted;
  sorted.reserve(records.size());
  for (std::size_t i : order) sorted.push_back(records[i]);
  records.swap(sorted);
}

}  // namespace Sparlane
