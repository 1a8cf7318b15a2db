// The export macro and the library version.
#ifndef SPARLANE_EXPORT_H_
#define SPARLANE_EXPORT_H_

// SPARLANE_API marks what the shared library exports; everything else is
// hidden.  Define SPARLANE_STATIC when linking a static build.
#if defined(SPARLANE_STATIC)
#define SPARLANE_API
#elif defined(_WIN32)
#if defined(SPARLANE_BUILDING)
#define SPARLANE_API __declspec(dllexport)
#else
#define SPARLANE_API __declspec(dllimport)
#endif
#else
#define SPARLANE_API __attribute__((visibility("default")))
#endif

#define SPARLANE_VERSION_MAJOR 1
#define SPARLANE_VERSION_MINOR 0
#define SPARLANE_VERSION_PATCH 0

#endif  // SPARLANE_EXPORT_H_
