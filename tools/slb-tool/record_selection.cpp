#include "record_selection.h"

#include <CLI/CLI.hpp>

#include "number_format.h"
#include "number_options.h"
#include "settings_safety.h"

namespace slb {

SelectionMode RecordRequest::Mode() const {
  if (exact_tolerance >= 0.0f) return SelectionMode::Exact;
  if (nearest) return SelectionMode::Nearest;
  return SelectionMode::Interpolate;
}

const char* ModeName(SelectionMode mode) {
  switch (mode) {
    case SelectionMode::Exact: return "exact";
    case SelectionMode::Nearest: return "nearest";
    case SelectionMode::Interpolate: break;
  }
  return "interpolate";
}

void AddRecordOptions(CLI::App* command, RecordRequest& request) {
  command->add_option("file", request.file, "Parameter file (.slb)")->required();
  command->add_option("--material", request.material, "Material name, e.g. \"Mild steel\"")
      ->required();
  command->add_option("--machine", request.machine, "Machine model name")->required();
  command->add_option("--thickness", request.thickness, "Plate thickness in mm")
      ->required()
      ->check(FinitePositive());
  auto* exact = command->add_option("--exact", request.exact_tolerance,
                                    "A listed record within TOL mm of the thickness")
                    ->type_name("TOL")
                    ->check(FiniteNonNegative());
  auto* nearest =
      command->add_flag("--nearest", request.nearest, "The listed record of nearest thickness");
  auto* interpolate = command->add_flag(
      "--interpolate", "Interpolate between the neighbouring records (the default)");
  exact->excludes(nearest)->excludes(interpolate);
  nearest->excludes(interpolate);
  command->add_flag("--allow-extrapolation", request.allow_extrapolation,
                    "Answer a thickness more than 25 % beyond the listed rows too");
  command->add_flag("--json", request.json, "Machine-readable output");
}

namespace {

void FindNeighbours(const std::vector<Sparlane::CuttingParameter>& records,
                    const RecordRequest& request, Selection& selection) {
  const Sparlane::CuttingParameter* below = nullptr;
  const Sparlane::CuttingParameter* above = nullptr;
  for (const auto& r : records) {
    if (r.thickness_mm < request.thickness) {
      if (!below || r.thickness_mm >= below->thickness_mm) below = &r;
    } else if (r.thickness_mm >= request.thickness) {
      if (!above || r.thickness_mm < above->thickness_mm) above = &r;
    }
  }
  if (below) {
    selection.neighbours.push_back(*below);
    selection.neighbour_labels.push_back("below");
  }
  if (above) {
    selection.neighbours.push_back(*above);
    selection.neighbour_labels.push_back("above");
  }
}

}  // namespace

Selection SelectRecord(const Sparlane::Database& db, const Catalogue& catalogue,
                       const RecordRequest& request) {
  Selection selection;
  const auto material_id = catalogue.MaterialId(request.material);
  if (!material_id) {
    selection.miss_reason = "unknown material: " + request.material;
    return selection;
  }
  const auto machine_id = catalogue.MachineId(request.machine);
  if (!machine_id) {
    selection.miss_reason = "unknown machine model: " + request.machine;
    return selection;
  }
  const std::string what = request.material + " on " + request.machine;
  const auto listed = ListedRecords(db, request.material, *machine_id);
  if (!request.allow_extrapolation) {
    selection.miss_reason = ExtrapolationProblem(listed, request.thickness, what);
    if (!selection.miss_reason.empty()) return selection;
  }
  switch (request.Mode()) {
    case SelectionMode::Exact: {
      auto found = db.FindExact(request.material, request.thickness, request.machine,
                                request.exact_tolerance);
      if (!found) {
        selection.miss_reason = "no record of " + what + " within " +
                                ExactFloat(request.exact_tolerance) + " mm of " +
                                ExactFloat(request.thickness) + " mm";
        return selection;
      }
      selection.record = *found;
      break;
    }
    case SelectionMode::Nearest: {
      auto found = db.FindNearest(request.material, request.thickness, request.machine);
      if (!found) {
        selection.miss_reason = "no record of " + what;
        return selection;
      }
      selection.record = *found;
      break;
    }
    case SelectionMode::Interpolate: {
      const auto result = db.Interpolate(request.material, request.thickness, request.machine);
      if (!(result.confidence > 0.0f)) {
        selection.miss_reason = "no settings can be built for " + what + " at " +
                                ExactFloat(request.thickness) + " mm";
        return selection;
      }
      selection.record = result.parameter;
      selection.confidence = result.confidence;
      selection.extrapolated = result.extrapolated;
      FindNeighbours(listed, request, selection);
      selection.miss_reason = UnsafeSourceProblem(selection.neighbours, what);
      if (!selection.miss_reason.empty()) return selection;
      break;
    }
  }
  selection.miss_reason = UnsafeSettingsProblem(selection.record, what, request.thickness);
  selection.found = selection.miss_reason.empty();
  return selection;
}

}  // namespace slb
