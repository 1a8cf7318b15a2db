// The file a database was loaded from.  The store owns it while the
// database is loaded but knows nothing of how it was opened: the file
// subsystem maps it (MappedFile).
#ifndef SPARLANE_STORE_LOADED_FILE_H_
#define SPARLANE_STORE_LOADED_FILE_H_

#include <cstdint>

namespace Sparlane {

class LoadedFile {
 public:
  virtual ~LoadedFile() = default;

  // Releases the bytes; view() is null and size() 0 afterwards.  Harmless
  // when already closed.
  virtual void Close() = 0;

  virtual const std::uint8_t* view() const = 0;
  virtual std::uint64_t size() const = 0;
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_LOADED_FILE_H_
