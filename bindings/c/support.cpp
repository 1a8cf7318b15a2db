// The handle's messages, this layer's own failure texts and name lengths.
#include <cstring>

#include "handle.h"

int sparlane_db::Take(Sparlane::ErrorCode code) noexcept {
  const bool failed = code != Sparlane::ErrorCode::Success;
  try {
    std::string now = db.GetLastError();
    if (failed || now != library_message) {
      library_message.swap(now);
      own_message = nullptr;
    }
  } catch (...) {
    if (failed) own_message = sparlane_c::kOutOfMemory;
  }
  return static_cast<int>(code);
}

namespace sparlane_c {

const char kOutOfMemory[] = "Out of memory";
const char kNullPath[] = "Path is NULL";
const char kNullName[] = "Name is NULL";
const char kNullRecord[] = "Parameter record is NULL";

std::size_t LengthOf(const char* text) noexcept {
  return text == nullptr ? kNoName : std::strlen(text);
}

}  // namespace sparlane_c
