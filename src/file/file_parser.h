// Reading a whole parameter file from memory into the store.
#ifndef SPARLANE_FILE_FILE_PARSER_H_
#define SPARLANE_FILE_FILE_PARSER_H_

#include <cstdint>

#include "file/mapped_file.h"
#include "store/store.h"

namespace Sparlane {

// Checks the header against size, then reads the three name tables and the
// parameter data back to back from offset 1024 into parts.  Returns the
// first failure's code; the parts begun before it stay filled (a part is
// begun once its reading starts to replace the store's), the others empty.
// Every read is bounded by size; nothing beyond it is touched.
// On success parts also carries the indexes of the records, built while
// they were read.
ErrorCode ParseParameterFile(const std::uint8_t* data, std::uint64_t size, StoreParts& parts);

// The same over a mapped file, whose pages go back to the system as the
// reading passes them (the mapping itself stays open and valid).
ErrorCode ParseParameterFile(MappedFile& file, StoreParts& parts);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_FILE_PARSER_H_
