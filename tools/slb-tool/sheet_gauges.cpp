#include "sheet_gauges.h"

#include "text_fields.h"

namespace slb {

std::optional<GaugeFamily> GaugeFamilyOf(const std::string& material) {
  const std::string lower = Lower(material);
  const auto holds = [&](const char* word) { return lower.find(word) != std::string::npos; };
  // Stainless and galvanised steels are steels too: the more particular
  // names are tried first.
  if (holds("stainless")) return GaugeFamily::Stainless;
  if (holds("galv")) return GaugeFamily::Galvanised;
  if (holds("alumin")) return GaugeFamily::Aluminium;
  if (holds("steel")) return GaugeFamily::Steel;
  return std::nullopt;
}

const char* GaugeFamilyName(GaugeFamily family) {
  switch (family) {
    case GaugeFamily::Galvanised: return "galvanised steel";
    case GaugeFamily::Stainless: return "stainless steel";
    case GaugeFamily::Aluminium: return "aluminium";
    case GaugeFamily::Steel: break;
  }
  return "steel";
}

const std::vector<Gauge>& GaugeTable(GaugeFamily family) {
  static const std::vector<Gauge> steel = {
      {3, 0.2391},  {4, 0.2242},  {5, 0.2092},  {6, 0.1943},  {7, 0.1793},  {8, 0.1644},
      {9, 0.1495},  {10, 0.1345}, {11, 0.1196}, {12, 0.1046}, {13, 0.0897}, {14, 0.0747},
      {15, 0.0673}, {16, 0.0598}, {17, 0.0538}, {18, 0.0478}, {19, 0.0418}, {20, 0.0359},
      {21, 0.0329}, {22, 0.0299}, {23, 0.0269}, {24, 0.0239}, {25, 0.0209}, {26, 0.0179},
      {27, 0.0164}, {28, 0.0149}, {29, 0.0135}, {30, 0.0120}};
  static const std::vector<Gauge> galvanised = {
      {8, 0.1681},  {9, 0.1532},  {10, 0.1382}, {11, 0.1233}, {12, 0.1084}, {13, 0.0934},
      {14, 0.0785}, {15, 0.0710}, {16, 0.0635}, {17, 0.0575}, {18, 0.0516}, {19, 0.0456},
      {20, 0.0396}, {21, 0.0366}, {22, 0.0336}, {23, 0.0306}, {24, 0.0276}, {25, 0.0247},
      {26, 0.0217}, {27, 0.0202}, {28, 0.0187}, {29, 0.0172}, {30, 0.0157}};
  static const std::vector<Gauge> stainless = {
      {7, 0.1875},  {8, 0.1719},  {9, 0.1563},  {10, 0.1406}, {11, 0.1250}, {12, 0.1094},
      {13, 0.0938}, {14, 0.0781}, {15, 0.0703}, {16, 0.0625}, {17, 0.0563}, {18, 0.0500},
      {19, 0.0438}, {20, 0.0375}, {21, 0.0344}, {22, 0.0313}, {23, 0.0281}, {24, 0.0250},
      {25, 0.0219}, {26, 0.0188}, {28, 0.0156}, {30, 0.0125}};
  static const std::vector<Gauge> aluminium = {
      {3, 0.2294},  {4, 0.2043},  {5, 0.1819},  {6, 0.1620},  {7, 0.1443},  {8, 0.1285},
      {9, 0.1144},  {10, 0.1019}, {11, 0.0907}, {12, 0.0808}, {13, 0.0720}, {14, 0.0641},
      {15, 0.0571}, {16, 0.0508}, {17, 0.0453}, {18, 0.0403}, {19, 0.0359}, {20, 0.0320},
      {21, 0.0285}, {22, 0.0253}, {23, 0.0226}, {24, 0.0201}, {25, 0.0179}, {26, 0.0159}};
  switch (family) {
    case GaugeFamily::Galvanised: return galvanised;
    case GaugeFamily::Stainless: return stainless;
    case GaugeFamily::Aluminium: return aluminium;
    case GaugeFamily::Steel: break;
  }
  return steel;
}

std::optional<double> GaugeInches(int gauge, GaugeFamily family) {
  for (const auto& g : GaugeTable(family)) {
    if (g.number == gauge) return g.inches;
  }
  return std::nullopt;
}

}  // namespace slb
