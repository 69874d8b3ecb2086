#include "TavioIpadSDK/intake/logos.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/intake/image_to_bmp.h"
#include "TavioIpadSDK/intake/pdf_to_bmp.h"
#include "TavioIpadSDK/intake/send_file.h"
#include "TavioIpadSDK/platform/pdf_page.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"
#include "intake/picture_files.h"
#include "intake/printed_picture.h"
#include "support/fresh_state.h"
#include "support/temporary_folder.h"

namespace tavio {
namespace {

using test::transport;
using Operations = std::vector<std::string>;
constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();

class Logos : public test::FreshState {
  protected:
    Logos() {
        Mode = "BT";
        platform::setPhotoLibrary(photos_);
        platform::setPdfPageSource([](const URL&) {
            platform::PdfPage page{0, 0, 12, 12, 0, 0, test::plainPicture(12, 12, 0, 0, 0)};
            return platform::PdfPageResult{platform::PdfOutcome::kDrawn, std::move(page)};
        });
    }
    URL photo() { return photos_->add("a.jpg", test::blackBmp(40, 24)); }
    static URL page() { return URL::fromText("file:///a.pdf"); }

    std::shared_ptr<platform::InMemoryPhotoLibrary> photos_ =
        std::make_shared<platform::InMemoryPhotoLibrary>();
};

// ---- Storing ------------------------------------------------------------------------------------

TEST_F(Logos, AreStoredFromAPdfWhichReturnsTrue) {
    EXPECT_TRUE(DownloadLogo(page(), 5));
    EXPECT_EQ(transport().operations(), (Operations{"Write_BT", "Write_BT_Data"}));
    EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><5>\x1B");
    EXPECT_EQ(transport().dataSent().back(), 27);
    EXPECT_TRUE(test::graphicsWereSent());
}

TEST_F(Logos, AreStoredFromAPictureWhichReturnsFalse) {
    EXPECT_FALSE(DownloadLogo(photo(), 5));
    EXPECT_EQ(transport().operations(), (Operations{"Write_BT", "Write_BT_Data"}));
    EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><5>\x1B");
    EXPECT_EQ(transport().dataSent().back(), 27);
    EXPECT_TRUE(test::graphicsWereSent());
}

TEST_F(Logos, GoOverWiFiWhenItIsActive) {
    Mode = "WF";
    EXPECT_TRUE(DownloadLogo(page(), 5));
    EXPECT_EQ(transport().operations(), (Operations{"Write_WF", "Write_WF_Data"}));
}

// Texts are dropped without a session and raw data goes to Bluetooth, so half of a logo is sent.
TEST_F(Logos, AreHalfSentWithoutASession) {
    Mode = "";
    EXPECT_TRUE(DownloadLogo(page(), 5));
    EXPECT_FALSE(DownloadLogo(photo(), 5));
    EXPECT_EQ(transport().operations(), (Operations{"Write_BT_Data", "Write_BT_Data"}));
}

TEST_F(Logos, AreNotMadeOfATextButItsNumberIsKept) {
    const test::TemporaryFolder folder;
    for (const char* name : {"a.txt", "a.TXT"}) {
        test::writeFile(folder / name, "x");
        LogoNumber.clear();
        EXPECT_FALSE(DownloadLogo(URL::fromPath(folder / name), 9));
        EXPECT_EQ(LogoNumber, "9");
    }
    EXPECT_TRUE(transport().calls.empty());
    EXPECT_TRUE(notices.empty());
}

TEST_F(Logos, AreNotMadeOfAnExtensionWithoutARouteButTheirNumberIsKept) {
    for (const char* text : {"file:///a.Pdf", "file:///a.gif", "file:///a", "", "file:///a.Jpeg"}) {
        LogoNumber.clear();
        EXPECT_FALSE(DownloadLogo(URL::fromText(text), -12)) << text;
        EXPECT_EQ(LogoNumber, "-12") << text;
    }
    EXPECT_TRUE(transport().calls.empty());
}

TEST_F(Logos, TakeTheRoutesOfPrintingInBothSpellings) {
    for (const char* name :
         {"a.PNG", "a.png", "a.JPG", "a.jpg", "a.JPEG", "a.jpeg", "a.BMP", "a.bmp"}) {
        transport() = {};
        EXPECT_FALSE(DownloadLogo(photos_->add(name, test::blackBmp(40, 24)), 1)) << name;
        EXPECT_TRUE(test::graphicsWereSent()) << name;
    }
    for (const char* text : {"file:///a.pdf", "file:///a.PDF"})
        EXPECT_TRUE(DownloadLogo(URL::fromText(text), 1)) << text;
}

TEST_F(Logos, MayHaveAnyNumber) {
    const std::pair<std::int32_t, std::string> numbers[] = {
        {5, "5"}, {-12, "-12"}, {0, "0"}, {kMax, "2147483647"}, {kMin, "-2147483648"}};
    for (const auto& [number, text] : numbers) {
        transport() = {};
        DownloadLogo(page(), number);
        EXPECT_EQ(LogoNumber, text);
        EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><" + text + ">\x1B");
    }
}

TEST_F(Logos, NumberedZeroAreStoredAndNotPrinted) {
    DownloadLogo(photo(), 0);
    EXPECT_EQ(LogoNumber, "0");
    EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><0>\x1B");
}

TEST_F(Logos, LeaveThePlaceOfTheJobAloneUntilTheyAreEncoded) {
    originalx = 10;
    originaly = 20;
    DownloadLogo(URL::fromText("file:///a.gif"), 1);
    EXPECT_EQ(originalx, 10);
    EXPECT_EQ(originaly, 20);
    DownloadLogo(photo(), 1);
    EXPECT_EQ(originalx, 0);
    EXPECT_EQ(originaly, 0);
}

TEST_F(Logos, StayTheJobOfALaterUseOfTheRoutesThemselves) {
    DownloadLogo(URL::fromText("file:///a.gif"), 3);
    intake::ImageToBmp(photo());
    intake::PdfToBmp(page());
    EXPECT_EQ(transport().textSent(), "<RE0><DI><RC0,0><3>\x1B<RE0><DI><RC0,0><3>\x1B");
}

TEST_F(Logos, AreFollowedByANormalPrint) {
    DownloadLogo(photo(), 3);
    transport() = {};
    SendFile(photo(), 10, 20);
    EXPECT_EQ(LogoNumber, "");
    EXPECT_EQ(transport().operations(), Operations{"Write_BT_Data"});
    const std::string sent = test::readable(transport().dataSent());
    EXPECT_EQ(sent.find("<P1><LM><RE0><DI><RC10,20>"), 0U) << sent;
}

TEST_F(Logos, ThatCannotBeLoadedSendNothingAtAll) {
    DownloadLogo(URL::fromText("assets-library://asset/none.png"), 3);
    EXPECT_TRUE(transport().calls.empty());
    EXPECT_EQ(noticeMessages(), std::vector<std::string>{test::kNoPictureNotice});
    EXPECT_EQ(LogoNumber, "3");
}

// ---- Printing -----------------------------------------------------------------------------------

TEST_F(Logos, ArePrintedByOneCommandAndNothingElse) {
    EXPECT_TRUE(PrintLogo(2, 100, 250));
    EXPECT_EQ(transport().calls,
              (std::vector<test::TransportCall>{{"Write_BT", "<SP100,250><LD2>", {}}}));
}

TEST_F(Logos, ArePrintedWhateverTheNumbers) {
    struct Example {
        std::int32_t number;
        std::int32_t row;
        std::int32_t column;
        const char* command;
    };
    const Example examples[] = {
        {7, 0, 0, "<SP0,0><LD7>"},
        {-1, 0, 5, "<SP0,5><LD-1>"},
        {kMin, kMax, kMin, "<SP2147483647,-2147483648><LD-2147483648>"},
        {kMax, -1, 1000000, "<SP-1,1000000><LD2147483647>"},
    };
    for (const Example& example : examples) {
        transport() = {};
        EXPECT_TRUE(PrintLogo(example.number, example.row, example.column));
        EXPECT_EQ(transport().textSent(), example.command);
        EXPECT_EQ(transport().calls.size(), 1U);
    }
}

TEST_F(Logos, ArePrintedOverTheActiveTransportAndTrueIsReturnedWithoutOne) {
    Mode = "WF";
    EXPECT_TRUE(PrintLogo(1, 2, 3));
    Mode = "";
    EXPECT_TRUE(PrintLogo(1, 2, 3));
    EXPECT_EQ(transport().operations(), Operations{"Write_WF"});
}

TEST_F(Logos, ArePrintedWithoutChangingTheJob) {
    LogoNumber = "4";
    originalx = 10;
    originaly = 20;
    PrintLogo(1, 2, 3);
    EXPECT_EQ(LogoNumber, "4");
    EXPECT_EQ(originalx, 10);
    EXPECT_EQ(originaly, 20);
}

}  // namespace
}  // namespace tavio
