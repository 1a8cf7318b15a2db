// The same rows held in SQLite, for the benchmarks that measure the queries
// against it: the records with an index on (material_id, machine_model_id,
// thickness_mm), the names in UNIQUE-indexed tables resolved inside each
// statement, one prepared statement per query, reused.
//
// In memory (":memory:"), or in a file that is written once and reopened
// read-only with exclusive locking and memory-mapped I/O.
#ifndef SPARLANE_BENCH_SQLITE_TWIN_H_
#define SPARLANE_BENCH_SQLITE_TWIN_H_

#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace bench {

class SqliteTwin {
 public:
  // names: machine models, materials and vendors, element i having id i + 1.
  struct Names {
    std::vector<std::string> machines;
    std::vector<std::string> materials;
    std::vector<std::string> vendors;
  };

  SqliteTwin(const std::string& path, const Names& names,
             const std::vector<Sparlane::CuttingParameter>& table) {
    Open(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    Fill(names, table);
    if (path != ":memory:") {
      sqlite3_close(db_);
      Open(path, SQLITE_OPEN_READONLY);
      Exec("PRAGMA locking_mode=EXCLUSIVE; PRAGMA mmap_size=1073741824;"
           " PRAGMA cache_size=-262144;");
    }
    const std::string cols =
        "SELECT vendor_id, machine_model_id, material_id, thickness_mm, cut_speed_mm_min,"
        " cut_height_mm, pierce_height_mm, transfer_height_mm, arc_voltage_v, pierce_time_s,"
        " kerf_width_mm, current_amps, flags FROM params ";
    const std::string pair =
        "WHERE material_id = (SELECT id FROM materials WHERE name = ?1)"
        " AND machine_model_id = (SELECT id FROM machines WHERE name = ?2) ";
    exact_ = Prepare(cols + pair + "AND thickness_mm BETWEEN ?3 - ?4 AND ?3 + ?4 LIMIT 1");
    at_or_above_ = Prepare(cols + pair + "AND thickness_mm >= ?3 ORDER BY thickness_mm LIMIT 2");
    below_ = Prepare(cols + pair + "AND thickness_mm < ?3 ORDER BY thickness_mm DESC LIMIT 1");
    nearest_ = Prepare(cols + pair + "ORDER BY abs(thickness_mm - ?3), pos LIMIT 1");
    optimal_ = Prepare(cols +
                       "WHERE material_id = (SELECT id FROM materials WHERE name = ?1)"
                       " AND thickness_mm BETWEEN ?2 - ?3 AND ?2 + ?3 AND cut_speed_mm_min > 0"
                       " ORDER BY cut_speed_mm_min DESC, pos LIMIT 1");
  }
  ~SqliteTwin() {
    for (sqlite3_stmt* s : {exact_, at_or_above_, below_, nearest_, optimal_}) sqlite3_finalize(s);
    sqlite3_close(db_);
  }
  SqliteTwin(const SqliteTwin&) = delete;
  SqliteTwin& operator=(const SqliteTwin&) = delete;

  std::optional<Sparlane::CuttingParameter> FindExact(const std::string& material,
                                                      const std::string& machine, float t,
                                                      float tolerance) {
    BindPair(exact_, material, machine);
    sqlite3_bind_double(exact_, 3, t);
    sqlite3_bind_double(exact_, 4, tolerance);
    return StepOne(exact_);
  }

  // The bracketing rows (and the one after, which the library reads too),
  // then the library's own arithmetic.
  Sparlane::InterpolationResult Interpolate(const std::string& material,
                                            const std::string& machine, float t) {
    BindPair(at_or_above_, material, machine);
    sqlite3_bind_double(at_or_above_, 3, t);
    std::optional<Sparlane::CuttingParameter> upper = Step(at_or_above_);
    std::optional<Sparlane::CuttingParameter> next = upper ? Step(at_or_above_) : std::nullopt;
    sqlite3_reset(at_or_above_);
    BindPair(below_, material, machine);
    sqlite3_bind_double(below_, 3, t);
    std::optional<Sparlane::CuttingParameter> lower = StepOne(below_);
    (void)next;
    Sparlane::InterpolationResult r{};
    if (upper && std::fabs(upper->thickness_mm - t) < 0.001f) {
      r.parameter = *upper;
      r.confidence = 1.0f;
    } else if (lower && upper) {
      r.parameter = Sparlane::Testing::InterpolateLinear(*lower, *upper, t);
      const float span = upper->thickness_mm - lower->thickness_mm;
      r.confidence = 1.0f - std::fabs((t - lower->thickness_mm) / span - 0.5f) * 0.4f;
    } else if (lower || upper) {
      r.parameter = Sparlane::Testing::ExtrapolateConservative(lower ? *lower : *upper, t);
      r.confidence = 0.3f;
      r.extrapolated = true;
    }
    return r;
  }

  std::optional<Sparlane::CuttingParameter> FindNearest(const std::string& material,
                                                        const std::string& machine, float t) {
    BindPair(nearest_, material, machine);
    sqlite3_bind_double(nearest_, 3, t);
    return StepOne(nearest_);
  }

  std::optional<Sparlane::CuttingParameter> FindOptimal(const std::string& material, float t,
                                                        float tolerance) {
    sqlite3_bind_text(optimal_, 1, material.data(), static_cast<int>(material.size()),
                      SQLITE_STATIC);
    sqlite3_bind_double(optimal_, 2, t);
    sqlite3_bind_double(optimal_, 3, tolerance);
    return StepOne(optimal_);
  }

 private:
  [[noreturn]] void Die(const std::string& what) const {
    std::fprintf(stderr, "sqlite: %s: %s\n", what.c_str(), db_ ? sqlite3_errmsg(db_) : "?");
    std::exit(1);
  }
  void Open(const std::string& path, int flags) {
    if (sqlite3_open_v2(path.c_str(), &db_, flags, nullptr) != SQLITE_OK) Die("open " + path);
  }
  void Exec(const std::string& sql) {
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Die(sql);
  }
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &s, nullptr) != SQLITE_OK) Die(sql);
    return s;
  }

  void Fill(const Names& names, const std::vector<Sparlane::CuttingParameter>& table) {
    Exec("PRAGMA journal_mode=OFF; PRAGMA synchronous=OFF;");
    Exec("CREATE TABLE vendors(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE machines(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE materials(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE);"
         "CREATE TABLE params(pos INTEGER PRIMARY KEY, vendor_id INTEGER,"
         " machine_model_id INTEGER, material_id INTEGER, thickness_mm REAL,"
         " cut_speed_mm_min REAL, cut_height_mm REAL, pierce_height_mm REAL,"
         " transfer_height_mm REAL, arc_voltage_v REAL, pierce_time_s REAL,"
         " kerf_width_mm REAL, current_amps INTEGER, flags INTEGER);");
    Exec("BEGIN");
    InsertNames("machines", names.machines);
    InsertNames("materials", names.materials);
    InsertNames("vendors", names.vendors);
    sqlite3_stmt* row =
        Prepare("INSERT INTO params VALUES(?1,?2,?3,?4,?5,?6,?7,?8,?9,?10,?11,?12,?13,?14)");
    for (std::size_t pos = 0; pos < table.size(); ++pos) {
      const Sparlane::CuttingParameter& p = table[pos];
      sqlite3_bind_int64(row, 1, static_cast<sqlite3_int64>(pos));
      sqlite3_bind_int(row, 2, p.vendor_id);
      sqlite3_bind_int(row, 3, p.machine_model_id);
      sqlite3_bind_int(row, 4, p.material_id);
      const float floats[] = {p.thickness_mm,     p.cut_speed_mm_min,   p.cut_height_mm,
                              p.pierce_height_mm, p.transfer_height_mm, p.arc_voltage_v,
                              p.pierce_time_s,    p.kerf_width_mm};
      for (int f = 0; f < 8; ++f) sqlite3_bind_double(row, 5 + f, floats[f]);
      sqlite3_bind_int(row, 13, p.current_amps);
      sqlite3_bind_int64(row, 14, p.flags);
      sqlite3_step(row);
      sqlite3_reset(row);
    }
    sqlite3_finalize(row);
    Exec("CREATE INDEX params_key ON params(material_id, machine_model_id, thickness_mm)");
    Exec("COMMIT");
    Exec("ANALYZE");
  }

  void InsertNames(const std::string& table, const std::vector<std::string>& names) {
    sqlite3_stmt* s = Prepare("INSERT INTO " + table + "(id, name) VALUES(?1, ?2)");
    for (std::size_t i = 0; i < names.size(); ++i) {
      sqlite3_bind_int64(s, 1, static_cast<sqlite3_int64>(i + 1));
      sqlite3_bind_text(s, 2, names[i].c_str(), -1, SQLITE_TRANSIENT);
      sqlite3_step(s);
      sqlite3_reset(s);
    }
    sqlite3_finalize(s);
  }

  static void BindPair(sqlite3_stmt* s, const std::string& material, const std::string& machine) {
    sqlite3_bind_text(s, 1, material.data(), static_cast<int>(material.size()), SQLITE_STATIC);
    sqlite3_bind_text(s, 2, machine.data(), static_cast<int>(machine.size()), SQLITE_STATIC);
  }
  static std::optional<Sparlane::CuttingParameter> Step(sqlite3_stmt* s) {
    if (sqlite3_step(s) != SQLITE_ROW) return std::nullopt;
    Sparlane::CuttingParameter p{};
    p.vendor_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 0));
    p.machine_model_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 1));
    p.material_id = static_cast<std::uint16_t>(sqlite3_column_int(s, 2));
    float* floats[] = {&p.thickness_mm,     &p.cut_speed_mm_min,   &p.cut_height_mm,
                       &p.pierce_height_mm, &p.transfer_height_mm, &p.arc_voltage_v,
                       &p.pierce_time_s,    &p.kerf_width_mm};
    for (int f = 0; f < 8; ++f) *floats[f] = static_cast<float>(sqlite3_column_double(s, 3 + f));
    p.current_amps = static_cast<std::uint16_t>(sqlite3_column_int(s, 11));
    p.flags = static_cast<std::uint32_t>(sqlite3_column_int64(s, 12));
    return p;
  }
  static std::optional<Sparlane::CuttingParameter> StepOne(sqlite3_stmt* s) {
    std::optional<Sparlane::CuttingParameter> p = Step(s);
    sqlite3_reset(s);
    return p;
  }

  sqlite3* db_ = nullptr;
  sqlite3_stmt* exact_ = nullptr;
  sqlite3_stmt* at_or_above_ = nullptr;
  sqlite3_stmt* below_ = nullptr;
  sqlite3_stmt* nearest_ = nullptr;
  sqlite3_stmt* optimal_ = nullptr;
};

}  // namespace bench

#endif  // SPARLANE_BENCH_SQLITE_TWIN_H_
