// The object behind sparlane.Database and its lock (see database.cpp).
#ifndef SPARLANE_BINDINGS_PYTHON_DATABASE_H_
#define SPARLANE_BINDINGS_PYTHON_DATABASE_H_

#include <pybind11/pybind11.h>

#include <mutex>

#include "sparlane/sparlane.h"

namespace sparlane_py {

namespace py = pybind11;

struct PyDatabase {
  Sparlane::Database db;
  std::mutex lock;
};

// Takes the database's lock for a call that keeps the GIL; waits for it
// without the GIL, so a thread in a long call can finish.
std::unique_lock<std::mutex> Hold(PyDatabase& self);

// A query under the lock.
template <typename Call>
auto Ask(PyDatabase& self, Call&& call) {
  auto held = Hold(self);
  return call(static_cast<const Sparlane::Database&>(self.db));
}

// find_exact, find_nearest, find_optimal and interpolate (fast_queries.cpp).
void BindFastQueries(py::handle database_class);

}  // namespace sparlane_py

#endif  // SPARLANE_BINDINGS_PYTHON_DATABASE_H_
