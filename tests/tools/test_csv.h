// Small parameter CSVs written by the tests.
#ifndef SPARLANE_TESTS_TOOLS_TEST_CSV_H_
#define SPARLANE_TESTS_TOOLS_TEST_CSV_H_

#include <string>

namespace tooltest {

inline const char* CsvHeader() {
  return "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
         "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
         "current_amps,flags\n";
}

// A plausible row: thickness and speed given, the rest fixed.
inline std::string CsvRow(const std::string& vendor, const std::string& machine,
                          const std::string& material, const std::string& thickness,
                          const std::string& speed, const std::string& voltage = "120") {
  return vendor + "," + machine + "," + material + "," + thickness + "," + speed +
         ",1.5,3.8,3.8," + voltage + ",0.5,1.5,45,0\n";
}

}  // namespace tooltest

#endif  // SPARLANE_TESTS_TOOLS_TEST_CSV_H_
