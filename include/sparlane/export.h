// SPARLANE_API marks what the library exports.  Shared by the C++ and the C
// header, so it is plain preprocessor text both languages accept.
//  - SPARLANE_STATIC: linking the static library; nothing to mark.
//  - Windows: dllexport while building the DLL (SPARLANE_BUILDING), else
//    dllimport.
//  - Elsewhere: default visibility; the library hides everything else.
#ifndef SPARLANE_EXPORT_H_
#define SPARLANE_EXPORT_H_

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

#endif  // SPARLANE_EXPORT_H_
