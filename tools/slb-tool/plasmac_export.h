// Writing a LinuxCNC QtPlasmaC material file: a comment header, then one
// [MATERIAL_NUMBER_n] section per entry with every key the front end reads,
// upper case, as "KEY = value" lines, and a blank line after each section.
#ifndef SLB_TOOL_PLASMAC_EXPORT_H_
#define SLB_TOOL_PLASMAC_EXPORT_H_

#include <string>

#include "controller_file.h"

namespace slb {

// The whole file.  Lengths and speeds are in the file's units, times in
// seconds.  PUDDLE_JUMP_HEIGHT (a percentage of the pierce height, never a
// length), PUDDLE_JUMP_DELAY, PAUSE_AT_END and GAS_PRESSURE (0 = automatic)
// have no place in a record and are written as 0, CUT_MODE as 1 (normal).
std::string PlasmacMaterialFile(const ControllerFile& file);

}  // namespace slb

#endif  // SLB_TOOL_PLASMAC_EXPORT_H_
