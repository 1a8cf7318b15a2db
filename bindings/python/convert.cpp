#include "convert.h"

#include <cfloat>
#include <charconv>
#include <cmath>

namespace sparlane_py {

namespace {

// Half a unit in the last place above FLT_MAX: doubles below it round to a
// finite float.
constexpr double kFloatOverflow = 3.4028235677973366e38;

}  // namespace

std::string BytesOf(PyObject* bytes) {
  return std::string(PyBytes_AS_STRING(bytes), static_cast<std::size_t>(PyBytes_GET_SIZE(bytes)));
}

float ToFloat(double value) {
  if (std::isfinite(value) && std::fabs(value) > FLT_MAX) {
    if (std::fabs(value) >= kFloatOverflow) {
      PyErr_SetString(PyExc_OverflowError, "float too large for single precision");
      throw py::error_already_set();
    }
    return value > 0 ? FLT_MAX : -FLT_MAX;
  }
  return static_cast<float>(value);
}

std::string FloatText(float value) {
  if (std::isnan(value)) return "nan";
  if (std::isinf(value)) return value > 0 ? "inf" : "-inf";
  char text[64];
  const auto written = std::to_chars(text, text + sizeof text, value);
  std::string shortest(text, written.ptr);
  // As Python writes floats: 8.0, not 8.
  if (shortest.find_first_of(".e") == std::string::npos) shortest += ".0";
  return shortest;
}

double FromFloat(float value) {
  if (!std::isfinite(value)) return static_cast<double>(value);
  char text[64];
  const auto written = std::to_chars(text, text + sizeof text, value);
  double shortest = static_cast<double>(value);
  std::from_chars(text, written.ptr, shortest);
  return shortest;
}

py::str ToStr(const std::string& bytes) {
  PyObject* text =
      PyUnicode_DecodeUTF8(bytes.data(), static_cast<Py_ssize_t>(bytes.size()), "surrogateescape");
  if (text == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(text);
}

py::list ToStrList(const std::vector<std::string>& names) {
  py::list list(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    list[i] = ToStr(names[i]);
  }
  return list;
}

}  // namespace sparlane_py

namespace pybind11 {
namespace detail {

bool type_caster<sparlane_py::Name>::load(handle source, bool) {
  if (PyBytes_Check(source.ptr())) {
    value.bytes = sparlane_py::BytesOf(source.ptr());
    return true;
  }
  if (!PyUnicode_Check(source.ptr())) return false;
  // The UTF-8 a str keeps of itself, when it has no lone surrogates.
  Py_ssize_t size = 0;
  if (const char* utf8 = PyUnicode_AsUTF8AndSize(source.ptr(), &size)) {
    value.bytes.assign(utf8, static_cast<std::size_t>(size));
    return true;
  }
  PyErr_Clear();
  object bytes = reinterpret_steal<object>(
      PyUnicode_AsEncodedString(source.ptr(), "utf-8", "surrogateescape"));
  if (!bytes) throw error_already_set();
  value.bytes = sparlane_py::BytesOf(bytes.ptr());
  return true;
}

bool type_caster<sparlane_py::Path>::load(handle source, bool) {
  if (!PyUnicode_Check(source.ptr()) && !PyBytes_Check(source.ptr()) &&
      !PyObject_HasAttrString(source.ptr(), "__fspath__")) {
    return false;
  }
  object path = reinterpret_steal<object>(PyOS_FSPath(source.ptr()));
  if (!path) throw error_already_set();
  if (PyUnicode_Check(path.ptr())) {
    path = reinterpret_steal<object>(PyUnicode_EncodeFSDefault(path.ptr()));
    if (!path) throw error_already_set();
  }
  value.bytes = sparlane_py::BytesOf(path.ptr());
  return true;
}

handle type_caster<sparlane_py::Path>::cast(const sparlane_py::Path& path, return_value_policy,
                                            handle) {
  return PyUnicode_DecodeFSDefaultAndSize(path.bytes.data(),
                                          static_cast<Py_ssize_t>(path.bytes.size()));
}

bool type_caster<sparlane_py::Float32>::load(handle source, bool) {
  if (PyFloat_CheckExact(source.ptr())) {
    value.value = sparlane_py::ToFloat(PyFloat_AS_DOUBLE(source.ptr()));
    return true;
  }
  if (!PyFloat_Check(source.ptr()) && !PyLong_Check(source.ptr()) &&
      !PyObject_HasAttrString(source.ptr(), "__float__")) {
    return false;
  }
  const double number = PyFloat_AsDouble(source.ptr());
  if (number == -1.0 && PyErr_Occurred()) throw error_already_set();
  value.value = sparlane_py::ToFloat(number);
  return true;
}

}  // namespace detail
}  // namespace pybind11
