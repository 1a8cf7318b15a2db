// Tool offset that puts the kerf outside the part's edge.
#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {

KerfCompensation Database::CalculateKerfCompensation(const CuttingParameter& param,
                                                     bool is_inside) {
  KerfCompensation kerf = calc::ZeroFilled<KerfCompensation>();
  kerf.kerf_width_mm = param.kerf_width_mm;
  kerf.is_inside = is_inside;
  const float half_kerf = param.kerf_width_mm * 0.5f;
  // Inside cuts (holes) offset toward the other side of the path.
  kerf.offset_mm = is_inside ? -half_kerf : half_kerf;
  return kerf;
}

}  // namespace Sparlane
