#include "native_record.h"

#include <cstddef>

namespace sparlane_py {

namespace {

struct NativeRecordObject {
  PyObject_HEAD PyObject* owner;  // the object whose record this views; null for its own
  unsigned char* data;            // storage, or the viewed record
  unsigned char storage[1];       // the record's bytes follow the head
};

constexpr std::size_t kStorage = offsetof(NativeRecordObject, storage);

PyObject* NewObject(PyTypeObject* type, PyObject*, PyObject*) {
  auto* self = reinterpret_cast<NativeRecordObject*>(type->tp_alloc(type, 0));
  if (self == nullptr) return nullptr;
  self->owner = nullptr;
  self->data = self->storage;
  std::memset(self->storage, 0, static_cast<std::size_t>(type->tp_basicsize) - kStorage);
  return reinterpret_cast<PyObject*>(self);
}

void DeleteObject(PyObject* object) {
  auto* self = reinterpret_cast<NativeRecordObject*>(object);
  PyTypeObject* type = Py_TYPE(object);
  Py_CLEAR(self->owner);
  type->tp_free(object);
  Py_DECREF(type);  // heap types are referenced by their instances
}

NativeRecordObject* Allocate(PyTypeObject* type) {
  PyObject* object = NewObject(type, nullptr, nullptr);
  if (object == nullptr) throw py::error_already_set();
  return reinterpret_cast<NativeRecordObject*>(object);
}

}  // namespace

py::object MakeNativeRecordType(py::module_& m, const char* name, std::size_t size,
                                PyTypeObject** type) {
  static PyType_Slot slots[] = {{Py_tp_new, reinterpret_cast<void*>(&NewObject)},
                                {Py_tp_dealloc, reinterpret_cast<void*>(&DeleteObject)},
                                {0, nullptr}};
  // The type keeps pointing at its name; it must outlive the type.
  const std::string* full_name = new std::string(std::string("sparlane.") + name);
  PyType_Spec shape = {full_name->c_str(), static_cast<int>(kStorage + size), 0, Py_TPFLAGS_DEFAULT,
                      slots};
  PyObject* made = PyType_FromSpec(&shape);
  if (made == nullptr) throw py::error_already_set();
  *type = reinterpret_cast<PyTypeObject*>(made);
  Py_INCREF(made);  // kept for the life of the interpreter
  py::object cls = py::reinterpret_steal<py::object>(made);
  m.attr(name) = cls;
  return cls;
}

void* NativeRecordBytes(py::handle object) {
  return reinterpret_cast<NativeRecordObject*>(object.ptr())->data;
}

py::object NewNativeRecord(PyTypeObject* type, const void* bytes, std::size_t size) {
  NativeRecordObject* self = Allocate(type);
  std::memcpy(self->storage, bytes, size);
  return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(self));
}

py::object NativeRecordView(PyTypeObject* type, py::handle owner, void* bytes) {
  NativeRecordObject* self = Allocate(type);
  self->owner = owner.inc_ref().ptr();
  self->data = static_cast<unsigned char*>(bytes);
  return py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(self));
}

}  // namespace sparlane_py
