#include "csv_import.h"

#include <fstream>
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

// Fills values from the fields; returns "" or the reason it failed.
std::string ParseValues(const std::vector<std::string>& fields, Sparlane::CuttingParameter& p) {
  if (fields.size() != kColumns) {
    return "expected 13 fields, found " + std::to_string(fields.size());
  }
  float* const floats[] = {&p.thickness_mm,       &p.cut_speed_mm_min, &p.cut_height_mm,
                           &p.pierce_height_mm,   &p.transfer_height_mm, &p.arc_voltage_v,
                           &p.pierce_time_s,      &p.kerf_width_mm};
  for (std::size_t i = 0; i < 8; ++i) {
    NumberProblem problem;
    const auto value = ParseFloat(fields[3 + i], &problem);
    if (!value) {
      return std::string(kColumnNames[3 + i]) + " " + NumberProblemText(problem) + ": \"" +
             Printable(fields[3 + i]) + "\"";
    }
    *floats[i] = *value;
  }
  const auto amps = ParseUnsigned(fields[11], std::numeric_limits<std::uint16_t>::max());
  if (!amps) {
    return "current_amps is not a whole number from 0 to 65535: \"" + Printable(fields[11]) + "\"";
  }
  p.current_amps = static_cast<std::uint16_t>(*amps);
  const auto flags = ParseUnsigned(fields[12], std::numeric_limits<std::uint32_t>::max());
  if (!flags) {
    return "flags is not a whole number from 0 to 4294967295: \"" + Printable(fields[12]) + "\"";
  }
  p.flags = static_cast<std::uint32_t>(*flags);
  return std::string();
}

}  // namespace

bool ReadParameterCsv(const std::string& path, ImportTable& table, ProblemList& refused,
                      std::string& fatal) {
  const std::string& source = table.source();
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    fatal = source + ": cannot read the file";
    return false;
  }
  CsvReader reader(in);
  std::vector<std::string> fields;
  bool header_seen = false;
  while (reader.Next(fields)) {
    if (!header_seen) {
      header_seen = true;
      if (!IsHeader(fields)) {
        fatal = table.Refuse(reader.line(), "expected the header line \"" +
                                                std::string(kParameterCsvHeader) + "\"");
        return false;
      }
      continue;
    }
    if (fields.size() == 1 && fields[0].empty()) continue;  // blank line
    if (table.full()) {
      fatal = table.Refuse(reader.line(), "more than " + std::to_string(ImportTable::kMaxRecords) +
                                              " records; a parameter file holds no more");
      return false;
    }
    Sparlane::CuttingParameter values{};
    std::string problem = ParseValues(fields, values);
    problem = problem.empty() ? table.Add(reader.line(), fields[0], fields[1], fields[2], values)
                              : table.Refuse(reader.line(), problem);
    if (!problem.empty()) refused.Add(std::move(problem));
  }
  if (!reader.error().empty()) {
    fatal = table.Refuse(reader.line(), reader.error());
    return false;
  }
  if (reader.read_failed()) {
    fatal = source + ": reading the file failed";
    return false;
  }
  if (!header_seen) {
    fatal = table.Refuse(1, "the file is empty; expected the header line \"" +
                                std::string(kParameterCsvHeader) + "\"");
    return false;
  }
  return true;
}

}  // namespace slb
