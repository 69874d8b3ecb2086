# cmake --install: the libraries with their public headers, the programs with their man pages, and a
# package for find_package.
#
#   find_package(Tavio REQUIRED)
#   target_link_libraries(my_program PRIVATE Tavio::sdk Tavio::links)

include(CMakePackageConfigHelpers)

get_property(offered GLOBAL PROPERTY TAVIO_OFFERED)
install(TARGETS ${offered} EXPORT TavioTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

if(TAVIO_BUILD_PROGRAMS)
  install(TARGETS tavio tavio-printer RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/docs/man/"
          DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" FILES_MATCHING PATTERN "*.1")
endif()
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")

set(package "${CMAKE_INSTALL_LIBDIR}/cmake/Tavio")
install(EXPORT TavioTargets NAMESPACE Tavio:: DESTINATION "${package}")
configure_package_config_file(
  "${PROJECT_SOURCE_DIR}/cmake/TavioConfig.cmake.in" "${PROJECT_BINARY_DIR}/TavioConfig.cmake"
  INSTALL_DESTINATION "${package}" NO_SET_AND_CHECK_MACRO)
# Before 1.0 any minor version may change the interface.
write_basic_package_version_file("${PROJECT_BINARY_DIR}/TavioConfigVersion.cmake"
  COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/TavioConfig.cmake"
              "${PROJECT_BINARY_DIR}/TavioConfigVersion.cmake"
              "${PROJECT_SOURCE_DIR}/cmake/FindZint.cmake"
        DESTINATION "${package}")
