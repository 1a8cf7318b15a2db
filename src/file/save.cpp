// Database::SaveToBinary and the file writer.  The file is written under a
// ".tmp" name with a provisional header, completed by rewriting the header,
// flushed to disk, and only then renamed over the target.
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>

#include "file/byte_order.h"
#include "file/disk_flush.h"
#include "file/file_writer.h"
#include "file/header_checksum.h"
#include "file/header_codec.h"
#include "file/lz4_blocks.h"
#include "sparlane/testing.h"

namespace Sparlane {
namespace {

constexpr char kCreator[] = "slb-tool v1.0";

bool IsKnownCompression(CompressionType c) {
  return c == CompressionType::None || c == CompressionType::LZ4 ||
         c == CompressionType::Reserved;
}

FileHeader NewHeader(const Store& store, CompressionType compression) {
  FileHeader h{};
  h.magic = kFileMagic;
  h.version_major = kFileVersionMajor;
  h.version_minor = 0;
  h.created_time = static_cast<std::int64_t>(std::time(nullptr));
  const NameTableSizes names = store.name_table_sizes();
  h.parameter_count = static_cast<std::uint32_t>(store.records().size());
  h.vendor_count = static_cast<std::uint32_t>(names.vendors);
  h.machine_count = static_cast<std::uint32_t>(names.machines);
  h.material_count = static_cast<std::uint32_t>(names.materials);
  h.compression = static_cast<std::uint8_t>(compression);
  std::memcpy(h.creator, kCreator, sizeof kCreator - 1);
  return h;
}

// The header's file bytes with its own checksum filled in.
void SealHeader(FileHeader& h, std::uint8_t bytes[kHeaderSize]) {
  EncodeHeader(h, bytes);
  h.header_crc32 = HeaderChecksumOfBytes(bytes);
  StoreLE32(bytes + SPARLANE_HEADER_OFFSET(header_crc32), h.header_crc32);
}

bool WriteBytes(std::ostream& out, const std::vector<std::uint8_t>& bytes) {
  out.write(reinterpret_cast<const char*>(bytes.data()),
            static_cast<std::streamsize>(bytes.size()));
  return out.good();
}

ErrorCode Abandon(const std::string& tmp, ErrorCode code) {
  std::remove(tmp.c_str());
  return code;
}

// Header, tables and data into the open stream; fills in the offsets.
ErrorCode WriteBody(std::ofstream& out, const Store& store, CompressionType compression,
                    FileHeader& h) {
  std::uint8_t bytes[kHeaderSize];
  SealHeader(h, bytes);  // provisional: self-consistent with zero offsets
  out.write(reinterpret_cast<const char*>(bytes), kHeaderSize);
  if (!out.good()) return ErrorCode::IoError;

  std::uint64_t position = kHeaderSize;
  const std::vector<std::uint8_t>* order[3];
  const std::vector<std::uint8_t> vendors =
      EncodeNameTable(store.names(NameKind::kVendor).names, false);
  const std::vector<std::uint8_t> machines =
      EncodeNameTable(store.names(NameKind::kMachine).names, true);
  const std::vector<std::uint8_t> materials =
      EncodeNameTable(store.names(NameKind::kMaterial).names, false);
  order[0] = &vendors;
  order[1] = &machines;
  order[2] = &materials;
  std::uint64_t* offsets[3] = {&h.vendor_table_offset, &h.machine_table_offset,
                               &h.material_table_offset};
  for (int i = 0; i < 3; ++i) {
    *offsets[i] = position;
    if (!WriteBytes(out, *order[i])) return ErrorCode::IoError;
    position += order[i]->size();
  }
  h.parameter_data_offset = position;
  return WriteParameterData(out, store.records(), compression);
}

// Second pass: the complete header over the provisional one, then to disk.
bool RewriteHeader(const std::string& tmp, FileHeader& h) {
  std::fstream io(tmp, std::ios::in | std::ios::out | std::ios::binary);
  if (!io.is_open()) return false;
  std::uint8_t bytes[kHeaderSize];
  SealHeader(h, bytes);
  io.seekp(0);
  io.write(reinterpret_cast<const char*>(bytes), kHeaderSize);
  if (!io.good()) return false;
  io.close();
  return !io.fail() && FlushFileToDisk(tmp);
}

}  // namespace

ErrorCode WriteParameterData(std::ostream& out, const std::vector<CuttingParameter>& records,
                             CompressionType compression) {
  if (compression == CompressionType::None) {
    out.write(reinterpret_cast<const char*>(records.data()),
              static_cast<std::streamsize>(records.size() * sizeof(CuttingParameter)));
  } else if (compression == CompressionType::LZ4) {
    std::vector<std::uint8_t> blocks;
    const ErrorCode code = EncodeLz4Blocks(records, blocks);
    if (code != ErrorCode::Success) return code;
    if (!WriteBytes(out, blocks)) return ErrorCode::IoError;
  }
  return out.good() ? ErrorCode::Success : ErrorCode::IoError;
}

ErrorCode WriteParameterFile(const std::string& path, const Store& store,
                             CompressionType compression) {
  if (!IsKnownCompression(compression)) return ErrorCode::InvalidParameter;
  const std::string tmp = path + ".tmp";
  std::ofstream out(tmp, std::ios::out | std::ios::binary | std::ios::trunc);
  if (!out.is_open()) return ErrorCode::IoError;

  FileHeader h = NewHeader(store, compression);
  const ErrorCode body_code = WriteBody(out, store, compression, h);
  if (body_code != ErrorCode::Success) {
    out.close();
    return Abandon(tmp, body_code);
  }
  out.close();
  if (out.fail()) return Abandon(tmp, ErrorCode::IoError);

  if (!RewriteHeader(tmp, h)) return Abandon(tmp, ErrorCode::IoError);
  std::remove(path.c_str());  // a missing target is fine
  if (std::rename(tmp.c_str(), path.c_str()) != 0) return Abandon(tmp, ErrorCode::IoError);
  FlushParentDirectoryToDisk(path);
  return ErrorCode::Success;
}

ErrorCode Database::SaveToBinary(const std::string& path, CompressionType compression) {
  Store& s = *impl_;
  if (!s.loaded()) return s.Fail(ErrorCode::NotLoaded, "Database not loaded");
  const std::string sanitized = Testing::SanitizePath(path);
  const ErrorCode code = WriteParameterFile(sanitized, s, compression);
  if (code != ErrorCode::Success) {
    return s.Fail(code, "Failed to write binary format to: " + sanitized);
  }
  return ErrorCode::Success;
}

}  // namespace Sparlane
