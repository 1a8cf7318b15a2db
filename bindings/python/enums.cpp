// ErrorCode, Compression and QualityLevel as Python IntEnums, made from the
// C++ values, and sparlane.Error raised with them.
#include <utility>
#include <vector>

#include "convert.h"
#include "module.h"

namespace sparlane_py {

namespace {

using Sparlane::CompressionType;
using Sparlane::ErrorCode;
using Sparlane::QualityLevel;

// The enum classes live as long as the interpreter; references are kept.
py::handle error_code_type;
py::handle quality_level_type;

template <typename E>
py::handle MakeEnum(py::module_& m, const char* name, const char* doc,
                    const std::vector<std::pair<const char*, E>>& members) {
  py::list items;
  for (const auto& member : members) {
    items.append(py::make_tuple(member.first, static_cast<long long>(member.second)));
  }
  py::object type =
      py::module_::import("enum").attr("IntEnum")(name, items, py::arg("module") = "sparlane");
  type.attr("__doc__") = doc;
  m.attr(name) = type;
  return type.release();
}

}  // namespace

py::object ToErrorCode(ErrorCode code) { return error_code_type(static_cast<int>(code)); }

py::object ToQualityLevel(QualityLevel level) {
  const int value = static_cast<int>(level);
  if (value > static_cast<int>(QualityLevel::Precision)) return py::int_(value);
  return quality_level_type(value);
}

void RaiseIfFailed(ErrorCode code, const std::string& message) {
  if (code == ErrorCode::Success) return;
  static py::handle error_type =
      py::object(py::module_::import("sparlane._error").attr("Error")).release();
  py::object error = error_type(ToErrorCode(code), ToStr(message));
  PyErr_SetObject(error_type.ptr(), error.ptr());
  throw py::error_already_set();
}

void BindEnums(py::module_& m) {
  error_code_type = MakeEnum<ErrorCode>(
      m, "ErrorCode", "The result of a failed operation, carried by sparlane.Error.code.",
      {{"SUCCESS", ErrorCode::Success},
       {"FILE_NOT_FOUND", ErrorCode::FileNotFound},
       {"INVALID_MAGIC", ErrorCode::InvalidMagic},
       {"UNSUPPORTED_VERSION", ErrorCode::UnsupportedVersion},
       {"CORRUPTED_FILE", ErrorCode::CorruptedFile},
       {"INVALID_DATA", ErrorCode::InvalidData},
       {"DECOMPRESSION_FAILED", ErrorCode::DecompressionFailed},
       {"OUT_OF_MEMORY", ErrorCode::OutOfMemory},
       {"INVALID_PARAMETER", ErrorCode::InvalidParameter},
       {"BUFFER_TOO_SMALL", ErrorCode::BufferTooSmall},
       {"CHECKSUM_MISMATCH", ErrorCode::ChecksumMismatch},
       {"IO_ERROR", ErrorCode::IoError},
       {"ACCESS_DENIED", ErrorCode::AccessDenied},
       {"ALREADY_EXISTS", ErrorCode::AlreadyExists},
       {"NOT_LOADED", ErrorCode::NotLoaded},
       {"COMPRESSION_FAILED", ErrorCode::CompressionFailed}});
  MakeEnum<CompressionType>(m, "Compression", "How Database.save stores the records.",
                            {{"NONE", CompressionType::None},
                             {"LZ4", CompressionType::LZ4},
                             {"RESERVED", CompressionType::Reserved}});
  quality_level_type = MakeEnum<QualityLevel>(
      m, "QualityLevel", "Edge quality, from fastest (PRODUCTION) to finest (PRECISION).",
      {{"PRODUCTION", QualityLevel::Production},
       {"STANDARD", QualityLevel::Standard},
       {"FINE", QualityLevel::Fine},
       {"PRECISION", QualityLevel::Precision}});
}

}  // namespace sparlane_py
