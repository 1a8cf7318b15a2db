#include "load_database.h"

#include <cstring>
#include <fstream>

#include "exit_status.h"
#include "tool_paths.h"

namespace slb {
namespace {

using Sparlane::ErrorCode;

constexpr std::size_t kHeaderBytes = 1024;
constexpr std::size_t kChecksumAt = 128;
constexpr std::size_t kChecksumGapEnd = 144;  // bytes 128..143 are not covered

// True when the file's header checksum (over header bytes 0-127 and
// 144-1023) differs from the one it stores.
bool HeaderChecksumDiffers(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  unsigned char header[kHeaderBytes];
  if (!in.read(reinterpret_cast<char*>(header), sizeof header)) return false;
  unsigned char covered[kHeaderBytes - (kChecksumGapEnd - kChecksumAt)];
  std::memcpy(covered, header, kChecksumAt);
  std::memcpy(covered + kChecksumAt, header + kChecksumGapEnd, kHeaderBytes - kChecksumGapEnd);
  const std::uint32_t stored = static_cast<std::uint32_t>(header[kChecksumAt]) |
                               static_cast<std::uint32_t>(header[kChecksumAt + 1]) << 8 |
                               static_cast<std::uint32_t>(header[kChecksumAt + 2]) << 16 |
                               static_cast<std::uint32_t>(header[kChecksumAt + 3]) << 24;
  return Sparlane::Testing::CalculateCRC32(covered, sizeof covered) != stored;
}

}  // namespace

std::string LoadFailureCause(ErrorCode code, const std::string& path) {
  switch (code) {
    case ErrorCode::FileNotFound: return "file not found";
    case ErrorCode::AccessDenied: return "permission denied";
    case ErrorCode::InvalidMagic: return "not a parameter file (bad magic)";
    case ErrorCode::UnsupportedVersion: return "unsupported version";
    case ErrorCode::CorruptedFile:
      // Also a file shorter than a header or with offsets past its end.
      return HeaderChecksumDiffers(path) ? "header checksum mismatch" : "truncated or corrupted";
    case ErrorCode::InvalidData: return "truncated or corrupted";
    case ErrorCode::DecompressionFailed: return "LZ4 data corrupt";
    case ErrorCode::InvalidParameter: return "truncated or corrupted";  // an LZ4 block head cut off
    case ErrorCode::OutOfMemory: return "not enough memory to map the file";
    default: break;
  }
  return "cannot read the file";
}

bool LoadDatabase(Sparlane::Database& db, const std::string& given, std::string* resolved) {
  std::string error;
  const auto path = ResolvePath(given, error);
  if (!path) {
    Fail(error);
    return false;
  }
  if (resolved != nullptr) *resolved = *path;
  const ErrorCode code = db.LoadFromBinary(*path);
  if (code != ErrorCode::Success) {
    Fail(given + ": " + LoadFailureCause(code, *path) + " (" + db.GetLastError() + ")");
    return false;
  }
  return true;
}

}  // namespace slb
