// Explicit little-endian header layout; reserved bytes travel as they are.
#include "file/header_codec.h"

#include <cstring>

#include "file/byte_order.h"

namespace Sparlane {
namespace {

template <std::size_t N>
void PutBytes(std::uint8_t* out, int offset, const std::uint8_t (&field)[N]) {
  std::memcpy(out + offset, field, N);
}

template <std::size_t N>
void GetBytes(const std::uint8_t* in, int offset, std::uint8_t (&field)[N]) {
  std::memcpy(field, in + offset, N);
}

}  // namespace

void EncodeHeader(const FileHeader& h, std::uint8_t out[kHeaderSize]) {
  namespace O = HeaderOffset;
  std::memset(out, 0, kHeaderSize);
  StoreLE32(out + O::kMagic, h.magic);
  StoreLE16(out + O::kVersionMajor, h.version_major);
  StoreLE16(out + O::kVersionMinor, h.version_minor);
  StoreLE64(out + O::kCreatedTime, static_cast<std::uint64_t>(h.created_time));
  StoreLE32(out + O::kParameterCount, h.parameter_count);
  StoreLE32(out + O::kVendorCount, h.vendor_count);
  StoreLE32(out + O::kMachineCount, h.machine_count);
  StoreLE32(out + O::kMaterialCount, h.material_count);
  PutBytes(out, 32, h.reserved_32);
  StoreLE64(out + O::kVendorTable, h.vendor_table_offset);
  StoreLE64(out + O::kMachineTable, h.machine_table_offset);
  StoreLE64(out + O::kMaterialTable, h.material_table_offset);
  PutBytes(out, 72, h.reserved_72);
  StoreLE64(out + O::kAux1, h.aux_offset_1);
  StoreLE64(out + O::kAux2, h.aux_offset_2);
  PutBytes(out, 96, h.reserved_96);
  StoreLE64(out + O::kParameterData, h.parameter_data_offset);
  out[O::kCompression] = h.compression;
  PutBytes(out, 113, h.reserved_113);
  StoreLE32(out + O::kStatsCompressed, h.stats_compressed_size);
  StoreLE32(out + O::kStatsUncompressed, h.stats_uncompressed_size);
  PutBytes(out, 124, h.reserved_124);
  StoreLE32(out + O::kCrc, h.header_crc32);
  PutBytes(out, 132, h.reserved_132);
  std::memcpy(out + O::kCreator, h.creator, sizeof h.creator);
  PutBytes(out, 176, h.reserved_176);
}

FileHeader DecodeHeader(const std::uint8_t in[kHeaderSize]) {
  namespace O = HeaderOffset;
  FileHeader h{};
  h.magic = LoadLE32(in + O::kMagic);
  h.version_major = LoadLE16(in + O::kVersionMajor);
  h.version_minor = LoadLE16(in + O::kVersionMinor);
  h.created_time = static_cast<std::int64_t>(LoadLE64(in + O::kCreatedTime));
  h.parameter_count = LoadLE32(in + O::kParameterCount);
  h.vendor_count = LoadLE32(in + O::kVendorCount);
  h.machine_count = LoadLE32(in + O::kMachineCount);
  h.material_count = LoadLE32(in + O::kMaterialCount);
  GetBytes(in, 32, h.reserved_32);
  h.vendor_table_offset = LoadLE64(in + O::kVendorTable);
  h.machine_table_offset = LoadLE64(in + O::kMachineTable);
  h.material_table_offset = LoadLE64(in + O::kMaterialTable);
  GetBytes(in, 72, h.reserved_72);
  h.aux_offset_1 = LoadLE64(in + O::kAux1);
  h.aux_offset_2 = LoadLE64(in + O::kAux2);
  GetBytes(in, 96, h.reserved_96);
  h.parameter_data_offset = LoadLE64(in + O::kParameterData);
  h.compression = in[O::kCompression];
  GetBytes(in, 113, h.reserved_113);
  h.stats_compressed_size = LoadLE32(in + O::kStatsCompressed);
  h.stats_uncompressed_size = LoadLE32(in + O::kStatsUncompressed);
  GetBytes(in, 124, h.reserved_124);
  h.header_crc32 = LoadLE32(in + O::kCrc);
  GetBytes(in, 132, h.reserved_132);
  std::memcpy(h.creator, in + O::kCreator, sizeof h.creator);
  GetBytes(in, 176, h.reserved_176);
  return h;
}

}  // namespace Sparlane
