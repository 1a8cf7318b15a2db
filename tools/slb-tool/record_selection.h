// Picking the record a question is about: exact, nearest or interpolated,
// the way `query` and `calc` both do.
#ifndef SLB_TOOL_RECORD_SELECTION_H_
#define SLB_TOOL_RECORD_SELECTION_H_

#include <string>
#include <vector>

#include "catalogue.h"
#include "estimator.h"
#include "sparlane/sparlane.h"

namespace CLI {
class App;
}

namespace slb {

enum class SelectionMode { Interpolate, Exact, Nearest };

struct RecordRequest {
  std::string file;
  std::string material;
  std::string machine;
  float thickness = 0.0f;
  float exact_tolerance = -1.0f;  // >= 0 when --exact was given
  bool nearest = false;
  Estimator model = Estimator::Linear;  // for interpolation
  bool allow_extrapolation = false;
  bool json = false;

  SelectionMode Mode() const;
};

struct Selection {
  bool found = false;
  std::string miss_reason;  // why nothing was found
  Sparlane::CuttingParameter record{};
  float confidence = 0.0f;   // interpolation only
  bool extrapolated = false;  // interpolation only
  // Listed records of the material and machine just below and above the
  // thickness (either may be missing), for showing where an answer came from.
  std::vector<Sparlane::CuttingParameter> neighbours;
  std::vector<std::string> neighbour_labels;
};

// Adds FILE, --material, --machine, --thickness, --exact, --nearest,
// --interpolate, --model, --allow-extrapolation and --json to a subcommand.
// The thickness must be a finite number greater than 0, the tolerance a
// finite number of 0 or more; --model chooses how to interpolate, so it is
// a usage error beside --exact or --nearest.
void AddRecordOptions(CLI::App* command, RecordRequest& request);

// Finds the record in the requested mode.  Nothing is found (miss_reason
// says why) when the thickness lies beyond the extrapolation limit of the
// listed rows of the material and machine (unless allowed), or when the
// settings found fail the strict record check: no unsafe setting is ever
// handed out.
Selection SelectRecord(const Sparlane::Database& db, const Catalogue& catalogue,
                       const RecordRequest& request);

const char* ModeName(SelectionMode mode);

// The mode as text output shows it: ModeName, with "power model" added
// when the power model interpolates.
std::string ModeLabel(const RecordRequest& request);

}  // namespace slb

#endif  // SLB_TOOL_RECORD_SELECTION_H_
