// Bytes of a stream as printable ASCII.
#pragma once

#include <string>
#include <string_view>

namespace tavio::virtual_printer {

// Printable ASCII unchanged, but \\ and \" for backslash and quotation mark; \r,
// , \t; \xNN for every other byte.
std::string escaped(std::string_view bytes);

// The same between quotation marks.
std::string quoted(std::string_view bytes);

}  // namespace tavio::virtual_printer
