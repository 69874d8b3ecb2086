// Opening and closing, from every state: calls, Mode and connectionStatus afterwards.
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/settings.h"
#include "support/fresh_state.h"

namespace tavio {
namespace {

using test::transport;
using test::TransportCall;
using Calls = std::vector<TransportCall>;

const TransportCall kOpenBt{"Open_BT", std::nullopt, {}};
const TransportCall kCloseBt{"Close_BT", std::nullopt, {}};
const TransportCall kCloseWf{"Close_WF", std::nullopt, {}};

TransportCall openWf(const char* ip) {
    return {"Open_WF", ip, {}};
}

struct Before {
    std::string mode;
    bool status;
};

void PrintTo(const Before& before, std::ostream* out) {
    *out << "\"" << before.mode << "\", " << (before.status ? "connected" : "not connected");
}

class FromEveryState : public test::FreshState, public testing::WithParamInterface<Before> {
  protected:
    FromEveryState() {
        Mode = GetParam().mode;
        connectionStatus = GetParam().status;
    }
};

INSTANTIATE_TEST_SUITE_P(Session, FromEveryState,
                         testing::Values(Before{"", false}, Before{"", true}, Before{"BT", false},
                                         Before{"BT", true}, Before{"WF", false},
                                         Before{"WF", true}, Before{"other", false},
                                         Before{"other", true}));

TEST_P(FromEveryState, OpeningBluetoothMakesItActive) {
    EXPECT_TRUE(OpenSessionBT());
    EXPECT_EQ(transport().calls, Calls{kOpenBt});
    EXPECT_EQ(Mode, "BT");
    EXPECT_TRUE(connectionStatus);
}

TEST_P(FromEveryState, OpeningBluetoothInVainStillMakesItActive) {
    transport().openSucceeds = false;
    EXPECT_FALSE(OpenSessionBT());
    EXPECT_EQ(transport().calls, Calls{kOpenBt});
    EXPECT_EQ(Mode, "BT");
    EXPECT_FALSE(connectionStatus);
}

TEST_P(FromEveryState, OpeningWiFiMakesItActive) {
    EXPECT_TRUE(OpenSessionWiFi("192.0.2.7"));
    EXPECT_EQ(transport().calls, Calls{openWf("192.0.2.7")});
    EXPECT_EQ(Mode, "WF");
    EXPECT_TRUE(connectionStatus);
}

TEST_P(FromEveryState, OpeningWiFiInVainKeepsTheTransportActiveBefore) {
    transport().openSucceeds = false;
    EXPECT_FALSE(OpenSessionWiFi("192.0.2.7"));
    EXPECT_EQ(transport().calls, Calls{openWf("192.0.2.7")});
    EXPECT_EQ(Mode, GetParam().mode);
    EXPECT_FALSE(connectionStatus);
}

TEST_P(FromEveryState, ClosingBluetoothEndsTheSessionAndKeepsTheStatus) {
    CloseSessionBT();
    EXPECT_EQ(transport().calls, Calls{kCloseBt});
    EXPECT_EQ(Mode, "");
    EXPECT_EQ(connectionStatus, GetParam().status);
}

TEST_P(FromEveryState, ClosingWiFiEndsTheSessionAndClearsTheStatus) {
    CloseSessionWiFi();
    EXPECT_EQ(transport().calls, Calls{kCloseWf});
    EXPECT_EQ(Mode, "");
    EXPECT_FALSE(connectionStatus);
}

TEST_P(FromEveryState, OpeningAndClosingLeaveTheApplicationsVariablesAlone) {
    connectedBTdevices = 3;
    selectedBTindex = 2;
    s = "mine";
    OpenSessionBT();
    CloseSessionBT();
    OpenSessionWiFi("192.0.2.7");
    CloseSessionWiFi();
    EXPECT_EQ(connectedBTdevices, 3);
    EXPECT_EQ(selectedBTindex, 2);
    EXPECT_EQ(s, "mine");
}

// ---- One after the other ------------------------------------------------------------------------

class SessionSequence : public test::FreshState {};

TEST_F(SessionSequence, ATextAfterAFailedBluetoothOpenStillGoesToBluetooth) {
    transport().openSucceeds = false;
    EXPECT_FALSE(OpenSessionBT());
    SendString("x");
    EXPECT_EQ(transport().calls, (Calls{kOpenBt, {"Write_BT", "x", {}}}));
}

TEST_F(SessionSequence, AWiFiOpenThatFailsAfterBluetoothOpenedLeavesBluetoothActive) {
    EXPECT_TRUE(OpenSessionBT());
    transport().openSucceeds = false;
    EXPECT_FALSE(OpenSessionWiFi("192.0.2.7"));
    EXPECT_EQ(Mode, "BT");
    EXPECT_FALSE(connectionStatus);
    SendString("x");
    EXPECT_EQ(transport().calls, (Calls{kOpenBt, openWf("192.0.2.7"), {"Write_BT", "x", {}}}));
}

TEST_F(SessionSequence, ClosingBluetoothAfterASuccessfulOpenLeavesTheStatusTrue) {
    OpenSessionBT();
    CloseSessionBT();
    EXPECT_EQ(Mode, "");
    EXPECT_TRUE(connectionStatus);
}

TEST_F(SessionSequence, OpeningAnotherTransportDoesNotCloseTheFirst) {
    OpenSessionBT();
    OpenSessionWiFi("192.0.2.7");
    OpenSessionBT();
    EXPECT_EQ(transport().calls, (Calls{kOpenBt, openWf("192.0.2.7"), kOpenBt}));
}

TEST_F(SessionSequence, ClosingTheOtherTransportEndsTheSessionOfTheActiveOne) {
    OpenSessionWiFi("192.0.2.7");
    CloseSessionBT();
    EXPECT_EQ(Mode, "");
    EXPECT_TRUE(connectionStatus);
    SendString("dropped");
    EXPECT_EQ(transport().calls, (Calls{openWf("192.0.2.7"), kCloseBt}));
}

TEST_F(SessionSequence, TheAddressIsPassedOnUnchangedAndUnchecked) {
    for (const char* ip : {"", "printer.example", "999.1.1.1", " 192.0.2.7:9100 ", "\xC3\xA9"}) {
        transport() = {};
        EXPECT_TRUE(OpenSessionWiFi(ip));
        EXPECT_EQ(transport().calls, Calls{openWf(ip)});
    }
}

TEST_F(SessionSequence, OpeningChangesNoSetting) {
    ChangeConfiguration("<P2>", 600, true, false, 7, "<PM>");
    OpenSessionBT();
    OpenSessionWiFi("192.0.2.7");
    EXPECT_EQ(PrinterPath, "<P2>");
    EXPECT_EQ(PrinterOrientation, "<PM>");
    EXPECT_EQ(PrinterResolution, 600);
    EXPECT_TRUE(ImageScaled);
    EXPECT_FALSE(ImageDithered);
    EXPECT_EQ(size_indicator, 7);
    EXPECT_EQ(StockWidth, 1.328);
    EXPECT_EQ(StockHeight, 11.0);
}

TEST_F(SessionSequence, ClosingKeepsTheDotWidths) {
    ChangeConfiguration("<P1>", 300, false, true, 0, "<PM>");
    OpenSessionBT();
    CloseSessionBT();
    CloseSessionWiFi();
    EXPECT_EQ(portrait_dot_array[8][2], 5000);
    EXPECT_EQ(portrait_dots, 576);
}

}  // namespace
}  // namespace tavio
