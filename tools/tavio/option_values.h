// Reading the values of options.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

#include "tavio/printing/document_info.h"
#include "tavio/printing/reply.h"
#include "tavio/printing/ticket.h"

namespace tavio::tool {

// A decimal number of 32 bits with an optional sign and nothing around it; none for any other text.
std::optional<std::int32_t> parseNumber(std::string_view text);

// A decimal number with an optional sign, with or without decimals; none for any other text.
std::optional<double> parseDecimal(std::string_view text);

// A number of seconds with or without decimals, more than 0 and up to a day; none for any other
// text. Rounded up to a millisecond.
std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text);

// A stock of any size: "3.5x2.25", inches as it lies in landscape, each more than 0 and up to
// printing::Stock::kMaxInches; none for any other text.
std::optional<printing::Stock> parseStockSize(std::string_view text);

// The width and the height in dots: "300x80", each 1 or more; none for any other text.
std::optional<printing::Size> parseSize(std::string_view text);

// "0.33mm": more than 0 and up to 1000; none for any other text.
std::optional<double> parseMillimetres(std::string_view text);

// "qr", "code128" and so on; none for any other text.
std::optional<printing::CodeKind> parseCodeKind(std::string_view text);

// Two whole numbers from `min` to `max` with the separator between them: "1648x598"; none for any other
// text.
std::optional<std::pair<std::int32_t, std::int32_t>> parseDotPair(std::string_view text,
                                                                  char separator, std::int32_t min,
                                                                  std::int32_t max);

// "ready:exact:OK": the state, how the text matches, and the text; none for any other text.
std::optional<printing::ReplyPattern> parseReplyPattern(std::string_view text);

const char* nameOf(printing::Match match);

// "pdf", "png", "jpeg", "bmp" or "text"; none for any other text.
std::optional<printing::Format> parseFormat(std::string_view text);

}  // namespace tavio::tool
