#include "strict_check.h"

#include <string>

#include "number_format.h"
#include "record_fields.h"

namespace slb {
namespace {

// The value of the record field a reason starts with, as text.
std::string ValueOf(const Sparlane::CuttingParameter& p, const std::string& field) {
  for (const auto& f : kRecordFloatFields) {
    if (field == f.name) return ExactFloat(p.*f.member);
  }
  if (field == "current_amps") return std::to_string(p.current_amps);
  return "0";  // the ids, which are only ever reported when 0
}

}  // namespace

std::string StrictCheckFinding(const Sparlane::CuttingParameter& p) {
  const std::string reason = Sparlane::Testing::ExplainParameter(p);
  if (reason.empty()) return reason;
  const std::string field = reason.substr(0, reason.find(' '));
  std::string finding = reason + " (is " + ValueOf(p, field);
  if (reason == "cut_height_mm must not exceed pierce_height_mm") {
    finding += ", pierce_height_mm is " + ExactFloat(p.pierce_height_mm);
  }
  return finding + ")";
}

std::string StrictCheckFindingOfValues(const Sparlane::CuttingParameter& p) {
  Sparlane::CuttingParameter with_ids = p;
  with_ids.vendor_id = with_ids.machine_model_id = with_ids.material_id = 1;
  return StrictCheckFinding(with_ids);
}

}  // namespace slb
