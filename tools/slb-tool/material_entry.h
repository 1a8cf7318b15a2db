// A cut-chart entry read from a CAM or controller material file, before it
// is placed as a parameter record.
#ifndef SLB_TOOL_MATERIAL_ENTRY_H_
#define SLB_TOOL_MATERIAL_ENTRY_H_

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "entry_naming.h"
#include "import_row.h"

namespace slb {

// Lengths and speeds are in the file's units; times in seconds.
struct MaterialEntry {
  std::string source;
  std::size_t line = 0;
  std::string name;
  std::optional<double> kerf_width;
  std::optional<double> pierce_height;
  std::optional<double> pierce_delay;
  std::optional<double> cut_height;
  std::optional<double> cut_speed;  // per minute
  std::optional<double> cut_amps;
  std::optional<double> cut_volts;
  std::optional<double> thickness;  // an explicit, non-zero thickness key
  std::vector<std::string> missing;  // mandatory keys that were absent or empty
  std::string problem;  // the first value that is given but cannot be read

  std::string Where() const { return source + ":" + std::to_string(line); }
};

// The file's own names of the values an entry cannot be placed without.
struct MandatoryKeys {
  const char* pierce_height;
  const char* pierce_delay;
  const char* cut_height;
  const char* cut_speed;
};

// Adds to entry.missing the key of each mandatory value the entry lacks, in
// the order above.
void NoteMissingValues(MaterialEntry& entry, const MandatoryKeys& keys);

struct PlacementOptions {
  std::string vendor;
  std::string machine;
  std::vector<MaterialRule> material_rules;  // tried before the defaults
  std::string material;  // when no rule matches
  std::string filter;    // only names containing this (case-insensitive)
  LengthUnit units = LengthUnit::Millimetre;
};

// The units a file's values look like: kerf below 0.2 with pierce height
// below 0.3 votes inch; kerf of 0.4 or more or pierce height of 1.5 or more
// votes millimetre.
struct UnitVotes {
  int mm = 0;
  int inch = 0;
  // The majority; nullopt when no entry votes or the vote is tied.
  std::optional<LengthUnit> Winner() const;
};
UnitVotes CountUnitVotes(const std::vector<MaterialEntry>& entries);

// True when the entry's name passes the --filter text.
bool PassesFilter(const MaterialEntry& entry, const PlacementOptions& options);

// Entries become rows; entries that cannot be placed are reported in
// warnings ("file:line: entry "NAME" not placed: reason") and skipped.
// Later entries with the same material and thickness as an earlier one are
// skipped too.  An entry with a value that cannot be used (unreadable, out
// of range, a current that no record can hold) becomes a row whose problem
// says so.
std::vector<ImportRow> PlaceEntries(const std::vector<MaterialEntry>& entries,
                                    const PlacementOptions& options,
                                    std::vector<std::string>& warnings);

}  // namespace slb

#endif  // SLB_TOOL_MATERIAL_ENTRY_H_
