// A name list and its name -> id map.  A name's id is its 1-based position
// in the list; a name listed twice maps to its last position.
#ifndef SPARLANE_STORE_NAME_TABLE_H_
#define SPARLANE_STORE_NAME_TABLE_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/name_id_map.h"

namespace Sparlane {

struct NameTable {
  std::vector<std::string> names;  // element i has id i + 1
  NameIdMap ids;

  // Id of name, or 0 when unknown (absent, or mapped to 0).
  std::uint16_t IdOf(std::string_view name) const {
    const std::uint16_t* id = ids.Find(name);
    return id == nullptr ? 0 : *id;
  }

  // The map holds name, whatever its id.
  bool Contains(std::string_view name) const { return ids.Find(name) != nullptr; }

  // Adds name at the end and maps it to its id, which is returned.
  std::uint16_t Append(const std::string& name);

  // Replaces the list and rebuilds the map from it: map[name] = position + 1
  // over the whole list, in order.
  void Assign(std::vector<std::string> list);

  void Clear();
};

}  // namespace Sparlane

#endif  // SPARLANE_STORE_NAME_TABLE_H_
