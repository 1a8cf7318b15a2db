// The three checks a single record can meet, written side by side as tables
// of rules.  They differ on purpose and stay distinct:
//  - kStore guards every record an edit or an import puts into the table
//    (AddParameter, UpdateParameter, the SQLite import);
//  - kValidate is Database::Validate's look at each loaded record, with a
//    wider range and messages that name the faulted id;
//  - kStrict is Testing::ValidateParameter's physical-range check, whose
//    reasons Testing::ExplainParameter gives.
// Rules are tested in table order; the first that fails decides.
#ifndef SPARLANE_STORE_RECORD_RULES_H_
#define SPARLANE_STORE_RECORD_RULES_H_

#include <cstddef>
#include <cstdint>

#include "sparlane/records.h"

namespace Sparlane {

enum class RecordCheck { kStore, kValidate, kStrict };

// What the id rules compare against; the strict check needs none of it.
struct NameTableSizes {
  std::size_t vendors = 0;
  std::size_t machines = 0;
  std::size_t materials = 0;
};

struct RecordRule {
  bool (*holds)(const CuttingParameter& p, const NameTableSizes& names);
  // The message (kStore, kValidate) or the reason (kStrict) when it fails.
  const char* failure;
  // kValidate's messages go on with this id, in decimal; null elsewhere.
  std::uint16_t CuttingParameter::*faulted_id;
};

// The first rule of check that p fails, or null when p passes.
const RecordRule* FirstBrokenRule(RecordCheck check, const CuttingParameter& p,
                                  const NameTableSizes& names);

}  // namespace Sparlane

#endif  // SPARLANE_STORE_RECORD_RULES_H_
