// FindExact: a record within tolerance through the thickness index.
#include <cmath>

#include "query/record_search.h"
#include "query/timed_query.h"

namespace Sparlane {

namespace {

// The bisection as written, over the records themselves.
const CuttingParameter* SearchExact(const Store& s, std::uint16_t material_id,
                                    std::uint16_t machine_id, float thickness, float tolerance) {
  const std::vector<CuttingParameter>& rows = s.records();
  bool found = false;
  const std::vector<ThicknessBucket>* buckets = s.record_indexes().MaterialBuckets(material_id);
  if (buckets == nullptr) {
    const TableSpan span = FindPairSpan(s, material_id, machine_id);
    if (span.count == 0) return nullptr;
    const std::uint64_t pos =
        BisectWithinTolerance(rows, span, material_id, machine_id, thickness, tolerance, &found);
    return found ? &s.records()[pos] : nullptr;
  }
  for (const ThicknessBucket& bucket : *buckets) {
    if (!BucketMayHold(bucket, thickness, tolerance)) continue;
    const std::uint64_t pos =
        BisectWithinTolerance(rows, TableSpan{bucket.first, bucket.count}, material_id,
                              machine_id, thickness, tolerance, &found);
    if (found) return &s.records()[pos];
  }
  return nullptr;
}

// On a table in (material, machine) order only the pair's own run is read,
// and of it only the thickness column.
const CuttingParameter* SearchExactInPairOrder(const Store& s, const PairIndex& index,
                                               std::uint16_t material_id,
                                               std::uint16_t machine_id, float thickness,
                                               float tolerance) {
  const GroupRef* group = FindPairGroup(index, material_id, machine_id);
  if (group == nullptr) return nullptr;  // no row of the pair can match
  const TableSpan run{group->first_position, group->size};
  PrefetchColumnRun(index.thickness.data(), run.first, run.count);
  const ThicknessRows rows(index);
  bool found = false;
  const std::vector<ThicknessBucket>* buckets = s.record_indexes().MaterialBuckets(material_id);
  if (buckets == nullptr) {
    const std::uint64_t pos =
        BisectWithinToleranceInPairRun(rows, run, run, thickness, tolerance, &found);
    return found ? &s.records()[pos] : nullptr;
  }
  // The bucket as the rebuild made it: its bisection enters the run where
  // the index noted.
  if (group->entry_known && buckets->size() == 1 &&
      s.record_indexes().BucketAsBuilt(material_id, s.records().size())) {
    if (!BucketMayHold(buckets->front(), thickness, tolerance)) return nullptr;
    const std::uint64_t pos = BisectInPairRunFrom(rows, group->entry_lo, group->entry_hi, run,
                                                  thickness, tolerance, &found);
    return found ? &s.records()[pos] : nullptr;
  }
  for (const ThicknessBucket& bucket : *buckets) {
    if (!BucketMayHold(bucket, thickness, tolerance)) continue;
    const std::uint64_t pos = BisectWithinToleranceInPairRun(
        rows, TableSpan{bucket.first, bucket.count}, run, thickness, tolerance, &found);
    if (found) return &s.records()[pos];
  }
  return nullptr;
}

}  // namespace

std::optional<CuttingParameter> Database::FindExact(const std::string& material, float thickness,
                                                    const std::string& machine_model,
                                                    float tolerance) const {
  const Store& s = *impl_;
  if (!s.loaded() || thickness < 0.0f || !std::isfinite(thickness)) return std::nullopt;
  const QueryTimer timer(s);
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  const std::uint16_t machine_id = s.IdOf(NameKind::kMachine, machine_model);
  if (material_id == 0 || machine_id == 0) return std::nullopt;

  const PairIndex* index = s.current_pair_index();
  const CuttingParameter* hit =
      index != nullptr && index->pair_ordered
          ? SearchExactInPairOrder(s, *index, material_id, machine_id, thickness, tolerance)
          : SearchExact(s, material_id, machine_id, thickness, tolerance);

  if (hit != nullptr) PrefetchRecord(hit);
  timer.Finish("FindExact", hit != nullptr, [&] {
    return FindExactDetail(material, thickness, machine_model, hit != nullptr);
  });
  if (hit == nullptr) return std::nullopt;
  return *hit;
}

}  // namespace Sparlane
