#include "lists.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "mirror.h"

namespace sparlane_c {

std::size_t PutRecords(const std::vector<Sparlane::CuttingParameter>& records,
                       sparlane_parameter_list_t* out) noexcept {
  out->items = nullptr;
  out->count = 0;
  if (records.empty()) return 0;
  if (records.size() > std::numeric_limits<std::size_t>::max() / sizeof(sparlane_parameter_t)) {
    return 0;
  }
  auto* items = static_cast<sparlane_parameter_t*>(
      std::malloc(records.size() * sizeof(sparlane_parameter_t)));
  if (items == nullptr) return 0;
  for (std::size_t i = 0; i < records.size(); ++i) items[i] = ToC(records[i]);
  out->items = items;
  out->count = records.size();
  return out->count;
}

std::size_t PutNames(const std::vector<std::string>& names, sparlane_name_list_t* out) noexcept {
  out->items = nullptr;
  out->count = 0;
  if (names.empty()) return 0;
  const std::uint64_t limit = std::numeric_limits<std::size_t>::max();
  std::uint64_t bytes = static_cast<std::uint64_t>(names.size()) * sizeof(sparlane_name_t);
  for (const std::string& name : names) {
    bytes += static_cast<std::uint64_t>(name.size()) + 1;
    if (bytes > limit) return 0;
  }
  void* block = std::malloc(static_cast<std::size_t>(bytes));
  if (block == nullptr) return 0;
  auto* items = static_cast<sparlane_name_t*>(block);
  char* text = static_cast<char*>(block) + names.size() * sizeof(sparlane_name_t);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::memcpy(text, names[i].data(), names[i].size());
    text[names[i].size()] = '\0';
    items[i].data = text;
    items[i].length = names[i].size();
    text += names[i].size() + 1;
  }
  out->items = items;
  out->count = names.size();
  return out->count;
}

}  // namespace sparlane_c

extern "C" {

void sparlane_free(void* memory) { std::free(memory); }

void sparlane_parameter_list_free(sparlane_parameter_list_t* list) {
  if (list == nullptr) return;
  std::free(list->items);
  list->items = nullptr;
  list->count = 0;
}

void sparlane_name_list_free(sparlane_name_list_t* list) {
  if (list == nullptr) return;
  std::free(list->items);
  list->items = nullptr;
  list->count = 0;
}

}  // extern "C"
