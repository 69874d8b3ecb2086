# Words: the library's part, and the program that draws them.

target_sources(tavio_sdk PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/draw_words.cpp
)

if(TAVIO_BUILD_PROGRAMS)
  add_subdirectory(${CMAKE_CURRENT_LIST_DIR}/helper)
endif()
