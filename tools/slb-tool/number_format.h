// Numbers as slb-tool prints them.
#ifndef SLB_TOOL_NUMBER_FORMAT_H_
#define SLB_TOOL_NUMBER_FORMAT_H_

#include <string>

namespace slb {

// Six significant digits, like the library's CSV export ("6", "1.524").
std::string FormatNumber(double value);

// The shortest text that reads back as the same float (for JSON output).
std::string FormatExactFloat(float value);

}  // namespace slb

#endif  // SLB_TOOL_NUMBER_FORMAT_H_
