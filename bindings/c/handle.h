// The object behind sparlane_db_t and the guards every C entry point goes
// through: no exception leaves this layer, and a NULL pointer never reaches
// the library.
#ifndef SPARLANE_BINDINGS_C_HANDLE_H_
#define SPARLANE_BINDINGS_C_HANDLE_H_

#include <cstddef>
#include <string>

#include "sparlane/c.h"
#include "sparlane/sparlane.h"

struct sparlane_db {
  Sparlane::Database db;
  // The library's last-error text as last read from db.
  std::string library_message;
  // This layer's own failure (static text), when it is the latest one.
  const char* own_message = nullptr;

  const char* message() const { return own_message ? own_message : library_message.c_str(); }

  // Passes a library result on.  A failure, or a message set on success (a
  // slow load's warning), becomes the message the host sees.  Should memory
  // run out while the message is copied, the result stands and a failure's
  // message says what happened.
  int Take(Sparlane::ErrorCode code) noexcept;

  // A failure of this layer; the text must have static storage.
  int Fail(int code, const char* text) noexcept {
    own_message = text;
    return code;
  }
};

namespace sparlane_c {

extern const char kOutOfMemory[];
extern const char kNullPath[];
extern const char kNullName[];
extern const char kNullRecord[];

// Runs a fallible Database operation.  The library throws only from the
// standard containers on exhausted memory, so any exception is OutOfMemory.
template <typename Call>
int Fallible(sparlane_db_t* db, Call&& call) noexcept {
  if (db == nullptr) return SPARLANE_INVALID_PARAMETER;
  try {
    return db->Take(call(db->db));
  } catch (...) {
    return db->Fail(SPARLANE_OUT_OF_MEMORY, kOutOfMemory);
  }
}

// A fallible operation on a path; a NULL path is refused before the library.
template <typename Call>
int WithPath(sparlane_db_t* db, const char* path, Call&& call) noexcept {
  if (db != nullptr && path == nullptr) return db->Fail(SPARLANE_INVALID_PARAMETER, kNullPath);
  return Fallible(db, [&](Sparlane::Database& d) { return call(d, std::string(path)); });
}

// Runs a query; any exception gives the empty result.
template <typename Result, typename Call>
Result Query(Result empty, Call&& call) noexcept {
  try {
    return call();
  } catch (...) {
    return empty;
  }
}

// The length of a NUL-terminated name for the _n functions; a NULL name
// gets a length no pointer can have, so IsName refuses it.
constexpr std::size_t kNoName = static_cast<std::size_t>(-1);
std::size_t LengthOf(const char* text) noexcept;
// The same for a name that may be left out: NULL is the empty name.
inline std::size_t OptionalLengthOf(const char* text) noexcept {
  return text == nullptr ? 0 : LengthOf(text);
}

// A name given as pointer and length: NULL with length 0 is the empty name,
// NULL with any other length (kNoName) no name at all.
inline bool IsName(const char* data, std::size_t length) noexcept {
  return data != nullptr || length == 0;
}
inline std::string Name(const char* data, std::size_t length) {
  return data != nullptr ? std::string(data, length) : std::string();
}

// A fallible operation on names: a missing one is refused before the
// library, with InvalidParameter.
template <typename Call>
int WithNames(sparlane_db_t* db, bool names_given, Call&& call) noexcept {
  if (db != nullptr && !names_given) return db->Fail(SPARLANE_INVALID_PARAMETER, kNullName);
  return Fallible(db, call);
}

}  // namespace sparlane_c

#endif  // SPARLANE_BINDINGS_C_HANDLE_H_
