include(CMakePackageConfigHelpers)

install(TARGETS sparlane EXPORT sparlaneTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES include/sparlane/sparlane.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/sparlane)

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

configure_file(cmake/sparlane.pc.in "${CMAKE_CURRENT_BINARY_DIR}/sparlane.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/sparlane.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/sparlane)
