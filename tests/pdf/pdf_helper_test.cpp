// Any helper program: its possible answers and ends, and the environment that it gets.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/machine/open_regular_file.h"
#include "TavioIpadSDK/pdf/answer.h"
#include "TavioIpadSDK/pdf/draw_page.h"
#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using pdf::Answer;
using pdf::AnswerHeader;
using platform::DrawnPdfPage;
using platform::drawPdfPageWithHelper;
using platform::PdfLimits;
using platform::PdfOutcome;
using platform::PdfPageResult;
using platform::Url;

AnswerHeader headerOf(double width, double height) {
    AnswerHeader header = pdf::drawnHeader(0, 0, width, height);
    header.pages = 1;
    return header;
}

// A page of 3.5 by 2 points: four columns, two rows.
AnswerHeader smallHeader() {
    return headerOf(3.5, 2);
}

std::string bytesOf(const AnswerHeader& header) {
    return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

const std::string kSmallPixels(32, '\xFF');

std::string contentOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// True if the process is gone, or dead and not reaped yet by its new parent.
bool isDead(const std::string& process) {
    const std::string status = contentOf("/proc/" + process + "/stat");
    const std::size_t afterName = status.rfind(')');
    return afterName == std::string::npos || status.compare(afterName, 3, ") Z") == 0;
}

class PdfHelper : public PdfTest {
  protected:
    PdfPageResult withProgram(const std::string& program, const PdfLimits& limits = {}) const {
        return drawPdfPageWithHelper(document_, limits, program);
    }
    PdfOutcome withScript(const std::string& script, const PdfLimits& limits = {}) const {
        const PdfPageResult result = withProgram(folder_.writeProgram("helper", script), limits);
        EXPECT_EQ(result.page.has_value(), result.outcome == PdfOutcome::kDrawn);
        return result.outcome;
    }
    PdfOutcome withAnswer(const std::string& bytes, const PdfLimits& limits = {}) const {
        folder_.write("answer", bytes);
        return withScript("exec cat '" + folder_.path("answer").string() + "'", limits);
    }
    DrawnPdfPage pageWithAnswer(std::int32_t page, const std::string& bytes) const {
        folder_.write("answer", bytes);
        const std::string program =
            folder_.writeProgram("helper", "exec cat '" + folder_.path("answer").string() + "'");
        return pdf::drawPage(machine::openRegularFile(document_.fileSystemPath()), page, {},
                             program);
    }
    PdfOutcome withHeader(const std::function<void(AnswerHeader&)>& change) const {
        AnswerHeader header = smallHeader();
        change(header);
        return withAnswer(bytesOf(header) + kSmallPixels);
    }

    Url document_ = folder_.write("page.pdf", documentOf({{"/MediaBox [0 0 30 40]", ""}}));
    const PdfLimits brief_{.wall = std::chrono::milliseconds(300)};
};

TEST_F(PdfHelper, IsMissingIfItCannotBeStarted) {
    EXPECT_EQ(withProgram(folder_.path("nowhere")).outcome, PdfOutcome::kHelperMissing);
    EXPECT_EQ(withProgram(folder_.path("")).outcome, PdfOutcome::kHelperMissing);
    EXPECT_EQ(withProgram(folder_.path("page.pdf")).outcome, PdfOutcome::kHelperMissing);
    EXPECT_EQ(withScript("exit 127"), PdfOutcome::kHelperMissing) << "its libraries are missing";
}

TEST_F(PdfHelper, IsFoundByItsPath) {
    const PdfPageResult result = withProgram(TAVIO_BIN_DIR "/tavio-pdf-page");
    ASSERT_EQ(result.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(result.page->picture.height, 40);
}

TEST_F(PdfHelper, MayAnswerWithAPage) {
    std::string pixels = kSmallPixels;
    pixels[20] = '\x12';  // the red of column 1, row 1
    folder_.write("answer", bytesOf(smallHeader()) + pixels);
    const PdfPageResult result = withProgram(
        folder_.writeProgram("helper", "cat '" + folder_.path("answer").string() + "'"));
    ASSERT_EQ(result.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(result.page->width, 3.5);
    EXPECT_EQ(result.page->picture.width, 4);
    EXPECT_EQ(result.page->picture.height, 2);
    EXPECT_EQ(result.page->picture.pixels[5], 0xFFFFFF12U);
    EXPECT_EQ(result.page->picture.pixels[6], kWhite);
}

TEST_F(PdfHelper, MayRefuseADocument) {
    const std::vector<std::pair<Answer, PdfOutcome>> refusals = {
        {Answer::kNotPdf, PdfOutcome::kNotPdf},
        {Answer::kEncrypted, PdfOutcome::kEncrypted},
        {Answer::kNoPage, PdfOutcome::kNoPage},
        {Answer::kTooLarge, PdfOutcome::kTooLarge},
        {Answer::kOutOfMemory, PdfOutcome::kMemoryLimit},
        {static_cast<Answer>(6), PdfOutcome::kHelperFailed},
    };
    for (const auto& [answer, outcome] : refusals) {
        AnswerHeader header;
        header.outcome = answer;
        EXPECT_EQ(withAnswer(bytesOf(header)), outcome);
    }
}

TEST_F(PdfHelper, HasFailedIfItsAnswerIsGarbage) {
    EXPECT_EQ(withScript("echo 'Segmentation fault, or so.'"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("exec head -c 100000 /dev/zero"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("exec cat /dev/zero"), PdfOutcome::kHelperFailed);
}

TEST_F(PdfHelper, HasFailedIfItsAnswerIsCutShortAnywhere) {
    const std::string whole = bytesOf(smallHeader()) + kSmallPixels;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        SCOPED_TRACE(std::to_string(size) + " bytes");
        EXPECT_EQ(withAnswer(whole.substr(0, size)), PdfOutcome::kHelperFailed);
    }
}

TEST_F(PdfHelper, HasFailedIfMoreFollowsItsAnswer) {
    EXPECT_EQ(withAnswer(bytesOf(smallHeader()) + kSmallPixels + "x"), PdfOutcome::kHelperFailed);
}

TEST_F(PdfHelper, HasFailedIfAFieldOfItsAnswerIsOutOfForm) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<std::function<void(AnswerHeader&)>> changes = {
        [](AnswerHeader& h) { h.magic ^= 1; },
        [](AnswerHeader& h) { ++h.version; },
        [](AnswerHeader& h) { --h.version; },
        [=](AnswerHeader& h) { h.x = nan; },
        [=](AnswerHeader& h) { h.y = -infinity; },
        [=](AnswerHeader& h) { h.width = nan; },
        [=](AnswerHeader& h) { h.height = infinity; },
        [](AnswerHeader& h) { h.width = -3.5; },
        [](AnswerHeader& h) { h.height = 0; },
        [](AnswerHeader& h) { h.width = 14401; },
        [](AnswerHeader& h) { ++h.left; },
        [](AnswerHeader& h) { --h.top; },
        [](AnswerHeader& h) { --h.columns; },
        [](AnswerHeader& h) { ++h.rows; },
        [](AnswerHeader& h) { h.columns = 0; },
        [](AnswerHeader& h) { h.rows = 0xFFFFFFFF; },
    };
    EXPECT_EQ(withHeader([](AnswerHeader&) {}), PdfOutcome::kDrawn);
    for (std::size_t i = 0; i < changes.size(); ++i) {
        SCOPED_TRACE("change " + std::to_string(i));
        EXPECT_EQ(withHeader(changes[i]), PdfOutcome::kHelperFailed);
    }
}

TEST_F(PdfHelper, HasFailedIfItPromisesMorePixelsThanAPictureMayHave) {
    const AnswerHeader header = headerOf(16385, 16384);
    EXPECT_EQ(withAnswer(bytesOf(header), {.mostPointsPerSide = 1e6}), PdfOutcome::kHelperFailed);
}

TEST_F(PdfHelper, TellsThePagesOfTheDocument) {
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    for (const std::int32_t pages : {3, 70'000, kMax}) {
        AnswerHeader header = smallHeader();
        header.pages = pages;
        const DrawnPdfPage drawn = pageWithAnswer(3, bytesOf(header) + kSmallPixels);
        EXPECT_EQ(drawn.result.outcome, PdfOutcome::kDrawn);
        EXPECT_EQ(drawn.pages, pages);
    }
    for (const Answer answer : {Answer::kTooLarge, Answer::kOutOfMemory, Answer::kNotPdf}) {
        AnswerHeader header;
        header.outcome = answer;
        header.pages = 3;
        EXPECT_EQ(pageWithAnswer(3, bytesOf(header)).pages, 3);
    }
}

TEST_F(PdfHelper, HasFailedIfThePagesThatItTellsCannotBe) {
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    const std::vector<std::tuple<Answer, std::int32_t, std::int32_t>> lies = {
        {Answer::kDrawn, 1, 0},      {Answer::kDrawn, 1, -1},    {Answer::kDrawn, 1, kMin},
        {Answer::kDrawn, 4, 3},      {Answer::kDrawn, 0, 3},     {Answer::kDrawn, -1, 3},
        {Answer::kNoPage, 1, 1},     {Answer::kNoPage, 3, 3},    {Answer::kNoPage, 9, -1},
        {Answer::kEncrypted, 1, -1}, {Answer::kNotPdf, 1, kMin},
    };
    for (const auto& [answer, page, pages] : lies) {
        SCOPED_TRACE(std::to_string(static_cast<int>(answer)) + " for page " +
                     std::to_string(page) + " of " + std::to_string(pages));
        AnswerHeader header = smallHeader();
        header.outcome = answer;
        header.pages = pages;
        const DrawnPdfPage drawn = pageWithAnswer(page, bytesOf(header) + kSmallPixels);
        EXPECT_EQ(drawn.result.outcome, PdfOutcome::kHelperFailed);
        EXPECT_FALSE(drawn.result.page.has_value());
        EXPECT_EQ(drawn.pages, 0);
    }
}

TEST_F(PdfHelper, IsToldTheLimitsAndThePage) {
    const std::string note = folder_.path("note").string();
    const std::string helper = folder_.writeProgram("helper", "echo \"$*\" > '" + note + "'");
    const PdfLimits limits{
        .cpu = std::chrono::seconds(7), .memoryBytes = 123456789, .mostPointsPerSide = 99.5};
    pdf::drawPage(machine::openRegularFile(document_.fileSystemPath()), 12, limits, helper);
    EXPECT_EQ(contentOf(note), "7 123456789 99.5 12\n");
    withProgram(helper, limits);
    EXPECT_EQ(contentOf(note), "7 123456789 99.5 1\n");
}

TEST_F(PdfHelper, HasFailedIfAPixelIsNotOpaque) {
    std::string pixels = kSmallPixels;
    pixels.back() = '\xFE';
    EXPECT_EQ(withAnswer(bytesOf(smallHeader()) + pixels), PdfOutcome::kHelperFailed);
}

TEST_F(PdfHelper, HasFailedIfItDies) {
    EXPECT_EQ(withScript("exit 0"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("exit 1"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("kill -SEGV $$"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("kill -KILL $$"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("kill -XCPU $$"), PdfOutcome::kCpuLimit) << "out of processor time";
}

TEST_F(PdfHelper, IsStoppedIfItNeverAnswers) {
    EXPECT_EQ(withScript("exec sleep 1000", brief_), PdfOutcome::kWallLimit);
}

TEST_F(PdfHelper, IsStoppedIfItNeverFinishesItsAnswer) {
    folder_.write("answer", bytesOf(smallHeader()) + kSmallPixels);
    const std::string answer = folder_.path("answer").string();
    EXPECT_EQ(withScript("head -c 70 '" + answer + "'; exec sleep 1000", brief_),
              PdfOutcome::kWallLimit);
    EXPECT_EQ(withScript("cat '" + answer + "'; exec sleep 1000", brief_), PdfOutcome::kWallLimit);
}

TEST_F(PdfHelper, IsStoppedIfItClosesItsAnswerAndStays) {
    EXPECT_EQ(withScript("exec >&-; exec sleep 1000", brief_), PdfOutcome::kWallLimit);
}

TEST_F(PdfHelper, IsStoppedWithAllThatItHasStarted) {
    const std::string note = folder_.path("note").string();
    EXPECT_EQ(withScript("sleep 1000 & echo $! > '" + note + "'; wait", brief_),
              PdfOutcome::kWallLimit);
    std::string process = contentOf(note);
    ASSERT_GT(process.size(), 1U) << "the script did not get as far as its note";
    process.pop_back();
    for (int i = 0; i < 1000 && !isDead(process); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    EXPECT_TRUE(isDead(process));
}

TEST_F(PdfHelper, SeesTheDocumentAndNothingElseOfTheApplication) {
    ::setenv("TAVIO_TEST_SECRET", "1", 1);
    ::setenv("FONTCONFIG_PATH", "/etc/fonts", 1);
    // Would stay open in a new program; above the numbers that a shell uses for itself.
    const int inherited = ::fcntl(STDERR_FILENO, F_DUPFD, 50);
    ASSERT_GE(inherited, 50);
    const std::string note = folder_.path("note").string();
    EXPECT_EQ(withScript("{ env; echo /proc/$$/fd/*; cat; } > '" + note + "'"),
              PdfOutcome::kHelperFailed);
    ::close(inherited);
    ::unsetenv("FONTCONFIG_PATH");
    ::unsetenv("TAVIO_TEST_SECRET");

    const std::string seen = contentOf(note);
    EXPECT_EQ(seen.find("TAVIO_TEST_SECRET"), std::string::npos);
    EXPECT_NE(seen.find("FONTCONFIG_PATH=/etc/fonts"), std::string::npos);
    EXPECT_NE(seen.find("/fd/2"), std::string::npos);
    EXPECT_EQ(seen.find("/fd/" + std::to_string(inherited)), std::string::npos);
    EXPECT_NE(seen.find("%PDF-1.7"), std::string::npos);
}

TEST_F(PdfHelper, ServesAnApplicationWithoutStandardStreams) {
    const pid_t child = ::fork();
    if (child == 0) {
        for (int descriptor = 0; descriptor <= 2; ++descriptor) ::close(descriptor);
        const PdfPageResult result = drawPdfPageWithHelper(document_);
        ::_exit(result.outcome == PdfOutcome::kDrawn && result.page->picture.width == 30 ? 0 : 1);
    }
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

TEST_F(PdfHelper, ServesAnApplicationThatIgnoresItsChildren) {
    const auto before = std::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(drawPdfPageWithHelper(document_).outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(withScript("exit 1"), PdfOutcome::kHelperFailed);
    EXPECT_EQ(withScript("exec sleep 1000", brief_), PdfOutcome::kWallLimit);
    std::signal(SIGCHLD, before);
}

TEST_F(PdfHelper, ServesSeveralThreadsAtOnce) {
    std::vector<std::vector<PdfOutcome>> outcomes(4);
    std::vector<std::thread> threads;
    threads.reserve(outcomes.size());
    for (std::vector<PdfOutcome>& mine : outcomes) {
        threads.emplace_back([this, &mine] {
            for (int i = 0; i < 5; ++i) mine.push_back(drawPdfPageWithHelper(document_).outcome);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::vector<PdfOutcome>& mine : outcomes) {
        EXPECT_EQ(mine, std::vector<PdfOutcome>(5, PdfOutcome::kDrawn));
    }
}

}  // namespace
}  // namespace tavio::test
