// Parameter-file load and save speed against the plain system work they
// cannot avoid, printed as ratios:
//   load raw  vs  open + mmap + memcpy of the whole file
//   load LZ4  vs  mmap + LZ4_decompress_safe of every block into one buffer
//   save raw  vs  one write + one fsync of the same bytes
// plus the median load time of a 10,000-record file and the memory a load
// keeps (RSS delta) against the file size.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <lz4.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "file/byte_order.h"
#include "file/file_parser.h"
#include "file/mapped_file.h"
#include "mapped_bytes.h"
#include "sparlane/sparlane.h"
#include "../tests/support/store_seam.h"

namespace {

using Sparlane::CompressionType;
using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::DatabaseAccess;
using Sparlane::ErrorCode;

std::string g_dir;

// Records sorted as files are written: by material, machine, thickness.
void FillTable(Database& db, int records) {
  db.Create();
  DatabaseAccess::SetNames(db, Sparlane::NameKind::kVendor, {"Vendor A", "Vendor B", "Vendor C"});
  std::vector<std::string> names;
  for (int m = 0; m < 400; ++m) names.push_back("Machine " + std::to_string(m));
  DatabaseAccess::SetNames(db, Sparlane::NameKind::kMachine, names);
  names.clear();
  for (int m = 0; m < 150; ++m) names.push_back("Material " + std::to_string(m));
  DatabaseAccess::SetNames(db, Sparlane::NameKind::kMaterial, names);
  std::vector<CuttingParameter>& table = DatabaseAccess::Records(db);
  std::mt19937 rng(1);
  table.reserve(static_cast<std::size_t>(records));
  const int per_material = records / 150 + 1;
  for (int i = 0; i < records; ++i) {
    const int material = i / per_material;
    const int within = i % per_material;
    CuttingParameter p{};
    p.vendor_id = static_cast<std::uint16_t>(1 + material % 3);
    p.machine_model_id = static_cast<std::uint16_t>(1 + (material * 7 + within / 64) % 400);
    p.material_id = static_cast<std::uint16_t>(1 + material);
    p.thickness_mm = 0.5f + static_cast<float>(within % 64) * 0.5f;
    p.cut_speed_mm_min = 4000.0f - 50.0f * p.thickness_mm + static_cast<float>(rng() % 100);
    p.cut_height_mm = 1.5f;
    p.pierce_height_mm = 3.0f;
    p.transfer_height_mm = 3.5f;
    p.arc_voltage_v = 110.0f + p.thickness_mm;
    p.pierce_time_s = 0.05f * p.thickness_mm;
    p.kerf_width_mm = 1.0f + 0.02f * p.thickness_mm;
    p.current_amps = static_cast<std::uint16_t>(30 + 10 * (within % 20));
    table.push_back(p);
  }
}

std::string MakeFile(const std::string& name, int records, CompressionType c) {
  Database db;
  FillTable(db, records);
  const std::string path = g_dir + "/" + name;
  if (db.SaveToBinary(path, c) != ErrorCode::Success) {
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    std::exit(1);
  }
  return path;
}

using Mapping = bench::MappedBytes;

// The parameter data offset of a file, read from its header.
std::size_t DataOffset(const Mapping& m) { return Sparlane::LoadLE64(m.data + 104); }

void BaselineRaw(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    Mapping m(path);
    std::unique_ptr<std::uint8_t[]> copy(new std::uint8_t[m.size]);
    std::memcpy(copy.get(), m.data, m.size);
    benchmark::DoNotOptimize(copy.get());
  }
}

void BaselineLz4(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    Mapping m(path);
    const std::uint32_t count = Sparlane::LoadLE32(m.data + 16);
    std::unique_ptr<char[]> out(new char[static_cast<std::size_t>(count) * 64]);
    std::size_t pos = DataOffset(m), written = 0;
    while (pos + 8 <= m.size) {
      const std::uint32_t raw = Sparlane::LoadLE32(m.data + pos);
      const std::uint32_t comp = Sparlane::LoadLE32(m.data + pos + 4);
      const int n = LZ4_decompress_safe(reinterpret_cast<const char*>(m.data + pos + 8),
                                        out.get() + written, static_cast<int>(comp),
                                        static_cast<int>(raw));
      written += static_cast<std::size_t>(n);
      pos += 8 + comp;
    }
    benchmark::DoNotOptimize(out.get());
  }
}

void Load(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    Database db;
    if (db.LoadFromBinary(path) != ErrorCode::Success) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(&db);
  }
}

// The mapping and parsing alone, without rebuilding the record indexes.
void MapAndParse(benchmark::State& state, const std::string& path) {
  for (auto _ : state) {
    Sparlane::MappedFile file;
    file.Open(path);
    Sparlane::StoreParts store;
    if (Sparlane::ParseParameterFile(file.view(), file.size(), store) != ErrorCode::Success) {
      state.SkipWithError("parse failed");
    }
    benchmark::DoNotOptimize(&store);
  }
}

void Save(benchmark::State& state, Database* db, const std::string& path) {
  for (auto _ : state) {
    if (db->SaveToBinary(path, CompressionType::None) != ErrorCode::Success) {
      state.SkipWithError("save failed");
    }
  }
}

void BaselineWrite(benchmark::State& state, const std::vector<char>* bytes,
                   const std::string& path) {
  for (auto _ : state) {
    const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (::write(fd, bytes->data(), bytes->size()) != static_cast<ssize_t>(bytes->size())) {
      state.SkipWithError("write failed");
    }
    ::fsync(fd);
    ::close(fd);
  }
}

// Collects each benchmark's mean real time (ns) for the ratio lines.
class CollectingReporter : public benchmark::ConsoleReporter {
 public:
  std::map<std::string, double> real_ns;
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      const double scale = 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
      std::string name = run.benchmark_name();
      const std::size_t cut = name.find("_median");
      if (cut != std::string::npos) name.resize(cut);
      name = name.substr(0, name.find('/'));
      real_ns[name] = run.GetAdjustedRealTime() * scale;
    }
    ConsoleReporter::ReportRuns(runs);
  }
};

long StatusKb(const char* key) {
  std::ifstream in("/proc/self/status");
  std::string line;
  const std::size_t n = std::strlen(key);
  while (std::getline(in, line)) {
    if (line.compare(0, n, key) == 0) return std::atol(line.c_str() + n + 1);
  }
  return -1;
}

void ReportMemory(const std::string& path, const char* label) {
  struct stat st {};
  ::stat(path.c_str(), &st);
  const long rss0 = StatusKb("VmRSS"), anon0 = StatusKb("RssAnon");
  auto db = std::make_unique<Database>();
  db->LoadFromBinary(path);
  const long rss1 = StatusKb("VmRSS"), anon1 = StatusKb("RssAnon");
  const double file_kb = static_cast<double>(st.st_size) / 1024.0;
  std::printf("memory %-4s: file %.0f KiB, RSS +%ld KiB (%.2fx file), anonymous +%ld KiB (%.2fx)\n",
              label, file_kb, rss1 - rss0, static_cast<double>(rss1 - rss0) / file_kb,
              anon1 - anon0, static_cast<double>(anon1 - anon0) / file_kb);
}

}  // namespace

int main(int argc, char** argv) {
  char tmpl[] = "/tmp/sparlane-file-bench-XXXXXX";
  if (::mkdtemp(tmpl) == nullptr) return 1;
  g_dir = tmpl;
  const std::string raw = MakeFile("raw.bin", 1000000, CompressionType::None);
  const std::string lz4 = MakeFile("lz4.bin", 1000000, CompressionType::LZ4);
  const std::string small = MakeFile("small.bin", 10000, CompressionType::None);
  const std::string small_lz4 = MakeFile("small_lz4.bin", 10000, CompressionType::LZ4);

  Database save_db;
  FillTable(save_db, 1000000);
  std::vector<char> raw_bytes;
  {
    std::ifstream in(raw, std::ios::binary);
    raw_bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  using benchmark::kMillisecond;
  auto reg = [](const char* name, auto fn) {
    return benchmark::RegisterBenchmark(name, fn)->Unit(kMillisecond)->UseRealTime();
  };
  reg("baseline_raw_mmap_memcpy", [&](benchmark::State& s) { BaselineRaw(s, raw); });
  reg("load_raw_1M", [&](benchmark::State& s) { Load(s, raw); });
  reg("parse_raw_1M", [&](benchmark::State& s) { MapAndParse(s, raw); });
  reg("baseline_lz4_mmap_decode", [&](benchmark::State& s) { BaselineLz4(s, lz4); });
  reg("load_lz4_1M", [&](benchmark::State& s) { Load(s, lz4); });
  reg("parse_lz4_1M", [&](benchmark::State& s) { MapAndParse(s, lz4); });
  reg("load_raw_10k", [&](benchmark::State& s) { Load(s, small); })
      ->Unit(benchmark::kMicrosecond)->Repetitions(15)->ReportAggregatesOnly(true);
  reg("load_lz4_10k", [&](benchmark::State& s) { Load(s, small_lz4); })
      ->Unit(benchmark::kMicrosecond)->Repetitions(15)->ReportAggregatesOnly(true);
  reg("baseline_write_fsync_1M", [&](benchmark::State& s) {
    BaselineWrite(s, &raw_bytes, g_dir + "/baseline.bin");
  })->Iterations(5);
  reg("save_raw_1M", [&](benchmark::State& s) { Save(s, &save_db, g_dir + "/saved.bin"); })
      ->Iterations(5);

  benchmark::Initialize(&argc, argv);
  CollectingReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);

  auto& t = reporter.real_ns;
  auto ratio = [&](const char* what, const char* a, const char* b, double target) {
    if (!t.count(a) || !t.count(b)) return;
    std::printf("ratio %-34s %7.2fx  (%.2f ms / %.2f ms, target <= %.1fx)\n", what, t[a] / t[b],
                t[a] / 1e6, t[b] / 1e6, target);
  };
  std::printf("\n");
  ratio("load raw 1M / mmap+memcpy", "load_raw_1M", "baseline_raw_mmap_memcpy", 1.5);
  ratio("parse raw 1M / mmap+memcpy", "parse_raw_1M", "baseline_raw_mmap_memcpy", 1.5);
  ratio("load lz4 1M / mmap+decode", "load_lz4_1M", "baseline_lz4_mmap_decode", 1.5);
  ratio("parse lz4 1M / mmap+decode", "parse_lz4_1M", "baseline_lz4_mmap_decode", 1.5);
  ratio("save raw 1M / write+fsync", "save_raw_1M", "baseline_write_fsync_1M", 2.0);
  if (t.count("load_raw_10k")) {
    std::printf("median load 10k raw: %.3f ms = %.3f of the 5 ms target\n", t["load_raw_10k"] / 1e6,
                t["load_raw_10k"] / 5e6);
  }
  if (t.count("load_lz4_10k")) {
    std::printf("median load 10k lz4: %.3f ms = %.3f of the 5 ms target\n", t["load_lz4_10k"] / 1e6,
                t["load_lz4_10k"] / 5e6);
  }
  ReportMemory(raw, "raw");
  ReportMemory(lz4, "lz4");

  std::system(("rm -rf '" + g_dir + "'").c_str());
  return 0;
}
