#include "export/export_file.h"

namespace Sparlane {

ErrorCode OpenExportFile(DatabaseImpl& impl, const std::string& path, std::ofstream& out) {
  if (!impl.loaded) return impl.Fail(ErrorCode::NotLoaded, "Database not loaded");
  const std::string safe_path = Testing::SanitizePath(path);
  out.open(safe_path, std::ios::out | std::ios::trunc);
  if (!out.is_open()) {
    return impl.Fail(ErrorCode::IoError, "Failed to open file for writing: " + safe_path);
  }
  return ErrorCode::Success;
}

ErrorCode FinishExportFile(DatabaseImpl& impl, std::ofstream& out) {
  if (!out.good()) return impl.Fail(ErrorCode::IoError, "Error writing to file");
  out.close();
  return ErrorCode::Success;
}

}  // namespace Sparlane
