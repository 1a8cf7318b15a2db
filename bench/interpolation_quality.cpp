// How well Interpolate reproduces rows that the sample cut charts actually
// list.  For every (material, machine) series each interior row is held out
// and interpolated from a database without it; the first and the last row
// are held out in turn and extrapolated from the rest.  Prints the mean and
// worst relative error of cut speed, arc voltage and kerf width, over all
// rows and over published values only (data/README.md says which fields of
// which models are published and which are copied or constant).
//
// Usage: bench_interpolation_quality [path/to/cut-charts.csv]
// Not a timing benchmark: the figures are errors, not speeds.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "sparlane/sparlane.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::ErrorCode;

struct Row {
  std::string vendor;
  std::string machine;
  std::string material;
  CuttingParameter p{};
};

// ---------------------------------------------------------------------------
// The sample file

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

std::string FindSampleFile(int argc, char** argv) {
  std::vector<std::string> candidates;
  if (argc > 1) candidates.push_back(argv[1]);
  const std::string repo = DirectoryOf(DirectoryOf(__FILE__));
  candidates.push_back(repo + "/data/cut-charts.csv");
  candidates.push_back(repo + "/../shared/data/cut-charts.csv");
  for (const std::string& c : candidates) {
    if (std::ifstream(c).good()) return c;
  }
  return "";
}

std::vector<std::string> SplitComma(const std::string& line) {
  std::vector<std::string> out;
  std::stringstream in(line);
  std::string field;
  while (std::getline(in, field, ',')) out.push_back(field);
  if (!line.empty() && line.back() == ',') out.push_back("");
  return out;
}

bool ParseRow(const std::string& line, Row* row) {
  const std::vector<std::string> f = SplitComma(line);
  if (f.size() != 13 || line.find('"') != std::string::npos) return false;
  try {
    row->vendor = f[0];
    row->machine = f[1];
    row->material = f[2];
    float* floats[] = {&row->p.thickness_mm,       &row->p.cut_speed_mm_min,
                       &row->p.cut_height_mm,      &row->p.pierce_height_mm,
                       &row->p.transfer_height_mm, &row->p.arc_voltage_v,
                       &row->p.pierce_time_s,      &row->p.kerf_width_mm};
    for (int i = 0; i < 8; ++i) *floats[i] = std::stof(f[3 + i]);
    row->p.current_amps = static_cast<std::uint16_t>(std::stoul(f[11]));
    row->p.flags = static_cast<std::uint32_t>(std::stoul(f[12]));
  } catch (const std::exception&) {
    return false;
  }
  return true;
}

bool ReadRows(const std::string& path, std::vector<Row>* rows) {
  std::ifstream in(path);
  std::string line;
  if (!std::getline(in, line)) return false;  // header
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty()) continue;
    Row row;
    if (!ParseRow(line, &row)) {
      std::fprintf(stderr, "unreadable line: %s\n", line.c_str());
      return false;
    }
    rows->push_back(row);
  }
  return true;
}

// ---------------------------------------------------------------------------
// Databases without one row

// Rows with ids resolved, sorted as the indexes need them.
struct Catalogue {
  std::vector<std::pair<std::string, std::string>> machines;  // vendor, model
  std::vector<std::string> materials;
  std::vector<Row> rows;
};

std::uint16_t IdIn(const std::vector<std::string>& names, const std::string& name) {
  const auto it = std::find(names.begin(), names.end(), name);
  return static_cast<std::uint16_t>(it - names.begin() + 1);
}

Catalogue MakeCatalogue(std::vector<Row> rows) {
  Catalogue c;
  for (const Row& r : rows) {
    const auto machine = std::make_pair(r.vendor, r.machine);
    if (std::find(c.machines.begin(), c.machines.end(), machine) == c.machines.end()) {
      c.machines.push_back(machine);
    }
    if (std::find(c.materials.begin(), c.materials.end(), r.material) == c.materials.end()) {
      c.materials.push_back(r.material);
    }
  }
  std::vector<std::string> vendors;
  std::vector<std::string> models;
  for (const auto& m : c.machines) {
    if (std::find(vendors.begin(), vendors.end(), m.first) == vendors.end()) {
      vendors.push_back(m.first);
    }
    models.push_back(m.second);
  }
  for (Row& r : rows) {
    r.p.vendor_id = IdIn(vendors, r.vendor);
    r.p.machine_model_id = IdIn(models, r.machine);
    r.p.material_id = IdIn(c.materials, r.material);
  }
  // Sort positions, not rows: sort buffers ignore the record's alignment.
  std::vector<std::size_t> order(rows.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(), [&rows](std::size_t x, std::size_t y) {
    const CuttingParameter& a = rows[x].p;
    const CuttingParameter& b = rows[y].p;
    return std::make_tuple(a.material_id, a.machine_model_id, a.thickness_mm, x) <
           std::make_tuple(b.material_id, b.machine_model_id, b.thickness_mm, y);
  });
  for (std::size_t i : order) c.rows.push_back(rows[i]);
  return c;
}

// The catalogue without row `skip` (none when skip is past the end).
bool BuildDatabase(const Catalogue& c, std::size_t skip, Database* db) {
  db->Create();
  for (const auto& m : c.machines) {
    if (db->AddMachine(m.first, m.second, "") != ErrorCode::Success) return false;
  }
  for (const std::string& name : c.materials) {
    if (db->AddMaterial(name) != ErrorCode::Success) return false;
  }
  for (std::size_t i = 0; i < c.rows.size(); ++i) {
    if (i != skip && db->AddParameter(c.rows[i].p) != ErrorCode::Success) return false;
  }
  // Appends leave the indexes alone; rewriting one record rebuilds them.
  const CuttingParameter first = c.rows[skip == 0 ? 1 : 0].p;
  return db->UpdateParameter(0, first) == ErrorCode::Success;
}

// ---------------------------------------------------------------------------
// Errors

enum Field { kSpeed, kVoltage, kKerf, kFieldCount };
const char* const kFieldNames[] = {"cut speed", "arc voltage", "kerf width"};

float FieldOf(const CuttingParameter& p, int field) {
  switch (field) {
    case kSpeed:
      return p.cut_speed_mm_min;
    case kVoltage:
      return p.arc_voltage_v;
    default:
      return p.kerf_width_mm;
  }
}

// Published per data/README.md: speed everywhere; voltage and kerf only where
// the chart gives them rather than copying a neighbour's or a constant.
bool IsPublished(const Row& r, int field) {
  if (field == kSpeed) return true;
  const std::string& m = r.machine;
  if (m == "AIR-45A") return true;
  if (m == "AIR-45A-PROD") return true;
  if (m == "AIR-45A-M") return field == kVoltage;
  if (m == "AIR-45A-SHOP" || m == "AIR-65A-SHOP") {
    if (field == kKerf) return true;
    if (r.material != "Mild steel") return true;
    // Quoted mild-steel voltages: 65 A at 4, 8 and 10 mm.
    const float t = r.p.thickness_mm;
    return m == "AIR-65A-SHOP" && (t == 4.0f || t == 8.0f || t == 10.0f);
  }
  return false;  // compact models: only the speed is published
}

struct ErrorStats {
  int count[kFieldCount] = {0, 0, 0};
  double sum[kFieldCount] = {0, 0, 0};
  double worst[kFieldCount] = {0, 0, 0};
  std::string worst_at[kFieldCount];

  void Add(int field, double error, const std::string& where) {
    ++count[field];
    sum[field] += error;
    if (error >= worst[field]) {
      worst[field] = error;
      worst_at[field] = where;
    }
  }
};

struct Report {
  ErrorStats all;
  ErrorStats published;
  int held_out = 0;
  int failed = 0;  // no result or low confidence of zero
};

std::string Label(const Row& r) {
  char buf[160];
  std::snprintf(buf, sizeof buf, "%s %s %g mm", r.machine.c_str(), r.material.c_str(),
                static_cast<double>(r.p.thickness_mm));
  return buf;
}

void Score(const Row& truth, const Sparlane::InterpolationResult& got, Report* report) {
  ++report->held_out;
  if (got.confidence <= 0.0f) {
    ++report->failed;
    return;
  }
  for (int f = 0; f < kFieldCount; ++f) {
    const double want = FieldOf(truth.p, f);
    if (want == 0.0) continue;
    const double error = std::fabs(FieldOf(got.parameter, f) - want) / std::fabs(want);
    report->all.Add(f, error, Label(truth));
    if (IsPublished(truth, f)) report->published.Add(f, error, Label(truth));
  }
}

// Runs every hold-out of one kind.  pick(first, count) gives the positions
// to hold out within a series [first, first + count).
template <typename Pick>
Report HoldOut(const Catalogue& c, Pick pick) {
  Report report;
  std::size_t first = 0;
  while (first < c.rows.size()) {
    std::size_t end = first;
    while (end < c.rows.size() && c.rows[end].p.material_id == c.rows[first].p.material_id &&
           c.rows[end].p.machine_model_id == c.rows[first].p.machine_model_id) {
      ++end;
    }
    for (std::size_t i : pick(first, end - first)) {
      Database db;
      if (!BuildDatabase(c, i, &db)) {
        std::fprintf(stderr, "could not build the database: %s\n", db.GetLastError().c_str());
        std::exit(1);
      }
      const Row& r = c.rows[i];
      Score(r, db.Interpolate(r.material, r.p.thickness_mm, r.machine), &report);
    }
    first = end;
  }
  return report;
}

void PrintStats(const char* title, const ErrorStats& s) {
  std::printf("  %s\n", title);
  for (int f = 0; f < kFieldCount; ++f) {
    if (s.count[f] == 0) {
      std::printf("    %-12s  (no rows)\n", kFieldNames[f]);
      continue;
    }
    std::printf("    %-12s n=%-4d mean %6.2f %%   worst %7.2f %%  (%s)\n", kFieldNames[f],
                s.count[f], 100.0 * s.sum[f] / s.count[f], 100.0 * s.worst[f],
                s.worst_at[f].c_str());
  }
}

void PrintReport(const char* title, const Report& r) {
  std::printf("\n%s: %d rows held out, %d without a result\n", title, r.held_out, r.failed);
  PrintStats("all rows", r.all);
  PrintStats("published values only", r.published);
}

// The 45 A chart's metric list against the imperial table it belongs to:
// each metric row interpolated from the imperial series (speed and voltage
// are published in both).
void PrintCrossChart(const Catalogue& c) {
  Database db;
  if (!BuildDatabase(c, c.rows.size(), &db)) return;
  Report report;
  for (const Row& r : c.rows) {
    if (r.machine != "AIR-45A-M") continue;
    Score(r, db.Interpolate(r.material, r.p.thickness_mm, "AIR-45A"), &report);
  }
  if (report.held_out == 0) return;
  std::printf("\nAIR-45A-M rows from the AIR-45A series: %d rows, %d without a result\n",
              report.held_out, report.failed);
  PrintStats("published values only", report.published);
}

std::vector<std::size_t> Interior(std::size_t first, std::size_t count) {
  std::vector<std::size_t> out;
  for (std::size_t k = 1; k + 1 < count; ++k) out.push_back(first + k);
  return out;
}

std::vector<std::size_t> FirstOf(std::size_t first, std::size_t count) {
  return count >= 2 ? std::vector<std::size_t>{first} : std::vector<std::size_t>{};
}

std::vector<std::size_t> LastOf(std::size_t first, std::size_t count) {
  return count >= 2 ? std::vector<std::size_t>{first + count - 1} : std::vector<std::size_t>{};
}

}  // namespace

int main(int argc, char** argv) {
  const std::string path = FindSampleFile(argc, argv);
  if (path.empty()) {
    std::printf("cut-charts.csv not found; pass its path as the first argument\n");
    return 0;
  }
  std::vector<Row> rows;
  if (!ReadRows(path, &rows) || rows.size() < 2) {
    std::fprintf(stderr, "could not read %s\n", path.c_str());
    return 1;
  }
  const Catalogue c = MakeCatalogue(std::move(rows));
  std::printf("Interpolation quality on %s (%zu rows, %zu machine models, %zu materials)\n",
              path.c_str(), c.rows.size(), c.machines.size(), c.materials.size());
  std::printf("relative error = |Interpolate - listed| / listed, per held-out row\n");

  PrintReport("Interpolation, each interior row held out", HoldOut(c, Interior));
  PrintReport("Extrapolation below, first row of each series held out", HoldOut(c, FirstOf));
  PrintReport("Extrapolation above, last row of each series held out", HoldOut(c, LastOf));
  PrintCrossChart(c);
  return 0;
}
