#include "TavioIpadSDK/platform/canvas.h"

#include <algorithm>
#include <limits>
#include <utility>

#include <gtest/gtest.h>

#include "support/bitmaps.h"

namespace tavio::platform {
namespace {

using test::Rows;
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

// A picture of which every pixel is another letter, from "a" on.
Picture letters(std::int32_t width, std::int32_t height) {
    Picture picture{width, height, {}, 1};
    for (std::int32_t i = 0; i < width * height; ++i)
        picture.pixels.push_back(static_cast<UInt32>('a' + i));
    return picture;
}

Picture snapshotOf(const Canvas& canvas) {
    return Canvas(canvas).takeSnapshot();
}

// "." is a transparent pixel.
Rows textOf(const Picture& picture) {
    Rows rows;
    auto pixel = picture.pixels.begin();
    for (std::int32_t y = 0; y < picture.height; ++y) {
        rows.emplace_back();
        for (std::int32_t x = 0; x < picture.width; ++x, ++pixel)
            rows.back() += *pixel == 0 ? '.' : static_cast<char>(*pixel);
    }
    return rows;
}

Rows placed(const Picture& picture, std::int32_t left, std::int32_t top) {
    Canvas canvas(4, 3);
    canvas.placeOpaque(picture, left, top);
    return textOf(snapshotOf(canvas));
}

TEST(Canvas, IsTransparentWhenItIsMade) {
    const Canvas canvas(4, 3);
    EXPECT_EQ(snapshotOf(canvas).width, 4);
    EXPECT_EQ(snapshotOf(canvas).height, 3);
    EXPECT_EQ(snapshotOf(canvas).orientation, 1);
    EXPECT_EQ(textOf(snapshotOf(canvas)), (Rows{"....", "....", "...."}));
}

TEST(Canvas, OfANegativeSizeIsEmpty) {
    for (const auto& [width, height] :
         {std::pair(-1, 3), std::pair(3, -1), std::pair(kLeast, kLeast), std::pair(0, 0),
          std::pair(0, kMost)}) {
        Canvas canvas(width, height);
        canvas.placeOpaque(letters(2, 2), 0, 0);
        EXPECT_TRUE(snapshotOf(canvas).pixels.empty());
        EXPECT_EQ(snapshotOf(canvas).width, std::max(width, 0));
        EXPECT_EQ(snapshotOf(canvas).height, std::max(height, 0));
    }
}

TEST(Canvas, TakesAPictureWithinIt) {
    EXPECT_EQ(placed(letters(2, 2), 1, 1), (Rows{"....", ".ab.", ".cd."}));
    EXPECT_EQ(placed(letters(4, 3), 0, 0), (Rows{"abcd", "efgh", "ijkl"}));
}

TEST(Canvas, CutsAPictureOffAtEachOfItsSides) {
    const Picture picture = letters(2, 2);
    EXPECT_EQ(placed(picture, -1, 1), (Rows{"....", "b...", "d..."}));
    EXPECT_EQ(placed(picture, 3, 1), (Rows{"....", "...a", "...c"}));
    EXPECT_EQ(placed(picture, 1, -1), (Rows{".cd.", "....", "...."}));
    EXPECT_EQ(placed(picture, 1, 2), (Rows{"....", "....", ".ab."}));
}

TEST(Canvas, CutsAPictureOffAtEachOfItsCorners) {
    const Picture picture = letters(2, 2);
    EXPECT_EQ(placed(picture, -1, -1), (Rows{"d...", "....", "...."}));
    EXPECT_EQ(placed(picture, 3, -1), (Rows{"...c", "....", "...."}));
    EXPECT_EQ(placed(picture, -1, 2), (Rows{"....", "....", "b..."}));
    EXPECT_EQ(placed(picture, 3, 2), (Rows{"....", "....", "...a"}));
}

TEST(Canvas, ShowsTheMiddleOfAPictureThatIsLargerAllRound) {
    EXPECT_EQ(placed(letters(6, 5), -1, -1), (Rows{"hijk", "nopq", "tuvw"}));
}

TEST(Canvas, ShowsNothingOfAPictureBesideIt) {
    const Rows blank = {"....", "....", "...."};
    const std::pair<std::int32_t, std::int32_t> places[] = {
        {-2, 0},    {4, 0},      {0, -2},        {0, 3},          {kLeast, 0},     {kMost, 0},
        {0, kMost}, {0, kLeast}, {kMost, kMost}, {kLeast, kMost}, {kLeast, kLeast}};
    for (const auto& [left, top] : places)
        EXPECT_EQ(placed(letters(2, 2), left, top), blank) << left << ", " << top;
}

TEST(Canvas, ShowsNothingOfAPictureWithoutPixels) {
    EXPECT_EQ(placed(Picture{}, 0, 0), (Rows{"....", "....", "...."}));
}

TEST(Canvas, KeepsWhatLiesBesideALaterPicture) {
    Canvas canvas(4, 1);
    canvas.placeOpaque(letters(4, 1), 0, 0);
    canvas.placeOpaque(letters(1, 1), 2, 0);
    EXPECT_EQ(textOf(snapshotOf(canvas)), Rows{"abad"});
    EXPECT_EQ(textOf(std::move(canvas).takeSnapshot()), Rows{"abad"});
}

}  // namespace
}  // namespace tavio::platform
