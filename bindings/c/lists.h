// Library-allocated lists handed to the host.  Allocated with malloc and
// released by the matching free function inside the library, so a host with
// another C runtime (a different compiler on Windows) never frees them.
#ifndef SPARLANE_BINDINGS_C_LISTS_H_
#define SPARLANE_BINDINGS_C_LISTS_H_

#include <cstddef>
#include <string>
#include <vector>

#include "sparlane/c.h"
#include "sparlane/sparlane.h"

namespace sparlane_c {

// Copies records into *out.  Returns the count; 0 with an empty list when
// there are none or memory runs out.
std::size_t PutRecords(const std::vector<Sparlane::CuttingParameter>& records,
                       sparlane_parameter_list_t* out) noexcept;

// Copies names into *out as one allocation: the items, then each name's
// bytes and a NUL.  Same return rule as PutRecords.
std::size_t PutNames(const std::vector<std::string>& names, sparlane_name_list_t* out) noexcept;

}  // namespace sparlane_c

#endif  // SPARLANE_BINDINGS_C_LISTS_H_
