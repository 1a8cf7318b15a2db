// Helpers of the export tests: databases built in memory, file reading, and
// a plain stream-insertion writer used as the reference for the exporters.
#ifndef SPARLANE_TESTS_EXPORT_EXPORT_FIXTURES_H_
#define SPARLANE_TESTS_EXPORT_EXPORT_FIXTURES_H_

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sparlane/sparlane.h"
#include "../support/store_seam.h"

namespace Sparlane {
namespace export_test {

inline std::string TempPath(const std::string& tail) {
  const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
  return ::testing::TempDir() + "export_" + info->test_suite_name() + "_" + info->name() + tail;
}

inline bool FileExists(const std::string& path) { return std::ifstream(path).good(); }

inline std::string ReadBytes(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Whether text streams here write LF as CR LF (Windows), found by trying.
inline bool TextStreamsWriteCrLf() {
  static const bool crlf = [] {
    const std::string probe = ::testing::TempDir() + "export_line_end_probe";
    { std::ofstream(probe) << '\n'; }
    const bool result = ReadBytes(probe) == "\r\n";
    std::remove(probe.c_str());
    return result;
  }();
  return crlf;
}

// The text the exporter wrote: where text streams turn LF into CR LF, that
// one step is undone (CR LF back to LF), so the same expectations hold on
// every platform.  The Windows tests check the CR LF bytes themselves.
inline std::string ReadFile(const std::string& path) {
  const std::string bytes = ReadBytes(path);
  if (!TextStreamsWriteCrLf()) return bytes;
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
    text += bytes[i];
  }
  return text;
}

inline CuttingParameter Record(std::uint16_t vendor, std::uint16_t machine,
                               std::uint16_t material, float thickness) {
  CuttingParameter p{};
  p.vendor_id = vendor;
  p.machine_model_id = machine;
  p.material_id = material;
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = 2540.5f;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f;
  p.transfer_height_mm = 0.0625f;
  p.arc_voltage_v = 120.0f;
  p.pierce_time_s = 0.1f;
  p.kerf_width_mm = 1234567.0f;
  p.current_amps = 65;
  p.flags = 0x90;
  return p;
}

// A created database holding exactly these names and records (no checks).
inline void Fill(Database& db, std::vector<std::string> vendors,
                 std::vector<std::string> machines, std::vector<std::string> materials,
                 std::vector<CuttingParameter> records) {
  db.Create();
  DatabaseAccess::SetNames(db, NameKind::kVendor, std::move(vendors));
  DatabaseAccess::SetNames(db, NameKind::kMachine, std::move(machines));
  DatabaseAccess::SetNames(db, NameKind::kMaterial, std::move(materials));
  DatabaseAccess::Records(db) = std::move(records);
}

// What the exports write from, read through the public interface.
struct ExportedTables {
  std::vector<std::string> vendors;
  std::vector<std::string> machines;
  std::vector<std::string> materials;
  std::vector<CuttingParameter> parameters;

  static ExportedTables Of(const Database& db) {
    return {db.GetVendors(), db.GetMachines(), db.GetMaterials(), db.GetParameters()};
  }
};

// The exports written the plain way: every piece inserted into a text
// stream one after another.  The fast writers must match it byte for byte.
struct ReferenceExport {
  static std::string Name(const std::vector<std::string>& table, std::uint16_t id) {
    return id != 0 && id <= table.size() ? table[id - 1u] : std::string();
  }
  static std::string Csv(const std::string& s) {
    if (s.find(',') == std::string::npos && s.find('"') == std::string::npos) return s;
    std::string r = "\"";
    for (char c : s) {
      if (c == '"') r += "\"\"";
      else r += c;
    }
    return r + "\"";
  }
  static std::string Json(const std::string& s) {
    std::string r;
    r.reserve(s.size() + 2);
    for (char c : s) {
      switch (c) {
        case '\b': r += "\\b"; break;
        case '\t': r += "\\t"; break;
        case '\n': r += "\\n"; break;
        case '\f': r += "\\f"; break;
        case '\r': r += "\\r"; break;
        case '"': r += "\\\""; break;
        case '\\': r += "\\\\"; break;
        default: r += c;
      }
    }
    return r;
  }

  // Returns the code the export should give and writes the file.
  static ErrorCode WriteCsv(const Database& database, const std::string& path) {
    const ExportedTables db = ExportedTables::Of(database);
    std::ofstream f(path);
    if (!f.is_open()) return ErrorCode::IoError;
    f << "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,";
    f << "cut_height_mm,pierce_height_mm,transfer_height_mm,arc_voltage_v,";
    f << "pierce_time_s,kerf_width_mm,current_amps,flags\n";
    for (const CuttingParameter& p : db.parameters) {
      f << Csv(Name(db.vendors, p.vendor_id)) << ",";
      f << Csv(Name(db.machines, p.machine_model_id)) << ",";
      f << Csv(Name(db.materials, p.material_id)) << ",";
      f << p.thickness_mm << "," << p.cut_speed_mm_min << "," << p.cut_height_mm << ","
        << p.pierce_height_mm << "," << p.transfer_height_mm << "," << p.arc_voltage_v << ","
        << p.pierce_time_s << "," << p.kerf_width_mm << "," << p.current_amps << ","
        << p.flags << "\n";
    }
    if (!f.good()) return ErrorCode::IoError;
    f.close();
    return ErrorCode::Success;
  }

  static void List(std::ofstream& f, const char* open, const std::vector<std::string>& names) {
    f << open;
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (i > 0) f << ", ";
      f << "\"" << Json(names[i]) << "\"";
    }
    f << "],\n";
  }

  static ErrorCode WriteJson(const Database& database, const std::string& path) {
    const ExportedTables db = ExportedTables::Of(database);
    std::ofstream f(path);
    if (!f.is_open()) return ErrorCode::IoError;
    f << "{\n";
    f << "  \"version\": \"" << 1 << "." << 0 << "\",\n";
    List(f, "  \"vendors\": [", db.vendors);
    List(f, "  \"machines\": [", db.machines);
    List(f, "  \"materials\": [", db.materials);
    f << "  \"parameters\": [\n";
    for (std::size_t i = 0; i < db.parameters.size(); ++i) {
      const CuttingParameter& p = db.parameters[i];
      f << "    {\n";
      f << "      \"vendor\": \"" << Json(Name(db.vendors, p.vendor_id)) << "\",\n";
      f << "      \"machine\": \"" << Json(Name(db.machines, p.machine_model_id)) << "\",\n";
      f << "      \"material\": \"" << Json(Name(db.materials, p.material_id)) << "\",\n";
      f << "      \"thickness_mm\": " << p.thickness_mm << ",\n";
      f << "      \"cut_speed_mm_min\": " << p.cut_speed_mm_min << ",\n";
      f << "      \"cut_height_mm\": " << p.cut_height_mm << ",\n";
      f << "      \"pierce_height_mm\": " << p.pierce_height_mm << ",\n";
      f << "      \"transfer_height_mm\": " << p.transfer_height_mm << ",\n";
      f << "      \"arc_voltage_v\": " << p.arc_voltage_v << ",\n";
      f << "      \"pierce_time_s\": " << p.pierce_time_s << ",\n";
      f << "      \"kerf_width_mm\": " << p.kerf_width_mm << ",\n";
      f << "      \"current_amps\": " << p.current_amps << ",\n";
      f << "      \"flags\": " << p.flags << "\n";
      f << "    }";
      if (i + 1 < db.parameters.size()) f << ",";
      f << "\n";
    }
    f << "  ]\n";
    f << "}\n";
    if (!f.good()) return ErrorCode::IoError;
    f.close();
    return ErrorCode::Success;
  }
};

}  // namespace export_test
}  // namespace Sparlane

#endif  // SPARLANE_TESTS_EXPORT_EXPORT_FIXTURES_H_
