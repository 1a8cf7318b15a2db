// Pushing a saved file and its directory entry to stable storage; one
// implementation per platform.
#ifndef SPARLANE_FILE_DISK_FLUSH_H_
#define SPARLANE_FILE_DISK_FLUSH_H_

#include <string>

namespace Sparlane {

// Flushes the file's contents to disk.  False when that cannot be done.
bool FlushFileToDisk(const std::string& path);

// Flushes the directory holding path, so a rename into it survives a crash.
// Best effort: there is nothing left to undo once the rename is done.
void FlushParentDirectoryToDisk(const std::string& path);

}  // namespace Sparlane

#endif  // SPARLANE_FILE_DISK_FLUSH_H_
