// The page's place on the canvas, and its contents.
#include <algorithm>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pdf/answer.h"
#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using platform::PdfPage;

class PdfGeometry : public PdfTest {};

std::string pageWith(const std::string& entries, const std::string& content = "") {
    return documentOf({{entries, content}});
}

void expectPlace(const PdfPage& page, int left, int top, int width, int height) {
    EXPECT_EQ(page.left, left);
    EXPECT_EQ(page.top, top);
    EXPECT_EQ(page.picture.width, width);
    EXPECT_EQ(page.picture.height, height);
    EXPECT_EQ(page.picture.orientation, 1);
    EXPECT_EQ(page.picture.pixels.size(),
              static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
}

void expectBox(const PdfPage& page, double x, double y, double width, double height) {
    EXPECT_DOUBLE_EQ(page.x, x);
    EXPECT_DOUBLE_EQ(page.y, y);
    EXPECT_DOUBLE_EQ(page.width, width);
    EXPECT_DOUBLE_EQ(page.height, height);
}

TEST_F(PdfGeometry, ALetterPageHasOnePixelPerPoint) {
    const PdfPage page = drawn(pageWith("/MediaBox [0 0 612 792]", "100 200 30 40 re f"));
    expectBox(page, 0, 0, 612, 792);
    expectPlace(page, 0, 0, 612, 792);
    EXPECT_EQ(marksOn(page), (Marks{100, 792 - 240, 30, 40, true}));
}

TEST_F(PdfGeometry, OnlyTheFirstPageOfSeveralIsDrawn) {
    const PdfPage page = drawn(documentOf({{"/MediaBox [0 0 50 60]", "0 0 10 10 re f"},
                                           {"/MediaBox [0 0 70 80]", "20 20 20 20 re f"}}));
    expectPlace(page, 0, 0, 50, 60);
    EXPECT_EQ(marksOn(page), (Marks{0, 50, 10, 10, true}));
}

TEST_F(PdfGeometry, ColoursKeepTheirPlaces) {
    const PdfPage page =
        drawn(pageWith("/MediaBox [0 0 3 1]",
                       "1 0 0 rg 0 0 1 1 re f 0 1 0 rg 1 0 1 1 re f 0 0 1 rg 2 0 1 1 re f"));
    ASSERT_EQ(page.picture.pixels.size(), 3U);
    EXPECT_EQ(page.picture.pixels[0], 0xFF0000FFU) << "red";
    EXPECT_EQ(page.picture.pixels[1], 0xFF00FF00U) << "green";
    EXPECT_EQ(page.picture.pixels[2], 0xFFFF0000U) << "blue";
}

TEST_F(PdfGeometry, ACropBoxAwayFromTheOriginShiftsThePage) {
    const PdfPage page = drawn(pageWith("/MediaBox [0 0 612 792] /CropBox [18 18 594 774]",
                                        "18 18 10 10 re f 584 764 10 10 re f"));
    expectBox(page, 18, 18, 576, 756);
    expectPlace(page, 18, -18, 576, 756);
    // From the box's bottom left corner to its top right one; the canvas row is 756 - y.
    EXPECT_EQ(marksOn(page), (Marks{18, -18, 576, 756, false}));
    EXPECT_EQ(page.picture.pixels[std::size_t{755} * 576], kBlack);
    EXPECT_EQ(page.picture.pixels[575], kBlack);
    EXPECT_EQ(page.picture.pixels[0], kWhite);
}

TEST_F(PdfGeometry, NothingOutsideTheCropBoxIsDrawn) {
    const PdfPage page = drawn(pageWith("/MediaBox [0 0 100 100] /CropBox [20.5 20.5 60.5 60.5]",
                                        "0 0 20.5 100 re f 60.5 0 40 100 re f 0 0 100 20.5 re f"));
    expectPlace(page, 20, -21, 41, 41);
    EXPECT_EQ(marksOn(page), Marks{});
}

TEST_F(PdfGeometry, ABlankPageOfFractionalSizeIsWhiteToItsEdges) {
    const PdfPage page = drawn(pageWith("/MediaBox [0 0 595.276 841.89]"));
    expectBox(page, 0, 0, 595.276, 841.89);
    expectPlace(page, 0, 0, 596, 842);
    EXPECT_TRUE(std::ranges::all_of(page.picture.pixels, [](auto p) { return p == kWhite; }));
}

TEST_F(PdfGeometry, APartlyCoveredEdgePixelIsAMixtureOfThePageAndWhite) {
    const PdfPage page = drawn(pageWith("/MediaBox [0 0 10.5 10.5]", "0 0 20 20 re f"));
    expectPlace(page, 0, 0, 11, 11);
    for (std::size_t i = 0; i < page.picture.pixels.size(); ++i) {
        SCOPED_TRACE("column " + std::to_string(i % 11) + ", row " + std::to_string(i / 11));
        const auto red = page.picture.pixels[i] & 255;
        const bool edge = i % 11 == 10 || i / 11 == 10;
        if (edge) {
            EXPECT_GE(red, 100U);
        } else {
            EXPECT_EQ(page.picture.pixels[i], kBlack);
        }
    }
}

TEST_F(PdfGeometry, AFractionalOriginKeepsItsPlaceBetweenThePixels) {
    const PdfPage page = drawn(
        pageWith("/MediaBox [0 0 612 792] /CropBox [10.5 20.25 110.5 70.25]", "30 30 10 10 re f"));
    expectBox(page, 10.5, 20.25, 100, 50);
    expectPlace(page, 10, -21, 101, 51);
    EXPECT_EQ(marksOn(page), (Marks{30, 50 - 40, 10, 10, true}));
}

TEST_F(PdfGeometry, ANegativeOriginShiftsThePageTheOtherWay) {
    const PdfPage page = drawn(pageWith("/MediaBox [-30 -20 70 80]", "0 0 10 10 re f"));
    expectBox(page, -30, -20, 100, 100);
    expectPlace(page, -30, 20, 100, 100);
    EXPECT_EQ(marksOn(page), (Marks{0, 90, 10, 10, true}));
}

TEST_F(PdfGeometry, ACropBoxIsClippedToTheMediaBox) {
    const PdfPage wide =
        drawn(pageWith("/MediaBox [10 20 210 320] /CropBox [-50 100 500 300]", "10 100 5 5 re f"));
    expectBox(wide, 10, 100, 200, 200);
    expectPlace(wide, 10, -100, 200, 200);
    EXPECT_EQ(marksOn(wide), (Marks{10, 200 - 105, 5, 5, true}));

    const PdfPage high =
        drawn(pageWith("/MediaBox [10 20 210 320] /CropBox [60 100 180 390]", "60 100 5 5 re f"));
    expectBox(high, 60, 100, 120, 220);
    EXPECT_EQ(marksOn(high), (Marks{60, 220 - 105, 5, 5, true}));
}

TEST_F(PdfGeometry, BoxesMayBeInherited) {
    const PdfPage page = drawn(
        documentOf({{"", "40 50 5 5 re f"}}, "/MediaBox [0 0 300 300] /CropBox [30 40 130 160]"));
    expectBox(page, 30, 40, 100, 120);
    EXPECT_EQ(marksOn(page), (Marks{40, 120 - 55, 5, 5, true}));
}

TEST_F(PdfGeometry, ABoxGivenByItsOtherCornersIsTheSame) {
    expectBox(drawn(pageWith("/MediaBox [300 0 0 200] /CropBox [130 160 30 40]")), 30, 40, 100,
              120);
}

TEST_F(PdfGeometry, APositionBeyond32BitsSaturates) {
    const PdfPage page =
        drawn(pageWith("/MediaBox [10000000000 10000000000 10000000100 10000000050]"));
    expectBox(page, 1e10, 1e10, 100, 50);
    expectPlace(page, std::numeric_limits<std::int32_t>::max(),
                std::numeric_limits<std::int32_t>::min(), 100, 50);
}

// The mark lies in the bottom left corner of the page as it is written.
constexpr const char* kCornerMark = "0 0 20 20 re f";

TEST_F(PdfGeometry, APageTurnedByHalfATurnKeepsItsSize) {
    EXPECT_EQ(marksOn(drawn(pageWith("/MediaBox [0 0 200 100] /Rotate 180", kCornerMark))),
              (Marks{180, 0, 20, 20, true}));
}

TEST_F(PdfGeometry, APageTurnedByAQuarterIsShrunkAndCentred) {
    const PdfPage right = drawn(pageWith("/MediaBox [0 0 200 100] /Rotate 90", kCornerMark));
    expectBox(right, 0, 0, 200, 100);
    expectPlace(right, 0, 0, 200, 100);
    // 100 by 200 points become 50 by 100, at columns 75 to 125.
    EXPECT_EQ(marksOn(right), (Marks{75, 0, 10, 10, true}));

    const PdfPage left = drawn(pageWith("/MediaBox [0 0 200 100] /Rotate 270", kCornerMark));
    EXPECT_EQ(marksOn(left), (Marks{115, 90, 10, 10, true}));
}

TEST_F(PdfGeometry, ATallPageTurnedByAQuarterIsCentredBetweenTopAndBottom) {
    EXPECT_EQ(marksOn(drawn(pageWith("/MediaBox [0 0 100 200] /Rotate 90", kCornerMark))),
              (Marks{0, 75, 10, 10, true}));
}

TEST_F(PdfGeometry, ASquarePageTurnedByAQuarterIsNotResized) {
    EXPECT_EQ(marksOn(drawn(pageWith("/MediaBox [0 0 100 100] /Rotate 90", kCornerMark))),
              (Marks{0, 0, 20, 20, true}));
    EXPECT_EQ(marksOn(drawn(pageWith("/MediaBox [0 0 100 100] /Rotate 270", kCornerMark))),
              (Marks{80, 80, 20, 20, true}));
}

TEST_F(PdfGeometry, ATurnMayBeInheritedAndNegative) {
    EXPECT_EQ(marksOn(drawn(documentOf({{"/MediaBox [0 0 100 100]", kCornerMark}}, "/Rotate -90"))),
              (Marks{80, 80, 20, 20, true}));
}

TEST_F(PdfGeometry, ATurnedPageWithAnOriginOfItsOwnStaysInItsBox) {
    const PdfPage page = drawn(pageWith(
        "/MediaBox [0 0 500 500] /CropBox [40 60 240 160] /Rotate 90", "40 60 20 20 re f"));
    expectPlace(page, 40, -60, 200, 100);
    EXPECT_EQ(marksOn(page), (Marks{40 + 75, -60, 10, 10, true}));
}

TEST_F(PdfGeometry, AnnotationsAreDrawnIfTheyAreToBePrinted) {
    const Marks shown{0, 90, 10, 10, true};
    EXPECT_EQ(marksOn(drawn(annotatedDocument("Stamp", "/F 4"))), shown) << "to be printed";
    EXPECT_EQ(marksOn(drawn(annotatedDocument("Stamp", "/F 36"))), shown) << "only to be printed";
    EXPECT_EQ(marksOn(drawn(annotatedDocument("Stamp", ""))), Marks{}) << "for the screen only";
    EXPECT_EQ(marksOn(drawn(annotatedDocument("Stamp", "/F 6"))), Marks{}) << "hidden";
    EXPECT_EQ(marksOn(drawn(annotatedDocument("Link", "/F 4"))), Marks{}) << "no part of the page";
}

TEST(PdfPixelBox, HoldsEveryPixelThatTheCropBoxTouches) {
    const auto box = pdf::pixelBox(10.5, 20.25, 100, 50);
    EXPECT_EQ(box.left, 10);
    EXPECT_EQ(box.top, -21);
    EXPECT_EQ(box.columns, 101);
    EXPECT_EQ(box.rows, 51);
}

}  // namespace
}  // namespace tavio::test
