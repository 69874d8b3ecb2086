// The public header: every name, and every initial value in a program that has not used the library
// yet.
#include <type_traits>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"

namespace {

std::string calls;  // of the transport operations, since the program began

}  // namespace

namespace tavio {

bool Open_BT() {
    calls += "open bt;";
    return true;
}
void Close_BT() {
    calls += "close bt;";
}
void Write_BT(const Text& text) {
    calls += "bt " + text.value_or("none") + ";";
}
void Write_BT_Data(const Byte* /*bytes*/, std::int32_t size) {
    calls += "bt data " + std::to_string(size) + ";";
}
Text Read_BT() {
    return "ready";
}
void ClearStatus_BT() {
    calls += "clear bt;";
}

bool Open_WF(const std::string& ip) {
    calls += "open wf " + ip + ";";
    return true;
}
void Close_WF() {
    calls += "close wf;";
}
void Write_WF(const Text& text) {
    calls += "wf " + text.value_or("none") + ";";
}
void Write_WF_Data(const Byte* /*bytes*/, std::int32_t size) {
    calls += "wf data " + std::to_string(size) + ";";
}
Text Read_WF() {
    return std::nullopt;
}
void ClearStatus_WF() {
    calls += "clear wf;";
}

}  // namespace tavio

namespace {

template <auto Function, typename Signature>
constexpr bool kHasSignature = std::is_same_v<decltype(Function), Signature*>;

// Taken before main, so that no test can have changed anything yet.
const bool kStatusAtStart = tavio::connectionStatus;
const std::string kModeAtStart = tavio::Mode;
const std::string kPathAtStart = tavio::PrinterPath;
const std::string kOrientationAtStart = tavio::PrinterOrientation;
const std::int32_t kResolutionAtStart = tavio::PrinterResolution;
const double kStockWidthAtStart = tavio::StockWidth;

TEST(InitialState, OfTheSessionIsNoSession) {
    EXPECT_EQ(tavio::Mode, "");
    EXPECT_FALSE(tavio::connectionStatus);
    EXPECT_EQ(tavio::connectedBTdevices, 0);
    EXPECT_EQ(tavio::selectedBTindex, 0);
    EXPECT_EQ(tavio::s, "");
}

TEST(InitialState, OfTheSettingsIsTheConcertStockInLandscapeAt300) {
    EXPECT_EQ(tavio::PrinterPath, "<P1>");
    EXPECT_EQ(tavio::PrinterOrientation, "<LM>");
    EXPECT_EQ(tavio::PrinterResolution, 300);
    EXPECT_EQ(tavio::StockWidth, 5.5);
    EXPECT_EQ(tavio::StockHeight, 2.0);
    EXPECT_FALSE(tavio::ImageScaled);
    EXPECT_TRUE(tavio::ImageDithered);
    EXPECT_EQ(tavio::size_indicator, 0);
}

TEST(InitialState, OfTheDotWidthsIsZeroThroughout) {
    EXPECT_EQ(tavio::portrait_dots, 0);
    ASSERT_EQ(tavio::portrait_dot_array.size(), tavio::settings::kStocks.size());
    for (const auto& row : tavio::portrait_dot_array)
        for (const std::int32_t dots : row) EXPECT_EQ(dots, 0);
}

TEST(InitialState, OfTheJobIsToPrintAtTheOrigin) {
    EXPECT_EQ(tavio::LogoNumber, "");
    EXPECT_EQ(tavio::originalx, 0);
    EXPECT_EQ(tavio::originaly, 0);
    EXPECT_EQ(tavio::FileName, std::nullopt);
}

TEST(InitialState, HasNoPhotoLibrary) {
    EXPECT_EQ(tavio::platform::photoLibrary(), nullptr);
}

TEST(InitialState, OfNumbersIsThereBeforeAnyInitialiserRuns) {
    EXPECT_FALSE(kStatusAtStart);
    EXPECT_EQ(kResolutionAtStart, 300);
    EXPECT_EQ(kStockWidthAtStart, 5.5);
}

TEST(InitialState, OfTextsIsThereBeforeAnyInitialiserRuns) {
    EXPECT_EQ(kModeAtStart, "");
    EXPECT_EQ(kPathAtStart, "<P1>");
    EXPECT_EQ(kOrientationAtStart, "<LM>");
}

TEST(InitialState, PortraitHasNoWidthBeforeTheFirstSession) {
    for (std::int32_t stock = 0; stock < tavio::settings::kStockCount; ++stock) {
        tavio::ChangeConfiguration("<P1>", 300, false, true, stock, "<PM>");
        EXPECT_EQ(tavio::portrait_dots, 0) << "stock " << stock;
    }
    tavio::ChangeConfiguration("<P1>", 300, false, true, tavio::CONCERT, "<LM>");
}

TEST(PublicSurface, NamesTheStocks) {
    static_assert(std::is_same_v<decltype(tavio::CONCERT), const std::int32_t>);
    EXPECT_EQ(tavio::CONCERT, 0);
    EXPECT_EQ(tavio::CINEMA, 1);
    EXPECT_EQ(tavio::CREDITCARD, 2);
    EXPECT_EQ(tavio::RECEIPT, 3);
}

TEST(PublicSurface, NamesTheCommands) {
    EXPECT_STREQ(tavio::CUT, "<p>");
    EXPECT_STREQ(tavio::EJECT, "<q>");
}

TEST(PublicSurface, HasTheSessionOperations) {
    EXPECT_TRUE((kHasSignature<&tavio::OpenSessionBT, bool()>));
    EXPECT_TRUE((kHasSignature<&tavio::CloseSessionBT, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::OpenSessionWiFi, bool(const std::string&)>));
    EXPECT_TRUE((kHasSignature<&tavio::CloseSessionWiFi, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::SendString, void(const tavio::Text&)>));
    EXPECT_TRUE((kHasSignature<&tavio::SendData, void(const tavio::Byte*, std::int32_t)>));
    EXPECT_TRUE((kHasSignature<&tavio::ReadPrinter, tavio::Text()>));
    EXPECT_TRUE((kHasSignature<&tavio::PrintCut, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::PrintNoCut, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::ClearMemory, void()>));
}

TEST(PublicSurface, HasTheDocumentAndConfigurationOperations) {
    using Configure = void(std::string, std::int32_t, bool, bool, std::int32_t, std::string);
    using Send = bool(const tavio::URL&, std::int32_t, std::int32_t);
    EXPECT_TRUE((kHasSignature<&tavio::ChangeConfiguration, Configure>));
    EXPECT_TRUE((kHasSignature<&tavio::InitDotArray, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::set_portrait_dots, void()>));
    EXPECT_TRUE((kHasSignature<&tavio::SendFile, Send>));
    EXPECT_TRUE((kHasSignature<&tavio::RWTextFile, bool(const tavio::URL&)>));
    EXPECT_TRUE((kHasSignature<&tavio::DownloadLogo, bool(const tavio::URL&, std::int32_t)>));
    EXPECT_TRUE((kHasSignature<&tavio::PrintLogo, bool(std::int32_t, std::int32_t, std::int32_t)>));
}

TEST(PublicSurface, HasAClassOfItsNameThatCarriesNothing) {
    EXPECT_TRUE((std::is_base_of_v<tavio::platform::Object, tavio::TavioIpadSDK>));
    EXPECT_TRUE(std::is_empty_v<tavio::TavioIpadSDK>);
    EXPECT_FALSE(std::is_polymorphic_v<tavio::TavioIpadSDK>);
}

TEST(PublicSurface, LetsTheApplicationWriteTheVisibleState) {
    EXPECT_FALSE(std::is_const_v<decltype(tavio::Mode)>);
    EXPECT_FALSE(std::is_const_v<decltype(tavio::PrinterResolution)>);
    EXPECT_FALSE(std::is_const_v<decltype(tavio::portrait_dots)>);
    EXPECT_FALSE(std::is_const_v<decltype(tavio::LogoNumber)>);
}

TEST(PublicSurface, IsEnoughForAnApplication) {
    using namespace tavio;
    calls.clear();
    EXPECT_TRUE(OpenSessionWiFi("192.0.2.7"));
    ChangeConfiguration("<P1>", 300, false, true, CREDITCARD, "<LM>");
    SendString("<RC1,2>x");
    const Byte bytes[] = {1, 2, 3};
    SendData(bytes, 3);
    EXPECT_TRUE(PrintLogo(7, 0, 0));
    EXPECT_FALSE(SendFile(URL::fromText("file:///a.gif"), 1, 2));
    EXPECT_FALSE(DownloadLogo(URL::fromText("file:///a.txt"), 7));
    PrintCut();
    EXPECT_EQ(ReadPrinter(), std::nullopt);
    CloseSessionWiFi();
    EXPECT_TRUE(OpenSessionBT());
    PrintNoCut();
    ClearMemory();
    SendData(bytes, 2);
    EXPECT_EQ(ReadPrinter(), Text("ready"));
    CloseSessionBT();
    EXPECT_EQ(calls,
              "open wf 192.0.2.7;wf <RC1,2>x;wf data 3;wf <SP0,0><LD7>;wf <p>;clear wf;close wf;"
              "open bt;bt <q>;bt \x1B"
              "c;bt data 2;clear bt;close bt;");
}

}  // namespace
