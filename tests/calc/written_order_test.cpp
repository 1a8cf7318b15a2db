// Many random records against the formulas written out term by term: any
// reordering of an addition or multiplication changes some rounding and
// fails here, even where the hand-picked cases happen to agree.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>

#include "calc_records.h"
#include "sparlane/sparlane.h"

using Sparlane::Database;
using calc_test::Record;

namespace {

constexpr int kCases = 2000;

class RandomInputs {
 public:
  float Uniform(float lo, float hi) { return std::uniform_real_distribution<float>(lo, hi)(rng_); }
  std::uint32_t Count(std::uint32_t hi) {
    return std::uniform_int_distribution<std::uint32_t>(0, hi)(rng_);
  }
  Sparlane::CuttingParameter Parameter() {
    return Record(Uniform(0.3f, 60.0f), Uniform(0.3f, 5.0f), Uniform(100.0f, 9000.0f),
                  static_cast<std::uint16_t>(Count(400)), Uniform(0.0f, 3.0f));
  }

 private:
  std::mt19937 rng_{20240611u};
};

}  // namespace

TEST(WrittenOrder, HeatAffectedZoneWidth) {
  RandomInputs in;
  for (int i = 0; i < kCases; ++i) {
    const auto p = in.Parameter();
    const float h = static_cast<float>(p.current_amps) / (p.cut_speed_mm_min / 1000.0f);
    const float w = std::min(h * 0.001f + 0.5f + p.thickness_mm * 0.02f, 3.0f);
    const auto z = Database::CalculateHAZ(p);
    ASSERT_EQ(z.haz_width_mm, w) << i;
    ASSERT_EQ(z.inner_zone_mm, w * 0.3f) << i;
    ASSERT_EQ(z.outer_zone_mm, w * 1.5f) << i;
  }
}

TEST(WrittenOrder, JobCostFigures) {
  RandomInputs in;
  for (int i = 0; i < kCases; ++i) {
    const auto p = in.Parameter();
    const float L = in.Uniform(0.0f, 100000.0f);
    const std::uint32_t count = in.Count(2000);
    const float N = static_cast<float>(count);
    Sparlane::MaterialPricing pricing{in.Uniform(0.1f, 20.0f), in.Uniform(1000.0f, 9000.0f),
                                      in.Uniform(0.0f, 1.0f)};
    const float rate = in.Uniform(10.0f, 200.0f);
    const float set_price = in.Uniform(5.0f, 200.0f);

    const float T = L / p.cut_speed_mm_min * 60.0f;
    const float H = (N * p.pierce_time_s + T) / 3600.0f;
    const float U = std::max(pricing.material_utilization, 0.1f);
    const float material = L * p.kerf_width_mm * p.thickness_mm / 1e9f * pricing.density_kg_m3 *
                           pricing.price_per_kg * (1.0f / U);
    const float consumable = std::max(H / 3.0f, N / 600.0f) * set_price;
    const float machine = H * rate;
    const float overhead = H * 5.0f;
    const float total = consumable + material + machine + overhead;

    const auto c = Database::EstimateJobCost(p, L, count, pricing, rate, set_price);
    ASSERT_EQ(c.material_cost, material) << i;
    ASSERT_EQ(c.consumable_cost, consumable) << i;
    ASSERT_EQ(c.machine_cost, machine) << i;
    ASSERT_EQ(c.overhead_cost, overhead) << i;
    ASSERT_EQ(c.total_cost, total) << i;
    ASSERT_EQ(c.cost_per_meter, L / 1000.0f > 0.0f ? total / (L / 1000.0f) : 0.0f) << i;
    ASSERT_EQ(c.cost_per_pierce, count != 0 ? total / N : 0.0f) << i;
  }
}

TEST(WrittenOrder, CutTimeFigures) {
  RandomInputs in;
  for (int i = 0; i < kCases; ++i) {
    const auto p = in.Parameter();
    const float L = in.Uniform(0.001f, 100000.0f);
    const std::uint32_t count = in.Count(5000);
    const float cut = L / p.cut_speed_mm_min * 60.0f;
    const float pierce = static_cast<float>(count) * p.pierce_time_s;
    const auto e = Database::EstimateCutTime(p, L, count);
    ASSERT_EQ(e.cut_time_s, cut) << i;
    ASSERT_EQ(e.pierce_time_total_s, pierce) << i;
    ASSERT_EQ(e.total_time_s, pierce + cut) << i;
  }
}

TEST(WrittenOrder, ConsumableLifeFigures) {
  RandomInputs in;
  for (int i = 0; i < kCases; ++i) {
    Sparlane::ConsumableUsage u{};
    u.starts = in.Count(3000);
    u.arc_hours = in.Uniform(0.0f, 20.0f);
    u.stress_factor_1 = in.Uniform(0.0f, 2.0f);
    u.stress_factor_2 = in.Uniform(0.0f, 2.0f);
    u.stress_factor_3 = in.Uniform(0.0f, 2.0f);
    u.stress_factor_4 = in.Uniform(0.0f, 2.0f);
    const auto amps = static_cast<unsigned short>(in.Count(400));

    const float F = amps == 0 ? 1.0f
                              : std::min(1.5f, 45.0f / static_cast<float>(std::max<unsigned short>(amps, 30)));
    float W = u.stress_factor_2 * 1.3f + u.stress_factor_1 + u.stress_factor_3 * 1.5f +
              u.stress_factor_4 * 1.2f;
    if (W < 0.01f) W = 1.0f;
    const float starts = static_cast<float>(u.starts);
    const auto pct = [&](float hours_limit, float starts_limit) {
      const float used = std::max(u.arc_hours / hours_limit * 100.0f, starts / starts_limit * 100.0f);
      return std::max(std::min(100.0f - used, 100.0f), 0.0f);
    };
    const auto life = Database::EstimateConsumableLife(u, amps);
    ASSERT_EQ(life.primary_life_pct, pct(F * 3.0f / W, F * 600.0f / W)) << i;
    ASSERT_EQ(life.secondary_life_pct, pct(F * 6.0f / W, F * 900.0f / W)) << i;
    ASSERT_EQ(life.tertiary_life_pct, pct(F * 9.0f / W, F * 1200.0f / W)) << i;
    ASSERT_EQ(life.primary_starts_left,
              static_cast<std::uint32_t>(std::max(F * 600.0f / W - starts, 0.0f))) << i;
    ASSERT_EQ(life.secondary_starts_left,
              static_cast<std::uint32_t>(std::max(F * 900.0f / W - starts, 0.0f))) << i;
    ASSERT_EQ(life.primary_hours_left, std::max(F * 3.0f / W - u.arc_hours, 0.0f)) << i;
    ASSERT_EQ(life.secondary_hours_left, std::max(F * 6.0f / W - u.arc_hours, 0.0f)) << i;
    ASSERT_EQ(life.primary_replace_soon, life.primary_life_pct <= 20.0f) << i;
  }
}

TEST(WrittenOrder, GeometryFigures) {
  RandomInputs in;
  for (int i = 0; i < kCases; ++i) {
    const auto p = in.Parameter();
    const float t = p.thickness_mm;
    const float k = p.kerf_width_mm;
    const auto spacing = Database::CalculatePartSpacing(p);
    const float gap = t < 3.0f ? 2.0f : (t < 10.0f ? t * 0.5f : t * 0.75f);
    ASSERT_EQ(spacing.recommended_spacing_mm, gap + k + 2.0f) << i;

    const auto rules = Database::GetCommonLineRules(p);
    ASSERT_EQ(rules.line_spacing_mm, t > 8.0f ? k * 3.0f + 5.0f : k + k + 3.0f) << i;

    const float angle = in.Uniform(-20.0f, 200.0f);
    const float a = std::max(std::min(angle, 180.0f), 0.0f);
    const float factor = a >= 150.0f  ? 1.0f
                         : a >= 90.0f ? (a - 90.0f) / 60.0f * 0.4f + 0.6f
                         : a >= 45.0f ? (a - 45.0f) / 45.0f * 0.2f + 0.4f
                                      : a / 45.0f * 0.1f + 0.3f;
    ASSERT_EQ(Database::CalculateCornerSlowdown(p, angle).speed_factor, factor) << i;

    const auto q = Database::GetQualityProfile(p, Sparlane::QualityLevel::Standard);
    ASSERT_EQ(q.surface_roughness_um, t * 1.5f + 15.0f) << i;
    ASSERT_EQ(q.tolerance_mm, t * 0.015f + 0.3f) << i;

    float bevel = t <= 6.0f    ? 45.0f
                  : t <= 12.0f ? 45.0f - (t - 6.0f) * 0.5f
                  : t <= 25.0f ? 42.0f - (t - 12.0f) * 0.3f
                               : 38.0f - (t - 25.0f) * 0.2f;
    bevel = std::max(std::min(bevel, 45.0f), 25.0f);
    ASSERT_EQ(Database::GetBevelLimits(p, "").recommended_angle_deg, bevel - 5.0f) << i;
  }
}
