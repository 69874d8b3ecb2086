#include "TavioIpadSDK/pictures/upright.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures {
namespace {

Picture pictureOf(const std::string& letters, std::int32_t width, int orientation) {
    Picture picture{width, static_cast<std::int32_t>(letters.size()) / width, {}, orientation};
    for (const char letter : letters) picture.pixels.push_back(static_cast<UInt32>(letter));
    return picture;
}

std::string lettersOf(const Picture& picture) {
    std::string letters;
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        letters += static_cast<char>(picture.pixels[at]);
        if ((at + 1) % static_cast<std::size_t>(picture.width) == 0) letters += '/';
    }
    return letters;
}

TEST(Upright, TurnsEveryOrientationExactly) {
    const std::array<std::string, 8> expected = {"abc/def/",  "cba/fed/",  "fed/cba/",
                                                 "def/abc/",  "ad/be/cf/", "da/eb/fc/",
                                                 "fc/eb/da/", "cf/be/ad/"};
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const Picture turned = upright(pictureOf("abcdef", 3, orientation));
        EXPECT_EQ(lettersOf(turned), expected.at(static_cast<std::size_t>(orientation - 1)));
        EXPECT_EQ(turned.orientation, 1);
        EXPECT_EQ(turned.width, orientation <= 4 ? 3 : 2);
        EXPECT_EQ(turned.height, orientation <= 4 ? 2 : 3);
    }
}

TEST(Upright, SizeIsSwappedWhereThePictureLiesOnItsSide) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const Picture picture = pictureOf("abcdef", 3, orientation);
        EXPECT_EQ(uprightWidth(picture), orientation <= 4 ? 3 : 2);
        EXPECT_EQ(uprightHeight(picture), orientation <= 4 ? 2 : 3);
    }
}

TEST(Upright, KeepsTheMemoryOfAnUprightPicture) {
    Picture picture = pictureOf("abcdef", 3, 1);
    const UInt32* memory = picture.pixels.data();
    EXPECT_EQ(upright(std::move(picture)).pixels.data(), memory);
}

TEST(Upright, TakesAnUnknownOrientationForUpright) {
    for (const int orientation : {-1, 0, 9}) {
        const Picture turned = upright(pictureOf("abcdef", 3, orientation));
        EXPECT_EQ(lettersOf(turned), "abc/def/");
        EXPECT_EQ(turned.orientation, 1);
    }
}

TEST(Upright, TurnsAPictureWithoutPixels) {
    const Picture turned = upright(Picture{5, 0, {}, 6});
    EXPECT_EQ(turned.width, 0);
    EXPECT_EQ(turned.height, 5);
    EXPECT_TRUE(turned.pixels.empty());
}

TEST(PremultipliedPixel, RoundsToTheNearest) {
    for (unsigned alpha = 0; alpha <= 255; ++alpha) {
        for (unsigned colour = 0; colour <= 255; ++colour) {
            const UInt32 expected = (2 * colour * alpha + 255) / 510;
            ASSERT_EQ(premultipliedPixel(colour, 0, 0, alpha), expected | (alpha << 24));
            ASSERT_LE(expected, alpha);
        }
    }
}

}  // namespace
}  // namespace tavio::pictures
