// FindOptimal and AdjustForMaxSpeed: choosing among a material's records by
// cut speed.
#include <algorithm>
#include <cmath>

#include "query/record_search.h"
#include "query/timed_query.h"

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

// The bucket walk as written, over the records.
void ScanBuckets(const std::vector<ThicknessBucket>& buckets,
                 const std::vector<CuttingParameter>& rows, FastestCandidate& pick) {
  for (const ThicknessBucket& b : buckets) {
    if (!BucketMayHold(b, pick.thickness, pick.tolerance)) continue;
    // Bucket records are trusted to be of the material, as the index says.
    const TableSpan run = ClampToTable(b.first, b.count, rows.size());
    for (std::uint64_t pos = run.first; pos < run.first + run.count; ++pos) {
      pick.Consider(pos, rows[pos]);
    }
  }
}

// The same choice from the bucket span's fastest record per thickness.  The
// candidates |t - thickness| <= tolerance form one run of the ascending
// thicknesses (the rounded difference grows with the distance on either
// side); of them the fastest wins, and of equal speeds the earliest record,
// which is the one the walk keeps.
void PickFromFastest(const ThicknessBucket& bucket, FastestRun run, FastestCandidate& pick) {
  if (!BucketMayHold(bucket, pick.thickness, pick.tolerance)) return;
  const float t = pick.thickness;
  const float tolerance = pick.tolerance;
  const auto within = [&](const FastestAtThickness& e) {
    return std::fabs(e.thickness_mm - t) <= tolerance;
  };
  const FastestAtThickness* e = std::partition_point(
      run.begin, run.end,
      [&](const FastestAtThickness& x) { return x.thickness_mm < t && !within(x); });
  for (; e != run.end && within(*e); ++e) {
    if (e->cut_speed_mm_min > pick.best_speed ||
        (pick.found && e->cut_speed_mm_min == pick.best_speed && e->position < pick.best)) {
      pick.best_speed = e->cut_speed_mm_min;
      pick.best = e->position;
      pick.found = true;
    }
  }
}

const CuttingParameter* SearchOptimal(const Store& s, std::uint16_t material_id, float thickness,
                                      float tolerance) {
  FastestCandidate pick{thickness, tolerance};
  const RecordIndexes& indexes = s.record_indexes();
  const std::vector<ThicknessBucket>* buckets = indexes.MaterialBuckets(material_id);
  if (buckets == nullptr) {
    ForEachOfMaterial(s, material_id, [&](std::size_t pos, const auto&) {
      pick.Consider(pos, s.records()[pos]);
    });
  } else if (const RecordIndexes::EntryRange* fastest =
                 buckets->size() == 1 ? indexes.Fastest(material_id, s.records().size()) : nullptr) {
    PickFromFastest(buckets->front(), indexes.RunOf(*fastest), pick);
  } else {
    ScanBuckets(*buckets, s.records(), pick);
  }
  return pick.found ? &s.records()[pick.best] : nullptr;
}

}  // namespace

std::optional<CuttingParameter> Database::FindOptimal(const std::string& material,
                                                      float thickness, float tolerance) const {
  const Store& s = *impl_;
  if (!s.loaded() || thickness < 0.0f || !std::isfinite(thickness)) return std::nullopt;
  const QueryTimer timer(s);
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  if (material_id == 0) return std::nullopt;

  const CuttingParameter* best = SearchOptimal(s, material_id, thickness, tolerance);

  if (best != nullptr) PrefetchRecord(best);
  timer.Finish("FindOptimal", best != nullptr, [&] {
    return FindOptimalDetail(material, thickness, best ? &best->cut_speed_mm_min : nullptr);
  });
  if (best == nullptr) return std::nullopt;
  return *best;
}

CuttingParameter Database::AdjustForMaxSpeed(const CuttingParameter& base, float max_speed) const {
  const Store& s = *impl_;
  if (!s.loaded() || !(max_speed < base.cut_speed_mm_min)) return base;

  // The fastest neighbour within the band that the machine can run; the
  // first of equal speeds.
  bool found = false;
  std::size_t best = 0;
  float best_speed = 0.0f;
  ForEachOfPair(s, base.material_id, base.machine_model_id, [&](std::size_t pos, const auto& row) {
    if (!(std::fabs(row.thickness_mm - base.thickness_mm) < kNeighbourBand)) return;
    const CuttingParameter& r = s.records()[pos];
    if (!(r.cut_speed_mm_min <= max_speed)) return;
    if (!found || r.cut_speed_mm_min > best_speed) {
      found = true;
      best = pos;
      best_speed = r.cut_speed_mm_min;
    }
  });
  if (found) return s.records()[best];

  CuttingParameter capped = base;
  capped.cut_speed_mm_min = max_speed;
  capped.flags |= kFlagSpeedCapped;
  return capped;
}

}  // namespace Sparlane
