// Texts of others, shown on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace tavio::command_line {

// The text with control characters, those of U+0080 to U+009F included, made visible ("\x1B",
// "\xC2\x9B"), so that a file name or a document's text cannot steer the terminal that it is shown
// on.
std::string printable(std::string_view text);

}  // namespace tavio::command_line
