// query FILE --material M --machine X --thickness T: the settings to cut with.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"
#include "record_selection.h"
#include "record_view.h"

namespace slb {
namespace {

void PrintText(const RecordRequest& request, const Selection& selection,
               const Catalogue& catalogue) {
  const auto mode = request.Mode();
  std::printf("%s %s mm on %s (%s)\n", request.material.c_str(),
              ShopNumber(request.thickness, Unit::kMillimetre).c_str(), request.machine.c_str(),
              ModeName(mode));
  std::fputs(SettingsTable(selection.record, catalogue).c_str(), stdout);
  if (mode != SelectionMode::Interpolate) return;
  std::printf("confidence: %s\n", ShopNumber(selection.confidence, Unit::kConfidence).c_str());
  std::printf("extrapolated: %s\n", selection.extrapolated ? "yes" : "no");
  if (selection.neighbours.empty()) return;
  std::printf("neighbouring rows:\n");
  std::fputs(RecordRows(selection.neighbours, selection.neighbour_labels, catalogue).c_str(),
             stdout);
}

void PrintJson(const RecordRequest& request, const Selection& selection,
               const Catalogue& catalogue) {
  const auto mode = request.Mode();
  Json json = {{"mode", ModeName(mode)},
               {"material", request.material},
               {"machine", request.machine},
               {"thickness_mm", JsonFloat(request.thickness)},
               {"parameter", RecordJson(selection.record, catalogue)}};
  if (mode == SelectionMode::Interpolate) {
    json["confidence"] = JsonFloat(selection.confidence);
    json["extrapolated"] = selection.extrapolated;
    json["neighbours"] = Json::array();
    for (std::size_t i = 0; i < selection.neighbours.size(); ++i) {
      json["neighbours"].push_back({{"position", selection.neighbour_labels[i]},
                                    {"record", RecordJson(selection.neighbours[i], catalogue)}});
    }
  }
  std::fputs(JsonText(json).c_str(), stdout);
}

int RunQuery(const RecordRequest& request) {
  Sparlane::Database db;
  if (!LoadDatabase(db, request.file)) return kExitFailure;
  const Catalogue catalogue(db);
  const auto selection = SelectRecord(db, catalogue, request);
  if (!selection.found) return Fail(selection.miss_reason);
  if (request.json) {
    PrintJson(request, selection, catalogue);
  } else {
    PrintText(request, selection, catalogue);
  }
  return kExitOk;
}

}  // namespace

void RegisterQueryCommand(CLI::App& app, int& status) {
  auto request = std::make_shared<RecordRequest>();
  auto* command =
      app.add_subcommand("query", "Settings for a material and thickness on a machine model");
  AddRecordOptions(command, *request);
  command->callback([request, &status] { status = RunQuery(*request); });
}

}  // namespace slb
