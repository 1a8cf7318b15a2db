// Reading SheetCam tool tables: [ToolN] sections of Type=PlasmaTool with
// keys such as "Kerf\ width", "Pierce\ height" and "Feed\ rate".
#ifndef SLB_TOOL_SHEETCAM_IMPORT_H_
#define SLB_TOOL_SHEETCAM_IMPORT_H_

#include <string>
#include <vector>

#include "material_entry.h"

namespace slb {

// Plasma tools in file order; other tool types and sections are skipped.
// False when the file cannot be read.
bool ReadSheetcamFile(const std::string& path, std::vector<MaterialEntry>& entries,
                      std::vector<std::string>& warnings);

}  // namespace slb

#endif  // SLB_TOOL_SHEETCAM_IMPORT_H_
