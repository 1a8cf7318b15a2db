// Remaining life of the torch's three wear parts from starts and arc hours.
#include <algorithm>
#include <cstdint>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {
namespace {

constexpr float kReplaceSoonPct = 20.0f;

// Higher current wears parts faster; 30 A and below all count as 30 A.
float CurrentFactor(unsigned short current_amps) {
  if (current_amps == 0) return 1.0f;
  const unsigned short amps = std::max<unsigned short>(current_amps, 30);
  return std::min(1.5f, 45.0f / static_cast<float>(amps));
}

float LoadFigure(const ConsumableUsage& usage) {
  const float load = usage.stress_factor_2 * 1.3f + usage.stress_factor_1 +
                     usage.stress_factor_3 * 1.5f + usage.stress_factor_4 * 1.2f;
  return load < 0.01f ? 1.0f : load;
}

struct NominalLife {
  float hours;
  float starts;
};

NominalLife Nominal(float factor, float load, float hours, float starts) {
  return {factor * hours / load, factor * starts / load};
}

float LifePercent(const ConsumableUsage& usage, const NominalLife& life) {
  const float used = std::max(usage.arc_hours / life.hours * 100.0f,
                              static_cast<float>(usage.starts) / life.starts * 100.0f);
  const float left = std::min(100.0f - used, 100.0f);
  return std::max(left, 0.0f);
}

// Floors at zero and truncates toward zero.  A NaN (from a NaN load figure)
// counts as nothing left rather than an undefined conversion.
std::uint32_t StartsLeft(const ConsumableUsage& usage, const NominalLife& life) {
  const float left = std::max(life.starts - static_cast<float>(usage.starts), 0.0f);
  if (!(left >= 1.0f)) return 0;
  if (left >= 4294967296.0f) return UINT32_MAX;
  return static_cast<std::uint32_t>(left);
}

float HoursLeft(const ConsumableUsage& usage, const NominalLife& life) {
  return std::max(life.hours - usage.arc_hours, 0.0f);
}

}  // namespace

ConsumableLife Database::EstimateConsumableLife(const ConsumableUsage& usage,
                                                unsigned short current_amps) {
  ConsumableLife life = calc::ZeroFilled<ConsumableLife>();
  const float factor = CurrentFactor(current_amps);
  const float load = LoadFigure(usage);
  const NominalLife primary = Nominal(factor, load, 3.0f, 600.0f);
  const NominalLife secondary = Nominal(factor, load, 6.0f, 900.0f);
  const NominalLife tertiary = Nominal(factor, load, 9.0f, 1200.0f);

  life.primary_life_pct = LifePercent(usage, primary);
  life.secondary_life_pct = LifePercent(usage, secondary);
  life.tertiary_life_pct = LifePercent(usage, tertiary);
  // The tertiary part deliberately gets no starts-left or hours-left figures.
  life.primary_starts_left = StartsLeft(usage, primary);
  life.secondary_starts_left = StartsLeft(usage, secondary);
  life.primary_hours_left = HoursLeft(usage, primary);
  life.secondary_hours_left = HoursLeft(usage, secondary);
  life.primary_replace_soon = life.primary_life_pct <= kReplaceSoonPct;
  life.secondary_replace_soon = life.secondary_life_pct <= kReplaceSoonPct;
  life.tertiary_replace_soon = life.tertiary_life_pct <= kReplaceSoonPct;
  life.life_flag_reserved = false;
  return life;
}

}  // namespace Sparlane
