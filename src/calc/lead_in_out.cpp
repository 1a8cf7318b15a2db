// Lead-in and lead-out sizes, scaled with the plate thickness.
#include <algorithm>

#include "calc/zero_filled.h"
#include "sparlane/database.h"

namespace Sparlane {

LeadInOut Database::CalculateLeadInOut(const CuttingParameter& param, bool limit_to_thickness) {
  LeadInOut lead = calc::ZeroFilled<LeadInOut>();
  const float t = param.thickness_mm;
  lead.lead_in_length_mm = std::max(t * 0.75f, 3.0f);
  lead.lead_out_length_mm = lead.lead_in_length_mm * 1.5f;
  lead.lead_in_angle_deg = t < 6.0f ? 60.0f : 90.0f;
  lead.lead_in_radius_mm = lead.lead_in_length_mm * 0.5f;
  lead.lead_out_radius_mm = lead.lead_out_length_mm * 0.5f;
  lead.lead_out_angle_deg = 45.0f;
  lead.use_arc_lead_in = t >= 3.0f;
  lead.use_lead_out = true;
  if (limit_to_thickness) {
    // Only the lengths shrink; the radii deliberately keep the full-size values.
    lead.lead_in_length_mm = std::min(lead.lead_in_length_mm, t * 0.5f);
    lead.lead_out_length_mm = std::min(t, lead.lead_out_length_mm);
  }
  return lead;
}

}  // namespace Sparlane
