// Opening and finishing an export file; shared by the CSV and JSON exports,
// which fail in the same words.
#ifndef SPARLANE_EXPORT_EXPORT_FILE_H_
#define SPARLANE_EXPORT_EXPORT_FILE_H_

#include <fstream>
#include <string>

#include "store/store.h"

namespace Sparlane {

// Checks the loaded flag, sanitises path and opens it as a truncating text
// stream.  On failure sets the message and returns its code; no file is
// created when the database is not loaded.
ErrorCode OpenExportFile(Store& store, const std::string& path, std::ofstream& out);

// Write errors are looked at once, after everything was written.  A failing
// close of a good stream is not reported.
ErrorCode FinishExportFile(Store& store, std::ofstream& out);

}  // namespace Sparlane

#endif  // SPARLANE_EXPORT_EXPORT_FILE_H_
