// export FILE --csv OUT | --json OUT: the library's text exports.
#include <CLI/CLI.hpp>
#include <memory>

#include "commands.h"
#include "exit_status.h"

namespace slb {
namespace {

struct ExportOptions {
  std::string file;
  std::string csv;
  std::string json;
};

int RunExport(const ExportOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const auto code = options.csv.empty() ? db.ExportToJSON(options.json)
                                        : db.ExportToCSV(options.csv);
  if (code != Sparlane::ErrorCode::Success) return FailWithLibraryError(db);
  return kExitOk;
}

}  // namespace

void RegisterExportCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<ExportOptions>();
  auto* command = app.add_subcommand("export", "Write a file's records as CSV or JSON");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  auto* csv = command->add_option("--csv", options->csv, "Write CSV to OUT")->type_name("OUT");
  auto* json =
      command->add_option("--json", options->json, "Write JSON to OUT")->type_name("OUT");
  csv->excludes(json);
  command->callback([options, csv, json, &status] {
    if (csv->count() == 0 && json->count() == 0) throw CLI::RequiredError("--csv or --json");
    status = RunExport(*options);
  });
}

}  // namespace slb
