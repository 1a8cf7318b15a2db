// optimal FILE --material M --thickness T: the fastest listed record of any
// machine within a tolerance.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "catalogue.h"
#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"
#include "number_options.h"
#include "record_view.h"
#include "settings_safety.h"

namespace slb {
namespace {

struct OptimalOptions {
  std::string file;
  std::string material;
  float thickness = 0.0f;
  float tolerance = 0.5f;
  bool allow_extrapolation = false;
  bool json = false;
};

int RunOptimal(const OptimalOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const Catalogue catalogue(db);
  if (!catalogue.MaterialId(options.material)) {
    return Fail("unknown material: " + options.material);
  }
  // Any machine may answer, so the limit is that of the material's rows.
  if (!options.allow_extrapolation) {
    const std::string problem = ExtrapolationProblem(
        ListedRecords(db, options.material, std::nullopt), options.thickness, options.material);
    if (!problem.empty()) return Fail(problem);
  }
  const auto best = db.FindOptimal(options.material, options.thickness, options.tolerance);
  if (!best) {
    return Fail("no record of " + options.material + " within " + ExactFloat(options.tolerance) +
                " mm of " + ExactFloat(options.thickness) + " mm");
  }
  const std::string unsafe =
      UnsafeSettingsProblem(*best, options.material, options.thickness);
  if (!unsafe.empty()) return Fail(unsafe);
  if (options.json) {
    std::fputs(JsonText(RecordJson(*best, catalogue)).c_str(), stdout);
  } else {
    std::printf("fastest record of %s within %s mm of %s mm\n", options.material.c_str(),
                ShopNumber(options.tolerance, Unit::kMillimetre).c_str(),
                ShopNumber(options.thickness, Unit::kMillimetre).c_str());
    std::fputs(SettingsTable(*best, catalogue).c_str(), stdout);
  }
  return kExitOk;
}

}  // namespace

void RegisterOptimalCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<OptimalOptions>();
  auto* command =
      app.add_subcommand("optimal", "Fastest record of any machine for a material and thickness");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  command->add_option("--material", options->material, "Material name")->required();
  command->add_option("--thickness", options->thickness, "Plate thickness in mm")
      ->required()
      ->check(FinitePositive());
  command->add_option("--tolerance", options->tolerance, "Thickness tolerance in mm")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_flag("--allow-extrapolation", options->allow_extrapolation,
                    "Answer a thickness more than 25 % beyond the listed rows too");
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunOptimal(*options); });
}

}  // namespace slb
