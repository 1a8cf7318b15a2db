// The C interface's cost per call against the C++ call it wraps, for
// FindExact and Interpolate: the same parameter file loaded by both, the
// same questions, names handed over as each host holds them (std::string for
// C++, NUL-terminated text for C).
//
// Table: 15 materials x 40 machine models x 16 thicknesses (9,600 records)
// in file order; 64 questions asked round-robin.  Names are short, as real
// ones are ("Material 07", "MODEL-031"), so neither side allocates for them.
//
// Printed at the end: C time / C++ time per call (the C layer's overhead).
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "collecting_reporter.h"
#include "sparlane/c.h"
#include "sparlane/sparlane.h"

namespace {

constexpr int kMaterials = 15;
constexpr int kMachines = 40;
constexpr int kThicknesses = 16;
constexpr std::size_t kQuestions = 64;

std::string MaterialName(int i) {
  char name[32];
  std::snprintf(name, sizeof name, "Material %02d", i);
  return name;
}

std::string MachineName(int i) {
  char name[32];
  std::snprintf(name, sizeof name, "MODEL-%03d", i);
  return name;
}

float ListedThickness(int k) { return 0.5f + 1.5f * static_cast<float>(k); }

struct Question {
  std::string material;
  std::string machine;
  float listed;   // a thickness the pair lists
  float between;  // halfway to the next one
};

// The same parameter file loaded by both sides.
struct Fixture {
  Sparlane::Database cpp;
  sparlane_db_t* c = nullptr;
  std::vector<Question> questions;

  Fixture() {
    Sparlane::Database db;
    db.Create();
    for (int m = 1; m <= kMachines; ++m) {
      db.AddMachine("Vendor " + std::to_string(1 + m % 5), MachineName(m), "");
    }
    for (int i = 1; i <= kMaterials; ++i) db.AddMaterial(MaterialName(i));
    for (int material = 1; material <= kMaterials; ++material) {
      for (int machine = 1; machine <= kMachines; ++machine) {
        for (int k = 0; k < kThicknesses; ++k) {
          Sparlane::CuttingParameter p{};
          p.vendor_id = static_cast<std::uint16_t>(1 + machine % 5);
          p.machine_model_id = static_cast<std::uint16_t>(machine);
          p.material_id = static_cast<std::uint16_t>(material);
          p.thickness_mm = ListedThickness(k);
          p.cut_speed_mm_min = 9000.0f / (1.0f + p.thickness_mm);
          p.arc_voltage_v = 110.0f + 2.0f * p.thickness_mm;
          p.kerf_width_mm = 1.2f + 0.03f * p.thickness_mm;
          p.current_amps = static_cast<std::uint16_t>(30 + 5 * k);
          db.AddParameter(p);
        }
      }
    }
    const std::string path =
        (std::filesystem::temp_directory_path() / "sparlane_c_api_bench.slb").string();
    c = sparlane_db_create();
    if (db.SaveToBinary(path, Sparlane::CompressionType::LZ4) != Sparlane::ErrorCode::Success ||
        cpp.LoadFromBinary(path) != Sparlane::ErrorCode::Success ||
        sparlane_db_load(c, path.c_str()) != SPARLANE_SUCCESS) {
      std::fprintf(stderr, "cannot save and load %s\n", path.c_str());
      std::exit(1);
    }
    std::filesystem::remove(path);

    std::mt19937 random(7);
    for (std::size_t i = 0; i < kQuestions; ++i) {
      const int k = static_cast<int>(random() % (kThicknesses - 1));
      questions.push_back({MaterialName(1 + static_cast<int>(random() % kMaterials)),
                           MachineName(1 + static_cast<int>(random() % kMachines)),
                           ListedThickness(k), ListedThickness(k) + 0.75f});
    }
  }
  ~Fixture() { sparlane_db_destroy(c); }
};

Fixture& Shared() {
  static Fixture fixture;
  return fixture;
}

void BM_CppFindExact(benchmark::State& state) {
  const Sparlane::Database& db = Shared().cpp;
  const auto& questions = Shared().questions;
  std::size_t i = 0;
  for (auto _ : state) {
    const Question& q = questions[i++ % kQuestions];
    auto found = db.FindExact(q.material, q.listed, q.machine, 0.001f);
    benchmark::DoNotOptimize(found);
  }
}

void BM_CFindExact(benchmark::State& state) {
  const sparlane_db_t* handle = Shared().c;
  const auto& questions = Shared().questions;
  std::size_t i = 0;
  sparlane_parameter_t found;
  for (auto _ : state) {
    const Question& q = questions[i++ % kQuestions];
    benchmark::DoNotOptimize(sparlane_db_find_exact(handle, q.material.c_str(), q.listed,
                                                    q.machine.c_str(), 0.001f, &found));
    benchmark::DoNotOptimize(found);
  }
}

void BM_CppInterpolate(benchmark::State& state) {
  const Sparlane::Database& db = Shared().cpp;
  const auto& questions = Shared().questions;
  std::size_t i = 0;
  for (auto _ : state) {
    const Question& q = questions[i++ % kQuestions];
    auto result = db.Interpolate(q.material, q.between, q.machine);
    benchmark::DoNotOptimize(result);
  }
}

void BM_CInterpolate(benchmark::State& state) {
  const sparlane_db_t* handle = Shared().c;
  const auto& questions = Shared().questions;
  std::size_t i = 0;
  sparlane_interpolation_t result;
  for (auto _ : state) {
    const Question& q = questions[i++ % kQuestions];
    benchmark::DoNotOptimize(
        sparlane_db_interpolate(handle, q.material.c_str(), q.between, q.machine.c_str(), &result));
    benchmark::DoNotOptimize(result);
  }
}

BENCHMARK(BM_CppFindExact);
BENCHMARK(BM_CFindExact);
BENCHMARK(BM_CppInterpolate);
BENCHMARK(BM_CInterpolate);

}  // namespace

int main(int argc, char** argv) {
  sparlane_bench::CollectingReporter reporter;
  if (!sparlane_bench::RunCollecting(&argc, argv, reporter)) return 1;
  std::printf("\nC interface / C++ call (CPU ns per call)\n");
  for (const char* query : {"FindExact", "Interpolate"}) {
    const std::string cpp = std::string("BM_Cpp") + query;
    const std::string c = std::string("BM_C") + query;
    auto& r = reporter.results;
    if (r.count(cpp) == 0 || r.count(c) == 0) continue;
    std::printf("ratio %-12s %5.2fx  (C %.1f ns, C++ %.1f ns)\n", query, r[c].ns / r[cpp].ns,
                r[c].ns, r[cpp].ns);
  }
  return 0;
}
