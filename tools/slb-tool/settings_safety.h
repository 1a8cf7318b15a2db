// The checks that stand between a parameter file and the settings the tool
// hands out: the extrapolation limit of the listed rows and the strict
// record check of what is shown.  Every command or export that produces
// settings goes through them.
#ifndef SLB_TOOL_SETTINGS_SAFETY_H_
#define SLB_TOOL_SETTINGS_SAFETY_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace slb {

// The listed records of a material, only those of one machine model when
// machine_id is given.
std::vector<Sparlane::CuttingParameter> ListedRecords(const Sparlane::Database& db,
                                                      const std::string& material,
                                                      std::optional<std::uint16_t> machine_id);

// Why settings for thickness_mm must not be given from the listed rows
// (beyond their extrapolation limit; see extrapolation_limit.h), or "".
// what names the rows in the message ("Mild steel on AIR-45A").
std::string ExtrapolationProblem(const std::vector<Sparlane::CuttingParameter>& listed,
                                 float thickness_mm, const std::string& what);

// Why settings found for thickness_mm must not be shown (they fail the
// strict record check), or "".
std::string UnsafeSettingsProblem(const Sparlane::CuttingParameter& p, const std::string& what,
                                  float thickness_mm);

// Why settings built from these listed rows must not be shown (one of them
// fails the strict record check), or "".
std::string UnsafeSourceProblem(const std::vector<Sparlane::CuttingParameter>& rows,
                                const std::string& what);

}  // namespace slb

#endif  // SLB_TOOL_SETTINGS_SAFETY_H_
