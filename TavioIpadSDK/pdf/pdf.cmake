# Pages of PDF documents: the library's part, and the program that draws them.

target_sources(tavio_sdk PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/answer_reader.cpp
  ${CMAKE_CURRENT_LIST_DIR}/draw_page.cpp
  ${CMAKE_CURRENT_LIST_DIR}/open_document.cpp
  ${CMAKE_CURRENT_LIST_DIR}/page_question.cpp
  ${CMAKE_CURRENT_LIST_DIR}/read_answer.cpp
  ${CMAKE_CURRENT_LIST_DIR}/start_helper.cpp
)

if(TAVIO_BUILD_PROGRAMS)
  add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/helper)
endif()
