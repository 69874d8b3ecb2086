// The rows of a page while they are sent: by any program, and by one that ends before its time.
#include <chrono>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pictures/picture_rows.h"
#include "pdf/sharp_page_fixture.h"

namespace tavio::test {
namespace {

using pdf::AnswerHeader;
using platform::PdfLimits;
using platform::PdfOutcome;
using sharp::SharpPage;

// Of a page of 4 by 3 points at one dot a point.
AnswerHeader smallHeader() {
    AnswerHeader header;
    header.outcome = pdf::Answer::kDrawn;
    header.pages = 1;
    header.width = 4;
    header.height = 3;
    header.columns = 4;
    header.rows = 3;
    return header;
}

std::string textOf(const AnswerHeader& header) {
    return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

const std::string kSmallRows = "abcdefghijkl";

class SharpRows : public SharpPageTest {
  protected:
    SharpPage withScript(const std::string& script, const PdfLimits& limits = {}) const {
        return sharp::drawPage(bytesOf(kDocument), atOwnSize(), limits,
                               folder_.writeProgram("helper", script));
    }
    std::string answering(const std::string& answer,
                          const std::string& command = "exec cat") const {
        folder_.write("answer", answer);
        return command + " '" + folder_.path("answer").string() + "'";
    }
    // The error of reading all rows.
    static std::string damage(SharpPage page) {
        if (!page.rows) return "no rows: " + platform::describe(page.outcome);
        try {
            readAll(*page.rows);
        } catch (const pictures::DamagedPicture& damage) {
            EXPECT_TRUE(page.rows->next(1).empty()) << "no more rows after damage";
            return damage.what();
        }
        return "";
    }

    const std::string kDocument = documentOf({{"/MediaBox [0 0 4 3]", ""}});
    const PdfLimits brief_{.wall = std::chrono::milliseconds(300)};
};

TEST_F(SharpRows, AreThoseOfTheAnswer) {
    SharpPage page = withScript(answering(textOf(smallHeader()) + kSmallRows));
    ASSERT_EQ(page.outcome, PdfOutcome::kDrawn);
    const PageDots dots = readAll(*page.rows);
    EXPECT_EQ(dots.width, 4);
    EXPECT_EQ(dots.height, 3);
    EXPECT_EQ(std::string(dots.dots.begin(), dots.dots.end()), kSmallRows);
    EXPECT_TRUE(page.rows->next(1).empty());
}

TEST_F(SharpRows, HaveFailedIfTheHeaderCannotBe) {
    const std::vector<std::function<void(AnswerHeader&)>> changes = {
        [](AnswerHeader& header) { header.magic ^= 1; },
        [](AnswerHeader& header) { --header.version; },
        [](AnswerHeader& header) { header.pages = 0; },
        [](AnswerHeader& header) { header.width = 5; },
        [](AnswerHeader& header) { header.height = 0; },
        [](AnswerHeader& header) { header.width = std::nan(""); },
        [](AnswerHeader& header) { header.width = header.columns = 100'000; },
        [](AnswerHeader& header) { ++header.columns; },
        [](AnswerHeader& header) { --header.rows; },
        [](AnswerHeader& header) { header.left = 1; },
        [](AnswerHeader& header) { header.top = -1; },
        [](AnswerHeader& header) { header.smallestText = -1; },
        [](AnswerHeader& header) { header.smallestText = std::nan(""); },
    };
    for (std::size_t i = 0; i < changes.size(); ++i) {
        AnswerHeader header = smallHeader();
        changes[i](header);
        const SharpPage page = withScript(answering(textOf(header) + kSmallRows));
        EXPECT_EQ(page.outcome, PdfOutcome::kHelperFailed) << "change " << i;
        EXPECT_EQ(page.rows, nullptr);
    }
}

TEST_F(SharpRows, AreDamagedIfTheAnswerIsTooShortOrTooLong) {
    const std::string failed = platform::describe(PdfOutcome::kHelperFailed);
    const std::string answer = textOf(smallHeader()) + kSmallRows;
    EXPECT_EQ(damage(withScript(answering(answer))), "");
    EXPECT_EQ(damage(withScript(answering(answer.substr(0, answer.size() - 1)))), failed);
    EXPECT_EQ(damage(withScript(answering(answer + "m"))), failed);
    EXPECT_EQ(damage(withScript(answering(textOf(smallHeader())))), failed);
}

TEST_F(SharpRows, AreDamagedIfTheProgramIsKilledAmongThem) {
    const std::string part = answering(textOf(smallHeader()) + "abcde", "cat");
    EXPECT_EQ(damage(withScript(part + "; kill -SEGV $$")),
              platform::describe(PdfOutcome::kHelperFailed));
    EXPECT_EQ(damage(withScript(part + "; kill -XCPU $$")),
              platform::describe(PdfOutcome::kCpuLimit));
}

TEST_F(SharpRows, AreDamagedIfTheyTakeTooLong) {
    const std::string late = platform::describe(PdfOutcome::kWallLimit);
    const std::string part = answering(textOf(smallHeader()) + "abcde", "cat");
    EXPECT_EQ(damage(withScript(part + "; exec sleep 1000", brief_)), late);
    const std::string all = answering(textOf(smallHeader()) + kSmallRows, "cat");
    EXPECT_EQ(damage(withScript(all + "; exec sleep 1000", brief_)), late);
}

TEST_F(SharpRows, ThatAreDroppedLeaveNoProcess) {
    const std::string part = answering(textOf(smallHeader()) + "abcde", "cat");
    SharpPage unread = withScript(part + "; exec sleep 1000");
    EXPECT_EQ(unread.outcome, PdfOutcome::kDrawn);
    SharpPage begun = withScript(part + "; exec sleep 1000");
    ASSERT_EQ(begun.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(begun.rows->next(1).size(), 4U);
}

TEST_F(SharpRows, AreAskedForWithTheLimitsAndTheBox) {
    const std::string note = folder_.path("note").string();
    const PdfLimits limits{
        .cpu = std::chrono::seconds(7), .memoryBytes = 123456789, .mostPointsPerSide = 99.5};
    sharp::drawPage(bytesOf(kDocument), {12, 203, {sharp::Fit::kCover, sharp::Turn::k180, 40, 50}},
                    limits, folder_.writeProgram("helper", "echo \"$*\" > '" + note + "'"));
    EXPECT_EQ(readFile(note), "7 123456789 99.5 12 203 2 3 40 50\n");
}

TEST_F(SharpRows, OfNoSensibleBoxHaveFailed) {
    for (const sharp::PageOrder& order :
         {sharp::PageOrder{1, 0, {sharp::Fit::kActual, sharp::Turn::k0, 1, 1}},
          sharp::PageOrder{1, 72, {sharp::Fit::kContain, sharp::Turn::k0, 0, 1}},
          sharp::PageOrder{1, 72, {sharp::Fit::kContain, sharp::Turn::k0, 1, -1}}}) {
        EXPECT_EQ(sharp::drawPage(bytesOf(kDocument), order).outcome, PdfOutcome::kHelperFailed);
    }
}

TEST_F(SharpRows, OfMoreDotsThanCanBeDrawnAreTooLarge) {
    for (const std::string size : {"14400 1", "1 14400", "14400 14400"}) {
        const std::string document = documentOf({{"/MediaBox [0 0 " + size + "]", ""}});
        EXPECT_EQ(sharp::drawPage(bytesOf(document), atOwnSize(20'000)).outcome,
                  PdfOutcome::kTooLarge);
    }
}

}  // namespace
}  // namespace tavio::test
