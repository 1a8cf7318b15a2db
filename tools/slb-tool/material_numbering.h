// Material numbers for controller files.
//
// A G-code program selects a material by number, so a number must keep
// meaning the same plate when the file is written again, also after rows,
// thicknesses, materials or machines were added.  The number is therefore
// a function of the material name and the thickness alone: FNV-1a (64 bit)
// of the name's bytes, a zero byte and the thickness in mm as the shortest
// text that reads back to the same float ("6.35"), modulo 999,999, plus 1.
// Numbers run from 1 to 999,999: 0 is the controller's default material
// and 1,000,000 and up are its temporary ones.  When two entries want one
// number, the first in the order given keeps it and the other takes the
// next free number above (999,999 wraps to 1).
#ifndef SLB_TOOL_MATERIAL_NUMBERING_H_
#define SLB_TOOL_MATERIAL_NUMBERING_H_

#include <cstdint>
#include <string>
#include <vector>

namespace slb {

constexpr std::uint32_t kHighestMaterialNumber = 999999;

// The number a material and thickness want.
std::uint32_t PreferredMaterialNumber(const std::string& material, float thickness_mm);

struct NumberRequest {
  std::string material;
  float thickness_mm;
};

// One distinct number per request, handed out in the order given.  At most
// kHighestMaterialNumber requests.
std::vector<std::uint32_t> AssignMaterialNumbers(const std::vector<NumberRequest>& requests);

}  // namespace slb

#endif  // SLB_TOOL_MATERIAL_NUMBERING_H_
