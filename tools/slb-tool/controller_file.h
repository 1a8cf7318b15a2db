// A controller file on its way out: the entries of one machine model, each
// a listed record or settings derived for a thickness, and how their values
// and names are written so that slb-tool's importers read back the same
// records.
#ifndef SLB_TOOL_CONTROLLER_FILE_H_
#define SLB_TOOL_CONTROLLER_FILE_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "entry_naming.h"
#include "estimator.h"
#include "sparlane/sparlane.h"

namespace slb {

struct ControllerEntry {
  std::string material;
  Sparlane::CuttingParameter settings{};  // in mm, as the database holds them
  bool derived = false;       // computed for a thickness, not listed
  bool extrapolated = false;  // derived beyond the listed rows
  float confidence = 1.0f;    // of a derived entry
  std::optional<int> gauge;   // the gauge a derived entry was asked for by
  std::uint32_t number = 0;   // material number (tool number in SheetCam)
};

struct ControllerFile {
  std::string source;   // the database's file name, without directories
  std::string vendor;
  std::string machine;
  LengthUnit units = LengthUnit::Millimetre;
  Estimator model = Estimator::Linear;  // what derived entries were computed by
  std::vector<ControllerEntry> entries;  // in the order they are written

  // 25.4 for inches, 1 for mm: what the importer multiplies lengths by.
  double LengthScale() const;
};

// The shortest plain decimal (no exponent) that slb-tool's importers read
// back, multiplied by import_scale, as exactly value: value / import_scale
// with as few decimals as that allows.  Zero of either sign is "0".
std::string SettingText(float value, double import_scale);

// What the operator sees and the importers read the thickness from:
// "Mild steel 6.35 mm", "Mild steel 0.25 in", for a gauge "Mild steel 16 GA
// 1.51892 mm", and for a derived entry with "(derived, confidence 0.99)" or
// "(derived, extrapolated, confidence 0.42)" added.  The thickness is
// written with SettingText, so it reads back exactly.
std::string EntryName(const ControllerEntry& entry, const ControllerFile& file);

// The comment lines that open the file (without their comment mark): the
// format, the source file, the machine and the units, and which model
// computed the derived entries when there are any.
std::vector<std::string> HeaderLines(const ControllerFile& file, const std::string& format);

}  // namespace slb

#endif  // SLB_TOOL_CONTROLLER_FILE_H_
