// Store costs that decide how a host can use it:
//  - rebuilding both record indexes over a million records, measured against
//    one plain pass over the same array (the floor any rebuild must pay);
//    the printed ratio should stay within 2;
//  - a million AddParameter appends, which must stay well under a second.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"
#include "store/index_builder.h"
#include "../tests/support/store_seam.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;

constexpr std::size_t kRecords = 1000000;
constexpr int kMaterials = 150;
constexpr int kMachines = 400;

// A million records sorted by material, machine and thickness, the order
// parameter files are written in.
const std::vector<CuttingParameter>& SortedTable() {
  static const std::vector<CuttingParameter> table = [] {
    std::vector<CuttingParameter> t;
    t.reserve(kRecords);
    // Every (material, machine) pair gets 16 or 17 thicknesses: a million
    // records covering all materials and machines.
    const std::size_t pairs = static_cast<std::size_t>(kMaterials) * kMachines;
    std::size_t pair = 0;
    for (int material = 1; material <= kMaterials; ++material) {
      for (int machine = 1; machine <= kMachines; ++machine, ++pair) {
        const std::size_t count = kRecords / pairs + (pair < kRecords % pairs ? 1 : 0);
        for (std::size_t k = 0; k < count; ++k) {
          CuttingParameter p{};
          p.vendor_id = static_cast<std::uint16_t>(1 + machine % 20);
          p.machine_model_id = static_cast<std::uint16_t>(machine);
          p.material_id = static_cast<std::uint16_t>(material);
          p.thickness_mm = 0.5f + 1.5f * static_cast<float>(k);
          p.cut_speed_mm_min = 6000.0f / (1.0f + static_cast<float>(k));
          p.current_amps = static_cast<std::uint16_t>(30 + 10 * (k % 20));
          t.push_back(p);
        }
      }
    }
    return t;
  }();
  return table;
}

// Every index of the table from its records, in one pass.
void BM_RebuildRecordIndexes(benchmark::State& state) {
  const std::vector<CuttingParameter>& table = SortedTable();
  Sparlane::RecordIndexes d;
  Sparlane::PairIndex positions;
  for (auto _ : state) {
    Sparlane::BuildIndexes(table, d, positions);
    benchmark::DoNotOptimize(d.material_ranges.size());
    benchmark::DoNotOptimize(d.machine_records.size());
  }
  if (d.material_ranges.size() != kMaterials || d.machine_records.size() != kMachines) {
    state.SkipWithError("index does not cover the table");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kRecords));
}

// Everything an update or delete rebuilds, including the query helpers that
// ride along with the record indexes.
void BM_RebuildAfterUpdate(benchmark::State& state) {
  Database db;
  DatabaseAccess::Records(db) = SortedTable();
  const Sparlane::RecordIndexes& d = DatabaseAccess::Body(db).record_indexes();
  for (auto _ : state) {
    DatabaseAccess::RebuildIndexes(db);
    benchmark::DoNotOptimize(d.material_ranges.size());
    benchmark::DoNotOptimize(d.machine_records.size());
  }
  if (d.material_ranges.size() != kMaterials || d.machine_records.size() != kMachines) {
    state.SkipWithError("index does not cover the table");
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kRecords));
}

void BM_PlainPassSummingThickness(benchmark::State& state) {
  const std::vector<CuttingParameter>& table = SortedTable();
  for (auto _ : state) {
    float sum = 0.0f;
    for (const CuttingParameter& p : table) sum += p.thickness_mm;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kRecords));
}

void BM_MillionAddParameter(benchmark::State& state) {
  const std::vector<CuttingParameter>& table = SortedTable();
  for (auto _ : state) {
    state.PauseTiming();
    std::optional<Database> db(std::in_place);
    db->Create();
    for (int i = 1; i <= kMachines; ++i) {
      db->AddMachine("vendor " + std::to_string(1 + i % 20), "model " + std::to_string(i), "");
    }
    for (int i = 1; i <= kMaterials; ++i) db->AddMaterial("material " + std::to_string(i));
    state.ResumeTiming();
    for (const CuttingParameter& p : table) {
      if (db->AddParameter(p) != Sparlane::ErrorCode::Success) {
        state.SkipWithError("AddParameter refused a record");
        break;
      }
    }
    benchmark::DoNotOptimize(db->GetStatistics().parameter_count);
    state.PauseTiming();  // freeing the table is not part of appending
    db.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kRecords));
}

BENCHMARK(BM_RebuildRecordIndexes)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RebuildAfterUpdate)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlainPassSummingThickness)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MillionAddParameter)->Unit(benchmark::kMillisecond)->Iterations(5);

// Remembers the mean real time of every run so main can print ratios.
class RecordingReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.iterations > 0) {
        const double n = static_cast<double>(run.iterations);
        real_[run.benchmark_name()] = run.real_accumulated_time / n;
        cpu_[run.benchmark_name()] = run.cpu_accumulated_time / n;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  // Mean seconds per iteration, wall clock or CPU; 0 when the run is absent.
  double Real(const std::string& name) const { return Find(real_, name); }
  double Cpu(const std::string& name) const { return Find(cpu_, name); }

 private:
  static double Find(const std::map<std::string, double>& m, const std::string& name) {
    auto it = m.find(name);
    return it == m.end() ? 0.0 : it->second;
  }
  std::map<std::string, double> real_;
  std::map<std::string, double> cpu_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RecordingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

  // CPU time is printed beside wall time: on a shared machine the wall
  // clock also counts time spent waiting for a core.
  const char* rebuild = "BM_RebuildRecordIndexes";
  const char* after_update = "BM_RebuildAfterUpdate";
  const char* pass = "BM_PlainPassSummingThickness";
  const char* appends = "BM_MillionAddParameter/iterations:5";
  std::printf("\n");
  auto ratio = [&](const char* title, const char* name) {
    if (reporter.Real(name) <= 0.0 || reporter.Real(pass) <= 0.0) return;
    std::printf("%s / plain pass over 1,000,000 records (target within 2x):\n"
                "  wall %.2fx (%.3f ms / %.3f ms), cpu %.2fx (%.3f ms / %.3f ms)\n",
                title, reporter.Real(name) / reporter.Real(pass), reporter.Real(name) * 1e3,
                reporter.Real(pass) * 1e3, reporter.Cpu(name) / reporter.Cpu(pass),
                reporter.Cpu(name) * 1e3, reporter.Cpu(pass) * 1e3);
  };
  ratio("material + machine index rebuild", rebuild);
  ratio("whole rebuild after an update", after_update);
  if (reporter.Real(appends) > 0.0) {
    std::printf("1,000,000 AddParameter appends (target well under 1 s):\n"
                "  wall %.3f ms = %.3f of a second, cpu %.3f ms = %.3f of a second\n",
                reporter.Real(appends) * 1e3, reporter.Real(appends), reporter.Cpu(appends) * 1e3,
                reporter.Cpu(appends));
  }
  return 0;
}
