// The records queries hand back on every call (CuttingParameter,
// InterpolationResult) are native Python types rather than pybind11
// classes: a native object costs a fraction of a pybind11 instance to make.
// An object holds its record bytes itself, or views a record inside another
// object it keeps alive (InterpolationResult.parameter), so changes through
// the view land there.  Fields, ==, repr and pickling come from RecordClass
// as for every record.
#ifndef SPARLANE_BINDINGS_PYTHON_NATIVE_RECORD_H_
#define SPARLANE_BINDINGS_PYTHON_NATIVE_RECORD_H_

#include <pybind11/pybind11.h>

#include <cstddef>
#include <cstring>

#include "sparlane/sparlane.h"

namespace sparlane_py {

namespace py = pybind11;

// The native type of record T, once made.
template <typename T>
struct NativeRecord {
  static PyTypeObject* type;
};
template <typename T>
PyTypeObject* NativeRecord<T>::type = nullptr;

// Makes a type sparlane.<name> whose objects hold size record bytes, and adds
// it to m.
py::object MakeNativeRecordType(py::module_& m, const char* name, std::size_t size,
                                PyTypeObject** type);

// The record bytes of an object of a native record type (not aligned for
// the C++ record: copy them in and out with memcpy).
void* NativeRecordBytes(py::handle object);
py::object NewNativeRecord(PyTypeObject* type, const void* bytes, std::size_t size);
py::object NativeRecordView(PyTypeObject* type, py::handle owner, void* bytes);

template <typename T>
py::object MakeNativeRecordType(py::module_& m, const char* name) {
  return MakeNativeRecordType(m, name, sizeof(T), &NativeRecord<T>::type);
}

template <typename T>
py::object ViewOf(py::handle owner, void* bytes) {
  return NativeRecordView(NativeRecord<T>::type, owner, bytes);
}

// pybind11 conversions of a record with a native type.
template <typename T>
bool LoadNativeRecord(py::handle source, T& record) {
  PyTypeObject* type = NativeRecord<T>::type;
  if (type == nullptr || !PyObject_TypeCheck(source.ptr(), type)) return false;
  std::memcpy(static_cast<void*>(&record), NativeRecordBytes(source), sizeof(T));
  return true;
}

template <typename T>
py::handle CastNativeRecord(const T& record) {
  return NewNativeRecord(NativeRecord<T>::type, &record, sizeof(T)).release();
}

}  // namespace sparlane_py

#define SPARLANE_NATIVE_RECORD_CASTER(Type, python_name)                                    \
  template <>                                                                               \
  struct type_caster<Type> {                                                                \
    PYBIND11_TYPE_CASTER(Type, const_name(python_name));                                    \
    bool load(handle source, bool) { return sparlane_py::LoadNativeRecord(source, value); } \
    static handle cast(const Type& record, return_value_policy, handle) {                   \
      return sparlane_py::CastNativeRecord(record);                                         \
    }                                                                                       \
  }

namespace pybind11 {
namespace detail {

SPARLANE_NATIVE_RECORD_CASTER(Sparlane::CuttingParameter, "CuttingParameter");
SPARLANE_NATIVE_RECORD_CASTER(Sparlane::InterpolationResult, "InterpolationResult");

}  // namespace detail
}  // namespace pybind11

#endif  // SPARLANE_BINDINGS_PYTHON_NATIVE_RECORD_H_
