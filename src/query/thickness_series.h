// The records of one material and machine as a thickness series: the rows
// the estimator fits its laws to, whatever order the table is in.
#ifndef SPARLANE_QUERY_THICKNESS_SERIES_H_
#define SPARLANE_QUERY_THICKNESS_SERIES_H_

#include <cstdint>
#include <vector>

#include "sparlane/records.h"
#include "store/store.h"

namespace Sparlane {

// Rows closer together than this count as one thickness.
constexpr float kSeriesSameThickness = 0.001f;

// Pointers into the table, ascending by thickness.  Every thickness is
// finite and > 0, and each row is at least kSeriesSameThickness above the
// one before.
using ThicknessSeries = std::vector<const CuttingParameter*>;

// Every record of the pair, found through the pair's positions (or a scan
// when they are not current), without rows whose thickness is not finite
// or not > 0, ordered by thickness then table position; of rows closer
// than kSeriesSameThickness to the last one kept, the later are dropped.
ThicknessSeries CollectThicknessSeries(const Store& store, std::uint16_t material_id,
                                       std::uint16_t machine_id);

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_THICKNESS_SERIES_H_
