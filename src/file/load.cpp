// Database::LoadFromBinary: close, map, parse, index, and time the whole.
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "file/file_parser.h"
#include "file/load_timing.h"
#include "file/mapped_file.h"
#include "store/database_impl.h"
#include "store/indexes.h"

namespace Sparlane {

std::string SlowLoadWarning(double elapsed_ms) {
  char number[64];
  std::snprintf(number, sizeof number, "%f", elapsed_ms);
  return std::string("Warning: Load time exceeded 5ms target (") + number + " ms)";
}

ErrorCode Database::LoadFromBinary(const std::string& path) {
  const auto start = std::chrono::steady_clock::now();
  Close();
  const std::string sanitized = Testing::SanitizePath(path);

  DatabaseImpl& d = *impl_;
  // A fresh object each time; the old one is torn down as it is replaced.
  d.mapped_file = std::make_unique<MappedFile>();
  const ErrorCode open_code = d.mapped_file->Open(sanitized);
  if (open_code != ErrorCode::Success) {
    d.mapped_file.reset();
    return d.Fail(open_code, "Failed to open file: " + sanitized);
  }

  const ErrorCode parse_code =
      ParseParameterFile(d.mapped_file->view(), d.mapped_file->size(), d);
  if (parse_code != ErrorCode::Success) {
    d.mapped_file.reset();
    return d.Fail(parse_code, "Failed to read binary format");
  }

  RebuildRecordIndexes(d);
  d.loaded = true;

  const auto end = std::chrono::steady_clock::now();
  const double elapsed_ms =
      static_cast<double>(
          std::chrono::duration_cast<std::chrono::nanoseconds>(end - start).count()) /
      1000000.0;
  if (elapsed_ms > kLoadTargetMs) d.last_error = SlowLoadWarning(elapsed_ms);
  return ErrorCode::Success;
}

}  // namespace Sparlane
