#include "store/record_rules.h"

#include <cmath>

namespace Sparlane {
namespace {

using Names = NameTableSizes;

// --- rules shared by more than one table -------------------------------------

bool IdInTable(std::uint16_t id, std::size_t table_size) { return id != 0 && id <= table_size; }

bool VendorInTable(const CuttingParameter& p, const Names& n) {
  return IdInTable(p.vendor_id, n.vendors);
}
bool MachineInTable(const CuttingParameter& p, const Names& n) {
  return IdInTable(p.machine_model_id, n.machines);
}
bool MaterialInTable(const CuttingParameter& p, const Names& n) {
  return IdInTable(p.material_id, n.materials);
}

template <float CuttingParameter::*F>
bool Finite(const CuttingParameter& p, const Names&) {
  return std::isfinite(p.*F);
}

// The eight float fields, thickness to kerf width, in record order.
bool AllFloatsFinite(const CuttingParameter& p, const Names& n) {
  return Finite<&CuttingParameter::thickness_mm>(p, n) &&
         Finite<&CuttingParameter::cut_speed_mm_min>(p, n) &&
         Finite<&CuttingParameter::cut_height_mm>(p, n) &&
         Finite<&CuttingParameter::pierce_height_mm>(p, n) &&
         Finite<&CuttingParameter::transfer_height_mm>(p, n) &&
         Finite<&CuttingParameter::arc_voltage_v>(p, n) &&
         Finite<&CuttingParameter::pierce_time_s>(p, n) &&
         Finite<&CuttingParameter::kerf_width_mm>(p, n);
}

// --- kStore ------------------------------------------------------------------

bool ThicknessPositive(const CuttingParameter& p, const Names&) {
  return !(p.thickness_mm <= 0.0f);
}
bool SpeedPositive(const CuttingParameter& p, const Names&) {
  return !(p.cut_speed_mm_min <= 0.0f);
}
bool CurrentNonZero(const CuttingParameter& p, const Names&) { return p.current_amps != 0; }

const RecordRule kStoreRules[] = {
    {AllFloatsFinite, "Parameter contains invalid float value (NaN or Inf)", nullptr},
    {ThicknessPositive, "Material thickness must be positive", nullptr},
    {SpeedPositive, "Cut speed must be positive", nullptr},
    {CurrentNonZero, "Process current must be non-zero", nullptr},
    {VendorInTable, "Invalid vendor ID", nullptr},
    {MachineInTable, "Invalid machine model ID", nullptr},
    {MaterialInTable, "Invalid material ID", nullptr},
};

// --- kValidate ---------------------------------------------------------------

// Only these five; transfer height, pierce time and kerf width are
// deliberately not part of the float test here.
bool CoreFloatsFinite(const CuttingParameter& p, const Names& n) {
  return Finite<&CuttingParameter::thickness_mm>(p, n) &&
         Finite<&CuttingParameter::cut_speed_mm_min>(p, n) &&
         Finite<&CuttingParameter::cut_height_mm>(p, n) &&
         Finite<&CuttingParameter::pierce_height_mm>(p, n) &&
         Finite<&CuttingParameter::arc_voltage_v>(p, n);
}
bool ThicknessUpTo500(const CuttingParameter& p, const Names&) {
  return p.thickness_mm > 0.0f && !(p.thickness_mm > 500.0f);
}
bool SpeedUpTo100000(const CuttingParameter& p, const Names&) {
  return p.cut_speed_mm_min > 0.0f && !(p.cut_speed_mm_min > 100000.0f);
}

const RecordRule kValidateRules[] = {
    {VendorInTable, "Invalid vendor_id", &CuttingParameter::vendor_id},
    {MachineInTable, "Invalid machine_model_id", &CuttingParameter::machine_model_id},
    {MaterialInTable, "Invalid material_id", &CuttingParameter::material_id},
    {CoreFloatsFinite, "Invalid float value (NaN or Inf)", nullptr},
    {ThicknessUpTo500, "Thickness out of range", nullptr},
    {SpeedUpTo100000, "Cut speed out of range", nullptr},
};

// --- kStrict -----------------------------------------------------------------
// Tighter limits than kValidate's on purpose (300 mm, 20000 mm/min).  Each
// field is its own rule so the reason can name it.

template <std::uint16_t CuttingParameter::*F>
bool NonZero(const CuttingParameter& p, const Names&) {
  return p.*F != 0;
}
template <float CuttingParameter::*F>
bool NotNegative(const CuttingParameter& p, const Names&) {
  return !(p.*F < 0.0f);
}
bool StrictThickness(const CuttingParameter& p, const Names&) {
  return !(p.thickness_mm < 0.1f || p.thickness_mm > 300.0f);
}
bool StrictSpeed(const CuttingParameter& p, const Names&) {
  return !(p.cut_speed_mm_min < 10.0f || p.cut_speed_mm_min > 20000.0f);
}
bool StrictCurrent(const CuttingParameter& p, const Names&) {
  return !(p.current_amps == 0 || p.current_amps > 1000);
}
bool StrictVoltage(const CuttingParameter& p, const Names&) {
  return !(p.arc_voltage_v < 20.0f || p.arc_voltage_v > 300.0f);
}
// The torch pierces at least as high as it cuts.
bool PiercesAboveCut(const CuttingParameter& p, const Names&) {
  return !(p.cut_height_mm > p.pierce_height_mm);
}

#define SPARLANE_FIELD_RULE(test, field, text) \
  { test<&CuttingParameter::field>, #field text, nullptr }

const RecordRule kStrictRules[] = {
    SPARLANE_FIELD_RULE(Finite, thickness_mm, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, cut_speed_mm_min, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, cut_height_mm, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, pierce_height_mm, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, transfer_height_mm, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, arc_voltage_v, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, pierce_time_s, " must be a finite number"),
    SPARLANE_FIELD_RULE(Finite, kerf_width_mm, " must be a finite number"),
    SPARLANE_FIELD_RULE(NonZero, vendor_id, " must not be 0"),
    SPARLANE_FIELD_RULE(NonZero, machine_model_id, " must not be 0"),
    SPARLANE_FIELD_RULE(NonZero, material_id, " must not be 0"),
    {StrictThickness, "thickness_mm must be 0.1 to 300 mm", nullptr},
    {StrictSpeed, "cut_speed_mm_min must be 10 to 20000 mm/min", nullptr},
    {StrictCurrent, "current_amps must be 1 to 1000 A", nullptr},
    {StrictVoltage, "arc_voltage_v must be 20 to 300 V", nullptr},
    SPARLANE_FIELD_RULE(NotNegative, cut_height_mm, " must not be negative"),
    SPARLANE_FIELD_RULE(NotNegative, pierce_height_mm, " must not be negative"),
    SPARLANE_FIELD_RULE(NotNegative, transfer_height_mm, " must not be negative"),
    SPARLANE_FIELD_RULE(NotNegative, pierce_time_s, " must not be negative"),
    SPARLANE_FIELD_RULE(NotNegative, kerf_width_mm, " must not be negative"),
    {PiercesAboveCut, "cut_height_mm must not exceed pierce_height_mm", nullptr},
};

#undef SPARLANE_FIELD_RULE

template <std::size_t N>
const RecordRule* FirstBroken(const RecordRule (&rules)[N], const CuttingParameter& p,
                              const Names& names) {
  for (const RecordRule& rule : rules) {
    if (!rule.holds(p, names)) return &rule;
  }
  return nullptr;
}

}  // namespace

const RecordRule* FirstBrokenRule(RecordCheck check, const CuttingParameter& p,
                                  const NameTableSizes& names) {
  switch (check) {
    case RecordCheck::kStore:
      return FirstBroken(kStoreRules, p, names);
    case RecordCheck::kValidate:
      return FirstBroken(kValidateRules, p, names);
    case RecordCheck::kStrict:
      return FirstBroken(kStrictRules, p, names);
  }
  return nullptr;
}

}  // namespace Sparlane
