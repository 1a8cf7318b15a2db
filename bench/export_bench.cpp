// Export cost over 1,000,000 records: ExportToCSV and ExportToJSON, each
// measured against writing a file of the same size in one write (the floor
// any exporter pays), and against plain operator<< insertion of every piece.
// Prints the ratios.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"
#include "../tests/support/store_seam.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::ErrorCode;

constexpr std::size_t kRecords = 1000000;

std::string OutputPath(const char* tail) {
  const char* dir = std::getenv("TMPDIR");
  return std::string(dir ? dir : "/tmp") + "/sparlane_export_bench" + tail;
}

// Realistic cut-chart values: a few hundred names, thicknesses in tenths,
// speeds and heights with one or two decimals.
Database& Filled() {
  static Database db = [] {
    Database d;
    d.Create();
    std::vector<std::string> names;
    for (int i = 1; i <= 20; ++i) names.push_back("Vendor " + std::to_string(i));
    DatabaseAccess::SetNames(d, Sparlane::NameKind::kVendor, names);
    names.clear();
    for (int i = 1; i <= 400; ++i) names.push_back("Air plasma " + std::to_string(i));
    DatabaseAccess::SetNames(d, Sparlane::NameKind::kMachine, names);
    names.clear();
    for (int i = 1; i <= 150; ++i) names.push_back("Steel, grade " + std::to_string(i));
    DatabaseAccess::SetNames(d, Sparlane::NameKind::kMaterial, names);
    std::vector<CuttingParameter>& table = DatabaseAccess::Records(d);
    table.resize(kRecords);
    for (std::size_t i = 0; i < kRecords; ++i) {
      CuttingParameter& p = table[i];
      p.vendor_id = static_cast<std::uint16_t>(1 + i % 20);
      p.machine_model_id = static_cast<std::uint16_t>(1 + i % 400);
      p.material_id = static_cast<std::uint16_t>(1 + i % 150);
      p.thickness_mm = 0.5f + static_cast<float>(i % 500) / 10.0f;
      p.cut_speed_mm_min = 8000.0f / (1.0f + static_cast<float>(i % 97) / 7.0f);
      p.cut_height_mm = 1.5f;
      p.pierce_height_mm = 3.8f;
      p.transfer_height_mm = 3.2f;
      p.arc_voltage_v = 110.0f + static_cast<float>(i % 50) / 2.0f;
      p.pierce_time_s = 0.1f * static_cast<float>(i % 12);
      p.kerf_width_mm = 1.2f + static_cast<float>(i % 30) / 100.0f;
      p.current_amps = static_cast<std::uint16_t>(30 + i % 100);
      p.flags = static_cast<std::uint32_t>(i % 3);
    }
    return d;
  }();
  return db;
}

std::size_t FileSize(const std::string& path) {
  std::ifstream in(path, std::ios::binary | std::ios::ate);
  return static_cast<std::size_t>(in.tellg());
}

template <ErrorCode (Database::*Export)(const std::string&)>
void BM_Export(benchmark::State& state, const char* tail) {
  Database& db = Filled();
  const std::string path = OutputPath(tail);
  for (auto _ : state) {
    if ((db.*Export)(path) != ErrorCode::Success) state.SkipWithError("export failed");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * FileSize(path)));
}

// The floor: the same number of bytes, already in memory, in one write.
void BM_OneWrite(benchmark::State& state, const char* tail) {
  const std::string source = OutputPath(tail);
  const std::size_t size = FileSize(source);
  const std::string bytes(size, 'x');
  const std::string path = OutputPath(".onewrite");
  for (auto _ : state) {
    std::ofstream out(path);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out.good()) state.SkipWithError("write failed");
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * size));
  std::remove(path.c_str());
}

// The straightforward exporter: every field inserted with operator<<.
void BM_PlainStreamCsv(benchmark::State& state) {
  const Database& db = Filled();
  const std::vector<std::string> vendors = db.GetVendors();
  const std::vector<std::string> machines = db.GetMachines();
  const std::vector<std::string> materials = db.GetMaterials();
  const std::vector<CuttingParameter> records = db.GetParameters();
  const std::string path = OutputPath(".plain.csv");
  auto name = [](const std::vector<std::string>& t, std::uint16_t id) -> const std::string& {
    static const std::string empty;
    return id != 0 && id <= t.size() ? t[id - 1u] : empty;
  };
  for (auto _ : state) {
    std::ofstream f(path);
    f << "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,"
         "cut_height_mm,pierce_height_mm,transfer_height_mm,arc_voltage_v,"
         "pierce_time_s,kerf_width_mm,current_amps,flags\n";
    for (const CuttingParameter& p : records) {
      // Names here never need quoting except the materials, quoted as written.
      f << name(vendors, p.vendor_id) << "," << name(machines, p.machine_model_id)
        << ",\"" << name(materials, p.material_id) << "\"," << p.thickness_mm << ","
        << p.cut_speed_mm_min << "," << p.cut_height_mm << "," << p.pierce_height_mm << ","
        << p.transfer_height_mm << "," << p.arc_voltage_v << "," << p.pierce_time_s << ","
        << p.kerf_width_mm << "," << p.current_amps << "," << p.flags << "\n";
    }
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * FileSize(path)));
  std::remove(path.c_str());
}

void BM_ExportCsv(benchmark::State& state) { BM_Export<&Database::ExportToCSV>(state, ".csv"); }
void BM_ExportJson(benchmark::State& state) {
  BM_Export<&Database::ExportToJSON>(state, ".json");
}
void BM_OneWriteCsvSize(benchmark::State& state) { BM_OneWrite(state, ".csv"); }
void BM_OneWriteJsonSize(benchmark::State& state) { BM_OneWrite(state, ".json"); }

// Exports first: the one-write runs take their sizes from the exported files.
BENCHMARK(BM_ExportCsv)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_OneWriteCsvSize)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_PlainStreamCsv)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_ExportJson)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_OneWriteJsonSize)->Unit(benchmark::kMillisecond)->Iterations(3);

class RecordingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.iterations > 0) {
        seconds_[run.run_name.function_name] =
            run.real_accumulated_time / static_cast<double>(run.iterations);
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  double Seconds(const std::string& name) const {
    auto it = seconds_.find(name);
    return it == seconds_.end() ? 0.0 : it->second;
  }

 private:
  std::map<std::string, double> seconds_;
};

void PrintRatio(const char* what, double numerator, double denominator) {
  if (numerator > 0.0 && denominator > 0.0) {
    std::printf("%s: %.2fx (%.1f ms / %.1f ms)\n", what, numerator / denominator,
                numerator * 1e3, denominator * 1e3);
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RecordingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

  std::printf("\n1,000,000 records:\n");
  PrintRatio("ExportToCSV / one write of the same size", reporter.Seconds("BM_ExportCsv"),
             reporter.Seconds("BM_OneWriteCsvSize"));
  PrintRatio("ExportToJSON / one write of the same size", reporter.Seconds("BM_ExportJson"),
             reporter.Seconds("BM_OneWriteJsonSize"));
  PrintRatio("plain operator<< CSV / ExportToCSV", reporter.Seconds("BM_PlainStreamCsv"),
             reporter.Seconds("BM_ExportCsv"));
  std::remove(OutputPath(".csv").c_str());
  std::remove(OutputPath(".json").c_str());
  return 0;
}
