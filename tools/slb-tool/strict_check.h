// The library's strict single-record check (Testing::ValidateParameter) as
// slb-tool reports it: the library's reason for the first rule broken,
// followed by the offending values.
#ifndef SLB_TOOL_STRICT_CHECK_H_
#define SLB_TOOL_STRICT_CHECK_H_

#include <string>

#include "sparlane/sparlane.h"

namespace slb {

// Testing::ExplainParameter(p) followed by the value of the field it names,
// exact, "... (is 1e+30)"; for a cut height above the pierce height both
// heights.  "" when p passes.
std::string StrictCheckFinding(const Sparlane::CuttingParameter& p);

// StrictCheckFinding of a record whose names have no ids yet: its ids are
// taken as given (1) whatever they hold.
std::string StrictCheckFindingOfValues(const Sparlane::CuttingParameter& p);

}  // namespace slb

#endif  // SLB_TOOL_STRICT_CHECK_H_
