// calc: the process calculators on a record chosen like `query` chooses it.
#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <memory>

#include "commands.h"
#include "exit_status.h"
#include "json_output.h"
#include "load_database.h"
#include "number_format.h"
#include "number_options.h"
#include "record_selection.h"
#include "record_view.h"
#include "text_table.h"

namespace slb {
namespace {

using Sparlane::Database;

struct CalcOptions {
  RecordRequest request;
  float length_mm = 1000.0f;
  unsigned int pierces = 1;
  Sparlane::MaterialPricing pricing{1.5f, 7850.0f, 0.8f};
  float machine_rate_per_hour = 60.0f;
  float consumable_set_price = 30.0f;
  bool inside = false;
  bool limit_lead_to_thickness = false;
  float corner_angle_deg = 90.0f;
  float hole_diameter_mm = 10.0f;
  Sparlane::QualityLevel quality = Sparlane::QualityLevel::Standard;
};

const char* QualityName(Sparlane::QualityLevel level) {
  switch (level) {
    case Sparlane::QualityLevel::Production: return "production";
    case Sparlane::QualityLevel::Standard: return "standard";
    case Sparlane::QualityLevel::Fine: return "fine";
    case Sparlane::QualityLevel::Precision: return "precision";
  }
  return "unknown";
}

// One figure of a calculator: a number in its unit, or a yes/no flag.
struct Figure {
  std::string name;
  double value;
  Unit unit;
  bool is_flag = false;
};

struct Section {
  std::string title;
  std::vector<Figure> figures;
};

Figure Num(const char* name, double value, Unit unit) { return {name, value, unit}; }
Figure Flag(const char* name, bool value) { return {name, value ? 1.0 : 0.0, Unit::kCount, true}; }

std::vector<Section> Calculate(const CalcOptions& o, const Sparlane::CuttingParameter& p) {
  const auto time = Database::EstimateCutTime(p, o.length_mm, o.pierces);
  const auto cost = Database::EstimateJobCost(p, o.length_mm, o.pierces, o.pricing,
                                              o.machine_rate_per_hour, o.consumable_set_price);
  const auto lead = Database::CalculateLeadInOut(p, o.limit_lead_to_thickness);
  const auto kerf = Database::CalculateKerfCompensation(p, o.inside);
  const auto corner = Database::CalculateCornerSlowdown(p, o.corner_angle_deg);
  const auto hole = Database::GetSmallHoleParams(p, o.hole_diameter_mm);
  const auto spacing = Database::CalculatePartSpacing(p);
  const auto common = Database::GetCommonLineRules(p);
  const auto haz = Database::CalculateHAZ(p);
  const auto bevel = Database::GetBevelLimits(p, std::string());
  const auto quality = Database::GetQualityProfile(p, o.quality);
  return {
      {"cut time",
       {Num("cut length", time.cut_length_mm, Unit::kMillimetre),
        Num("pierces", time.pierce_count, Unit::kCount),
        Num("cut time", time.cut_time_s, Unit::kSecond),
        Num("pierce time", time.pierce_time_total_s, Unit::kSecond),
        Num("total time", time.total_time_s, Unit::kSecond)}},
      {"job cost",
       {Num("material", cost.material_cost, Unit::kMoney),
        Num("consumables", cost.consumable_cost, Unit::kMoney),
        Num("machine", cost.machine_cost, Unit::kMoney),
        Num("overhead", cost.overhead_cost, Unit::kMoney),
        Num("total", cost.total_cost, Unit::kMoney),
        Num("per metre", cost.cost_per_meter, Unit::kMoney),
        Num("per pierce", cost.cost_per_pierce, Unit::kMoney)}},
      {"lead-in and lead-out",
       {Num("lead-in length", lead.lead_in_length_mm, Unit::kMillimetre),
        Num("lead-in angle", lead.lead_in_angle_deg, Unit::kDegree),
        Num("lead-in radius", lead.lead_in_radius_mm, Unit::kMillimetre),
        Flag("arc lead-in", lead.use_arc_lead_in),
        Num("lead-out length", lead.lead_out_length_mm, Unit::kMillimetre),
        Num("lead-out angle", lead.lead_out_angle_deg, Unit::kDegree),
        Num("lead-out radius", lead.lead_out_radius_mm, Unit::kMillimetre),
        Flag("lead-out", lead.use_lead_out)}},
      {o.inside ? "kerf offset (inside cut)" : "kerf offset (outside cut)",
       {Num("offset", kerf.offset_mm, Unit::kMillimetre),
        Num("kerf width", kerf.kerf_width_mm, Unit::kMillimetre)}},
      {"corner slowdown at " + ShopNumber(o.corner_angle_deg, Unit::kDegree) + " deg",
       {Num("speed factor", corner.speed_factor, Unit::kFactor),
        Num("deceleration distance", corner.decel_distance_mm, Unit::kMillimetre),
        Num("slow zone", corner.slow_zone_mm, Unit::kMillimetre),
        Num("acceleration distance", corner.accel_distance_mm, Unit::kMillimetre),
        Flag("sharp corner", corner.sharp_corner),
        Num("sharp corner extension", corner.sharp_corner_extension_mm, Unit::kMillimetre)}},
      {"small hole of " + ShopNumber(o.hole_diameter_mm, Unit::kMillimetre) + " mm",
       {Num("speed factor", hole.speed_factor, Unit::kFactor),
        Num("current factor", hole.current_factor, Unit::kFactor),
        Num("smallest diameter", hole.min_diameter_mm, Unit::kMillimetre),
        Flag("small hole", hole.small_hole), Flag("very small hole", hole.very_small_hole),
        Num("longest lead-in", hole.lead_in_max_mm, Unit::kMillimetre)}},
      {"part spacing",
       {Num("base gap", spacing.base_gap_mm, Unit::kMillimetre),
        Num("kerf width", spacing.kerf_width_mm, Unit::kMillimetre),
        Num("minimum spacing", spacing.min_spacing_mm, Unit::kMillimetre),
        Num("recommended spacing", spacing.recommended_spacing_mm, Unit::kMillimetre),
        Num("sheet edge margin", spacing.sheet_edge_margin_mm, Unit::kMillimetre)}},
      {"common-line cutting",
       {Flag("allowed", common.allowed),
        Num("thickest plate", common.max_thickness_mm, Unit::kMillimetre),
        Num("shortest segment", common.min_segment_length_mm, Unit::kMillimetre),
        Num("line spacing", common.line_spacing_mm, Unit::kMillimetre),
        Flag("tabs", common.requires_tabs),
        Num("tab width", common.tab_width_mm, Unit::kMillimetre)}},
      {"heat-affected zone",
       {Num("width", haz.haz_width_mm, Unit::kMillimetre),
        Num("inner zone", haz.inner_zone_mm, Unit::kMillimetre),
        Num("outer zone", haz.outer_zone_mm, Unit::kMillimetre),
        Flag("high heat input", haz.high_heat_input)}},
      {"bevel limits",
       {Num("largest angle", bevel.max_bevel_angle_deg, Unit::kDegree),
        Num("recommended angle", bevel.recommended_angle_deg, Unit::kDegree),
        Num("largest land height", bevel.max_land_height_mm, Unit::kMillimetre),
        Flag("supported", bevel.bevel_supported), Flag("thick plate", bevel.thick_plate),
        Flag("very thick plate", bevel.very_thick_plate),
        Num("angle speed coefficient", bevel.angle_speed_coefficient, Unit::kFactor)}},
      {std::string("quality profile (") + QualityName(quality.level) + ")",
       {Num("speed factor", quality.speed_factor, Unit::kFactor),
        Num("current factor", quality.current_factor, Unit::kFactor),
        Num("surface roughness", quality.surface_roughness_um, Unit::kMicrometre),
        Num("tolerance", quality.tolerance_mm, Unit::kMillimetre),
        Num("largest bevel", quality.max_bevel_deg, Unit::kDegree)}},
  };
}

std::string JsonKey(const std::string& name) {
  std::string key;
  for (char c : name) {
    if (c == ' ' || c == '-') {
      key += '_';
    } else if (c == '(' || c == ')') {
      continue;
    } else {
      key += c;
    }
  }
  while (!key.empty() && key.back() == '_') key.pop_back();
  return key;
}

int RunCalc(const CalcOptions& options) {
  Sparlane::Database db;
  if (!LoadDatabase(db, options.request.file)) return kExitFailure;
  const Catalogue catalogue(db);
  const auto selection = SelectRecord(db, catalogue, options.request);
  if (!selection.found) return Fail(selection.miss_reason);
  const auto sections = Calculate(options, selection.record);

  if (options.request.json) {
    Json json = {{"mode", ModeName(options.request.Mode())},
                 {"parameter", RecordJson(selection.record, catalogue)}};
    if (options.request.Mode() == SelectionMode::Interpolate) {
      json["confidence"] = JsonFloat(selection.confidence);
      json["extrapolated"] = selection.extrapolated;
    }
    for (const auto& section : sections) {
      Json& figures = json[JsonKey(section.title.substr(0, section.title.find(" (")))];
      figures = Json::object();
      for (const auto& f : section.figures) {
        figures[JsonKey(f.name)] =
            f.is_flag ? Json(f.value != 0.0) : JsonFloat(static_cast<float>(f.value));
      }
    }
    std::fputs(JsonText(json).c_str(), stdout);
    return kExitOk;
  }
  std::printf("record (%s):\n", ModeName(options.request.Mode()));
  std::fputs(SettingsTable(selection.record, catalogue).c_str(), stdout);
  if (options.request.Mode() == SelectionMode::Interpolate) {
    std::printf("confidence: %s\nextrapolated: %s\n",
                ShopNumber(selection.confidence, Unit::kConfidence).c_str(),
                selection.extrapolated ? "yes" : "no");
  }
  for (const auto& section : sections) {
    std::printf("%s:\n", section.title.c_str());
    TextTable table({}, std::string("lrl"));
    for (const auto& f : section.figures) {
      if (f.is_flag) {
        table.AddRow({f.name, f.value != 0.0 ? "yes" : "no", ""});
      } else {
        table.AddRow({f.name, ShopNumber(f.value, f.unit), UnitSymbol(f.unit)});
      }
    }
    std::fputs(table.Render().c_str(), stdout);
  }
  return kExitOk;
}

}  // namespace

void RegisterCalcCommand(CLI::App& app, int& status) {
  auto options = std::make_shared<CalcOptions>();
  auto* command = app.add_subcommand(
      "calc", "Process calculators (time, cost, lead-ins, kerf, corners, holes, spacing, "
              "common line, heat zone, bevel, quality) for a chosen record");
  AddRecordOptions(command, options->request);
  // Lengths, densities, prices and rates: finite and not negative.
  command->add_option("--length", options->length_mm, "Cut length in mm")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_option("--pierces", options->pierces, "Pierce count")->capture_default_str();
  command->add_option("--price-per-kg", options->pricing.price_per_kg, "Material price per kg")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_option("--density", options->pricing.density_kg_m3, "Material density in kg/m3")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_option("--utilization", options->pricing.material_utilization,
                      "Usable fraction of the sheet")
      ->capture_default_str()
      ->check(FiniteFraction());
  command->add_option("--machine-rate", options->machine_rate_per_hour, "Machine cost per hour")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_option("--consumable-price", options->consumable_set_price,
                      "Price of one consumable set")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_flag("--inside", options->inside, "Kerf offset for an inside cut");
  command->add_flag("--limit-lead", options->limit_lead_to_thickness,
                    "Limit lead lengths to the plate thickness");
  command->add_option("--corner-angle", options->corner_angle_deg, "Corner angle in degrees")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  command->add_option("--hole-diameter", options->hole_diameter_mm, "Hole diameter in mm")
      ->capture_default_str()
      ->check(FiniteNonNegative());
  const std::map<std::string, Sparlane::QualityLevel> levels{
      {"production", Sparlane::QualityLevel::Production},
      {"standard", Sparlane::QualityLevel::Standard},
      {"fine", Sparlane::QualityLevel::Fine},
      {"precision", Sparlane::QualityLevel::Precision}};
  command->add_option("--quality", options->quality, "production, standard, fine or precision")
      ->transform(CLI::CheckedTransformer(levels, CLI::ignore_case))
      ->default_str("standard");
  command->callback([options, &status] { status = RunCalc(*options); });
}

}  // namespace slb
