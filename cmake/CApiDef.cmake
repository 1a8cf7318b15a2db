# The module-definition file of the C interface, made from include/sparlane/c.h
# (every "SPARLANE_API <type> sparlane_...(" declaration), so it cannot fall
# behind the header.  MSVC users turn it into an import library with
#   lib /def:sparlane.def /machine:x64 /out:sparlane.lib
# On Windows builds, llvm-dlltool (Debian package llvm), when present, makes
# that MSVC-format sparlane.lib here; both are installed beside the DLL's
# import library.
set(SPARLANE_C_HEADER "${PROJECT_SOURCE_DIR}/include/sparlane/c.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${SPARLANE_C_HEADER}")
file(STRINGS "${SPARLANE_C_HEADER}" declarations REGEX "^SPARLANE_API .*sparlane_[a-z0-9_]+\\(")
set(def_text "LIBRARY sparlane.dll\nEXPORTS\n")
set(SPARLANE_C_FUNCTIONS "")
foreach(line IN LISTS declarations)
  string(REGEX MATCH "sparlane_[a-z0-9_]+\\(" name "${line}")
  string(REPLACE "(" "" name "${name}")
  list(APPEND SPARLANE_C_FUNCTIONS "${name}")
  string(APPEND def_text "  ${name}\n")
endforeach()
set(SPARLANE_DEF_FILE "${PROJECT_BINARY_DIR}/sparlane.def")
file(GENERATE OUTPUT "${SPARLANE_DEF_FILE}" CONTENT "${def_text}")
install(FILES "${SPARLANE_DEF_FILE}" DESTINATION ${CMAKE_INSTALL_LIBDIR})

if(WIN32)
  find_program(SPARLANE_DLLTOOL NAMES llvm-dlltool llvm-dlltool-14 NO_CMAKE_FIND_ROOT_PATH)
  if(SPARLANE_DLLTOOL)
    set(SPARLANE_MSVC_IMPORT_LIB "${PROJECT_BINARY_DIR}/sparlane.lib")
    add_custom_command(OUTPUT "${SPARLANE_MSVC_IMPORT_LIB}"
      COMMAND "${SPARLANE_DLLTOOL}" -m i386:x86-64 -D sparlane.dll -d "${SPARLANE_DEF_FILE}"
              -l "${SPARLANE_MSVC_IMPORT_LIB}"
      DEPENDS "${SPARLANE_DEF_FILE}"
      COMMENT "Making the MSVC import library sparlane.lib"
      VERBATIM)
    add_custom_target(sparlane-msvc-import-lib ALL DEPENDS "${SPARLANE_MSVC_IMPORT_LIB}")
    install(FILES "${SPARLANE_MSVC_IMPORT_LIB}" DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
endif()
