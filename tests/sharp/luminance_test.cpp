#include "TavioIpadSDK/sharp/luminance.h"

#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::sharp {
namespace {

TEST(Luminance, IsRoundedExactly) {
    for (unsigned red = 0; red < 256; ++red) {
        for (unsigned green = 0; green < 256; green += 1 + red % 3) {
            for (unsigned blue = 0; blue < 256; blue += 1 + green % 2) {
                const UInt32 pixel = pictures::premultipliedPixel(red, green, blue, 255);
                ASSERT_EQ(luminance(pixel), (299 * red + 587 * green + 114 * blue + 500) / 1000)
                    << red << ", " << green << ", " << blue;
            }
        }
    }
}

TEST(Luminance, LeavesGreysAsTheyAre) {
    for (unsigned grey = 0; grey < 256; ++grey)
        EXPECT_EQ(luminance(pictures::premultipliedPixel(grey, grey, grey, 255)), grey);
}

TEST(Luminance, IsThatOfThePixelOnWhite) {
    for (unsigned alpha = 0; alpha < 256; ++alpha) {
        EXPECT_EQ(luminance(pictures::premultipliedPixel(0, 0, 0, alpha)), 255 - alpha);
        EXPECT_EQ(luminance(pictures::premultipliedPixel(255, 255, 255, alpha)), 255);
    }
}

TEST(Luminance, IsTakenOfEveryPixel) {
    std::vector<UInt32> pixels;
    for (unsigned value = 0; value < 100; ++value) pixels.push_back(0xFF000000 | value * 654'321);
    Bytes greys(pixels.size());
    toGrey(pixels, greys);
    for (std::size_t at = 0; at < pixels.size(); ++at) EXPECT_EQ(greys[at], luminance(pixels[at]));
}

}  // namespace
}  // namespace tavio::sharp
