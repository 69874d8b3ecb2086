#include "tools/tavio-scan/bitmap.h"

#include <charconv>
#include <string_view>
#include <system_error>

namespace tavio::scan {

namespace {

// Takes "600" and the one character after it.
std::optional<std::int32_t> takeSide(std::string_view& text) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto length = static_cast<std::size_t>(end - text.data());
    if (error != std::errc() || length == text.size() || number < 1 || number > kMaxSide)
        return std::nullopt;
    text.remove_prefix(length + 1);
    return number;
}

}  // namespace

std::optional<Bitmap> readBitmap(std::span<const Byte> file) {
    std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    constexpr std::string_view kBegin = "P4\n";
    if (!text.starts_with(kBegin)) return std::nullopt;
    text.remove_prefix(kBegin.size());
    const auto width = takeSide(text);
    const auto height = width ? takeSide(text) : std::nullopt;
    if (!width || !height) return std::nullopt;

    const std::size_t rowBytes = (static_cast<std::size_t>(*width) + 7) / 8;
    if (text.size() != rowBytes * static_cast<std::size_t>(*height)) return std::nullopt;
    Bitmap bitmap{*width, *height, {}};
    bitmap.dots.reserve(static_cast<std::size_t>(*width) * static_cast<std::size_t>(*height));
    for (; !text.empty(); text.remove_prefix(rowBytes)) {
        for (std::size_t column = 0; column < static_cast<std::size_t>(*width); ++column) {
            const bool isBlack = (static_cast<Byte>(text[column / 8]) >> (7 - column % 8) & 1) != 0;
            bitmap.dots.push_back(isBlack ? 0 : 255);
        }
    }
    return bitmap;
}

}  // namespace tavio::scan
