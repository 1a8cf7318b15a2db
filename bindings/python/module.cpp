// The extension module behind the sparlane package.
#include "module.h"

PYBIND11_MODULE(_sparlane, m) {
  m.doc() = "The compiled part of the sparlane package; import sparlane instead.";
  sparlane_py::BindEnums(m);
  sparlane_py::BindRecords(m);
  sparlane_py::BindDatabase(m);
  sparlane_py::BindCalculators(m);
  pybind11::module_ testing = m.def_submodule("_testing", "The library's primitives.");
  sparlane_py::BindTesting(testing);
  m.attr("__version__") = std::to_string(SPARLANE_VERSION_MAJOR) + "." +
                          std::to_string(SPARLANE_VERSION_MINOR) + "." +
                          std::to_string(SPARLANE_VERSION_PATCH);
  m.attr("FLAG_DERIVED") = Sparlane::kFlagDerived;
  m.attr("FLAG_SPEED_CAPPED") = Sparlane::kFlagSpeedCapped;
  m.attr("FLAG_ANGLE_ADJUSTED") = Sparlane::kFlagAngleAdjusted;
}
