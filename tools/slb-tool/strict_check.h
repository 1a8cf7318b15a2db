// The library's strict single-record check (Testing::ValidateParameter) in
// words: which rule a record breaks, naming the field and its allowed range.
#ifndef SLB_TOOL_STRICT_CHECK_H_
#define SLB_TOOL_STRICT_CHECK_H_

#include <string>

#include "sparlane/sparlane.h"

namespace slb {

// The first rule p breaks, in the check's own order, or "" when it passes:
// "<field> must be a finite number", "<field> must not be 0",
// "thickness_mm must be 0.1 to 300 mm", "cut_speed_mm_min must be 10 to
// 20000 mm/min", "current_amps must be 1 to 1000 A", "arc_voltage_v must be
// 20 to 300 V", "<field> must not be negative", "cut_height_mm must not
// exceed pierce_height_mm".  Agrees with Testing::ValidateParameter on every
// record; this is the one place the texts live.
std::string StrictCheckReason(const Sparlane::CuttingParameter& p);

// The reason followed by the offending values, "... (is 1e+30)"; "" when p
// passes.
std::string StrictCheckFinding(const Sparlane::CuttingParameter& p);

// StrictCheckFinding of a record whose names have no ids yet: its ids are
// taken as given (1) whatever they hold.
std::string StrictCheckFindingOfValues(const Sparlane::CuttingParameter& p);

}  // namespace slb

#endif  // SLB_TOOL_STRICT_CHECK_H_
