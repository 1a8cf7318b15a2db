// The library's records as Python classes.  Field names are the C++ ones.
#include <cstring>

#include "module.h"
#include "record_class.h"

namespace sparlane_py {

namespace S = Sparlane;

namespace {

void BindCuttingParameter(py::module_& m) {
  using P = S::CuttingParameter;
  RecordClass<P>(MakeNativeRecordType<P>(m, "CuttingParameter"), "CuttingParameter",
                 "One row of the parameter table (64 bytes in files).  Ids are 1-based "
                 "positions in the name tables; floats are single precision.",
                 &NativeRecordBytes)
      .Number("vendor_id", &P::vendor_id)
      .Number("machine_model_id", &P::machine_model_id)
      .Number("material_id", &P::material_id)
      .Number("aux_id", &P::aux_id, "Opaque; copied by every derived record.")
      .Number("thickness_mm", &P::thickness_mm)
      .Number("cut_speed_mm_min", &P::cut_speed_mm_min)
      .Number("cut_height_mm", &P::cut_height_mm)
      .Number("pierce_height_mm", &P::pierce_height_mm)
      .Number("transfer_height_mm", &P::transfer_height_mm)
      .Number("arc_voltage_v", &P::arc_voltage_v)
      .Number("pierce_time_s", &P::pierce_time_s)
      .Number("kerf_width_mm", &P::kerf_width_mm)
      .Number("current_amps", &P::current_amps)
      .Bytes("reserved_42", &P::reserved_42, "6 opaque bytes, carried along unchanged.")
      .Number("flags", &P::flags, "FLAG_DERIVED, FLAG_SPEED_CAPPED, FLAG_ANGLE_ADJUSTED, ...")
      .Bytes("reserved_52", &P::reserved_52, "12 opaque bytes, carried along unchanged.")
      .Finish();
}

void BindFileHeader(py::module_& m) {
  using H = S::FileHeader;
  RecordClass<H>(m, "FileHeader", "The 1024-byte header of a parameter file.")
      .Number("magic", &H::magic)
      .Number("version_major", &H::version_major)
      .Number("version_minor", &H::version_minor)
      .Number("created_time", &H::created_time)
      .Number("parameter_count", &H::parameter_count)
      .Number("vendor_count", &H::vendor_count)
      .Number("machine_count", &H::machine_count)
      .Number("material_count", &H::material_count)
      .Bytes("reserved_32", &H::reserved_32)
      .Number("vendor_table_offset", &H::vendor_table_offset)
      .Number("machine_table_offset", &H::machine_table_offset)
      .Number("material_table_offset", &H::material_table_offset)
      .Bytes("reserved_72", &H::reserved_72)
      .Number("aux_offset_1", &H::aux_offset_1)
      .Number("aux_offset_2", &H::aux_offset_2)
      .Bytes("reserved_96", &H::reserved_96)
      .Number("parameter_data_offset", &H::parameter_data_offset)
      .Number("compression", &H::compression)
      .Bytes("reserved_113", &H::reserved_113)
      .Number("stats_compressed_size", &H::stats_compressed_size)
      .Number("stats_uncompressed_size", &H::stats_uncompressed_size)
      .Bytes("reserved_124", &H::reserved_124)
      .Number("header_crc32", &H::header_crc32)
      .Bytes("reserved_132", &H::reserved_132)
      .Text("creator", &H::creator)
      .Bytes("reserved_176", &H::reserved_176)
      .Finish();
  py::class_<H>(m.attr("FileHeader"))
      .def_static(
          "from_bytes",
          [](const py::bytes& data) {
            const std::string bytes = data;
            if (bytes.size() < sizeof(H)) {
              throw py::value_error("a file header needs 1024 bytes");
            }
            H header;
            std::memcpy(&header, bytes.data(), sizeof header);
            return header;
          },
          py::arg("data"), "The header in the first 1024 bytes of data.")
      .def(
          "to_bytes",
          [](const H& header) {
            return py::bytes(reinterpret_cast<const char*>(&header), sizeof header);
          },
          "The header's 1024 bytes as they stand in a file.");
}

void BindQueryResults(py::module_& m) {
  using I = S::InterpolationResult;
  RecordClass<I>(MakeNativeRecordType<I>(m, "InterpolationResult"), "InterpolationResult",
                 "Settings built for a thickness.", &NativeRecordBytes)
      .Record("parameter", &I::parameter, &ViewOf<S::CuttingParameter>)
      .Number("confidence", &I::confidence, "0.0 to 1.0; 0.0 when nothing could be built.")
      .Number("extrapolated", &I::extrapolated, "Outside the bracketing records.")
      .Finish();

  using R = S::SupportedThicknessRange;
  RecordClass<R>(m, "SupportedThicknessRange", "The thicknesses a material is listed for.")
      .Number("min_thickness_mm", &R::min_thickness_mm)
      .Number("max_thickness_mm", &R::max_thickness_mm)
      .Number("parameter_count", &R::parameter_count)
      .Number("valid", &R::valid)
      .Finish();

  using M = S::PerformanceMetrics;
  RecordClass<M>(m, "PerformanceMetrics", "Counters of the timed queries.")
      .Number("total_queries", &M::total_queries)
      .Number("queries_found", &M::queries_found)
      .Number("queries_not_found", &M::queries_not_found)
      .Number("avg_query_time_us", &M::avg_query_time_us)
      .Number("max_query_time_us", &M::max_query_time_us)
      .Number("min_query_time_us", &M::min_query_time_us)
      .Finish();

  using D = S::DatabaseStats;
  RecordClass<D>(m, "DatabaseStats", "Counts and file figures; all zero when not loaded.")
      .Number("parameter_count", &D::parameter_count)
      .Number("vendor_count", &D::vendor_count)
      .Number("machine_count", &D::machine_count)
      .Number("material_count", &D::material_count)
      .Number("consumable_set_count", &D::consumable_set_count)
      .Number("file_size_bytes", &D::file_size_bytes)
      .Number("uncompressed_size", &D::uncompressed_size)
      .Number("compression_ratio", &D::compression_ratio)
      .Finish();
}

void BindTimeAndCost(py::module_& m) {
  using E = S::CutEstimate;
  RecordClass<E>(m, "CutEstimate", "Time to cut a path and pierce its starts.")
      .Number("cut_time_s", &E::cut_time_s)
      .Number("pierce_time_total_s", &E::pierce_time_total_s)
      .Number("total_time_s", &E::total_time_s)
      .Number("cut_length_mm", &E::cut_length_mm)
      .Number("pierce_count", &E::pierce_count)
      .Finish();

  using P = S::MaterialPricing;
  RecordClass<P>(m, "MaterialPricing", "Plate price and density for estimate_job_cost.")
      .Number("price_per_kg", &P::price_per_kg)
      .Number("density_kg_m3", &P::density_kg_m3)
      .Number("material_utilization", &P::material_utilization, "Below 0.1 counts as 0.1.")
      .Finish();

  using C = S::JobCost;
  RecordClass<C>(m, "JobCost", "The cost of a job, by kind.")
      .Number("material_cost", &C::material_cost)
      .Number("consumable_cost", &C::consumable_cost)
      .Number("machine_cost", &C::machine_cost)
      .Number("overhead_cost", &C::overhead_cost)
      .Number("total_cost", &C::total_cost)
      .Number("cost_per_meter", &C::cost_per_meter)
      .Number("cost_per_pierce", &C::cost_per_pierce)
      .Finish();

  using U = S::ConsumableUsage;
  RecordClass<U>(m, "ConsumableUsage", "How much a consumable set has been used.")
      .Number("usage_id", &U::usage_id, "The host's own tag; not read by the library.")
      .Number("starts", &U::starts)
      .Number("arc_hours", &U::arc_hours)
      .Number("stress_factor_1", &U::stress_factor_1)
      .Number("stress_factor_2", &U::stress_factor_2)
      .Number("stress_factor_3", &U::stress_factor_3)
      .Number("stress_factor_4", &U::stress_factor_4)
      .Finish();

  using L = S::ConsumableLife;
  RecordClass<L>(m, "ConsumableLife", "Life left in a consumable set.")
      .Number("primary_life_pct", &L::primary_life_pct)
      .Number("secondary_life_pct", &L::secondary_life_pct)
      .Number("tertiary_life_pct", &L::tertiary_life_pct)
      .Number("primary_starts_left", &L::primary_starts_left)
      .Number("secondary_starts_left", &L::secondary_starts_left)
      .Number("primary_hours_left", &L::primary_hours_left)
      .Number("secondary_hours_left", &L::secondary_hours_left)
      .Number("primary_replace_soon", &L::primary_replace_soon)
      .Number("secondary_replace_soon", &L::secondary_replace_soon)
      .Number("tertiary_replace_soon", &L::tertiary_replace_soon)
      .Number("life_flag_reserved", &L::life_flag_reserved)
      .Finish();

  using Set = S::ConsumableSet;
  RecordClass<Set>(m, "ConsumableSet", "A torch consumable set, stored whole.")
      .Number("set_id", &Set::set_id)
      .Number("rated_current_amps", &Set::rated_current_amps)
      .Text("description", &Set::description)
      .Text("nozzle_part", &Set::nozzle_part)
      .Text("electrode_part", &Set::electrode_part)
      .Text("shield_part", &Set::shield_part)
      .Text("swirl_ring_part", &Set::swirl_ring_part)
      .Finish();
}

void BindPathFigures(py::module_& m) {
  using K = S::KerfCompensation;
  RecordClass<K>(m, "KerfCompensation", "Path offset for the kerf.")
      .Number("offset_mm", &K::offset_mm, "Negative for inside cuts.")
      .Number("kerf_width_mm", &K::kerf_width_mm)
      .Number("is_inside", &K::is_inside)
      .Finish();

  using L = S::LeadInOut;
  RecordClass<L>(m, "LeadInOut", "Lead-in and lead-out geometry.")
      .Number("lead_in_length_mm", &L::lead_in_length_mm)
      .Number("lead_out_length_mm", &L::lead_out_length_mm)
      .Number("lead_in_angle_deg", &L::lead_in_angle_deg)
      .Number("lead_in_radius_mm", &L::lead_in_radius_mm)
      .Number("lead_out_radius_mm", &L::lead_out_radius_mm)
      .Number("lead_out_angle_deg", &L::lead_out_angle_deg)
      .Number("use_arc_lead_in", &L::use_arc_lead_in)
      .Number("use_lead_out", &L::use_lead_out)
      .Finish();

  using C = S::CornerSlowdown;
  RecordClass<C>(m, "CornerSlowdown", "Speed and distances around a corner.")
      .Number("speed_factor", &C::speed_factor, "Fraction of cut speed at the corner.")
      .Number("decel_distance_mm", &C::decel_distance_mm)
      .Number("slow_zone_mm", &C::slow_zone_mm)
      .Number("accel_distance_mm", &C::accel_distance_mm)
      .Number("sharp_corner", &C::sharp_corner)
      .Number("sharp_corner_extension_mm", &C::sharp_corner_extension_mm)
      .Finish();

  using H = S::SmallHoleParams;
  RecordClass<H>(m, "SmallHoleParams", "Settings for a small hole.")
      .Number("speed_factor", &H::speed_factor)
      .Number("current_factor", &H::current_factor)
      .Number("min_diameter_mm", &H::min_diameter_mm)
      .Number("small_hole", &H::small_hole)
      .Number("very_small_hole", &H::very_small_hole)
      .Number("hole_flag_reserved", &H::hole_flag_reserved)
      .Number("lead_in_max_mm", &H::lead_in_max_mm)
      .Finish();

  using P = S::PartSpacing;
  RecordClass<P>(m, "PartSpacing", "Gaps between nested parts.")
      .Number("min_spacing_mm", &P::min_spacing_mm)
      .Number("sheet_edge_margin_mm", &P::sheet_edge_margin_mm)
      .Number("base_gap_mm", &P::base_gap_mm)
      .Number("kerf_width_mm", &P::kerf_width_mm)
      .Number("recommended_spacing_mm", &P::recommended_spacing_mm)
      .Finish();

  using R = S::CommonLineRules;
  RecordClass<R>(m, "CommonLineRules", "Whether and how parts may share a cut line.")
      .Number("allowed", &R::allowed)
      .Number("max_thickness_mm", &R::max_thickness_mm)
      .Number("min_segment_length_mm", &R::min_segment_length_mm)
      .Number("line_spacing_mm", &R::line_spacing_mm)
      .Number("requires_tabs", &R::requires_tabs)
      .Number("tab_width_mm", &R::tab_width_mm)
      .Finish();
}

void BindEdgeFigures(py::module_& m) {
  using Q = S::EdgeQualityProfile;
  RecordClass<Q>(m, "EdgeQualityProfile", "Speed and current for an edge quality level.")
      .Level("level", &Q::level)
      .Number("speed_factor", &Q::speed_factor)
      .Number("current_factor", &Q::current_factor)
      .Number("surface_roughness_um", &Q::surface_roughness_um)
      .Number("tolerance_mm", &Q::tolerance_mm)
      .Number("max_bevel_deg", &Q::max_bevel_deg)
      .Finish();

  using H = S::HeatAffectedZone;
  RecordClass<H>(m, "HeatAffectedZone", "Width of the heat-affected zone.")
      .Number("haz_width_mm", &H::haz_width_mm)
      .Number("inner_zone_mm", &H::inner_zone_mm)
      .Number("outer_zone_mm", &H::outer_zone_mm)
      .Number("high_heat_input", &H::high_heat_input)
      .Finish();

  using B = S::BevelLimits;
  RecordClass<B>(m, "BevelLimits", "Bevel angles a plate allows.")
      .Number("max_bevel_angle_deg", &B::max_bevel_angle_deg)
      .Number("max_land_height_mm", &B::max_land_height_mm)
      .Number("recommended_angle_deg", &B::recommended_angle_deg)
      .Number("bevel_supported", &B::bevel_supported)
      .Number("thick_plate", &B::thick_plate)
      .Number("very_thick_plate", &B::very_thick_plate)
      .Number("angle_speed_coefficient", &B::angle_speed_coefficient)
      .Finish();
}

}  // namespace

void BindRecords(py::module_& m) {
  m.def("_record_from_bytes", &RecordFromBytes, "Unpickles a record.");
  BindCuttingParameter(m);
  BindFileHeader(m);
  BindQueryResults(m);
  BindTimeAndCost(m);
  BindPathFigures(m);
  BindEdgeFigures(m);
}

}  // namespace sparlane_py
