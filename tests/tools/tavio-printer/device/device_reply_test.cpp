// The replies of a printer.
#include <gtest/gtest.h>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

DeviceSettings saying(const std::string& text, milliseconds delay = milliseconds(0)) {
    DeviceSettings settings = smallDevice();
    settings.reply.text = text;
    settings.reply.delay = delay;
    return settings;
}

TEST(DeviceReply, ComesAfterEachTicket) {
    TestDevice test(saying("ok\r\n"));
    test.connect();
    test.send("x");
    EXPECT_EQ(test.reply(), "");
    test.send("<p>");
    EXPECT_EQ(test.reply(), "ok\r\n");
    EXPECT_EQ(test.reply(), "");
    test.send("<p><q>y");
    test.end();
    EXPECT_EQ(test.reply(), "ok\r\nok\r\nok\r\n");
}

TEST(DeviceReply, OneThatIsThereIsNoReasonToComeBack) {
    TestDevice test(saying("ok"));
    test.connect();
    test.send("<p>");
    EXPECT_EQ(test.untilEvent(), std::nullopt);
}

TEST(DeviceReply, ComesLate) {
    TestDevice test(saying("ok", milliseconds(300)));
    test.connect();
    test.send("<p>");
    EXPECT_EQ(test.untilEvent(), milliseconds(300));
    test.pass(milliseconds(100));
    test.send("<p>");
    test.pass(milliseconds(200) - nanoseconds(1));
    EXPECT_EQ(test.reply(), "");
    test.pass(nanoseconds(1));
    EXPECT_EQ(test.reply(), "ok");
    EXPECT_EQ(test.untilEvent(), milliseconds(100));
    test.pass(milliseconds(100));
    EXPECT_EQ(test.reply(), "ok");
}

TEST(DeviceReply, ThePrinterIsNotDoneBeforeIt) {
    TestDevice test(saying("ok", milliseconds(300)));
    test.connect();
    test.send("<p>");
    test.end();
    EXPECT_FALSE(test.device.isDone());
    test.pass(milliseconds(300));
    EXPECT_FALSE(test.device.isDone());
    EXPECT_EQ(test.reply(), "ok");
    EXPECT_TRUE(test.device.isDone());
}

TEST(DeviceReply, ASilentClientGetsOne) {
    TestDevice test(saying("ready"));
    test.connect();
    EXPECT_EQ(test.untilEvent(), Reply::kSilence);
    test.pass(Reply::kSilence - nanoseconds(1));
    EXPECT_EQ(test.reply(), "");
    test.pass(nanoseconds(1));
    EXPECT_EQ(test.reply(), "ready");
    test.pass(std::chrono::hours(1));
    EXPECT_EQ(test.reply(), "");
}

TEST(DeviceReply, ASilentClientGetsItLateToo) {
    TestDevice test(saying("ready", milliseconds(500)));
    test.connect();
    test.pass(milliseconds(699));
    EXPECT_EQ(test.reply(), "");
    test.pass(milliseconds(1));
    EXPECT_EQ(test.reply(), "ready");
}

TEST(DeviceReply, AClientThatSendsIsNotSilent) {
    TestDevice test(saying("ready"));
    test.connect();
    test.pass(Reply::kSilence - nanoseconds(1));
    test.send("x");
    test.pass(std::chrono::hours(1));
    EXPECT_EQ(test.reply(), "");
}

TEST(DeviceReply, AClientThatOnlyEndsItsSideGetsOneAndNoTicket) {
    TestDevice test(saying("ready"));
    test.connect();
    test.end();
    EXPECT_FALSE(test.device.isDone());
    test.pass(Reply::kSilence);
    EXPECT_EQ(test.reply(), "ready");
    EXPECT_TRUE(test.device.isDone());
    test.disconnect();
    EXPECT_TRUE(test.tickets.empty());
}

TEST(DeviceReply, IsForNobodyElse) {
    TestDevice test(saying("ok", milliseconds(300)));
    test.connect();
    test.send("<p>x");
    test.disconnect();
    test.connect();
    test.pass(milliseconds(499));
    EXPECT_EQ(test.reply(), "");
    test.pass(milliseconds(1));
    EXPECT_EQ(test.reply(), "ok");  // to the silence
}

TEST(DeviceReply, AWaitingSilenceEndsWithItsClient) {
    TestDevice test(saying("ok"));
    test.connect();
    test.pass(milliseconds(100));
    test.disconnect();
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    test.pass(milliseconds(50));
    test.connect();
    test.pass(milliseconds(199));
    EXPECT_EQ(test.reply(), "");
}

TEST(DeviceReply, WithoutATextNothingIsDue) {
    TestDevice test(saying("", milliseconds(300)));
    test.connect();
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    test.send("<p>");
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    test.end();
    EXPECT_TRUE(test.device.isDone());
}

TEST(DeviceReply, ComesWithTheTicketsEndAndNotWithItsPaper) {
    DeviceSettings settings = saying("ok");
    settings.physics.millimetresPerSecond = 20;
    TestDevice test(settings);
    test.connect();
    test.send("<p>");
    EXPECT_TRUE(test.device.state().moving);
    EXPECT_EQ(test.reply(), "ok");
}

TEST(DeviceReply, OfThoseThatNobodyTakesOnlySomeAreKept) {
    TestDevice test(saying("0123456789"));
    test.connect();
    for (int i = 0; i < 3000; ++i) test.send("<p>");
    EXPECT_EQ(test.reply().size(), 10000U);
    test.send("<p>");
    EXPECT_EQ(test.reply(), "0123456789");
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
