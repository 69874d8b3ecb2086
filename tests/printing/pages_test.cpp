// Pages of real documents: what prevents them, and what is told of them.

#include <cstring>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pdf/answer.h"
#include "intake/picture_files.h"
#include "pdf/pdf_builder.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/document_info.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::told;

Source pdf(const std::string& document) {
    return Source::bytes(Bytes(document.begin(), document.end()), "x.pdf");
}

// As many pages, of 100 x 50 points.
std::string pages(std::size_t count) {
    return test::documentOf(
        std::vector<test::PageText>(count, {"/MediaBox [0 0 100 50]", "0 0 9 9 re f"}));
}

Lines toldOf(const std::string& document, const EncodeOptions& options = {},
             std::int32_t page = 1) {
    return told(encode(Ticket().page(pdf(document), {}, {.page = page}), options));
}

class Pages : public testing::Test {
  protected:
    Lines withHelper(const std::string& script) const {
        EncodeOptions options;
        options.helper = folder_.writeProgram("helper", script);
        return toldOf(pages(1), options);
    }

    test::DocumentFolder folder_;
};

// ---- Problems -----------------------------------------------------------------------------------

TEST_F(Pages, OfADamagedDocumentAreNotDrawn) {
    const std::string cause =
        ": x.pdf cannot be drawn: the document is not a PDF document or is damaged beyond reading";
    EXPECT_EQ(toldOf(pages(1).substr(0, 20)), Lines{"damaged 0.0" + cause});
    EXPECT_EQ(toldOf("Row F"), Lines{"unknown-format 0.0" + cause});
    EXPECT_EQ(told(encode(Ticket().page(Source::bytes(test::blackBmp(8, 8), "x.pdf")))),
              Lines{"unknown-format 0.0" + cause});
}

TEST_F(Pages, OfAnEncryptedDocumentAreNotDrawn) {
    EXPECT_EQ(toldOf(test::encryptedDocument()),
              Lines{"encrypted 0.0: x.pdf cannot be drawn: the document is encrypted and needs a "
                    "password"});
}

TEST_F(Pages, AreCountedFromOne) {
    for (const std::int32_t page : {0, -1, 4, std::numeric_limits<std::int32_t>::max()}) {
        EXPECT_EQ(toldOf(pages(3), {}, page),
                  Lines{"no-such-page 0.0: x.pdf has no page " + std::to_string(page) +
                        ", its last one is page 3"});
    }
    EXPECT_EQ(toldOf(pages(0)),
              Lines{"no-such-page 0.0: x.pdf cannot be drawn: the document has no page"});
}

TEST_F(Pages, AboveALimitAreNotDrawn) {
    const std::string opening = " 0.0: x.pdf cannot be drawn: ";
    EncodeOptions small;
    small.pageLimits.mostPointsPerSide = 99;
    EXPECT_EQ(
        toldOf(pages(1), small),
        Lines{"too-large" + opening + "the page is over the size limit, or has no size at all"});
    EncodeOptions brief;
    brief.pageLimits.wall = std::chrono::milliseconds(200);
    EXPECT_EQ(toldOf(test::endlessDocument(), brief),
              Lines{"over-time" + opening + "drawing the page went over the waiting time limit"});
    EncodeOptions tight;
    tight.pageLimits.memoryBytes = 1U << 20U;
    EXPECT_EQ(toldOf(pages(1), tight),
              Lines{"over-memory" + opening + "drawing the page went over the memory limit"});
    EXPECT_EQ(withHelper("kill -XCPU $$"),
              Lines{"over-time" + opening + "drawing the page went over the processor time limit"});
}

TEST_F(Pages, AreNotDrawnWithoutTheHelper) {
    EncodeOptions options;
    options.helper = folder_ / "nowhere";
    EXPECT_EQ(toldOf(pages(1), options),
              Lines{"helper-missing 0.0: x.pdf cannot be drawn: the program tavio-pdf-page, which "
                    "draws pages, cannot be started"});
}

TEST_F(Pages, AreNotDrawnByAHelperThatDiesOrLies) {
    const Lines failed{
        "helper-failed 0.0: x.pdf cannot be drawn: the program tavio-pdf-page, which draws pages, "
        "failed"};
    EXPECT_EQ(withHelper("kill -SEGV $$"), failed);
    EXPECT_EQ(withHelper("exit 0"), failed);
    EXPECT_EQ(withHelper("echo no answer"), failed);
    pdf::AnswerHeader header = pdf::drawnHeader(0, 0, 3, 2);
    header.pages = 1;
    header.rows = 1'000'000;
    std::string answer(sizeof header + 24, '\xFF');
    std::memcpy(answer.data(), &header, sizeof header);
    folder_.write("answer", answer);
    EXPECT_EQ(withHelper("cat '" + (folder_ / "answer") + "'"), failed);
}

// The header of a page in dots comes before its rows.
TEST_F(Pages, AreNotDrawnByAHelperThatEndsWithinTheRows) {
    pdf::AnswerHeader header;
    header.outcome = pdf::Answer::kDrawn;
    header.pages = 1;
    header.width = 36;
    header.height = 18;
    header.columns = 150;
    header.rows = 75;
    std::string answer(sizeof header + 150 * 30, '\0');
    std::memcpy(answer.data(), &header, sizeof header);
    folder_.write("answer", answer);
    const std::string begin = "cat '" + (folder_ / "answer") + "'; ";
    const std::string opening = " 0.0: x.pdf cannot be drawn: ";
    EXPECT_EQ(withHelper(begin + "kill -XCPU $$"),
              Lines{"over-time" + opening + "drawing the page went over the processor time limit"});
    EXPECT_EQ(
        withHelper(begin + "exit 1"),
        Lines{"helper-failed" + opening + "the program tavio-pdf-page, which draws pages, failed"});
}

TEST_F(Pages, AreNotTakenFromAnEngineThatThrowsOrLies) {
    const platform::PdfPage good{0, 0, 8, 8, 0, 0, test::plainPicture(8, 8, 0, 0, 0)};
    const auto with = [](const platform::PdfPage& page) {
        EncodeOptions options;
        options.pageEngine = [page](const Source&, std::int32_t) {
            return DrawnPage{{platform::PdfOutcome::kDrawn, page}, 1};
        };
        return toldOf("", options);
    };
    const Lines failed{
        "helper-failed 0.0: x.pdf cannot be drawn: the program tavio-pdf-page, which draws pages, "
        "failed"};
    EXPECT_EQ(with(good), Lines());
    for (const double side : {0.0, -8.0, std::numeric_limits<double>::quiet_NaN()}) {
        platform::PdfPage lie = good;
        lie.width = side;
        EXPECT_EQ(with(lie), failed) << side;
    }
    platform::PdfPage turned = good;
    turned.picture.orientation = 6;
    EXPECT_EQ(with(turned), failed);
    platform::PdfPage short_ = good;
    short_.picture.pixels.pop_back();
    EXPECT_EQ(with(short_), failed);

    EncodeOptions options;
    options.pageEngine = [](const Source&, std::int32_t) -> DrawnPage { throw 7; };
    EXPECT_EQ(toldOf("", options), failed);
    options.pageEngine = [](const Source&, std::int32_t) {
        return DrawnPage{{platform::PdfOutcome::kDrawn, {}}, 1};
    };
    EXPECT_EQ(toldOf("", options), failed);
    options.pageEngine = [](const Source&, std::int32_t) -> DrawnPage { throw std::bad_alloc(); };
    EXPECT_EQ(toldOf("", options), Lines{"over-memory 0.0: there is not enough memory for this"});
}

// ---- Warnings -----------------------------------------------------------------------------------

// The warnings of a ticket with these pages of a document of three.
Lines warningsOfPages(const std::vector<std::int32_t>& printed) {
    const Source document = pdf(pages(3));
    Ticket ticket;
    for (const std::int32_t page : printed) ticket.page(document, {}, {.page = page});
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    Lines lines;
    for (const Warning& warning : job ? job->warnings() : std::vector<Warning>())
        if (warning.kind == WarningKind::kMorePages) lines.push_back(told(std::vector{warning})[0]);
    return lines;
}

TEST_F(Pages, ThatAreNotPrintedAreCounted) {
    EXPECT_EQ(warningsOfPages({1}),
              Lines{"more-pages 0.0 (2): x.pdf has 3 pages, of which 2 are not printed"});
    EXPECT_EQ(warningsOfPages({3, 3}),
              Lines{"more-pages 0.0 (2): x.pdf has 3 pages, of which 2 are not printed"});
    EXPECT_EQ(warningsOfPages({2, 3}),
              Lines{"more-pages 0.0 (1): x.pdf has 3 pages, of which 1 is not printed"});
    EXPECT_EQ(warningsOfPages({1, 2, 3}), Lines());
}

TEST_F(Pages, OfAFileAreCountedOverAllTicketsAndLogos) {
    folder_.write("x.pdf", pages(2));
    const Source document = Source::file(folder_ / "x.pdf");
    const std::vector<Ticket> tickets{Ticket().document(document),
                                      Ticket().storeLogo(1, document, {.page = 2})};
    const auto job = encode(tickets);
    ASSERT_TRUE(job);
    for (const Warning& warning : job->warnings())
        EXPECT_NE(warning.kind, WarningKind::kMorePages) << warning.sentence;
}

std::string textPage(const std::string& points) {
    return test::documentOf(
        {{"/MediaBox [0 0 200 60] /Resources << /Font << /F << /Type /Font /Subtype /Type1 "
          "/BaseFont "
          "/Helvetica >> >> >>",
          "BT /F " + points + " Tf 10 20 Td (Row F) Tj ET"}});
}

TEST_F(Pages, WithSmallTextAreTold) {
    const auto warnings = [](const std::string& points, std::int32_t resolution,
                             const DrawOptions& drawing) {
        const auto job =
            encode(Ticket({.resolution = resolution}).page(pdf(textPage(points)), {}, drawing));
        EXPECT_EQ(told(job), Lines());
        Lines lines = job ? told(job->warnings()) : Lines();
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("rows-lost"); });
        return lines;
    };
    const std::string what = "small-text 0.0 ";
    const std::string cure =
        " dots in height, which is hard to read: make it larger, 14 dots or more";
    EXPECT_EQ(warnings("4.5", 200, {}), Lines{what + "(12): x.pdf has text of 12.5" + cure});
    EXPECT_EQ(warnings("5", 200, {}), Lines());
    EXPECT_EQ(warnings("3", 300, {}), Lines{what + "(12): x.pdf has text of 12.5" + cure});
    EXPECT_EQ(warnings("4", 300, {}), Lines());
    const DrawOptions classic{.classic = Classic{}};
    EXPECT_EQ(
        warnings("9", 300, classic),
        Lines{what +
              "(9): x.pdf has text of 9.0 points, which the classic way draws too coarsely to "
              "be read: draw it sharply"});
    EXPECT_EQ(warnings("14", 300, classic), Lines());
}

// ---- Inspection ---------------------------------------------------------------------------------

TEST_F(Pages, AreInspected) {
    const auto info = inspect(pdf(pages(3)), {.resolution = 200}, {10, 20}, {.page = 2});
    ASSERT_TRUE(info);
    EXPECT_EQ(info->format, Format::kPdf);
    EXPECT_EQ(info->bytes, pages(3).size());
    EXPECT_EQ(info->pages, 3);
    EXPECT_DOUBLE_EQ(info->widthInches, 100 / 72.0);
    EXPECT_DOUBLE_EQ(info->heightInches, 50 / 72.0);
    EXPECT_EQ(info->widthPixels, 0);
    EXPECT_EQ(info->dots, (Size{278, 139}));
    EXPECT_EQ(told(info->warnings),
              Lines{"more-pages 0.0 (2): x.pdf has 3 pages, of which 2 are not printed"});
}

TEST_F(Pages, ThatCannotBeDrawnAreProblemsOfInspectionToo) {
    const auto info = inspect(pdf(test::encryptedDocument()));
    ASSERT_FALSE(info);
    EXPECT_EQ(info.error().front().kind, ProblemKind::kEncrypted);
    EXPECT_EQ(inspect(pdf(pages(1)), {}, {}, {.page = 2}).error().front().kind,
              ProblemKind::kNoSuchPage);
}

}  // namespace
}  // namespace tavio::printing
