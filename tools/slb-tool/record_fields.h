// The float fields of a parameter record: their names in the record (also
// the JSON keys and the names the strict check's reasons start with), how
// they are labelled for the shop, and their units.
#ifndef SLB_TOOL_RECORD_FIELDS_H_
#define SLB_TOOL_RECORD_FIELDS_H_

#include "number_format.h"
#include "sparlane/sparlane.h"

namespace slb {

struct RecordFloatField {
  const char* name;    // "cut_speed_mm_min"
  const char* label;   // in a settings table: "cut speed"
  const char* column;  // heading of a row table, before the unit: "speed"
  float Sparlane::CuttingParameter::*member;
  Unit unit;
};

// In record order.
inline constexpr RecordFloatField kRecordFloatFields[] = {
    {"thickness_mm", "thickness", "thickness", &Sparlane::CuttingParameter::thickness_mm,
     Unit::kMillimetre},
    {"cut_speed_mm_min", "cut speed", "speed", &Sparlane::CuttingParameter::cut_speed_mm_min,
     Unit::kMillimetrePerMin},
    {"cut_height_mm", "cut height", "cut h", &Sparlane::CuttingParameter::cut_height_mm,
     Unit::kMillimetre},
    {"pierce_height_mm", "pierce height", "pierce h",
     &Sparlane::CuttingParameter::pierce_height_mm, Unit::kMillimetre},
    {"transfer_height_mm", "transfer height", "transfer h",
     &Sparlane::CuttingParameter::transfer_height_mm, Unit::kMillimetre},
    {"arc_voltage_v", "arc voltage", "voltage", &Sparlane::CuttingParameter::arc_voltage_v,
     Unit::kVolt},
    {"pierce_time_s", "pierce time", "pierce", &Sparlane::CuttingParameter::pierce_time_s,
     Unit::kSecond},
    {"kerf_width_mm", "kerf width", "kerf", &Sparlane::CuttingParameter::kerf_width_mm,
     Unit::kMillimetre},
};

}  // namespace slb

#endif  // SLB_TOOL_RECORD_FIELDS_H_
