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
  // A pybind11 class of its own.
  RecordClass(py::module_& scope, const char* name, const char* doc)
      : class_(std::make_unique<py::class_<T>>(scope, name, doc)) {
    cls_ = *class_;
    Start(name, [](py::handle self) -> void* { return &self.cast<T&>(); });
  }

  // A native type made elsewhere, whose objects keep their record bytes where
  // bytes() says.
  RecordClass(py::object cls, const char* name, const char* doc, void* (*bytes)(py::handle))
      : cls_(std::move(cls)) {
    cls_.attr("__doc__") = doc;
    Start(name, bytes);
  }

  template <typename V>
  RecordClass& Number(const char* name, V T::*member, const char* doc = "") {
    const std::string field = name;
    auto layout = layout_.get();
    return Add(
        name, doc, [layout, member](py::handle r) { return NumberTo(Load(*layout, r).*member); },
        [layout, member, field](py::handle r, py::handle v) {
          T record = Load(*layout, r);
          record.*member = NumberFrom<V>(v, field);
          Store(*layout, r, record);
        },
        [layout, member](py::handle r) { return NumberText(Load(*layout, r).*member); });
  }

  // Opaque bytes (reserved areas) as bytes of exactly N; left out of repr
  // while zero.
  template <std::size_t N>
  RecordClass& Bytes(const char* name, std::uint8_t (T::*member)[N], const char* doc = "") {
    const std::string field = name;
    auto layout = layout_.get();
    auto get = [layout, member](py::handle r) {
      const T record = Load(*layout, r);
      return py::object(py::bytes(reinterpret_cast<const char*>(record.*member), N));
    };
    return Add(
        name, doc, get,
        [layout, member, field](py::handle r, py::handle v) {
          T record = Load(*layout, r);
          CopyBytes(record.*member, N, v, field);
          Store(*layout, r, record);
        },
        [get](py::handle r) { return BytesText(get(r)); });
  }

  // NUL-padded text as str; at most N bytes (UTF-8) when set.
  template <std::size_t N>
  RecordClass& Text(const char* name, char (T::*member)[N], const char* doc = "") {
    const std::string field = name;
    auto layout = layout_.get();
    auto get = [layout, member](py::handle r) { return TextTo(Load(*layout, r).*member, N); };
    return Add(
        name, doc, get,
        [layout, member, field](py::handle r, py::handle v) {
          T record = Load(*layout, r);
          TextFrom(record.*member, N, v, field);
          Store(*layout, r, record);
        },
        [get](py::handle r) { return std::string(py::repr(get(r))); });
  }

  // A record inside the record: the attribute views the inner record (changes
  // go into the outer one); to_dict() nests its dict.
  template <typename R>
  RecordClass& Record(const char* name, R T::*member, py::object (*view)(py::handle, void*),
                      const char* doc = "") {
    auto layout = layout_.get();
    RecordField f;
    f.name = name;
    f.doc = doc;
    f.get = [layout, member](py::handle r) {
      return py::cast(Load(*layout, r).*member).attr("to_dict")();
    };
    f.set = [layout, member](py::handle r, py::handle v) {
      T record = Load(*layout, r);
      record.*member = py::cast<R>(v);
      Store(*layout, r, record);
    };
    f.text = [layout, member](py::handle r) {
      return std::string(py::repr(py::cast(Load(*layout, r).*member)));
    };
    const std::size_t offset = OffsetOf(member);
    f.attribute = [layout, view, offset](py::handle r) {
      return view(r, static_cast<char*>(layout->bytes(r)) + offset);
    };
    layout_->fields.push_back(std::move(f));
    return *this;
  }

  // The quality level: a QualityLevel member, or the plain number of an
  // unknown level.
  RecordClass& Level(const char* name, Sparlane::QualityLevel T::*member, const char* doc = "") {
    const std::string field = name;
    auto layout = layout_.get();
    auto get = [layout, member](py::handle r) { return ToQualityLevel(Load(*layout, r).*member); };
    return Add(
        name, doc, get,
        [layout, member, field](py::handle r, py::handle v) {
          T record = Load(*layout, r);
          record.*member = static_cast<Sparlane::QualityLevel>(NumberFrom<std::uint8_t>(v, field));
          Store(*layout, r, record);
        },
        [get](py::handle r) {
          const py::object level = get(r);
          if (!py::hasattr(level, "name")) return std::string(py::repr(level));
          return "QualityLevel." + level.attr("name").cast<std::string>();
        });
  }

  // Adds construction, the fields, comparison, repr, to_dict and pickling.
  py::object Finish() {
    std::shared_ptr<const RecordLayout> layout = layout_;
    if (class_) {
      class_->def(py::init([layout](py::kwargs kwargs) {
                    py::object record = py::cast(T{});
                    std::memset(layout->bytes(record), 0, sizeof(T));
                    SetFromKeywords(*layout, record, kwargs);
                    return record.cast<T>();
                  }),
                  kInitDoc);
    } else {
      // A native object starts zeroed; __init__ only sets what is named.  (Not
      // named __init__ for pybind11, which would take it for a constructor of
      // one of its own classes.)
      cls_.attr("__init__") = py::cpp_function(
          [layout](py::handle self, py::kwargs kwargs) { SetFromKeywords(*layout, self, kwargs); },
          py::is_method(cls_), py::name("set_fields"), py::doc(kInitDoc));
    }
    AddRecordMethods(cls_, layout);
    return cls_;
  }

 private:
  static constexpr const char* kInitDoc = "Every field by keyword; the ones left out are zero.";

  static T Load(const RecordLayout& layout, py::handle r) {
    T record;
    std::memcpy(static_cast<void*>(&record), layout.bytes(r), sizeof record);
    return record;
  }
  static void Store(const RecordLayout& layout, py::handle r, const T& record) {
    std::memcpy(layout.bytes(r), static_cast<const void*>(&record), sizeof record);
  }
  template <typename R>
  static std::size_t OffsetOf(R T::*member) {
    const T probe{};
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&(probe.*member)) -
                                    reinterpret_cast<const char*>(&probe));
  }

  template <typename Bytes>
  void Start(const char* name, Bytes bytes) {
    layout_ = std::make_shared<RecordLayout>();
    layout_->name = name;
    layout_->size = sizeof(T);
    layout_->bytes = bytes;
  }

  template <typename Get, typename Set, typename Show>
  RecordClass& Add(const char* name, const char* doc, Get get, Set set, Show text) {
    layout_->fields.push_back(RecordField{name, doc, get, set, text, {}});
    return *this;
  }

  std::unique_ptr<py::class_<T>> class_;
  py::object cls_;
  std::shared_ptr<RecordLayout> layout_;
};

}  // namespace sparlane_py

#endif  // SPARLANE_BINDINGS_PYTHON_RECORD_CLASS_H_
