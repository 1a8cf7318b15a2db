// The C records against their C++ originals.  Records of the same layout
// are checked field by field at compile time and copied bytewise; the two
// results that hold a 64-byte-aligned record are copied field by field.
#ifndef SPARLANE_BINDINGS_C_MIRROR_H_
#define SPARLANE_BINDINGS_C_MIRROR_H_

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "sparlane/c.h"
#include "sparlane/sparlane.h"

namespace sparlane_c {

// Same byte layout: same size, and every field at the same offset with the
// same size.  Listing every field makes the check complete.
#define SPARLANE_SAME_FIELD(c_type, cpp_type, field)                              \
  static_assert(offsetof(c_type, field) == offsetof(Sparlane::cpp_type, field) && \
                    sizeof(c_type::field) == sizeof(Sparlane::cpp_type::field),   \
                #c_type "." #field " matches " #cpp_type)
#define SPARLANE_SAME_SIZE(c_type, cpp_type) \
  static_assert(sizeof(c_type) == sizeof(Sparlane::cpp_type), #c_type " size")

// A copy of a record into its mirror type.  Only for pairs checked below.
template <typename To, typename From>
To Mirror(const From& from) {
  static_assert(sizeof(To) == sizeof(From), "mirrored records have the same size");
  static_assert(std::is_trivially_copyable<To>::value && std::is_trivially_copyable<From>::value,
                "plain records");
  To to;
  std::memcpy(&to, &from, sizeof to);
  return to;
}

inline Sparlane::CuttingParameter ToCpp(const sparlane_parameter_t& p) {
  return Mirror<Sparlane::CuttingParameter>(p);
}
inline sparlane_parameter_t ToC(const Sparlane::CuttingParameter& p) {
  return Mirror<sparlane_parameter_t>(p);
}

template <typename Result>
void InterpolationToC(const Result& r, sparlane_interpolation_t* out) {
  std::memcpy(&out->parameter, &r.parameter, sizeof out->parameter);
  out->confidence = r.confidence;
  out->extrapolated = r.extrapolated ? 1 : 0;
}

// Writes a query's optional result: 1 and the mirrored value, or 0 and a
// zeroed *out.
template <typename COut, typename Found>
int PutFound(const Found& found, COut* out) noexcept {
  if (found) {
    *out = Mirror<COut>(*found);
    return 1;
  }
  std::memset(out, 0, sizeof *out);
  return 0;
}

// Runs a calculation whose inputs are checked and mirrors its result into
// *out: Success, InvalidParameter for a NULL out, OutOfMemory should the
// calculation throw.
template <typename COut, typename Call>
int Calculate(COut* out, Call&& call) noexcept {
  if (out == nullptr) return SPARLANE_INVALID_PARAMETER;
  try {
    *out = Mirror<COut>(call());
    return SPARLANE_SUCCESS;
  } catch (...) {
    return SPARLANE_OUT_OF_MEMORY;
  }
}

}  // namespace sparlane_c

#endif  // SPARLANE_BINDINGS_C_MIRROR_H_
