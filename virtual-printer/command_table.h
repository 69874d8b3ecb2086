// The meaning of a command's text.
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

// The number, saturated to 32 bits, if the whole text is one decimal number with an optional minus
// sign; none for anything else.
std::optional<std::int32_t> parseNumber(std::string_view text);

// Takes a command's text, "<" and ">" included. "<n>" alone is kUnknown here.
ParsedCommand parseCommand(std::string_view text);

}  // namespace tavio::virtual_printer
