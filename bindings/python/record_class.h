// Binds a plain C++ record as a Python class with named fields: keyword
// construction (missing fields are zero), field-wise ==, a readable repr,
// to_dict() and pickling.  Each binding lists the record's fields once:
//
//   RecordClass<Sparlane::CutEstimate>(m, "CutEstimate", "doc")
//       .Number("cut_time_s", &Sparlane::CutEstimate::cut_time_s)
//       ...
//       .Finish();
//
// Field access is type-erased (record_fields.cpp), so the pybind11 function
// machinery is built once for all records rather than once per field type.
#ifndef SPARLANE_BINDINGS_PYTHON_RECORD_CLASS_H_
#define SPARLANE_BINDINGS_PYTHON_RECORD_CLASS_H_

#include <pybind11/pybind11.h>

#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "convert.h"

namespace sparlane_py {

// One field of a bound record, reached through the Python object.
struct RecordField {
  std::string name;
  std::string doc;
  std::function<py::object(py::handle)> get;        // the value, for == and to_dict
  std::function<void(py::handle, py::handle)> set;  // (record, value)
  std::function<std::string(py::handle)> text;      // repr of the value; "" leaves it out
  std::function<py::object(py::handle)> attribute;  // what the attribute gives; empty: get
};

struct RecordLayout {
  std::string name;
  std::vector<RecordField> fields;
  std::size_t size = 0;
  std::function<void*(py::handle)> bytes;  // the C++ record inside a Python object
};

// Adds the field properties and __eq__, __repr__, to_dict, pickling.
void AddRecordMethods(py::handle cls, const std::shared_ptr<const RecordLayout>& layout);
// A record of class cls made from its pickled bytes.
py::object RecordFromBytes(const py::type& cls, const py::bytes& state);
// Sets the named fields of a fresh record from keyword arguments.
void SetFromKeywords(const RecordLayout& layout, py::handle record, const py::kwargs& kwargs);

// A number from Python for a field of type V; TypeError or ValueError
// naming the field when it does not fit.
template <typename V>
V NumberFrom(py::handle value, const std::string& field) {
  if constexpr (std::is_same<V, bool>::value) {
    if (!PyBool_Check(value.ptr())) throw py::type_error(field + " must be a bool");
    return value.ptr() == Py_True;
  } else if constexpr (std::is_integral<V>::value) {
    using Limits = std::numeric_limits<V>;
    const py::object index = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
    if (!index) {
      PyErr_Clear();
      throw py::type_error(field + " must be an integer");
    }
    const py::object low = py::int_(Limits::min());
    const py::object high = py::int_(Limits::max());
    if (index < low || index > high) {
      throw py::value_error(field + " must be between " + std::to_string(Limits::min()) + " and " +
                            std::to_string(Limits::max()));
    }
    return index.cast<V>();
  } else {
    const double number = PyFloat_AsDouble(value.ptr());
    if (number == -1.0 && PyErr_Occurred()) {
      PyErr_Clear();
      throw py::type_error(field + " must be a number");
    }
    if constexpr (std::is_same<V, float>::value) {
      return ToFloat(number);
    } else {
      return number;
    }
  }
}

template <typename V>
py::object NumberTo(V value) {
  if constexpr (std::is_same<V, bool>::value) {
    return py::bool_(value);
  } else if constexpr (std::is_integral<V>::value) {
    return py::int_(value);
  } else if constexpr (std::is_same<V, float>::value) {
    return py::float_(FromFloat(value));
  } else {
    return py::float_(value);
  }
}

template <typename V>
std::string NumberText(V value) {
  if constexpr (std::is_same<V, bool>::value) {
    return value ? "True" : "False";
  } else if constexpr (std::is_integral<V>::value) {
    return std::to_string(value);
  } else if constexpr (std::is_same<V, float>::value) {
    return FloatText(value);
  } else {
    return py::repr(py::float_(value));
  }
}

// Bytes and text fields (record_fields.cpp).
std::string BytesText(const py::object& bytes);
void CopyBytes(void* to, std::size_t size, py::handle value, const std::string& field);
py::object TextTo(const char* text, std::size_t size);
void TextFrom(char* to, std::size_t size, py::handle value, const std::string& field);

template <typename T>
class RecordClass {
 public:
  RecordClass(py::module_& scope, const char* name, const char* doc)
      : class_(scope, name, doc), layout_(std::make_shared<RecordLayout>()) {
    layout_->name = name;
    layout_->size = sizeof(T);
    layout_->bytes = [](py::handle self) -> void* { return &self.cast<T&>(); };
  }

  template <typename V>
  RecordClass& Number(const char* name, V T::*member, const char* doc = "") {
    const std::string field = name;
    return Add(
        name, doc, [member](py::handle r) { return NumberTo(Of(r).*member); },
        [member, field](py::handle r, py::handle v) { Of(r).*member = NumberFrom<V>(v, field); },
        [member](py::handle r) { return NumberText(Of(r).*member); });
  }

  // Opaque bytes (reserved areas) as bytes of exactly N; left out of repr
  // while zero.
  template <std::size_t N>
  RecordClass& Bytes(const char* name, std::uint8_t (T::*member)[N], const char* doc = "") {
    const std::string field = name;
    auto get = [member](py::handle r) {
      return py::object(py::bytes(reinterpret_cast<const char*>(Of(r).*member), N));
    };
    return Add(
        name, doc, get,
        [member, field](py::handle r, py::handle v) { CopyBytes(Of(r).*member, N, v, field); },
        [get](py::handle r) { return BytesText(get(r)); });
  }

  // NUL-padded text as str; at most N bytes (UTF-8) when set.
  template <std::size_t N>
  RecordClass& Text(const char* name, char (T::*member)[N], const char* doc = "") {
    const std::string field = name;
    auto get = [member](py::handle r) { return TextTo(Of(r).*member, N); };
    return Add(
        name, doc, get,
        [member, field](py::handle r, py::handle v) { TextFrom(Of(r).*member, N, v, field); },
        [get](py::handle r) { return std::string(py::repr(get(r))); });
  }

  // A record inside the record: the attribute is the inner record itself
  // (changes go into the outer one); to_dict() nests its dict.
  template <typename R>
  RecordClass& Record(const char* name, R T::*member, const char* doc = "") {
    RecordField f;
    f.name = name;
    f.doc = doc;
    f.get = [member](py::handle r) { return py::cast(Of(r).*member).attr("to_dict")(); };
    f.set = [member](py::handle r, py::handle v) { Of(r).*member = py::cast<R>(v); };
    f.text = [member](py::handle r) { return std::string(py::repr(py::cast(Of(r).*member))); };
    f.attribute = [member](py::handle r) {
      return py::cast(&(Of(r).*member), py::return_value_policy::reference_internal, r);
    };
    layout_->fields.push_back(std::move(f));
    return *this;
  }

  // The quality level: a QualityLevel member, or the plain number of an
  // unknown level.
  RecordClass& Level(const char* name, Sparlane::QualityLevel T::*member, const char* doc = "") {
    const std::string field = name;
    auto get = [member](py::handle r) { return ToQualityLevel(Of(r).*member); };
    return Add(
        name, doc, get,
        [member, field](py::handle r, py::handle v) {
          Of(r).*member = static_cast<Sparlane::QualityLevel>(NumberFrom<std::uint8_t>(v, field));
        },
        [get](py::handle r) {
          const py::object level = get(r);
          if (!py::hasattr(level, "name")) return std::string(py::repr(level));
          return "QualityLevel." + level.attr("name").cast<std::string>();
        });
  }

  // Adds construction, the fields, comparison, repr, to_dict and pickling.
  py::class_<T>& Finish() {
    std::shared_ptr<const RecordLayout> layout = layout_;
    class_.def(py::init([layout](py::kwargs kwargs) {
                 py::object record = py::cast(T{});
                 std::memset(layout->bytes(record), 0, sizeof(T));
                 SetFromKeywords(*layout, record, kwargs);
                 return record.cast<T>();
               }),
               "Every field by keyword; the ones left out are zero.");
    AddRecordMethods(class_, layout);
    return class_;
  }

 private:
  static T& Of(py::handle record) { return record.cast<T&>(); }

  template <typename Get, typename Set, typename Show>
  RecordClass& Add(const char* name, const char* doc, Get get, Set set, Show text) {
    layout_->fields.push_back(RecordField{name, doc, get, set, text, {}});
    return *this;
  }

  py::class_<T> class_;
  std::shared_ptr<RecordLayout> layout_;
};

}  // namespace sparlane_py

#endif  // SPARLANE_BINDINGS_PYTHON_RECORD_CLASS_H_
