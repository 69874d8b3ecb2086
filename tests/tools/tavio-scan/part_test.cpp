// Parts of pictures.

#include "tools/tavio-scan/part.h"

#include <gtest/gtest.h>

#include "tools/tavio-scan/text_bitmap.h"

namespace tavio::scan {

void PrintTo(const Part& part, std::ostream* out) {
    *out << part.width << " x " << part.height << " from " << part.left << ", " << part.top;
}

namespace {

const Bitmap kBars =
    bitmapOf({"............", "..#.##..#...", "..#.##..#...", "..#.##..#..#", "............"});

TEST(Parts, AreTrimmedToTheirBlackDots) {
    EXPECT_EQ(trimmed(kBars, {0, 0, 11, 5}), (Part{2, 1, 7, 3}));
    EXPECT_EQ(trimmed(kBars, {3, 2, 4, 1}), (Part{4, 2, 2, 1}));
    EXPECT_EQ(trimmed(kBars, {0, 0, 2, 5}).width, 0);
}

TEST(Parts, GrowToWholeBars) {
    EXPECT_EQ(withWholeBars(kBars, {2, 2, 7, 1}, Along::kRows), (Part{2, 1, 7, 3}));
    EXPECT_EQ(withWholeBars(kBars, {4, 1, 1, 3}, Along::kColumns), (Part{4, 1, 2, 3}));
    EXPECT_EQ(withWholeBars(kBars, {2, 2, 7, 0}, Along::kRows), (Part{2, 2, 7, 0}));
}

TEST(Parts, GrowToAllBars) {
    EXPECT_EQ(withAllBars(kBars, {4, 1, 2, 1}, Along::kRows, 1), (Part{2, 1, 4, 1}));
    EXPECT_EQ(withAllBars(kBars, {4, 1, 2, 1}, Along::kRows, 2), (Part{2, 1, 7, 1}));
    EXPECT_EQ(withAllBars(kBars, {4, 3, 2, 1}, Along::kRows, 2), (Part{2, 3, 10, 1}));
    EXPECT_EQ(withAllBars(kBars, {2, 2, 1, 1}, Along::kColumns, 0), (Part{2, 1, 1, 3}));
}

TEST(Blots, AreBlackDotsInNeighbouringSquares) {
    EXPECT_EQ(blotsOf(kBars, 1),
              (std::vector<Part>{{2, 1, 1, 3}, {4, 1, 2, 3}, {8, 1, 1, 3}, {11, 3, 1, 1}}));
    EXPECT_EQ(blotsOf(kBars, 2), (std::vector<Part>{{2, 1, 4, 3}, {8, 1, 4, 3}}));
    EXPECT_EQ(blotsOf(kBars, 8), (std::vector<Part>{{2, 1, 10, 3}}));
    EXPECT_TRUE(blotsOf(bitmapOf({"..."}), 2).empty());
}

TEST(CutOuts, HaveAWhiteMargin) {
    EXPECT_EQ(cutOut(kBars, {4, 3, 8, 1}, 1).dots,
              bitmapOf({"..........", ".##..#..#.", ".........."}).dots);
}

}  // namespace
}  // namespace tavio::scan
