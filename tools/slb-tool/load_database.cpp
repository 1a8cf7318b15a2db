#include "load_database.h"

#include <cstddef>
#include <cstring>
#include <fstream>

#include "exit_status.h"
#include "tool_paths.h"

namespace slb {
namespace {

using Sparlane::ErrorCode;

// The header checksum covers every header byte but the checksum itself and
// the reserved bytes after it, up to the creator name.
constexpr std::size_t kUncoveredFrom = offsetof(Sparlane::FileHeader, header_crc32);
constexpr std::size_t kUncoveredTo = offsetof(Sparlane::FileHeader, creator);

// True when the header checksum of a file that failed to load differs from
// the one it stores.  The library holds no header for such a file, so its
// first bytes are read here.  Little-endian hosts only, like the format.
bool HeaderChecksumDiffers(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  unsigned char bytes[sizeof(Sparlane::FileHeader)];
  if (!in.read(reinterpret_cast<char*>(bytes), sizeof bytes)) return false;
  Sparlane::FileHeader header;
  std::memcpy(&header, bytes, sizeof header);
  unsigned char covered[sizeof bytes - (kUncoveredTo - kUncoveredFrom)];
  std::memcpy(covered, bytes, kUncoveredFrom);
  std::memcpy(covered + kUncoveredFrom, bytes + kUncoveredTo, sizeof bytes - kUncoveredTo);
  return Sparlane::Testing::CalculateCRC32(covered, sizeof covered) != header.header_crc32;
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

bool LoadDatabase(Sparlane::Database& db, const std::string& given) {
  std::string error;
  const auto path = ResolvePath(given, error);
  if (!path) {
    Fail(error);
    return false;
  }
  const ErrorCode code = db.LoadFromBinary(*path);
  if (code != ErrorCode::Success) {
    Fail(given + ": " + LoadFailureCause(code, *path) + " (" + db.GetLastError() + ")");
    return false;
  }
  return true;
}

}  // namespace slb
