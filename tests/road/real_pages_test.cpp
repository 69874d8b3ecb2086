// PDF documents on disk, drawn by the real helper program and sent down the whole road.

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/imaging/entries.h"
#include "TavioIpadSDK/imaging/state.h"
#include "pdf/pdf_builder.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

class RealPages : public test::FreshState {
  protected:
    RealPages() { OpenSessionWiFi(""); }

    // The bytes that SendFile of a one-page document gives to the transport.
    Bytes sentFor(const test::PageText& page) {
        const URL url = folder_.write("page.pdf", test::documentOf({page}));
        test::transport().calls.clear();
        EXPECT_TRUE(SendFile(url, 0, 0));
        EXPECT_EQ(noticeMessages(), std::vector<std::string>{});
        return test::transport().dataSent();
    }

    test::DocumentFolder folder_;
};

// A partly covered pixel at the canvas's edge must not become a dark line.
TEST_F(RealPages, PrintNoDotOfABlankPageOfAFractionOfAPoint) {
    for (const int resolution : {200, 300}) {
        for (const bool dithered : {true, false}) {
            for (const std::string orientation : {"<LM>", "<PM>"}) {
                SCOPED_TRACE(testing::Message()
                             << resolution << " " << dithered << " " << orientation);
                ChangeConfiguration("<P1>", resolution, false, dithered, 8, orientation);
                EXPECT_EQ(test::readable(sentFor({"/MediaBox [0 0 595.276 841.89]", ""})),
                          "<P1>" + orientation + "<RE0><DI>");
            }
        }
    }
}

TEST_F(RealPages, FollowTheCropBoxesExactSizeAndNotTheCanvasesWholePixels) {
    sentFor({"/MediaBox [0 0 595.276 841.89]", ""});
    EXPECT_EQ(imaging::mWidth, 2480);   // 595.276 / 72 x 300 = 2480.3
    EXPECT_EQ(imaging::mHeight, 3507);  // 841.89 / 72 x 300 = 3507.9
}

TEST_F(RealPages, PrintBlackWhereACropBoxThatBeginsElsewhereLeavesTheCanvasUnfilled) {
    ChangeConfiguration("<P1>", 72, false, true, 8, "<LM>");
    sentFor({"/MediaBox [0 0 612 792] /CropBox [18 24 82 88]", ""});
    EXPECT_EQ(imaging::mWidth, 64);
    EXPECT_EQ(imaging::mHeight, 64);
    for (std::size_t y = 0; y < 64; ++y) {  // rows bottom first
        const bool isBesidePage = y < 24;
        for (std::size_t x = 0; x < 64; ++x) {
            const bool isBlack = imaging::mDataArray[y * 64 + x] == imaging::BLACK;
            ASSERT_EQ(isBlack, isBesidePage || x < 18) << "row " << y << " column " << x;
        }
    }
}

TEST_F(RealPages, ReturnTrueForAMissingOrBrokenFileOfWhichNothingPrints) {
    const URL broken = folder_.write("broken.pdf", "no document");
    const URL empty = folder_.write("empty.pdf", "");
    const URL missing = URL::fromPath(folder_.path("missing.pdf").string());
    for (const URL& url : {broken, empty, missing}) {
        notices.clear();
        test::transport().calls.clear();
        EXPECT_TRUE(SendFile(url, 1, 2));
        EXPECT_EQ(noticeMessages(),
                  std::vector<std::string>{"Error - Invalid Image width/height/depth."});
        EXPECT_TRUE(test::transport().calls.empty());
    }
}

}  // namespace
}  // namespace tavio
