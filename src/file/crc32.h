// CRC-32 as in zip and PNG (reflected 0xEDB88320, init and final XOR all ones).
#ifndef SPARLANE_FILE_CRC32_H_
#define SPARLANE_FILE_CRC32_H_

#include <cstddef>
#include <cstdint>

namespace Sparlane {

// Continues a running CRC: pass 0 to start, the previous result to go on, so
// that split input gives the same value as one run over the concatenation.
std::uint32_t Crc32Update(std::uint32_t crc, const std::uint8_t* data, std::size_t length);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_CRC32_H_
