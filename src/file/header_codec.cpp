// Explicit little-endian header layout, independent of the host's byte
// order; reserved bytes travel as they are.
#include "file/header_codec.h"

#include <cstring>

#include "file/byte_order.h"

namespace Sparlane {
namespace {

// Every field of FileHeader, in file order.
#define SPARLANE_HEADER_FIELDS(X)                                                          \
  X(magic) X(version_major) X(version_minor) X(created_time) X(parameter_count)           \
  X(vendor_count) X(machine_count) X(material_count) X(reserved_32)                       \
  X(vendor_table_offset) X(machine_table_offset) X(material_table_offset) X(reserved_72)  \
  X(aux_offset_1) X(aux_offset_2) X(reserved_96) X(parameter_data_offset) X(compression)  \
  X(reserved_113) X(stats_compressed_size) X(stats_uncompressed_size) X(reserved_124)     \
  X(header_crc32) X(reserved_132) X(creator) X(reserved_176)

#define SPARLANE_FIELD_SIZE(field) +sizeof(FileHeader::field)
static_assert(0 SPARLANE_HEADER_FIELDS(SPARLANE_FIELD_SIZE) == kHeaderSize,
              "the field list covers every header byte");
#undef SPARLANE_FIELD_SIZE

void Put(std::uint8_t* at, std::uint8_t v) { *at = v; }
void Put(std::uint8_t* at, std::uint16_t v) { StoreLE16(at, v); }
void Put(std::uint8_t* at, std::uint32_t v) { StoreLE32(at, v); }
void Put(std::uint8_t* at, std::uint64_t v) { StoreLE64(at, v); }
void Put(std::uint8_t* at, std::int64_t v) { StoreLE64(at, static_cast<std::uint64_t>(v)); }
template <typename Byte, std::size_t N>
void Put(std::uint8_t* at, const Byte (&bytes)[N]) {
  static_assert(sizeof(Byte) == 1, "byte arrays only");
  std::memcpy(at, bytes, N);
}

void Get(const std::uint8_t* at, std::uint8_t& v) { v = *at; }
void Get(const std::uint8_t* at, std::uint16_t& v) { v = LoadLE16(at); }
void Get(const std::uint8_t* at, std::uint32_t& v) { v = LoadLE32(at); }
void Get(const std::uint8_t* at, std::uint64_t& v) { v = LoadLE64(at); }
void Get(const std::uint8_t* at, std::int64_t& v) { v = static_cast<std::int64_t>(LoadLE64(at)); }
template <typename Byte, std::size_t N>
void Get(const std::uint8_t* at, Byte (&bytes)[N]) {
  static_assert(sizeof(Byte) == 1, "byte arrays only");
  std::memcpy(bytes, at, N);
}

}  // namespace

void EncodeHeader(const FileHeader& h, std::uint8_t out[kHeaderSize]) {
#define SPARLANE_PUT(field) Put(out + SPARLANE_HEADER_OFFSET(field), h.field);
  SPARLANE_HEADER_FIELDS(SPARLANE_PUT)
#undef SPARLANE_PUT
}

FileHeader DecodeHeader(const std::uint8_t in[kHeaderSize]) {
  FileHeader h{};
#define SPARLANE_GET(field) Get(in + SPARLANE_HEADER_OFFSET(field), h.field);
  SPARLANE_HEADER_FIELDS(SPARLANE_GET)
#undef SPARLANE_GET
  return h;
}

#undef SPARLANE_HEADER_FIELDS

}  // namespace Sparlane
