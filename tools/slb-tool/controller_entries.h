// Choosing what a controller file holds: the listed records of one machine
// model, and settings derived for the thicknesses asked for, all held to
// the tool's safety rules before anything is written.
#ifndef SLB_TOOL_CONTROLLER_ENTRIES_H_
#define SLB_TOOL_CONTROLLER_ENTRIES_H_

#include <string>
#include <vector>

#include "controller_file.h"
#include "problem_list.h"
#include "sparlane/sparlane.h"

namespace slb {

struct ControllerRequest {
  std::string machine;
  std::string vendor;                  // "" for any
  std::vector<std::string> materials;  // empty for every material of the machine
  std::vector<float> thicknesses;      // mm, derived for every material
  bool gauges = false;                 // derive the gauges of each material's family
  bool allow_extrapolation = false;
  Estimator model = Estimator::Linear;
};

// Fills file.entries (and file.vendor) in the order they are written:
// materials in byte order of their names, then by thickness, listed rows
// in table order; every entry numbered (material_numbering.h, listed rows
// first).
//  - Every listed row must pass the strict record check.
//  - A thickness asked for within 0.001 mm of a listed row is that row;
//    any other is derived by the model as `query` would (SelectRecord):
//    beyond the extrapolation limit, or failing the strict check, it is a
//    problem.  A gauge beyond the extrapolation limit is left out with a
//    warning instead (the table lists every gauge, not the ones a chart
//    reaches); a material without a gauge family gets a warning.
// Returns false, with problems (and nothing in file), when anything asked
// for cannot be written safely or at all.
bool CollectEntries(const Sparlane::Database& db, const ControllerRequest& request,
                    ControllerFile& file, ProblemList& problems,
                    std::vector<std::string>& warnings);

}  // namespace slb

#endif  // SLB_TOOL_CONTROLLER_ENTRIES_H_
