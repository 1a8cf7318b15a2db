// Cost per call of each process calculator, and its ratio to the cost of
// just reading the record the calculators get.  The calculators should be
// a few ns: no allocation, no locale work, no hidden state.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "sparlane/sparlane.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;

constexpr std::size_t kRecordCount = 64;  // a power of two; index by mask

// Records spread over every branch of every calculator, so the measurement
// includes mispredictions a real caller would see.
const std::vector<CuttingParameter>& Records() {
  static const std::vector<CuttingParameter> records = [] {
    std::vector<CuttingParameter> out(kRecordCount);
    for (std::size_t i = 0; i < kRecordCount; ++i) {
      CuttingParameter& p = out[i];
      p = CuttingParameter{};
      p.vendor_id = p.machine_model_id = p.material_id = 1;
      p.thickness_mm = 0.5f + static_cast<float>((i * 37) % 64) * 0.75f;
      p.cut_speed_mm_min = 400.0f + static_cast<float>((i * 13) % 64) * 120.0f;
      p.kerf_width_mm = 0.8f + static_cast<float>(i % 8) * 0.3f;
      p.pierce_time_s = 0.1f + static_cast<float>(i % 5) * 0.3f;
      p.current_amps = static_cast<std::uint16_t>(30 + (i * 11) % 260);
    }
    return out;
  }();
  return records;
}

const CuttingParameter& Pick(std::size_t i) { return Records()[i & (kRecordCount - 1)]; }
float Spread(std::size_t i, float step) { return static_cast<float>(i & 63) * step; }

void BM_Baseline_ReadRecord(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    const CuttingParameter& p = Pick(i++);
    float t = p.thickness_mm;
    float k = p.kerf_width_mm;
    benchmark::DoNotOptimize(t);
    benchmark::DoNotOptimize(k);
  }
}

void BM_EstimateCutTime(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::EstimateCutTime(Pick(i), 100.0f + Spread(i, 50.0f), static_cast<unsigned>(i & 7));
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_EstimateJobCost(benchmark::State& state) {
  Sparlane::MaterialPricing pricing{1.2f, 7850.0f, 0.75f};
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::EstimateJobCost(Pick(i), 100.0f + Spread(i, 50.0f),
                                       static_cast<unsigned>(i & 7), pricing, 85.0f, 45.0f);
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_EstimateConsumableLife(benchmark::State& state) {
  Sparlane::ConsumableUsage usage{0, 0, 0.0f, 1.0f, 0.2f, 0.1f, 0.3f};
  std::size_t i = 0;
  for (auto _ : state) {
    usage.starts = static_cast<std::uint32_t>((i * 7) & 1023);
    usage.arc_hours = Spread(i, 0.1f);
    auto r = Database::EstimateConsumableLife(usage, static_cast<unsigned short>(20 + (i & 255)));
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_GetConsumableSet(benchmark::State& state) {
  Database db;
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = db.GetConsumableSet(static_cast<unsigned short>(i++));
    benchmark::DoNotOptimize(r);
  }
}

void BM_CalculateKerfCompensation(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::CalculateKerfCompensation(Pick(i), (i & 1) != 0);
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_CalculateLeadInOut(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::CalculateLeadInOut(Pick(i), (i & 2) != 0);
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_CalculateCornerSlowdown(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::CalculateCornerSlowdown(Pick(i), Spread(i * 5, 3.3f) - 10.0f);
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_GetSmallHoleParams(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::GetSmallHoleParams(Pick(i), Spread(i * 3, 1.1f));
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_CalculatePartSpacing(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::CalculatePartSpacing(Pick(i++));
    benchmark::DoNotOptimize(r);
  }
}

void BM_GetCommonLineRules(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::GetCommonLineRules(Pick(i++));
    benchmark::DoNotOptimize(r);
  }
}

void BM_GetQualityProfile(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::GetQualityProfile(Pick(i), static_cast<Sparlane::QualityLevel>(i % 5));
    benchmark::DoNotOptimize(r);
    ++i;
  }
}

void BM_CalculateHAZ(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::CalculateHAZ(Pick(i++));
    benchmark::DoNotOptimize(r);
  }
}

void BM_GetBevelLimits(benchmark::State& state) {
  const std::string name = "Mild Steel";
  std::size_t i = 0;
  for (auto _ : state) {
    auto r = Database::GetBevelLimits(Pick(i++), name);
    benchmark::DoNotOptimize(r);
  }
}

BENCHMARK(BM_Baseline_ReadRecord);
BENCHMARK(BM_EstimateCutTime);
BENCHMARK(BM_EstimateJobCost);
BENCHMARK(BM_EstimateConsumableLife);
BENCHMARK(BM_GetConsumableSet);
BENCHMARK(BM_CalculateKerfCompensation);
BENCHMARK(BM_CalculateLeadInOut);
BENCHMARK(BM_CalculateCornerSlowdown);
BENCHMARK(BM_GetSmallHoleParams);
BENCHMARK(BM_CalculatePartSpacing);
BENCHMARK(BM_GetCommonLineRules);
BENCHMARK(BM_GetQualityProfile);
BENCHMARK(BM_CalculateHAZ);
BENCHMARK(BM_GetBevelLimits);

// Keeps the per-call times so the summary can print ratios.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Iteration && run.iterations > 0) {
        times_.emplace_back(run.benchmark_name(), run.GetAdjustedCPUTime());
      }
    }
  }
  const std::vector<std::pair<std::string, double>>& times() const { return times_; }

 private:
  std::vector<std::pair<std::string, double>> times_;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();

  double baseline = 0.0;
  for (const auto& entry : reporter.times()) {
    if (entry.first.find("Baseline") != std::string::npos) baseline = entry.second;
  }
  std::printf("\n%-32s %12s %22s\n", "calculator", "ns/call", "ratio to record read");
  for (const auto& entry : reporter.times()) {
    const double ratio = baseline > 0.0 ? entry.second / baseline : 0.0;
    std::printf("%-32s %12.2f %22.2f\n", entry.first.c_str(), entry.second, ratio);
  }
  return 0;
}
