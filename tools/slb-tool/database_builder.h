// Turns checked import rows into a saved parameter file.
#ifndef SLB_TOOL_DATABASE_BUILDER_H_
#define SLB_TOOL_DATABASE_BUILDER_H_

#include <cstddef>
#include <string>

#include "import_table.h"
#include "problem_list.h"
#include "sparlane/sparlane.h"

namespace slb {

struct BuildResult {
  std::string error;  // "" on success
  std::size_t records = 0;
};

// Arranges the table (file ids, warnings about conflicting duplicate rows),
// fills a new database with it, emptying the table as it goes, sorts the
// records into lookup order (Database::SortParameters) and saves them over
// out_path through ReplaceFile.  out_path must be resolved (see
// ResolvePath).
BuildResult BuildDatabase(ImportTable& table, const std::string& out_path,
                          Sparlane::CompressionType compression, ProblemList& warnings);

// Saves db in place of out_path through ReplaceFile: "" or why it failed.
std::string SaveDatabase(Sparlane::Database& db, const std::string& out_path,
                         Sparlane::CompressionType compression);

}  // namespace slb

#endif  // SLB_TOOL_DATABASE_BUILDER_H_
