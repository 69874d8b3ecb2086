#include "tools/tavio/option_values.h"

#include <array>
#include <charconv>
#include <system_error>
#include <utility>

namespace tavio::tool {

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

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
    constexpr double kMost = 86'400;
    if (text.find_first_not_of("0123456789.") != std::string_view::npos) return std::nullopt;
    double seconds = 0;
    auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    if (error != std::errc() || stop != text.data() + text.size()) return std::nullopt;
    if (!(seconds > 0 && seconds <= kMost)) return std::nullopt;
    return std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
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
