# Writes page_files.cpp: cmake -DPAGE_FOLDER=... -DOUTPUT=... -P embed_page.cmake

set(type_html "text/html; charset=utf-8")
set(type_css "text/css; charset=utf-8")
set(type_js "text/javascript; charset=utf-8")
set(type_svg "image/svg+xml")

set(arrays "")
set(entries "")
file(GLOB files "${PAGE_FOLDER}/*")
foreach(file IN LISTS files)
  get_filename_component(name "${file}" NAME)
  get_filename_component(extension "${file}" LAST_EXT)
  string(SUBSTRING "${extension}" 1 -1 extension)
  if(NOT DEFINED "type_${extension}")
    message(FATAL_ERROR "There is no type for ${file}")
  endif()
  string(MAKE_C_IDENTIFIER "${name}" array)
  file(READ "${file}" bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(APPEND arrays "constexpr unsigned char ${array}[] = {${bytes}};\n")
  set(path "/${name}")
  if(name STREQUAL "index.html")
    set(path "/")
  endif()
  string(APPEND entries
    "    {\"${path}\", \"${type_${extension}}\", textOf(${array})},\n")
endforeach()

file(WRITE "${OUTPUT}" "// Made from tools/tavio-printer/page.
#include \"tools/tavio-printer/web/page_files.h\"

#include <array>
#include <cstddef>

namespace tavio::virtual_printer {
namespace {

${arrays}
template <std::size_t Size>
std::string_view textOf(const unsigned char (&bytes)[Size]) {
    return {reinterpret_cast<const char*>(bytes), Size};
}

}  // namespace

std::span<const PageFile> pageFiles() {
    static const PageFile kFiles[] = {
${entries}    };
    return kFiles;
}

}  // namespace tavio::virtual_printer
")
