// Records for the calculator tests: only the fields the calculators read.
#ifndef SPARLANE_TESTS_CALC_CALC_RECORDS_H_
#define SPARLANE_TESTS_CALC_CALC_RECORDS_H_

#include <cstdint>

#include "sparlane/sparlane.h"

namespace calc_test {

inline Sparlane::CuttingParameter Record(float thickness_mm, float kerf_width_mm = 1.5f,
                                         float cut_speed_mm_min = 2000.0f,
                                         std::uint16_t current_amps = 130,
                                         float pierce_time_s = 0.5f) {
  Sparlane::CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = 1;
  p.thickness_mm = thickness_mm;
  p.kerf_width_mm = kerf_width_mm;
  p.cut_speed_mm_min = cut_speed_mm_min;
  p.current_amps = current_amps;
  p.pierce_time_s = pierce_time_s;
  return p;
}

}  // namespace calc_test

#endif  // SPARLANE_TESTS_CALC_CALC_RECORDS_H_
