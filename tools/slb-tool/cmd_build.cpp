// build OUT --from-csv IN | --from-plasmac FILE | --from-sheetcam FILE |
// --from-sqlite DB: make a parameter file.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "catalogue.h"
#include "commands.h"
#include "csv_import.h"
#include "database_builder.h"
#include "exit_status.h"
#include "import_table.h"
#include "plasmac_import.h"
#include "record_view.h"
#include "safe_output.h"
#include "sheetcam_import.h"
#include "strict_check.h"
#include "tool_paths.h"

namespace slb {
namespace {

struct BuildOptions {
  std::string out;
  std::string csv;
  std::string plasmac;
  std::string sheetcam;
  std::string sqlite;
  bool lz4 = false;
  bool skip_invalid = false;
  std::string vendor;
  std::string machine;
  std::vector<std::string> material_rules;
  std::string material;
  std::string filter;
  std::string units = "auto";

  std::string out_path;  // resolved

  Sparlane::CompressionType Compression() const {
    return lz4 ? Sparlane::CompressionType::LZ4 : Sparlane::CompressionType::None;
  }
  const std::string& Input() const {
    if (!csv.empty()) return csv;
    if (!plasmac.empty()) return plasmac;
    if (!sheetcam.empty()) return sheetcam;
    return sqlite;
  }
};

int NothingWritten(const BuildOptions& options) {
  return Fail("nothing written to " + options.out);
}

// Reports the refused rows and, unless they may be skipped, stops.
bool AcceptRefusals(const BuildOptions& options, const ProblemList& refused) {
  if (refused.empty()) return true;
  if (!options.skip_invalid) {
    refused.ReportErrors("invalid rows");
    Fail("nothing written to " + options.out + "; --skip-invalid builds from the valid rows");
    return false;
  }
  refused.ReportWarnings("invalid rows", "; row skipped");
  return true;
}

int Finish(const BuildOptions& options, ImportTable& table, const ProblemList& refused,
           std::size_t not_placed) {
  if (!AcceptRefusals(options, refused)) return kExitFailure;
  if (table.size() == 0) return Fail("no valid records; nothing written to " + options.out);
  ProblemList warnings;
  const BuildResult result =
      BuildDatabase(table, options.out_path, options.Compression(), warnings);
  warnings.ReportWarnings("warnings about repeated rows");
  if (!result.error.empty()) {
    Fail(result.error);
    return NothingWritten(options);
  }
  std::printf("wrote %s: %zu records", options.out.c_str(), result.records);
  if (refused.count() > 0) std::printf(", %zu invalid rows skipped", refused.count());
  if (not_placed > 0) std::printf(", %zu entries not placed", not_placed);
  std::printf("\n");
  return kExitOk;
}

int BuildFromCsv(const BuildOptions& options) {
  ImportTable table(options.csv);
  ProblemList refused;
  std::string fatal;
  if (!ReadParameterCsv(options.csv, table, refused, fatal)) {
    refused.ReportErrors("invalid rows");
    Fail(fatal);
    return NothingWritten(options);
  }
  return Finish(options, table, refused, 0);
}

// The SQLite import fills the library's store directly; its records are
// held to the same strict check before anything is written.
int BuildFromSqlite(const BuildOptions& options) {
  std::string error;
  const auto path = ResolvePath(options.sqlite, error);
  if (!path) return Fail(error);
  Sparlane::Database db;
  if (db.ImportFromSQLite(*path) != Sparlane::ErrorCode::Success) {
    FailWithLibraryError(db);
    return NothingWritten(options);
  }
  const Catalogue catalogue(db);
  const auto records = db.GetParameters();
  const std::size_t materials = db.GetMaterials().size();
  ProblemList refused;
  std::size_t without_material = 0;
  for (const auto& r : records) {
    const std::string finding = StrictCheckFinding(r);
    if (!finding.empty()) {
      refused.Add(options.sqlite + ": " + RecordTitle(r, catalogue) + ": " + finding);
    }
    if (r.material_id > materials) ++without_material;
  }
  if (without_material > 0) {
    refused.Add(options.sqlite + ": " + std::to_string(without_material) +
                " records name no material of the database");
  }
  if (!refused.empty()) {
    refused.ReportErrors("invalid records");
    return NothingWritten(options);
  }
  if (records.empty()) return Fail("no records; nothing written to " + options.out);
  error = SaveDatabase(db, options.out_path, options.Compression());
  if (!error.empty()) {
    Fail(error);
    return NothingWritten(options);
  }
  std::printf("wrote %s: %zu records\n", options.out.c_str(), records.size());
  return kExitOk;
}

const char* UnitName(LengthUnit unit) { return unit == LengthUnit::Inch ? "inches" : "mm"; }

bool ResolveUnits(const BuildOptions& options, const std::vector<MaterialEntry>& entries,
                  bool sheetcam, LengthUnit& units) {
  const UnitVotes votes = CountUnitVotes(entries);
  const auto guess = votes.Winner();
  if (options.units != "auto") {
    units = options.units == "inch" ? LengthUnit::Inch : LengthUnit::Millimetre;
    if (guess && *guess != units) {
      Warn("--units " + options.units + " was given, but the values look like " +
           UnitName(*guess) + " (" + std::to_string(votes.mm) + " entries vote mm, " +
           std::to_string(votes.inch) + " vote inches); check the units");
    }
    return true;
  }
  if (guess) {
    units = *guess;
  } else if (sheetcam || entries.empty()) {
    units = LengthUnit::Millimetre;  // SheetCam keeps lengths in mm whatever it displays
  } else {
    Fail("cannot tell whether the values are in mm or inches; give --units mm or --units inch");
    return false;
  }
  return true;
}

int BuildFromMaterialFile(const BuildOptions& options, bool sheetcam) {
  const std::string& path = sheetcam ? options.sheetcam : options.plasmac;
  std::vector<MaterialEntry> entries;
  std::vector<std::string> warnings;
  const bool read = sheetcam ? ReadSheetcamFile(path, entries, warnings)
                             : ReadPlasmacFile(path, entries, warnings);
  if (!read) return Fail(path + ": cannot read the file");
  PlacementOptions placement;
  placement.vendor = options.vendor;
  placement.machine = options.machine;
  placement.material = options.material;
  placement.filter = options.filter;
  for (const auto& text : options.material_rules) {
    MaterialRule rule;
    if (!ParseMaterialRule(text, rule)) {
      for (const auto& w : warnings) Warn(w);
      return Fail("--material-rule wants PATTERN=MATERIAL, got \"" + text + "\"");
    }
    placement.material_rules.push_back(rule);
  }
  if (!ResolveUnits(options, entries, sheetcam, placement.units)) {
    for (const auto& w : warnings) Warn(w);
    return kExitFailure;
  }
  const auto rows = PlaceEntries(entries, placement, warnings);
  for (const auto& w : warnings) Warn(w);
  std::size_t considered = 0;
  for (const auto& entry : entries) considered += PassesFilter(entry, placement) ? 1 : 0;
  std::printf("%s: %zu entries", path.c_str(), entries.size());
  if (considered != entries.size()) std::printf(", %zu passing the filter", considered);
  std::printf(", values read as %s, %zu placed\n", UnitName(placement.units), rows.size());
  if (rows.empty()) return Fail("no entries could be placed; nothing written to " + options.out);
  ImportTable table(path);
  ProblemList refused;
  for (const auto& row : rows) {
    const std::string problem =
        row.problem.empty()
            ? table.Add(row.line, row.vendor, row.machine, row.material, row.values)
            : table.Refuse(row.line, row.problem);
    if (!problem.empty()) refused.Add(problem);
  }
  return Finish(options, table, refused, considered - rows.size());
}

int RunBuild(BuildOptions& options) {
  std::string error;
  const auto out = ResolvePath(options.out, error);
  if (!out) return Fail(error);
  options.out_path = *out;
  // Checked first, so that a long import is not wasted on a bad target.
  const std::string problem = OutputProblem(options.out, options.out_path, options.Input());
  if (!problem.empty()) {
    Fail(problem);
    return NothingWritten(options);
  }
  if (!options.csv.empty()) return BuildFromCsv(options);
  if (!options.sqlite.empty()) return BuildFromSqlite(options);
  return BuildFromMaterialFile(options, !options.sheetcam.empty());
}

}  // namespace

void RegisterBuildCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<BuildOptions>();
  auto* command = app.add_subcommand("build", "Make a parameter file from CSV, a material file "
                                              "or an SQLite database");
  command->add_option("out", options->out, "Parameter file to write (.slb)")->required();
  auto* csv = command->add_option("--from-csv", options->csv,
                                  "13-column CSV as the CSV export writes it")
                  ->type_name("IN");
  auto* plasmac = command->add_option("--from-plasmac", options->plasmac,
                                      "LinuxCNC PlasmaC/QtPlasmaC material file (.cfg, .mat)")
                      ->type_name("FILE");
  auto* sheetcam = command->add_option("--from-sheetcam", options->sheetcam,
                                       "SheetCam tool table (.tools)")
                       ->type_name("FILE");
  auto* sqlite = command->add_option("--from-sqlite", options->sqlite, "SQLite database")
                     ->type_name("DB");
  command->add_flag("--lz4", options->lz4, "Compress the records with LZ4");
  auto* skip = command->add_flag("--skip-invalid", options->skip_invalid,
                                 "Build from the rows that pass the checks and list the rest, "
                                 "instead of writing nothing");
  auto* vendor = command->add_option("--vendor", options->vendor,
                                     "Vendor of the imported machine (material files)");
  auto* machine = command->add_option("--machine", options->machine,
                                      "Machine model for every imported entry (material files)");
  auto* rule = command->add_option("--material-rule", options->material_rules,
                                   "PATTERN=MATERIAL: names containing PATTERN (any case) are "
                                   "that material; repeatable, tried in order")
                   ->type_name("PATTERN=MATERIAL");
  auto* material = command->add_option("--material", options->material,
                                       "Material of entries no rule matches");
  auto* filter = command->add_option("--filter", options->filter,
                                     "Only entries whose name contains TEXT (any case)")
                     ->type_name("TEXT");
  auto* units = command->add_option("--units", options->units,
                                    "Units of the material file's values: auto, mm or inch")
                    ->check(CLI::IsMember({"auto", "mm", "inch"}))
                    ->capture_default_str();
  skip->excludes(sqlite);
  const std::vector<CLI::Option*> sources{csv, plasmac, sheetcam, sqlite};
  const std::vector<CLI::Option*> import_only{vendor, machine, rule, material, filter, units};
  command->callback([options, sources, import_only, plasmac, sheetcam, vendor, machine,
                     &status] {
    std::size_t given = 0;
    for (auto* source : sources) given += source->count() > 0 ? 1 : 0;
    if (given != 1) {
      throw CLI::ValidationError(
          "build needs exactly one of --from-csv, --from-plasmac, --from-sheetcam, --from-sqlite");
    }
    const bool material_file = plasmac->count() > 0 || sheetcam->count() > 0;
    if (material_file && (vendor->count() == 0 || machine->count() == 0)) {
      throw CLI::RequiredError("--vendor and --machine");
    }
    if (!material_file) {
      for (auto* option : import_only) {
        if (option->count() > 0) {
          throw CLI::ValidationError(option->get_name() + " applies to material files only");
        }
      }
    }
    status = RunBuild(*options);
  });
}

}  // namespace slb
