#include "store/record_indexes.h"

namespace Sparlane {

namespace {

// Accumulates both record indexes in id-addressed arrays that grow only to
// the largest id met, so a rebuild costs one pass and no hashing per record.
//
// Sorting a material's positions by thickness and keeping the first and last
// gives the same bucket as keeping the strictly thinnest record (the earliest
// of equals), the largest thickness (the last of equals) and the count.
class IndexBuilder {
 public:
  void Add(std::size_t pos, const CuttingParameter& r) {
    AddMaterial(pos, r);
    AddMachine(pos, r);
  }

  void WriteTo(RecordIndexes& indexes) const {
    indexes.material_ranges.reserve(materials_seen_.size());
    for (std::uint16_t id : materials_seen_) indexes.material_ranges[id] = {buckets_[id]};
    indexes.machine_records.reserve(machines_seen_.size());
    for (std::uint16_t id : machines_seen_) indexes.machine_records[id] = spans_[id];
  }

 private:
  void AddMaterial(std::size_t pos, const CuttingParameter& r) {
    ThicknessBucket& b = Slot(buckets_, r.material_id);
    const float t = r.thickness_mm;
    if (b.count == 0) {
      b = ThicknessBucket{t, t, pos, 1};
      materials_seen_.push_back(r.material_id);
      return;
    }
    if (t < b.min_thickness) {
      b.min_thickness = t;
      b.first = pos;
    }
    if (t >= b.max_thickness) b.max_thickness = t;  // keeps -0.0 vs 0.0 exact
    ++b.count;
  }

  void AddMachine(std::size_t pos, const CuttingParameter& r) {
    MachineSpan& s = Slot(spans_, r.machine_model_id);
    if (s.count++ == 0) {
      s.first = pos;
      machines_seen_.push_back(r.machine_model_id);
    }
  }

  template <typename T>
  static T& Slot(std::vector<T>& slots, std::uint16_t id) {
    if (id >= slots.size()) slots.resize(std::size_t{id} + 1, T{});
    return slots[id];
  }

  std::vector<ThicknessBucket> buckets_;
  std::vector<std::uint16_t> materials_seen_;
  std::vector<MachineSpan> spans_;
  std::vector<std::uint16_t> machines_seen_;
};

}  // namespace

void RecordIndexes::Rebuild(const std::vector<CuttingParameter>& records) {
  Clear();
  IndexBuilder builder;
  for (std::size_t pos = 0; pos < records.size(); ++pos) builder.Add(pos, records[pos]);
  builder.WriteTo(*this);
}

}  // namespace Sparlane
