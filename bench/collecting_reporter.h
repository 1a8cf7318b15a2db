// A console reporter that also keeps each benchmark's CPU time per
// iteration (and its "matched" counter, if any), for the ratio lines a
// benchmark program prints after the run.
#ifndef SPARLANE_BENCH_COLLECTING_REPORTER_H_
#define SPARLANE_BENCH_COLLECTING_REPORTER_H_

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace sparlane_bench {

struct Measured {
  double ns = 0.0;       // CPU time per iteration
  double matched = 0.0;  // the "matched" counter per iteration
};

class CollectingReporter : public benchmark::ConsoleReporter {
 public:
  std::map<std::string, Measured> results;
  void ReportRuns(const std::vector<Run>& runs) override {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Iteration || run.iterations == 0) continue;
      Measured m;
      // CPU time: on a shared machine wall time also counts other processes.
      m.ns = run.cpu_accumulated_time * 1e9 / static_cast<double>(run.iterations);
      auto it = run.counters.find("matched");
      if (it != run.counters.end()) m.matched = it->second.value;
      results[run.benchmark_name()] = m;
    }
  }
};

// Runs the benchmarks the command line selects into reporter; false (after
// saying so) for an argument the library does not know.
inline bool RunCollecting(int* argc, char** argv, CollectingReporter& reporter) {
  benchmark::Initialize(argc, argv);
  if (benchmark::ReportUnrecognizedArguments(*argc, argv)) return false;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  benchmark::Shutdown();
  return true;
}

}  // namespace sparlane_bench

#endif  // SPARLANE_BENCH_COLLECTING_REPORTER_H_
