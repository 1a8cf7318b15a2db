// Reading the 13-column parameter CSV (the layout the library's CSV export
// writes) into import rows.
#ifndef SLB_TOOL_CSV_IMPORT_H_
#define SLB_TOOL_CSV_IMPORT_H_

#include <string>
#include <vector>

#include "import_row.h"

namespace slb {

// The header line the export writes, without its line end.
extern const char* const kParameterCsvHeader;

// Appends one row per record.  Problems are appended to errors as
// "file:line: reason"; false when there was any.
bool ReadParameterCsv(const std::string& path, std::vector<ImportRow>& rows,
                      std::vector<std::string>& errors);

}  // namespace slb

#endif  // SLB_TOOL_CSV_IMPORT_H_
