// Searches over the parameter table shared by the queries: the bisections
// that assume (material, machine, thickness) order and the per-material and
// per-pair walks.  Each search reads rows through the record's field names,
// so one that needs only thickness_mm runs unchanged over the records or
// over the position index's thickness column; positions and decisions are
// the same either way.
#ifndef SPARLANE_QUERY_RECORD_SEARCH_H_
#define SPARLANE_QUERY_RECORD_SEARCH_H_

#include <cmath>
#include <cstdint>
#include <vector>

#include "store/pair_index.h"
#include "store/store.h"

namespace Sparlane {

// Asks for the cache line of a record a query is about to copy, so the fetch
// overlaps the clock and counter work that comes first.
inline void PrefetchRecord(const CuttingParameter* record) {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(record);
#else
  (void)record;
#endif
}

// Asks for the first cache lines of a pair's run in the thickness column at
// once: a bisection's probes depend on each other, so without this each
// line it reaches is a miss of its own.
inline void PrefetchColumnRun(const float* column, std::uint64_t first, std::uint64_t count) {
#if defined(__GNUC__) || defined(__clang__)
  constexpr std::uint64_t kLines = 4;  // a few dozen thicknesses; longer runs are rare
  constexpr std::uint64_t kPerLine = 64 / sizeof(float);
  const std::uint64_t shown = count < kLines * kPerLine ? count : kLines * kPerLine;
  for (std::uint64_t i = 0; i < shown; i += kPerLine) __builtin_prefetch(column + first + i);
  if (shown > 0) __builtin_prefetch(column + first + shown - 1);
#else
  (void)column;
  (void)first;
  (void)count;
#endif
}

// A run of table positions [first, first + count).
struct TableSpan {
  std::uint64_t first = 0;
  std::uint64_t count = 0;
};

// An index span cut to the table: positions past its end hold no record.
inline TableSpan ClampToTable(std::uint64_t first, std::uint64_t count, std::size_t table_size) {
  const std::uint64_t size = table_size;
  if (first >= size) return TableSpan{first, 0};
  return TableSpan{first, count < size - first ? count : size - first};
}

// A thickness-index bucket can hold the thickness within tolerance.  A NaN
// tolerance qualifies no bucket.
inline bool BucketMayHold(const ThicknessBucket& b, float thickness, float tolerance) {
  return thickness >= b.min_thickness - tolerance && tolerance + b.max_thickness >= thickness;
}

// One table position's thickness, read like a record's field.
struct ThicknessRow {
  float thickness_mm;
};

// The thickness column as rows, for the searches that read nothing else.
class ThicknessRows {
 public:
  explicit ThicknessRows(const PairIndex& index) : column_(index.thickness) {}
  ThicknessRow operator[](std::uint64_t pos) const {
    return ThicknessRow{column_[static_cast<std::size_t>(pos)]};
  }
  std::size_t size() const { return column_.size(); }

 private:
  const LargeArray<float>& column_;
};

// Calls search(rows) with the thickness column when it describes the table
// as it is, else with the records.  The search may read thickness_mm only.
template <typename Search>
auto WithThicknessRows(const Store& store, Search&& search) {
  if (const PairIndex* index = store.current_pair_index()) return search(ThicknessRows(*index));
  return search(store.records());
}

// First position in [lo, hi) where before(row) turns false.
template <typename Rows, typename Before>
std::uint64_t PartitionPoint(const Rows& rows, std::uint64_t lo, std::uint64_t hi, Before before) {
  while (lo < hi) {
    const std::uint64_t mid = lo + (hi - lo) / 2;
    if (before(rows[mid])) {
      lo = mid + 1;
    } else {
      hi = mid;
    }
  }
  return lo;
}

// The pair's run by bisection: the material's run is its lower and upper
// bound over the whole table; the pair's run is the machine's lower and upper
// bound within the material's run, comparing the machine id alone.  Each
// bound is its own bisection over the stated range, so on a table out of
// order the span is exactly what those four bisections give.  An upper bound
// never falls below the lower bound over the same range.
template <typename Rows>
TableSpan BisectPairSpan(const Rows& rows, std::uint16_t material_id, std::uint16_t machine_id) {
  const std::uint64_t size = rows.size();
  const std::uint64_t material_begin =
      PartitionPoint(rows, 0, size, [&](const auto& r) { return r.material_id < material_id; });
  const std::uint64_t material_end =
      PartitionPoint(rows, 0, size, [&](const auto& r) { return r.material_id <= material_id; });
  const std::uint64_t begin = PartitionPoint(
      rows, material_begin, material_end,
      [&](const auto& r) { return r.machine_model_id < machine_id; });
  const std::uint64_t end = PartitionPoint(
      rows, material_begin, material_end,
      [&](const auto& r) { return r.machine_model_id <= machine_id; });
  return TableSpan{begin, end - begin};
}

// The same span.  On a table in (material, machine) order the bisection can
// only land on the pair's contiguous run, which the pair index knows.
TableSpan FindPairSpan(const Store& store, std::uint16_t material_id, std::uint16_t machine_id);

// Position of the row within tolerance that the bisection over span meets
// first, or span's end clamped to the table when there is none.
template <typename Rows>
std::uint64_t BisectWithinTolerance(const Rows& rows, TableSpan span, std::uint16_t material_id,
                                    std::uint16_t machine_id, float thickness, float tolerance,
                                    bool* found) {
  span = ClampToTable(span.first, span.count, rows.size());
  std::uint64_t lo = span.first;
  std::uint64_t hi = span.first + span.count;
  *found = true;
  while (lo < hi) {
    const std::uint64_t mid = lo + (hi - lo) / 2;
    const auto& r = rows[mid];
    const bool same_pair = r.material_id == material_id && r.machine_model_id == machine_id;
    if (same_pair && std::fabs(r.thickness_mm - thickness) <= tolerance) return mid;
    if (r.material_id < material_id) {
      lo = mid + 1;
    } else if (r.material_id > material_id) {
      hi = mid;
    } else if (r.machine_model_id < machine_id) {
      lo = mid + 1;
    } else if (r.machine_model_id > machine_id) {
      hi = mid;
    } else if (r.thickness_mm < thickness - tolerance) {
      lo = mid + 1;
    } else if (r.thickness_mm > thickness + tolerance) {
      hi = mid;
    } else {
      return mid;  // neither side: NaN thickness or tolerance
    }
  }
  *found = false;
  return lo;
}

// The bisection of BisectWithinToleranceInPairRun (below) from where it
// first probes inside the pair's run.
template <typename Rows>
std::uint64_t BisectInPairRunFrom(const Rows& rows, std::uint64_t lo, std::uint64_t hi,
                                  TableSpan run, float thickness, float tolerance, bool* found) {
  const std::uint64_t run_end = run.first + run.count;
  *found = true;
  while (lo < hi) {
    const std::uint64_t mid = lo + (hi - lo) / 2;
    if (mid < run.first) {
      lo = mid + 1;
      continue;
    }
    if (mid >= run_end) {
      hi = mid;
      continue;
    }
    const float t = rows[mid].thickness_mm;
    if (std::fabs(t - thickness) <= tolerance) return mid;
    if (t < thickness - tolerance) {
      lo = mid + 1;
    } else if (t > thickness + tolerance) {
      hi = mid;
    } else {
      return mid;  // neither side: NaN thickness or tolerance
    }
  }
  *found = false;
  return lo;
}

// The same search on a table in (material, machine) order, given the pair's
// run (its positions, contiguous in such a table).  Every row before the run
// sorts below the pair and every row after it above, so the bisection's
// steps outside the run are known without reading those rows (EnterRun);
// only probes inside the run touch memory.  Positions and results equal the
// plain bisection's.
template <typename Rows>
std::uint64_t BisectWithinToleranceInPairRun(const Rows& rows, TableSpan span, TableSpan run,
                                             float thickness, float tolerance, bool* found) {
  span = ClampToTable(span.first, span.count, rows.size());
  std::uint64_t lo = span.first;
  std::uint64_t hi = span.first + span.count;
  EnterRun(lo, hi, run.first, run.first + run.count);
  return BisectInPairRunFrom(rows, lo, hi, run, thickness, tolerance, found);
}

// First position of span whose thickness is not below thickness (bisection).
template <typename Rows>
std::uint64_t LowerBoundThickness(const Rows& rows, TableSpan span, float thickness) {
  return PartitionPoint(rows, span.first, span.first + span.count,
                        [&](const auto& r) { return r.thickness_mm < thickness; });
}

// Visits, in table order, the position and thickness of every record of the
// material: visit(position, row), where the row has thickness_mm (and may be
// the record itself).
template <typename Visit>
void ForEachOfMaterial(const Store& store, std::uint16_t material_id, Visit&& visit) {
  if (const PairIndex* index = store.current_pair_index()) {
    const GroupRef* group = FindMaterialGroup(*index, material_id);
    if (group == nullptr) return;
    ForEachPosition(index->materials, *group,
                    [&](std::uint32_t pos) { visit(pos, ThicknessRow{index->thickness[pos]}); });
    return;
  }
  const std::vector<CuttingParameter>& records = store.records();
  for (std::size_t pos = 0; pos < records.size(); ++pos) {
    if (records[pos].material_id == material_id) visit(pos, records[pos]);
  }
}

// Visits, in table order, every record of the material and machine, as
// ForEachOfMaterial does.
template <typename Visit>
void ForEachOfPair(const Store& store, std::uint16_t material_id, std::uint16_t machine_id,
                   Visit&& visit) {
  if (const PairIndex* index = store.current_pair_index()) {
    const GroupRef* group = FindPairGroup(*index, material_id, machine_id);
    if (group == nullptr) return;
    ForEachPosition(index->pairs, *group,
                    [&](std::uint32_t pos) { visit(pos, ThicknessRow{index->thickness[pos]}); });
    return;
  }
  const std::vector<CuttingParameter>& records = store.records();
  for (std::size_t pos = 0; pos < records.size(); ++pos) {
    const CuttingParameter& r = records[pos];
    if (r.material_id == material_id && r.machine_model_id == machine_id) visit(pos, r);
  }
}

// The same walk handing over the records themselves, for a search that
// returns one of them: a pair's records lie together in a table in pair
// order, so reading them costs the lines the answer needs anyway, where
// the thickness column would be one more page to reach at random.
template <typename Visit>
void ForEachRecordOfPair(const Store& store, std::uint16_t material_id, std::uint16_t machine_id,
                         Visit&& visit) {
  const std::vector<CuttingParameter>& records = store.records();
  ForEachOfPair(store, material_id, machine_id,
                [&](std::size_t pos, const auto&) { visit(pos, records[pos]); });
}

}  // namespace Sparlane

#endif  // SPARLANE_QUERY_RECORD_SEARCH_H_
