// FileHeader <-> its 1024 little-endian file bytes, field by field.
#ifndef SPARLANE_FILE_HEADER_CODEC_H_
#define SPARLANE_FILE_HEADER_CODEC_H_

#include <cstdint>

#include "sparlane/sparlane.h"

namespace Sparlane {

constexpr std::uint64_t kHeaderSize = 1024;
constexpr std::uint32_t kMagic = 0x4E4C5053u;  // "SPLN" read as a little-endian u32

// Byte offsets of the header fields in the file.
namespace HeaderOffset {
constexpr int kMagic = 0;
constexpr int kVersionMajor = 4;
constexpr int kVersionMinor = 6;
constexpr int kCreatedTime = 8;
constexpr int kParameterCount = 16;
constexpr int kVendorCount = 20;
constexpr int kMachineCount = 24;
constexpr int kMaterialCount = 28;
constexpr int kVendorTable = 48;
constexpr int kMachineTable = 56;
constexpr int kMaterialTable = 64;
constexpr int kAux1 = 80;
constexpr int kAux2 = 88;
constexpr int kParameterData = 104;
constexpr int kCompression = 112;
constexpr int kStatsCompressed = 116;
constexpr int kStatsUncompressed = 120;
constexpr int kCrc = 128;
constexpr int kCreator = 144;
}  // namespace HeaderOffset

void EncodeHeader(const FileHeader& header, std::uint8_t out[kHeaderSize]);
FileHeader DecodeHeader(const std::uint8_t bytes[kHeaderSize]);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_HEADER_CODEC_H_
