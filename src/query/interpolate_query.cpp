// Database::Interpolate: the bracketing records of a material and machine,
// and what to build from them.
#include <algorithm>
#include <cmath>

#include "query/record_search.h"
#include "query/timed_query.h"
#include "sparlane/testing.h"

namespace Sparlane {

namespace {

constexpr float kSameThickness = 0.001f;

struct Neighbours {
  const CuttingParameter* lower = nullptr;
  const CuttingParameter* upper = nullptr;
};

Neighbours FindNeighbours(const Store& s, std::uint16_t material_id, std::uint16_t machine_id,
                          float thickness) {
  Neighbours n;
  const TableSpan span = FindPairSpan(s, material_id, machine_id);
  if (span.count == 0) return n;
  const std::vector<CuttingParameter>& records = s.records();
  const std::uint64_t end = span.first + span.count;
  const std::uint64_t p = WithThicknessRows(
      s, [&](const auto& rows) { return LowerBoundThickness(rows, span, thickness); });
  if (p < end) n.upper = &records[p];
  if (p > span.first) n.lower = &records[p - 1];

  if (n.upper != nullptr && std::fabs(n.upper->thickness_mm - thickness) < kSameThickness) {
    n.lower = n.upper;  // only the record at or above counts as a hit
  } else if (n.lower == nullptr && n.upper != nullptr) {
    n.lower = n.upper;  // below the table: the two thinnest records
    n.upper = p + 1 < end ? &records[p + 1] : nullptr;
  }
  return n;
}

InterpolationResult Decide(const Neighbours& n, float t) {
  InterpolationResult result{};
  if (n.lower == nullptr && n.upper == nullptr) return result;
  if (n.lower == nullptr || n.upper == nullptr) {
    result.parameter = Testing::ExtrapolateConservative(n.lower ? *n.lower : *n.upper, t);
    result.confidence = 0.3f;
    result.extrapolated = true;
    return result;
  }
  const CuttingParameter& lower = *n.lower;
  const CuttingParameter& upper = *n.upper;
  if (n.lower == n.upper) {
    result.parameter = lower;
    result.confidence = 1.0f;
    return result;
  }
  if (lower.thickness_mm <= t && t <= upper.thickness_mm) {
    result.parameter = Testing::InterpolateLinear(lower, upper, t);
    const float span = upper.thickness_mm - lower.thickness_mm;
    result.confidence = span < kSameThickness
                            ? 1.0f
                            : 1.0f - std::fabs((t - lower.thickness_mm) / span - 0.5f) * 0.4f;
    return result;
  }
  const float dl = std::fabs(t - lower.thickness_mm);
  const float du = std::fabs(t - upper.thickness_mm);
  result.parameter = Testing::ExtrapolateConservative(du > dl ? lower : upper, t);
  result.extrapolated = true;
  const float span = std::fabs(upper.thickness_mm - lower.thickness_mm);
  result.confidence =
      span < kSameThickness ? 0.3f : std::max(0.7f - std::min(dl, du) / span * 0.5f, 0.1f);
  return result;
}

}  // namespace

InterpolationResult Database::Interpolate(const std::string& material, float thickness,
                                          const std::string& machine_model) const {
  const Store& s = *impl_;
  if (!s.loaded() || thickness < 0.0f || !std::isfinite(thickness)) return InterpolationResult{};
  const QueryTimer timer(s);
  const std::uint16_t material_id = s.IdOf(NameKind::kMaterial, material);
  const std::uint16_t machine_id = s.IdOf(NameKind::kMachine, machine_model);
  if (material_id == 0 || machine_id == 0) return InterpolationResult{};

  const InterpolationResult result =
      Decide(FindNeighbours(s, material_id, machine_id, thickness), thickness);

  timer.Finish("Interpolate", result.confidence > 0.0f, [&] {
    return InterpolateDetail(material, thickness, machine_model, result.confidence,
                             result.extrapolated);
  });
  return result;
}

}  // namespace Sparlane
