# Cross build for 64-bit Windows with Debian's mingw-w64 (package
# g++-mingw-w64-x86-64).  The posix-threads variant of the compiler is used so
# that std::thread and std::mutex exist.
#
#   cmake -S . -B build/mingw -DCMAKE_TOOLCHAIN_FILE=cmake/toolchain-mingw64.cmake \
#         -DSPARLANE_MINGW_PREFIX=<prefix made by scripts/mingw-deps.sh>
#
# Libraries for the target are searched only in the mingw sysroot and in
# SPARLANE_MINGW_PREFIX (GoogleTest and LZ4 compiled from Debian's sources),
# never in the build host's /usr, so no Linux header or library can leak in.
# Programs are linked with -static: sparlane.dll, slb-tool.exe and the tests
# then need no compiler runtime DLLs beside them.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(SPARLANE_MINGW_TRIPLE x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${SPARLANE_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${SPARLANE_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${SPARLANE_MINGW_TRIPLE}-windres)

# try_compile projects re-read this file; hand the prefix on to them.
if(NOT SPARLANE_MINGW_PREFIX AND DEFINED ENV{SPARLANE_MINGW_PREFIX})
  set(SPARLANE_MINGW_PREFIX "$ENV{SPARLANE_MINGW_PREFIX}")
endif()
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SPARLANE_MINGW_PREFIX)

set(CMAKE_FIND_ROOT_PATH /usr/${SPARLANE_MINGW_TRIPLE})
if(SPARLANE_MINGW_PREFIX)
  list(APPEND CMAKE_FIND_ROOT_PATH "${SPARLANE_MINGW_PREFIX}")
endif()
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# pkg-config would otherwise answer with the build host's .pc files.
set(ENV{PKG_CONFIG_PATH} "")
if(SPARLANE_MINGW_PREFIX)
  set(ENV{PKG_CONFIG_LIBDIR} "${SPARLANE_MINGW_PREFIX}/lib/pkgconfig")
else()
  set(ENV{PKG_CONFIG_LIBDIR} "/usr/${SPARLANE_MINGW_TRIPLE}/lib/pkgconfig")
endif()

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-static")

# Programs and sparlane.dll side by side, so that every program finds the DLL
# when it runs (Windows looks beside the program first).
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")

# ctest, and build steps that run a program just built, use wine when it is
# installed.  Set WINEPREFIX and WINEDEBUG=-all in the environment.
find_program(SPARLANE_WINE NAMES wine64 wine PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(SPARLANE_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${SPARLANE_WINE}")
endif()
