#include "sharp/printed_twin.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <set>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/upright.h"
#include "stretch/slow_resample.h"

namespace tavio::sharp {
namespace {

using pictures::Picture;

constexpr std::size_t kMaxFewColours = 16;

Byte greyOf(UInt32 pixel) {
    const unsigned alpha = pixel >> 24;
    const unsigned red = (pixel & 0xFF) + 255 - alpha;
    const unsigned green = (pixel >> 8 & 0xFF) + 255 - alpha;
    const unsigned blue = (pixel >> 16 & 0xFF) + 255 - alpha;
    return static_cast<Byte>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

GreyPicture inGrey(const Picture& picture) {
    GreyPicture grey{picture.width, picture.height, {}};
    for (const UInt32 pixel : picture.pixels) grey.values.push_back(greyOf(pixel));
    return grey;
}

Byte at(const GreyPicture& picture, std::int64_t column, std::int64_t row) {
    return picture.values.at(static_cast<std::size_t>(row * picture.width + column));
}

GreyPicture turnedClockwise(const GreyPicture& picture) {
    GreyPicture turned{picture.height, picture.width, {}};
    for (std::int32_t row = 0; row < turned.height; ++row) {
        for (std::int32_t column = 0; column < turned.width; ++column)
            turned.values.push_back(at(picture, row, picture.height - 1 - column));
    }
    return turned;
}

GreyPicture dotForDot(const GreyPicture& picture, std::int32_t width, std::int32_t height) {
    GreyPicture enlarged{width, height, {}};
    for (std::int64_t row = 0; row < height; ++row) {
        for (std::int64_t column = 0; column < width; ++column) {
            enlarged.values.push_back(
                at(picture, column * picture.width / width, row * picture.height / height));
        }
    }
    return enlarged;
}

GreyPicture resampled(const GreyPicture& picture, std::int32_t width, std::int32_t height) {
    Picture pixels{picture.width, picture.height, {}, 1};
    for (const Byte value : picture.values) pixels.pixels.push_back(value);
    GreyPicture result{width, height, {}};
    for (const UInt32 pixel : stretch::slowStretch(pixels, width, height).pixels)
        result.values.push_back(static_cast<Byte>(pixel & 0xFF));
    return result;
}

GreyPicture blackAndWhite(GreyPicture picture, std::int32_t width, std::int32_t height) {
    for (Byte& value : picture.values) value = static_cast<Byte>(255 - value);
    GreyPicture ink = resampled(picture, width, height);
    for (Byte& value : ink.values) value = value >= 128 ? 0 : 255;
    return ink;
}

GreyPicture sized(const GreyPicture& picture, std::int32_t width, std::int32_t height,
                  bool mayBeFewColoured) {
    if (width == picture.width && height == picture.height) return picture;
    const std::set<Byte> colours(picture.values.begin(), picture.values.end());
    const bool isFewColoured = mayBeFewColoured && colours.size() <= kMaxFewColours;
    if (isFewColoured && width % picture.width == 0 && height % picture.height == 0)
        return dotForDot(picture, width, height);
    const auto isSolid = [](Byte colour) { return colour == 0 || colour == 255; };
    if (isFewColoured && std::ranges::all_of(colours, isSolid))
        return blackAndWhite(picture, width, height);
    return resampled(picture, width, height);
}

GreyPicture cut(const GreyPicture& picture, const Fitted& fitted) {
    GreyPicture window{static_cast<std::int32_t>(fitted.windowWidth),
                       static_cast<std::int32_t>(fitted.windowHeight),
                       {}};
    for (std::int64_t row = 0; row < window.height; ++row) {
        for (std::int64_t column = 0; column < window.width; ++column)
            window.values.push_back(at(picture, fitted.left + column, fitted.top + row));
    }
    return window;
}

}  // namespace

GreyPicture slowlyPrinted(const Picture& picture, const FitRules& rules, bool mayBeFewColoured) {
    GreyPicture grey = inGrey(pictures::upright(picture));
    const Fitted fitted = sharp::fitted(grey.width, grey.height, rules);
    for (int turn = 0; turn < fitted.quarterTurns; ++turn) grey = turnedClockwise(grey);
    return cut(sized(grey, static_cast<std::int32_t>(fitted.width),
                     static_cast<std::int32_t>(fitted.height), mayBeFewColoured),
               fitted);
}

GreyPicture readAll(GreyRows& rows, std::int32_t maxRows) {
    GreyPicture picture{rows.width(), rows.height(), {}};
    const auto line = static_cast<std::size_t>(picture.width);
    for (auto strip = rows.next(maxRows); !strip.empty(); strip = rows.next(maxRows)) {
        EXPECT_EQ(strip.size() % line, 0U);
        EXPECT_LE(strip.size(), static_cast<std::size_t>(maxRows) * line);
        picture.values.insert(picture.values.end(), strip.begin(), strip.end());
    }
    EXPECT_EQ(picture.values.size(), line * static_cast<std::size_t>(picture.height));
    EXPECT_TRUE(rows.next(1).empty());
    return picture;
}

Difference difference(const GreyPicture& one, const GreyPicture& other) {
    EXPECT_EQ(one.width, other.width);
    EXPECT_EQ(one.height, other.height);
    const std::size_t count = std::min(one.values.size(), other.values.size());
    Difference found;
    for (std::size_t index = 0; index < count; ++index) {
        const int apart = std::abs(int{one.values[index]} - int{other.values[index]});
        found.mean += static_cast<double>(apart) / static_cast<double>(count);
        found.max = std::max(found.max, apart);
    }
    return found;
}

}  // namespace tavio::sharp
