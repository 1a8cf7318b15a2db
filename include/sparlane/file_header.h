// The fixed header at the start of every parameter file.  The offsets below
// are the file format: the library reads and writes each field at exactly
// the offset asserted here, little-endian.
#ifndef SPARLANE_FILE_HEADER_H_
#define SPARLANE_FILE_HEADER_H_

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace Sparlane {

// "SPLN" read as a little-endian u32: the first four bytes of every file.
constexpr std::uint32_t kFileMagic = 0x4E4C5053u;
// The only major version the library writes and reads; minor versions are
// written 0 and not checked.
constexpr std::uint16_t kFileVersionMajor = 1;

// How the parameter data of a file is stored.
enum class CompressionType : int {
  None = 0,      // records raw
  LZ4 = 1,       // LZ4 blocks of at most 64 records
  Reserved = 2,  // accepted by header checks; no parameter data is written or read
};

// The fixed 1024-byte header.  All reserved bytes are zero when written and
// never interpreted.
struct FileHeader {
  std::uint32_t magic;          // kFileMagic
  std::uint16_t version_major;  // kFileVersionMajor
  std::uint16_t version_minor;  // 0
  std::int64_t created_time;    // seconds since 1970-01-01 UTC
  std::uint32_t parameter_count;
  std::uint32_t vendor_count;
  std::uint32_t machine_count;
  std::uint32_t material_count;
  std::uint8_t reserved_32[16];
  std::uint64_t vendor_table_offset;
  std::uint64_t machine_table_offset;
  std::uint64_t material_table_offset;
  std::uint8_t reserved_72[8];
  std::uint64_t aux_offset_1;
  std::uint64_t aux_offset_2;
  std::uint8_t reserved_96[8];
  std::uint64_t parameter_data_offset;
  std::uint8_t compression;  // CompressionType
  std::uint8_t reserved_113[3];
  std::uint32_t stats_compressed_size;    // written 0; see GetStatistics
  std::uint32_t stats_uncompressed_size;  // written 0; see GetStatistics
  std::uint8_t reserved_124[4];
  std::uint32_t header_crc32;
  std::uint8_t reserved_132[12];  // outside the header checksum
  char creator[32];               // NUL-padded name of the writing tool
  std::uint8_t reserved_176[848];
};

static_assert(sizeof(FileHeader) == 1024, "FileHeader is 1024 bytes");
static_assert(std::is_trivially_copyable<FileHeader>::value, "plain record");
static_assert(std::is_standard_layout<FileHeader>::value, "plain record");
static_assert(offsetof(FileHeader, magic) == 0, "layout");
static_assert(offsetof(FileHeader, version_major) == 4, "layout");
static_assert(offsetof(FileHeader, version_minor) == 6, "layout");
static_assert(offsetof(FileHeader, created_time) == 8, "layout");
static_assert(offsetof(FileHeader, parameter_count) == 16, "layout");
static_assert(offsetof(FileHeader, vendor_count) == 20, "layout");
static_assert(offsetof(FileHeader, machine_count) == 24, "layout");
static_assert(offsetof(FileHeader, material_count) == 28, "layout");
static_assert(offsetof(FileHeader, reserved_32) == 32, "layout");
static_assert(offsetof(FileHeader, vendor_table_offset) == 48, "layout");
static_assert(offsetof(FileHeader, machine_table_offset) == 56, "layout");
static_assert(offsetof(FileHeader, material_table_offset) == 64, "layout");
static_assert(offsetof(FileHeader, reserved_72) == 72, "layout");
static_assert(offsetof(FileHeader, aux_offset_1) == 80, "layout");
static_assert(offsetof(FileHeader, aux_offset_2) == 88, "layout");
static_assert(offsetof(FileHeader, reserved_96) == 96, "layout");
static_assert(offsetof(FileHeader, parameter_data_offset) == 104, "layout");
static_assert(offsetof(FileHeader, compression) == 112, "layout");
static_assert(offsetof(FileHeader, reserved_113) == 113, "layout");
static_assert(offsetof(FileHeader, stats_compressed_size) == 116, "layout");
static_assert(offsetof(FileHeader, stats_uncompressed_size) == 120, "layout");
static_assert(offsetof(FileHeader, reserved_124) == 124, "layout");
static_assert(offsetof(FileHeader, header_crc32) == 128, "layout");
static_assert(offsetof(FileHeader, reserved_132) == 132, "layout");
static_assert(offsetof(FileHeader, creator) == 144, "layout");
static_assert(offsetof(FileHeader, reserved_176) == 176, "layout");

}  // namespace Sparlane

#endif  // SPARLANE_FILE_HEADER_H_
