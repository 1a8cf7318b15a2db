#include "controller_file.h"

#include <charconv>

#include "number_format.h"
#include "text_fields.h"

namespace slb {

double ControllerFile::LengthScale() const {
  return units == LengthUnit::Inch ? kMmPerInch : 1.0;
}

std::string SettingText(float value, double import_scale) {
  if (value == 0.0f) return "0";
  const double written = static_cast<double>(value) / import_scale;
  // Fixed notation of any double with up to 40 decimals fits.
  char text[400];
  for (int decimals = 0; decimals <= 40; ++decimals) {
    const auto result =
        std::to_chars(text, text + sizeof text, written, std::chars_format::fixed, decimals);
    if (result.ec != std::errc()) break;
    const std::string candidate(text, result.ptr);
    const auto back = ParseNumber(candidate);
    if (back && ImportedFloat(*back * import_scale) == value) return candidate;
  }
  // Not reached for a finite float: a double holds value / import_scale
  // within far less than half a float step.
  return ExactDouble(written);
}

std::string EntryName(const ControllerEntry& entry, const ControllerFile& file) {
  std::string name = entry.material + " ";
  if (entry.gauge) name += std::to_string(*entry.gauge) + " GA ";
  name += SettingText(entry.settings.thickness_mm, file.LengthScale());
  name += file.units == LengthUnit::Inch ? " in" : " mm";
  if (entry.derived) {
    name += std::string(" (derived, ") + (entry.extrapolated ? "extrapolated, " : "") +
            "confidence " + ShopNumber(entry.confidence, Unit::kConfidence) + ")";
  }
  return name;
}

std::vector<std::string> HeaderLines(const ControllerFile& file, const std::string& format) {
  const bool inch = file.units == LengthUnit::Inch;
  std::vector<std::string> lines = {
      format + " written by slb-tool from " + Printable(file.source),
      "machine: " + file.machine + " (" + file.vendor + ")",
      std::string("units: ") + (inch ? "inch, inch/min" : "mm, mm/min") +
          "; times in seconds"};
  for (const auto& entry : file.entries) {
    if (!entry.derived) continue;
    lines.push_back(std::string("entries marked \"derived\" are computed by the ") +
                    EstimatorName(file.model) + " model from the listed rows");
    break;
  }
  return lines;
}

}  // namespace slb
