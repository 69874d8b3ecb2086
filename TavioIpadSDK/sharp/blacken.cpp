#include "TavioIpadSDK/sharp/blacken.h"

#include <algorithm>
#include <cstddef>

namespace tavio::sharp {
namespace {

// Makes the dots from `begin` to before `end` black.
void blackenRow(std::span<Byte> row, std::size_t begin, std::size_t end) {
    if (begin == end) return;
    const std::size_t first = begin / 8;
    const std::size_t last = (end - 1) / 8;
    const auto fromBegin = static_cast<Byte>(0xFFU >> begin % 8);
    const auto toEnd = static_cast<Byte>(0xFFU << (7 - (end - 1) % 8));
    if (first == last) {
        row[first] |= fromBegin & toEnd;
        return;
    }
    row[first] |= fromBegin;
    std::ranges::fill(row.subspan(first + 1, last - first - 1), Byte{0xFF});
    row[last] |= toEnd;
}

}  // namespace

Dots whiteDots(std::int32_t width, std::int32_t height) {
    Dots dots{width, height, {}};
    dots.bits.assign(dots.rowBytes() * static_cast<std::size_t>(height), 0);
    return dots;
}

void blacken(Dots& dots, const DotArea& area) {
    const auto left = static_cast<std::size_t>(area.left);
    for (std::int32_t row = area.top; row < area.top + area.height; ++row)
        blackenRow(dots.row(row), left, left + static_cast<std::size_t>(area.width));
}

}  // namespace tavio::sharp
