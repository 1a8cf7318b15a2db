// Database::LoadFromBinary: close, map, parse, index, and time the whole.
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>

#include "file/file_parser.h"
#include "file/load_timing.h"
#include "file/mapped_file.h"
#include "sparlane/testing.h"
#include "store/store.h"

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

  Store& s = *impl_;
  // A fresh object each time; the old one is torn down first.
  s.DropFile();
  auto file = std::make_unique<MappedFile>();
  const ErrorCode open_code = file->Open(sanitized);
  if (open_code != ErrorCode::Success) {
    return s.Fail(open_code, "Failed to open file: " + sanitized);
  }

  StoreParts parts;
  const ErrorCode parse_code = ParseParameterFile(*file, parts);
  // On failure, what was read so far; on success the indexes come along.
  s.Replace(std::move(parts));
  if (parse_code != ErrorCode::Success) {
    return s.Fail(parse_code, "Failed to read binary format");
  }

  s.FinishLoad(std::move(file));

  const auto end = std::chrono::steady_clock::now();
  const double elapsed_ms =
      static_cast<double>(
          std::chrono::duration_cast<std::chrono::nanoseconds>(end - start).count()) /
      1000000.0;
  if (elapsed_ms > kLoadTargetMs) s.SetLastError(SlowLoadWarning(elapsed_ms));
  return ErrorCode::Success;
}

}  // namespace Sparlane
