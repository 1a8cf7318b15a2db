// The parts of the extension module sparlane._sparlane, one per concern.
// Adding a call: bind it in the file of its concern (a Database method in
// database.cpp, a calculator in calculators.cpp, a primitive in testing.cpp),
// a new record in records.cpp, and list it in sparlane/*.pyi and __init__.py.
#ifndef SPARLANE_BINDINGS_PYTHON_MODULE_H_
#define SPARLANE_BINDINGS_PYTHON_MODULE_H_

#include <pybind11/pybind11.h>

#include <string>

#include "sparlane/sparlane.h"

namespace sparlane_py {

namespace py = pybind11;

void BindEnums(py::module_& m);
void BindRecords(py::module_& m);
void BindDatabase(py::module_& m);
void BindCalculators(py::module_& m);
void BindTesting(py::module_& testing);

// Raises sparlane.Error(code, message) unless code is Success.
void RaiseIfFailed(Sparlane::ErrorCode code, const std::string& message);

}  // namespace sparlane_py

#endif  // SPARLANE_BINDINGS_PYTHON_MODULE_H_
