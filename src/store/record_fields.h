// Facts about a record's fields that several checks share.
#ifndef SPARLANE_STORE_RECORD_FIELDS_H_
#define SPARLANE_STORE_RECORD_FIELDS_H_

#include <cmath>

#include "sparlane/sparlane.h"

namespace Sparlane {

// The eight float fields, thickness to kerf width, in record order.
inline bool AllFloatFieldsFinite(const CuttingParameter& p) {
  const float fields[] = {p.thickness_mm,     p.cut_speed_mm_min,   p.cut_height_mm,
                          p.pierce_height_mm, p.transfer_height_mm, p.arc_voltage_v,
                          p.pierce_time_s,    p.kerf_width_mm};
  for (float f : fields) {
    if (!std::isfinite(f)) return false;
  }
  return true;
}

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_FIELDS_H_
