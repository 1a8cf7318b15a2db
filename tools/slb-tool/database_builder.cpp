#include "database_builder.h"

#include <algorithm>
#include <map>
#include <set>

#include "catalogue.h"
#include "progress.h"

namespace slb {
namespace {

using Sparlane::ErrorCode;

// Registers every machine (with its vendor) and material; a model listed
// under two vendors is refused, since the library keys models by name alone.
bool RegisterNames(Sparlane::Database& db, const std::vector<ImportRow>& rows,
                   std::vector<std::string>& errors) {
  std::map<std::string, const ImportRow*> machine_first_row;
  std::set<std::string> materials;
  for (const auto& row : rows) {
    auto inserted = machine_first_row.emplace(row.machine, &row);
    const ImportRow& first = *inserted.first->second;
    if (!inserted.second && first.vendor != row.vendor) {
      errors.push_back(row.Where() + ": machine model \"" + row.machine +
                       "\" is listed under vendor \"" + row.vendor + "\" here and under \"" +
                       first.vendor + "\" at line " + std::to_string(first.line) +
                       "; model names must be unique across vendors");
    }
    materials.insert(row.material);
  }
  if (!errors.empty()) return false;
  for (const auto& [machine, row] : machine_first_row) {
    if (db.AddMachine(row->vendor, machine, std::string()) != ErrorCode::Success) {
      errors.push_back(row->Where() + ": " + db.GetLastError());
    }
  }
  for (const auto& material : materials) {
    if (db.AddMaterial(material) == ErrorCode::Success) continue;
    for (const auto& row : rows) {
      if (row.material == material) {
        errors.push_back(row.Where() + ": " + db.GetLastError());
        break;
      }
    }
  }
  return errors.empty();
}

std::vector<Sparlane::CuttingParameter> WithIds(Sparlane::Database& db,
                                                const std::vector<ImportRow>& rows) {
  const Catalogue catalogue(db);
  std::vector<Sparlane::CuttingParameter> records;
  records.reserve(rows.size());
  for (const auto& row : rows) {
    Sparlane::CuttingParameter p = row.values;
    // Every name was registered above, so these lookups succeed.
    p.material_id = catalogue.MaterialId(row.material).value_or(0);
    p.machine_model_id = catalogue.MachineId(row.machine).value_or(0);
    p.vendor_id = 0;
    const auto& vendors = catalogue.Vendors();
    for (std::size_t i = 0; i < vendors.size(); ++i) {
      if (vendors[i] == row.vendor) p.vendor_id = static_cast<std::uint16_t>(i + 1);
    }
    records.push_back(p);
  }
  return records;
}

}  // namespace

BuildResult BuildDatabase(const std::vector<ImportRow>& all_rows, const std::string& out_path,
                          Sparlane::CompressionType compression, bool skip_bad_rows) {
  BuildResult result;
  std::vector<ImportRow> rows;
  {
    // Check every row in file order first, so errors come out in that order.
    Sparlane::Database db;
    db.Create();
    if (!RegisterNames(db, all_rows, result.errors)) return result;
    const auto checked = WithIds(db, all_rows);
    Progress progress("checking rows", checked.size());
    for (std::size_t i = 0; i < checked.size(); ++i) {
      progress.Update(i + 1);
      if (db.AddParameter(checked[i]) == ErrorCode::Success) {
        rows.push_back(all_rows[i]);
      } else {
        (skip_bad_rows ? result.skipped : result.errors)
            .push_back(all_rows[i].Where() + ": " + db.GetLastError());
      }
    }
    if (!result.errors.empty()) return result;
  }

  // Names of the rows kept, then the records in lookup order.
  Sparlane::Database sorted;
  sorted.Create();
  std::vector<std::string> unused;
  RegisterNames(sorted, rows, unused);
  const auto records = WithIds(sorted, rows);
  std::vector<std::size_t> order(records.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const auto& x = records[a];
    const auto& y = records[b];
    if (x.material_id != y.material_id) return x.material_id < y.material_id;
    if (x.machine_model_id != y.machine_model_id) return x.machine_model_id < y.machine_model_id;
    return x.thickness_mm < y.thickness_mm;
  });
  for (std::size_t i : order) sorted.AddParameter(records[i]);
  if (sorted.SaveToBinary(out_path, compression) != ErrorCode::Success) {
    result.errors.push_back(sorted.GetLastError());
    return result;
  }
  result.ok = true;
  result.records = records.size();
  return result;
}

}  // namespace slb
