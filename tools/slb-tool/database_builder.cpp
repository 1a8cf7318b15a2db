#include "database_builder.h"

#include "progress.h"
#include "safe_output.h"

namespace slb {

using Sparlane::ErrorCode;

std::string SaveDatabase(Sparlane::Database& db, const std::string& out_path,
                         Sparlane::CompressionType compression) {
  return ReplaceFile(out_path, [&](const std::string& staging) {
    return db.SaveToBinary(staging, compression) == ErrorCode::Success ? std::string()
                                                                        : db.GetLastError();
  });
}

BuildResult BuildDatabase(ImportTable& table, const std::string& out_path,
                          Sparlane::CompressionType compression, ProblemList& warnings) {
  BuildResult result;
  table.Arrange(warnings);
  Sparlane::Database db;
  db.Create();
  const auto& machines = table.Machines();
  for (std::size_t i = 0; i < machines.size(); ++i) {
    if (db.AddMachine(table.VendorOfMachine(i), machines[i], std::string()) !=
        ErrorCode::Success) {
      result.error = db.GetLastError();
      return result;
    }
  }
  for (const auto& material : table.Materials()) {
    if (db.AddMaterial(material) != ErrorCode::Success) {
      result.error = db.GetLastError();
      return result;
    }
  }
  Progress progress("adding records", table.size());
  std::size_t added = 0;
  const bool all_added = table.Drain([&](const Sparlane::CuttingParameter& record) {
    progress.Update(++added);
    return db.AddParameter(record) == ErrorCode::Success;
  });
  // The library puts the records in the order its lookups expect.
  if (!all_added || db.SortParameters() != ErrorCode::Success) {
    result.error = db.GetLastError();
    return result;
  }
  result.error = SaveDatabase(db, out_path, compression);
  result.records = added;
  return result;
}

}  // namespace slb
