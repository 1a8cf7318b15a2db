// A deliberately literal reading of the documented load rules, used as the
// oracle for byte-flip, truncation and random-mutation tests.  Small inputs
// only: it allocates raw_size for every LZ4 block as written.
#ifndef SPARLANE_TESTS_FILE_REFERENCE_PARSER_H_
#define SPARLANE_TESTS_FILE_REFERENCE_PARSER_H_

#include <string>
#include <vector>

#include "file_bytes.h"

namespace filetest {

struct ReferenceResult {
  Sparlane::ErrorCode code = Sparlane::ErrorCode::Success;
  // Set when a block's raw_size was too large to model here (the literal
  // scratch array would need gigabytes); such inputs are left out.
  bool unmodelled = false;
  std::vector<std::string> vendors, machines, materials;
  std::vector<Sparlane::CuttingParameter> records;
};

ReferenceResult ReferenceLoad(const Bytes& file);

}  // namespace filetest

#endif  // SPARLANE_TESTS_FILE_REFERENCE_PARSER_H_
