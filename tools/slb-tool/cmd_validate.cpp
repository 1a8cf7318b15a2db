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
#include "json_writer.h"
#include "number_format.h"
#include "record_view.h"

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

// Which rule of the strict record check a rejected record breaks, in the
// order the check applies them (the library returns only a code).
std::string StrictCheckReason(const Sparlane::CuttingParameter& p) {
  const float fields[] = {p.thickness_mm,       p.cut_speed_mm_min, p.cut_height_mm,
                          p.pierce_height_mm,   p.transfer_height_mm, p.arc_voltage_v,
                          p.pierce_time_s,      p.kerf_width_mm};
  for (float f : fields) {
    if (!std::isfinite(f)) return "a setting is NaN or infinite";
  }
  if (p.vendor_id == 0 || p.machine_model_id == 0 || p.material_id == 0) return "an id is 0";
  if (p.thickness_mm < 0.1f || p.thickness_mm > 300.0f) return "thickness outside 0.1 to 300 mm";
  if (p.cut_speed_mm_min < 10.0f || p.cut_speed_mm_min > 20000.0f) {
    return "cut speed outside 10 to 20000 mm/min";
  }
  if (p.current_amps == 0 || p.current_amps > 1000) return "current outside 1 to 1000 A";
  if (p.arc_voltage_v < 20.0f || p.arc_voltage_v > 300.0f) return "arc voltage outside 20 to 300 V";
  if (p.cut_height_mm < 0.0f || p.pierce_height_mm < 0.0f || p.transfer_height_mm < 0.0f ||
      p.pierce_time_s < 0.0f || p.kerf_width_mm < 0.0f) {
    return "a height, the pierce time or the kerf is negative";
  }
  if (p.cut_height_mm > p.pierce_height_mm) return "cut height above pierce height";
  return "fails the strict record check";
}

std::vector<Finding> ScreenRecords(const std::vector<Sparlane::CuttingParameter>& records,
                                   float threshold) {
  std::vector<Finding> findings;
  std::map<std::pair<std::uint16_t, std::uint16_t>, std::vector<float>> series;
  for (const auto& r : records) {
    series[{r.material_id, r.machine_model_id}].push_back(r.cut_speed_mm_min);
    if (Sparlane::Testing::ValidateParameter(r) != Sparlane::ErrorCode::Success) {
      findings.push_back({"record-check", r, StrictCheckReason(r)});
    }
  }
  for (const auto& r : records) {
    const auto& speeds = series[{r.material_id, r.machine_model_id}];
    if (Sparlane::Testing::IsStatisticalOutlier(r.cut_speed_mm_min, speeds, threshold)) {
      findings.push_back({"outlier", r,
                          "cut speed " + FormatNumber(r.cut_speed_mm_min) +
                              " mm/min is more than " + FormatNumber(threshold) +
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
  const auto findings = ScreenRecords(AllRecordsByMaterial(db, catalogue), options.threshold);

  if (options.json) {
    JsonWriter json;
    json.BeginObject();
    json.Key("file").String(options.file);
    json.Key("valid").Bool(valid);
    if (!valid) json.Key("problem").String(problem);
    json.Key("findings").BeginArray();
    for (const auto& f : findings) {
      json.BeginObject();
      json.Key("kind").String(f.kind);
      json.Key("detail").String(f.detail);
      json.Key("record");
      WriteRecordJson(json, f.record, catalogue);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    std::fputs(json.Text().c_str(), stdout);
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
      ->capture_default_str();
  command->add_flag("--strict", options->strict, "Exit 1 on any finding, not only when invalid");
  command->add_flag("--json", options->json, "Machine-readable output");
  command->callback([options, &status] { status = RunValidate(*options); });
}

}  // namespace slb
