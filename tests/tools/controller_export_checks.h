// Checks shared by the material-file and tool-table export tests.
#ifndef SPARLANE_TESTS_TOOLS_CONTROLLER_EXPORT_CHECKS_H_
#define SPARLANE_TESTS_TOOLS_CONTROLLER_EXPORT_CHECKS_H_

#include <string>
#include <vector>

namespace tooltest {

// The machine models of the sample database.
std::vector<std::string> SampleMachines();

// The sample's CSV rows (without the header) of one machine model, sorted;
// the sample is exported to dir for it.
std::string SampleRowsOf(const std::string& dir, const std::string& machine);

// The CSV rows of a parameter file, sorted, without the header.
std::string SortedRows(const std::string& slb);

// Exports the machine's records with format ("--plasmac" or "--sheetcam")
// in units, builds a parameter file from the export with the same units
// and expects the very rows of the sample back.  Works in a directory of
// its own under scratch.
void ExpectRoundTrip(const std::string& scratch, const std::string& format,
                     const std::string& machine, const std::string& units);

}  // namespace tooltest

#endif  // SPARLANE_TESTS_TOOLS_CONTROLLER_EXPORT_CHECKS_H_
