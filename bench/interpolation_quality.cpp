// How well the two estimators, Interpolate (linear, conservative beyond the
// rows) and Estimate (power law for the cut speed), reproduce rows that real
// cut charts list.  For every (material, machine) series each interior row
// is held out and computed from a database without it; the first and the
// last row are held out in turn and extrapolated from the rest.  Prints the
// mean and worst relative error of every field, per series and in total,
// over all rows and over published values only (data/README.md says which
// fields of which models are published and which are copied or constant),
// and checks the cut-speed goal: Estimate's interior mean at most half of
// Interpolate's and its worst at most three quarters, its upward
// extrapolation mean at most half of the conservative rule's.
//
// The same figures follow for a chart the sample does not hold: a real
// QtPlasmaC material file (../shared/data/real-world/, skipped when absent),
// whose entry names carry the series and the thickness.
//
// Usage: bench_interpolation_quality [path/to/cut-charts.csv [path/to/material.cfg]]
// Not a timing benchmark: the figures are errors, not speeds.  Exits with 1
// when a goal is not met on a chart that was read.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "entry_naming.h"
#include "plasmac_import.h"
#include "sparlane/sparlane.h"

namespace {

using Sparlane::CuttingParameter;
using Sparlane::Database;
using Sparlane::ErrorCode;
using Sparlane::InterpolationResult;

struct Row {
  std::string vendor;
  std::string machine;
  std::string material;
  CuttingParameter p{};
};

// ---------------------------------------------------------------------------
// The charts

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.find_last_of("/\\");
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

std::string FirstReadable(const std::vector<std::string>& candidates) {
  for (const std::string& c : candidates) {
    if (!c.empty() && std::ifstream(c).good()) return c;
  }
  return "";
}

std::string RepoDir() { return DirectoryOf(DirectoryOf(__FILE__)); }

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

bool ReadSampleRows(const std::string& path, std::vector<Row>* rows) {
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

std::vector<std::string> SplitDashes(const std::string& name) {
  std::vector<std::string> parts;
  std::size_t from = 0;
  for (std::size_t at; (at = name.find(" - ", from)) != std::string::npos; from = at + 3) {
    parts.push_back(name.substr(from, at - from));
  }
  parts.push_back(name.substr(from));
  return parts;
}

bool EndsWithMillimetres(const std::string& part) {
  return part.size() >= 2 && (part.compare(part.size() - 2, 2, "MM") == 0 ||
                              part.compare(part.size() - 2, 2, "mm") == 0);
}

// "Mild Steel - FineCut - 40 A - 0.5 MM" belongs to "Mild Steel FineCut
// 40 A (mm)": a series is what the entry names before its thickness, as the
// sample data keeps its series: one material, process and current per
// series (the sample splits presets of two currents into two models), the
// metric and the inch list of one chart apart (as AIR-45A-M and AIR-45A),
// and "EDGE START" rows, which only say how the pierce is made, inside
// their series (as in AIR-45A).  Empty for a name without that shape.
std::string SeriesOfName(const std::string& name) {
  const std::vector<std::string> parts = SplitDashes(name);
  if (parts.size() < 3) return "";
  std::string series = parts.front();
  for (std::size_t i = 1; i + 1 < parts.size(); ++i) {
    if (parts[i] == "EDGE START") continue;
    series += " " + parts[i];
  }
  return series + (EndsWithMillimetres(parts.back()) ? " (mm)" : " (in)");
}

// The entries of a metric QtPlasmaC material file as rows: one machine per
// series, the thickness read from the name.  The format has no transfer
// height; it stays 0 and is not scored.
bool ReadMaterialFileRows(const std::string& path, std::vector<Row>* rows) {
  std::vector<slb::MaterialEntry> entries;
  std::vector<std::string> warnings;
  if (!slb::ReadPlasmacFile(path, entries, warnings)) return false;
  for (const slb::MaterialEntry& e : entries) {
    const std::string series = SeriesOfName(e.name);
    const std::string material = slb::MaterialFromName(e.name, {}, "");
    std::string reason;
    const auto thickness =
        slb::ThicknessFromName(e.name, material, slb::LengthUnit::Millimetre, reason);
    if (series.empty() || material.empty() || !thickness || !thickness->problem.empty() ||
        !e.problem.empty() || !e.missing.empty()) {
      continue;
    }
    Row row;
    row.vendor = "QtPlasmaC chart";
    row.machine = series;
    row.material = material;
    row.p.thickness_mm = static_cast<float>(thickness->mm);
    row.p.cut_speed_mm_min = static_cast<float>(*e.cut_speed);
    row.p.cut_height_mm = static_cast<float>(*e.cut_height);
    row.p.pierce_height_mm = static_cast<float>(*e.pierce_height);
    row.p.pierce_time_s = static_cast<float>(*e.pierce_delay);
    row.p.arc_voltage_v = static_cast<float>(e.cut_volts.value_or(0.0));
    row.p.kerf_width_mm = static_cast<float>(e.kerf_width.value_or(0.0));
    row.p.current_amps = static_cast<std::uint16_t>(std::lround(e.cut_amps.value_or(0.0)));
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

enum Field {
  kSpeed,
  kCutHeight,
  kPierceHeight,
  kTransferHeight,
  kVoltage,
  kPierceDelay,
  kKerf,
  kCurrent,
  kFieldCount
};
const char* const kFieldNames[] = {"cut speed",   "cut height",   "pierce height",
                                   "transfer height", "arc voltage", "pierce delay",
                                   "kerf width",  "current"};
const char* const kFieldHeads[] = {"speed", "cut h", "pierce h", "xfer h",
                                   "volts", "delay", "kerf",     "amps"};

double FieldOf(const CuttingParameter& p, int field) {
  switch (field) {
    case kSpeed: return p.cut_speed_mm_min;
    case kCutHeight: return p.cut_height_mm;
    case kPierceHeight: return p.pierce_height_mm;
    case kTransferHeight: return p.transfer_height_mm;
    case kVoltage: return p.arc_voltage_v;
    case kPierceDelay: return p.pierce_time_s;
    case kKerf: return p.kerf_width_mm;
    default: return p.current_amps;
  }
}

// Published per data/README.md: speed and current everywhere, transfer
// height nowhere (rule T); the rest where the chart gives them rather than
// a neighbour's copy or a constant.
bool IsPublishedInSample(const Row& r, int field) {
  if (field == kSpeed || field == kCurrent) return true;
  if (field == kTransferHeight) return false;
  const std::string& m = r.machine;
  if (m == "AIR-45A" || m == "AIR-45A-PROD") return true;
  if (m == "AIR-45A-M") {
    return field == kVoltage || field == kCutHeight || field == kPierceHeight;
  }
  if (m == "AIR-45A-SHOP" || m == "AIR-65A-SHOP") {
    if (field == kKerf || field == kPierceDelay) return true;
    if (field != kVoltage) return false;  // heights by rule S1
    if (r.material != "Mild steel") return true;
    // Quoted mild-steel voltages: 65 A at 4, 8 and 10 mm.
    const float t = r.p.thickness_mm;
    return m == "AIR-65A-SHOP" && (t == 4.0f || t == 8.0f || t == 10.0f);
  }
  return false;  // compact models: only the speed and current are published
}

// A material file gives every field it has.
bool EverythingPublished(const Row&, int) { return true; }

using PublishedTest = std::function<bool(const Row&, int)>;

struct Stat {
  int count = 0;
  double sum = 0.0;
  double worst = 0.0;
  std::string worst_at;

  void Add(double error, const std::string& where) {
    ++count;
    sum += error;
    if (error >= worst) {
      worst = error;
      worst_at = where;
    }
  }
  double Mean() const { return count == 0 ? 0.0 : sum / count; }
};

enum Estimator { kLinear, kPower, kEstimatorCount };

// Errors of both estimators, field by field.
struct Errors {
  Stat stat[kEstimatorCount][kFieldCount];
  int held_out = 0;
  int failed[kEstimatorCount] = {0, 0};  // no result (confidence 0)
};

struct SeriesErrors {
  std::string name;
  Errors errors;
};

// One kind of hold-out over a whole chart.
struct Report {
  std::vector<SeriesErrors> series;
  Errors total;
  Errors published;
};

std::string Label(const Row& r) {
  char buf[200];
  std::snprintf(buf, sizeof buf, "%s %s %g mm", r.machine.c_str(), r.material.c_str(),
                static_cast<double>(r.p.thickness_mm));
  return buf;
}

void Score(const Row& truth, const InterpolationResult (&got)[kEstimatorCount],
           const PublishedTest& published, Errors* series, Report* report) {
  for (Errors* e : {series, &report->total, &report->published}) ++e->held_out;
  for (int est = 0; est < kEstimatorCount; ++est) {
    if (got[est].confidence <= 0.0f) {
      for (Errors* e : {series, &report->total, &report->published}) ++e->failed[est];
      continue;
    }
    for (int f = 0; f < kFieldCount; ++f) {
      const double want = FieldOf(truth.p, f);
      if (want == 0.0) continue;  // not given (edge start, no transfer height)
      const double error = std::fabs(FieldOf(got[est].parameter, f) - want) / std::fabs(want);
      series->stat[est][f].Add(error, Label(truth));
      report->total.stat[est][f].Add(error, Label(truth));
      if (published(truth, f)) report->published.stat[est][f].Add(error, Label(truth));
    }
  }
}

// Runs every hold-out of one kind.  pick(first, count) gives the positions
// to hold out within a series [first, first + count).
template <typename Pick>
Report HoldOut(const Catalogue& c, const PublishedTest& published, Pick pick) {
  Report report;
  std::size_t first = 0;
  while (first < c.rows.size()) {
    std::size_t end = first;
    while (end < c.rows.size() && c.rows[end].p.material_id == c.rows[first].p.material_id &&
           c.rows[end].p.machine_model_id == c.rows[first].p.machine_model_id) {
      ++end;
    }
    const Row& head = c.rows[first];
    SeriesErrors series{head.machine + " " + head.material, {}};
    for (std::size_t i : pick(first, end - first)) {
      Database db;
      if (!BuildDatabase(c, i, &db)) {
        std::fprintf(stderr, "could not build the database: %s\n", db.GetLastError().c_str());
        std::exit(1);
      }
      const Row& r = c.rows[i];
      const InterpolationResult got[kEstimatorCount] = {
          db.Interpolate(r.material, r.p.thickness_mm, r.machine),
          db.Estimate(r.material, r.p.thickness_mm, r.machine)};
      Score(r, got, published, &series.errors, &report);
    }
    if (series.errors.held_out > 0) report.series.push_back(series);
    first = end;
  }
  return report;
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

// ---------------------------------------------------------------------------
// Printing

constexpr int kLabelWidth = 40;

// "lin/est" for one field, in percent; "-" without rows.
std::string Cell(const Errors& e, int field, bool worst) {
  const Stat& lin = e.stat[kLinear][field];
  const Stat& est = e.stat[kPower][field];
  if (lin.count == 0 && est.count == 0) return "-";
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.1f/%.1f", 100.0 * (worst ? lin.worst : lin.Mean()),
                100.0 * (worst ? est.worst : est.Mean()));
  return buf;
}

void PrintMatrixLine(const std::string& label, const Errors& e, bool worst) {
  std::printf("  %-*s %4d", kLabelWidth, label.c_str(), e.held_out);
  for (int f = 0; f < kFieldCount; ++f) std::printf(" %12s", Cell(e, f, worst).c_str());
  std::printf("\n");
}

void PrintMatrix(const Report& r, bool worst) {
  std::printf("  %s relative error, %%, Interpolate/Estimate\n", worst ? "worst" : "mean");
  std::printf("  %-*s %4s", kLabelWidth, "series", "rows");
  for (int f = 0; f < kFieldCount; ++f) std::printf(" %12s", kFieldHeads[f]);
  std::printf("\n");
  for (const SeriesErrors& s : r.series) PrintMatrixLine(s.name, s.errors, worst);
  PrintMatrixLine("total", r.total, worst);
}

void PrintTotals(const char* title, const Errors& e) {
  std::printf("  %s\n", title);
  std::printf("    %-16s %5s  %17s  %17s\n", "field", "n", "Interpolate", "Estimate");
  std::printf("    %-16s %5s  %8s %8s  %8s %8s\n", "", "", "mean", "worst", "mean", "worst");
  for (int f = 0; f < kFieldCount; ++f) {
    const Stat& lin = e.stat[kLinear][f];
    const Stat& est = e.stat[kPower][f];
    if (lin.count == 0 && est.count == 0) {
      std::printf("    %-16s  (no rows)\n", kFieldNames[f]);
      continue;
    }
    std::printf("    %-16s %5d  %6.2f %% %6.2f %%  %6.2f %% %6.2f %%\n", kFieldNames[f],
                std::max(lin.count, est.count), 100.0 * lin.Mean(), 100.0 * lin.worst,
                100.0 * est.Mean(), 100.0 * est.worst);
  }
  const Stat& lin = e.stat[kLinear][kSpeed];
  const Stat& est = e.stat[kPower][kSpeed];
  std::printf("    worst cut speed: Interpolate at %s, Estimate at %s\n", lin.worst_at.c_str(),
              est.worst_at.c_str());
}

void PrintReport(const char* title, const Report& r, bool with_published) {
  std::printf("\n== %s: %d rows held out; no result: Interpolate %d, Estimate %d\n", title,
              r.total.held_out, r.total.failed[kLinear], r.total.failed[kPower]);
  PrintMatrix(r, false);
  PrintMatrix(r, true);
  PrintTotals("all rows", r.total);
  if (with_published) PrintTotals("published values only", r.published);
}

// ---------------------------------------------------------------------------
// The goal for the cut speed

bool Check(const char* what, double estimate, double linear, double share, const char* share_text) {
  const bool pass = estimate <= share * linear;
  std::printf("  %-34s Estimate %6.2f %%  Interpolate %6.2f %%  limit %s = %6.2f %%  %s\n", what,
              100.0 * estimate, 100.0 * linear, share_text, 100.0 * share * linear,
              pass ? "pass" : "FAIL");
  return pass;
}

bool CheckGoal(const char* chart, const Report& interior, const Report& above) {
  const Stat* in = interior.total.stat[kLinear];
  const Stat* in_est = interior.total.stat[kPower];
  const Stat* up = above.total.stat[kLinear];
  const Stat* up_est = above.total.stat[kPower];
  std::printf("\nCut-speed goal on %s:\n", chart);
  bool pass = Check("interior rows, mean", in_est[kSpeed].Mean(), in[kSpeed].Mean(), 0.5, "1/2");
  pass &= Check("interior rows, worst", in_est[kSpeed].worst, in[kSpeed].worst, 0.75, "3/4");
  pass &= Check("extrapolated above, mean", up_est[kSpeed].Mean(), up[kSpeed].Mean(), 0.5, "1/2");
  std::printf("  goal %s\n", pass ? "met: pass" : "not met: FAIL");
  return pass;
}

// Every hold-out of a chart, printed, and the goal checked.
bool Evaluate(const char* chart, const Catalogue& c, const PublishedTest& published,
              bool with_published) {
  const Report interior = HoldOut(c, published, Interior);
  const Report below = HoldOut(c, published, FirstOf);
  const Report above = HoldOut(c, published, LastOf);
  PrintReport("Interior rows held out", interior, with_published);
  PrintReport("First row held out, extrapolated below", below, with_published);
  PrintReport("Last row held out, extrapolated above", above, with_published);
  return CheckGoal(chart, interior, above);
}

// The 45 A chart's metric list against the imperial table it belongs to:
// each metric row computed from the imperial series.
void PrintCrossChart(const Catalogue& c) {
  Database db;
  if (!BuildDatabase(c, c.rows.size(), &db)) return;
  Report report;
  SeriesErrors series{"AIR-45A-M from AIR-45A", {}};
  for (const Row& r : c.rows) {
    if (r.machine != "AIR-45A-M") continue;
    const InterpolationResult got[kEstimatorCount] = {
        db.Interpolate(r.material, r.p.thickness_mm, "AIR-45A"),
        db.Estimate(r.material, r.p.thickness_mm, "AIR-45A")};
    Score(r, got, IsPublishedInSample, &series.errors, &report);
  }
  if (report.total.held_out == 0) return;
  std::printf("\n== AIR-45A-M rows from the AIR-45A series: %d rows\n", report.total.held_out);
  PrintTotals("published values only", report.published);
}

std::string Argument(int argc, char** argv, int i) { return argc > i ? argv[i] : ""; }

}  // namespace

int main(int argc, char** argv) {
  const std::string sample =
      FirstReadable({Argument(argc, argv, 1), RepoDir() + "/data/cut-charts.csv"});
  if (sample.empty()) {
    std::printf("cut-charts.csv not found; pass its path as the first argument\n");
    return 0;
  }
  std::vector<Row> rows;
  if (!ReadSampleRows(sample, &rows) || rows.size() < 2) {
    std::fprintf(stderr, "could not read %s\n", sample.c_str());
    return 1;
  }
  const Catalogue c = MakeCatalogue(std::move(rows));
  std::printf("Estimator quality on %s (%zu rows, %zu machine models, %zu materials)\n",
              sample.c_str(), c.rows.size(), c.machines.size(), c.materials.size());
  std::printf("relative error = |computed - listed| / listed, per held-out row; listed "
              "values of 0 are not scored\n");
  bool pass = Evaluate("the sample data", c, IsPublishedInSample, true);
  PrintCrossChart(c);

  const std::string chart = FirstReadable(
      {Argument(argc, argv, 2),
       RepoDir() + "/../shared/data/real-world/qtplasmac-material-metric-1.cfg"});
  if (chart.empty()) {
    std::printf("\nQtPlasmaC chart not found; skipped\n");
    return pass ? 0 : 1;
  }
  std::vector<Row> chart_rows;
  if (!ReadMaterialFileRows(chart, &chart_rows) || chart_rows.size() < 2) {
    std::fprintf(stderr, "could not read %s\n", chart.c_str());
    return 1;
  }
  const Catalogue q = MakeCatalogue(std::move(chart_rows));
  std::printf("\n\nEstimator quality on %s (%zu entries in %zu series)\n", chart.c_str(),
              q.rows.size(), q.machines.size());
  pass &= Evaluate("the QtPlasmaC chart", q, EverythingPublished, false);
  return pass ? 0 : 1;
}
