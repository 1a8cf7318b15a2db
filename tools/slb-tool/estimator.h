// The two ways the library answers for a thickness between or beyond the
// listed rows: Interpolate (linear, the default) and Estimate (the cut
// speed as a power law of thickness).  `query`, `calc` and the controller
// exports choose one with --model.
#ifndef SLB_TOOL_ESTIMATOR_H_
#define SLB_TOOL_ESTIMATOR_H_

#include <string>

#include "sparlane/sparlane.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace slb {

enum class Estimator { Linear, Power };

// "linear" or "power", as --model spells them.
const char* EstimatorName(Estimator estimator);

// Adds --model linear|power (default linear) to a command, storing the
// choice in estimator.
CLI::Option* AddModelOption(CLI::App* command, Estimator& estimator);

// Database::Interpolate for Linear, Database::Estimate for Power.
Sparlane::InterpolationResult EstimateSettings(const Sparlane::Database& db, Estimator estimator,
                                               const std::string& material, float thickness_mm,
                                               const std::string& machine_model);

}  // namespace slb

#endif  // SLB_TOOL_ESTIMATOR_H_
