// Documents of which many pages are drawn.
#include "TavioIpadSDK/pdf/open_document.h"

#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "pdf/sharp_page_fixture.h"

namespace tavio::test {
namespace {

using platform::PdfLimits;
using platform::PdfOutcome;

const std::string kHelper = TAVIO_BIN_DIR "/tavio-pdf-page";

class OpenDocuments : public SharpPageTest {
  protected:
    // The first question of a process is not asked of a kept program.
    void SetUp() override { drawnDots(marked_, atOwnSize()); }

    // What one page comes to: its dots, or the reason why there are none.
    static std::string contentOf(sharp::SharpPage page) {
        if (!page.rows) return platform::describe(page.outcome) + std::to_string(page.pages);
        const PageDots dots = readAll(*page.rows);
        return {dots.dots.begin(), dots.dots.end()};
    }

    static sharp::PageOrder order(std::int32_t page, std::int32_t resolution = 100) {
        sharp::PageOrder order = atOwnSize(resolution);
        order.page = page;
        return order;
    }

    static std::string alone(const std::string& document, std::int32_t page,
                             const PdfLimits& limits = {}) {
        return contentOf(sharp::drawPage(bytesOf(document), order(page), limits, kHelper));
    }

    static std::string kept(const std::string& document, std::int32_t page,
                            const PdfLimits& limits = {}) {
        return contentOf(sharp::drawPage(bytesOf(document), order(page), limits));
    }

    const std::string marked_ = documentOf({{"/MediaBox [0 0 40 20]", "0 16 8 4 re f"}});
    const std::string pages_ = documentOf({
        {"/MediaBox [0 0 40 20]", "0 16 8 4 re f"},
        {"/MediaBox [0 0 30 50]", "1 0 0 rg 5 5 20 20 re f 0 0 m 30 50 l S"},
        {"/MediaBox [0 0 60 60] /Resources << /Font << /F << /Type /Font /Subtype /Type1 "
         "/BaseFont /Helvetica >> >> >>",
         "BT /F 20 Tf 5 5 Td (Row F) Tj ET"},
    });
};

TEST_F(OpenDocuments, HaveThePagesOfAProgramThatIsStartedForEach) {
    pdf::OpenDocument document(bytesOf(pages_));
    for (const std::int32_t page : {1, 2, 3, 3, 2, 1, 4, 0}) {
        SCOPED_TRACE(page);
        const std::string expected = alone(pages_, page);
        EXPECT_EQ(contentOf(sharp::drawPage(document, order(page))), expected);
        EXPECT_EQ(kept(pages_, page), expected);
    }
}

TEST_F(OpenDocuments, AreRefusedAsAProgramOfItsOwnRefusesThem) {
    for (const std::string& bytes :
         {std::string("A ticket."), std::string(), encryptedDocument()}) {
        pdf::OpenDocument document(bytesOf(bytes));
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(contentOf(sharp::drawPage(document, order(1))), alone(bytes, 1));
        }
    }
}

TEST_F(OpenDocuments, AndKeptProgramsGiveGoodPagesBetweenBadOnes) {
    const std::string good = alone(pages_, 3);
    const PdfLimits limits{.cpu = std::chrono::seconds(1)};
    pdf::OpenDocument document(bytesOf(pages_));
    pdf::OpenDocument endless(bytesOf(endlessDocument()), limits);
    const auto expectGood = [&] {
        EXPECT_EQ(contentOf(sharp::drawPage(document, order(3))), good);
        EXPECT_EQ(kept(pages_, 3), good);
    };
    expectGood();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(sharp::drawPage(endless, order(1)).outcome, PdfOutcome::kCpuLimit);
        expectGood();
    }
    EXPECT_EQ(sharp::drawPage(bytesOf(endlessDocument()), order(1), limits).outcome,
              PdfOutcome::kCpuLimit);
    expectGood();
    const PdfLimits brief{.wall = std::chrono::milliseconds(100)};
    EXPECT_EQ(sharp::drawPage(bytesOf(endlessDocument()), order(1), brief).outcome,
              PdfOutcome::kWallLimit);
    expectGood();
    const PdfLimits tight{.memoryBytes = std::uint64_t{1} << 20U};
    EXPECT_EQ(sharp::drawPage(bytesOf(pages_), order(1), tight).outcome, PdfOutcome::kMemoryLimit);
    expectGood();
}

TEST_F(OpenDocuments, AreDrawnByManyThreadsAtOnce) {
    pdf::OpenDocument document(bytesOf(pages_));
    const std::vector<std::string> expected = {alone(pages_, 1), alone(pages_, 2),
                                               alone(pages_, 3)};
    std::vector<int> good(3);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < good.size(); ++i) {
        threads.emplace_back([&, i] {
            for (int turn = 0; turn < 8; ++turn) {
                const std::size_t page = (i + static_cast<std::size_t>(turn)) % 3;
                const std::string content = contentOf(
                    sharp::drawPage(document, order(static_cast<std::int32_t>(page) + 1)));
                good[i] += content == expected[page] ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(good, std::vector<int>(3, 8));
}

TEST_F(OpenDocuments, AreNotNeededByRowsThatAreBeingDrawn) {
    sharp::SharpPage page;
    {
        pdf::OpenDocument document(bytesOf(pages_));
        sharp::drawPage(document, order(1));
        page = sharp::drawPage(document, order(3, 3000));
    }
    ASSERT_EQ(page.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(readAll(*page.rows).height, 2500);
}

}  // namespace
}  // namespace tavio::test
