// Any page of a document, from a file and from memory, and the number of pages.
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <span>
#include <string>
#include <sys/resource.h>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/descriptor.h"
#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/pdf/draw_page.h"
#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using machine::Descriptor;
using platform::DrawnPdfPage;
using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPage;

std::string sampleFile(const std::string& name) {
    return std::string(TAVIO_CORPUS_DIR "/pdf/") + name;
}

void expectSame(const DrawnPdfPage& one, const DrawnPdfPage& other) {
    EXPECT_EQ(one.pages, other.pages);
    EXPECT_EQ(one.result.outcome, other.result.outcome);
    ASSERT_EQ(one.result.page.has_value(), other.result.page.has_value());
    if (!one.result.page) return;
    const PdfPage& page = *one.result.page;
    const PdfPage& twin = *other.result.page;
    EXPECT_EQ(std::tie(page.x, page.y, page.width, page.height, page.left, page.top),
              std::tie(twin.x, twin.y, twin.width, twin.height, twin.left, twin.top));
    EXPECT_EQ(page.picture.width, twin.picture.width);
    EXPECT_EQ(page.picture.height, twin.picture.height);
    EXPECT_EQ(page.picture.pixels, twin.picture.pixels);
}

class PdfPages : public PdfTest {
  protected:
    // Page `page` of the document, from a file and from memory: the same.
    DrawnPdfPage drawBoth(const std::string& document, std::int32_t page,
                          const PdfLimits& limits = {}) const {
        const platform::Url url = folder_.write("document.pdf", document);
        const Descriptor file = machine::openRegularFile(url.fileSystemPath());
        DrawnPdfPage drawn = pdf::drawPage(file, page, limits);
        expectSame(drawn, pdf::drawPage(bytesOf(document), page, limits));
        EXPECT_EQ(drawn.result.page.has_value(), drawn.result.outcome == PdfOutcome::kDrawn);
        return drawn;
    }

    // Each page has a size and a rectangle of its own.
    const std::string three_ =
        documentOf({{"/MediaBox [0 0 30 40]", "1 2 3 4 re f"},
                    {"/MediaBox [0 0 50 60] /CropBox [5 5 45 55]", "20 30 7 8 re f"},
                    {"/MediaBox [-10 -10 10 10]", "-5 -5 1 2 re f"}});
};

TEST_F(PdfPages, AreDrawnByTheirNumber) {
    const std::vector<Marks> marks = {
        {1, 34, 3, 4, true}, {20, 12, 7, 8, true}, {-5, 23, 1, 2, true}};
    const std::vector<std::pair<int, int>> sizes = {{30, 40}, {40, 50}, {20, 20}};
    for (std::int32_t page = 1; page <= 3; ++page) {
        SCOPED_TRACE("page " + std::to_string(page));
        const auto index = static_cast<std::size_t>(page - 1);
        const DrawnPdfPage drawn = drawBoth(three_, page);
        EXPECT_EQ(drawn.pages, 3);
        ASSERT_EQ(drawn.result.outcome, PdfOutcome::kDrawn);
        EXPECT_EQ(std::pair(drawn.result.page->picture.width, drawn.result.page->picture.height),
                  sizes[index]);
        EXPECT_EQ(marksOn(*drawn.result.page), marks[index]);
    }
}

TEST_F(PdfPages, ThatDoNotExistAreRefusedWithTheNumberOfThoseThatDo) {
    using Limits = std::numeric_limits<std::int32_t>;
    for (const std::int32_t page : {0, -1, 4, 5, Limits::max(), Limits::min()}) {
        SCOPED_TRACE("page " + std::to_string(page));
        const DrawnPdfPage drawn = drawBoth(three_, page);
        EXPECT_EQ(drawn.result.outcome, PdfOutcome::kNoPage);
        EXPECT_EQ(drawn.pages, 3);
    }
    EXPECT_EQ(drawBoth(documentOf({}), 1).result.outcome, PdfOutcome::kNoPage);
    EXPECT_EQ(drawBoth(documentOf({}), 1).pages, 0);
}

TEST_F(PdfPages, AreCountedAlsoIfTheOneIsTooLarge) {
    const std::string document =
        documentOf({{"/MediaBox [0 0 20000 10]", ""}, {"/MediaBox [0 0 20 10]", ""}});
    EXPECT_EQ(drawBoth(document, 1).result.outcome, PdfOutcome::kTooLarge);
    EXPECT_EQ(drawBoth(document, 1).pages, 2);
    EXPECT_EQ(drawBoth(document, 2).result.outcome, PdfOutcome::kDrawn);
}

TEST_F(PdfPages, OfADocumentThatCannotBeReadAreNotKnown) {
    const std::vector<std::pair<std::string, PdfOutcome>> documents = {
        {encryptedDocument(), PdfOutcome::kEncrypted},
        {"", PdfOutcome::kNotPdf},
        {"A ticket, one row, one seat.\n", PdfOutcome::kNotPdf},
        {three_.substr(0, 40), PdfOutcome::kNotPdf},
    };
    for (const auto& [document, outcome] : documents) {
        SCOPED_TRACE(document);
        const DrawnPdfPage drawn = drawBoth(document, 1);
        EXPECT_EQ(drawn.result.outcome, outcome);
        EXPECT_EQ(drawn.pages, 0);
    }
}

TEST_F(PdfPages, OfNoFileAreUnreadable) {
    const DrawnPdfPage drawn = pdf::drawPage(Descriptor(), 1);
    EXPECT_EQ(drawn.result.outcome, PdfOutcome::kUnreadable);
    EXPECT_EQ(drawn.pages, 0);
}

TEST_F(PdfPages, DoNotDependOnTheOffsetOfTheFile) {
    const platform::Url url = folder_.write("document.pdf", three_);
    const Descriptor file = machine::openRegularFile(url.fileSystemPath());
    ASSERT_GT(::lseek(file.get(), 0, SEEK_END), 0);
    for (std::int32_t page = 1; page <= 3; ++page) {
        expectSame(pdf::drawPage(file, page), pdf::drawPage(bytesOf(three_), page));
    }
}

TEST_F(PdfPages, HoldTheirLimitsFromMemoryToo) {
    EXPECT_EQ(drawBoth(three_, 2, {.memoryBytes = 1U << 20U}).result.outcome,
              PdfOutcome::kMemoryLimit);
    EXPECT_EQ(drawBoth(three_, 2, {.wall = std::chrono::milliseconds(0)}).result.outcome,
              PdfOutcome::kWallLimit);
    EXPECT_EQ(drawBoth(three_, 2, {.mostPointsPerSide = 45}).result.outcome, PdfOutcome::kTooLarge);
}

TEST_F(PdfPages, NeedAHelperFromMemoryToo) {
    const std::string nowhere = folder_.path("nowhere").string();
    EXPECT_EQ(pdf::drawPage(bytesOf(three_), 1, {}, nowhere).result.outcome,
              PdfOutcome::kHelperMissing);
}

TEST_F(PdfPages, AreHandedToTheHelperInAFileThatNobodyCanChange) {
    const std::string note = folder_.path("note").string();
    const std::string helper = folder_.writeProgram(
        "helper", "{ cat /proc/self/fd/0; echo x; } > '" + note +
                      "'; { echo y >> /proc/self/fd/0; } 2>/dev/null || echo sealed >> '" + note +
                      "'");
    pdf::drawPage(bytesOf("%PDF-1.7\n"), 1, {}, helper);
    EXPECT_EQ(readFile(note), "%PDF-1.7\nx\nsealed\n");
}

TEST_F(PdfPages, OfBytesAreRefusedIfNoFileCanBeOpened) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const DrawnPdfPage drawn = pdf::drawPage(bytesOf(three_), 1);
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(drawn.result.outcome, PdfOutcome::kHelperMissing);
}

TEST_F(PdfPages, OfRealDocumentsAreCounted) {
    for (const std::int32_t pages : {1, 4, 8}) {
        const std::string path = sampleFile("test_file_" + std::to_string(pages) + "pg.pdf");
        if (!std::filesystem::exists(path)) GTEST_SKIP() << "no sample documents on this machine";
        const std::string document = readFile(path);
        EXPECT_EQ(drawBoth(document, pages).result.outcome, PdfOutcome::kDrawn);
        EXPECT_EQ(drawBoth(document, pages).pages, pages);
        EXPECT_EQ(drawBoth(document, pages + 1).result.outcome, PdfOutcome::kNoPage);
        EXPECT_EQ(drawBoth(document, pages + 1).pages, pages);
    }
}

}  // namespace
}  // namespace tavio::test
