// Lookups, interpolation and adjustments.  Queries never fail: a NULL
// handle, name or out pointer, or exhausted memory, gives the empty result.
#include <optional>

#include "handle.h"
#include "lists.h"
#include "mirror.h"

using Sparlane::CuttingParameter;
using sparlane_c::IsName;
using sparlane_c::LengthOf;
using sparlane_c::Name;
using sparlane_c::OptionalLengthOf;
using sparlane_c::PutFound;
using sparlane_c::Query;

namespace {

using Record = std::optional<CuttingParameter>;

// Whether a query has its handle and both names.
bool CanAsk(const sparlane_db_t* db, const char* a, size_t a_length, const char* b,
            size_t b_length) {
  return db != nullptr && IsName(a, a_length) && IsName(b, b_length);
}

}  // namespace

extern "C" {

int sparlane_db_find_exact_n(const sparlane_db_t* db, const char* material, size_t material_length,
                             float thickness, const char* machine_model,
                             size_t machine_model_length, float tolerance,
                             sparlane_parameter_t* out) {
  if (out == nullptr) return 0;
  const Record found = Query(Record(), [&]() -> Record {
    if (!CanAsk(db, material, material_length, machine_model, machine_model_length)) return {};
    return db->db.FindExact(Name(material, material_length), thickness,
                            Name(machine_model, machine_model_length), tolerance);
  });
  return PutFound(found, out);
}

int sparlane_db_find_exact(const sparlane_db_t* db, const char* material, float thickness,
                           const char* machine_model, float tolerance, sparlane_parameter_t* out) {
  return sparlane_db_find_exact_n(db, material, LengthOf(material), thickness, machine_model,
                                  LengthOf(machine_model), tolerance, out);
}

int sparlane_db_find_nearest_n(const sparlane_db_t* db, const char* material,
                               size_t material_length, float thickness, const char* machine_model,
                               size_t machine_model_length, sparlane_parameter_t* out) {
  if (out == nullptr) return 0;
  const Record found = Query(Record(), [&]() -> Record {
    if (!CanAsk(db, material, material_length, machine_model, machine_model_length)) return {};
    return db->db.FindNearest(Name(material, material_length), thickness,
                              Name(machine_model, machine_model_length));
  });
  return PutFound(found, out);
}

int sparlane_db_find_nearest(const sparlane_db_t* db, const char* material, float thickness,
                             const char* machine_model, sparlane_parameter_t* out) {
  return sparlane_db_find_nearest_n(db, material, LengthOf(material), thickness, machine_model,
                                    LengthOf(machine_model), out);
}

size_t sparlane_db_find_by_machine_n(const sparlane_db_t* db, const char* vendor,
                                     size_t vendor_length, const char* machine_model,
                                     size_t machine_model_length, sparlane_parameter_list_t* out) {
  if (out == nullptr) return 0;
  *out = {nullptr, 0};
  return Query(size_t{0}, [&]() -> size_t {
    if (!CanAsk(db, vendor, vendor_length, machine_model, machine_model_length)) return 0;
    return sparlane_c::PutRecords(db->db.FindByMachine(Name(vendor, vendor_length),
                                                       Name(machine_model, machine_model_length)),
                                  out);
  });
}

size_t sparlane_db_find_by_machine(const sparlane_db_t* db, const char* vendor,
                                   const char* machine_model, sparlane_parameter_list_t* out) {
  return sparlane_db_find_by_machine_n(db, vendor, OptionalLengthOf(vendor), machine_model,
                                       LengthOf(machine_model), out);
}

size_t sparlane_db_find_by_material_n(const sparlane_db_t* db, const char* material,
                                      size_t material_length, sparlane_parameter_list_t* out) {
  if (out == nullptr) return 0;
  *out = {nullptr, 0};
  return Query(size_t{0}, [&]() -> size_t {
    if (db == nullptr || !IsName(material, material_length)) return 0;
    return sparlane_c::PutRecords(db->db.FindByMaterial(Name(material, material_length)), out);
  });
}

size_t sparlane_db_find_by_material(const sparlane_db_t* db, const char* material,
                                    sparlane_parameter_list_t* out) {
  return sparlane_db_find_by_material_n(db, material, LengthOf(material), out);
}

int sparlane_db_supported_thickness_range_n(const sparlane_db_t* db, const char* material,
                                            size_t material_length, const char* machine_model,
                                            size_t machine_model_length,
                                            sparlane_thickness_range_t* out) {
  if (out == nullptr) return 0;
  using Range = std::optional<Sparlane::SupportedThicknessRange>;
  const Range range = Query(Range(), [&]() -> Range {
    if (!CanAsk(db, material, material_length, machine_model, machine_model_length)) return {};
    return db->db.GetSupportedThicknessRange(Name(material, material_length),
                                             Name(machine_model, machine_model_length));
  });
  PutFound(range, out);
  return out->valid ? 1 : 0;
}

int sparlane_db_supported_thickness_range(const sparlane_db_t* db, const char* material,
                                          const char* machine_model,
                                          sparlane_thickness_range_t* out) {
  return sparlane_db_supported_thickness_range_n(db, material, LengthOf(material), machine_model,
                                                 OptionalLengthOf(machine_model), out);
}

int sparlane_db_interpolate_n(const sparlane_db_t* db, const char* material, size_t material_length,
                              float thickness, const char* machine_model,
                              size_t machine_model_length, sparlane_interpolation_t* out) {
  if (out == nullptr) return 0;
  using Result = Sparlane::InterpolationResult;
  const Result result = Query(Result{}, [&]() -> Result {
    if (!CanAsk(db, material, material_length, machine_model, machine_model_length)) return {};
    return db->db.Interpolate(Name(material, material_length), thickness,
                              Name(machine_model, machine_model_length));
  });
  sparlane_c::InterpolationToC(result, out);
  return result.confidence > 0.0f ? 1 : 0;
}

int sparlane_db_interpolate(const sparlane_db_t* db, const char* material, float thickness,
                            const char* machine_model, sparlane_interpolation_t* out) {
  return sparlane_db_interpolate_n(db, material, LengthOf(material), thickness, machine_model,
                                   LengthOf(machine_model), out);
}

int sparlane_db_find_optimal_n(const sparlane_db_t* db, const char* material,
                               size_t material_length, float thickness, float tolerance,
                               sparlane_parameter_t* out) {
  if (out == nullptr) return 0;
  const Record found = Query(Record(), [&]() -> Record {
    if (db == nullptr || !IsName(material, material_length)) return {};
    return db->db.FindOptimal(Name(material, material_length), thickness, tolerance);
  });
  return PutFound(found, out);
}

int sparlane_db_find_optimal(const sparlane_db_t* db, const char* material, float thickness,
                             float tolerance, sparlane_parameter_t* out) {
  return sparlane_db_find_optimal_n(db, material, LengthOf(material), thickness, tolerance, out);
}

int sparlane_db_adjust_for_max_speed(const sparlane_db_t* db, const sparlane_parameter_t* base,
                                     float max_speed, sparlane_parameter_t* out) {
  if (db == nullptr || base == nullptr) return SPARLANE_INVALID_PARAMETER;
  return sparlane_c::Calculate(
      out, [&] { return db->db.AdjustForMaxSpeed(sparlane_c::ToCpp(*base), max_speed); });
}

float sparlane_calculate_effective_thickness(float thickness, float angle_degrees) {
  return Sparlane::Database::CalculateEffectiveThickness(thickness, angle_degrees);
}

}  // extern "C"
