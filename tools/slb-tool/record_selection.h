// Picking the record a question is about: exact, nearest or interpolated,
// the way `query` and `calc` both do.
#ifndef SLB_TOOL_RECORD_SELECTION_H_
#define SLB_TOOL_RECORD_SELECTION_H_

#include <string>
#include <vector>

#include "catalogue.h"
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
// --interpolate and --json to a subcommand.
void AddRecordOptions(CLI::App* command, RecordRequest& request);

Selection SelectRecord(const Sparlane::Database& db, const Catalogue& catalogue,
                       const RecordRequest& request);

const char* ModeName(SelectionMode mode);

}  // namespace slb

#endif  // SLB_TOOL_RECORD_SELECTION_H_
