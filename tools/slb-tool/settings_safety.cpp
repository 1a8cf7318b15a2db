#include "settings_safety.h"

#include <algorithm>

#include "extrapolation_limit.h"
#include "number_format.h"
#include "strict_check.h"

namespace slb {

std::vector<Sparlane::CuttingParameter> ListedRecords(const Sparlane::Database& db,
                                                      const std::string& material,
                                                      std::optional<std::uint16_t> machine_id) {
  auto records = db.FindByMaterial(material);
  if (machine_id) {
    records.erase(std::remove_if(records.begin(), records.end(),
                                 [&](const Sparlane::CuttingParameter& r) {
                                   return r.machine_model_id != *machine_id;
                                 }),
                  records.end());
  }
  return records;
}

std::string ExtrapolationProblem(const std::vector<Sparlane::CuttingParameter>& listed,
                                 float thickness_mm, const std::string& what) {
  const auto span = SpanOf(listed);
  if (!span || span->Allows(thickness_mm)) return std::string();
  return ExtrapolationRefusal(thickness_mm, *span, what);
}

std::string UnsafeSettingsProblem(const Sparlane::CuttingParameter& p, const std::string& what,
                                  float thickness_mm) {
  const std::string finding = StrictCheckFinding(p);
  if (finding.empty()) return finding;
  return "the settings found for " + what + " at " + ExactFloat(thickness_mm) +
         " mm fail the strict record check and are not shown: " + finding;
}

std::string UnsafeSourceProblem(const std::vector<Sparlane::CuttingParameter>& rows,
                                const std::string& what) {
  // Settings built from an absurd row are no better than the row.
  for (const auto& row : rows) {
    const std::string finding = StrictCheckFinding(row);
    if (finding.empty()) continue;
    return "the listed row of " + what + " at " + ExactFloat(row.thickness_mm) +
           " mm that the settings are built from fails the strict record check, so none are "
           "shown: " + finding;
  }
  return std::string();
}

}  // namespace slb
