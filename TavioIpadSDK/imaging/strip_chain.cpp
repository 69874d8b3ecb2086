#include "TavioIpadSDK/imaging/strip_chain.h"

#include <algorithm>
#include <cassert>

#include "TavioIpadSDK/imaging/entries.h"

namespace tavio::imaging {

StripChain::StripChain(std::int32_t width, std::size_t places) : width_(width) {
    assert(width >= 0 && places >= 2);
    while (places_.size() < places) places_.push_back(&list_.emplace_back(width));
}

StripChain::Place& StripChain::placeOf(std::int64_t strip) {
    const auto count = static_cast<std::int64_t>(places_.size());
    return *places_[static_cast<std::size_t>((strip + count) % count)];
}

std::vector<DitherStrip> StripChain::cut(std::span<const UInt32> pixels, std::span<Byte> entries,
                                         std::int32_t maxRows) {
    const auto width = static_cast<std::size_t>(width_);
    const auto padded = static_cast<std::size_t>(paddedWidth(width_));
    std::vector<DitherStrip> strips;
    if (width == 0) return strips;
    assert(maxRows >= 1 && pixels.size() % width == 0);
    assert(entries.size() == pixels.size() / width * padded);
    for (std::size_t left = pixels.size() / width; left > 0;) {
        const std::size_t rows = std::min(left, static_cast<std::size_t>(maxRows));
        left -= rows;
        Place& above = placeOf(strips_ - 1);
        Place& own = placeOf(strips_);
        strips.push_back({.pixels = pixels.first(rows * width),
                          .width = width_,
                          .rows = static_cast<std::int32_t>(rows),
                          .entries = entries.subspan(left * padded, rows * padded),
                          .above = {&above.row, &above.done, (strips_ - 1) * width_},
                          .last = {&own.row, &own.done, strips_ * width_}});
        pixels = pixels.subspan(rows * width);
        ++strips_;
    }
    return strips;
}

}  // namespace tavio::imaging
