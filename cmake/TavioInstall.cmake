# cmake --install: the libraries with their public headers, the programs with their man pages, and a
# package for find_package.
#
#   find_package(Tavio REQUIRED)
#   target_link_libraries(my_program PRIVATE Tavio::sdk Tavio::links)

include(CMakePackageConfigHelpers)

# The public headers: those that TavioIpadSDK.h includes, directly or not, the links, and the part
# of the virtual printer that the preview's link needs. All other headers are inner ones.
set(public_headers
  TavioIpadSDK/TavioIpadSDK.h
  TavioIpadSDK/intake/job.h
  TavioIpadSDK/intake/logos.h
  TavioIpadSDK/intake/send_file.h
  TavioIpadSDK/machine/bytes.h
  TavioIpadSDK/machine/descriptor.h
  TavioIpadSDK/pictures/picture.h
  TavioIpadSDK/pictures/upright.h
  TavioIpadSDK/platform/bytes.h
  TavioIpadSDK/platform/notice.h
  TavioIpadSDK/platform/object.h
  TavioIpadSDK/platform/pdf_page.h
  TavioIpadSDK/platform/photo_library.h
  TavioIpadSDK/platform/picture.h
  TavioIpadSDK/platform/text.h
  TavioIpadSDK/platform/url.h
  TavioIpadSDK/session/session.h
  TavioIpadSDK/session/transport.h
  TavioIpadSDK/settings/dot_width_table.h
  TavioIpadSDK/settings/job.h
  TavioIpadSDK/settings/settings.h
  TavioIpadSDK/settings/stock_table.h
  tavio/links/deadlines.h
  tavio/links/file_link.h
  tavio/links/link.h
  tavio/links/link_report.h
  tavio/links/local_link.h
  tavio/links/output_file.h
  tavio/links/recording_link.h
  tavio/links/rfcomm_address.h
  tavio/links/rfcomm_link.h
  tavio/links/serial_address.h
  tavio/links/serial_link.h
  tavio/links/stream_link.h
  tavio/links/system_calls.h
  tavio/links/tcp_address.h
  tavio/links/tcp_link.h
  tavio/links/transport_operations.h
  tavio/preview/preview_link.h
  tavio/virtual-printer/printer.h
  tavio/virtual-printer/problems.h
  tavio/virtual-printer/ticket.h
)
foreach(header IN LISTS public_headers)
  get_filename_component(folder "${header}" DIRECTORY)
  install(FILES "${TAVIO_INCLUDE_FOLDER}/${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${folder}")
endforeach()

install(TARGETS tavio_sdk tavio_links tavio_virtual_printer tavio_preview EXPORT TavioTargets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  INCLUDES DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")

if(TAVIO_BUILD_PROGRAMS)
  # The tool finds a shared library by a path relative to itself, so the installed tree can be
  # moved. Not in the build tree: there the path is padded with empty entries, for which the loader
  # would search the current folder.
  if(BUILD_SHARED_LIBS)
    file(RELATIVE_PATH libraries
         "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set_target_properties(tavio PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
  endif()
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
        DESTINATION "${package}")
