#include "csv_import.h"

#include <limits>

#include "csv_reader.h"
#include "text_fields.h"

namespace slb {

const char* const kParameterCsvHeader =
    "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
    "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
    "current_amps,flags";

namespace {

constexpr std::size_t kColumns = 13;
const char* const kColumnNames[kColumns] = {
    "vendor",         "machine_model",      "material",      "thickness_mm",
    "cut_speed_mm_min", "cut_height_mm",    "pierce_height_mm", "transfer_height_mm",
    "arc_voltage_v",  "pierce_time_s",      "kerf_width_mm", "current_amps",
    "flags"};

bool IsHeader(const std::vector<std::string>& fields) {
  if (fields.size() != kColumns) return false;
  for (std::size_t i = 0; i < kColumns; ++i) {
    if (Trim(fields[i]) != kColumnNames[i]) return false;
  }
  return true;
}

// Fills row from the fields; returns an empty string or the reason it failed.
std::string ParseRecord(const std::vector<std::string>& fields, ImportRow& row) {
  if (fields.size() != kColumns) {
    return "expected 13 fields, found " + std::to_string(fields.size());
  }
  row.vendor = fields[0];
  row.machine = fields[1];
  row.material = fields[2];
  float* const floats[] = {&row.values.thickness_mm,       &row.values.cut_speed_mm_min,
                           &row.values.cut_height_mm,      &row.values.pierce_height_mm,
                           &row.values.transfer_height_mm, &row.values.arc_voltage_v,
                           &row.values.pierce_time_s,      &row.values.kerf_width_mm};
  for (std::size_t i = 0; i < 8; ++i) {
    const auto value = ParseFloat(fields[3 + i]);
    if (!value) return std::string(kColumnNames[3 + i]) + " is not a number: \"" + fields[3 + i] + "\"";
    *floats[i] = *value;
  }
  const auto amps = ParseUnsigned(fields[11], std::numeric_limits<std::uint16_t>::max());
  if (!amps) return "current_amps is not a whole number from 0 to 65535: \"" + fields[11] + "\"";
  row.values.current_amps = static_cast<std::uint16_t>(*amps);
  const auto flags = ParseUnsigned(fields[12], std::numeric_limits<std::uint32_t>::max());
  if (!flags) return "flags is not a whole number from 0 to 4294967295: \"" + fields[12] + "\"";
  row.values.flags = static_cast<std::uint32_t>(*flags);
  return std::string();
}

}  // namespace

bool ReadParameterCsv(const std::string& path, std::vector<ImportRow>& rows,
                      std::vector<std::string>& errors) {
  std::string text;
  if (!ReadFile(path, text)) {
    errors.push_back(path + ": cannot read the file");
    return false;
  }
  const std::size_t errors_before = errors.size();
  CsvReader reader(std::move(text));
  std::vector<std::string> fields;
  bool header_seen = false;
  while (reader.Next(fields)) {
    const std::string where = path + ":" + std::to_string(reader.line());
    if (!header_seen) {
      header_seen = true;
      if (!IsHeader(fields)) {
        errors.push_back(where + ": expected the header line \"" + kParameterCsvHeader + "\"");
        return false;
      }
      continue;
    }
    if (fields.size() == 1 && fields[0].empty()) continue;  // blank line
    ImportRow row;
    row.source = path;
    row.line = reader.line();
    const std::string problem = ParseRecord(fields, row);
    if (problem.empty()) {
      rows.push_back(std::move(row));
    } else {
      errors.push_back(where + ": " + problem);
    }
  }
  if (!reader.error().empty()) {
    errors.push_back(path + ":" + std::to_string(reader.line()) + ": " + reader.error());
  } else if (!header_seen) {
    errors.push_back(path + ":1: the file is empty; expected the header line \"" +
                     std::string(kParameterCsvHeader) + "\"");
  }
  return errors.size() == errors_before;
}

}  // namespace slb
