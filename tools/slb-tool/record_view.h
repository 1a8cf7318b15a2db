// How slb-tool shows a parameter record, as text and as JSON.
#ifndef SLB_TOOL_RECORD_VIEW_H_
#define SLB_TOOL_RECORD_VIEW_H_

#include <string>
#include <vector>

#include "catalogue.h"
#include "json_writer.h"
#include "sparlane/sparlane.h"

namespace slb {

// One setting per line: name, value and unit.
std::string SettingsTable(const Sparlane::CuttingParameter& p, const Catalogue& catalogue);

// Several records as rows of one table; labels (may be empty) head each row.
std::string RecordRows(const std::vector<Sparlane::CuttingParameter>& records,
                       const std::vector<std::string>& labels, const Catalogue& catalogue);

// "Mild steel 6 mm on AIR-45A (Air plasma)".
std::string RecordTitle(const Sparlane::CuttingParameter& p, const Catalogue& catalogue);

void WriteRecordJson(JsonWriter& json, const Sparlane::CuttingParameter& p,
                     const Catalogue& catalogue);

}  // namespace slb

#endif  // SLB_TOOL_RECORD_VIEW_H_
