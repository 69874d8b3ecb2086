#include "TavioIpadSDK/sharp/crop_dots.h"

#include <bit>
#include <cstddef>
#include <span>

namespace tavio::sharp {
namespace {

// Copies bits from bit `begin` on until `to` is full.
void copyBits(std::span<const Byte> from, std::size_t begin, std::span<Byte> to) {
    const std::size_t first = begin / 8;
    const std::size_t shift = begin % 8;
    const auto byteAt = [from](std::size_t at) { return at < from.size() ? from[at] : 0U; };
    for (std::size_t at = 0; at < to.size(); ++at) {
        const unsigned pair = byteAt(first + at) << 8U | byteAt(first + at + 1);
        to[at] = static_cast<Byte>(pair >> (8 - shift));
    }
}

// Clears what follows the first `count` bits.
void clearAfter(std::span<Byte> row, std::size_t count) {
    for (std::size_t at = count / 8; at < row.size(); ++at)
        row[at] &= at == count / 8 ? static_cast<Byte>(0xFF00U >> count % 8) : Byte{0};
}

}  // namespace

Dots croppedDots(const Dots& dots, const DotArea& area) {
    Dots part = whiteDots(area.width, area.height);
    for (std::int32_t row = 0; row < area.height; ++row) {
        copyBits(dots.row(area.top + row), static_cast<std::size_t>(area.left), part.row(row));
        clearAfter(part.row(row), static_cast<std::size_t>(area.width));
    }
    return part;
}

std::int64_t blackDots(const Dots& dots) {
    std::int64_t count = 0;
    for (const Byte byte : dots.bits) count += std::popcount(byte);
    return count;
}

}  // namespace tavio::sharp
