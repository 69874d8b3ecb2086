// The library's state as a transport sees it while it is being opened.
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/session/transport.h"
#include "TavioIpadSDK/settings/dot_width_table.h"
#include "TavioIpadSDK/settings/settings.h"

namespace tavio {
namespace {

struct Seen {
    int opens = 0;
    bool openSucceeds = true;
    decltype(portrait_dot_array) table{};
    std::int32_t dots = 0;
    std::string mode;
    bool status = false;
};

Seen seen;

bool look() {
    ++seen.opens;
    seen.table = portrait_dot_array;
    seen.dots = portrait_dots;
    seen.mode = Mode;
    seen.status = connectionStatus;
    return seen.openSucceeds;
}

}  // namespace

bool Open_BT() {
    return look();
}
void Close_BT() {
    seen.mode = Mode;
    seen.status = connectionStatus;
}
void Write_BT(const Text& /*text*/) {}
void Write_BT_Data(const Byte* /*bytes*/, std::int32_t /*size*/) {}
Text Read_BT() {
    return std::nullopt;
}
void ClearStatus_BT() {}

bool Open_WF(const std::string& /*ip*/) {
    return look();
}
void Close_WF() {
    seen.mode = Mode;
    seen.status = connectionStatus;
}
void Write_WF(const Text& /*text*/) {}
void Write_WF_Data(const Byte* /*bytes*/, std::int32_t /*size*/) {}
Text Read_WF() {
    return std::nullopt;
}
void ClearStatus_WF() {}

namespace {

class SessionOpening : public testing::TestWithParam<bool> {
  protected:
    SessionOpening() {
        seen = {};
        seen.openSucceeds = GetParam();
        Mode = "before";
        connectionStatus = !GetParam();
        portrait_dot_array = {};
        ChangeConfiguration("<P1>", 300, false, true, 5, "<PM>");
    }
};

INSTANTIATE_TEST_SUITE_P(, SessionOpening, testing::Bool());

TEST_P(SessionOpening, FillsTheDotTableBeforeBluetoothIsOpened) {
    ASSERT_EQ(portrait_dots, 0);
    EXPECT_EQ(OpenSessionBT(), GetParam());
    EXPECT_EQ(seen.opens, 1);
    EXPECT_EQ(seen.table[0][0], 384);
    EXPECT_EQ(seen.table[8][2], 5000);
    EXPECT_EQ(seen.dots, 1216);
}

TEST_P(SessionOpening, FillsTheDotTableBeforeWiFiIsOpened) {
    ASSERT_EQ(portrait_dots, 0);
    EXPECT_EQ(OpenSessionWiFi("192.0.2.7"), GetParam());
    EXPECT_EQ(seen.opens, 1);
    EXPECT_EQ(seen.table[0][0], 384);
    EXPECT_EQ(seen.table[8][2], 5000);
    EXPECT_EQ(seen.dots, 1216);
}

TEST_P(SessionOpening, ChangesModeAndStatusOnlyAfterTheTransportHasAnswered) {
    OpenSessionBT();
    EXPECT_EQ(seen.mode, "before");
    EXPECT_EQ(seen.status, !GetParam());
}

TEST_P(SessionOpening, ChangesModeAndStatusOfWiFiOnlyAfterTheTransportHasAnswered) {
    OpenSessionWiFi("192.0.2.7");
    EXPECT_EQ(seen.mode, "before");
    EXPECT_EQ(seen.status, !GetParam());
}

TEST_P(SessionOpening, EndsTheSessionOnlyAfterTheTransportIsClosed) {
    CloseSessionBT();
    EXPECT_EQ(seen.mode, "before");
    Mode = "again";
    CloseSessionWiFi();
    EXPECT_EQ(seen.mode, "again");
    EXPECT_EQ(seen.status, !GetParam());
}

}  // namespace
}  // namespace tavio
