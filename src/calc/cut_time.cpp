// How long one cut takes: travel at cut speed plus the pierce delays.
#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {

CutEstimate Database::EstimateCutTime(const CuttingParameter& param, float cut_length_mm,
                                      unsigned int pierce_count) {
  CutEstimate estimate = calc::ZeroFilled<CutEstimate>();
  estimate.cut_length_mm = cut_length_mm;
  estimate.pierce_count = pierce_count;
  // Without a length or a speed there is no cut to time; pierces alone are
  // deliberately not counted either.
  if (!(cut_length_mm > 0.0f)) return estimate;
  if (!(param.cut_speed_mm_min > 0.0f)) return estimate;

  estimate.cut_time_s = cut_length_mm / param.cut_speed_mm_min * 60.0f;
  estimate.pierce_time_total_s = static_cast<float>(pierce_count) * param.pierce_time_s;
  estimate.total_time_s = estimate.pierce_time_total_s + estimate.cut_time_s;
  return estimate;
}

}  // namespace Sparlane
