// Large pages on Windows need a privilege a host rarely holds and memory
// allocated for them from the start; the arrays stay as they are.
#include "store/large_pages.h"

namespace Sparlane {

void AdviseLargePages(const void*, std::size_t) {}

// Pages fault in as they are written.
void PrefaultForWriting(void*, std::size_t) {}

}  // namespace Sparlane
