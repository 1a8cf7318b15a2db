// sparlane.Database: the C++ Database with snake_case methods.  Failures
// raise sparlane.Error; queries return None or empty lists.
//
// Threads: load, save, import, export and validate run without the GIL.
// A lock per database keeps any other call on the same database out while
// one of them runs, which the C++ object requires; the GIL is never awaited
// while the lock is held.
#include "database.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "convert.h"
#include "module.h"

namespace sparlane_py {

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::ErrorCode;

// A fallible call that keeps the GIL; raises on failure.
template <typename Call>
void Run(PyDatabase& self, Call&& call) {
  std::string message;
  ErrorCode code;
  {
    auto held = Hold(self);
    code = call(self.db);
    if (code != ErrorCode::Success) message = self.db.GetLastError();
  }
  RaiseIfFailed(code, message);
}

// A long fallible call, run without the GIL; raises on failure.
template <typename Call>
void RunReleased(PyDatabase& self, Call&& call) {
  std::string message;
  ErrorCode code;
  {
    py::gil_scoped_release release;
    std::lock_guard<std::mutex> held(self.lock);
    code = call(self.db);
    if (code != ErrorCode::Success) message = self.db.GetLastError();
  }
  RaiseIfFailed(code, message);
}

py::list RecordList(const std::vector<CuttingParameter>& records) {
  py::list list(records.size());
  for (std::size_t i = 0; i < records.size(); ++i) list[i] = py::cast(records[i]);
  return list;
}

void BindLifecycleAndFiles(py::class_<PyDatabase>& c) {
  c.def(py::init<>(), "A database that is not loaded; call load() or create().");
  c.def(
      "create", [](PyDatabase& self) { Run(self, [](Database& d) { return d.Create(); }); },
      "Makes a new, empty, loaded database with a fresh header.");
  c.def(
      "close",
      [](PyDatabase& self) {
        auto held = Hold(self);
        self.db.Close();
      },
      "Releases the loaded file; names and records stay readable.");
  c.def(
      "is_loaded",
      [](PyDatabase& self) { return Ask(self, [](const Database& d) { return d.IsLoaded(); }); },
      "True while a database is created or loaded and not closed.");
  c.def(
      "last_error",
      [](PyDatabase& self) {
        return ToStr(Ask(self, [](const Database& d) { return d.GetLastError(); }));
      },
      "The message of the last failure (or a slow load's warning); '' if none.");
  c.def(
      "load",
      [](PyDatabase& self, const Path& path) {
        RunReleased(self, [&](Database& d) { return d.LoadFromBinary(path.bytes); });
      },
      py::arg("path"), "Loads a parameter file; raises sparlane.Error on failure.");
  c.def(
      "import_sqlite",
      [](PyDatabase& self, const Path& path) {
        RunReleased(self, [&](Database& d) { return d.ImportFromSQLite(path.bytes); });
      },
      py::arg("path"), "Fills the database from an SQLite file (docs/sqlite-schema.md).");
  c.def(
      "save",
      [](PyDatabase& self, const Path& path, int compression) {
        RunReleased(self, [&](Database& d) {
          return d.SaveToBinary(path.bytes, static_cast<Sparlane::CompressionType>(compression));
        });
      },
      py::arg("path"),
      py::arg_v("compression", static_cast<int>(Sparlane::CompressionType::LZ4), "Compression.LZ4"),
      "Writes the database to path (through path + '.tmp').");
  c.def(
      "export_csv",
      [](PyDatabase& self, const Path& path) {
        RunReleased(self, [&](Database& d) { return d.ExportToCSV(path.bytes); });
      },
      py::arg("path"), "One CSV line per record, names instead of ids.");
  c.def(
      "export_json",
      [](PyDatabase& self, const Path& path) {
        RunReleased(self, [&](Database& d) { return d.ExportToJSON(path.bytes); });
      },
      py::arg("path"), "The whole database as one JSON document.");
  c.def("__enter__", [](py::object self) { return self; });
  c.def(
      "__exit__",
      [](PyDatabase& self, py::args) {
        auto held = Hold(self);
        self.db.Close();
        return false;
      },
      "Closes the database.");
}

void BindQueries(py::class_<PyDatabase>& c) {
  c.def(
      "find_by_machine",
      [](PyDatabase& self, const Name& vendor, const Name& machine_model) {
        return RecordList(Ask(self, [&](const Database& d) {
          return d.FindByMachine(vendor.bytes, machine_model.bytes);
        }));
      },
      py::arg("vendor"), py::arg("machine_model"),
      "Records of a machine model, of one vendor or ('') of any.");
  c.def(
      "find_by_material",
      [](PyDatabase& self, const Name& material) {
        return RecordList(
            Ask(self, [&](const Database& d) { return d.FindByMaterial(material.bytes); }));
      },
      py::arg("material"), "All records of a material, in table order.");
  c.def(
      "supported_thickness_range",
      [](PyDatabase& self, const Name& material, const Name& machine_model) {
        return Ask(self, [&](const Database& d) {
          return d.GetSupportedThicknessRange(material.bytes, machine_model.bytes);
        });
      },
      py::arg("material"), py::arg("machine_model") = Name{},
      "Thickness span of a material on one machine, or ('') on any.");
  c.def(
      "adjust_for_max_speed",
      [](PyDatabase& self, const CuttingParameter& base, Float32 max_speed) {
        return Ask(self,
                   [&](const Database& d) { return d.AdjustForMaxSpeed(base, max_speed.value); });
      },
      py::arg("base"), py::arg("max_speed"),
      "base fitted to a machine whose top speed is max_speed.");
}

void BindMetricsAndChecks(py::class_<PyDatabase>& c) {
  c.def(
      "set_query_logging",
      [](PyDatabase& self, bool enabled) {
        auto held = Hold(self);
        self.db.SetQueryLogging(enabled);
      },
      py::arg("enabled"), "Switches the one-line query log on standard error.");
  c.def(
      "performance_metrics",
      [](PyDatabase& self) {
        return Ask(self, [](const Database& d) { return d.GetPerformanceMetrics(); });
      },
      "Counters of the timed queries.");
  c.def(
      "reset_performance_metrics",
      [](PyDatabase& self) {
        auto held = Hold(self);
        self.db.ResetPerformanceMetrics();
      },
      "Puts every counter back to its initial value.");
  c.def(
      "validate",
      [](PyDatabase& self) { RunReleased(self, [](Database& d) { return d.Validate(); }); },
      "Checks header, records and indexes; raises sparlane.Error with the finding.");
}

void BindEditing(py::class_<PyDatabase>& c) {
  c.def(
      "add_parameter",
      [](PyDatabase& self, const CuttingParameter& p) {
        Run(self, [&](Database& d) { return d.AddParameter(p); });
      },
      py::arg("param"), "Appends a checked record (the indexes follow on the next update).");
  c.def(
      "update_parameter",
      [](PyDatabase& self, std::uint32_t id, const CuttingParameter& p) {
        Run(self, [&](Database& d) { return d.UpdateParameter(id, p); });
      },
      py::arg("id"), py::arg("param"), "Overwrites the record at 0-based position id.");
  c.def(
      "delete_parameter",
      [](PyDatabase& self, std::uint32_t id) {
        Run(self, [&](Database& d) { return d.DeleteParameter(id); });
      },
      py::arg("id"), "Removes the record at 0-based position id.");
  c.def(
      "sort_parameters",
      [](PyDatabase& self) { Run(self, [](Database& d) { return d.SortParameters(); }); },
      "Sorts the records by material, machine and thickness (the order the searches assume) "
      "and rebuilds the indexes.");
  c.def(
      "add_machine",
      [](PyDatabase& self, const Name& vendor, const Name& model, const Name& unused) {
        Run(self,
            [&](Database& d) { return d.AddMachine(vendor.bytes, model.bytes, unused.bytes); });
      },
      py::arg("vendor"), py::arg("model"), py::arg("unused") = Name{},
      "Adds a machine model and, when new, its vendor.");
  c.def(
      "add_material",
      [](PyDatabase& self, const Name& name) {
        Run(self, [&](Database& d) { return d.AddMaterial(name.bytes); });
      },
      py::arg("name"), "Adds a material.");
}

void BindCatalogue(py::class_<PyDatabase>& c) {
  // Each name table: its list, and its name-to-id lookup.
  using NamesOf = std::vector<std::string> (Database::*)() const;
  using IdOf = std::uint16_t (Database::*)(const std::string&) const;
  const struct {
    const char* list;
    NamesOf names_of;
    const char* list_doc;
    const char* id;
    IdOf id_of;
    const char* id_doc;
  } tables[] = {
      {"vendors", &Database::GetVendors, "Vendor names; the vendor with id i is element i - 1.",
       "vendor_id", &Database::GetVendorId,
       "The id a query resolves a vendor name to; 0 if unknown."},
      {"machines", &Database::GetMachines, "Machine model names; id i is element i - 1.",
       "machine_id", &Database::GetMachineId,
       "The id a query resolves a machine model name to; 0 if unknown."},
      {"materials", &Database::GetMaterials, "Material names; id i is element i - 1.",
       "material_id", &Database::GetMaterialId,
       "The id a query resolves a material name to; 0 if unknown."},
  };
  for (const auto& table : tables) {
    c.def(
        table.list,
        [names_of = table.names_of](PyDatabase& self) {
          return ToStrList(Ask(self, [&](const Database& d) { return (d.*names_of)(); }));
        },
        table.list_doc);
    c.def(
        table.id,
        [id_of = table.id_of](PyDatabase& self, const Name& name) {
          return Ask(self, [&](const Database& d) { return (d.*id_of)(name.bytes); });
        },
        py::arg("name"), table.id_doc);
  }
  c.def(
      "parameters",
      [](PyDatabase& self) {
        return RecordList(Ask(self, [](const Database& d) { return d.GetParameters(); }));
      },
      "A copy of the whole record table, in table order.");
  c.def(
      "file_header",
      [](PyDatabase& self) {
        return Ask(self, [](const Database& d) { return d.GetFileHeader(); });
      },
      "A copy of the header in memory; all zero before create() or load().");
  c.def(
      "statistics",
      [](PyDatabase& self) {
        return Ask(self, [](const Database& d) { return d.GetStatistics(); });
      },
      "Counts and file figures; all zero when not loaded.");
  c.def(
      "consumable_set",
      [](PyDatabase& self, std::uint16_t set_id) -> py::object {
        const auto found = Ask(self, [&](const Database& d) { return d.GetConsumableSet(set_id); });
        return found ? py::cast(*found) : py::none();
      },
      py::arg("set_id"), "The consumable set with this id, or None.");
  c.def("__repr__", [](PyDatabase& self) {
    const auto stats = Ask(self, [](const Database& d) { return d.GetStatistics(); });
    if (!Ask(self, [](const Database& d) { return d.IsLoaded(); })) {
      return std::string("<sparlane.Database, not loaded>");
    }
    return "<sparlane.Database, " + std::to_string(stats.parameter_count) + " records>";
  });
}

}  // namespace

std::unique_lock<std::mutex> Hold(PyDatabase& self) {
  std::unique_lock<std::mutex> held(self.lock, std::try_to_lock);
  if (!held.owns_lock()) {
    py::gil_scoped_release release;
    held.lock();
  }
  return held;
}

void BindDatabase(py::module_& m) {
  py::class_<PyDatabase> c(m, "Database",
                           "The parameter database.  Use it as a context manager to close it "
                           "on exit.");
  BindLifecycleAndFiles(c);
  BindQueries(c);
  BindFastQueries(c);
  BindMetricsAndChecks(c);
  BindEditing(c);
  BindCatalogue(c);
  c.attr("__module__") = "sparlane";
}

}  // namespace sparlane_py
