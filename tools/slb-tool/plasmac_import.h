// Reading LinuxCNC PlasmaC / QtPlasmaC material files: [MATERIAL_NUMBER_n]
// blocks with NAME, KERF_WIDTH, PIERCE_HEIGHT, ... and the old .mat format
// whose sections are named by their description.
#ifndef SLB_TOOL_PLASMAC_IMPORT_H_
#define SLB_TOOL_PLASMAC_IMPORT_H_

#include <string>
#include <vector>

#include "material_entry.h"

namespace slb {

// Entries in file order; a material number given twice keeps its later
// block (as QtPlasmaC does) and warns.  False when the file cannot be read.
bool ReadPlasmacFile(const std::string& path, std::vector<MaterialEntry>& entries,
                     std::vector<std::string>& warnings);

}  // namespace slb

#endif  // SLB_TOOL_PLASMAC_IMPORT_H_
