// The per-call queries of sparlane.Database (find_exact, find_nearest,
// find_optimal, interpolate) as vectorcall methods: pybind11's general
// dispatcher costs about as much as the query itself.  Arguments take the
// same conversions as everywhere else (names, single-precision floats).
#include <optional>

#include "convert.h"
#include "database.h"

namespace sparlane_py {

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;

// Python's own rules for positional and keyword arguments: out[i] is the
// argument called names[i], or null for a left-out optional one.
bool ReadArguments(const char* function, const char* const* names, int count, int required,
                   PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames, PyObject** out) {
  if (nargs > count) {
    PyErr_Format(PyExc_TypeError, "%s() takes at most %d arguments (%zd given)", function, count,
                 nargs);
    return false;
  }
  for (int i = 0; i < count; ++i) out[i] = i < nargs ? args[i] : nullptr;
  const Py_ssize_t keywords = kwnames != nullptr ? PyTuple_GET_SIZE(kwnames) : 0;
  for (Py_ssize_t k = 0; k < keywords; ++k) {
    PyObject* key = PyTuple_GET_ITEM(kwnames, k);
    int i = 0;
    while (i < count && PyUnicode_CompareWithASCIIString(key, names[i]) != 0) ++i;
    if (i == count) {
      PyErr_Format(PyExc_TypeError, "%s() got an unexpected keyword argument '%U'", function, key);
      return false;
    }
    if (out[i] != nullptr) {
      PyErr_Format(PyExc_TypeError, "%s() got multiple values for argument '%s'", function,
                   names[i]);
      return false;
    }
    out[i] = args[nargs + k];
  }
  for (int i = 0; i < required; ++i) {
    if (out[i] == nullptr) {
      PyErr_Format(PyExc_TypeError, "%s() missing required argument '%s'", function, names[i]);
      return false;
    }
  }
  return true;
}

template <typename T>
T Argument(PyObject* value, const char* name) {
  py::detail::make_caster<T> caster;
  if (!caster.load(value, true)) {
    throw py::type_error(std::string(name) + ": cannot take " +
                         std::string(py::str(py::type::handle_of(value).attr("__name__"))));
  }
  return py::detail::cast_op<T>(std::move(caster));
}

float Thickness(PyObject* value, const char* name) { return Argument<Float32>(value, name).value; }

// Runs a query on the database behind self; any C++ exception becomes the
// Python one pybind11 would raise.
template <typename Query>
PyObject* Answer(PyObject* self, Query&& query) noexcept {
  try {
    PyDatabase& database = py::handle(self).cast<PyDatabase&>();
    return query(database).release().ptr();
  } catch (...) {
    py::detail::translate_exception(std::current_exception());
    return nullptr;
  }
}

py::object RecordOrNone(const std::optional<CuttingParameter>& found) {
  return found ? py::cast(*found) : py::none();
}

constexpr float kDefaultTolerance = 0.001f;

PyObject* FindExact(PyObject* self, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) {
  static const char* const names[] = {"material", "thickness", "machine_model", "tolerance"};
  PyObject* a[4];
  if (!ReadArguments("find_exact", names, 4, 3, args, nargs, kwnames, a)) return nullptr;
  return Answer(self, [&](PyDatabase& database) {
    const Name material = Argument<Name>(a[0], names[0]);
    const float thickness = Thickness(a[1], names[1]);
    const Name machine = Argument<Name>(a[2], names[2]);
    const float tolerance = a[3] != nullptr ? Thickness(a[3], names[3]) : kDefaultTolerance;
    return RecordOrNone(Ask(database, [&](const Database& d) {
      return d.FindExact(material.bytes, thickness, machine.bytes, tolerance);
    }));
  });
}

PyObject* FindNearest(PyObject* self, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) {
  static const char* const names[] = {"material", "thickness", "machine_model"};
  PyObject* a[3];
  if (!ReadArguments("find_nearest", names, 3, 3, args, nargs, kwnames, a)) return nullptr;
  return Answer(self, [&](PyDatabase& database) {
    const Name material = Argument<Name>(a[0], names[0]);
    const float thickness = Thickness(a[1], names[1]);
    const Name machine = Argument<Name>(a[2], names[2]);
    return RecordOrNone(Ask(database, [&](const Database& d) {
      return d.FindNearest(material.bytes, thickness, machine.bytes);
    }));
  });
}

PyObject* FindOptimal(PyObject* self, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) {
  static const char* const names[] = {"material", "thickness", "tolerance"};
  PyObject* a[3];
  if (!ReadArguments("find_optimal", names, 3, 2, args, nargs, kwnames, a)) return nullptr;
  return Answer(self, [&](PyDatabase& database) {
    const Name material = Argument<Name>(a[0], names[0]);
    const float thickness = Thickness(a[1], names[1]);
    const float tolerance = a[2] != nullptr ? Thickness(a[2], names[2]) : kDefaultTolerance;
    return RecordOrNone(Ask(database, [&](const Database& d) {
      return d.FindOptimal(material.bytes, thickness, tolerance);
    }));
  });
}

PyObject* Interpolate(PyObject* self, PyObject* const* args, Py_ssize_t nargs, PyObject* kwnames) {
  static const char* const names[] = {"material", "thickness", "machine_model"};
  PyObject* a[3];
  if (!ReadArguments("interpolate", names, 3, 3, args, nargs, kwnames, a)) return nullptr;
  return Answer(self, [&](PyDatabase& database) {
    const Name material = Argument<Name>(a[0], names[0]);
    const float thickness = Thickness(a[1], names[1]);
    const Name machine = Argument<Name>(a[2], names[2]);
    return py::cast(Ask(database, [&](const Database& d) {
      return d.Interpolate(material.bytes, thickness, machine.bytes);
    }));
  });
}

template <PyObject* (*Method)(PyObject*, PyObject* const*, Py_ssize_t, PyObject*)>
PyCFunction AsCFunction() {
  // The C API's way to store a fast-call method in a PyMethodDef.
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(Method));
}

}  // namespace

void BindFastQueries(py::handle database_class) {
  static PyMethodDef methods[] = {
      {"find_exact", AsCFunction<&FindExact>(), METH_FASTCALL | METH_KEYWORDS,
       "find_exact($self, /, material, thickness, machine_model, tolerance=0.001)\n--\n\n"
       "A record within tolerance of the thickness, or None."},
      {"find_nearest", AsCFunction<&FindNearest>(), METH_FASTCALL | METH_KEYWORDS,
       "find_nearest($self, /, material, thickness, machine_model)\n--\n\n"
       "The record with the closest thickness, or None."},
      {"find_optimal", AsCFunction<&FindOptimal>(), METH_FASTCALL | METH_KEYWORDS,
       "find_optimal($self, /, material, thickness, tolerance=0.001)\n--\n\n"
       "The fastest record of any machine within tolerance, or None."},
      {"interpolate", AsCFunction<&Interpolate>(), METH_FASTCALL | METH_KEYWORDS,
       "interpolate($self, /, material, thickness, machine_model)\n--\n\n"
       "Settings for a thickness, with .parameter, .confidence and .extrapolated."},
  };
  auto* type = reinterpret_cast<PyTypeObject*>(database_class.ptr());
  for (PyMethodDef& method : methods) {
    py::object descriptor = py::reinterpret_steal<py::object>(PyDescr_NewMethod(type, &method));
    if (!descriptor) throw py::error_already_set();
    database_class.attr(method.ml_name) = descriptor;
  }
}

}  // namespace sparlane_py
