// export FILE --csv OUT | --json OUT: the library's text exports.
// export FILE --plasmac OUT | --sheetcam OUT --machine MODEL [...]: a
// controller's material file or a CAM tool table for one machine model.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

#include "commands.h"
#include "controller_entries.h"
#include "exit_status.h"
#include "load_database.h"
#include "number_options.h"
#include "plasmac_export.h"
#include "safe_output.h"
#include "sheetcam_export.h"
#include "tool_paths.h"

namespace slb {
namespace {

struct ExportOptions {
  std::string file;
  std::string csv;
  std::string json;
  std::string plasmac;
  std::string sheetcam;
  std::string units = "mm";
  ControllerRequest controller;

  const std::string& Output() const {
    if (!csv.empty()) return csv;
    if (!json.empty()) return json;
    if (!plasmac.empty()) return plasmac;
    return sheetcam;
  }
};

std::string WriteText(const std::string& path, const std::string& text) {
  std::ofstream out(std::filesystem::u8path(path), std::ios::binary);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (!out) return "cannot write " + path;
  return std::string();
}

// The controller formats: nothing is written unless every entry asked for
// can be written safely.
std::string ControllerText(const Sparlane::Database& db, const ExportOptions& options,
                           std::size_t& written) {
  ControllerFile file;
  file.source = std::filesystem::u8path(options.file).filename().u8string();
  file.machine = options.controller.machine;
  file.units = options.units == "inch" ? LengthUnit::Inch : LengthUnit::Millimetre;
  file.model = options.controller.model;
  ProblemList problems;
  std::vector<std::string> warnings;
  const bool collected = CollectEntries(db, options.controller, file, problems, warnings);
  for (const auto& w : warnings) Warn(w);
  if (!collected) {
    problems.ReportErrors("problems");
    return std::string();
  }
  written = file.entries.size();
  return options.plasmac.empty() ? SheetcamToolTable(file) : PlasmacMaterialFile(file);
}

// Every export is written beside the target and renamed over it, so a
// failed or interrupted export leaves the previous file as it was.
int RunExport(const ExportOptions& options) {
  const std::string& given_out = options.Output();
  std::string error;
  const auto out = ResolvePath(given_out, error);
  if (!out) return Fail(error);
  const std::string problem = OutputProblem(given_out, *out, options.file);
  if (!problem.empty()) return Fail(problem);
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  if (!options.csv.empty() || !options.json.empty()) {
    error = ReplaceFile(*out, [&](const std::string& staging) {
      const auto code = options.csv.empty() ? db.ExportToJSON(staging) : db.ExportToCSV(staging);
      return code == Sparlane::ErrorCode::Success ? std::string() : db.GetLastError();
    });
    if (!error.empty()) return Fail(error);
    return kExitOk;
  }
  std::size_t entries = 0;
  const std::string text = ControllerText(db, options, entries);
  if (entries == 0) return Fail("nothing written to " + given_out);
  error = ReplaceFile(*out, [&](const std::string& staging) { return WriteText(staging, text); });
  if (!error.empty()) return Fail(error);
  std::printf("wrote %s: %zu entries for %s, in %s\n", given_out.c_str(), entries,
              options.controller.machine.c_str(), options.units.c_str());
  return kExitOk;
}

}  // namespace

void RegisterExportCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<ExportOptions>();
  auto& controller = options->controller;
  auto* command = app.add_subcommand(
      "export", "Write a file's records as CSV or JSON, or one machine model's as a QtPlasmaC "
                "material file or a SheetCam tool table");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  auto* csv = command->add_option("--csv", options->csv, "Write CSV to OUT")->type_name("OUT");
  auto* json =
      command->add_option("--json", options->json, "Write JSON to OUT")->type_name("OUT");
  auto* plasmac = command->add_option("--plasmac", options->plasmac,
                                      "Write a LinuxCNC QtPlasmaC material file to OUT")
                      ->type_name("OUT");
  auto* sheetcam =
      command->add_option("--sheetcam", options->sheetcam, "Write a SheetCam tool table to OUT")
          ->type_name("OUT");
  auto* machine = command->add_option("--machine", controller.machine,
                                      "Machine model whose records are written");
  auto* vendor = command->add_option("--vendor", controller.vendor,
                                     "Vendor the machine model must belong to");
  auto* units = command->add_option("--units", options->units,
                                    "Units of lengths and speeds in the file: mm or inch")
                    ->check(CLI::IsMember({"mm", "inch"}))
                    ->capture_default_str();
  auto* thicknesses =
      command->add_option("--thicknesses", controller.thicknesses,
                          "Also write settings for these thicknesses in mm, e.g. 8,10,12.5")
          ->delimiter(',')
          ->check(FinitePositive())
          ->type_name("LIST");
  auto* gauges = command->add_flag("--gauges", controller.gauges,
                                   "Also write settings for the sheet-metal gauges of each "
                                   "material's family");
  auto* material = command->add_option("--material", controller.materials,
                                       "Only this material; repeatable")
                       ->type_name("NAME");
  auto* model = AddModelOption(command, controller.model);
  auto* allow = command->add_flag("--allow-extrapolation", controller.allow_extrapolation,
                                  "Derive settings more than 25 % beyond the listed rows too");
  thicknesses->excludes(gauges);
  const std::vector<CLI::Option*> outputs{csv, json, plasmac, sheetcam};
  const std::vector<CLI::Option*> controller_only{machine, vendor,   units, thicknesses,
                                                  gauges,  material, model, allow};
  command->callback([options, outputs, controller_only, plasmac, sheetcam, machine, &status] {
    std::size_t given = 0;
    for (auto* output : outputs) given += output->count() > 0 ? 1 : 0;
    if (given != 1) {
      throw CLI::ValidationError(
          "export needs exactly one of --csv, --json, --plasmac, --sheetcam");
    }
    const bool for_controller = plasmac->count() > 0 || sheetcam->count() > 0;
    if (for_controller && machine->count() == 0) throw CLI::RequiredError("--machine");
    if (!for_controller) {
      for (auto* option : controller_only) {
        if (option->count() > 0) {
          throw CLI::ValidationError(option->get_name() +
                                     " applies to --plasmac and --sheetcam only");
        }
      }
    }
    if (sheetcam->count() > 0 && options->units == "inch") {
      Warn("SheetCam keeps lengths in mm whatever it displays; the table is written in inches "
           "for a set-up that reads them so");
    }
    status = RunExport(*options);
  });
}

}  // namespace slb
