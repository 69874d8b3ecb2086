// An application whose global object uses the library before main begins and after it has ended. The
// program links this file before the library: the object's constructor runs before what the
// library's own files might do at their start, its destructor after what they might do at their end.
// Like an application it has the one public header and brings its transport.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"

namespace {

// The bytes that reached the transport since the last check. Never destroyed: the destructor below
// checks it.
std::string& sent() {
    static std::string& text = *new std::string;
    return text;
}

std::string takeSent() {
    return std::exchange(sent(), {});
}

}  // namespace

namespace tavio {

bool Open_BT() {
    return false;
}
void Close_BT() {}
void Write_BT(const Text& /*text*/) {
    sent() += "Bluetooth;";
}
void Write_BT_Data(const Byte* /*bytes*/, std::int32_t /*size*/) {
    sent() += "Bluetooth;";
}
Text Read_BT() {
    return std::nullopt;
}
void ClearStatus_BT() {}

bool Open_WF(const std::string& ip) {
    sent() += "open " + ip + ";";
    return true;
}
void Close_WF() {
    sent() += "close;";
}
void Write_WF(const Text& text) {
    sent() += text.value_or("none") + ";";
}
void Write_WF_Data(const Byte* bytes, std::int32_t size) {
    sent().append(bytes, bytes + size) += ";";
}
Text Read_WF() {
    return "ready";
}
void ClearStatus_WF() {}

}  // namespace tavio

namespace {

// Longer than what a text holds without memory of its own.
const char* const kPath = "<P1><a path with more characters than most>";
const char* const kOrientation = "<an orientation with more characters than most>";
const char* const kText = "a text of the application's own, also a longer one";

constexpr int kWidth = 32;
constexpr int kHeight = 16;

// A black picture of 24 bits a pixel.
tavio::Bytes bmpFile() {
    tavio::Bytes file(54 + 3 * kWidth * kHeight, 0);
    file[0] = 'B';
    file[1] = 'M';
    file[10] = 54;
    file[14] = 40;
    file[18] = kWidth;
    file[22] = kHeight;
    file[26] = 1;
    file[28] = 24;
    return file;
}

// Leaves something in the variables of every room of the library.
class Kiosk {
  public:
    Kiosk()
        : photos_(std::make_shared<tavio::platform::InMemoryPhotoLibrary>()),
          photo_(photos_->add("seal.bmp", bmpFile())) {
        tavio::platform::setPhotoLibrary(photos_);
        isOpen_ = tavio::OpenSessionWiFi("192.0.2.7");
        tavio::SendString("hello");
        tavio::ChangeConfiguration(kPath, 600, false, false, tavio::RECEIPT, kOrientation);
        tavio::s = kText;
        opening_ = takeSent();
        graphics_ = graphicsOfThePhoto();
        tavio::DownloadLogo(tavio::URL::fromText("file:///no-picture.gif"), 1234567890);
    }

    ~Kiosk() {
        takeSent();
        const bool isThere = tavio::Mode == "WF" && tavio::s == kText &&
                             graphicsOfThePhoto() == graphics_ && farewell() == "<p>;close;";
        if (isThere && (expectedNotice_.empty() || noticeOfNoPhoto() == expectedNotice_)) return;
        std::fputs("the library had lost something when the program ended\n", stderr);
        std::_Exit(1);
    }

    Kiosk(const Kiosk&) = delete;
    Kiosk& operator=(const Kiosk&) = delete;

    std::string graphicsOfThePhoto() const {
        tavio::SendFile(photo_, 1, 2);
        return takeSent();
    }

    // The notice that the destructor expects from the handler that main registers.
    void expectNotice(const std::string& text) { expectedNotice_ = text; }

    bool isOpen() const { return isOpen_; }
    const std::string& opening() const { return opening_; }    // sent by the constructor at first,
    const std::string& graphics() const { return graphics_; }  // and for the photo
    const tavio::URL& photo() const { return photo_; }

  private:
    static std::string farewell() {
        tavio::PrintCut();
        tavio::CloseSessionWiFi();
        return takeSent();
    }

    static std::string noticeOfNoPhoto() {
        tavio::SendFile(tavio::URL::fromText("assets-library://asset/none.png"), 1, 2);
        return takeSent();
    }

    std::shared_ptr<tavio::platform::InMemoryPhotoLibrary> photos_;
    tavio::URL photo_;
    bool isOpen_ = false;
    std::string opening_;
    std::string graphics_;
    std::string expectedNotice_;
};

Kiosk kiosk;

TEST(GlobalObject, ReachesTheTransportBeforeMain) {
    EXPECT_TRUE(kiosk.isOpen());
    EXPECT_EQ(kiosk.opening(), "open 192.0.2.7;hello;");
    EXPECT_EQ(kiosk.graphics().find(std::string(kPath) + kOrientation), 0U);
    EXPECT_NE(kiosk.graphics().find("<G"), std::string::npos);
}

TEST(GlobalObject, LosesNothingOfItsSessionWhenMainBegins) {
    EXPECT_EQ(tavio::Mode, "WF");
    EXPECT_TRUE(tavio::connectionStatus);
    EXPECT_EQ(tavio::s, kText);
    EXPECT_EQ(tavio::portrait_dot_array[0][0], 384);
    EXPECT_EQ(tavio::ReadPrinter(), "ready");
    EXPECT_NE(tavio::platform::photoLibrary(), nullptr);
}

TEST(GlobalObject, LosesNothingOfItsConfigurationWhenMainBegins) {
    EXPECT_EQ(tavio::PrinterPath, kPath);
    EXPECT_EQ(tavio::PrinterOrientation, kOrientation);
    EXPECT_EQ(tavio::PrinterResolution, 600);
    EXPECT_FALSE(tavio::ImageDithered);
    EXPECT_EQ(tavio::size_indicator, tavio::RECEIPT);
    EXPECT_EQ(tavio::StockHeight, 8.0);
}

TEST(GlobalObject, LosesNothingOfItsJobWhenMainBegins) {
    EXPECT_EQ(tavio::LogoNumber, "1234567890");
    EXPECT_EQ(tavio::originalx, 1);
    EXPECT_EQ(tavio::originaly, 2);
    EXPECT_EQ(tavio::FileName, kiosk.photo().absoluteText());
}

TEST(GlobalObject, PrintsTheSameInMainAsBefore) {
    EXPECT_EQ(kiosk.graphicsOfThePhoto(), kiosk.graphics());
}

TEST(GlobalObject, FindsAfterMainWhatMainHasRegistered) {
    const std::string opening = "a notice, and characters enough for memory of their own: ";
    tavio::platform::setNoticeHandler(
        [opening](const tavio::platform::Notice& notice) { sent() += opening + notice.button; });
    kiosk.expectNotice(opening + "OK");
}

}  // namespace
