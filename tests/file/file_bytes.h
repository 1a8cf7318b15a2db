// Test-side construction of parameter files byte by byte from the documented
// layout, independent of the library's writer.
#ifndef SPARLANE_TESTS_FILE_FILE_BYTES_H_
#define SPARLANE_TESTS_FILE_FILE_BYTES_H_

#include <lz4.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "sparlane/sparlane.h"

namespace filetest {

using Bytes = std::vector<std::uint8_t>;

inline void Put16(Bytes& b, std::size_t at, std::uint16_t v) {
  b[at] = static_cast<std::uint8_t>(v);
  b[at + 1] = static_cast<std::uint8_t>(v >> 8);
}
inline void Put32(Bytes& b, std::size_t at, std::uint32_t v) {
  for (int i = 0; i < 4; ++i) b[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
}
inline void Put64(Bytes& b, std::size_t at, std::uint64_t v) {
  for (int i = 0; i < 8; ++i) b[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
}
inline std::uint32_t Get32(const Bytes& b, std::size_t at) {
  return static_cast<std::uint32_t>(b[at]) | (static_cast<std::uint32_t>(b[at + 1]) << 8) |
         (static_cast<std::uint32_t>(b[at + 2]) << 16) |
         (static_cast<std::uint32_t>(b[at + 3]) << 24);
}
inline std::uint64_t Get64(const Bytes& b, std::size_t at) {
  return static_cast<std::uint64_t>(Get32(b, at)) |
         (static_cast<std::uint64_t>(Get32(b, at + 4)) << 32);
}
inline void Append(Bytes& b, const Bytes& more) { b.insert(b.end(), more.begin(), more.end()); }
inline void AppendLE(Bytes& b, std::uint64_t v, int width) {
  for (int i = 0; i < width; ++i) b.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
}

// Bit-by-bit CRC-32 (no table), as a reference independent of the library.
inline std::uint32_t ReferenceCrc(const std::uint8_t* p, std::size_t n, std::uint32_t crc = 0) {
  crc = ~crc;
  for (std::size_t i = 0; i < n; ++i) {
    crc ^= p[i];
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

// The checksum the writer stores: bytes 0-127 then 144-1023.
inline std::uint32_t WriterChecksum(const Bytes& file) {
  return ReferenceCrc(file.data() + 144, 880, ReferenceCrc(file.data(), 128));
}

inline void Reseal(Bytes& file) { Put32(file, 128, WriterChecksum(file)); }

// Plain (vendor/material) table.
inline Bytes PlainTable(const std::vector<std::string>& names) {
  Bytes t;
  std::uint32_t size = 4;
  for (const auto& n : names) size += 3 + static_cast<std::uint32_t>(n.size());
  AppendLE(t, names.size(), 4);
  AppendLE(t, size, 4);
  std::uint16_t id = 1;
  for (const auto& n : names) {
    AppendLE(t, id++, 2);
    t.push_back(static_cast<std::uint8_t>(n.size()));
    t.insert(t.end(), n.begin(), n.end());
  }
  return t;
}

// Machine table; extra[i] bytes of "extra" after each name when given.
inline Bytes MachineTable(const std::vector<std::string>& names,
                          const std::vector<std::uint8_t>& extra = {}) {
  Bytes t;
  std::uint32_t size = 4;
  for (std::size_t i = 0; i < names.size(); ++i) {
    size += 6 + static_cast<std::uint32_t>(names[i].size()) + (i < extra.size() ? extra[i] : 0);
  }
  AppendLE(t, names.size(), 4);
  AppendLE(t, size, 4);
  for (std::size_t i = 0; i < names.size(); ++i) {
    AppendLE(t, i + 1, 2);
    AppendLE(t, 7, 2);  // vendor id: ignored by the reader
    t.push_back(static_cast<std::uint8_t>(names[i].size()));
    t.insert(t.end(), names[i].begin(), names[i].end());
    const std::uint8_t m = i < extra.size() ? extra[i] : 0;
    t.push_back(m);
    for (int k = 0; k < m; ++k) t.push_back(static_cast<std::uint8_t>(0xE0 + k));
  }
  return t;
}

// A record's 64 file bytes, field by field.
inline Bytes RecordBytes(const Sparlane::CuttingParameter& p) {
  Bytes b(64, 0);
  Put16(b, 0, p.vendor_id);
  Put16(b, 2, p.machine_model_id);
  Put16(b, 4, p.material_id);
  Put16(b, 6, p.aux_id);
  const float fs[8] = {p.thickness_mm,       p.cut_speed_mm_min, p.cut_height_mm,
                       p.pierce_height_mm,   p.transfer_height_mm, p.arc_voltage_v,
                       p.pierce_time_s,      p.kerf_width_mm};
  for (int i = 0; i < 8; ++i) {
    std::uint32_t u;
    std::memcpy(&u, &fs[i], 4);
    Put32(b, 8 + 4 * i, u);
  }
  Put16(b, 40, p.current_amps);
  std::memcpy(&b[42], p.reserved_42, 6);
  Put32(b, 48, p.flags);
  std::memcpy(&b[52], p.reserved_52, 12);
  return b;
}

inline Bytes RawData(const std::vector<Sparlane::CuttingParameter>& records) {
  Bytes d;
  for (const auto& r : records) Append(d, RecordBytes(r));
  return d;
}

// One LZ4 block (head + data) holding raw.
inline Bytes Lz4Block(const Bytes& raw) {
  Bytes out(8 + LZ4_compressBound(static_cast<int>(raw.size())));
  const int n = LZ4_compress_default(reinterpret_cast<const char*>(raw.data()),
                                     reinterpret_cast<char*>(out.data() + 8),
                                     static_cast<int>(raw.size()),
                                     static_cast<int>(out.size() - 8));
  out.resize(8 + static_cast<std::size_t>(n));
  Put32(out, 0, static_cast<std::uint32_t>(raw.size()));
  Put32(out, 4, static_cast<std::uint32_t>(n));
  return out;
}

inline Bytes Lz4Data(const std::vector<Sparlane::CuttingParameter>& records,
                     std::size_t per_block = 64) {
  Bytes d;
  for (std::size_t i = 0; i < records.size(); i += per_block) {
    Bytes raw;
    for (std::size_t k = i; k < records.size() && k < i + per_block; ++k) {
      Append(raw, RecordBytes(records[k]));
    }
    Append(d, Lz4Block(raw));
  }
  return d;
}

struct Layout {
  std::uint64_t vendor = 0, machine = 0, material = 0, data = 0, end = 0;
};

// A complete file: header with counts, offsets, compression and the
// writer's checksum, then the sections back to back.
struct FileContents {
  std::vector<std::string> vendors{"Acme"};
  std::vector<std::string> machines{"Cutter 1"};
  std::vector<std::string> materials{"Mild Steel"};
  std::vector<std::uint8_t> machine_extra;
  std::vector<Sparlane::CuttingParameter> records;
  std::uint8_t compression = 0;
  std::int64_t created_time = 1700000000;
};

inline Bytes BuildFile(const FileContents& s, Layout* layout = nullptr) {
  Bytes file(1024, 0);
  Put32(file, 0, 0x4E4C5053u);
  Put16(file, 4, 1);
  Put16(file, 6, 0);
  Put64(file, 8, static_cast<std::uint64_t>(s.created_time));
  Put32(file, 16, static_cast<std::uint32_t>(s.records.size()));
  Put32(file, 20, static_cast<std::uint32_t>(s.vendors.size()));
  Put32(file, 24, static_cast<std::uint32_t>(s.machines.size()));
  Put32(file, 28, static_cast<std::uint32_t>(s.materials.size()));
  std::memcpy(&file[144], "slb-tool v1.0", 13);
  file[112] = s.compression;
  Layout l;
  l.vendor = file.size();
  Append(file, PlainTable(s.vendors));
  l.machine = file.size();
  Append(file, MachineTable(s.machines, s.machine_extra));
  l.material = file.size();
  Append(file, PlainTable(s.materials));
  l.data = file.size();
  if (s.compression == 0) Append(file, RawData(s.records));
  if (s.compression == 1) Append(file, Lz4Data(s.records));
  l.end = file.size();
  Put64(file, 48, l.vendor);
  Put64(file, 56, l.machine);
  Put64(file, 64, l.material);
  Put64(file, 104, l.data);
  Reseal(file);
  if (layout) *layout = l;
  return file;
}

// A record with every byte meaningful, including the opaque ones.
inline Sparlane::CuttingParameter SampleRecord(std::uint16_t material, float thickness,
                                               int salt = 0) {
  Sparlane::CuttingParameter p{};
  p.vendor_id = 1;
  p.machine_model_id = 1;
  p.material_id = material;
  p.aux_id = static_cast<std::uint16_t>(0xA000 + salt);
  p.thickness_mm = thickness;
  p.cut_speed_mm_min = 3000.0f - 100.0f * thickness;
  p.cut_height_mm = 1.5f;
  p.pierce_height_mm = 3.0f + 0.01f * static_cast<float>(salt);
  p.transfer_height_mm = 3.5f;
  p.arc_voltage_v = 120.0f + thickness;
  p.pierce_time_s = 0.1f * thickness;
  p.kerf_width_mm = 1.2f;
  p.current_amps = static_cast<std::uint16_t>(45 + salt);
  for (int i = 0; i < 6; ++i) p.reserved_42[i] = static_cast<std::uint8_t>(0x11 * (i + 1) + salt);
  p.flags = 0xF0000001u | static_cast<std::uint32_t>(salt << 8);
  for (int i = 0; i < 12; ++i) p.reserved_52[i] = static_cast<std::uint8_t>(0xC0 + i + salt);
  return p;
}

inline bool SameBytes(const Sparlane::CuttingParameter& a, const Sparlane::CuttingParameter& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A scratch directory under the build tree, emptied per test.
std::string ScratchDir(const std::string& test_name);
bool WriteFile(const std::string& path, const Bytes& bytes);
Bytes ReadFile(const std::string& path);
bool FileExists(const std::string& path);

}  // namespace filetest

#endif  // SPARLANE_TESTS_FILE_FILE_BYTES_H_
