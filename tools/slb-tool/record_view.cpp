#include "record_view.h"

#include <cstdio>

#include "number_format.h"
#include "record_fields.h"
#include "text_table.h"

namespace slb {
namespace {

using Sparlane::CuttingParameter;

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

std::string SettingsTable(const CuttingParameter& p, const Catalogue& catalogue) {
  TextTable names({}, 2);
  names.AddRow({"vendor", catalogue.Vendor(p.vendor_id)});
  names.AddRow({"machine model", catalogue.Machine(p.machine_model_id)});
  names.AddRow({"material", catalogue.Material(p.material_id)});
  TextTable table({}, std::string("lrl"));
  for (const auto& f : kRecordFloatFields) {
    table.AddRow({f.label, ShopNumber(p.*f.member, f.unit), UnitSymbol(f.unit)});
  }
  table.AddRow({"current", std::to_string(p.current_amps), UnitSymbol(Unit::kAmpere)});
  table.AddRow({"flags", Hex(p.flags), FlagNotes(p.flags)});
  return names.Render() + table.Render();
}

std::string RecordRows(const std::vector<CuttingParameter>& records,
                       const std::vector<std::string>& labels, const Catalogue& catalogue) {
  std::vector<std::string> heading = {"", "machine"};
  for (const auto& f : kRecordFloatFields) {
    heading.push_back(f.column + std::string(" ") + UnitSymbol(f.unit));
  }
  heading.push_back("current A");
  TextTable table(heading, 2);
  for (std::size_t i = 0; i < records.size(); ++i) {
    const auto& p = records[i];
    std::vector<std::string> row = {i < labels.size() ? labels[i] : "",
                                    catalogue.Machine(p.machine_model_id)};
    for (const auto& f : kRecordFloatFields) row.push_back(ShopNumber(p.*f.member, f.unit));
    row.push_back(std::to_string(p.current_amps));
    table.AddRow(row);
  }
  return table.Render();
}

std::string RecordTitle(const CuttingParameter& p, const Catalogue& catalogue) {
  return catalogue.Material(p.material_id) + " " + ExactFloat(p.thickness_mm) + " mm on " +
         catalogue.Machine(p.machine_model_id) + " (" + catalogue.Vendor(p.vendor_id) + ")";
}

Json RecordJson(const CuttingParameter& p, const Catalogue& catalogue) {
  Json json = {{"vendor", catalogue.Vendor(p.vendor_id)},
               {"machine", catalogue.Machine(p.machine_model_id)},
               {"material", catalogue.Material(p.material_id)}};
  for (const auto& f : kRecordFloatFields) json[f.name] = JsonFloat(p.*f.member);
  json["current_amps"] = p.current_amps;
  json["flags"] = p.flags;
  return json;
}

}  // namespace slb
