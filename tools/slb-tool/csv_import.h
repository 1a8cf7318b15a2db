// Reading the 13-column parameter CSV (the layout the library's CSV export
// writes) into an import table.
#ifndef SLB_TOOL_CSV_IMPORT_H_
#define SLB_TOOL_CSV_IMPORT_H_

#include <string>

#include "import_table.h"
#include "problem_list.h"

namespace slb {

// The header line the export writes, without its line end.
extern const char* const kParameterCsvHeader;

// Reads the CSV at path into table, a record at a time.  Records that
// cannot be read or that the table refuses go to refused as
// "source:line: reason".  False, with fatal set, when the file as a whole
// cannot be read: it is missing or unreadable, its header is wrong, a quote
// is malformed, or it holds more records than a parameter file can.
bool ReadParameterCsv(const std::string& path, ImportTable& table, ProblemList& refused,
                      std::string& fatal);

}  // namespace slb

#endif  // SLB_TOOL_CSV_IMPORT_H_
