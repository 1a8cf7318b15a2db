// FindExact: a record within tolerance through the thickness index.
#include <cmath>

#include "query/query_clock.h"
#include "query/query_log.h"
#include "query/record_search.h"
#include "store/indexes.h"

namespace Sparlane {

namespace {

// Rows are the records or their compact keys: the same probes either way.
template <typename Rows>
const CuttingParameter* SearchExact(const DatabaseImpl& d, const Rows& rows,
                                    std::uint16_t material_id, std::uint16_t machine_id,
                                    float thickness, float tolerance) {
  bool found = false;
  auto ranges = d.material_ranges.find(material_id);
  if (ranges == d.material_ranges.end()) {
    const TableSpan span = FindPairSpan(d, material_id, machine_id);
    if (span.count == 0) return nullptr;
    const std::uint64_t pos =
        BisectWithinTolerance(rows, span, material_id, machine_id, thickness, tolerance, &found);
    return found ? &d.parameters[pos] : nullptr;
  }
  for (const ThicknessBucket& bucket : ranges->second) {
    if (!BucketMayHold(bucket, thickness, tolerance)) continue;
    const std::uint64_t pos =
        BisectWithinTolerance(rows, TableSpan{bucket.first, bucket.count}, material_id,
                              machine_id, thickness, tolerance, &found);
    if (found) return &d.parameters[pos];
  }
  return nullptr;
}

// On a table in (material, machine) order only the pair's own run is read.
const CuttingParameter* SearchExactInPairOrder(const DatabaseImpl& d, std::uint16_t material_id,
                                               std::uint16_t machine_id, float thickness,
                                               float tolerance) {
  const PairIndex& index = d.pair_index;
  const PositionGroup* group = FindPairGroup(index, material_id, machine_id);
  if (group == nullptr) return nullptr;  // no row of the pair can match
  const TableSpan run{group->first_position, group->size()};
  bool found = false;
  auto ranges = d.material_ranges.find(material_id);
  if (ranges == d.material_ranges.end()) {
    const std::uint64_t pos =
        BisectWithinToleranceInPairRun(index.keys, run, run, thickness, tolerance, &found);
    return found ? &d.parameters[pos] : nullptr;
  }
  for (const ThicknessBucket& bucket : ranges->second) {
    if (!BucketMayHold(bucket, thickness, tolerance)) continue;
    const std::uint64_t pos = BisectWithinToleranceInPairRun(
        index.keys, TableSpan{bucket.first, bucket.count}, run, thickness, tolerance, &found);
    if (found) return &d.parameters[pos];
  }
  return nullptr;
}

}  // namespace

std::optional<CuttingParameter> Database::FindExact(const std::string& material, float thickness,
                                                    const std::string& machine_model,
                                                    float tolerance) const {
  const DatabaseImpl& d = *impl_;
  if (!d.loaded || thickness < 0.0f || !std::isfinite(thickness)) return std::nullopt;
  const std::int64_t start = MonotonicNanos();
  const std::uint16_t material_id = ResolveName(d.material_ids, material);
  const std::uint16_t machine_id = ResolveName(d.machine_ids, machine_model);
  if (material_id == 0 || machine_id == 0) return std::nullopt;

  const CuttingParameter* hit =
      PairIndexCurrent(d) && d.pair_index.pair_ordered
          ? SearchExactInPairOrder(d, material_id, machine_id, thickness, tolerance)
          : WithSearchRows(d, [&](const auto& rows) {
              return SearchExact(d, rows, material_id, machine_id, thickness, tolerance);
            });

  const double elapsed_us = ElapsedMicros(start, MonotonicNanos());
  d.metrics.Record(elapsed_us, hit != nullptr);
  if (d.query_logging) {
    LogQuery("FindExact", FindExactDetail(material, thickness, machine_model, hit != nullptr),
             elapsed_us);
  }
  if (hit == nullptr) return std::nullopt;
  return *hit;
}

}  // namespace Sparlane
