// Photos of the photo library, and the sources that are never read instead.
#include "TavioIpadSDK/intake/image_to_bmp.h"

#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/imaging/state.h"
#include "TavioIpadSDK/intake/send_file.h"
#include "TavioIpadSDK/platform/notice.h"
#include "TavioIpadSDK/platform/photo_library.h"
#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/job.h"
#include "TavioIpadSDK/settings/settings.h"
#include "intake/picture_files.h"
#include "intake/printed_picture.h"
#include "support/fresh_state.h"
#include "support/temporary_folder.h"

namespace tavio::intake {
namespace {

using test::Rows;
using test::transport;

class PhotoPrinting : public test::FreshState {
  protected:
    PhotoPrinting() {
        Mode = "BT";
        platform::setPhotoLibrary(photos_);
    }

    URL blackPhoto(std::size_t width, std::size_t height) {
        return photos_->add("a.bmp", test::blackBmp(width, height));
    }

    void expectRefused() {
        EXPECT_EQ(noticeMessages(), std::vector<std::string>{test::kNoPictureNotice});
        EXPECT_TRUE(transport().calls.empty());
        EXPECT_EQ(test::printedSize(), "0 x 0");
        notices.clear();
    }

    std::shared_ptr<platform::InMemoryPhotoLibrary> photos_ =
        std::make_shared<platform::InMemoryPhotoLibrary>();
};

TEST_F(PhotoPrinting, ReturnsFalseThoughThePhotoPrints) {
    EXPECT_FALSE(ImageToBmp(blackPhoto(40, 16)));
    EXPECT_TRUE(test::graphicsWereSent());
    EXPECT_EQ(test::printedRows(), test::allBlack(40, 16));
    EXPECT_TRUE(notices.empty());
}

TEST_F(PhotoPrinting, HasHandedThePrintToTheTransportWhenItReturns) {
    for (int i = 0; i < 50; ++i) {
        transport() = {};
        ImageToBmp(blackPhoto(40, 16));
        ASSERT_EQ(transport().operations(), std::vector<std::string>{"Write_BT_Data"});
    }
}

TEST_F(PhotoPrinting, PrintsWhatThePhotoShowsAndNotTurned) {
    const Rows rows = {"          ", "X         ", "XX        ", "XXX      X", "          "};
    for (const bool dithered : {true, false}) {
        ImageDithered = dithered;
        ImageToBmp(photos_->add("a.bmp", test::colourBmp(rows)));
        EXPECT_EQ(test::printedRows(), rows);
    }
}

// ---- Size ---------------------------------------------------------------------------------------

TEST_F(PhotoPrinting, PrintsOneDotForEachPixel) {
    for (const std::int32_t resolution : {200, 300, 600}) {
        PrinterResolution = resolution;
        ImageToBmp(blackPhoto(1200, 800));
        EXPECT_EQ(test::printedSize(), "1200 x 800");
    }
}

TEST_F(PhotoPrinting, SwapsTheSizeInEveryOrientationButLandscape) {
    for (const char* orientation : {"<PM>", "", "<lm>"}) {
        PrinterOrientation = orientation;
        ImageToBmp(blackPhoto(640, 480));
        EXPECT_EQ(test::printedSize(), "480 x 640") << orientation;
    }
    PrinterOrientation = "<PM>";
    ImageToBmp(blackPhoto(1200, 800));
    EXPECT_EQ(test::printedSize(), "800 x 1200");
}

TEST_F(PhotoPrinting, StretchesAScaledPhotoToTheStock) {
    ImageScaled = true;
    ImageToBmp(blackPhoto(1200, 800));
    EXPECT_EQ(test::printedSize(), "1650 x 600");
    PrinterOrientation = "<PM>";
    ImageToBmp(blackPhoto(20, 20));
    EXPECT_EQ(test::printedSize(), "600 x 1650");
}

TEST_F(PhotoPrinting, MeasuresAPhotoAsItStandsUpright) {
    for (Byte orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(int{orientation});
        const URL url = photos_->add("a.png", test::greyPng(test::allBlack(40, 16), orientation));
        PrinterOrientation = "<LM>";
        ImageToBmp(url);
        EXPECT_EQ(test::printedSize(), orientation >= 5 ? "16 x 40" : "40 x 16");
        PrinterOrientation = "<PM>";
        ImageToBmp(url);
        EXPECT_EQ(test::printedSize(), orientation >= 5 ? "40 x 16" : "16 x 40");
    }
}

// ---- No photo -----------------------------------------------------------------------------------

TEST_F(PhotoPrinting, RefusesAUrlThatNamesNoAssetAndGoesOn) {
    for (const bool scaled : {false, true}) {
        ImageScaled = scaled;
        EXPECT_FALSE(ImageToBmp(URL::fromText("assets-library://asset/none.png")));
        expectRefused();
    }
}

TEST_F(PhotoPrinting, RefusesAFileThatIsNoPicture) {
    ImageScaled = true;
    for (const char* content : {"", "x", "BM", "%PDF-1.4", "a text"}) {
        EXPECT_FALSE(ImageToBmp(photos_->add("a.png", test::bytesOf(content))));
        expectRefused();
    }
}

TEST_F(PhotoPrinting, RefusesAPhotoCutShort) {
    Bytes file = test::blackBmp(40, 16);
    file.resize(file.size() - 100);
    EXPECT_FALSE(ImageToBmp(photos_->add("a.bmp", file)));
    expectRefused();
}

// All rows but the last have been decoded when the damage shows.
TEST_F(PhotoPrinting, RefusesAPhotoThatIsDamagedOnItsLastRowLikeOneThatIsAbsent) {
    struct State {
        std::int32_t width, height, dataWidth, length, read;
        UInt32 written;
        machine::UnclearedBytes entries, packed;
        Bytes file;
        bool operator==(const State&) const = default;
    };
    const auto state = [] {
        using namespace imaging;
        return State{mWidth, mHeight,    mDataWidth,     mDataArrayLength, nRead,
                     k,      mDataArray, mRawBitmapData, *myImageData};
    };
    Bytes cutShort = test::greyPng(test::allBlack(40, 200), 1);
    cutShort.pop_back();
    Bytes wrongSum = test::greyPng(test::allBlack(40, 200), 1);
    wrongSum.back() ^= 1;
    Bytes turned = test::greyPng(test::allBlack(40, 200), 6);
    turned.back() ^= 1;
    for (const bool scaled : {false, true}) {
        for (const bool dithered : {false, true}) {
            ImageScaled = scaled;
            ImageDithered = dithered;
            ImageToBmp(URL::fromText("assets-library://asset/none.png"));
            expectRefused();
            const State absent = state();
            for (const Bytes& file : {cutShort, wrongSum, turned}) {
                ImageToBmp(blackPhoto(40, 16));  // something to print again by mistake
                transport() = {};
                EXPECT_FALSE(ImageToBmp(photos_->add("a.png", file)));
                expectRefused();
                EXPECT_TRUE(state() == absent);
            }
        }
    }
}

TEST_F(PhotoPrinting, DoesNotPrintThePhotoBeforeInPlaceOfAnAbsentOne) {
    ImageToBmp(blackPhoto(40, 16));
    transport() = {};
    ImageToBmp(URL::fromText("assets-library://asset/none.png"));
    expectRefused();
}

TEST_F(PhotoPrinting, WithoutALibraryEndsAsAFailedLookupDoes) {
    platform::setPhotoLibrary(nullptr);
    EXPECT_FALSE(ImageToBmp(URL::fromText("assets-library://asset/1.png")));
    EXPECT_TRUE(transport().calls.empty());
    EXPECT_TRUE(notices.empty());
    EXPECT_EQ(imaging::myImageData, nullptr);
    EXPECT_EQ(FileName, "assets-library://asset/1.png");
}

TEST_F(PhotoPrinting, KeepsTheUrlsFullTextWhateverTheOutcome) {
    const std::string good = blackPhoto(40, 16).absoluteText();
    const std::string broken = photos_->add("a.png", test::bytesOf("x")).absoluteText();
    for (const std::string& text :
         {good, broken, std::string("assets-library://asset/none.png?id=7&ext=PNG#top"),
          std::string("file:///a%20b.jpg"), std::string()}) {
        ImageToBmp(URL::fromText(text));
        EXPECT_EQ(FileName, text);
    }
}

TEST_F(PhotoPrinting, LeavesTheJobAsTheCallerSetIt) {
    originalx = 10;
    originaly = 20;
    ImageToBmp(blackPhoto(40, 8));
    EXPECT_EQ(originalx, 10);
    EXPECT_EQ(originaly, 20);
    const std::string sent = test::readable(transport().dataSent());
    EXPECT_EQ(sent.find("<P1><LM><RE0><DI><RC10,20>"), 0U) << sent;
}

TEST_F(PhotoPrinting, LeavesTheBitmapThatWasSentInPlaceOfThePhotosFile) {
    ImageToBmp(blackPhoto(40, 16));
    ASSERT_NE(imaging::myImageData, nullptr);
    EXPECT_EQ(imaging::myImageData->size(), 62U + 8 * 16);
}

// ---- The file system is never read --------------------------------------------------------------

TEST_F(PhotoPrinting, NeverOpensAFileOnDisk) {
    const test::TemporaryFolder folder;
    const Bytes picture = test::blackBmp(40, 16);
    test::writeFile(folder / "a.bmp", std::string(picture.begin(), picture.end()));
    ASSERT_EQ(::mkfifo((folder / "pipe.bmp").c_str(), 0600), 0);
    const std::shared_ptr<platform::PhotoLibrary> libraries[] = {
        photos_, std::make_shared<platform::FolderPhotoLibrary>(folder.path())};
    for (const auto& library : libraries) {
        platform::setPhotoLibrary(library);
        for (const char* name : {"a.bmp", "pipe.bmp"}) {
            EXPECT_FALSE(SendFile(URL::fromPath(folder / name), 0, 0));
            expectRefused();
            EXPECT_EQ(FileName, URL::fromPath(folder / name).absoluteText());
        }
    }
}

TEST_F(PhotoPrinting, PrintsThePhotosOfAFolder) {
    const test::TemporaryFolder folder;
    const Bytes picture = test::blackBmp(40, 16);
    test::writeFile(folder / "my photo.BMP", std::string(picture.begin(), picture.end()));
    platform::setPhotoLibrary(std::make_shared<platform::FolderPhotoLibrary>(folder.path()));
    EXPECT_FALSE(SendFile(platform::FolderPhotoLibrary::urlOf("my photo.BMP"), 0, 0));
    EXPECT_EQ(test::printedSize(), "40 x 16");
    EXPECT_TRUE(test::graphicsWereSent());
}

// ---- Threads ------------------------------------------------------------------------------------

TEST_F(PhotoPrinting, RunsTheWholePrintOnAnotherThreadThanTheCallers) {
    std::thread::id printing;
    platform::setNoticeHandler(
        [&printing](const platform::Notice&) { printing = std::this_thread::get_id(); });
    ImageToBmp(photos_->add("a.png", test::bytesOf("no picture: its refusal ends the print")));
    EXPECT_NE(printing, std::thread::id());
    EXPECT_NE(printing, std::this_thread::get_id());
}

TEST_F(PhotoPrinting, MayBeAskedForByOneThreadAfterAnother) {
    const URL url = blackPhoto(40, 16);
    for (int i = 0; i < 4; ++i) std::thread([&url] { ImageToBmp(url); }).join();
    EXPECT_EQ(transport().calls.size(), 4U);
}

}  // namespace
}  // namespace tavio::intake
