// Reading the values of options.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>

#include "tavio/printing/document_info.h"

namespace tavio::tool {

// A decimal number of 32 bits with an optional sign and nothing around it; none for any other text.
std::optional<std::int32_t> parseNumber(std::string_view text);

// A number of seconds with or without decimals, more than 0 and up to a day; none for any other
// text. Rounded up to a millisecond.
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

// "pdf", "png", "jpeg", "bmp" or "text"; none for any other text.
std::optional<printing::Format> parseFormat(std::string_view text);

}  // namespace tavio::tool
