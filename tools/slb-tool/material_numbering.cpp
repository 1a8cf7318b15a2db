#include "material_numbering.h"

#include <unordered_set>

#include "number_format.h"

namespace slb {
namespace {

std::uint64_t Fnv1a(const std::string& bytes) {
  std::uint64_t hash = 14695981039346656037ull;
  for (unsigned char c : bytes) {
    hash ^= c;
    hash *= 1099511628211ull;
  }
  return hash;
}

}  // namespace

std::uint32_t PreferredMaterialNumber(const std::string& material, float thickness_mm) {
  std::string key = material;
  key += '\0';
  key += ExactFloat(thickness_mm);
  return static_cast<std::uint32_t>(Fnv1a(key) % kHighestMaterialNumber) + 1;
}

std::vector<std::uint32_t> AssignMaterialNumbers(const std::vector<NumberRequest>& requests) {
  std::unordered_set<std::uint32_t> taken;
  std::vector<std::uint32_t> numbers;
  numbers.reserve(requests.size());
  for (const auto& request : requests) {
    std::uint32_t number = PreferredMaterialNumber(request.material, request.thickness_mm);
    while (!taken.insert(number).second) {
      number = number == kHighestMaterialNumber ? 1 : number + 1;
    }
    numbers.push_back(number);
  }
  return numbers;
}

}  // namespace slb
