// FindOptimal and AdjustForMaxSpeed: choosing among a material's records by
// cut speed.
#include <cmath>

#include "query/query_clock.h"
#include "query/query_log.h"
#include "query/record_search.h"
#include "store/indexes.h"

namespace Sparlane {

namespace {

constexpr float kNeighbourBand = 0.1f;

// Keeps the strictly fastest candidate, so the first of equal speeds wins and
// a speed of 0 or less never does.
struct FastestCandidate {
  float thickness;
  float tolerance;
  float best_speed = 0.0f;
  std::uint64_t best = 0;
  bool found = false;

  template <typename Row>
  void Consider(std::uint64_t pos, const Row& r) {
    if (std::fabs(r.thickness_mm - thickness) <= tolerance && r.cut_speed_mm_min > best_speed) {
      best_speed = r.cut_speed_mm_min;
      best = pos;
      found = true;
    }
  }
};

template <typename Rows>
void ScanBuckets(const std::vector<ThicknessBucket>& buckets, const Rows& rows,
                 FastestCandidate& pick) {
  for (const ThicknessBucket& b : buckets) {
    if (!BucketMayHold(b, pick.thickness, pick.tolerance)) continue;
    // Bucket records are trusted to be of the material, as the index says.
    const TableSpan run = ClampToTable(b.first, b.count, rows.size());
    for (std::uint64_t pos = run.first; pos < run.first + run.count; ++pos) {
      pick.Consider(pos, rows[pos]);
    }
  }
}

const CuttingParameter* SearchOptimal(const DatabaseImpl& d, std::uint16_t material_id,
                                      float thickness, float tolerance) {
  FastestCandidate pick{thickness, tolerance};
  auto ranges = d.material_ranges.find(material_id);
  if (ranges == d.material_ranges.end()) {
    ForEachOfMaterial(d, material_id,
                      [&](std::size_t pos, const auto& r) { pick.Consider(pos, r); });
  } else {
    WithSearchRows(d, [&](const auto& rows) {
      ScanBuckets(ranges->second, rows, pick);
      return 0;
    });
  }
  return pick.found ? &d.parameters[pick.best] : nullptr;
}

}  // namespace

std::optional<CuttingParameter> Database::FindOptimal(const std::string& material,
                                                      float thickness, float tolerance) const {
  const DatabaseImpl& d = *impl_;
  if (!d.loaded || thickness < 0.0f || !std::isfinite(thickness)) return std::nullopt;
  const std::int64_t start = MonotonicNanos();
  const std::uint16_t material_id = ResolveName(d.material_ids, material);
  if (material_id == 0) return std::nullopt;

  const CuttingParameter* best = SearchOptimal(d, material_id, thickness, tolerance);

  const double elapsed_us = ElapsedMicros(start, MonotonicNanos());
  d.metrics.Record(elapsed_us, best != nullptr);
  if (d.query_logging) {
    LogQuery("FindOptimal",
             FindOptimalDetail(material, thickness, best ? &best->cut_speed_mm_min : nullptr),
             elapsed_us);
  }
  if (best == nullptr) return std::nullopt;
  return *best;
}

CuttingParameter Database::AdjustForMaxSpeed(const CuttingParameter& base, float max_speed) const {
  const DatabaseImpl& d = *impl_;
  if (!d.loaded || !(max_speed < base.cut_speed_mm_min)) return base;

  // The fastest neighbour within the band that the machine can run; the
  // first of equal speeds.
  bool found = false;
  std::size_t best = 0;
  float best_speed = 0.0f;
  ForEachOfPair(d, base.material_id, base.machine_model_id, [&](std::size_t pos, const auto& r) {
    if (!(std::fabs(r.thickness_mm - base.thickness_mm) < kNeighbourBand)) return;
    if (!(r.cut_speed_mm_min <= max_speed)) return;
    if (!found || r.cut_speed_mm_min > best_speed) {
      found = true;
      best = pos;
      best_speed = r.cut_speed_mm_min;
    }
  });
  if (found) return d.parameters[best];

  CuttingParameter capped = base;
  capped.cut_speed_mm_min = max_speed;
  capped.flags |= kFlagSpeedCapped;
  return capped;
}

}  // namespace Sparlane
