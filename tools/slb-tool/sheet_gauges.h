// Sheet-metal gauges: gauge numbers to thickness, one published table per
// material family, never mixed between families.
//  - steel: the Manufacturers' Standard Gauge for sheet steel, 3 to 30;
//  - galvanised steel: the Manufacturers' Standard Gauge for galvanized
//    sheet, 8 to 30;
//  - stainless steel: the U.S. Standard Gauge as stainless sheet is sold,
//    7 to 30;
//  - aluminium: the American Wire Gauge (Brown & Sharpe), 3 to 26.
#ifndef SLB_TOOL_SHEET_GAUGES_H_
#define SLB_TOOL_SHEET_GAUGES_H_

#include <optional>
#include <string>
#include <vector>

namespace slb {

enum class GaugeFamily { Steel, Galvanised, Stainless, Aluminium };

// The family of a material name (ASCII case ignored): "stainless",
// "galv", "alumin", then "steel"; nullopt for any other material, which
// has no gauge table.
std::optional<GaugeFamily> GaugeFamilyOf(const std::string& material);

// "steel", "galvanised steel", "stainless steel", "aluminium".
const char* GaugeFamilyName(GaugeFamily family);

struct Gauge {
  int number;
  double inches;
};

// The family's table, thickest (lowest number) first.
const std::vector<Gauge>& GaugeTable(GaugeFamily family);

// The thickness of a gauge in inches; nullopt when the table has no such
// gauge.
std::optional<double> GaugeInches(int gauge, GaugeFamily family);

}  // namespace slb

#endif  // SLB_TOOL_SHEET_GAUGES_H_
