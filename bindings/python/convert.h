// Conversions between Python objects and the library's C++ types: names and
// paths as Python passes them, single-precision floats, and the enums.
#ifndef SPARLANE_BINDINGS_PYTHON_CONVERT_H_
#define SPARLANE_BINDINGS_PYTHON_CONVERT_H_

#include <pybind11/pybind11.h>

#include <string>
#include <vector>

#include "native_record.h"
#include "sparlane/sparlane.h"

namespace sparlane_py {

namespace py = pybind11;

// A name: str (UTF-8; lone surrogates from undecodable bytes go back to
// those bytes) or bytes as they are.
struct Name {
  std::string bytes;
};

// A path: str, bytes or os.PathLike, encoded as the file system expects.
struct Path {
  std::string bytes;
};

// A Python number stored as a float; beyond the float range is OverflowError.
struct Float32 {
  float value = 0.0f;
};

// Raises OverflowError (Python's own rule for packing a float) when a finite
// value lies beyond the single-precision range.
float ToFloat(double value);

// The Python float for a stored float: the shortest decimal that stores the
// same single-precision value, so 6.35 reads back as 6.35.
double FromFloat(float value);
// The same decimal as text, for repr.
std::string FloatText(float value);

// The bytes of a Python bytes object.
std::string BytesOf(PyObject* bytes);

// Library text for Python: str, undecodable bytes as lone surrogates.
py::str ToStr(const std::string& bytes);
py::list ToStrList(const std::vector<std::string>& names);

// The enum classes, created by BindEnums.  Values convert both ways.
py::object ToErrorCode(Sparlane::ErrorCode code);
py::object ToQualityLevel(Sparlane::QualityLevel level);

}  // namespace sparlane_py

namespace pybind11 {
namespace detail {

template <>
struct type_caster<sparlane_py::Name> {
  PYBIND11_TYPE_CASTER(sparlane_py::Name, const_name("str"));
  bool load(handle source, bool convert);
  static handle cast(const sparlane_py::Name& name, return_value_policy, handle) {
    return sparlane_py::ToStr(name.bytes).release();
  }
};

template <>
struct type_caster<sparlane_py::Path> {
  PYBIND11_TYPE_CASTER(sparlane_py::Path, const_name("os.PathLike"));
  bool load(handle source, bool convert);
  static handle cast(const sparlane_py::Path& path, return_value_policy, handle);
};

template <>
struct type_caster<sparlane_py::Float32> {
  PYBIND11_TYPE_CASTER(sparlane_py::Float32, const_name("float"));
  bool load(handle source, bool convert);
  static handle cast(sparlane_py::Float32 number, return_value_policy, handle) {
    return PyFloat_FromDouble(sparlane_py::FromFloat(number.value));
  }
};

}  // namespace detail
}  // namespace pybind11

#endif  // SPARLANE_BINDINGS_PYTHON_CONVERT_H_
