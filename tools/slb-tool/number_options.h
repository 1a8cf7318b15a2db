// Checks for numeric command-line options.  A value that fails is a usage
// error (exit status 2), like any other malformed option.
#ifndef SLB_TOOL_NUMBER_OPTIONS_H_
#define SLB_TOOL_NUMBER_OPTIONS_H_

#include <CLI/CLI.hpp>

namespace slb {

// A finite number that fits a float: not NaN, not infinite, not out of range.
CLI::Validator FiniteNumber();
// ... that is also 0 or more.
CLI::Validator FiniteNonNegative();
// ... that is also greater than 0 (and does not round to 0 as a float).
CLI::Validator FinitePositive();
// ... that is greater than 0 and at most 1.
CLI::Validator FiniteFraction();

}  // namespace slb

#endif  // SLB_TOOL_NUMBER_OPTIONS_H_
