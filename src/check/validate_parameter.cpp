// Testing::ValidateParameter and ExplainParameter: the strict physical-range
// check of one record and the reason it fails.  The rules themselves are the
// kStrict table in store/record_rules.cpp.
#include "sparlane/testing.h"
#include "store/record_rules.h"

namespace Sparlane {
namespace Testing {

ErrorCode ValidateParameter(const CuttingParameter& p) {
  if (FirstBrokenRule(RecordCheck::kStrict, p, NameTableSizes{}) != nullptr) {
    return ErrorCode::InvalidParameter;
  }
  return ErrorCode::Success;
}

std::string ExplainParameter(const CuttingParameter& p) {
  const RecordRule* broken = FirstBrokenRule(RecordCheck::kStrict, p, NameTableSizes{});
  return broken == nullptr ? std::string() : std::string(broken->failure);
}

}  // namespace Testing
}  // namespace Sparlane
