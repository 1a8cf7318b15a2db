#include "record_view.h"

#include <cstdio>

#include "number_format.h"
#include "text_table.h"

namespace slb {
namespace {

std::string Hex(std::uint32_t value) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%x", static_cast<unsigned>(value));
  return text;
}

std::string FlagNotes(std::uint32_t flags) {
  std::string notes;
  auto note = [&](std::uint32_t bit, const char* name) {
    if (!(flags & bit)) return;
    notes += notes.empty() ? "" : ", ";
    notes += name;
  };
  note(Sparlane::kFlagDerived, "derived");
  note(Sparlane::kFlagSpeedCapped, "speed capped");
  note(Sparlane::kFlagAngleAdjusted, "angle adjusted");
  return notes.empty() ? notes : "(" + notes + ")";
}

}  // namespace

std::string SettingsTable(const Sparlane::CuttingParameter& p, const Catalogue& catalogue) {
  TextTable names({}, 2);
  names.AddRow({"vendor", catalogue.Vendor(p.vendor_id)});
  names.AddRow({"machine model", catalogue.Machine(p.machine_model_id)});
  names.AddRow({"material", catalogue.Material(p.material_id)});
  TextTable table({}, std::string("lrl"));
  auto row = [&](const char* name, double value, const char* unit) {
    table.AddRow({name, FormatNumber(value), unit});
  };
  row("thickness", p.thickness_mm, "mm");
  row("cut speed", p.cut_speed_mm_min, "mm/min");
  row("cut height", p.cut_height_mm, "mm");
  row("pierce height", p.pierce_height_mm, "mm");
  row("transfer height", p.transfer_height_mm, "mm");
  row("arc voltage", p.arc_voltage_v, "V");
  row("pierce time", p.pierce_time_s, "s");
  row("kerf width", p.kerf_width_mm, "mm");
  row("current", p.current_amps, "A");
  table.AddRow({"flags", Hex(p.flags), FlagNotes(p.flags)});
  return names.Render() + table.Render();
}

std::string RecordRows(const std::vector<Sparlane::CuttingParameter>& records,
                       const std::vector<std::string>& labels, const Catalogue& catalogue) {
  TextTable table({"", "machine", "thickness mm", "speed mm/min", "cut h mm", "pierce h mm",
                   "transfer h mm", "voltage V", "pierce s", "kerf mm", "current A"},
                  2);
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto& p = records[i];
    table.AddRow({i < labels.size() ? labels[i] : "", catalogue.Machine(p.machine_model_id),
                  FormatNumber(p.thickness_mm), FormatNumber(p.cut_speed_mm_min),
                  FormatNumber(p.cut_height_mm), FormatNumber(p.pierce_height_mm),
                  FormatNumber(p.transfer_height_mm), FormatNumber(p.arc_voltage_v),
                  FormatNumber(p.pierce_time_s), FormatNumber(p.kerf_width_mm),
                  std::to_string(p.current_amps)});
  }
  return table.Render();
}

std::string RecordTitle(const Sparlane::CuttingParameter& p, const Catalogue& catalogue) {
  return catalogue.Material(p.material_id) + " " + FormatNumber(p.thickness_mm) + " mm on " +
         catalogue.Machine(p.machine_model_id) + " (" + catalogue.Vendor(p.vendor_id) + ")";
}

void WriteRecordJson(JsonWriter& json, const Sparlane::CuttingParameter& p,
                     const Catalogue& catalogue) {
  json.BeginObject();
  json.Key("vendor").String(catalogue.Vendor(p.vendor_id));
  json.Key("machine").String(catalogue.Machine(p.machine_model_id));
  json.Key("material").String(catalogue.Material(p.material_id));
  json.Key("thickness_mm").Float(p.thickness_mm);
  json.Key("cut_speed_mm_min").Float(p.cut_speed_mm_min);
  json.Key("cut_height_mm").Float(p.cut_height_mm);
  json.Key("pierce_height_mm").Float(p.pierce_height_mm);
  json.Key("transfer_height_mm").Float(p.transfer_height_mm);
  json.Key("arc_voltage_v").Float(p.arc_voltage_v);
  json.Key("pierce_time_s").Float(p.pierce_time_s);
  json.Key("kerf_width_mm").Float(p.kerf_width_mm);
  json.Key("current_amps").Integer(p.current_amps);
  json.Key("flags").Integer(p.flags);
  json.EndObject();
}

}  // namespace slb
