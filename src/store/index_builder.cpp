#include "store/index_builder.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Sparlane {

namespace {

// Spans followed at once; a table that would need more is walked at Finish.
constexpr std::size_t kMaxSpills = 8;
constexpr std::size_t kCountingSortFrom = 65536;

template <typename T>
T& Slot(std::vector<T>& slots, std::uint16_t id) {
  if (id >= slots.size()) slots.resize(std::size_t{id} + 1, T{});
  return slots[id];
}

std::uint32_t MaterialOf(const CuttingParameter& r) { return r.material_id; }
std::uint32_t PairOf(const CuttingParameter& r) { return PairKey(r.material_id, r.machine_model_id); }

// Lays the id map out, before any is inserted, for the keys key_at(0 .. n-1),
// sorted (repeats side by side): as many keys as changes from one to the next.
template <typename KeyAt>
void PlanIds(GroupMap& ids, std::size_t n, KeyAt key_at) {
  std::uint32_t high = 0;
  std::uint32_t low = 0;
  std::size_t distinct = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const std::uint32_t key = key_at(i);
    high = std::max(high, key >> 16);
    low = std::max(low, key & 0xFFFFu);
    if (i == 0 || key != key_at(i - 1)) ++distinct;
  }
  ids.Plan(high, low, distinct);
}

// Sorts (id << 32 | position) items.  Large tables take two stable 16-bit
// counting passes over the id; the order is the same as a plain sort's.
void SortItems(std::vector<std::uint64_t>& items, std::uint32_t largest_id) {
  if (items.size() < kCountingSortFrom) {
    std::sort(items.begin(), items.end());
    return;
  }
  std::vector<std::uint64_t> scratch(items.size());
  for (int shift : {32, 48}) {
    if (shift == 48 && largest_id <= 0xFFFF) break;  // no high digit to sort by
    std::vector<std::uint32_t> next(65537, 0);
    for (std::uint64_t item : items) ++next[((item >> shift) & 0xFFFF) + 1];
    for (std::size_t d = 0; d < 65536; ++d) next[d + 1] += next[d];
    for (std::uint64_t item : items) scratch[next[(item >> shift) & 0xFFFF]++] = item;
    items.swap(scratch);
  }
}

// A table not grouped by id: positions sorted by id, ascending within an id.
template <typename IdOf>
void GroupSorted(const std::vector<CuttingParameter>& table, IdOf id_of, PositionGroups& kind) {
  kind = PositionGroups();
  const std::size_t n = table.size();
  std::vector<std::uint64_t> items(n);
  std::uint32_t largest = 0;
  for (std::size_t pos = 0; pos < n; ++pos) {
    const std::uint32_t id = id_of(table[pos]);
    if (id > largest) largest = id;
    items[pos] = (static_cast<std::uint64_t>(id) << 32) | pos;
  }
  SortItems(items, largest);
  const auto id_at = [&](std::size_t i) { return static_cast<std::uint32_t>(items[i] >> 32); };
  PlanIds(kind.ids, n, id_at);
  kind.grouped.resize(n);
  std::size_t begin = 0;
  while (begin < n) {
    const std::uint32_t id = static_cast<std::uint32_t>(items[begin] >> 32);
    std::size_t end = begin;
    for (; end < n && static_cast<std::uint32_t>(items[end] >> 32) == id; ++end) {
      kind.grouped[end] = static_cast<std::uint32_t>(items[end]);
    }
    AddGroup(kind, id, static_cast<std::uint32_t>(begin), static_cast<std::uint32_t>(end - begin),
             kind.grouped[begin]);
    begin = end;
  }
}

}  // namespace

void IndexBuilder::Runs::Add(std::uint32_t key, std::size_t pos) {
  keys.push_back(key);
  starts.push_back(static_cast<std::uint32_t>(pos));
}

// Each run ends where the next begins; the map is sized once.  A pair's
// group also learns where FindExact's bisection over its material's bucket
// enters the run (buckets: by material id, complete).
void IndexBuilder::Runs::MakeGroups(PositionGroups& kind, std::size_t n,
                                    const std::vector<ThicknessBucket>* buckets) const {
  kind = PositionGroups();
  PlanIds(kind.ids, keys.size(), [&](std::size_t i) { return keys[i]; });
  kind.groups.reserve(keys.size());
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const std::size_t end = i + 1 < keys.size() ? starts[i + 1] : n;
    GroupRef& ref =
        AddGroup(kind, keys[i], starts[i], static_cast<std::uint32_t>(end - starts[i]), starts[i]);
    if (buckets == nullptr) continue;
    const ThicknessBucket& b = (*buckets)[keys[i] >> 16];
    std::uint64_t lo = std::min<std::uint64_t>(b.first, n);
    std::uint64_t hi = lo + std::min<std::uint64_t>(b.count, n - lo);
    EnterRun(lo, hi, starts[i], end);
    ref.entry_lo = static_cast<std::uint32_t>(lo);
    ref.entry_hi = static_cast<std::uint32_t>(hi);
    ref.entry_known = true;
  }
}

// Records come in runs of one (material, machine) pair; the run's material
// bucket and machine span are worked on in locals and stored back when the
// pair changes, which gives the same indexes as updating them record by
// record.
void IndexBuilder::Add(const CuttingParameter* records, std::size_t count) {
  std::size_t i = 0;
  while (i < count) {
    const CuttingParameter& head = records[i];
    const std::uint32_t pair = PairKey(head.material_id, head.machine_model_id);
    if (next_ == 0 || pair != pair_) StartPair(head, pair);
    std::size_t end = i + 1;
    while (end < count && PairKey(records[end].material_id, records[end].machine_model_id) == pair) {
      ++end;
    }
    AddRun(records + i, end - i);
    i = end;
  }
}

void IndexBuilder::StartPair(const CuttingParameter& head, std::uint32_t pair) {
  const std::size_t pos = next_;
  if (pos != 0) StoreRunState();
  if (pos != 0 && pair < pair_) pair_ordered_ = false;
  if (pos == 0 || head.material_id != material_) {
    if (pos != 0 && head.material_id < material_) {
      material_ordered_ = false;
      spills_.clear();
    }
    if (material_ordered_) StartMaterial(head.material_id, pos);
  }
  if (pair_ordered_) pair_runs_.Add(pair, pos);
  pair_ = pair;
  material_ = head.material_id;
  machine_ = head.machine_model_id;
  bucket_ = Slot(buckets_, material_);
  span_ = Slot(machines_, machine_);
  if (bucket_.count == 0) materials_seen_.push_back(material_);
  if (span_.count == 0) machines_seen_.push_back(machine_);
}

void IndexBuilder::StoreRunState() {
  buckets_[material_] = bucket_;
  machines_[machine_] = span_;
}

void IndexBuilder::AddRun(const CuttingParameter* records, std::size_t count) {
  LargeArray<float>& column = positions_.thickness;
  column_room_.Before(column, count);
  const std::size_t at = column.size();
  column.resize(at + count);
  float* thickness = column.data() + at;

  // The bucket keeps the strictly thinnest record (the earliest of equals);
  // where it moves, the material's span starts again.
  ThicknessBucket b = bucket_;
  std::size_t span_start = count;  // none in this run
  for (std::size_t k = 0; k < count; ++k) {
    const float t = records[k].thickness_mm;
    thickness[k] = t;
    if (b.count == 0) {
      b = ThicknessBucket{t, t, next_ + k, 0};
      span_start = k;
    } else if (t < b.min_thickness) {
      b.min_thickness = t;
      b.first = next_ + k;
      span_start = k;
    }
    if (t >= b.max_thickness) b.max_thickness = t;  // keeps -0.0 vs 0.0 exact
    ++b.count;
  }
  bucket_ = b;

  if (material_ordered_) {
    const auto first = static_cast<std::uint32_t>(next_);
    if (!spills_.empty()) FeedSpills(records, count, first);
    if (span_start == count) {
      run_.Add(records, count, first);
    } else {
      run_.Reset();
      run_.Add(records + span_start, count - span_start, first + static_cast<std::uint32_t>(span_start));
    }
  }
  if (span_.count == 0) span_.first = next_;
  span_.count += count;
  next_ += count;
}

void IndexBuilder::StartMaterial(std::uint16_t material, std::size_t pos) {
  if (pos != 0) EndMaterialRun(false);
  material_runs_.Add(material, pos);
  material_start_ = pos;
}

// The material of the run that ends here has all its records: its span is
// [first, first + count), of which the tracker has seen [first, run end).
// At the table's end the rest of the span is cut off.
void IndexBuilder::EndMaterialRun(bool table_ends) {
  const ThicknessBucket& b = buckets_[material_];
  const std::uint64_t beyond = b.first - material_start_;  // the span's records past the run
  if (beyond == 0 || table_ends) {
    KeepFastest(material_, run_);
  } else if (spills_.size() < kMaxSpills) {
    spills_.push_back(Spill{material_, beyond, std::move(run_)});
    run_ = FastestTracker();
  } else {
    walk_later_.push_back(material_);
  }
}

void IndexBuilder::FeedSpills(const CuttingParameter* records, std::size_t count,
                              std::uint32_t first) {
  for (std::size_t i = 0; i < spills_.size();) {
    Spill& s = spills_[i];
    const std::size_t take = static_cast<std::size_t>(std::min<std::uint64_t>(s.remaining, count));
    s.tracker.Add(records, take, first);
    s.remaining -= take;
    if (s.remaining == 0) {
      KeepFastest(s.material, s.tracker);
      std::swap(s, spills_.back());
      spills_.pop_back();
    } else {
      ++i;
    }
  }
}

void IndexBuilder::KeepFastest(std::uint16_t material, FastestTracker& tracker) {
  RecordIndexes::EntryRange range;
  range.begin = static_cast<std::uint32_t>(fastest_.size());
  tracker.AppendSorted(fastest_);
  range.count = static_cast<std::uint32_t>(fastest_.size() - range.begin);
  fastest_ranges_.Set(material, range);
}

// The span as the literal walk reads it, cut at the table's end.
void IndexBuilder::WalkSpan(const std::vector<CuttingParameter>& table, std::uint16_t material) {
  const ThicknessBucket& b = buckets_[material];
  const std::size_t end = static_cast<std::size_t>(std::min<std::uint64_t>(b.first + b.count, table.size()));
  const auto first = static_cast<std::size_t>(b.first);
  run_.Reset();
  if (first < end) run_.Add(table.data() + first, end - first, static_cast<std::uint32_t>(first));
  KeepFastest(material, run_);
}

void IndexBuilder::Finish(const std::vector<CuttingParameter>& table, RecordIndexes& indexes,
                          PairIndex& positions) {
  const std::size_t n = next_;
  if (n != 0) StoreRunState();
  const bool fits_32_bits = n < std::numeric_limits<std::uint32_t>::max();
  if (material_ordered_) {
    if (n != 0) EndMaterialRun(true);
    for (Spill& s : spills_) KeepFastest(s.material, s.tracker);  // cut short by the table's end
    for (std::uint16_t material : walk_later_) WalkSpan(table, material);
  } else if (fits_32_bits) {
    fastest_ranges_.Clear();
    fastest_.clear();
    for (std::uint16_t material : materials_seen_) WalkSpan(table, material);
  }

  indexes.Clear();
  bool spans_fit = true;
  for (std::uint16_t id : materials_seen_) {
    const ThicknessBucket& b = buckets_[id];
    indexes.material_ranges.Set(id, {b});
    if (b.first + b.count > n) spans_fit = false;
  }
  for (std::uint16_t id : machines_seen_) indexes.machine_records.Set(id, machines_[id]);
  if (fits_32_bits) {
    indexes.fastest_ranges = std::move(fastest_ranges_);
    indexes.fastest = std::move(fastest_);
  }
  indexes.fastest_table_size = n;
  indexes.fastest_spans_fit = spans_fit;

  // Positions are held in 32 bits; a larger table is simply scanned.
  positions = PairIndex();
  if (!fits_32_bits) {
    positions.usable = false;
    return;
  }
  if (material_ordered_) {
    material_runs_.MakeGroups(positions_.materials, n, nullptr);
  } else {
    GroupSorted(table, MaterialOf, positions_.materials);
  }
  if (pair_ordered_) {
    pair_runs_.MakeGroups(positions_.pairs, n, &buckets_);
  } else {
    GroupSorted(table, PairOf, positions_.pairs);
  }
  positions_.covered = n;
  positions_.pair_ordered = pair_ordered_;
  positions = std::move(positions_);
}

void BuildIndexes(const std::vector<CuttingParameter>& table, RecordIndexes& indexes,
                  PairIndex& positions) {
  IndexBuilder builder;
  builder.Reserve(table.size());
  builder.Add(table.data(), table.size());
  builder.Finish(table, indexes, positions);
}

}  // namespace Sparlane
