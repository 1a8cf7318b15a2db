// Query costs against the same rows held in SQLite, and how they scale.
//
// Tables: 1,000,000 records (150 materials x 400 machine models, about 16.7
// thicknesses per pair) and 10,000 records of the same proportions (15 x 40,
// same thicknesses per pair), sorted by material, machine and thickness as
// parameter files are written.  SQLite holds the same rows in memory with an
// index on (material_id, machine_model_id, thickness_mm), names resolved
// through UNIQUE-indexed name tables, prepared statements reused.
//
// Printed at the end:
//  - SQLite time / sparlane time for FindExact, Interpolate, FindNearest and
//    FindOptimal at both sizes (targets: FindExact and Interpolate >= 20x);
//  - 1M time / 10K time for the queries defined as whole-table scans
//    (FindNearest, GetSupportedThicknessRange, AdjustForMaxSpeed: same
//    matching records at both sizes; FindByMaterial and the any-machine range
//    per matching record, since a material holds 10x the records at 1M);
//    target <= 2x.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#ifdef SPARLANE_BENCH_HAVE_SQLITE
#include "sqlite_twin.h"
#endif

#include "collecting_reporter.h"
#include "sparlane/sparlane.h"
#include "../tests/support/store_seam.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;

constexpr std::int64_t kHot = 64;
constexpr std::int64_t kCold = 4096;
constexpr float kFirstThickness = 0.5f;
constexpr float kThicknessStep = 1.5f;

struct Shape {
  int materials;
  int machines;
  std::size_t records;
};

std::string MaterialName(int i) { return "Material " + std::to_string(i); }
std::string MachineName(int i) { return "Machine model " + std::to_string(i); }

struct Query {
  std::string material;
  std::string machine;
  float listed_thickness;   // a thickness the pair lists
  float between_thickness;  // halfway between two listed ones
  CuttingParameter record;  // a record of the pair (for AdjustForMaxSpeed)
};

// The records, sorted as files are written: the first pairs get one record
// more so the total is exact.
std::vector<CuttingParameter> MakeTable(const Shape& shape) {
  const std::size_t pairs = static_cast<std::size_t>(shape.materials) * shape.machines;
  const std::size_t base = shape.records / pairs;
  const std::size_t extra = shape.records % pairs;
  std::vector<CuttingParameter> table;
  table.reserve(shape.records);
  std::size_t pair = 0;
  for (int material = 1; material <= shape.materials; ++material) {
    for (int machine = 1; machine <= shape.machines; ++machine, ++pair) {
      const std::size_t steps = base + (pair < extra ? 1 : 0);
      for (std::size_t k = 0; k < steps; ++k) {
        CuttingParameter p{};
        p.vendor_id = static_cast<std::uint16_t>(1 + machine % 20);
        p.machine_model_id = static_cast<std::uint16_t>(machine);
        p.material_id = static_cast<std::uint16_t>(material);
        p.thickness_mm = kFirstThickness + kThicknessStep * static_cast<float>(k);
        p.cut_speed_mm_min =
            6000.0f / (1.0f + static_cast<float>(k)) + static_cast<float>(machine % 7);
        p.cut_height_mm = 1.5f;
        p.pierce_height_mm = 3.0f + 0.1f * static_cast<float>(k);
        p.transfer_height_mm = 4.0f;
        p.arc_voltage_v = 110.0f + static_cast<float>(k);
        p.pierce_time_s = 0.2f + 0.05f * static_cast<float>(k);
        p.kerf_width_mm = 1.2f + 0.05f * static_cast<float>(k);
        p.current_amps = static_cast<std::uint16_t>(30 + 10 * (k % 20));
        table.push_back(p);
      }
    }
  }
  return table;
}


// One size: the database, its SQLite twin and a shuffled list of queries.
struct Fixture {
  explicit Fixture(const Shape& s) : shape(s) {
    std::vector<CuttingParameter> table = MakeTable(shape);
    db.Create();
    for (int i = 1; i <= shape.machines; ++i) {
      db.AddMachine("Vendor " + std::to_string(1 + i % 20), MachineName(i), "");
    }
    for (int i = 1; i <= shape.materials; ++i) db.AddMaterial(MaterialName(i));
    DatabaseAccess::LoadRecords(db, table);  // as a load does
#ifdef SPARLANE_BENCH_HAVE_SQLITE
    bench::SqliteTwin::Names names;
    for (int i = 1; i <= shape.machines; ++i) names.machines.push_back(MachineName(i));
    for (int i = 1; i <= shape.materials; ++i) names.materials.push_back(MaterialName(i));
    for (int i = 1; i <= 20; ++i) names.vendors.push_back("Vendor " + std::to_string(i));
    sql = std::make_unique<bench::SqliteTwin>(":memory:", names, table);
#endif
    std::mt19937 rng(42);
    for (int i = 0; i < 4096; ++i) {
      const std::size_t pos = std::uniform_int_distribution<std::size_t>(0, table.size() - 2)(rng);
      const CuttingParameter& r = table[pos];
      Query q;
      q.material = MaterialName(r.material_id);
      q.machine = MachineName(r.machine_model_id);
      q.listed_thickness = r.thickness_mm;
      q.between_thickness = r.thickness_mm + kThicknessStep / 2;
      q.record = r;
      queries.push_back(q);
    }
  }
  Shape shape;
  Database db;
#ifdef SPARLANE_BENCH_HAVE_SQLITE
  std::unique_ptr<bench::SqliteTwin> sql;
#endif
  std::vector<Query> queries;
};

Fixture& FixtureFor(std::int64_t records) {
  static std::map<std::int64_t, std::unique_ptr<Fixture>> fixtures;
  auto& f = fixtures[records];
  if (!f) {
    const Shape shape = records >= 1000000 ? Shape{150, 400, 1000000} : Shape{15, 40, 10000};
    f = std::make_unique<Fixture>(shape);
  }
  return *f;
}

// Runs one query per iteration over the shuffled list; counts the records
// the queries matched so per-record costs can be printed.
template <typename Run>
void Loop(benchmark::State& state, Run run) {
  Fixture& f = FixtureFor(state.range(0));
  const std::size_t distinct = static_cast<std::size_t>(state.range(1));
  std::size_t i = 0;
  std::size_t matched = 0;
  for (auto _ : state) {
    matched += run(f, f.queries[i]);
    if (++i == distinct) i = 0;
  }
  state.counters["matched"] = benchmark::Counter(static_cast<double>(matched),
                                                 benchmark::Counter::kAvgIterations);
}

std::size_t Found(const std::optional<CuttingParameter>& r) {
  benchmark::DoNotOptimize(r);
  return r ? 1 : 0;
}

void BM_FindExact(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.db.FindExact(q.material, q.listed_thickness, q.machine, 0.01f));
  });
}
void BM_Interpolate(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.db.Interpolate(q.material, q.between_thickness, q.machine);
    benchmark::DoNotOptimize(r);
    return r.confidence > 0.0f ? 1 : 0;
  });
}
void BM_FindNearest(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.db.FindNearest(q.material, q.between_thickness, q.machine));
  });
}
void BM_FindOptimal(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.db.FindOptimal(q.material, q.listed_thickness, 0.01f));
  });
}
void BM_FindByMaterial(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.db.FindByMaterial(q.material);
    benchmark::DoNotOptimize(r.data());
    return r.size();
  });
}
void BM_RangeOnMachine(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.db.GetSupportedThicknessRange(q.material, q.machine);
    benchmark::DoNotOptimize(r);
    return static_cast<std::size_t>(r.parameter_count);
  });
}
void BM_RangeAnyMachine(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.db.GetSupportedThicknessRange(q.material, "");
    benchmark::DoNotOptimize(r);
    return static_cast<std::size_t>(r.parameter_count);
  });
}
void BM_AdjustForMaxSpeed(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.db.AdjustForMaxSpeed(q.record, q.record.cut_speed_mm_min - 1.0f);
    benchmark::DoNotOptimize(r);
    return 1;
  });
}
// The whole-table scan FindNearest is defined as, for reference.
void BM_FindNearestWholeScan(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    const Sparlane::Store& d = DatabaseAccess::Body(f.db);
    const std::uint16_t mat = f.db.GetMaterialId(q.material);
    const std::uint16_t mach = f.db.GetMachineId(q.machine);
    const CuttingParameter* best = nullptr;
    float best_distance = 3.4028235e38f;
    for (const CuttingParameter& r : d.records()) {
      if (r.material_id != mat || r.machine_model_id != mach) continue;
      const float distance = std::fabs(r.thickness_mm - q.between_thickness);
      if (distance < best_distance) {
        best_distance = distance;
        best = &r;
      }
    }
    benchmark::DoNotOptimize(best);
    return best ? 1 : 0;
  });
}

#ifdef SPARLANE_BENCH_HAVE_SQLITE
void BM_SqlFindExact(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.sql->FindExact(q.material, q.machine, q.listed_thickness, 0.01f));
  });
}
void BM_SqlInterpolate(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.sql->Interpolate(q.material, q.machine, q.between_thickness);
    benchmark::DoNotOptimize(r);
    return r.confidence > 0.0f ? 1 : 0;
  });
}
void BM_SqlFindNearest(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.sql->FindNearest(q.material, q.machine, q.between_thickness));
  });
}
void BM_SqlFindOptimal(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.sql->FindOptimal(q.material, q.listed_thickness, 0.01f));
  });
}
#endif

// {records, distinct queries}: 64 queries keep what they touch in cache, so
// the time is the algorithm's; 4096 random ones over a 64 MB table also pay
// a trip to memory for every cache line they touch.
#define SIZES Args({10000, kHot})->Args({1000000, kHot})->Args({10000, kCold})->Args({1000000, kCold})
BENCHMARK(BM_FindExact)->SIZES;
BENCHMARK(BM_Interpolate)->SIZES;
BENCHMARK(BM_FindNearest)->SIZES;
BENCHMARK(BM_FindOptimal)->SIZES;
BENCHMARK(BM_FindByMaterial)->SIZES;
BENCHMARK(BM_RangeOnMachine)->SIZES;
BENCHMARK(BM_RangeAnyMachine)->SIZES;
BENCHMARK(BM_AdjustForMaxSpeed)->SIZES;
BENCHMARK(BM_FindNearestWholeScan)->SIZES;
#ifdef SPARLANE_BENCH_HAVE_SQLITE
BENCHMARK(BM_SqlFindExact)->SIZES;
BENCHMARK(BM_SqlInterpolate)->SIZES;
BENCHMARK(BM_SqlFindNearest)->SIZES;
BENCHMARK(BM_SqlFindOptimal)->SIZES;
#endif

}  // namespace

int main(int argc, char** argv) {
  sparlane_bench::CollectingReporter reporter;
  if (!sparlane_bench::RunCollecting(&argc, argv, reporter)) return 1;
  auto& r = reporter.results;
  auto have = [&](const std::string& name) { return r.count(name) != 0 && r[name].ns > 0.0; };

  for (const char* mix : {"64", "4096"}) {
    const bool hot = std::string(mix) == "64";
    std::printf("\n== %s queries (%s) ==\n", mix,
                hot ? "cache-resident working set" : "random over the table, cold cache");
    std::printf("sparlane vs SQLite (CPU ns/query; ratio = SQLite / sparlane)\n");
    for (const char* size : {"10000", "1000000"}) {
      for (const char* q : {"FindExact", "Interpolate", "FindNearest", "FindOptimal"}) {
        const std::string tail = std::string("/") + size + "/" + mix;
        const std::string ours = std::string("BM_") + q + tail;
        const std::string sql = std::string("BM_Sql") + q + tail;
        if (!have(ours) || !have(sql)) continue;
        const bool targeted = std::string(q) == "FindExact" || std::string(q) == "Interpolate";
        std::printf("ratio %-12s %8s records: %8.1fx  (%.0f ns vs %.0f ns)%s\n", q, size,
                    r[sql].ns / r[ours].ns, r[ours].ns, r[sql].ns,
                    targeted ? "  target >= 20x" : "");
      }
    }
    std::printf("scaling 1M / 10K (target <= 2x)\n");
    for (const char* q : {"FindNearest", "RangeOnMachine", "AdjustForMaxSpeed"}) {
      const std::string small = std::string("BM_") + q + "/10000/" + mix;
      const std::string big = std::string("BM_") + q + "/1000000/" + mix;
      if (!have(small) || !have(big)) continue;
      std::printf("ratio %-18s per query:  %6.2fx  (%.0f ns vs %.0f ns)\n", q,
                  r[big].ns / r[small].ns, r[big].ns, r[small].ns);
    }
    for (const char* q : {"FindByMaterial", "RangeAnyMachine"}) {
      const std::string small = std::string("BM_") + q + "/10000/" + mix;
      const std::string big = std::string("BM_") + q + "/1000000/" + mix;
      if (!have(small) || !have(big) || r[small].matched <= 0.0 || r[big].matched <= 0.0) continue;
      const double per_small = r[small].ns / r[small].matched;
      const double per_big = r[big].ns / r[big].matched;
      std::printf("ratio %-18s per record: %6.2fx  (%.2f ns vs %.2f ns; %.0f vs %.0f records)\n",
                  q, per_big / per_small, per_big, per_small, r[big].matched, r[small].matched);
    }
    const std::string scan = std::string("BM_FindNearestWholeScan/1000000/") + mix;
    const std::string lists = std::string("BM_FindNearest/1000000/") + mix;
    if (have(scan) && have(lists)) {
      std::printf("ratio FindNearest whole-table scan / position lists at 1M: %.0fx\n",
                  r[scan].ns / r[lists].ns);
    }
  }
  return 0;
}
