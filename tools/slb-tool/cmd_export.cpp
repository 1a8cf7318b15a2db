// export FILE --csv OUT | --json OUT: the library's text exports.
#include <CLI/CLI.hpp>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "load_database.h"
#include "safe_output.h"
#include "tool_paths.h"

namespace slb {
namespace {

struct ExportOptions {
  std::string file;
  std::string csv;
  std::string json;
};

// The export is written beside the target and renamed over it, so a failed
// or interrupted export leaves the previous file as it was.
int RunExport(const ExportOptions& options) {
  const std::string& given_out = options.csv.empty() ? options.json : options.csv;
  std::string error;
  const auto out = ResolvePath(given_out, error);
  if (!out) return Fail(error);
  const std::string problem = OutputProblem(given_out, *out, options.file);
  if (!problem.empty()) return Fail(problem);
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  error = ReplaceFile(*out, [&](const std::string& staging) {
    const auto code = options.csv.empty() ? db.ExportToJSON(staging) : db.ExportToCSV(staging);
    return code == Sparlane::ErrorCode::Success ? std::string() : db.GetLastError();
  });
  if (!error.empty()) return Fail(error);
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
