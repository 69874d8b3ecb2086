// What the text between "<" and ">" means.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "tavio/virtual-printer/command.h"

namespace tavio::virtual_printer {

struct ParsedCommand {
    CommandKind kind = CommandKind::kUnknown;
    std::array<std::int32_t, 2> arguments{};
};

// The whole text is one decimal number with an optional minus sign, and saturates to 32 bits; none
// for anything else.
std::optional<std::int32_t> parseNumber(std::string_view text);

// Of a command's text, "<" and ">" included. "<n>" alone means nothing here: it is kUnknown.
ParsedCommand parseCommand(std::string_view text);

}  // namespace tavio::virtual_printer
