// Turns import rows into a saved parameter file.
#ifndef SLB_TOOL_DATABASE_BUILDER_H_
#define SLB_TOOL_DATABASE_BUILDER_H_

#include <string>
#include <vector>

#include "import_row.h"
#include "sparlane/sparlane.h"

namespace slb {

// Names get ids in byte order of the names (vendors as their first model
// registers them), so a file's ids follow from its rows alone and an
// exported file rebuilds to the same bytes.  Every row is checked with the
// library's record check; records are sorted by (material id, machine id,
// thickness), stable for equal keys, and saved.  On any bad row the errors
// ("file:line: reason") are returned and nothing is written, unless
// skip_bad_rows is set: then bad rows are reported in skipped and left out.
struct BuildResult {
  bool ok = false;
  std::vector<std::string> errors;
  std::vector<std::string> skipped;
  std::size_t records = 0;
};

BuildResult BuildDatabase(const std::vector<ImportRow>& rows, const std::string& out_path,
                          Sparlane::CompressionType compression, bool skip_bad_rows);

}  // namespace slb

#endif  // SLB_TOOL_DATABASE_BUILDER_H_
