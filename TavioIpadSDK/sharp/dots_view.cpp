#include "TavioIpadSDK/sharp/dots_view.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tavio::sharp {

namespace {

constexpr std::int32_t kWordBits = 64;
constexpr std::size_t kWordBytes = 8;
constexpr std::size_t kWordsAtOnce = std::size_t{kColumnsAtOnce} * kColumnStep / kWordBits;

// The leftmost dot is the top bit.
std::uint64_t wordAt(std::span<const Byte> row, std::size_t index) {
    std::uint64_t word = 0;
    for (const Byte byte : row.subspan(index * kWordBytes, kWordBytes)) word = word << 8U | byte;
    return word;
}

// The leftmost dot of each byte.
constexpr std::uint64_t kEachEighth = 0x8080808080808080U;

void addColumnEdges(std::uint64_t changed, std::int32_t row, Edges* edges) {
    while (changed != 0) {
        const int bit = std::countl_zero(changed);
        edges[bit / kColumnStep].push_back(row);
        changed &= ~(std::uint64_t{1} << (kWordBits - 1 - bit));
    }
}

}  // namespace

void findEdges(std::span<const Byte> row, std::int32_t width, Edges& edges) {
    edges.clear();
    std::uint64_t last = 0;  // the dot before the word, in the top bit
    for (std::size_t index = 0; index < row.size() / kWordBytes; ++index) {
        const std::uint64_t word = wordAt(row, index);
        std::uint64_t changed = word ^ (word >> 1U | last);
        last = word << (kWordBits - 1);
        while (changed != 0) {
            const int bit = std::countl_zero(changed);
            edges.push_back(static_cast<std::int32_t>(index) * kWordBits + bit);
            changed &= ~(std::uint64_t{1} << (kWordBits - 1 - bit));
        }
    }
    if (edges.size() % 2 != 0) edges.push_back(width);
}

void findColumnEdges(const Dots& dots, std::int32_t first, std::span<Edges, kColumnsAtOnce> edges) {
    for (Edges& each : edges) each.clear();
    const std::size_t firstWord = static_cast<std::size_t>(first) / kWordBits;
    const std::size_t words = std::min(kWordsAtOnce, dots.rowBytes() / kWordBytes - firstWord);
    std::array<std::uint64_t, kWordsAtOnce> above{};
    for (std::int32_t row = 0; row < dots.height; ++row) {
        const std::span<const Byte> bytes = dots.row(row);
        for (std::size_t index = 0; index < words; ++index) {
            const std::uint64_t word = wordAt(bytes, firstWord + index) & kEachEighth;
            addColumnEdges(word ^ above.at(index), row, &edges[index * kWordBytes]);
            above.at(index) = word;
        }
    }
    for (Edges& each : edges) {
        if (each.size() % 2 != 0) each.push_back(dots.height);
    }
}

}  // namespace tavio::sharp
