# Pictures in memory, and decoding picture files.

target_sources(tavio_sdk PRIVATE
  ${CMAKE_CURRENT_LIST_DIR}/decode_bmp.cpp
  ${CMAKE_CURRENT_LIST_DIR}/decode_bmp_header.cpp
  ${CMAKE_CURRENT_LIST_DIR}/decode_bmp_rle.cpp
  ${CMAKE_CURRENT_LIST_DIR}/decode_jpeg.cpp
  ${CMAKE_CURRENT_LIST_DIR}/decode_picture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/decode_png.cpp
  ${CMAKE_CURRENT_LIST_DIR}/exif_orientation.cpp
  ${CMAKE_CURRENT_LIST_DIR}/open_picture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/picture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/picture_rows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/rows_ahead.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stored_picture.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stretch_average_rows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stretch_blend_rows.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stretch_grow_columns.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stretch_shrink_columns.cpp
  ${CMAKE_CURRENT_LIST_DIR}/stretched_rows.cpp
)
