// Reading a whole parameter file from memory into the store.
#ifndef SPARLANE_FILE_FILE_PARSER_H_
#define SPARLANE_FILE_FILE_PARSER_H_

#include <cstdint>

#include "store/database_impl.h"

namespace Sparlane {

// Checks the header against size, then reads the three name tables and the
// parameter data back to back from offset 1024 and fills the name maps.
// Returns the first failure's code; whatever was read before it stays in the
// store.  Every read is bounded by size; nothing beyond it is touched.
ErrorCode ParseParameterFile(const std::uint8_t* data, std::uint64_t size, DatabaseImpl& store);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_FILE_PARSER_H_
