#include "TavioIpadSDK/sharp/halftone.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <optional>
#include <span>
#include <stdexcept>

#include "TavioIpadSDK/machine/large_pages.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "TavioIpadSDK/sharp/apply_tone.h"
#include "TavioIpadSDK/sharp/diffusion_queue.h"
#include "TavioIpadSDK/sharp/threshold_dots.h"

namespace tavio::sharp {
namespace {

// Few enough rows for a cache, and enough to be worth a call.
constexpr std::int32_t kThresholdRows = 32;

// Smaller pictures take less time than the start of a thread.
constexpr std::int64_t kMinDotsForThreads = std::int64_t{1} << 20;

std::size_t asSize(std::int64_t count) {
    return static_cast<std::size_t>(count);
}

Dots makeDots(std::int32_t width, std::int32_t height) {
    assert(width >= 1 && height >= 1);
    if (std::int64_t{width} * height > kMaxDots) throw std::length_error("too many dots");
    Dots dots{width, height, {}};
    machine::resizeOnLargePages(dots.bits, dots.rowBytes() * asSize(height));
    return dots;
}

// Calls use(row, its values) for the next `count` rows, of which the first is `row`.
template <typename Use>
void takeRows(GreyRows& rows, std::int32_t row, std::int32_t count, Use use) {
    const auto width = asSize(rows.width());
    for (const std::int32_t end = row + count; row < end;) {
        std::span<const Byte> greys = rows.next(end - row);
        if (greys.empty()) throw pictures::DamagedPicture("the picture has too few rows");
        for (; !greys.empty(); greys = greys.subspan(width)) use(row++, greys.first(width));
    }
}

void dither(GreyRows& rows, const ToneTable& table, bool usesThread, Dots& dots) {
    const ToneCurve curve(table);
    DiffusionQueue queue(dots, usesThread);
    for (std::int32_t first = 0; first < dots.height;) {
        SkewedStrip& strip = queue.freeStrip();
        const std::int32_t count = std::min(strip.rows(), dots.height - first);
        takeRows(rows, 0, count, [&](std::int32_t row, std::span<const Byte> greys) {
            curve.apply(greys, strip.row(row));
        });
        strip.whiten(count);
        queue.diffuse(first);
        first += count;
    }
}

// The largest grey value that becomes black; none if none does. The table never falls.
std::optional<Byte> lastBlackOf(const ToneTable& table, Byte threshold) {
    const auto isBlack = [&](Byte grey) { return grey == 0 || (grey < threshold && grey < 255); };
    const auto end = std::ranges::partition_point(table, isBlack);
    if (end == table.begin()) return std::nullopt;
    return static_cast<Byte>(end - table.begin() - 1);
}

void applyThreshold(GreyRows& rows, std::optional<Byte> lastBlack, Dots& dots) {
    for (std::int32_t first = 0; first < dots.height; first += kThresholdRows) {
        const std::int32_t count = std::min(kThresholdRows, dots.height - first);
        takeRows(rows, first, count, [&](std::int32_t row, std::span<const Byte> greys) {
            if (lastBlack) {
                thresholdDots(greys, *lastBlack, dots.row(row));
            } else {
                std::ranges::fill(dots.row(row), Byte{0});
            }
        });
    }
}

}  // namespace

Dots halftoned(GreyRows& rows, const Halftone& halftone, bool mayUseThreads) {
    Dots dots = makeDots(rows.width(), rows.height());
    Tone tone = halftone.tone;
    if (halftone.method == Method::kThreshold) {
        tone.dotGain = 0;
        applyThreshold(rows, lastBlackOf(toneTable(tone), halftone.threshold), dots);
    } else {
        const bool isLarge = std::int64_t{dots.width} * dots.height >= kMinDotsForThreads;
        dither(rows, toneTable(tone), mayUseThreads && isLarge, dots);
    }
    return dots;
}

}  // namespace tavio::sharp
