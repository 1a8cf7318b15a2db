// Loading and querying a million-record parameter file, each figure a ratio
// against the floor of the same work, measured side by side in one run:
//
//   load raw / copy floor        open + mmap + memcpy of the whole file
//   load LZ4 / decode floor      open + mmap + bare LZ4 block decode
//   peak memory while loading    a fresh child process's peak resident size
//                                (file pages included) over the raw file's size
//   FindExact, Interpolate,      against SQLite holding the same rows in an
//   FindOptimal / SQLite         indexed file, opened read-only with exclusive
//                                locking and mmap, statements prepared once
//   FindNearest 1M / 100k        the same query on a tenth of the table
//
// plus the 100,000-record load against the 5 ms target and its copy floor.
//
// Tables: 150 materials x 400 machine models (1,000,000 records) and 150 x 40
// (100,000 records), 16 or 17 thicknesses per pair, sorted by material,
// machine and thickness as files are written.  Files stay in the page cache.
// Times are medians of interleaved repetitions; query times are thread CPU
// time, so a busy machine inflates them less.  The queries run in two mixes
// (1024 distinct ones at random over the table, and 64), each cycled; in a
// repetition the queries on both tables and SQLite's run one after another,
// and a query ratio is the median over repetitions of the ratio within one.
#include <fcntl.h>
#include <lz4.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "file/byte_order.h"
#include "mapped_bytes.h"
#include "query/query_clock.h"
#include "sparlane/sparlane.h"

#ifdef SPARLANE_BENCH_HAVE_SQLITE
#include "sqlite_twin.h"
#endif

namespace {

using Sparlane::CompressionType;
using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::ErrorCode;

constexpr int kMaterials = 150;
constexpr int kVendors = 20;
constexpr float kFirstThickness = 0.5f;
constexpr float kThicknessStep = 1.5f;
constexpr float kTolerance = 0.01f;

std::string MaterialName(int i) { return "Material " + std::to_string(i); }
std::string MachineName(int i) { return "Machine model " + std::to_string(i); }

[[noreturn]] void Die(const std::string& why) {
  std::fprintf(stderr, "load_and_query_bench: %s\n", why.c_str());
  std::exit(1);
}

// --- the tables --------------------------------------------------------------

struct Shape {
  int machines;
  std::size_t records;
};

// Sorted as files are written; the first pairs get one record more so the
// total is exact.  Speeds differ by machine, so FindOptimal has a winner.
std::vector<CuttingParameter> MakeTable(const Shape& shape) {
  const std::size_t pairs = static_cast<std::size_t>(kMaterials) * shape.machines;
  const std::size_t base = shape.records / pairs;
  const std::size_t extra = shape.records % pairs;
  std::vector<CuttingParameter> table;
  table.reserve(shape.records);
  std::size_t pair = 0;
  for (int material = 1; material <= kMaterials; ++material) {
    for (int machine = 1; machine <= shape.machines; ++machine, ++pair) {
      const std::size_t steps = base + (pair < extra ? 1 : 0);
      const float machine_factor = 0.8f + 0.4f * static_cast<float>((machine * 37) % 101) / 100.0f;
      for (std::size_t k = 0; k < steps; ++k) {
        const float kf = static_cast<float>(k);
        CuttingParameter p{};
        p.vendor_id = static_cast<std::uint16_t>(1 + machine % kVendors);
        p.machine_model_id = static_cast<std::uint16_t>(machine);
        p.material_id = static_cast<std::uint16_t>(material);
        p.thickness_mm = kFirstThickness + kThicknessStep * kf;
        p.cut_speed_mm_min = 6000.0f / (1.0f + kf) * machine_factor;
        p.cut_height_mm = 1.5f + 0.05f * kf;
        p.pierce_height_mm = 3.0f + 0.1f * kf;
        p.transfer_height_mm = 4.0f + 0.1f * kf;
        p.arc_voltage_v = 110.0f + kf;
        p.pierce_time_s = 0.2f + 0.05f * kf;
        p.kerf_width_mm = 1.2f + 0.05f * kf;
        p.current_amps = static_cast<std::uint16_t>(30 + 10 * (k % 20));
        table.push_back(p);
      }
    }
  }
  return table;
}

void WriteFile(const Shape& shape, const std::vector<CuttingParameter>& table,
               const std::string& path, CompressionType compression) {
  Database db;
  db.Create();
  for (int i = 1; i <= shape.machines; ++i) {
    db.AddMachine("Vendor " + std::to_string(1 + i % kVendors), MachineName(i), "");
  }
  for (int i = 1; i <= kMaterials; ++i) db.AddMaterial(MaterialName(i));
  for (const CuttingParameter& p : table) {
    if (db.AddParameter(p) != ErrorCode::Success) Die("record refused: " + db.GetLastError());
  }
  if (db.SaveToBinary(path, compression) != ErrorCode::Success) Die("cannot write " + path);
}

std::uint64_t FileSize(const std::string& path) {
  struct stat st {};
  if (::stat(path.c_str(), &st) != 0) Die("cannot stat " + path);
  return static_cast<std::uint64_t>(st.st_size);
}

// Reads the file once so its pages are cached before anything is timed.
void WarmPageCache(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  std::vector<char> buffer(1 << 20);
  while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()))) {
  }
}

// --- timing ------------------------------------------------------------------

double NowNs() {
  return static_cast<double>(std::chrono::duration_cast<std::chrono::nanoseconds>(
                                 std::chrono::steady_clock::now().time_since_epoch())
                                 .count());
}

double ThreadCpuNs() {
  timespec ts{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return static_cast<double>(ts.tv_sec) * 1e9 + static_cast<double>(ts.tv_nsec);
}

double Median(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  const std::size_t n = v.size();
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2.0;
}

// Runs the candidates in turn, reps times each: each one's samples.
std::vector<std::vector<double>> InterleavedSamples(
    int reps, const std::vector<std::function<double()>>& runs) {
  std::vector<std::vector<double>> samples(runs.size());
  for (int r = 0; r < reps; ++r) {
    for (std::size_t i = 0; i < runs.size(); ++i) samples[i].push_back(runs[i]());
  }
  return samples;
}

// The same, each one's median.
std::vector<double> Interleaved(int reps, const std::vector<std::function<double()>>& runs) {
  std::vector<double> medians;
  for (const auto& s : InterleavedSamples(reps, runs)) medians.push_back(Median(s));
  return medians;
}

// --- the floors and the load -------------------------------------------------

// Teardown is outside every timed region: freeing and unmapping are paid
// after the stop watch, for the floors and for the database alike.
//
// With advise set, the buffer gets the large-page advice the library gives a
// large record array, the same call (information: what the advice alone is
// worth).
double CopyFloorNs(const std::string& path, bool advise = false) {
  std::unique_ptr<std::uint8_t[]> copy;
  double ns;
  {
    const double start = NowNs();
    bench::MappedBytes m(path);
    copy.reset(new std::uint8_t[m.size]);
#ifdef MADV_HUGEPAGE
    if (advise) {
      const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
      const auto begin = reinterpret_cast<std::uintptr_t>(copy.get());
      const std::uintptr_t first = (begin + page - 1) / page * page;
      const std::uintptr_t last = (begin + m.size) / page * page;
      if (last > first) ::madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
    }
#endif
    std::memcpy(copy.get(), m.data, m.size);
    ns = NowNs() - start;
    if (copy[0] != 'S') Die("not a parameter file");
  }
  return ns;
}

double DecodeFloorNs(const std::string& path) {
  std::unique_ptr<char[]> out;
  double ns;
  {
    const double start = NowNs();
    bench::MappedBytes m(path);
    const std::uint64_t count = Sparlane::LoadLE32(m.data + 16);
    out.reset(new char[count * sizeof(CuttingParameter)]);
    std::size_t pos = static_cast<std::size_t>(Sparlane::LoadLE64(m.data + 104));
    std::size_t written = 0;
    while (pos + 8 <= m.size && written < count * sizeof(CuttingParameter)) {
      const std::uint32_t raw = Sparlane::LoadLE32(m.data + pos);
      const std::uint32_t packed = Sparlane::LoadLE32(m.data + pos + 4);
      const int n = LZ4_decompress_safe(reinterpret_cast<const char*>(m.data + pos + 8),
                                        out.get() + written, static_cast<int>(packed),
                                        static_cast<int>(raw));
      if (n < 0) Die("bad LZ4 block");
      written += static_cast<std::size_t>(n);
      pos += 8 + packed;
    }
    ns = NowNs() - start;
  }
  return ns;
}

double LoadNs(const std::string& path) {
  auto db = std::make_unique<Database>();
  const double start = NowNs();
  const ErrorCode code = db->LoadFromBinary(path);
  const double ns = NowNs() - start;
  if (code != ErrorCode::Success) Die("load failed: " + db->GetLastError());
  return ns;
}

// --- peak memory -------------------------------------------------------------

long StatusKb(const char* key) {
  std::ifstream in("/proc/self/status");
  std::string line;
  const std::size_t n = std::strlen(key);
  while (std::getline(in, line)) {
    if (line.compare(0, n, key) == 0 && line[n] == ':') return std::atol(line.c_str() + n + 1);
  }
  return -1;
}

// What a fresh process measures for one file: the peak resident size a load
// adds (file-mapped pages count: VmHWM is the whole resident set, reset to
// the current size right before the load) and the load's time, or the copy
// floor's time.  Run as this program with --child=load|floor <path>; prints
// "<peak bytes> <ns>".
int ChildMain(const std::string& mode, const std::string& path) {
  double peak = -1.0;
  std::FILE* reset = std::fopen("/proc/self/clear_refs", "w");
  const bool can_reset = reset != nullptr && std::fputs("5", reset) >= 0 && std::fclose(reset) == 0;
  const long before = StatusKb("VmRSS");
  const double cpu_start = ThreadCpuNs();
  const double ns = mode == "floor" ? CopyFloorNs(path) : LoadNs(path);
  const double cpu_ns = ThreadCpuNs() - cpu_start;
  const long high = StatusKb("VmHWM");
  if (can_reset && before >= 0 && high >= 0) peak = static_cast<double>(high - before) * 1024.0;
  std::printf("%.0f %.0f %.0f\n", peak, ns, cpu_ns);
  return 0;
}

struct ChildFigures {
  double peak_bytes = -1.0;
  double ns = 0.0;      // wall clock
  double cpu_ns = 0.0;  // the loading thread's CPU time
};

ChildFigures RunChild(const char* mode, const std::string& path) {
  int fds[2];
  if (::pipe(fds) != 0) Die("pipe");
  const pid_t pid = ::fork();
  if (pid == 0) {
    ::dup2(fds[1], 1);
    ::close(fds[0]);
    ::close(fds[1]);
    const std::string mode_arg = std::string("--child=") + mode;
    ::execl("/proc/self/exe", "load_and_query_bench", mode_arg.c_str(), path.c_str(),
            static_cast<char*>(nullptr));
    ::_exit(127);
  }
  ::close(fds[1]);
  char text[128] = {};
  std::size_t got = 0;
  ssize_t n;
  while (got + 1 < sizeof text && (n = ::read(fds[0], text + got, sizeof text - 1 - got)) > 0) {
    got += static_cast<std::size_t>(n);
  }
  ::close(fds[0]);
  int status = 0;
  ::waitpid(pid, &status, 0);
  ChildFigures f;
  if (std::sscanf(text, "%lf %lf %lf", &f.peak_bytes, &f.ns, &f.cpu_ns) != 3) {
    Die("child measurement failed");
  }
  return f;
}

// Medians over fresh processes.
ChildFigures FreshProcess(const char* mode, const std::string& path, int reps) {
  std::vector<double> peaks, times, cpu;
  for (int i = 0; i < reps; ++i) {
    const ChildFigures f = RunChild(mode, path);
    peaks.push_back(f.peak_bytes);
    times.push_back(f.ns);
    cpu.push_back(f.cpu_ns);
  }
  return ChildFigures{Median(peaks), Median(times), Median(cpu)};
}

// --- queries -----------------------------------------------------------------

struct Query {
  std::string material;
  std::string machine;
  float listed;   // a thickness the pair lists
  float between;  // halfway to the next listed thickness
};

std::vector<Query> MakeQueries(const std::vector<CuttingParameter>& table, std::size_t count,
                               unsigned seed) {
  std::mt19937 rng(seed);
  std::uniform_int_distribution<std::size_t> pick(0, table.size() - 1);
  std::vector<Query> queries;
  for (std::size_t i = 0; i < count; ++i) {
    const CuttingParameter& r = table[pick(rng)];
    queries.push_back(Query{MaterialName(r.material_id), MachineName(r.machine_model_id),
                            r.thickness_mm, r.thickness_mm + kThicknessStep / 2});
  }
  return queries;
}


volatile std::size_t g_sink = 0;

// CPU nanoseconds per query, running the queries in turn from where the last
// measurement of the same kind stopped, for about 20 ms.  Reading the thread
// CPU clock is a system call, so it is read once per block of queries, and
// blocks grow until one takes 100 us or more.
template <typename Run>
double NsPerQuery(const std::vector<Query>& queries, std::size_t& next, Run run) {
  std::size_t done = 0;
  std::size_t found = 0;
  std::size_t block = 16;
  const double start = ThreadCpuNs();
  double elapsed = 0.0;
  do {
    for (std::size_t i = 0; i < block; ++i) {
      found += run(queries[next]);
      if (++next == queries.size()) next = 0;
    }
    done += block;
    const double before = elapsed;
    elapsed = ThreadCpuNs() - start;
    if (elapsed - before < 1e5 && block < (std::size_t{1} << 20)) block *= 2;
  } while (elapsed < 2e7);
  g_sink = g_sink + found;
  return elapsed / static_cast<double>(done);
}

std::size_t Found(const std::optional<CuttingParameter>& r) { return r ? 1 : 0; }

struct QueryFigures {
  double exact = 0, interpolate = 0, optimal = 0, nearest = 0;
  double sql_exact = 0, sql_interpolate = 0, sql_optimal = 0;
};

// One mix measured: medians per query kind, and the ratios of the table,
// each the median over repetitions of the two sides' ratio within one
// repetition (they run back to back), so a burst of load on the machine
// moves both sides of a ratio together instead of one of them.
struct MixFigures {
  QueryFigures big, small;
  double exact_vs_sql = 0, interpolate_vs_sql = 0, optimal_vs_sql = 0;
  double nearest_big_vs_small = 0;
};

double PairedRatio(const std::vector<double>& a, const std::vector<double>& b) {
  std::vector<double> ratios;
  for (std::size_t r = 0; r < a.size() && r < b.size(); ++r) ratios.push_back(a[r] / b[r]);
  return Median(ratios);
}

using Runs = std::vector<std::function<double()>>;

// A run of ask over the queries, going on where its last run stopped.
template <typename Ask>
void AddRun(Runs& runs, const std::vector<Query>& queries, Ask ask) {
  runs.push_back([&queries, ask, next = std::size_t{0}]() mutable {
    return NsPerQuery(queries, next, ask);
  });
}

// The library's four queries on db: FindExact, Interpolate, FindOptimal,
// FindNearest, in that order.
void AddLibraryRuns(const Database& db, const std::vector<Query>& queries, Runs& runs) {
  AddRun(runs, queries, [&db](const Query& q) {
    return Found(db.FindExact(q.material, q.listed, q.machine, kTolerance));
  });
  AddRun(runs, queries, [&db](const Query& q) -> std::size_t {
    return db.Interpolate(q.material, q.between, q.machine).confidence > 0.0f ? 1 : 0;
  });
  AddRun(runs, queries,
         [&db](const Query& q) { return Found(db.FindOptimal(q.material, q.listed, kTolerance)); });
  AddRun(runs, queries, [&db](const Query& q) {
    return Found(db.FindNearest(q.material, q.between, q.machine));
  });
}

// SQLite's FindExact, Interpolate and FindOptimal on the same queries.
void AddSqlRuns([[maybe_unused]] void* sql_store, [[maybe_unused]] const std::vector<Query>& queries,
                [[maybe_unused]] Runs& runs) {
#ifdef SPARLANE_BENCH_HAVE_SQLITE
  if (sql_store == nullptr) return;
  bench::SqliteTwin& sql = *static_cast<bench::SqliteTwin*>(sql_store);
  AddRun(runs, queries, [&sql](const Query& q) {
    return Found(sql.FindExact(q.material, q.machine, q.listed, kTolerance));
  });
  AddRun(runs, queries, [&sql](const Query& q) -> std::size_t {
    return sql.Interpolate(q.material, q.machine, q.between).confidence > 0.0f ? 1 : 0;
  });
  AddRun(runs, queries,
         [&sql](const Query& q) { return Found(sql.FindOptimal(q.material, q.listed, kTolerance)); });
#endif
}

// The big table's queries, SQLite's and, when given, the small table's, all
// interleaved in each repetition.
MixFigures MeasureMix(const Database& db, const std::vector<Query>& queries,
                      const Database* small_db, const std::vector<Query>& small_queries,
                      void* sql_store, int reps) {
  Runs runs;
  AddLibraryRuns(db, queries, runs);
  if (small_db != nullptr) AddLibraryRuns(*small_db, small_queries, runs);
  const std::size_t sql_at = runs.size();
  AddSqlRuns(sql_store, queries, runs);
  const std::vector<std::vector<double>> s = InterleavedSamples(reps, runs);

  MixFigures f;
  f.big = QueryFigures{Median(s[0]), Median(s[1]), Median(s[2]), Median(s[3]), 0, 0, 0};
  if (small_db != nullptr) {
    f.small = QueryFigures{Median(s[4]), Median(s[5]), Median(s[6]), Median(s[7]), 0, 0, 0};
    f.nearest_big_vs_small = PairedRatio(s[3], s[7]);
  }
  if (runs.size() > sql_at) {
    f.big.sql_exact = Median(s[sql_at]);
    f.big.sql_interpolate = Median(s[sql_at + 1]);
    f.big.sql_optimal = Median(s[sql_at + 2]);
    f.exact_vs_sql = PairedRatio(s[0], s[sql_at]);
    f.interpolate_vs_sql = PairedRatio(s[1], s[sql_at + 1]);
    f.optimal_vs_sql = PairedRatio(s[2], s[sql_at + 2]);
  }
  return f;
}

// --- report ------------------------------------------------------------------

void Row(const char* what, double ratio, const std::string& detail, const char* goal, bool met) {
  std::printf("| %-50s | %7.3fx | %-8s | %-4s | %s\n", what, ratio, goal, met ? "met" : "MISS",
              detail.c_str());
}

std::string Ms(double a_ns, double b_ns) {
  char text[96];
  std::snprintf(text, sizeof text, "%.2f ms vs %.2f ms", a_ns / 1e6, b_ns / 1e6);
  return text;
}

std::string Ns(double a_ns, double b_ns) {
  char text[96];
  std::snprintf(text, sizeof text, "%.0f ns vs %.0f ns", a_ns, b_ns);
  return text;
}

std::string MiB(double a, double b) {
  char text[96];
  std::snprintf(text, sizeof text, "%.1f MiB peak vs %.1f MiB file", a / 1048576.0, b / 1048576.0);
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 3 && std::strncmp(argv[1], "--child=", 8) == 0) {
    return ChildMain(argv[1] + 8, argv[2]);
  }
  int load_reps = 15;
  int query_reps = 7;
  std::size_t distinct = 1024;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg.rfind("--load-reps=", 0) == 0) load_reps = std::atoi(arg.c_str() + 12);
    else if (arg.rfind("--query-reps=", 0) == 0) query_reps = std::atoi(arg.c_str() + 13);
    else if (arg.rfind("--distinct=", 0) == 0) distinct = std::strtoul(arg.c_str() + 11, nullptr, 0);
    else Die("unknown argument " + arg + " (--load-reps=N --query-reps=N --distinct=N)");
  }

  char dir_template[] = "/tmp/sparlane-load-query-XXXXXX";
  if (::mkdtemp(dir_template) == nullptr) Die("cannot make a scratch directory");
  const std::string dir = dir_template;

  const Shape big{400, 1000000};
  const Shape small{40, 100000};
  const std::vector<CuttingParameter> big_table = MakeTable(big);
  const std::vector<CuttingParameter> small_table = MakeTable(small);
  const std::string raw = dir + "/raw_1m.bin";
  const std::string lz4 = dir + "/lz4_1m.bin";
  const std::string raw_small = dir + "/raw_100k.bin";
  WriteFile(big, big_table, raw, CompressionType::None);
  WriteFile(big, big_table, lz4, CompressionType::LZ4);
  WriteFile(small, small_table, raw_small, CompressionType::None);
  for (const std::string& f : {raw, lz4, raw_small}) WarmPageCache(f);
  const double raw_size = static_cast<double>(FileSize(raw));

  std::printf("1,000,000 records: raw file %.1f MiB, LZ4 file %.1f MiB; "
              "100,000 records: %.1f MiB\n",
              raw_size / 1048576.0, static_cast<double>(FileSize(lz4)) / 1048576.0,
              static_cast<double>(FileSize(raw_small)) / 1048576.0);

  // Loads, interleaved with their floors.
  const std::vector<double> loads = Interleaved(
      load_reps, {[&] { return CopyFloorNs(raw); }, [&] { return LoadNs(raw); },
                  [&] { return DecodeFloorNs(lz4); }, [&] { return LoadNs(lz4); },
                  [&] { return CopyFloorNs(raw, true); }});
  const std::vector<double> small_loads = Interleaved(
      load_reps * 4, {[&] { return CopyFloorNs(raw_small); }, [&] { return LoadNs(raw_small); }});

  const ChildFigures fresh_raw = FreshProcess("load", raw, 5);
  const ChildFigures fresh_lz4 = FreshProcess("load", lz4, 5);
  const ChildFigures fresh_raw_floor = FreshProcess("floor", raw, 5);
  const ChildFigures fresh_small = FreshProcess("load", raw_small, 9);
  const ChildFigures fresh_small_floor = FreshProcess("floor", raw_small, 9);

  // Queries on databases loaded from the files.
  Database db;
  Database db_small;
  if (db.LoadFromBinary(raw) != ErrorCode::Success) Die("load failed");
  if (db_small.LoadFromBinary(raw_small) != ErrorCode::Success) Die("load failed");
  void* sql_store = nullptr;
#ifdef SPARLANE_BENCH_HAVE_SQLITE
  bench::SqliteTwin::Names names;
  for (int i = 1; i <= big.machines; ++i) names.machines.push_back(MachineName(i));
  for (int i = 1; i <= kMaterials; ++i) names.materials.push_back(MaterialName(i));
  for (int i = 1; i <= kVendors; ++i) names.vendors.push_back("Vendor " + std::to_string(i));
  bench::SqliteTwin sql(dir + "/params.sqlite", names, big_table);
  sql_store = &sql;
#endif
  // Two mixes, each cycled: `distinct` queries drawn at random over the
  // whole table (by default 1024: what they touch is more than the core's
  // own caches keep on a busy machine), and 64 (a working set that stays in
  // cache, a controller cutting a handful of jobs).
  struct Mix : MixFigures {
    std::string name;
  };
  std::vector<Mix> mixes;
  for (const std::size_t n : {distinct, std::size_t{64}}) {
    const std::vector<Query> queries = MakeQueries(big_table, n, 42);
    const std::vector<Query> small_queries = MakeQueries(small_table, n, 42);
    // Warm-up: no first-touch faults counted.
    MeasureMix(db, queries, &db_small, small_queries, sql_store, 1);
    Mix mix;
    static_cast<MixFigures&>(mix) =
        MeasureMix(db, queries, &db_small, small_queries, sql_store, query_reps);
    mix.name = std::to_string(n) + " distinct";
    mixes.push_back(mix);
  }
  // Every query new: the table's lines come from memory (information).
  const std::vector<Query> cold_queries = MakeQueries(big_table, 1 << 18, 7);
  const MixFigures cold_mix = MeasureMix(db, cold_queries, nullptr, {}, sql_store, 3);
  const QueryFigures& cold = cold_mix.big;

  std::printf("\n| %-50s | %8s | %-8s | %-4s | %s\n", "1M records (100k where said)", "ratio",
              "goal", "", "measured");
  Row("load raw / copy floor", loads[1] / loads[0], Ms(loads[1], loads[0]), "<= 1.1",
      loads[1] / loads[0] <= 1.1);
  Row("load LZ4 / decode floor", loads[3] / loads[2], Ms(loads[3], loads[2]), "<= 1.2",
      loads[3] / loads[2] <= 1.2);
  const double pr = fresh_raw.peak_bytes, pl = fresh_lz4.peak_bytes;
  if (pr > 0 && pl > 0) {
    Row("peak memory loading raw / raw file size", pr / raw_size, MiB(pr, raw_size), "<= 1.25",
        pr / raw_size <= 1.25);
    Row("peak memory loading LZ4 / raw file size", pl / raw_size, MiB(pl, raw_size), "<= 1.3",
        pl / raw_size <= 1.3);
  } else {
    std::printf("| peak memory: not measurable here (no /proc/self/clear_refs)\n");
  }
  for (const Mix& mix : mixes) {
    const QueryFigures& q = mix.big;
    const std::string tag = " [" + mix.name + "]";
    if (q.sql_exact > 0) {
      Row(("FindExact / tuned SQLite" + tag).c_str(), mix.exact_vs_sql,
          Ns(q.exact, q.sql_exact), "<= 0.03", mix.exact_vs_sql <= 0.03);
      Row(("Interpolate / tuned SQLite" + tag).c_str(), mix.interpolate_vs_sql,
          Ns(q.interpolate, q.sql_interpolate), "<= 0.03", mix.interpolate_vs_sql <= 0.03);
      Row(("FindOptimal / tuned SQLite" + tag).c_str(), mix.optimal_vs_sql,
          Ns(q.optimal, q.sql_optimal), "<= 0.005", mix.optimal_vs_sql <= 0.005);
    } else {
      std::printf("| SQLite rows skipped: built without SQLite\n");
    }
    Row(("FindNearest at 1M / at 100k" + tag).c_str(), mix.nearest_big_vs_small,
        Ns(q.nearest, mix.small.nearest), "<= 1.5", mix.nearest_big_vs_small <= 1.5);
  }
  std::printf("\n100,000-record raw load (target 5 ms):\n"
              "  first load of a fresh process: %.3f ms = %.0f%% of the target (CPU %.3f ms); "
              "copy floor %.3f ms (CPU %.3f ms; load / floor %.2fx)\n"
              "  repeated in one process:       %.3f ms = %.0f%% of the target; copy floor %.3f ms "
              "(load / floor %.2fx)\n",
              fresh_small.ns / 1e6, 100.0 * fresh_small.ns / 5e6, fresh_small.cpu_ns / 1e6,
              fresh_small_floor.ns / 1e6, fresh_small_floor.cpu_ns / 1e6,
              fresh_small.ns / fresh_small_floor.ns, small_loads[1] / 1e6,
              100.0 * small_loads[1] / 5e6, small_loads[0] / 1e6, small_loads[1] / small_loads[0]);
  std::printf("1,000,000-record raw load / copy floor into a large-page-advised buffer "
              "(information): %.2fx (%.2f ms vs %.2f ms)\n",
              loads[1] / loads[4], loads[1] / 1e6, loads[4] / 1e6);
  std::printf("1,000,000-record raw load, first load of a fresh process: %.2f ms; copy floor "
              "%.2f ms (%.2fx)\n",
              fresh_raw.ns / 1e6, fresh_raw_floor.ns / 1e6, fresh_raw.ns / fresh_raw_floor.ns);
  const bool by_ticks = Sparlane::QueryClock::CountsByTicks();
  std::printf("queries (CPU ns per query, medians of %d; timed queries read %s):\n", query_reps,
              by_ticks ? "the time-stamp counter" : "the system clock");
  for (const Mix& mix : mixes) {
    std::printf("  %-13s 1M:   FindExact %.0f  Interpolate %.0f  FindOptimal %.0f  "
                "FindNearest %.0f\n"
                "  %-13s 100k: FindExact %.0f  Interpolate %.0f  FindOptimal %.0f  "
                "FindNearest %.0f\n",
                mix.name.c_str(), mix.big.exact, mix.big.interpolate, mix.big.optimal,
                mix.big.nearest, mix.name.c_str(), mix.small.exact, mix.small.interpolate,
                mix.small.optimal, mix.small.nearest);
  }
  std::printf("  every query new, 1M: FindExact %.0f  Interpolate %.0f  FindOptimal %.0f  "
              "FindNearest %.0f",
              cold.exact, cold.interpolate, cold.optimal, cold.nearest);
  if (cold.sql_exact > 0) {
    std::printf("; / SQLite %.3fx %.3fx %.4fx", cold_mix.exact_vs_sql,
                cold_mix.interpolate_vs_sql, cold_mix.optimal_vs_sql);
  }
  std::printf("\n");

  std::system(("rm -rf '" + dir + "'").c_str());
  return 0;
}
