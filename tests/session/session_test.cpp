// Sending, reading and the one-line commands, in every state of the session.
#include "TavioIpadSDK/session/session.h"

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/bitmaps.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

using test::transport;
using test::TransportCall;
using Calls = std::vector<TransportCall>;

class Session : public test::FreshState {};

TransportCall textCall(const char* operation, Text text) {
    return {operation, std::move(text), {}};
}

// ---- Texts --------------------------------------------------------------------------------------

TEST_F(Session, SendsATextOverWiFiWhenWiFiIsActive) {
    Mode = "WF";
    SendString("<RC1,2>");
    EXPECT_EQ(transport().calls, Calls{textCall("Write_WF", "<RC1,2>")});
}

TEST_F(Session, SendsATextOverBluetoothWhenBluetoothIsActive) {
    Mode = "BT";
    SendString("<RC1,2>");
    EXPECT_EQ(transport().calls, Calls{textCall("Write_BT", "<RC1,2>")});
}

TEST_F(Session, DropsATextWithoutASession) {
    SendString("<RC1,2>");
    EXPECT_EQ(transport().calls, Calls{});
}

TEST_F(Session, DropsATextInAModeItDoesNotKnow) {
    for (const char* mode : {"wf", "bt", "WF ", " BT", "BTWF", "X"}) {
        SCOPED_TRACE(mode);
        Mode = mode;
        SendString("x");
        EXPECT_EQ(transport().calls, Calls{});
    }
}

TEST_F(Session, HandsNoTextOnAsNoTextAndNotAsAnEmptyOne) {
    Mode = "WF";
    SendString(std::nullopt);
    Mode = "BT";
    SendString(std::nullopt);
    SendString("");
    EXPECT_EQ(transport().calls,
              (Calls{textCall("Write_WF", std::nullopt), textCall("Write_BT", std::nullopt),
                     textCall("Write_BT", "")}));
}

TEST_F(Session, DropsNoTextWithoutASession) {
    SendString(std::nullopt);
    EXPECT_EQ(transport().calls, Calls{});
}

TEST_F(Session, HandsALongTextOverWholeAndUnchanged) {
    Mode = "BT";
    std::string text(1'000'000, 'a');
    text[17] = '\0';
    text[18] = '\n';
    text += "\xC3\xA9";
    SendString(text);
    EXPECT_EQ(transport().calls, Calls{textCall("Write_BT", text)});
}

TEST_F(Session, LooksAtTheModeAtTheMomentOfTheCall) {
    Mode = "BT";
    SendString("1");
    Mode = "WF";
    SendString("2");
    Mode = "BT";
    SendString("3");
    EXPECT_EQ(transport().calls, (Calls{textCall("Write_BT", "1"), textCall("Write_WF", "2"),
                                        textCall("Write_BT", "3")}));
}

// ---- Raw bytes ----------------------------------------------------------------------------------

TEST_F(Session, SendsRawBytesOverWiFiOnlyWhenWiFiIsActive) {
    const Bytes bytes = {0, 1, 27, 255};
    Mode = "WF";
    SendData(bytes.data(), 4);
    EXPECT_EQ(transport().calls, (Calls{{"Write_WF_Data", std::nullopt, bytes}}));
}

TEST_F(Session, SendsRawBytesToBluetoothInEveryOtherModeAlsoWithoutASession) {
    const Bytes bytes = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (const char* mode : {"", "BT", "wf", "anything"}) {
        SCOPED_TRACE(mode);
        transport() = {};
        Mode = mode;
        SendData(bytes.data(), 10);
        EXPECT_EQ(transport().calls, (Calls{{"Write_BT_Data", std::nullopt, bytes}}));
    }
}

TEST_F(Session, HandsOverOnlyTheBytesItWasGivenTheCountOf) {
    const Bytes bytes = {1, 2, 3, 4};
    SendData(bytes.data() + 1, 2);
    EXPECT_EQ(transport().dataSent(), (Bytes{2, 3}));
}

TEST_F(Session, PassesACountOfZeroOrLessOnWithoutTouchingTheBytes) {
    SendData(nullptr, 0);
    SendData(nullptr, -1);
    Mode = "WF";
    SendData(nullptr, std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(transport().operations(),
              (std::vector<std::string>{"Write_BT_Data", "Write_BT_Data", "Write_WF_Data"}));
    EXPECT_EQ(transport().calls[0].count, 0);
    EXPECT_EQ(transport().calls[1].count, -1);
    EXPECT_EQ(transport().calls[2].count, std::numeric_limits<std::int32_t>::min());
}

// ---- Reading ------------------------------------------------------------------------------------

TEST_F(Session, ReadsOverWiFiAndThenClearsItsStatusOnceEach) {
    Mode = "WF";
    transport().reply = "paper low";
    EXPECT_EQ(ReadPrinter(), Text("paper low"));
    EXPECT_EQ(transport().operations(), (std::vector<std::string>{"Read_WF", "ClearStatus_WF"}));
}

TEST_F(Session, ReadsOverBluetoothAndThenClearsItsStatusOnceEach) {
    Mode = "BT";
    transport().reply = "paper low";
    EXPECT_EQ(ReadPrinter(), Text("paper low"));
    EXPECT_EQ(transport().operations(), (std::vector<std::string>{"Read_BT", "ClearStatus_BT"}));
}

TEST_F(Session, ReadsTheEmptyTextWithoutASessionAndCallsNothing) {
    for (const char* mode : {"", "wf", "Bt"}) {
        SCOPED_TRACE(mode);
        Mode = mode;
        EXPECT_EQ(ReadPrinter(), Text(""));
        EXPECT_EQ(transport().calls, Calls{});
    }
}

TEST_F(Session, ReturnsAnAbsentReplyAsNoTextAndStillClearsTheStatus) {
    transport().reply = std::nullopt;
    Mode = "WF";
    EXPECT_EQ(ReadPrinter(), std::nullopt);
    Mode = "BT";
    EXPECT_EQ(ReadPrinter(), std::nullopt);
    EXPECT_EQ(transport().operations(),
              (std::vector<std::string>{"Read_WF", "ClearStatus_WF", "Read_BT", "ClearStatus_BT"}));
}

// ---- One-line commands --------------------------------------------------------------------------

TEST_F(Session, CutsEjectsAndClearsWithExactlyTheCommandsAndNothingAppended) {
    for (const std::string transportName : {"BT", "WF"}) {
        SCOPED_TRACE(transportName);
        transport() = {};
        Mode = transportName;
        PrintCut();
        PrintNoCut();
        ClearMemory();
        const std::string write = "Write_" + transportName;
        EXPECT_EQ(transport().calls,
                  (Calls{textCall(write.c_str(), "<p>"), textCall(write.c_str(), "<q>"),
                         textCall(write.c_str(), std::string{27, 'c'})}));
    }
}

TEST_F(Session, DropsCutEjectAndClearWithoutASession) {
    for (const char* mode : {"", "none"}) {
        Mode = mode;
        PrintCut();
        PrintNoCut();
        ClearMemory();
        EXPECT_EQ(transport().calls, Calls{});
    }
}

TEST(SessionCommands, AreCutAndEject) {
    EXPECT_STREQ(CUT, "<p>");
    EXPECT_STREQ(EJECT, "<q>");
}

}  // namespace
}  // namespace tavio
