#include "TavioIpadSDK/sharp/turned_dots.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "TavioIpadSDK/sharp/blacken.h"

namespace tavio::sharp {

namespace {

// Calls draw(column, row) for each black dot.
template <typename Draw>
void forEachBlack(const Dots& dots, Draw draw) {
    for (std::int32_t row = 0; row < dots.height; ++row) {
        const std::span<const Byte> bytes = dots.row(row);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            for (unsigned bit = 0; bytes[i] != 0 && bit < 8; ++bit) {
                if ((bytes[i] << bit & 0x80) != 0)
                    draw(static_cast<std::int32_t>(8 * i + bit), row);
            }
        }
    }
}

void blackenDot(Dots& dots, std::int32_t column, std::int32_t row) {
    const auto at = static_cast<std::size_t>(column);
    Byte& byte = dots.row(row)[at / 8];
    byte = static_cast<Byte>(byte | 0x80U >> at % 8);
}

}  // namespace

Dots turnedDots(Dots dots, int quarterTurns) {
    if (quarterTurns == 0) return dots;
    const bool swapsSides = quarterTurns % 2 != 0;
    Dots turned =
        swapsSides ? whiteDots(dots.height, dots.width) : whiteDots(dots.width, dots.height);
    const std::int32_t right = dots.width - 1;
    const std::int32_t bottom = dots.height - 1;
    forEachBlack(dots, [&](std::int32_t column, std::int32_t row) {
        if (quarterTurns == 1) blackenDot(turned, bottom - row, column);
        if (quarterTurns == 2) blackenDot(turned, right - column, bottom - row);
        if (quarterTurns == 3) blackenDot(turned, row, right - column);
    });
    return turned;
}

void invert(Dots& dots) {
    const auto width = static_cast<std::size_t>(dots.width);
    for (std::int32_t row = 0; row < dots.height; ++row) {
        const std::span<Byte> bytes = dots.row(row).first((width + 7) / 8);
        std::ranges::transform(bytes, bytes.begin(),
                               [](Byte eight) { return static_cast<Byte>(~eight); });
        if (width % 8 != 0) bytes.back() = static_cast<Byte>(bytes.back() & 0xFF00U >> width % 8);
    }
}

}  // namespace tavio::sharp
