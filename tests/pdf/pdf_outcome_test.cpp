// Documents that cannot be drawn.
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <string>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using platform::drawPdfPageWithHelper;
using platform::PdfLimits;
using platform::PdfOutcome;
using platform::Url;

class PdfOutcomes : public PdfTest {
  protected:
    PdfOutcome outcome(const std::string& document, const PdfLimits& limits = {}) const {
        const platform::PdfPageResult result = draw(document, limits);
        EXPECT_EQ(result.page.has_value(), result.outcome == PdfOutcome::kDrawn);
        return result.outcome;
    }
    PdfOutcome outcomeOfPath(const std::filesystem::path& path) const {
        return drawPdfPageWithHelper(Url::fromPath(path.string())).outcome;
    }
};

std::string blankPage(const std::string& size) {
    return documentOf({{"/MediaBox [0 0 " + size + "]", ""}});
}

TEST_F(PdfOutcomes, AMissingFileIsUnreadable) {
    EXPECT_EQ(outcomeOfPath(folder_.path("missing.pdf")), PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, AUrlWithoutAPathIsUnreadable) {
    EXPECT_EQ(drawPdfPageWithHelper(Url()).outcome, PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, AFolderIsUnreadable) {
    EXPECT_EQ(outcomeOfPath(folder_.path("")), PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, APipeWithoutAWriterIsRefusedAtOnce) {
    ASSERT_EQ(::mkfifo(folder_.path("pipe.pdf").c_str(), 0600), 0);
    EXPECT_EQ(outcomeOfPath(folder_.path("pipe.pdf")), PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, ADeviceIsUnreadable) {
    EXPECT_EQ(outcomeOfPath("/dev/zero"), PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, APathIsNotCutAtAZeroByte) {
    folder_.write("a.pdf", blankPage("10 10"));
    const std::string text = "file://" + folder_.path("a.pdf").string() + "%00.pdf";
    EXPECT_EQ(drawPdfPageWithHelper(Url::fromText(text)).outcome, PdfOutcome::kUnreadable);
}

TEST_F(PdfOutcomes, AnEmptyFileIsNoPdf) {
    EXPECT_EQ(outcome(""), PdfOutcome::kNotPdf);
}

TEST_F(PdfOutcomes, OtherTextIsNoPdf) {
    EXPECT_EQ(outcome("A ticket, one row, one seat.\n"), PdfOutcome::kNotPdf);
    EXPECT_EQ(outcome("%PDF-1.7\n"), PdfOutcome::kNotPdf);
}

TEST_F(PdfOutcomes, AnEncryptedDocumentNeedsItsPassword) {
    EXPECT_EQ(outcome(encryptedDocument()), PdfOutcome::kEncrypted);
}

TEST_F(PdfOutcomes, ADocumentWithoutPagesHasNone) {
    EXPECT_EQ(outcome(documentOf({})), PdfOutcome::kNoPage);
}

TEST_F(PdfOutcomes, ASideUpToTheLimitIsDrawnAndOneAboveIsTooLarge) {
    EXPECT_EQ(outcome(blankPage("14400 10")), PdfOutcome::kDrawn);
    EXPECT_EQ(outcome(blankPage("14401 10")), PdfOutcome::kTooLarge);
    EXPECT_EQ(outcome(blankPage("10 14400.01")), PdfOutcome::kTooLarge);
    const PdfLimits small{.mostPointsPerSide = 99.5};
    EXPECT_EQ(outcome(blankPage("99.5 99.5"), small), PdfOutcome::kDrawn);
    EXPECT_EQ(outcome(blankPage("99.5 100"), small), PdfOutcome::kTooLarge);
}

TEST_F(PdfOutcomes, APictureThatNoMemoryCanHoldIsTooLargeWhateverTheLimit) {
    const PdfLimits any{.mostPointsPerSide = 1e300};
    EXPECT_EQ(outcome(blankPage("100000000 10"), any), PdfOutcome::kTooLarge);
    EXPECT_EQ(outcome(blankPage("20000 20000"), any), PdfOutcome::kTooLarge);
    EXPECT_EQ(outcome(blankPage("10 10"), {.mostPointsPerSide = std::nan("")}),
              PdfOutcome::kTooLarge);
}

TEST_F(PdfOutcomes, ACropBoxBesideTheMediaBoxHasNoSize) {
    EXPECT_EQ(outcome(documentOf({{"/MediaBox [0 0 100 100] /CropBox [200 200 300 300]", ""}})),
              PdfOutcome::kTooLarge);
}

TEST_F(PdfOutcomes, AnEndlessPageIsStoppedByTheProcessorTime) {
    EXPECT_EQ(outcome(endlessDocument(), {.cpu = std::chrono::seconds(1)}), PdfOutcome::kCpuLimit);
}

TEST_F(PdfOutcomes, TheProcessorTimeHoldsWhereTheApplicationIgnoresItsSignal) {
    const auto before = std::signal(SIGXCPU, SIG_IGN);
    EXPECT_EQ(outcome(endlessDocument(), {.cpu = std::chrono::seconds(0)}), PdfOutcome::kCpuLimit);
    std::signal(SIGXCPU, before);
}

TEST_F(PdfOutcomes, AnEndlessPageIsStoppedByTheClock) {
    EXPECT_EQ(outcome(endlessDocument(), {.wall = std::chrono::milliseconds(200)}),
              PdfOutcome::kWallLimit);
    EXPECT_EQ(outcome(blankPage("10 10"), {.wall = std::chrono::milliseconds(-5)}),
              PdfOutcome::kWallLimit);
}

TEST_F(PdfOutcomes, TimeLimitsBeyondAllNumbersAreNoLimits) {
    EXPECT_EQ(outcome(blankPage("10 10"), {.cpu = std::chrono::seconds::max(),
                                           .wall = std::chrono::milliseconds::max(),
                                           .memoryBytes = ~std::uint64_t{0}}),
              PdfOutcome::kDrawn);
}

TEST_F(PdfOutcomes, LittleMemoryIsReportedAsTheLimit) {
    for (const std::uint64_t bytes : {std::uint64_t{0}, std::uint64_t{1} << 20}) {
        EXPECT_EQ(outcome(blankPage("100 100"), {.memoryBytes = bytes}), PdfOutcome::kMemoryLimit);
    }
}

TEST_F(PdfOutcomes, APictureLargerThanTheMemoryIsReportedAsTheLimit) {
    // 12,000 by 12,000 pixels of four bytes.
    const PdfLimits limits{.memoryBytes = std::uint64_t{500} << 20};
    EXPECT_EQ(outcome(blankPage("12000 12000"), limits), PdfOutcome::kMemoryLimit);
    EXPECT_EQ(outcome(blankPage("1200 1200"), limits), PdfOutcome::kDrawn);
}

// However little memory there is: a page is whole or it is none.
TEST_F(PdfOutcomes, MemoryThatEndsAnywhereNeverGivesHalfAPage) {
    const std::string document =
        documentOf({{"/MediaBox [0 0 300 300] /Group << /S /Transparency >>", "0 0 300 300 re f"}});
    int refused = 0;
    for (std::uint64_t megabytes = 1; megabytes <= 200; megabytes += 9) {
        SCOPED_TRACE(std::to_string(megabytes) + " MiB");
        const auto result = draw(document, {.memoryBytes = megabytes << 20});
        if (result.page) {
            EXPECT_EQ(marksOn(*result.page), (Marks{0, 0, 300, 300, true}));
        } else {
            ++refused;
            EXPECT_EQ(result.outcome, PdfOutcome::kMemoryLimit);
        }
    }
    EXPECT_GT(refused, 0);
}

}  // namespace
}  // namespace tavio::test
