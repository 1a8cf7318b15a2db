// Writing the store as a parameter file through a temporary sibling.
#ifndef SPARLANE_FILE_FILE_WRITER_H_
#define SPARLANE_FILE_FILE_WRITER_H_

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "store/store.h"

namespace Sparlane {

// Writes path + ".tmp" (header, name tables, data, then the final header),
// flushes it to disk and renames it over path.  IoError for any stream,
// reopen or rename failure; InvalidParameter, BufferTooSmall or
// CompressionFailed from the LZ4 blocks.  Never leaves the ".tmp" behind.
ErrorCode WriteParameterFile(const std::string& path, const Store& store,
                             CompressionType compression);

// The parameter data alone: raw in one write, LZ4 blocks, or nothing for
// Reserved.  IoError when the stream goes bad.
ErrorCode WriteParameterData(std::ostream& out, const std::vector<CuttingParameter>& records,
                             CompressionType compression);

// The bytes of one name table in the vendor/material or the machine form.
std::vector<std::uint8_t> EncodeNameTable(const std::vector<std::string>& names, bool machine_form);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_FILE_WRITER_H_
