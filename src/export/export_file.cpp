#include "export/export_file.h"

#include "sparlane/testing.h"

namespace Sparlane {

ErrorCode OpenExportFile(Store& store, const std::string& path, std::ofstream& out) {
  if (!store.loaded()) return store.Fail(ErrorCode::NotLoaded, "Database not loaded");
  const std::string safe_path = Testing::SanitizePath(path);
  out.open(safe_path, std::ios::out | std::ios::trunc);
  if (!out.is_open()) {
    return store.Fail(ErrorCode::IoError, "Failed to open file for writing: " + safe_path);
  }
  return ErrorCode::Success;
}

ErrorCode FinishExportFile(Store& store, std::ofstream& out) {
  if (!out.good()) return store.Fail(ErrorCode::IoError, "Error writing to file");
  out.close();
  return ErrorCode::Success;
}

}  // namespace Sparlane
