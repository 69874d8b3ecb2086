// The files of the web page, which are part of the program.
#pragma once

#include <span>
#include <string_view>

namespace tavio::virtual_printer {

struct PageFile {
    std::string_view path;  // "/app.js"; "/" for the page itself
    std::string_view type;  // "text/javascript; charset=utf-8"
    std::string_view content;
};

std::span<const PageFile> pageFiles();

}  // namespace tavio::virtual_printer
