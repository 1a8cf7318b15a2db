// The name indexes and the two record indexes.
#include "store/indexes.h"

#include <vector>

namespace Sparlane {

namespace {

void IndexNames(const std::vector<std::string>& names, NameIndex& index) {
  index.clear();
  for (std::size_t i = 0; i < names.size(); ++i) {
    index[names[i]] = static_cast<std::uint16_t>(i + 1);
  }
}

constexpr std::size_t kIdSpace = 65536;

}  // namespace

void BuildNameIndexes(DatabaseImpl& impl) {
  IndexNames(impl.vendors, impl.vendor_ids);
  IndexNames(impl.machines, impl.machine_ids);
  IndexNames(impl.materials, impl.material_ids);
}

// Sorting each material's positions by thickness and keeping the first and
// last is the same as one pass that keeps the strictly thinnest record (the
// earliest of equals), the largest thickness and the count; the pass avoids
// the per-material sort.
void RebuildMaterialIndex(DatabaseImpl& impl) {
  impl.material_ranges.clear();
  const std::vector<CuttingParameter>& records = impl.parameters;
  if (records.empty()) return;

  std::vector<ThicknessBucket> buckets(kIdSpace);
  std::vector<std::uint16_t> seen;  // ids in order of first appearance
  for (std::size_t pos = 0; pos < records.size(); ++pos) {
    const std::uint16_t id = records[pos].material_id;
    const float t = records[pos].thickness_mm;
    ThicknessBucket& b = buckets[id];
    if (b.count == 0) {
      b = ThicknessBucket{t, t, pos, 1};
      seen.push_back(id);
      continue;
    }
    if (t < b.min_thickness) {
      b.min_thickness = t;
      b.first = pos;
    }
    // The last of equal thicknesses sorts last (this keeps -0.0 vs 0.0 exact).
    if (t >= b.max_thickness) b.max_thickness = t;
    ++b.count;
  }
  impl.material_ranges.reserve(seen.size());
  for (std::uint16_t id : seen) impl.material_ranges[id] = {buckets[id]};
}

void RebuildMachineIndex(DatabaseImpl& impl) {
  impl.machine_records.clear();
  const std::vector<CuttingParameter>& records = impl.parameters;
  if (records.empty()) return;

  std::vector<MachineSpan> spans(kIdSpace);
  std::vector<std::uint16_t> seen;
  for (std::size_t pos = 0; pos < records.size(); ++pos) {
    const std::uint16_t id = records[pos].machine_model_id;
    MachineSpan& s = spans[id];
    if (s.count++ == 0) {
      s.first = pos;
      seen.push_back(id);
    }
  }
  impl.machine_records.reserve(seen.size());
  for (std::uint16_t id : seen) impl.machine_records[id] = spans[id];
}

void RebuildRecordIndexes(DatabaseImpl& impl) {
  RebuildMaterialIndex(impl);
  RebuildMachineIndex(impl);
  RebuildPairIndex(impl);
}

}  // namespace Sparlane
