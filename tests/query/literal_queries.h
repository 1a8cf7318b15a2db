// The queries written exactly as their algorithms read: whole-table scans
// and bisections over the whole table.  The library answers some of them
// from its per-pair position lists; the differential tests hold the two
// against each other.
#ifndef SPARLANE_TESTS_QUERY_LITERAL_QUERIES_H_
#define SPARLANE_TESTS_QUERY_LITERAL_QUERIES_H_

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sparlane/sparlane.h"
#include "../support/store_seam.h"

namespace query_test {

class LiteralQueries {
 public:
  using CP = Sparlane::CuttingParameter;
  explicit LiteralQueries(const Sparlane::Database& db)
      : db_(db), s_(Sparlane::DatabaseAccess::Body(db)) {}

  std::optional<CP> FindNearest(const std::string& material, float t,
                                const std::string& machine) const {
    if (!s_.loaded()) return std::nullopt;
    const auto mat = db_.GetMaterialId(material);
    const auto mach = db_.GetMachineId(machine);
    if (mat == 0 || mach == 0) return std::nullopt;
    std::optional<CP> best;
    float best_distance = FLT_MAX;
    for (const CP& r : s_.records()) {
      if (r.material_id != mat || r.machine_model_id != mach) continue;
      const float distance = std::fabs(r.thickness_mm - t);
      if (distance < best_distance) {
        best_distance = distance;
        best = r;
      }
    }
    return best;
  }

  std::vector<CP> FindByMaterial(const std::string& material) const {
    std::vector<CP> out;
    if (!s_.loaded()) return out;
    const auto mat = db_.GetMaterialId(material);
    if (mat == 0) return out;
    for (const CP& r : s_.records()) {
      if (r.material_id == mat) out.push_back(r);
    }
    return out;
  }

  Sparlane::SupportedThicknessRange Range(const std::string& material,
                                          const std::string& machine) const {
    Sparlane::SupportedThicknessRange range{FLT_MAX, -FLT_MAX, 0, false};
    if (!s_.loaded()) return range;
    const auto mat = db_.GetMaterialId(material);
    if (mat == 0) return range;
    std::uint16_t mach = 0;
    if (!machine.empty()) {
      mach = db_.GetMachineId(machine);
      if (mach == 0) return range;
    }
    for (const CP& r : s_.records()) {
      if (r.material_id != mat || (!machine.empty() && r.machine_model_id != mach)) continue;
      range.min_thickness_mm = std::min(range.min_thickness_mm, r.thickness_mm);
      range.max_thickness_mm = std::max(range.max_thickness_mm, r.thickness_mm);
      ++range.parameter_count;
    }
    range.valid = range.parameter_count > 0;
    return range;
  }

  CP AdjustForMaxSpeed(const CP& base, float max_speed) const {
    if (!s_.loaded() || !(max_speed < base.cut_speed_mm_min)) return base;
    std::vector<CP> candidates;
    for (const CP& r : s_.records()) {
      if (r.material_id == base.material_id && r.machine_model_id == base.machine_model_id &&
          std::fabs(r.thickness_mm - base.thickness_mm) < 0.1f &&
          r.cut_speed_mm_min <= max_speed) {
        candidates.push_back(r);
      }
    }
    if (candidates.empty()) {
      CP capped = base;
      capped.cut_speed_mm_min = max_speed;
      capped.flags |= Sparlane::kFlagSpeedCapped;
      return capped;
    }
    CP best = candidates.front();
    for (const CP& c : candidates) {
      if (c.cut_speed_mm_min > best.cut_speed_mm_min) best = c;
    }
    return best;
  }

  // [first, last) of the pair by the three bisections as written: the
  // material's run is its lower and upper bound over the whole table, the
  // machine's lower and upper bound compare the machine id alone within that
  // run.  Each bound is the textbook count-and-half bisection.
  std::pair<std::size_t, std::size_t> PairSpan(std::uint16_t mat, std::uint16_t mach) const {
    const auto& p = s_.records();
    const std::size_t mat_first = Bound(0, p.size(), [&](const CP& r) { return r.material_id < mat; });
    const std::size_t mat_last = Bound(0, p.size(), [&](const CP& r) { return !(mat < r.material_id); });
    const std::size_t first =
        Bound(mat_first, mat_last, [&](const CP& r) { return r.machine_model_id < mach; });
    const std::size_t last =
        Bound(mat_first, mat_last, [&](const CP& r) { return !(mach < r.machine_model_id); });
    return {first, last};
  }

  std::optional<CP> FindExact(const std::string& material, float t, const std::string& machine,
                              float tol) const {
    if (!s_.loaded() || t < 0 || std::isinf(t) || std::isnan(t)) return std::nullopt;
    const auto mat = db_.GetMaterialId(material);
    const auto mach = db_.GetMachineId(machine);
    if (mat == 0 || mach == 0) return std::nullopt;
    const auto* buckets = s_.record_indexes().MaterialBuckets(mat);
    if (buckets == nullptr) {
      const auto span = PairSpan(mat, mach);
      return Bisect(span.first, span.second, mat, mach, t, tol);
    }
    for (const auto& b : *buckets) {
      if (t >= b.min_thickness - tol && tol + b.max_thickness >= t) {
        const std::size_t end = std::min<std::size_t>(b.first + b.count, s_.records().size());
        auto hit = Bisect(std::min<std::size_t>(b.first, end), end, mat, mach, t, tol);
        if (hit) return hit;
      }
    }
    return std::nullopt;
  }

  std::optional<CP> FindOptimal(const std::string& material, float t, float tol) const {
    if (!s_.loaded() || t < 0 || std::isinf(t) || std::isnan(t)) return std::nullopt;
    const auto mat = db_.GetMaterialId(material);
    if (mat == 0) return std::nullopt;
    float best_speed = 0.0f;
    std::optional<CP> best;
    auto consider = [&](const CP& r) {
      if (std::fabs(r.thickness_mm - t) <= tol && r.cut_speed_mm_min > best_speed) {
        best_speed = r.cut_speed_mm_min;
        best = r;
      }
    };
    const auto* buckets = s_.record_indexes().MaterialBuckets(mat);
    if (buckets == nullptr) {
      for (const CP& r : s_.records()) {
        if (r.material_id == mat) consider(r);
      }
      return best;
    }
    for (const auto& b : *buckets) {
      if (t >= b.min_thickness - tol && tol + b.max_thickness >= t) {
        for (std::size_t i = b.first; i < b.first + b.count && i < s_.records().size(); ++i) {
          consider(s_.records()[i]);
        }
      }
    }
    return best;
  }

  Sparlane::InterpolationResult Interpolate(const std::string& material, float t,
                                            const std::string& machine) const {
    namespace T = Sparlane::Testing;
    Sparlane::InterpolationResult res{};
    if (!s_.loaded() || t < 0 || std::isinf(t) || std::isnan(t)) return res;
    const auto mat = db_.GetMaterialId(material);
    const auto mach = db_.GetMachineId(machine);
    if (mat == 0 || mach == 0) return res;
    const auto span = PairSpan(mat, mach);
    const CP* lower = nullptr;
    const CP* upper = nullptr;
    if (span.first != span.second) {
      const auto& p = s_.records();
      auto pit = std::partition_point(p.begin() + static_cast<std::ptrdiff_t>(span.first),
                                      p.begin() + static_cast<std::ptrdiff_t>(span.second),
                                      [&](const CP& r) { return r.thickness_mm < t; });
      const std::size_t pos = static_cast<std::size_t>(pit - p.begin());
      if (pos != span.second) upper = &p[pos];
      if (pos != span.first) lower = &p[pos - 1];
      if (upper && std::fabs(upper->thickness_mm - t) < 0.001f) {
        lower = upper;
      } else if (!lower && upper) {
        lower = upper;
        upper = pos + 1 < span.second ? &p[pos + 1] : nullptr;
      }
    }
    if (!lower && !upper) return res;
    if (!lower || !upper) {
      res.parameter = T::ExtrapolateConservative(lower ? *lower : *upper, t);
      res.confidence = 0.3f;
      res.extrapolated = true;
    } else if (lower == upper) {
      res.parameter = *lower;
      res.confidence = 1.0f;
    } else if (lower->thickness_mm <= t && t <= upper->thickness_mm) {
      res.parameter = T::InterpolateLinear(*lower, *upper, t);
      const float span_mm = upper->thickness_mm - lower->thickness_mm;
      res.confidence = span_mm < 0.001f
                           ? 1.0f
                           : 1.0f - std::fabs((t - lower->thickness_mm) / span_mm - 0.5f) * 0.4f;
    } else {
      const float dl = std::fabs(t - lower->thickness_mm);
      const float du = std::fabs(t - upper->thickness_mm);
      res.parameter = T::ExtrapolateConservative(du > dl ? *lower : *upper, t);
      res.extrapolated = true;
      const float span_mm = std::fabs(upper->thickness_mm - lower->thickness_mm);
      res.confidence =
          span_mm < 0.001f ? 0.3f : std::max(0.7f - std::min(dl, du) / span_mm * 0.5f, 0.1f);
    }
    return res;
  }

 private:
  // First position of [first, last) where go_right turns false, probing
  // the middle of what is left each time.
  template <typename GoRight>
  std::size_t Bound(std::size_t first, std::size_t last, GoRight go_right) const {
    std::size_t count = last - first;
    while (count > 0) {
      const std::size_t half = count / 2;
      if (go_right(s_.records()[first + half])) {
        first += half + 1;
        count -= half + 1;
      } else {
        count = half;
      }
    }
    return first;
  }

  std::optional<CP> Bisect(std::size_t lo, std::size_t hi, std::uint16_t mat, std::uint16_t mach,
                           float t, float tol) const {
    const auto& p = s_.records();
    while (lo < hi) {
      const std::size_t mid = lo + (hi - lo) / 2;
      const CP& r = p[mid];
      if (r.material_id == mat && r.machine_model_id == mach &&
          std::fabs(r.thickness_mm - t) <= tol) {
        return r;
      }
      if (r.material_id < mat) {
        lo = mid + 1;
      } else if (r.material_id > mat) {
        hi = mid;
      } else if (r.machine_model_id < mach) {
        lo = mid + 1;
      } else if (r.machine_model_id > mach) {
        hi = mid;
      } else if (r.thickness_mm < t - tol) {
        lo = mid + 1;
      } else if (r.thickness_mm > t + tol) {
        hi = mid;
      } else {
        return r;
      }
    }
    return std::nullopt;
  }

  const Sparlane::Database& db_;
  const Sparlane::Store& s_;
};

}  // namespace query_test

#endif  // SPARLANE_TESTS_QUERY_LITERAL_QUERIES_H_
