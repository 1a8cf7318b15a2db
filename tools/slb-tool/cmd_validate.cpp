// validate FILE: the library's whole-file check, then the strict record
// check and a cut-speed outlier screen per (material, machine) series.
#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

#include "catalogue.h"
#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"
#include "number_options.h"
#include "record_view.h"
#include "strict_check.h"

namespace slb {
namespace {

struct ValidateOptions {
  std::string file;
  float threshold = 2.5f;
  bool strict = false;
  bool json = false;
};

struct Finding {
  std::string kind;  // "record-check" or "outlier"
  Sparlane::CuttingParameter record;
  std::string detail;
};

std::vector<Finding> ScreenRecords(const std::vector<Sparlane::CuttingParameter>& records,
                                   float threshold) {
  std::vector<Finding> findings;
  std::map<std::pair<std::uint16_t, std::uint16_t>, std::vector<float>> series;
  for (const auto& r : records) {
    series[{r.material_id, r.machine_model_id}].push_back(r.cut_speed_mm_min);
    if (Sparlane::Testing::ValidateParameter(r) != Sparlane::ErrorCode::Success) {
      findings.push_back({"record-check", r, StrictCheckFinding(r)});
    }
  }
  for (const auto& r : records) {
    const auto& speeds = series[{r.material_id, r.machine_model_id}];
    if (Sparlane::Testing::IsStatisticalOutlier(r.cut_speed_mm_min, speeds, threshold)) {
      findings.push_back({"outlier", r,
                          "cut speed " + ExactFloat(r.cut_speed_mm_min) +
                              " mm/min is more than " + ExactFloat(threshold) +
                              " deviations from its series"});
    }
  }
  return findings;
}

int RunValidate(const ValidateOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.file)) return kExitFailure;
  const bool valid = db.Validate() == Sparlane::ErrorCode::Success;
  const std::string problem = valid ? std::string() : db.GetLastError();
  const Catalogue catalogue(db);
  const auto findings = ScreenRecords(db.GetParameters(), options.threshold);

  if (options.json) {
    Json json = {{"file", options.file}, {"valid", valid}};
    if (!valid) json["problem"] = problem;
    json["findings"] = Json::array();
    for (const auto& f : findings) {
      json["findings"].push_back({{"kind", f.kind},
                                  {"detail", f.detail},
                                  {"record", RecordJson(f.record, catalogue)}});
    }
    std::fputs(JsonText(json).c_str(), stdout);
  } else {
    std::printf("%s: %s\n", options.file.c_str(), valid ? "valid" : "INVALID");
    for (const auto& f : findings) {
      std::printf("  %s: %s: %s\n", f.kind.c_str(), RecordTitle(f.record, catalogue).c_str(),
                  f.detail.c_str());
    }
    std::printf("%zu finding%s\n", findings.size(), findings.size() == 1 ? "" : "s");
  }
  if (!valid) return Fail(problem);
  if (options.strict && !findings.empty()) return kExitFailure;
  return kExitOk;
}

}  // namespace

void RegisterValidateCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<ValidateOptions>();
  auto* command = app.add_subcommand(
      "validate", "Check a file; list records that fail the strict check or look like outliers");
  command->add_option("file", options->file, "Parameter file (.slb)")->required();
  command->add_option("--threshold", options->threshold,
                      "Outlier threshold in standard deviations of a series' cut speeds")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_flag("--strict", options->strict, "Exit 1 on any finding, not only when invalid");
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunValidate(*options); });
}

}  // namespace slb
