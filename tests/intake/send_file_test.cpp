// Which road a document takes, and the job state it leaves.
#include "TavioIpadSDK/intake/send_file.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/intake/logos.h"
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

const std::string kSeven = "7";

class SendingAFile : public test::FreshState {
  protected:
    SendingAFile() {
        Mode = "BT";
        platform::setPhotoLibrary(photos_);
        platform::setPdfPageSource([this](const URL& url) {
            pages_.push_back(url.absoluteText());
            return platform::PdfPageResult{};
        });
    }

    std::shared_ptr<platform::InMemoryPhotoLibrary> photos_ =
        std::make_shared<platform::InMemoryPhotoLibrary>();
    std::vector<std::string> pages_;  // asked of the page source
};

TEST_F(SendingAFile, TakesTheTextRouteForBothSpellings) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "notes.TXT", "capital");
    test::writeFile(folder / "notes.txt", "small");
    EXPECT_TRUE(SendFile(URL::fromPath(folder / "notes.TXT"), 0, 0));
    EXPECT_TRUE(SendFile(URL::fromPath(folder / "notes.txt"), 0, 0));
    EXPECT_EQ(transport().textSent(), "capitalsmall");
}

TEST_F(SendingAFile, RefusesAMixedSpellingButStillSetsTheJob) {
    const test::TemporaryFolder folder;
    test::writeFile(folder / "notes.Txt", "x");
    LogoNumber = kSeven;
    EXPECT_FALSE(SendFile(URL::fromPath(folder / "notes.Txt"), 10, 20));
    EXPECT_TRUE(transport().calls.empty());
    EXPECT_EQ(LogoNumber, "");
    EXPECT_EQ(originalx, 10);
    EXPECT_EQ(originaly, 20);
}

TEST_F(SendingAFile, RefusesANameWithoutAnExtensionItKnows) {
    for (const char* text : {"file:///notes", "file:///txt", "file:///a.pdf/notes", "file:///a.",
                             "file:///a.gif", "file:///a.Jpeg", "file:///a.Pdf", "", "file:///",
                             "file:///a?name=b.txt", "file:///a#b.pdf", "http://host.pdf"}) {
        EXPECT_FALSE(SendFile(URL::fromText(text), 0, 0)) << text;
    }
    EXPECT_TRUE(transport().calls.empty());
    EXPECT_TRUE(pages_.empty());
    EXPECT_EQ(FileName, std::nullopt);
    EXPECT_TRUE(notices.empty());
}

TEST_F(SendingAFile, ReturnsTrueForAPdfEvenWhenItIsMissing) {
    EXPECT_TRUE(SendFile(URL::fromText("file:///missing/a.pdf"), 0, 0));
    EXPECT_TRUE(SendFile(URL::fromText("file:///missing/a.PDF"), 0, 0));
    EXPECT_EQ(pages_, (std::vector<std::string>{"file:///missing/a.pdf", "file:///missing/a.PDF"}));
    EXPECT_FALSE(test::graphicsWereSent());
}

TEST_F(SendingAFile, ReturnsFalseForAPictureEvenWhenItPrints) {
    EXPECT_FALSE(SendFile(photos_->add("a.JPEG", test::blackBmp(40, 16)), 0, 0));
    EXPECT_TRUE(test::graphicsWereSent());
    EXPECT_EQ(test::printedSize(), "40 x 16");
}

TEST_F(SendingAFile, LooksEveryKindOfPictureUpInThePhotoLibrary) {
    for (const char* name :
         {"a.PNG", "a.png", "a.JPG", "a.jpg", "a.JPEG", "a.jpeg", "a.BMP", "a.bmp"}) {
        SCOPED_TRACE(name);
        transport() = {};
        const URL url = photos_->add(name, test::blackBmp(40, 16));
        EXPECT_FALSE(SendFile(url, 0, 0));
        EXPECT_EQ(FileName, url.absoluteText());
        EXPECT_EQ(transport().operations(), std::vector<std::string>{"Write_BT_Data"});
    }
    EXPECT_TRUE(pages_.empty());
}

TEST_F(SendingAFile, SetsTheJobOnEveryRoute) {
    using Limits = std::numeric_limits<std::int32_t>;
    for (const char* text : {"file:///missing/a.txt", "file:///missing/a.pdf",
                             "assets-library://asset/none.png", "file:///missing/a.gif", ""}) {
        for (const std::int32_t place : {Limits::max(), Limits::min(), 7, -7, 0}) {
            SCOPED_TRACE(text);
            LogoNumber = kSeven;
            SendFile(URL::fromText(text), place, -(place / 2));
            EXPECT_EQ(LogoNumber, "");
            EXPECT_EQ(originalx, place);
            EXPECT_EQ(originaly, -(place / 2));
        }
    }
}

TEST_F(SendingAFile, PrintsAgainAfterALogoWhateverTheExtension) {
    for (const char* text : {"file:///missing/a.gif", "file:///missing/a.txt",
                             "file:///missing/a.pdf", "assets-library://asset/none.png"}) {
        DownloadLogo(URL::fromText("file:///missing/logo.pdf"), 7);
        ASSERT_EQ(LogoNumber, "7");
        SendFile(URL::fromText(text), 0, 0);
        EXPECT_EQ(LogoNumber, "") << text;
    }
}

TEST_F(SendingAFile, PlacesThePictureAtRowAndColumn) {
    SendFile(photos_->add("a.bmp", test::blackBmp(40, 8)), 10, 20);
    const std::string sent = test::readable(transport().dataSent());
    EXPECT_EQ(sent.find("<P1><LM><RE0><DI><RC10,20><G40>"), 0U) << sent;
}

TEST_F(SendingAFile, HandsAPictureToTheTransportAlsoWithoutASession) {
    Mode = "";
    SendFile(photos_->add("a.bmp", test::blackBmp(40, 16)), 0, 0);
    EXPECT_EQ(transport().operations(), std::vector<std::string>{"Write_BT_Data"});
}

TEST_F(SendingAFile, HandsAPictureToWiFiWhenThatIsActive) {
    Mode = "WF";
    SendFile(photos_->add("a.bmp", test::blackBmp(40, 16)), 0, 0);
    EXPECT_EQ(transport().operations(), std::vector<std::string>{"Write_WF_Data"});
}

}  // namespace
}  // namespace tavio
