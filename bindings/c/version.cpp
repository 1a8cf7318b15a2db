// The library's version at run time, for hosts to check against the header.
#include "handle.h"

#define SPARLANE_STRINGIZE_(x) #x
#define SPARLANE_STRINGIZE(x) SPARLANE_STRINGIZE_(x)

extern "C" {

const char* sparlane_version(void) {
  return SPARLANE_STRINGIZE(SPARLANE_VERSION_MAJOR) "." SPARLANE_STRINGIZE(
      SPARLANE_VERSION_MINOR) "." SPARLANE_STRINGIZE(SPARLANE_VERSION_PATCH);
}

int sparlane_version_number(void) { return SPARLANE_VERSION_NUMBER; }

}  // extern "C"
