// sparlane.testing: the primitives behind the database.
#include <pybind11/stl.h>

#include <cstring>
#include <optional>
#include <vector>

#include "convert.h"
#include "module.h"

namespace sparlane_py {

namespace T = Sparlane::Testing;
using Sparlane::CuttingParameter;

namespace {

// The bytes of a bytes-like object (bytes, bytearray, memoryview, ...).
std::string BufferBytes(const py::object& data) {
  Py_buffer view;
  if (PyObject_GetBuffer(data.ptr(), &view, PyBUF_SIMPLE) != 0) throw py::error_already_set();
  std::string bytes(static_cast<const char*>(view.buf), static_cast<std::size_t>(view.len));
  PyBuffer_Release(&view);
  return bytes;
}

Sparlane::FileHeader HeaderFrom(const py::object& header) {
  if (py::isinstance<Sparlane::FileHeader>(header)) return header.cast<Sparlane::FileHeader>();
  const std::string bytes = BufferBytes(header);
  if (bytes.size() != sizeof(Sparlane::FileHeader)) {
    throw py::value_error("a file header is 1024 bytes");
  }
  Sparlane::FileHeader h;
  std::memcpy(&h, bytes.data(), sizeof h);
  return h;
}

}  // namespace

void BindTesting(py::module_& t) {
  t.def(
      "validate_header",
      [](const py::object& header) { return ToErrorCode(T::ValidateHeader(HeaderFrom(header))); },
      py::arg("header"),
      "The stand-alone header test of a FileHeader or 1024 bytes: an ErrorCode.");
  t.def(
      "calculate_crc32",
      [](const py::object& data) {
        const std::string bytes = BufferBytes(data);
        return T::CalculateCRC32(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      },
      py::arg("data"), "CRC-32 (as in zip) of bytes-like data; 0 for no bytes.");
  t.def(
      "sanitize_path",
      [](const py::object& path) -> py::object {
        if (PyBytes_Check(path.ptr())) {
          return py::bytes(T::SanitizePath(BytesOf(path.ptr())));
        }
        return ToStr(T::SanitizePath(py::cast<Name>(path).bytes));
      },
      py::arg("path"),
      "The path rule: every '..' and NUL removed, at most 4096 bytes; str or bytes as given.");
  t.def(
      "interpolate_linear",
      [](const CuttingParameter& lower, const CuttingParameter& upper, Float32 thickness) {
        return T::InterpolateLinear(lower, upper, thickness.value);
      },
      py::arg("lower"), py::arg("upper"), py::arg("thickness"));
  t.def(
      "perform_interpolation",
      [](std::optional<CuttingParameter> lower, std::optional<CuttingParameter> upper,
         Float32 thickness) {
        const Sparlane::InterpolationResultInternal r = T::PerformInterpolation(
            lower ? &*lower : nullptr, upper ? &*upper : nullptr, thickness.value);
        Sparlane::InterpolationResult result{};
        result.parameter = r.parameter;
        result.confidence = r.confidence;
        result.extrapolated = r.extrapolated;
        return result;
      },
      py::arg("lower").none(true), py::arg("upper").none(true), py::arg("thickness"),
      "Record and confidence from up to two neighbours; either may be None.");
  t.def(
      "extrapolate_conservative",
      [](const CuttingParameter& source, Float32 thickness) {
        return T::ExtrapolateConservative(source, thickness.value);
      },
      py::arg("source"), py::arg("thickness"));
  t.def(
      "adjust_for_torch_angle",
      [](const CuttingParameter& base, Float32 angle_degrees) {
        return T::AdjustForTorchAngle(base, angle_degrees.value);
      },
      py::arg("base"), py::arg("angle_degrees"));
  t.def(
      "validate_parameter",
      [](const CuttingParameter& p) { return ToErrorCode(T::ValidateParameter(p)); },
      py::arg("param"), "Strict physical-range check: ErrorCode.SUCCESS or INVALID_PARAMETER.");
  t.def(
      "is_statistical_outlier",
      [](Float32 value, const py::iterable& sample, Float32 threshold) {
        std::vector<float> values;
        for (py::handle item : sample) values.push_back(py::cast<Float32>(item).value);
        return T::IsStatisticalOutlier(value.value, values, threshold.value);
      },
      py::arg("value"), py::arg("sample"), py::arg("threshold"),
      "True when value lies more than threshold sample deviations from the mean.");
}

}  // namespace sparlane_py
