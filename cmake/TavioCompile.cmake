# How every target of this project is compiled.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)

if(TAVIO_SANITIZE)
  add_compile_options(-fsanitize=${TAVIO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TAVIO_SANITIZE})
  # Twice as fast to build and to run as -O2 -g under a sanitizer, and lines stay readable.
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
