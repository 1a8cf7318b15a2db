// slb-tool build at scale, run as a child process the way users run it:
//  - a CSV with 65,535 distinct material names against one with 8,192: the
//    time must grow with the name count, not its square; the printed ratio
//    of the two times should stay within 10 (the counts differ by 8);
//  - a 50 MB CSV (about 734,000 rows): the child's peak resident memory
//    against the input size; the printed ratio should stay below 3.
#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr char kHeader[] =
    "vendor,machine_model,material,thickness_mm,cut_speed_mm_min,cut_height_mm,"
    "pierce_height_mm,transfer_height_mm,arc_voltage_v,pierce_time_s,kerf_width_mm,"
    "current_amps,flags\n";
constexpr std::size_t kLargeCsvBytes = 50u * 1000u * 1000u;

std::string ScratchPath(const std::string& tail) {
  const char* dir = std::getenv("TMPDIR");
  return std::string(dir ? dir : "/tmp") + "/sparlane_tool_build_bench" + tail;
}

// One row per material, every name distinct.
std::string WriteNamesCsv(int names) {
  const std::string path = ScratchPath("_names" + std::to_string(names) + ".csv");
  std::ofstream out(path, std::ios::binary);
  out << kHeader;
  char row[160];
  for (int i = 0; i < names; ++i) {
    std::snprintf(row, sizeof row, "Shop,AIR-45A,Material %05d,%d,%d,1.5,3.8,3.8,120,0.5,1.5,45,0\n",
                  i, 1 + i % 25, 500 + i % 5000);
    out << row;
  }
  return path;
}

// About 50 MB of plausible rows (about 730,000 of them): 20 vendors, 400
// machine models, 60 materials, thicknesses from 0.5 to 50 mm in no
// particular order.
std::string WriteLargeCsv() {
  const std::string path = ScratchPath("_large.csv");
  std::ofstream out(path, std::ios::binary);
  out << kHeader;
  std::mt19937 random(2024);
  std::size_t bytes = sizeof kHeader - 1;
  char row[200];
  while (bytes < kLargeCsvBytes) {
    const unsigned machine = random() % 400;
    const double thickness = 0.5 + (random() % 496) / 10.0;
    const int n = std::snprintf(
        row, sizeof row, "Vendor %02u,Model-%03u,Alloy %02u,%.1f,%u,1.5,%.1f,%.1f,%u,%.1f,1.%u,%u,0\n",
        machine % 20, machine, static_cast<unsigned>(random() % 60), thickness,
        static_cast<unsigned>(200 + random() % 8000), 2.0 + (random() % 30) / 10.0,
        2.0 + (random() % 30) / 10.0, static_cast<unsigned>(90 + random() % 100),
        (random() % 30) / 10.0, static_cast<unsigned>(random() % 10),
        static_cast<unsigned>(20 + random() % 380));
    out.write(row, n);
    bytes += static_cast<std::size_t>(n);
  }
  return path;
}

struct ChildRun {
  int status = -1;
  double seconds = 0.0;
  long peak_kib = 0;         // the child's peak resident set
  double input_bytes = 0.0;  // the CSV's size
};

// Runs slb-tool build OUT --from-csv csv with its output discarded.
ChildRun RunBuild(const std::string& csv) {
  const std::string out = ScratchPath(".slb");
  ChildRun result;
  const auto start = std::chrono::steady_clock::now();
  const pid_t pid = fork();
  if (pid == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, 1);
    dup2(null, 2);
    execl(SLB_TOOL_PATH, SLB_TOOL_PATH, "build", out.c_str(), "--from-csv", csv.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  struct rusage usage {};
  if (pid > 0 && wait4(pid, &status, 0, &usage) == pid) {
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.peak_kib = usage.ru_maxrss;
  }
  result.seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::remove(out.c_str());
  return result;
}

std::map<std::string, ChildRun>& Results() {
  static std::map<std::string, ChildRun> results;
  return results;
}

void BuildNames(benchmark::State& state) {
  const int names = static_cast<int>(state.range(0));
  const std::string csv = WriteNamesCsv(names);
  ChildRun best;
  for (auto _ : state) {
    const ChildRun run = RunBuild(csv);
    if (run.status != 0) state.SkipWithError("slb-tool build failed");
    state.SetIterationTime(run.seconds);
    if (best.seconds == 0.0 || run.seconds < best.seconds) best = run;
  }
  Results()["names" + std::to_string(names)] = best;
  std::remove(csv.c_str());
}

void BuildLargeCsv(benchmark::State& state) {
  const std::string csv = WriteLargeCsv();
  std::ifstream in(csv, std::ios::binary | std::ios::ate);
  const double input_bytes = static_cast<double>(in.tellg());
  for (auto _ : state) {
    ChildRun run = RunBuild(csv);
    if (run.status != 0) state.SkipWithError("slb-tool build failed");
    state.SetIterationTime(run.seconds);
    run.input_bytes = input_bytes;
    state.counters["peak_per_input"] = static_cast<double>(run.peak_kib) * 1024.0 / input_bytes;
    Results()["large"] = run;
  }
  std::remove(csv.c_str());
}

BENCHMARK(BuildNames)->Arg(8192)->Arg(65535)->UseManualTime()->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(BuildLargeCsv)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();

  auto& r = Results();
  std::printf("\n");
  if (r.count("names8192") && r.count("names65535") && r["names8192"].seconds > 0.0) {
    std::printf("build time, 65535 names / 8192 names: %.2fx (%.1f ms / %.1f ms; goal <= 10)\n",
                r["names65535"].seconds / r["names8192"].seconds, r["names65535"].seconds * 1e3,
                r["names8192"].seconds * 1e3);
  }
  if (r.count("large") && r["large"].input_bytes > 0.0) {
    const double input_mib = r["large"].input_bytes / (1024.0 * 1024.0);
    const double peak_mib = static_cast<double>(r["large"].peak_kib) / 1024.0;
    std::printf("build of a 50 MB CSV, peak memory / input size: %.2fx (%.1f MiB / %.1f MiB; "
                "goal < 3)\n",
                peak_mib / input_mib, peak_mib, input_mib);
  }
  return 0;
}
