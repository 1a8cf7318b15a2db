// Writing a SheetCam tool table: a comment header, then one [ToolN] section
// of Type=PlasmaTool per entry, keys with their blanks escaped ("Kerf\ width").
#ifndef SLB_TOOL_SHEETCAM_EXPORT_H_
#define SLB_TOOL_SHEETCAM_EXPORT_H_

#include <string>

#include "controller_file.h"

namespace slb {

// The whole table.  The tool number is the entry's material number;
// "Cut current" and "Cut voltage" carry current and arc voltage, and
// "Pause at end of cut" is 0.  A value holding a character the settings
// format treats specially (, ; # " \ or a blank at either end) is written
// in double quotes, with " and \ escaped by a backslash.
std::string SheetcamToolTable(const ControllerFile& file);

}  // namespace slb

#endif  // SLB_TOOL_SHEETCAM_EXPORT_H_
