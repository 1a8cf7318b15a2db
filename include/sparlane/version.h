// The version of the headers.  sparlane_version_number() gives the library's
// at run time, so a host can tell whether the two match.
#ifndef SPARLANE_VERSION_H_
#define SPARLANE_VERSION_H_

#define SPARLANE_VERSION_MAJOR 1
#define SPARLANE_VERSION_MINOR 0
#define SPARLANE_VERSION_PATCH 0
// major * 10000 + minor * 100 + patch
#define SPARLANE_VERSION_NUMBER \
  (SPARLANE_VERSION_MAJOR * 10000 + SPARLANE_VERSION_MINOR * 100 + SPARLANE_VERSION_PATCH)

#endif  // SPARLANE_VERSION_H_
