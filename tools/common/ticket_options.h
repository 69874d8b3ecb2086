// The options for the ticket in the printer: --stock, --resolution, --orientation.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavio::command_line {

// The index of the stock that the text names: its place in the list of stocks as a
// number ("0"), or its name in any case ("cinema").
std::optional<std::int32_t> parseStock(std::string_view text);

// The texts that parseStock() accepts, for messages: "0 to 8, concert, cinema, creditcard or
// receipt".
std::string stockChoices();

// Checks of option values for the command line library: each returns "" or the error. asStock()
// also replaces the value by the index.
std::string asStock(std::string& text);
std::string asResolution(std::string& text);
std::string asOrientation(std::string& text);

}  // namespace tavio::command_line
