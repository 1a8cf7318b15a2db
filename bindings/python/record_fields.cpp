// The type-erased half of RecordClass: properties, ==, repr, to_dict and
// pickling for every bound record, written once.
#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "record_class.h"

namespace sparlane_py {

namespace {

// Every bound record class and its layout, for unpickling.  The classes live
// as long as the interpreter.
std::map<PyObject*, std::shared_ptr<const RecordLayout>>& Layouts() {
  static auto* layouts = new std::map<PyObject*, std::shared_ptr<const RecordLayout>>();
  return *layouts;
}

const RecordField* Find(const RecordLayout& layout, const std::string& name) {
  for (const RecordField& f : layout.fields) {
    if (f.name == name) return &f;
  }
  return nullptr;
}

void AddProperty(py::handle cls, const RecordField& field) {
  auto get = field.attribute ? field.attribute : field.get;
  auto set = field.set;
  py::cpp_function fget([get](py::handle self) { return get(self); });
  py::cpp_function fset([set](py::handle self, py::handle value) { set(self, value); });
  py::object property = py::module_::import("builtins").attr("property");
  cls.attr(field.name.c_str()) = property(fget, fset, py::none(), field.doc);
}

}  // namespace

std::string BytesText(const py::object& bytes) {
  const std::string raw = bytes.cast<std::string>();
  if (raw.find_first_not_of('\0') == std::string::npos) return std::string();
  return py::repr(bytes);
}

void CopyBytes(void* to, std::size_t size, py::handle value, const std::string& field) {
  if (!PyBytes_Check(value.ptr()) ||
      PyBytes_GET_SIZE(value.ptr()) != static_cast<Py_ssize_t>(size)) {
    throw py::value_error(field + " must be bytes of length " + std::to_string(size));
  }
  std::memcpy(to, PyBytes_AS_STRING(value.ptr()), size);
}

py::object TextTo(const char* text, std::size_t size) {
  std::size_t length = 0;
  while (length < size && text[length] != '\0') ++length;
  return ToStr(std::string(text, length));
}

void TextFrom(char* to, std::size_t size, py::handle value, const std::string& field) {
  const std::string bytes = py::cast<Name>(value).bytes;
  if (bytes.size() > size) {
    throw py::value_error(field + " holds at most " + std::to_string(size) + " bytes");
  }
  std::memset(to, 0, size);
  std::memcpy(to, bytes.data(), bytes.size());
}

void SetFromKeywords(const RecordLayout& layout, py::handle record, const py::kwargs& kwargs) {
  for (auto item : kwargs) {
    const std::string key = py::cast<std::string>(item.first);
    const RecordField* field = Find(layout, key);
    if (field == nullptr) {
      throw py::type_error(layout.name + "() got an unexpected keyword argument '" + key + "'");
    }
    field->set(record, item.second);
  }
}

void AddRecordMethods(py::handle cls, const std::shared_ptr<const RecordLayout>& layout) {
  for (const RecordField& field : layout->fields) AddProperty(cls, field);

  cls.attr("__eq__") = py::cpp_function(
      [layout, cls](py::handle self, py::handle other) -> py::object {
        if (!py::isinstance(other, cls))
          return py::reinterpret_borrow<py::object>(Py_NotImplemented);
        for (const RecordField& f : layout->fields) {
          if (!f.get(self).equal(f.get(other))) return py::bool_(false);
        }
        return py::bool_(true);
      },
      py::is_method(cls), py::name("__eq__"));
  // Mutable, so unhashable, as Python's own mutable records are.
  cls.attr("__hash__") = py::none();

  cls.attr("__repr__") = py::cpp_function(
      [layout](py::handle self) {
        std::string text = layout->name + "(";
        bool first = true;
        for (const RecordField& f : layout->fields) {
          const std::string value = f.text(self);
          if (value.empty()) continue;
          text += (first ? "" : ", ") + f.name + "=" + value;
          first = false;
        }
        return text + ")";
      },
      py::is_method(cls), py::name("__repr__"));

  cls.attr("to_dict") = py::cpp_function(
      [layout](py::handle self) {
        py::dict dict;
        for (const RecordField& f : layout->fields) dict[py::str(f.name)] = f.get(self);
        return dict;
      },
      py::is_method(cls), py::name("to_dict"),
      py::doc("The fields as a dict (name: value), e.g. for json.dumps."));

  // Pickled as the record's bytes, restored by sparlane._restore.
  Layouts()[cls.ptr()] = layout;
  cls.attr("__reduce__") = py::cpp_function(
      [layout](py::handle self) {
        const char* bytes = static_cast<const char*>(layout->bytes(self));
        py::object restore = py::module_::import("sparlane._restore").attr("record_from_bytes");
        return py::make_tuple(
            restore, py::make_tuple(py::type::handle_of(self), py::bytes(bytes, layout->size)));
      },
      py::is_method(cls), py::name("__reduce__"));

  // Shown and pickled under the package name.
  cls.attr("__module__") = "sparlane";
}

py::object RecordFromBytes(const py::type& cls, const py::bytes& state) {
  const auto found = Layouts().find(cls.ptr());
  if (found == Layouts().end()) throw py::type_error("not a sparlane record class");
  const RecordLayout& layout = *found->second;
  const std::string bytes = state;
  if (bytes.size() != layout.size) throw py::value_error("bad " + layout.name + " state");
  py::object record = cls();
  std::memcpy(layout.bytes(record), bytes.data(), bytes.size());
  return record;
}

}  // namespace sparlane_py
