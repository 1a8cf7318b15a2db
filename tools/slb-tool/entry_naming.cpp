#include "entry_naming.h"

#include <map>
#include <regex>

#include "number_format.h"
#include "text_fields.h"

namespace slb {
namespace {

constexpr double kMmPerInch = 25.4;

double ToMm(double value, LengthUnit unit) {
  return unit == LengthUnit::Inch ? value * kMmPerInch : value;
}

LengthUnit UnitOf(const std::string& word) {
  return word == "mm" ? LengthUnit::Millimetre : LengthUnit::Inch;
}

// A number matched in a name: a decimal comma is read as a point.  Its sign
// is the minus directly before it, when that minus starts a word ("-3mm",
// "steel -3 mm"); a minus between words ("steel-3mm", "- 3 mm") separates.
struct NameNumber {
  double value = 0.0;
  bool out_of_range = false;
};

NameNumber ReadNumber(const std::string& name, const std::smatch& m, int group) {
  std::string dotted = m[group];
  for (char& c : dotted) {
    if (c == ',') c = '.';
  }
  NameNumber number;
  NumberProblem problem;
  const auto value = ParseNumber(dotted, &problem);
  number.out_of_range = !value;  // the patterns only match digits
  number.value = value.value_or(0.0);
  const auto at = static_cast<std::size_t>(m.position(group));
  const bool minus = at > 0 && name[at - 1] == '-';
  const bool starts_word = at < 2 || name[at - 2] == ' ' || name[at - 2] == '\t' ||
                           name[at - 2] == '(' || name[at - 2] == '[';
  if (minus && starts_word) number.value = -number.value;
  return number;
}

std::optional<NamedThickness> OutOfRange(const std::smatch& m, int group) {
  NamedThickness t;
  t.problem = "the thickness " + std::string(m[group]) + " in the name is out of range";
  return t;
}

}  // namespace

std::optional<double> GaugeInches(int gauge, const std::string& material) {
  // Sheet gauges in inches: manufacturers' standard gauge for steel, the
  // stainless-steel gauge, and the Brown & Sharpe gauge for aluminium.
  static const std::map<int, double> steel = {
      {3, 0.2391},  {4, 0.2242},  {5, 0.2092},  {6, 0.1943},  {7, 0.1793},  {8, 0.1644},
      {9, 0.1495},  {10, 0.1345}, {11, 0.1196}, {12, 0.1046}, {13, 0.0897}, {14, 0.0747},
      {15, 0.0673}, {16, 0.0598}, {17, 0.0538}, {18, 0.0478}, {19, 0.0418}, {20, 0.0359},
      {21, 0.0329}, {22, 0.0299}, {23, 0.0269}, {24, 0.0239}, {25, 0.0209}, {26, 0.0179},
      {27, 0.0164}, {28, 0.0149}, {29, 0.0135}, {30, 0.0120}};
  static const std::map<int, double> stainless = {
      {7, 0.1875},  {8, 0.1719},  {9, 0.1563},  {10, 0.1406}, {11, 0.1250}, {12, 0.1094},
      {13, 0.0938}, {14, 0.0781}, {15, 0.0703}, {16, 0.0625}, {17, 0.0563}, {18, 0.0500},
      {19, 0.0438}, {20, 0.0375}, {21, 0.0344}, {22, 0.0313}, {23, 0.0281}, {24, 0.0250},
      {25, 0.0219}, {26, 0.0188}, {28, 0.0156}, {30, 0.0125}};
  static const std::map<int, double> aluminium = {
      {3, 0.2294},  {4, 0.2043},  {5, 0.1819},  {6, 0.1620},  {7, 0.1443},  {8, 0.1285},
      {9, 0.1144},  {10, 0.1019}, {11, 0.0907}, {12, 0.0808}, {13, 0.0720}, {14, 0.0641},
      {15, 0.0571}, {16, 0.0508}, {17, 0.0453}, {18, 0.0403}, {19, 0.0359}, {20, 0.0320},
      {21, 0.0285}, {22, 0.0253}, {23, 0.0226}, {24, 0.0201}, {25, 0.0179}, {26, 0.0159}};
  const std::string lower = Lower(material);
  const auto& table = lower.find("stainless") != std::string::npos ? stainless
                      : lower.find("alumin") != std::string::npos  ? aluminium
                                                                   : steel;
  const auto it = table.find(gauge);
  if (it == table.end()) return std::nullopt;
  return it->second;
}

std::optional<NamedThickness> ThicknessFromName(const std::string& name,
                                                const std::string& material,
                                                LengthUnit bare_unit, std::string& reason) {
  // A number, with an exponent so that "1e400mm" is not read as 400 mm.
  static const std::string n = R"((\d+(?:[.,]\d+)?(?:e[+-]?\d+)?))";
  static const std::regex range(n + R"(\s*-\s*)" + n + R"(\s*(mm|in)(?![a-z]))");
  static const std::regex gauge(R"((?:^|[^\d.])(\d+)\s*(?:ga|gauge|gage)(?![a-z]))");
  static const std::regex fraction(R"((?:^|[^\d.])(\d+)\s*/\s*(\d+)(?![\d.]))");
  static const std::regex with_unit(n + R"(\s*(mm|in|inch|inches|")(?![a-z]))");
  static const std::regex bare(n + R"((?!\s*a(?![a-z]))(?![\d.,]))");
  const std::string lower = Lower(name);
  std::smatch m;
  if (std::regex_search(lower, m, range)) {
    const auto low = ReadNumber(lower, m, 1);
    const auto high = ReadNumber(lower, m, 2);
    if (low.out_of_range) return OutOfRange(m, 1);
    if (high.out_of_range) return OutOfRange(m, 2);
    const double mid = (ToMm(low.value, UnitOf(m[3])) + ToMm(high.value, UnitOf(m[3]))) / 2.0;
    return NamedThickness{mid, "the range " + std::string(m[0]) + " is placed at its middle", ""};
  }
  if (std::regex_search(lower, m, gauge)) {
    const auto number = ReadNumber(lower, m, 1);
    const auto inches = number.out_of_range || number.value > 1000.0
                            ? std::nullopt
                            : GaugeInches(static_cast<int>(number.value), material);
    if (!inches) {
      reason = "no gauge table entry for gauge " + std::string(m[1]);
      return std::nullopt;
    }
    return NamedThickness{*inches * kMmPerInch, "", ""};
  }
  if (std::regex_search(lower, m, fraction)) {
    const auto numerator = ReadNumber(lower, m, 1);
    const auto denominator = ReadNumber(lower, m, 2);
    if (numerator.out_of_range) return OutOfRange(m, 1);
    if (denominator.out_of_range) return OutOfRange(m, 2);
    if (denominator.value == 0.0) {
      reason = "fraction with a zero denominator";
      return std::nullopt;
    }
    return NamedThickness{numerator.value / denominator.value * kMmPerInch, "", ""};
  }
  if (std::regex_search(lower, m, with_unit)) {
    const auto number = ReadNumber(lower, m, 1);
    if (number.out_of_range) return OutOfRange(m, 1);
    const auto unit = m[2] == "mm" ? LengthUnit::Millimetre : LengthUnit::Inch;
    return NamedThickness{ToMm(number.value, unit), "", ""};
  }
  if (std::regex_search(lower, m, bare)) {
    const auto number = ReadNumber(lower, m, 1);
    if (number.out_of_range) return OutOfRange(m, 1);
    const char* unit = bare_unit == LengthUnit::Inch ? "inches" : "mm";
    return NamedThickness{ToMm(number.value, bare_unit),
                          "no unit in the name; " + ExactDouble(number.value) + " taken as " +
                              unit,
                          ""};
  }
  reason = "no thickness in the name";
  return std::nullopt;
}

bool ParseMaterialRule(const std::string& text, MaterialRule& rule) {
  const auto eq = text.find('=');
  if (eq == std::string::npos) return false;
  rule.first = Lower(Trim(std::string_view(text).substr(0, eq)));
  rule.second = std::string(Trim(std::string_view(text).substr(eq + 1)));
  return !rule.first.empty() && !rule.second.empty();
}

const std::vector<MaterialRule>& DefaultMaterialRules() {
  static const std::vector<MaterialRule> rules = {
      {"mild steel", "Mild steel"}, {"stainless", "Stainless steel"}, {"alumin", "Aluminium"}};
  return rules;
}

std::string MaterialFromName(const std::string& name, const std::vector<MaterialRule>& rules,
                             const std::string& fallback) {
  const std::string lower = Lower(name);
  for (const auto& [pattern, material] : rules) {
    if (lower.find(pattern) != std::string::npos) return material;
  }
  for (const auto& [pattern, material] : DefaultMaterialRules()) {
    if (lower.find(pattern) != std::string::npos) return material;
  }
  return fallback;
}

}  // namespace slb
