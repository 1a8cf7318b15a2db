#include "reference_parser.h"

#include <climits>

namespace filetest {
namespace {

using Sparlane::ErrorCode;

std::uint16_t Get16(const Bytes& b, std::size_t at) {
  return static_cast<std::uint16_t>(b[at] | (b[at + 1] << 8));
}

ErrorCode HeaderTest(const Bytes& f) {
  const std::uint64_t S = f.size();
  if (Get32(f, 0) != 0x4E4C5053u) return ErrorCode::InvalidMagic;
  if (Get16(f, 4) != 1) return ErrorCode::UnsupportedVersion;
  if (WriterChecksum(f) != Get32(f, 128) || S < 1024) return ErrorCode::CorruptedFile;
  const std::uint64_t v = Get64(f, 48), m = Get64(f, 56), t = Get64(f, 64), d = Get64(f, 104);
  const std::uint32_t pc = Get32(f, 16);
  if (v >= S || m >= S || t >= S) return ErrorCode::CorruptedFile;
  if (pc != 0 ? d >= S : d > S) return ErrorCode::CorruptedFile;
  if (v < 1024 || !(v < m && m < t && t <= d)) return ErrorCode::CorruptedFile;
  if (pc > 10000000 || Get32(f, 20) > 100000 || Get32(f, 24) > 100000 || Get32(f, 28) > 100000) {
    return ErrorCode::InvalidData;
  }
  if (f[112] > 2) return ErrorCode::CorruptedFile;
  return ErrorCode::Success;
}

// Signed arithmetic on purpose: "bytes left" may go negative after a skip.
ErrorCode Table(const Bytes& f, long long& pos, bool machine, std::vector<std::string>& out) {
  const long long S = static_cast<long long>(f.size());
  if (S - pos < 8) return ErrorCode::InvalidData;
  const long long start = pos;
  const std::uint32_t count = Get32(f, static_cast<std::size_t>(pos));
  const std::uint32_t table_size = Get32(f, static_cast<std::size_t>(pos + 4));
  pos += 8;
  if (start + static_cast<long long>(table_size) > S) return ErrorCode::InvalidData;
  out.clear();
  for (std::uint32_t i = 0; i < count; ++i) {
    pos += machine ? 4 : 2;
    if (pos >= S) return ErrorCode::InvalidData;  // the length byte itself is missing
    const int n = f[static_cast<std::size_t>(pos)];
    pos += 1;
    if (pos + n > S) return ErrorCode::InvalidData;
    out.emplace_back(reinterpret_cast<const char*>(f.data()) + pos, n);
    pos += n;
    if (machine) {
      if (pos >= S) return ErrorCode::InvalidData;
      pos += 1 + f[static_cast<std::size_t>(pos)];
    }
  }
  return ErrorCode::Success;
}

}  // namespace

ReferenceResult ReferenceLoad(const Bytes& f) {
  ReferenceResult r;
  if (f.size() < 1024) {
    r.code = ErrorCode::CorruptedFile;
    return r;
  }
  r.code = HeaderTest(f);
  if (r.code != ErrorCode::Success) return r;
  long long pos = 1024;
  const long long S = static_cast<long long>(f.size());
  if ((r.code = Table(f, pos, false, r.vendors)) != ErrorCode::Success) return r;
  if ((r.code = Table(f, pos, true, r.machines)) != ErrorCode::Success) return r;
  if ((r.code = Table(f, pos, false, r.materials)) != ErrorCode::Success) return r;
  const std::uint32_t count = Get32(f, 16);
  const int compression = f[112];
  if (compression == 0) {
    if (S - pos < static_cast<long long>(count) * 64) {
      r.code = ErrorCode::InvalidData;
      return r;
    }
    r.records.resize(count);
    std::memcpy(r.records.data(), f.data() + pos, static_cast<std::size_t>(count) * 64);
  } else if (compression == 1) {
    while (r.records.size() < count) {
      if (S - pos < 8) {
        r.code = ErrorCode::InvalidParameter;
        return r;
      }
      const std::uint32_t raw = Get32(f, static_cast<std::size_t>(pos));
      const std::uint32_t comp = Get32(f, static_cast<std::size_t>(pos + 4));
      if (comp == 0 || raw == 0 || static_cast<long long>(comp) + 8 > S - pos || raw % 64 != 0) {
        r.code = ErrorCode::InvalidData;
        return r;
      }
      if (raw > (16u << 20)) {
        r.unmodelled = true;
        return r;
      }
      std::vector<Sparlane::CuttingParameter> scratch(raw / 64);
      const int got = LZ4_decompress_safe(reinterpret_cast<const char*>(f.data() + pos + 8),
                                          reinterpret_cast<char*>(scratch.data()),
                                          static_cast<int>(comp), static_cast<int>(raw));
      if (got < 0) {
        r.code = ErrorCode::DecompressionFailed;
        return r;
      }
      if (static_cast<std::uint32_t>(got) != raw) {
        r.code = ErrorCode::InvalidData;
        return r;
      }
      r.records.insert(r.records.end(), scratch.begin(), scratch.end());
      pos += 8 + comp;
    }
  }
  return r;
}

}  // namespace filetest
