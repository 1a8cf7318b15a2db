// build OUT --from-csv IN | --from-plasmac FILE | --from-sheetcam FILE |
// --from-sqlite DB: make a parameter file.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "commands.h"
#include "csv_import.h"
#include "database_builder.h"
#include "exit_status.h"
#include "plasmac_import.h"
#include "sheetcam_import.h"

namespace slb {
namespace {

struct BuildOptions {
  std::string out;
  std::string csv;
  std::string plasmac;
  std::string sheetcam;
  std::string sqlite;
  bool lz4 = false;
  std::string vendor;
  std::string machine;
  std::vector<std::string> material_rules;
  std::string material;
  std::string filter;
  std::string units = "auto";

  Sparlane::CompressionType Compression() const {
    return lz4 ? Sparlane::CompressionType::LZ4 : Sparlane::CompressionType::None;
  }
};

int Finish(const BuildOptions& options, const BuildResult& result, std::size_t skipped_before) {
  for (const auto& line : result.skipped) Warn(line + "; row skipped");
  if (!result.ok) {
    for (const auto& error : result.errors) Fail(error);
    return Fail("nothing written to " + options.out);
  }
  std::printf("wrote %s: %zu records", options.out.c_str(), result.records);
  const std::size_t skipped = skipped_before + result.skipped.size();
  if (skipped > 0) std::printf(", %zu entries not placed", skipped);
  std::printf("\n");
  return kExitOk;
}

int BuildFromCsv(const BuildOptions& options) {
  std::vector<ImportRow> rows;
  std::vector<std::string> errors;
  if (!ReadParameterCsv(options.csv, rows, errors)) {
    for (const auto& error : errors) Fail(error);
    return Fail("nothing written to " + options.out);
  }
  return Finish(options, BuildDatabase(rows, options.out, options.Compression(), false), 0);
}

int BuildFromSqlite(const BuildOptions& options) {
  Sparlane::Database db;
  if (db.ImportFromSQLite(options.sqlite) != Sparlane::ErrorCode::Success ||
      db.SaveToBinary(options.out, options.Compression()) != Sparlane::ErrorCode::Success) {
    return FailWithLibraryError(db);
  }
  std::printf("wrote %s: %u records\n", options.out.c_str(), db.GetStatistics().parameter_count);
  return kExitOk;
}

bool ResolveUnits(const BuildOptions& options, const std::vector<MaterialEntry>& entries,
                  bool sheetcam, LengthUnit& units) {
  if (options.units == "mm") {
    units = LengthUnit::Millimetre;
    return true;
  }
  if (options.units == "inch") {
    units = LengthUnit::Inch;
    return true;
  }
  const auto guess = GuessUnits(entries);
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
  std::printf(", values read as %s, %zu placed\n",
              placement.units == LengthUnit::Inch ? "inches" : "mm", rows.size());
  if (rows.empty()) return Fail("no entries could be placed; nothing written to " + options.out);
  return Finish(options, BuildDatabase(rows, options.out, options.Compression(), true),
                considered - rows.size());
}

int RunBuild(const BuildOptions& options) {
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
