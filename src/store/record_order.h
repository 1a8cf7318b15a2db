// The order of a well-formed parameter table, the one the record indexes and
// the searches assume: material_id, then machine_model_id, then
// thickness_mm, each ascending.
#ifndef SPARLANE_STORE_RECORD_ORDER_H_
#define SPARLANE_STORE_RECORD_ORDER_H_

#include <vector>

#include "sparlane/records.h"

namespace Sparlane {

// True when a sorts before b.  A strict weak ordering on every record: -0.0
// and 0.0 are equal, and a NaN thickness comes after every other thickness
// of its material and machine (NaNs equal among themselves).
bool SortsBefore(const CuttingParameter& a, const CuttingParameter& b);

// Sorts records into that order; records with equal keys keep their order.
void SortByIndexKey(std::vector<CuttingParameter>& records);

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_ORDER_H_
