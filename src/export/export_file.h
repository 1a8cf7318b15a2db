// The frame of an export file, shared by the CSV and JSON exports, which
// open, name and fail in the same way.
#ifndef SPARLANE_EXPORT_EXPORT_FILE_H_
#define SPARLANE_EXPORT_EXPORT_FILE_H_

#include <fstream>
#include <string>

#include "export/export_names.h"
#include "export/text_sink.h"
#include "store/store.h"

namespace Sparlane {

// Checks the loaded flag, sanitises path and opens it as a truncating text
// stream.  On failure sets the message and returns its code; no file is
// created when the database is not loaded.
ErrorCode OpenExportFile(Store& store, const std::string& path, std::ofstream& out);

// Write errors are looked at once, after everything was written.  A failing
// close of a good stream is not reported.
ErrorCode FinishExportFile(Store& store, std::ofstream& out);

// The three name tables in an export's written form.
struct ExportNames {
  WrittenNames vendors;
  WrittenNames machines;
  WrittenNames materials;
};

// Opens path, prepares the names with escape, lets write(sink, names) put the
// document on a sink over the file, then finishes the file.
template <typename Escape, typename Write>
ErrorCode WriteExportFile(Store& store, const std::string& path, Escape escape, Write write) {
  std::ofstream out;
  const ErrorCode opened = OpenExportFile(store, path, out);
  if (opened != ErrorCode::Success) return opened;
  const ExportNames names{WrittenNames(store.names(NameKind::kVendor).names, escape),
                          WrittenNames(store.names(NameKind::kMachine).names, escape),
                          WrittenNames(store.names(NameKind::kMaterial).names, escape)};
  {
    TextSink sink(out);
    write(sink, names);
    sink.Flush();
  }
  return FinishExportFile(store, out);
}

}  // namespace Sparlane

#endif  // SPARLANE_EXPORT_EXPORT_FILE_H_
