// Numbers as slb-tool prints them.
//
// Two forms, for two readers:
//  - exact: the shortest text that reads back to the same value.  --json
//    output and every diagnostic use it, so that a value just outside a
//    limit ("300.00003") is never shown as the limit itself ("300").
//  - shop: rounded per unit to what is set on a machine ("0.70 s",
//    "133.1 V", "1.549 mm"), for the settings and calculator tables.
#ifndef SLB_TOOL_NUMBER_FORMAT_H_
#define SLB_TOOL_NUMBER_FORMAT_H_

#include <string>

namespace slb {

// The shortest text that reads back as the same float ("1021.19995",
// "8", "1e+30"), by std::to_chars, which also spells the values that are
// not finite ("nan", "inf", "-inf").
std::string ExactFloat(float value);

// The same for a double (values parsed from input before they become
// floats).
std::string ExactDouble(double value);

// The units of shown values; each has one rounding rule (see ShopNumber).
enum class Unit {
  kMillimetre,        // lengths: at most 3 decimals, trailing zeros dropped
  kMillimetrePerMin,  // speeds: whole numbers
  kSecond,            // times: 2 decimals
  kVolt,              // voltages: 1 decimal
  kAmpere,            // currents: whole numbers
  kDegree,            // angles: at most 1 decimal, trailing zero dropped
  kMicrometre,        // roughness: whole numbers
  kMoney,             // costs (no currency): 2 decimals
  kFactor,            // ratios, coefficients: at most 3 decimals, trailing zeros dropped
  kConfidence,        // the interpolation's confidence, 0 to 1: 2 decimals
  kCount,             // whole numbers
};

// The symbol printed after a value of the unit ("mm", "mm/min", "s", "V",
// "A", "deg", "um"); "" for money, factors, confidence and counts.
const char* UnitSymbol(Unit unit);

// value rounded by its unit's rule, correctly from its exact binary value
// (a value exactly halfway goes to the even digit).  A result that rounds
// to zero carries no minus sign.  A value of 1e9 or more in size, or one
// that is not finite, is shown exact (ExactFloat when the double holds a
// float, else ExactDouble), never padded with digits that mean nothing.
std::string ShopNumber(double value, Unit unit);

}  // namespace slb

#endif  // SLB_TOOL_NUMBER_FORMAT_H_
