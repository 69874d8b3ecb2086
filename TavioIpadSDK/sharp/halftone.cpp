#include "TavioIpadSDK/sharp/halftone.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <stdexcept>

#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/diffuse_strip.h"

namespace tavio::sharp {
namespace {

constexpr std::int32_t kStripRows = 64;

void threshold(std::span<const Byte> greys, const ToneTable& table, Byte limit,
               std::span<Byte> bits) {
    for (std::size_t x = 0; x < greys.size(); ++x) {
        const Byte grey = table[greys[x]];
        if (grey == 0 || (grey != 255 && grey < limit))
            bits[x / 8] = static_cast<Byte>(bits[x / 8] | 0x80 >> x % 8);
    }
}

Dots emptyDots(std::int32_t width, std::int32_t height) {
    if (std::int64_t{width} * height > kMaxDots) throw std::length_error("too many dots");
    Dots dots{width, height, {}};
    machine::resizeOnLargePages(dots.bits, dots.rowBytes() * static_cast<std::size_t>(height));
    return dots;
}

}  // namespace

Dots halftoned(GreyRows& rows, const Halftone& halftone, bool /*mayUseThreads*/) {
    Dots dots = emptyDots(rows.width(), rows.height());
    const auto width = static_cast<std::size_t>(dots.width);
    const ToneTable table = toneTable(halftone.tone);
    if (halftone.method == Method::kThreshold) {
        std::ranges::fill(dots.bits, Byte{0});
        for (std::int32_t row = 0; row < dots.height;) {
            std::span<const Byte> strip = rows.next(std::min(kStripRows, dots.height - row));
            if (strip.empty()) throw pictures::DamagedPicture("the picture has too few rows");
            for (; !strip.empty(); strip = strip.subspan(width), ++row)
                threshold(strip.first(width), table, halftone.threshold, dots.row(row));
        }
        return dots;
    }
    SkewedStrip strip(dots.width, stripRows());
    PassedErrors errors(dots.width);
    std::span<Byte> bits(dots.bits);
    for (std::int32_t row = 0; row < dots.height; row += strip.rows()) {
        const std::int32_t count = std::min(strip.rows(), dots.height - row);
        for (std::int32_t r = 0; r < count;) {
            std::span<const Byte> greys = rows.next(count - r);
            if (greys.empty()) throw pictures::DamagedPicture("the picture has too few rows");
            for (; !greys.empty(); greys = greys.subspan(width), ++r) {
                Byte* to = strip.row(r);
                for (std::size_t x = 0; x < width; ++x)
                    to[x] = static_cast<Byte>(table[greys[x]] ^ 0x80);
            }
        }
        strip.whiten(count);
        const std::size_t size = dots.rowBytes() * static_cast<std::size_t>(count);
        diffuseStrip(strip, row, errors, bits.first(size));
        bits = bits.subspan(size);
    }
    return dots;
}

}  // namespace tavio::sharp
