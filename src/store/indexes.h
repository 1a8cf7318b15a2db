// Building the name indexes and the two record indexes of the store.
#ifndef SPARLANE_STORE_INDEXES_H_
#define SPARLANE_STORE_INDEXES_H_

#include <cstdint>
#include <string>

#include "store/database_impl.h"

namespace Sparlane {

// Id of name in index, or 0 when unknown (absent or mapped to 0).
inline std::uint16_t ResolveName(const NameIndex& index, const std::string& name) {
  auto it = index.find(name);
  return it == index.end() ? 0 : it->second;
}

// map[name] = position + 1 over each list; a repeated name keeps its last id.
void BuildNameIndexes(DatabaseImpl& impl);

// One bucket per material: thinnest record first, ties by position.
void RebuildMaterialIndex(DatabaseImpl& impl);

// One span per machine model: smallest position and record count.
void RebuildMachineIndex(DatabaseImpl& impl);

// The material index, then the machine index, in one pass over the table.
void RebuildMaterialAndMachineIndexes(DatabaseImpl& impl);

// Everything a rebuild event renews: the two record indexes, then the
// queries' position lists.
void RebuildRecordIndexes(DatabaseImpl& impl);

}  // namespace Sparlane

#endif  // SPARLANE_STORE_INDEXES_H_
