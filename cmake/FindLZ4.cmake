# Finds the LZ4 block library (Debian: liblz4-dev) and defines LZ4::LZ4.
find_package(PkgConfig QUIET)
if(PkgConfig_FOUND)
  pkg_check_modules(PC_LZ4 QUIET liblz4)
endif()
find_path(LZ4_INCLUDE_DIR lz4.h HINTS ${PC_LZ4_INCLUDE_DIRS})
find_library(LZ4_LIBRARY NAMES lz4 liblz4 HINTS ${PC_LZ4_LIBRARY_DIRS})
include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LZ4 REQUIRED_VARS LZ4_LIBRARY LZ4_INCLUDE_DIR)
if(LZ4_FOUND AND NOT TARGET LZ4::LZ4)
  add_library(LZ4::LZ4 UNKNOWN IMPORTED)
  set_target_properties(LZ4::LZ4 PROPERTIES
    IMPORTED_LOCATION "${LZ4_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${LZ4_INCLUDE_DIR}")
endif()
mark_as_advanced(LZ4_INCLUDE_DIR LZ4_LIBRARY)
