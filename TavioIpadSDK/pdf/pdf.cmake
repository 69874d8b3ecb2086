# Pages of PDF documents: the library's part, and the program that draws them.

target_sources(tavio_sdk PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/answer_reader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/draw_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/find_helper.cpp
  ${CMAKE_CURRENT_LIST_DIR}/helper_process.cpp
  ${CMAKE_CURRENT_LIST_DIR}/read_answer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/sealed_file.cpp
  ${CMAKE_CURRENT_LIST_DIR}/start_helper.cpp
)

# The program's folder in the build tree.
set(built "")
if(TAVIO_BUILD_PROGRAMS)
  set(built "$<TARGET_FILE_DIR:tavio-pdf-page>")
endif()

# The library looks here for the program if it does not lie beside the running one.
file(RELATIVE_PATH TAVIO_PDF_HELPER_FROM_PROGRAM
     "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBEXECDIR}/tavio")
set_source_files_properties(${CMAKE_CURRENT_LIST_DIR}/find_helper.cpp PROPERTIES
  COMPILE_DEFINITIONS
  "TAVIO_PDF_HELPER_FROM_PROGRAM=\"${TAVIO_PDF_HELPER_FROM_PROGRAM}\";TAVIO_PDF_HELPER_INSTALLED=\"${CMAKE_INSTALL_FULL_LIBEXECDIR}/tavio\";TAVIO_PDF_HELPER_BUILT=\"${built}\"")

if(TAVIO_BUILD_PROGRAMS)
  add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/helper)
  # Programs that print pages need it at run time.
  add_dependencies(tavio_sdk tavio-pdf-page)
endif()
