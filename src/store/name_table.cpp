#include "store/name_table.h"

#include <utility>

namespace Sparlane {

std::uint16_t NameTable::Append(const std::string& name) {
  names.push_back(name);
  const auto id = static_cast<std::uint16_t>(names.size());
  ids.Set(name, id);
  return id;
}

void NameTable::Assign(std::vector<std::string> list) {
  names = std::move(list);
  ids.Clear();
  for (std::size_t i = 0; i < names.size(); ++i) {
    ids.Set(names[i], static_cast<std::uint16_t>(i + 1));
  }
}

void NameTable::Clear() {
  names.clear();
  ids.Clear();
}

}  // namespace Sparlane
