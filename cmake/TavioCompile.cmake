# Compiler settings of every target.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(TAVIO_SANITIZE)
  add_compile_options(-fsanitize=${TAVIO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TAVIO_SANITIZE})
  # Builds and runs twice as fast as -O2 -g under a sanitizer, and backtraces still have lines.
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g1")
endif()

# tavio_compile(<target>): this project's warnings, and arithmetic in double that rounds after every
# single operation, so that a grey value is the same on machines with a fused multiply-add.
function(tavio_compile target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -ffp-contract=off)
  if(TAVIO_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

# tavio_compile_kernels(<target>): the target compiles kernels (machine/vectors-inl.h).
function(tavio_compile_kernels target)
  target_compile_definitions(${target} PRIVATE TAVIO_VECTORS=$<BOOL:${TAVIO_VECTORS}>)
  target_include_directories(${target} SYSTEM PRIVATE ${TAVIO_VECTOR_HEADERS})
  if(TAVIO_VECTORS AND CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$"
     AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The vector library declares its NEON functions for processors with AES. g++ lets implicit
    # constructors of structs of vectors call them only if all code is compiled for such a processor.
    # The compiler makes no AES instructions of its own, so the code runs on processors without AES as
    # well.
    target_compile_options(${target} PRIVATE -march=armv8-a+crypto)
  endif()
endfunction()

# Headers are included as "TavioIpadSDK/..." and "tavio/...", by the project's own files, from its
# build tree and as installed. In the build tree the two are links to the source folders.
set(TAVIO_INCLUDE_FOLDER "${PROJECT_BINARY_DIR}/include")
file(MAKE_DIRECTORY "${TAVIO_INCLUDE_FOLDER}/tavio")
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/TavioIpadSDK" "${TAVIO_INCLUDE_FOLDER}/TavioIpadSDK" SYMBOLIC)
foreach(room links preview printing virtual-printer)
  file(CREATE_LINK "${PROJECT_SOURCE_DIR}/${room}" "${TAVIO_INCLUDE_FOLDER}/tavio/${room}" SYMBOLIC)
endforeach()
file(CREATE_LINK "${PROJECT_SOURCE_DIR}/printing/printing.h" "${TAVIO_INCLUDE_FOLDER}/tavio/printing.h" SYMBOLIC)

# tavio_precompile(<library>): in this project's own build, its standard headers are compiled once for
# all libraries. Each file includes what it needs all the same: some presets build without.
if(PROJECT_IS_TOP_LEVEL)
  add_library(tavio_library_headers OBJECT "${PROJECT_SOURCE_DIR}/cmake/library_headers.cpp")
  target_precompile_headers(tavio_library_headers PRIVATE "${PROJECT_SOURCE_DIR}/cmake/library_headers.h")
  set_target_properties(tavio_library_headers PROPERTIES POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  tavio_compile(tavio_library_headers)
endif()
function(tavio_precompile library)
  if(TARGET tavio_library_headers)
    target_precompile_headers(${library} REUSE_FROM tavio_library_headers)
    set_target_properties(${library} PROPERTIES
      CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  endif()
endfunction()
