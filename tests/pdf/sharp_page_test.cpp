// Pages drawn at exactly their dots: sizes, turns, boxes and contents.
#include <chrono>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "pdf/sharp_page_fixture.h"

namespace tavio::test {
namespace {

using platform::PdfOutcome;
using sharp::Fit;
using sharp::PageOrder;
using sharp::Turn;

class SharpPages : public SharpPageTest {};

std::string pageWith(const std::string& entries, const std::string& content = "") {
    return documentOf({{entries, content}});
}

// 40 by 20 points with a mark of 8 by 4 in the top left corner.
const std::string kMarked = pageWith("/MediaBox [0 0 40 20]", "0 16 8 4 re f");

TEST_F(SharpPages, HaveTheDotsOfTheirPointsAndTheResolution) {
    EXPECT_EQ(marksOn(drawnDots(kMarked, atOwnSize(72))), (Marks{0, 0, 8, 4, true}));
    const PageDots page = drawnDots(kMarked, atOwnSize(300));
    EXPECT_EQ(page.width, 167);
    EXPECT_EQ(page.height, 83);
    EXPECT_EQ(marksOn(page), (Marks{0, 0, 33, 17, true}));
}

TEST_F(SharpPages, TellTheirSizeAndTheirPlaceInTheBox) {
    const sharp::SharpPage page = sharp::drawPage(
        bytesOf(documentOf({{"/MediaBox [0 0 40 20]", ""}, {"/MediaBox [5 5 65.5 45]", ""}})),
        {2, 144, {Fit::kContain, Turn::k0, 242, 500}});
    ASSERT_EQ(page.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(page.pages, 2);
    EXPECT_DOUBLE_EQ(page.widthPoints, 60.5);
    EXPECT_DOUBLE_EQ(page.heightPoints, 40);
    EXPECT_EQ(page.fitted, sharp::fitted(121, 80, {Fit::kContain, Turn::k0, 242, 500}));
    EXPECT_EQ(page.smallestTextPoints, 0);
}

TEST_F(SharpPages, AreTurnedClockwise) {
    const std::vector<std::pair<Turn, Marks>> turns = {{Turn::k0, {0, 0, 8, 4, true}},
                                                       {Turn::k90, {16, 0, 4, 8, true}},
                                                       {Turn::k180, {32, 16, 8, 4, true}},
                                                       {Turn::k270, {0, 32, 4, 8, true}}};
    for (const auto& [turn, marks] : turns) {
        EXPECT_EQ(marksOn(drawnDots(kMarked, {1, 72, {Fit::kActual, turn, 1, 1}})), marks);
    }
}

TEST_F(SharpPages, AreFittedIntoTheirBox) {
    EXPECT_EQ(marksOn(drawnDots(kMarked, {1, 72, {Fit::kContain, Turn::k0, 80, 80}})),
              (Marks{0, 0, 16, 8, true}));
    EXPECT_EQ(marksOn(drawnDots(kMarked, {1, 72, {Fit::kStretch, Turn::k0, 80, 100}})),
              (Marks{0, 0, 16, 20, true}));
    EXPECT_EQ(marksOn(drawnDots(kMarked, {1, 72, {Fit::kContain, Turn::kAuto, 20, 80}})),
              (Marks{16, 0, 4, 8, true}));
}

TEST_F(SharpPages, ThatCoverTheirBoxAreCutToIt) {
    const std::string middle = pageWith("/MediaBox [0 0 40 20]", "16 8 8 4 re f");
    const PageDots page = drawnDots(middle, {1, 72, {Fit::kCover, Turn::k0, 40, 40}});
    EXPECT_EQ(page.width, 40);
    EXPECT_EQ(page.height, 40);
    EXPECT_EQ(marksOn(page), (Marks{12, 16, 16, 8, true}));
}

TEST_F(SharpPages, AreTheirCropBoxesAndNothingBesideThem) {
    const PageDots page = drawnDots(
        pageWith("/MediaBox [0 0 100 100] /CropBox [10.5 20.25 50.5 60.25]",
                 "0 0 10.5 100 re f 50.5 0 50 100 re f 0 0 100 20.25 re f 10.5 58.25 2 2 re f"),
        atOwnSize(72));
    EXPECT_EQ(page.width, 40);
    EXPECT_EQ(page.height, 40);
    EXPECT_EQ(marksOn(page), (Marks{0, 0, 2, 2, true}));
}

TEST_F(SharpPages, AreTurnedAsTheDocumentSaysAndKeepTheirSize) {
    const std::string content = "0 16 8 4 re f";
    const PageDots page =
        drawnDots(pageWith("/MediaBox [0 0 40 20] /Rotate 90", content), atOwnSize());
    EXPECT_EQ(page.width, 20);
    EXPECT_EQ(page.height, 40);
    EXPECT_EQ(marksOn(page), (Marks{16, 0, 4, 8, true}));
}

TEST_F(SharpPages, KeepTheValueOfAGreyToItsSolidEdges) {
    for (const std::int32_t resolution : {72, 200, 300, 610}) {
        const PageDots page =
            drawnDots(pageWith("/MediaBox [0 0 40 20]", "0.4 g 3.3 3.3 20.3 10.3 re f"),
                      atOwnSize(resolution));
        EXPECT_EQ(page.count(102) + page.count(255), std::ssize(page.dots)) << resolution;
        EXPECT_GT(page.count(102), 0);
    }
}

// How many dots each run of black ones along a column, or along a row, has.
std::vector<int> blackRuns(const PageDots& page, int column, int row, bool alongColumn) {
    std::vector<int> runs;
    int run = 0;
    const int end = alongColumn ? page.height : page.width;
    for (int at = 0; at <= end; ++at) {
        const bool isBlack =
            at < end && (alongColumn ? page.at(column, at) : page.at(at, row)) == 0;
        if (isBlack) ++run;
        if (!isBlack && run > 0) runs.push_back(std::exchange(run, 0));
    }
    return runs;
}

// Twelve level lines at the left and twelve upright ones at the right, all at different places between
// the dots.
std::string linesOf(const std::string& width, bool areFilled) {
    std::string content = width + " w ";
    for (int i = 0; i < 12; ++i) {
        const std::string place = std::to_string(5 + 7.23 * i);
        const std::string other = std::to_string(105 + 7.37 * i);
        if (areFilled) {
            content += "5 " + place + " 85 " + width + " re f ";
            content += other + " 5 " + width + " 90 re f ";
        } else {
            content += "5 " + place + " m 90 " + place + " l S ";
            content += other + " 5 m " + other + " 95 l S ";
        }
    }
    return pageWith("/MediaBox [0 0 200 100]", content);
}

void expectEvenLines(const PageDots& page, int dots) {
    const std::vector<int> twelve(12, dots);
    EXPECT_EQ(page.count(0) + page.count(255), std::ssize(page.dots)) << "no greys";
    EXPECT_EQ(blackRuns(page, page.width / 4, 0, true), twelve);
    const std::vector<int> across = blackRuns(page, 0, 4 * page.height / 100, false);
    EXPECT_TRUE(across.empty()) << "nothing below the lines' ends";
    std::vector<int> upright = blackRuns(page, 0, page.height / 2, false);
    if (upright.size() == 13) upright.erase(upright.begin());  // a level line
    EXPECT_EQ(upright, twelve);
}

TEST_F(SharpPages, HaveLinesOfAtLeastADotAndEverywhereEquallyWide) {
    for (const std::int32_t resolution : {200, 300, 600}) {
        for (const double width : {0.0, 0.1, 0.25, 0.5, 1.0, 1.3}) {
            SCOPED_TRACE(std::to_string(width) + " points at " + std::to_string(resolution));
            const int dots = std::max(1, static_cast<int>(std::lround(width * resolution / 72)));
            expectEvenLines(drawnDots(linesOf(std::to_string(width), false), atOwnSize(resolution)),
                            dots);
        }
    }
}

TEST_F(SharpPages, HaveFilledRectanglesOfAtLeastADot) {
    for (const std::int32_t resolution : {200, 300}) {
        SCOPED_TRACE(resolution);
        expectEvenLines(drawnDots(linesOf("0.2", true), atOwnSize(resolution)), 1);
    }
}

TEST_F(SharpPages, KeepAnAreaWholeThatIsDrawnLineByLine) {
    std::string content = "0.86 w ";
    for (int i = 0; i < 20; ++i) {
        const std::string row = std::to_string(10.1 + 0.86 * i);
        content += "10 " + row + " m 30 " + row + " l ";
    }
    const PageDots page =
        drawnDots(pageWith("/MediaBox [0 0 40 40]", content + "S"), atOwnSize(200));
    EXPECT_EQ(blackRuns(page, page.width / 2, 0, true), std::vector<int>{48});
}

std::string textOf(const std::string& size, const std::string& face, const std::string& colour) {
    return pageWith(
        "/MediaBox [0 0 200 60] /Resources << /Font << /F << /Type /Font /Subtype /Type1"
        " /BaseFont /" +
            face + " >> >> >>",
        colour + " BT /F " + size +
            " Tf 5.3 40.7 Td (Row F seat 12, the evening) Tj"
            " 0 -17.9 Td (Sphinx of black quartz, judge) Tj ET");
}

TEST_F(SharpPages, HaveSmallBlackTextInSolidBlack) {
    for (const std::int32_t resolution : {200, 300}) {
        for (const char* const face : {"Helvetica", "Times-Roman"}) {
            for (const char* const size : {"5", "7.5", "10"}) {
                for (const char* const colour : {"0 g", "0 0 0 1 k"}) {
                    SCOPED_TRACE(std::string(face) + " " + size + " " + colour);
                    const PageDots page =
                        drawnDots(textOf(size, face, colour), atOwnSize(resolution));
                    EXPECT_GT(page.count(0), 200);
                    EXPECT_EQ(page.count(0) + page.count(255), std::ssize(page.dots));
                }
            }
        }
    }
}

TEST_F(SharpPages, TellTheirSmallestTextAsItIsPrinted) {
    const std::string document = textOf("9", "Helvetica", "0 g");
    EXPECT_NEAR(sharp::drawPage(bytesOf(document), atOwnSize(300)).smallestTextPoints, 9, 0.01);
    const PageOrder half{1, 200, {Fit::kContain, Turn::k0, 278, 278}};
    EXPECT_NEAR(sharp::drawPage(bytesOf(document), half).smallestTextPoints, 4.5, 0.02);
}

TEST_F(SharpPages, ShowTransparencyAndBlendsOnWhitePaper) {
    const std::string states =
        "/MediaBox [0 0 40 20] /Resources << /ExtGState << /H << /ca 0.5 >> /M << /BM /Multiply >> "
        ">> >>";
    const PageDots page = drawnDots(
        pageWith(states,
                 "/H gs 0 g 0 0 10 20 re f /M gs 1 g 10 0 10 20 re f 0.2 g 20 0 10 20 re f"),
        atOwnSize(72));
    EXPECT_NEAR(page.at(5, 10), 128, 1);
    EXPECT_EQ(page.at(15, 10), 255);
    EXPECT_NEAR(page.at(25, 10), 153, 1) << "half of 0.2 on white";
    EXPECT_EQ(page.at(35, 10), 255);
}

TEST_F(SharpPages, ShowTheAnnotationsThatArePrinted) {
    const Marks shown{0, 90, 10, 10, true};
    const auto marks = [&](const std::string& subtype, const std::string& flags) {
        return marksOn(drawnDots(annotatedDocument(subtype, flags), atOwnSize(72)));
    };
    EXPECT_EQ(marks("Stamp", "/F 4"), shown) << "to be printed";
    EXPECT_EQ(marks("Stamp", "/F 36"), shown) << "only to be printed";
    EXPECT_EQ(marks("Stamp", ""), Marks{}) << "for the screen only";
    EXPECT_EQ(marks("Stamp", "/F 6"), Marks{}) << "hidden";
    EXPECT_EQ(marks("Link", "/F 4"), Marks{}) << "no part of the page";
}

TEST_F(SharpPages, AreRefusedWithTheReason) {
    using platform::PdfLimits;
    const auto outcome = [](const std::string& document, std::int32_t page = 1,
                            const PdfLimits& limits = {}, const std::string& helper = "") {
        PageOrder order = atOwnSize();
        order.page = page;
        const sharp::SharpPage drawn = sharp::drawPage(bytesOf(document), order, limits, helper);
        EXPECT_EQ(drawn.rows != nullptr, drawn.outcome == PdfOutcome::kDrawn);
        return drawn.outcome;
    };
    EXPECT_EQ(outcome(kMarked), PdfOutcome::kDrawn);
    EXPECT_EQ(outcome("A ticket."), PdfOutcome::kNotPdf);
    EXPECT_EQ(outcome(encryptedDocument()), PdfOutcome::kEncrypted);
    EXPECT_EQ(outcome(kMarked, 2), PdfOutcome::kNoPage);
    EXPECT_EQ(outcome(kMarked, 1, {.mostPointsPerSide = 39}), PdfOutcome::kTooLarge);
    EXPECT_EQ(outcome(kMarked, 1, {.memoryBytes = 1U << 20U}), PdfOutcome::kMemoryLimit);
    EXPECT_EQ(outcome(kMarked, 1, {.wall = std::chrono::milliseconds(0)}), PdfOutcome::kWallLimit);
    EXPECT_EQ(outcome(endlessDocument(), 1, {.cpu = std::chrono::seconds(1)}),
              PdfOutcome::kCpuLimit);
    EXPECT_EQ(outcome(kMarked, 1, {}, folder_.path("nowhere").string()),
              PdfOutcome::kHelperMissing);
    EXPECT_EQ(outcome(kMarked, 1, {}, folder_.writeProgram("helper", "exit 1")),
              PdfOutcome::kHelperFailed);
}

TEST_F(SharpPages, ThatAreDroppedLeaveNoProcess) {
    sharp::SharpPage page = sharp::drawPage(bytesOf(kMarked), atOwnSize(7200));
    ASSERT_EQ(page.outcome, PdfOutcome::kDrawn);
    EXPECT_FALSE(page.rows->next(1).empty());
}

}  // namespace
}  // namespace tavio::test
