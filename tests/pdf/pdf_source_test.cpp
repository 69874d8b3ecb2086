// The source of the library's pages, and the descriptions of outcomes.
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "pdf/pdf_fixture.h"

namespace tavio::test {
namespace {

using platform::drawPdfPage;
using platform::PdfOutcome;
using platform::PdfPage;
using platform::PdfPageResult;
using platform::setPdfPageSource;
using platform::Url;

class PdfSource : public PdfTest {
  protected:
    void TearDown() override {
        setPdfPageSource({});
        PdfTest::TearDown();
    }
};

TEST_F(PdfSource, IsTheHelperByDefault) {
    const Url url = folder_.write("page.pdf", documentOf({{"/MediaBox [0 0 30 40]", ""}}));
    const PdfPageResult result = drawPdfPage(url);
    ASSERT_EQ(result.outcome, PdfOutcome::kDrawn);
    EXPECT_EQ(result.page->picture.width, 30);
    EXPECT_EQ(drawPdfPage(Url::fromPath("/missing.pdf")).outcome, PdfOutcome::kUnreadable);
}

TEST_F(PdfSource, IsAskedWithTheUrlAndMayBeTakenBack) {
    std::string asked;
    setPdfPageSource([&asked](const Url& url) -> PdfPageResult {
        asked = url.absoluteText();
        PdfPage page;
        page.width = 7;
        return {PdfOutcome::kDrawn, page};
    });
    const PdfPageResult result = drawPdfPage(Url::fromText("memory:ticket"));
    EXPECT_EQ(asked, "memory:ticket");
    ASSERT_TRUE(result.page.has_value());
    EXPECT_EQ(result.page->width, 7);

    setPdfPageSource({});
    EXPECT_EQ(drawPdfPage(Url::fromText("memory:ticket")).outcome, PdfOutcome::kUnreadable);
}

TEST_F(PdfSource, ThatThrowsHasFailed) {
    setPdfPageSource([](const Url&) -> PdfPageResult { throw std::runtime_error("no engine"); });
    EXPECT_EQ(drawPdfPage(Url()).outcome, PdfOutcome::kHelperFailed);
    setPdfPageSource([](const Url&) -> PdfPageResult { throw 5; });
    EXPECT_EQ(drawPdfPage(Url()).outcome, PdfOutcome::kHelperFailed);
}

TEST_F(PdfSource, WhoseOutcomeAndPageDisagreeHasFailed) {
    setPdfPageSource([](const Url&) { return PdfPageResult{PdfOutcome::kDrawn, std::nullopt}; });
    EXPECT_EQ(drawPdfPage(Url()).outcome, PdfOutcome::kHelperFailed);
    setPdfPageSource([](const Url&) { return PdfPageResult{PdfOutcome::kNoPage, PdfPage{}}; });
    const PdfPageResult result = drawPdfPage(Url());
    EXPECT_EQ(result.outcome, PdfOutcome::kHelperFailed);
    EXPECT_FALSE(result.page.has_value());
}

TEST_F(PdfSource, WhosePictureHoldsFewerPixelsThanItSaysHasFailed) {
    for (const auto& [width, height] :
         {std::pair{3, 2}, std::pair{-1, -5}, std::pair{1 << 30, 4}}) {
        PdfPage page;
        page.picture.width = width;
        page.picture.height = height;
        page.picture.pixels.resize(5);
        setPdfPageSource([page](const Url&) { return PdfPageResult{PdfOutcome::kDrawn, page}; });
        EXPECT_EQ(drawPdfPage(Url()).outcome, PdfOutcome::kHelperFailed);
    }
}

TEST(PdfOutcomeText, IsOneSentenceOfItsOwnForEachOutcome) {
    std::set<std::string> texts;
    for (int i = 0; i <= static_cast<int>(PdfOutcome::kHelperFailed); ++i) {
        const std::string text = describe(static_cast<PdfOutcome>(i));
        EXPECT_TRUE(texts.insert(text).second) << text;
        EXPECT_GT(text.size(), 15U);
        EXPECT_EQ(text.find_first_of(".\n"), std::string::npos) << text;
    }
    EXPECT_EQ(describe(PdfOutcome::kEncrypted), "the document is encrypted and needs a password");
}

TEST(PdfOutcomeText, NamesTheLimitThatWasReached) {
    EXPECT_NE(describe(PdfOutcome::kTooLarge).find("size limit"), std::string::npos);
    EXPECT_NE(describe(PdfOutcome::kCpuLimit).find("processor time limit"), std::string::npos);
    EXPECT_NE(describe(PdfOutcome::kWallLimit).find("waiting time limit"), std::string::npos);
    EXPECT_NE(describe(PdfOutcome::kMemoryLimit).find("memory limit"), std::string::npos);
}

}  // namespace
}  // namespace tavio::test
