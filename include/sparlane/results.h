// What the queries, the metrics and the statistics return.
#ifndef SPARLANE_RESULTS_H_
#define SPARLANE_RESULTS_H_

#include <cstdint>

#include "sparlane/records.h"

namespace Sparlane {

// Result of Database::Interpolate.  confidence 0.0 means nothing was built
// and the record is all zero.
struct InterpolationResult {
  CuttingParameter parameter;
  float confidence;   // 0.0 to 1.0
  bool extrapolated;  // outside the bracketing records
};

// Result of Testing::PerformInterpolation.  Field for field the same as
// InterpolationResult; a type of its own because its confidence follows
// PerformInterpolation's rule, not Interpolate's.
struct InterpolationResultInternal {
  CuttingParameter parameter;
  float confidence;
  bool extrapolated;
};

// Result of Database::GetSupportedThicknessRange.  With no match the minimum
// is the largest finite float, the maximum its negative and valid false.
struct SupportedThicknessRange {
  float min_thickness_mm;
  float max_thickness_mm;
  std::int32_t parameter_count;
  bool valid;  // parameter_count > 0
};

// Counters of the timed queries (FindExact, FindOptimal, Interpolate).
// Times are read from a monotonic clock: on x86-64 Linux where the kernel
// keeps time by the processor's time-stamp counter, that counter, once its
// rate has been measured against the system clock over the first 50 ms or
// more of timed queries; otherwise, and until then, the system's monotonic
// clock.
struct PerformanceMetrics {
  std::uint64_t total_queries;
  std::uint64_t queries_found;
  std::uint64_t queries_not_found;
  double avg_query_time_us;  // 0.0 when nothing was counted
  double max_query_time_us;  // 0.0 when nothing was counted
  double min_query_time_us;  // 1.0e9 when nothing was counted
};

// Result of Database::GetStatistics; all zero when not loaded.
struct DatabaseStats {
  std::uint32_t parameter_count;
  std::uint32_t vendor_count;
  std::uint32_t machine_count;
  std::uint32_t material_count;
  std::uint32_t consumable_set_count;
  std::uint64_t file_size_bytes;    // 0 for a database made by Create
  std::uint64_t uncompressed_size;  // header word at offset 120
  std::uint64_t reserved_a;         // always 0
  float compression_ratio;          // header word 116 / word 120, or 0
  std::uint32_t reserved_b[3];      // always 0
};

}  // namespace Sparlane

#endif  // SPARLANE_RESULTS_H_
