#include "support/fresh_state.h"

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/state.h"
#include "TavioIpadSDK/imaging/state.h"

namespace tavio::test {
namespace {

void resetSession() {
    Mode.clear();
    connectionStatus = false;
    connectedBTdevices = selectedBTindex = 0;
    s.clear();
}

void resetSettings() {
    PrinterPath = "<P1>";
    PrinterOrientation = "<LM>";
    PrinterResolution = 300;
    StockWidth = 5.5;
    StockHeight = 2.0;
    ImageScaled = false;
    ImageDithered = true;
    size_indicator = 0;
    portrait_dot_array = {};
    portrait_dots = 0;
}

void resetJob() {
    LogoNumber.clear();
    originalx = originaly = 0;
    FileName = std::nullopt;
}

void resetImaging() {
    using namespace imaging;
    mWidth = mHeight = mDataWidth = mDataArrayLength = nRead = 0;
    k = 0;
    mDataArray.clear();
    mRawBitmapData.clear();
    BMPHeader = {};
    myImageData = nullptr;
    openSurface.clear();
}

void resetEncoder() {
    encoder::bmfile = {};
    encoder::bminfo = {};
    encoder::linemap.clear();
}

}  // namespace

void resetAllState() {
    resetSession();
    resetSettings();
    resetJob();
    resetImaging();
    resetEncoder();
    transport() = {};
    platform::setPhotoLibrary(nullptr);
    platform::setPdfPageSource({});
    platform::setNoticeHandler({});
}

FreshState::FreshState() {
    resetAllState();
    platform::setNoticeHandler([this](const platform::Notice& n) { notices.push_back(n); });
}

FreshState::~FreshState() {
    resetAllState();
}

std::vector<std::string> FreshState::noticeMessages() const {
    std::vector<std::string> messages;
    for (const platform::Notice& notice : notices) messages.push_back(notice.message);
    return messages;
}

}  // namespace tavio::test
