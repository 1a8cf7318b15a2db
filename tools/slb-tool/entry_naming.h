// Thickness and material from the free-text name of a material-file entry
// ("Mild Steel - 45 A - 3/16 IN", "stal 3 mm", "Mild Steel/1.7-3.4mm").
#ifndef SLB_TOOL_ENTRY_NAMING_H_
#define SLB_TOOL_ENTRY_NAMING_H_

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace slb {

enum class LengthUnit { Millimetre, Inch };

constexpr double kMmPerInch = 25.4;

struct NamedThickness {
  double mm = 0.0;
  std::string note;     // set when the reading was a guess worth reporting
  std::string problem;  // set when the number cannot be used: the entry is invalid
};

// Reads a thickness from a name, first match wins: a range ("1.7-3.4mm",
// its middle), a gauge ("16 GA", by the material's gauge table), a fraction
// ("3/16 IN" or a bare "3/16", inches), a number with a unit ("0.8mm",
// "1 IN"), and last a bare number not followed by "A" (in bare_unit).
// A minus that starts a word is the number's sign ("-3mm"); a number too
// large for a double is reported in problem.  When the name holds no
// thickness, returns nullopt and sets reason.
std::optional<NamedThickness> ThicknessFromName(const std::string& name,
                                                const std::string& material,
                                                LengthUnit bare_unit, std::string& reason);

// Material rules: PATTERN=MATERIAL, PATTERN matched case-insensitively (ASCII)
// anywhere in the name; the first matching rule wins.
using MaterialRule = std::pair<std::string, std::string>;

// Parses "PATTERN=MATERIAL"; false when there is no '=' or a side is empty.
bool ParseMaterialRule(const std::string& text, MaterialRule& rule);

// The rules used after the user's own: mild steel, stainless, aluminium.
const std::vector<MaterialRule>& DefaultMaterialRules();

// The material of a name by the rules, else fallback (may be empty).
std::string MaterialFromName(const std::string& name, const std::vector<MaterialRule>& rules,
                             const std::string& fallback);

}  // namespace slb

#endif  // SLB_TOOL_ENTRY_NAMING_H_
