# Programs that do what may hang or take gigabytes: the library's part, and what all of them share.

target_sources(tavio_sdk PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/answer_stream.cpp
  ${CMAKE_CURRENT_LIST_DIR}/ask_program.cpp
  ${CMAKE_CURRENT_LIST_DIR}/deadline.cpp
  ${CMAKE_CURRENT_LIST_DIR}/descriptor_message.cpp
  ${CMAKE_CURRENT_LIST_DIR}/find_helper.cpp
  ${CMAKE_CURRENT_LIST_DIR}/kept_child.cpp
  ${CMAKE_CURRENT_LIST_DIR}/lone_program.cpp
  ${CMAKE_CURRENT_LIST_DIR}/opened_input.cpp
  ${CMAKE_CURRENT_LIST_DIR}/pipe.cpp
  ${CMAKE_CURRENT_LIST_DIR}/sealed_file.cpp
  ${CMAKE_CURRENT_LIST_DIR}/server.cpp
  ${CMAKE_CURRENT_LIST_DIR}/shared_keepers.cpp
  ${CMAKE_CURRENT_LIST_DIR}/spawn.cpp
  ${CMAKE_CURRENT_LIST_DIR}/start_keeper.cpp
)

# The programs' folder in the build tree.
set(built "")
if(TAVIO_BUILD_PROGRAMS)
  set(built "$<TARGET_FILE_DIR:tavio-pdf-page>")
endif()

# The library looks here for a program if it does not lie beside the running one.
file(RELATIVE_PATH TAVIO_HELPERS_FROM_PROGRAM
     "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/tavio")
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/find_helper.cpp PROPERTIES
  COMPILE_DEFINITIONS
  "TAVIO_HELPERS_FROM_PROGRAM=\"${TAVIO_HELPERS_FROM_PROGRAM}\";TAVIO_HELPERS_INSTALLED=\"${CMAKE_INSTALL_FULL_LIBEXECDIR}/tavio\";TAVIO_HELPERS_BUILT=\"${built}\"")

if(TAVIO_BUILD_PROGRAMS)
  add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/program)
endif()
