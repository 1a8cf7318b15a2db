// range FILE --material M [--machine X]: the thickness span covered.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"

namespace slb {
namespace {

struct RangeOptions {
  std::string file;
  std::string material;
  std::string machine;
  bool json = false;
};

int RunRange(const RangeOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const auto range = db.GetSupportedThicknessRange(options.material, options.machine);
  const std::string what =
      options.material + (options.machine.empty() ? "" : " on " + options.machine);
  if (!range.valid) return Fail("no records of " + what);
  if (options.json) {
    const Json json = {
        {"material", options.material},
        {"machine", options.machine.empty() ? Json(nullptr) : Json(options.machine)},
        {"min_thickness_mm", JsonFloat(range.min_thickness_mm)},
        {"max_thickness_mm", JsonFloat(range.max_thickness_mm)},
        {"parameter_count", range.parameter_count}};
    std::fputs(JsonText(json).c_str(), stdout);
  } else {
    std::printf("%s: %s to %s mm (%d records)\n", what.c_str(),
                ShopNumber(range.min_thickness_mm, Unit::kMillimetre).c_str(),
                ShopNumber(range.max_thickness_mm, Unit::kMillimetre).c_str(),
                range.parameter_count);
  }
  return kExitOk;
}

}  // namespace

void RegisterRangeCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<RangeOptions>();
  auto* command = app.add_subcommand("range", "Thickness span covered for a material");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  command->add_option("--material", options->material, "Material name")->required();
  command->add_option("--machine", options->machine, "Only this machine model");
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunRange(*options); });
}

}  // namespace slb
