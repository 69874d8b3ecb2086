// Making untrusted texts safe for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace tavio::command_line {

// The text with its control characters, U+0080 to U+009F included, made visible ("\x1B",
// "\xC2\x9B"), so that a file name or a document's text cannot control the terminal.
std::string printable(std::string_view text);

}  // namespace tavio::command_line
