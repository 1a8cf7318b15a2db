// What a job costs: kerf material, consumables, machine time and overhead.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

constexpr float kMinUtilization = 0.1f;
constexpr float kArcHoursPerSet = 3.0f;      // one consumable set lasts 3 arc hours
constexpr float kPiercesPerSet = 600.0f;     // ... or 600 pierces, whichever is first
constexpr float kOverheadPerHour = 5.0f;     // fixed, not configurable
constexpr float kCubicMmPerCubicMetre = 1e9f;

}  // namespace

JobCost Database::EstimateJobCost(const CuttingParameter& param, float cut_length_mm,
                                  unsigned int pierce_count, const MaterialPricing& pricing,
                                  float machine_rate_per_hour, float consumable_set_price) {
  JobCost cost = calc::ZeroFilled<JobCost>();
  const float length = cut_length_mm;
  const float pierces = static_cast<float>(pierce_count);

  const float cut_seconds =
      param.cut_speed_mm_min > 0.0f ? length / param.cut_speed_mm_min * 60.0f : 0.0f;
  const float machine_hours = (pierces * param.pierce_time_s + cut_seconds) / 3600.0f;
  const float utilization = std::max(pricing.material_utilization, kMinUtilization);

  // Kerf volume in cubic metres, then mass, then price; multiplied in this
  // exact order so every platform rounds alike.
  cost.material_cost = length * param.kerf_width_mm * param.thickness_mm /
                       kCubicMmPerCubicMetre * pricing.density_kg_m3 * pricing.price_per_kg *
                       (1.0f / utilization);
  cost.consumable_cost =
      std::max(machine_hours / kArcHoursPerSet, pierces / kPiercesPerSet) * consumable_set_price;
  cost.machine_cost = machine_hours * machine_rate_per_hour;
  cost.overhead_cost = machine_hours * kOverheadPerHour;
  cost.total_cost = cost.consumable_cost + cost.material_cost + cost.machine_cost +
                    cost.overhead_cost;

  const float metres = length / 1000.0f;
  cost.cost_per_meter = metres > 0.0f ? cost.total_cost / metres : 0.0f;
  cost.cost_per_pierce = pierce_count != 0 ? cost.total_cost / pierces : 0.0f;
  return cost;
}

}  // namespace Sparlane
