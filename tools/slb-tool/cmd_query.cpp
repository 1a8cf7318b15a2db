// query FILE --material M --machine X --thickness T: the settings to cut with.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_writer.h"
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
              FormatNumber(request.thickness).c_str(), request.machine.c_str(), ModeName(mode));
  std::fputs(SettingsTable(selection.record, catalogue).c_str(), stdout);
  if (mode != SelectionMode::Interpolate) return;
  std::printf("confidence: %s\n", FormatNumber(selection.confidence).c_str());
  std::printf("extrapolated: %s\n", selection.extrapolated ? "yes" : "no");
  if (selection.neighbours.empty()) return;
  std::printf("neighbouring rows:\n");
  std::fputs(RecordRows(selection.neighbours, selection.neighbour_labels, catalogue).c_str(),
             stdout);
}

void PrintJson(const RecordRequest& request, const Selection& selection,
               const Catalogue& catalogue) {
  const auto mode = request.Mode();
  JsonWriter json;
  json.BeginObject();
  json.Key("mode").String(ModeName(mode));
  json.Key("material").String(request.material);
  json.Key("machine").String(request.machine);
  json.Key("thickness_mm").Float(request.thickness);
  json.Key("parameter");
  WriteRecordJson(json, selection.record, catalogue);
  if (mode == SelectionMode::Interpolate) {
    json.Key("confidence").Float(selection.confidence);
    json.Key("extrapolated").Bool(selection.extrapolated);
    json.Key("neighbours").BeginArray();
    for (std::size_t i = 0; i < selection.neighbours.size(); ++i) {
      json.BeginObject();
      json.Key("position").String(selection.neighbour_labels[i]);
      json.Key("record");
      WriteRecordJson(json, selection.neighbours[i], catalogue);
      json.EndObject();
    }
    json.EndArray();
  }
  json.EndObject();
  std::fputs(json.Text().c_str(), stdout);
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
