include(CMakePackageConfigHelpers)

install(TARGETS sparlane EXPORT sparlaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/sparlane DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
        FILES_MATCHING PATTERN "*.h")

set(SPARLANE_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/sparlane)
install(EXPORT sparlaneTargets NAMESPACE sparlane:: DESTINATION ${SPARLANE_CMAKE_DIR})
configure_package_config_file(cmake/sparlaneConfig.cmake.in
  "${CMAKE_CURRENT_BINARY_DIR}/sparlaneConfig.cmake"
  INSTALL_DESTINATION ${SPARLANE_CMAKE_DIR})
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/sparlaneConfigVersion.cmake"
  VERSION ${PROJECT_VERSION} COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/sparlaneConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/sparlaneConfigVersion.cmake"
        DESTINATION ${SPARLANE_CMAKE_DIR})

# The .pc file finds its prefix relative to itself, so the installed tree
# works wherever it is installed to (cmake --install --prefix, DESTDIR, a copy).
set(SPARLANE_PC_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
if(IS_ABSOLUTE "${SPARLANE_PC_DIR}")
  set(SPARLANE_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
else()
  file(RELATIVE_PATH SPARLANE_PC_UP "/prefix/${SPARLANE_PC_DIR}" "/prefix")
  string(REGEX REPLACE "/$" "" SPARLANE_PC_UP "${SPARLANE_PC_UP}")
  set(SPARLANE_PC_PREFIX "\${pcfiledir}/${SPARLANE_PC_UP}")
endif()
configure_file(cmake/sparlane.pc.in "${CMAKE_CURRENT_BINARY_DIR}/sparlane.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/sparlane.pc" DESTINATION ${SPARLANE_PC_DIR})
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sparlane)
