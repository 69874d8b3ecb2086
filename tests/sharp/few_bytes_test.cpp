// How few bytes dots become: beside the classic encoder, and beside the best choice of stretches.

#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/bitmap_reader.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/encode_bitmap.h"
#include "TavioIpadSDK/sharp/encode_dots.h"
#include "support/bitmaps.h"
#include "support/literal_dots.h"
#include "support/random_dots.h"

namespace tavio::sharp {
namespace {

using test::between;
using test::chance;

constexpr std::string_view kOpening = "<P1><LM><RE0><DI>";

std::size_t bytesOf(const Dots& dots, const DotsPlace& place) {
    Bytes bytes;
    appendPicture(dots, place, kOpening, bytes);
    return bytes.size();
}

std::size_t stretchBytesOf(const Dots& dots, const DotsPlace& place) {
    return bytesOf(dots, place) - kOpening.size();
}

// The classic encoder's bytes for the same dots at the same place.
std::size_t classicBytesOf(const Dots& dots, const DotsPlace& place) {
    const Bytes file = test::bitmapFile(test::rowsOf(dots));
    encoder::InfoHeader info =
        encoder::readInfoHeader(std::span(file).first<encoder::kHeaderSize>());
    EXPECT_EQ(encoder::judge(info, file.size()), encoder::Verdict::kAccepted);
    const encoder::Placement placement{place.isLandscape, place.row, place.column,
                                       2 * place.row};  // counts portrait rows from the same row
    std::vector<encoder::LineParser> map;
    return encoder::encodePrint(file, info, std::string(kOpening), placement, map).size();
}

DotsPlace randomPlace(test::Random& random, std::int32_t width) {
    const bool isLandscape = chance(random, 50);
    const std::int32_t row = between(random, 0, 700);
    return {isLandscape, isLandscape ? row : row + width - 1, between(random, 0, 1700)};
}

// Pages of text of all sizes, and with their lines on all rows of a band of the classic encoder's, which
// begin on every eighth row: one page alone can have lines that lie as its bands do.
TEST(FewBytes, PagesOfTextTakeNineTenthsOfTheClassicBytes) {
    test::Random random(1);
    std::size_t classic = 0, sharp = 0;
    for (std::int32_t letterRows = 10; letterRows <= 40; ++letterRows) {
        const Dots dots = test::textPage(random, 1216, 600, letterRows);
        classic += classicBytesOf(dots, {});
        sharp += bytesOf(dots, {});
    }
    EXPECT_LE(static_cast<double>(sharp), 0.9 * static_cast<double>(classic));
}

// Both print the same dots at the same place, but for the last rows of a picture whose height is no
// multiple of 8: the classic encoder drops these, so they are the one band that may come on top. Of
// widths that are multiples of 32 it drops no columns.
TEST(FewBytes, AreNeverMoreThanTheClassicBytesAndOneBand) {
    for (unsigned seed = 0; seed < 1500; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const std::int32_t width = 32 * between(random, 1, 12);
        const Dots dots = test::randomDots(random, width, between(random, 1, 200));
        const DotsPlace place = randomPlace(random, width);
        const auto band =
            encoder::StretchCommands::size(99'999, 99'999, width) + static_cast<std::size_t>(width);
        ASSERT_LE(bytesOf(dots, place), classicBytesOf(dots, place) + band);
    }
}

// A picture of a few stretches may be off by one byte or two: numbers are counted as those of an average
// stretch when bands are chosen.
TEST(FewBytes, AreWithinThreePercentOfTheBestBands) {
    std::size_t fewest = 0, sharp = 0;
    for (unsigned seed = 0; seed < 400; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Dots dots = test::randomDots(random, between(random, 1, 120), between(random, 1, 60));
        const DotsPlace place = randomPlace(random, dots.width);
        const std::size_t best = test::fewestBytes(dots, place);
        const std::size_t bytes = stretchBytesOf(dots, place);
        ASSERT_LE(bytes, best + best * 3 / 100 + 2);
        fewest += best;
        sharp += bytes;
    }
    EXPECT_LE(static_cast<double>(sharp), 1.003 * static_cast<double>(fewest));
}

TEST(FewBytes, OfTextAreWithinThreePercentOfTheBestBands) {
    for (unsigned seed = 0; seed < 4; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Dots dots = test::textPage(random, 400, 120, between(random, 8, 30));
        const DotsPlace place = randomPlace(random, dots.width);
        const std::size_t best = test::fewestBytes(dots, place);
        ASSERT_LE(stretchBytesOf(dots, place), best + best * 3 / 100);
    }
}

}  // namespace
}  // namespace tavio::sharp
