// How slb-tool shows a parameter record, as text and as JSON.
#ifndef SLB_TOOL_RECORD_VIEW_H_
#define SLB_TOOL_RECORD_VIEW_H_

#include <string>
#include <vector>

#include "catalogue.h"
#include "json_output.h"
#include "sparlane/sparlane.h"

namespace slb {

// One setting per line: name, value rounded for the shop (ShopNumber) and
// unit.
std::string SettingsTable(const Sparlane::CuttingParameter& p, const Catalogue& catalogue);

// Several records as rows of one table; labels (may be empty) head each row.
std::string RecordRows(const std::vector<Sparlane::CuttingParameter>& records,
                       const std::vector<std::string>& labels, const Catalogue& catalogue);

// "Mild steel 6 mm on AIR-45A (Air plasma)", for naming a record in a
// finding: the thickness exact.
std::string RecordTitle(const Sparlane::CuttingParameter& p, const Catalogue& catalogue);

// The record with names for ids and every float at full precision.
Json RecordJson(const Sparlane::CuttingParameter& p, const Catalogue& catalogue);

}  // namespace slb

#endif  // SLB_TOOL_RECORD_VIEW_H_
