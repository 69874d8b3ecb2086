#include "tools/tavio/option_values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>
#include <limits>
#include <string>
#include <system_error>
#include <utility>

namespace tavio::tool {

namespace {

// More than 0, at most the limit; without a sign.
std::optional<double> parsePositive(std::string_view text, double limit) {
    if (text.starts_with('-') || text.starts_with('+')) return std::nullopt;
    const auto number = parseDecimal(text);
    return number && *number > 0 && *number <= limit ? number : std::nullopt;
}

// The value of this name.
template <typename Value>
std::optional<Value> valueOf(std::string_view name, std::initializer_list<Value> values) {
    const auto* const found = std::find_if(values.begin(), values.end(),
                                           [name](Value value) { return name == nameOf(value); });
    return found == values.end() ? std::nullopt : std::optional(*found);
}

}  // namespace

std::optional<std::int32_t> parseNumber(std::string_view text) {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) return std::nullopt;
    }
    std::int32_t number = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<double> parseDecimal(std::string_view text) {
    if (text.starts_with('+')) text.remove_prefix(1);
    if (text.find_first_not_of("0123456789.", text.starts_with('-') ? 1 : 0) !=
        std::string_view::npos)
        return std::nullopt;
    double number = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
    const auto seconds = parsePositive(text, 86'400);
    if (!seconds) return std::nullopt;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(*seconds));
}

std::optional<printing::Stock> parseStockSize(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = parsePositive(text.substr(0, cross), printing::Stock::kMaxInches);
    const auto height = parsePositive(text.substr(cross + 1), printing::Stock::kMaxInches);
    if (!width || !height) return std::nullopt;
    return printing::Stock::ofInches(*width, *height);
}

std::optional<std::pair<std::int32_t, std::int32_t>> parseDotPair(std::string_view text,
                                                                  char separator, std::int32_t min,
                                                                  std::int32_t max) {
    const std::size_t at = text.find(separator);
    if (at == std::string_view::npos) return std::nullopt;
    const auto first = parseNumber(text.substr(0, at));
    const auto second = parseNumber(text.substr(at + 1));
    const auto isInside = [=](const std::optional<std::int32_t>& number) {
        return number && *number >= min && *number <= max;
    };
    if (!isInside(first) || !isInside(second)) return std::nullopt;
    return std::pair{*first, *second};
}

std::optional<printing::Size> parseSize(std::string_view text) {
    const auto dots = parseDotPair(text, 'x', 1, std::numeric_limits<std::int32_t>::max());
    if (!dots) return std::nullopt;
    return printing::Size{dots->first, dots->second};
}

std::optional<double> parseMillimetres(std::string_view text) {
    constexpr std::string_view kUnit = "mm";
    if (!text.ends_with(kUnit)) return std::nullopt;
    text.remove_suffix(kUnit.size());
    return parsePositive(text, 1000);
}

std::optional<printing::CodeKind> parseCodeKind(std::string_view text) {
    using printing::CodeKind;
    return valueOf<CodeKind>(text,
                             {CodeKind::kQr, CodeKind::kCode128, CodeKind::kEan13, CodeKind::kItf,
                              CodeKind::kPdf417, CodeKind::kAztec, CodeKind::kDataMatrix});
}

std::optional<printing::ReplyPattern> parseReplyPattern(std::string_view text) {
    using printing::Match;
    using printing::PrinterState;
    const std::size_t first = text.find(':');
    if (first == std::string_view::npos) return std::nullopt;
    const std::size_t second = text.find(':', first + 1);
    if (second == std::string_view::npos) return std::nullopt;
    const auto state = valueOf<PrinterState>(
        text.substr(0, first),
        {PrinterState::kReady, PrinterState::kOutOfPaper, PrinterState::kCoverOpen,
         PrinterState::kError, PrinterState::kOther});
    const auto match = valueOf<Match>(text.substr(first + 1, second - first - 1),
                                      {Match::kExact, Match::kPrefix, Match::kContains});
    if (!state || !match) return std::nullopt;
    return printing::ReplyPattern{*state, *match, std::string(text.substr(second + 1))};
}

const char* nameOf(printing::Match match) {
    switch (match) {
        case printing::Match::kExact:
            return "exact";
        case printing::Match::kPrefix:
            return "prefix";
        case printing::Match::kContains:
            break;
    }
    return "contains";
}

std::optional<printing::Format> parseFormat(std::string_view text) {
    using printing::Format;
    constexpr std::array<std::pair<std::string_view, Format>, 5> kFormats{
        {{"pdf", Format::kPdf},
         {"png", Format::kPng},
         {"jpeg", Format::kJpeg},
         {"bmp", Format::kBmp},
         {"text", Format::kText}}};
    for (const auto& [name, format] : kFormats) {
        if (text == name) return format;
    }
    return std::nullopt;
}

}  // namespace tavio::tool
