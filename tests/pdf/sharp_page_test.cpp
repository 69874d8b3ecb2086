// Pages drawn at exactly their dots: sizes, turns, boxes and contents.
#include <string>
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
