// One record on its way into a new database: names instead of ids, and where
// it came from for error messages.
#ifndef SLB_TOOL_IMPORT_ROW_H_
#define SLB_TOOL_IMPORT_ROW_H_

#include <cstddef>
#include <string>

#include "sparlane/sparlane.h"

namespace slb {

struct ImportRow {
  std::string source;  // file name
  std::size_t line = 0;
  std::string vendor;
  std::string machine;
  std::string material;
  Sparlane::CuttingParameter values{};  // ids are filled in by the builder
  std::string problem;  // set when the row is known to be unusable

  // "file:line" for messages.
  std::string Where() const { return source + ":" + std::to_string(line); }
};

}  // namespace slb

#endif  // SLB_TOOL_IMPORT_ROW_H_
