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
#include <sqlite3.h>
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

#ifdef SPARLANE_BENCH_HAVE_SQLITE
// The same rows in SQLite, with the statements each query needs.
class SqlStore {
 public:
  SqlStore(const Shape& shape, const std::vector<CuttingParameter>& table) {
    sqlite3_open(":memory:", &db_);
    Exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;");
    Exec("CREATE TABLE vendors(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE machines(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE materials(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE params(pos INTEGER PRIMARY KEY, vendor_id INTEGER,"
         " machine_model_id INTEGER, material_id INTEGER, thickness_mm REAL,"
         " cut_speed_mm_min REAL, cut_height_mm REAL, pierce_height_mm REAL,"
         " transfer_height_mm REAL, arc_voltage_v REAL, pierce_time_s REAL,"
         " kerf_width_mm REAL, current_amps INTEGER, flags INTEGER);");
    Exec("BEGIN");
    sqlite3_stmt* names = Prepare("INSERT INTO machines(id, name) VALUES(?1, ?2)");
    for (int i = 1; i <= shape.machines; ++i) InsertName(names, i, MachineName(i));
    sqlite3_finalize(names);
    names = Prepare("INSERT INTO materials(id, name) VALUES(?1, ?2)");
    for (int i = 1; i <= shape.materials; ++i) InsertName(names, i, MaterialName(i));
    sqlite3_finalize(names);
    names = Prepare("INSERT INTO vendors(id, name) VALUES(?1, ?2)");
    for (int i = 1; i <= 20; ++i) InsertName(names, i, "Vendor " + std::to_string(i));
    sqlite3_finalize(names);
    sqlite3_stmt* row = Prepare("INSERT INTO params VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14)");
    for (std::size_t pos = 0; pos < table.size(); ++pos) {
      const CuttingParameter& p = table[pos];
      sqlite3_bind_int64(row, 1, static_cast<sqlite3_int64>(pos));
      sqlite3_bind_int(row, 2, p.vendor_id);
      sqlite3_bind_int(row, 3, p.machine_model_id);
      sqlite3_bind_int(row, 4, p.material_id);
      const float floats[] = {p.thickness_mm,       p.cut_speed_mm_min, p.cut_height_mm,
                              p.pierce_height_mm,   p.transfer_height_mm, p.arc_voltage_v,
                              p.pierce_time_s,      p.kerf_width_mm};
      for (int f = 0; f < 8; ++f) sqlite3_bind_double(row, 5 + f, floats[f]);
      sqlite3_bind_int(row, 13, p.current_amps);
      sqlite3_bind_int64(row, 14, p.flags);
      sqlite3_step(row);
      sqlite3_reset(row);
    }
    sqlite3_finalize(row);
    Exec("CREATE INDEX params_key ON params(material_id, machine_model_id, thickness_mm)");
    Exec("COMMIT");
    Exec("ANALYZE");

    const std::string cols =
        "SELECT vendor_id, machine_model_id, material_id, thickness_mm, cut_speed_mm_min,"
        " cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v, pierce_time_s,"
        " kerf_width_mm, current_amps, flags FROM params ";
    const std::string pair =
        "WHERE material_id = (SELECT id FROM materials WHERE name = ?1)"
        " AND machine_model_id = (SELECT id FROM machines WHERE name = ?2) ";
    exact_ = Prepare(cols + pair + "AND thickness_mm BETWEEN ?3 - ?4 AND ?3 + ?4 LIMIT 1");
    at_or_above_ = Prepare(cols + pair + "AND thickness_mm >= ?3 ORDER BY thickness_mm LIMIT 2");
    below_ = Prepare(cols + pair + "AND thickness_mm < ?3 ORDER BY thickness_mm DESC LIMIT 1");
    nearest_ = Prepare(cols + pair + "ORDER BY abs(thickness_mm - ?3), pos LIMIT 1");
    optimal_ = Prepare(cols +
                       "WHERE material_id = (SELECT id FROM materials WHERE name = ?1)"
                       " AND thickness_mm BETWEEN ?2 - ?3 AND ?2 + ?3 AND cut_speed_mm_min > 0"
                       " ORDER BY cut_speed_mm_min DESC, pos LIMIT 1");
  }
  ~SqlStore() {
    for (sqlite3_stmt* s : {exact_, at_or_above_, below_, nearest_, optimal_}) sqlite3_finalize(s);
    sqlite3_close(db_);
  }
  SqlStore(const SqlStore&) = delete;
  SqlStore& operator=(const SqlStore&) = delete;

  std::optional<CuttingParameter> FindExact(const Query& q, float t, float tol) {
    BindPair(exact_, q);
    sqlite3_bind_double(exact_, 3, t);
    sqlite3_bind_double(exact_, 4, tol);
    return StepOne(exact_);
  }

  // The bracketing rows, then the same arithmetic as the library.
  Sparlane::InterpolationResult Interpolate(const Query& q, float t) {
    BindPair(at_or_above_, q);
    sqlite3_bind_double(at_or_above_, 3, t);
    std::optional<CuttingParameter> upper = Step(at_or_above_);
    std::optional<CuttingParameter> next = upper ? Step(at_or_above_) : std::nullopt;
    sqlite3_reset(at_or_above_);
    BindPair(below_, q);
    sqlite3_bind_double(below_, 3, t);
    std::optional<CuttingParameter> lower = StepOne(below_);
    benchmark::DoNotOptimize(next);  // the library reads the record after p too
    Sparlane::InterpolationResult r{};
    if (upper && std::fabs(upper->thickness_mm - t) < 0.001f) {
      r.parameter = *upper;
      r.confidence = 1.0f;
    } else if (lower && upper) {
      r.parameter = Sparlane::Testing::InterpolateLinear(*lower, *upper, t);
      const float span = upper->thickness_mm - lower->thickness_mm;
      r.confidence = 1.0f - std::fabs((t - lower->thickness_mm) / span - 0.5f) * 0.4f;
    } else if (lower || upper) {
      r.parameter = Sparlane::Testing::ExtrapolateConservative(lower ? *lower : *upper, t);
      r.confidence = 0.3f;
      r.extrapolated = true;
    }
    return r;
  }

  std::optional<CuttingParameter> FindNearest(const Query& q, float t) {
    BindPair(nearest_, q);
    sqlite3_bind_double(nearest_, 3, t);
    return StepOne(nearest_);
  }

  std::optional<CuttingParameter> FindOptimal(const Query& q, float t, float tol) {
    sqlite3_bind_text(optimal_, 1, q.material.data(), static_cast<int>(q.material.size()),
                      SQLITE_STATIC);
    sqlite3_bind_double(optimal_, 2, t);
    sqlite3_bind_double(optimal_, 3, tol);
    return StepOne(optimal_);
  }

 private:
  void Exec(const std::string& sql) { sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr); }
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &s, nullptr) != SQLITE_OK) {
      std::fprintf(stderr, "sqlite: %s\n", sqlite3_errmsg(db_));
    }
    return s;
  }
  static void InsertName(sqlite3_stmt* s, int id, const std::string& name) {
    sqlite3_bind_int(s, 1, id);
    sqlite3_bind_text(s, 2, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_step(s);
    sqlite3_reset(s);
  }
  static void BindPair(sqlite3_stmt* s, const Query& q) {
    sqlite3_bind_text(s, 1, q.material.data(), static_cast<int>(q.material.size()), SQLITE_STATIC);
    sqlite3_bind_text(s, 2, q.machine.data(), static_cast<int>(q.machine.size()), SQLITE_STATIC);
  }
  static std::optional<CuttingParameter> Step(sqlite3_stmt* s) {
    if (sqlite3_step(s) != SQLITE_ROW) return std::nullopt;
    CuttingParameter p{};
    p.vendor_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 0));
    p.machine_model_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 1));
    p.material_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 2));
    float* floats[] = {&p.thickness_mm,       &p.cut_speed_mm_min, &p.cut_height_mm,
                       &p.pierce_height_mm,   &p.transfer_height_mm, &p.arc_voltage_v,
                       &p.pierce_time_s,      &p.kerf_width_mm};
    for (int f = 0; f < 8; ++f) *floats[f] = static_cast<float>(sqlite3_column_double(s, 3 + f));
    p.current_amps = static_cast<std::uint16_t>(sqlite3_column_int(s, 11));
    p.flags = static_cast<std::uint32_t>(sqlite3_column_int64(s, 12));
    return p;
  }
  static std::optional<CuttingParameter> StepOne(sqlite3_stmt* s) {
    std::optional<CuttingParameter> p = Step(s);
    sqlite3_reset(s);
    return p;
  }

  sqlite3* db_ = nullptr;
  sqlite3_stmt* exact_ = nullptr;
  sqlite3_stmt* at_or_above_ = nullptr;
  sqlite3_stmt* below_ = nullptr;
  sqlite3_stmt* nearest_ = nullptr;
  sqlite3_stmt* optimal_ = nullptr;
};
#endif

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
    sql = std::make_unique<SqlStore>(shape, table);
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
  std::unique_ptr<SqlStore> sql;
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
    return Found(f.sql->FindExact(q, q.listed_thickness, 0.01f));
  });
}
void BM_SqlInterpolate(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) -> std::size_t {
    auto r = f.sql->Interpolate(q, q.between_thickness);
    benchmark::DoNotOptimize(r);
    return r.confidence > 0.0f ? 1 : 0;
  });
}
void BM_SqlFindNearest(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) { return Found(f.sql->FindNearest(q, q.between_thickness)); });
}
void BM_SqlFindOptimal(benchmark::State& s) {
  Loop(s, [](Fixture& f, const Query& q) {
    return Found(f.sql->FindOptimal(q, q.listed_thickness, 0.01f));
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
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  sparlane_bench::CollectingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
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
