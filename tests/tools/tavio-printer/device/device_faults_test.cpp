// Printers that misbehave.
#include <gtest/gtest.h>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

DeviceSettings with(const Faults& faults) {
    DeviceSettings settings = smallDevice();
    settings.faults = faults;
    return settings;
}

TEST(DeviceFaults, ADeafPrinterTakesNothing) {
    DeviceSettings settings = with({.neverRead = true});
    settings.reply.text = "ready";
    TestDevice test(settings);
    test.connect();
    EXPECT_EQ(test.room(), 0U);
    test.device.receive(bytesOf("<p>"), test.now);
    test.end();
    test.pass(std::chrono::hours(1));
    EXPECT_EQ(test.reply(), "");
    EXPECT_FALSE(test.device.isDone());
    EXPECT_EQ(test.device.wish(), ConnectionWish::kKeep);
    EXPECT_EQ(test.device.state().received, 0U);
    test.disconnect();
    EXPECT_TRUE(test.device.isFree());
    EXPECT_TRUE(test.tickets.empty());
}

TEST(DeviceFaults, ItResetsAfterExactlySoManyBytes) {
    TestDevice test(with({.resetAfter = 10}));
    test.connect();
    EXPECT_EQ(test.offer("<p>012345"), 9U);
    EXPECT_EQ(test.device.wish(), ConnectionWish::kKeep);
    EXPECT_EQ(test.room(), 1U);
    EXPECT_EQ(test.offer("6789"), 1U);
    EXPECT_EQ(test.device.wish(), ConnectionWish::kReset);
    EXPECT_EQ(test.room(), 0U);
    test.disconnect();
    EXPECT_EQ(test.device.wish(), ConnectionWish::kKeep);
    EXPECT_EQ(test.streams(), (Lines{"<p>", "0123456"}));
}

TEST(DeviceFaults, EachConnectionIsResetAnew) {
    TestDevice test(with({.resetAfter = 4}));
    for (int i = 0; i < 2; ++i) {
        test.connect();
        EXPECT_EQ(test.offer("<RC1,1>"), 4U);
        EXPECT_EQ(test.device.wish(), ConnectionWish::kReset);
        test.disconnect();
    }
    EXPECT_EQ(test.streams(), (Lines{"<RC1", "<RC1"}));
    EXPECT_EQ(test.problemsOf(0), (Lines{"0: the stream ends inside a command: \"<RC1\""}));
}

TEST(DeviceFaults, ItClosesAfterExactlySoManyBytes) {
    TestDevice test(with({.closeAfter = 3}));
    test.connect();
    EXPECT_EQ(test.offer("<p><p>"), 3U);
    EXPECT_EQ(test.device.wish(), ConnectionWish::kClose);
}

TEST(DeviceFaults, WhicheverComesFirstHappensAndResettingWins) {
    TestDevice first(with({.resetAfter = 5, .closeAfter = 3}));
    first.connect();
    EXPECT_EQ(first.offer("0123456"), 3U);
    EXPECT_EQ(first.device.wish(), ConnectionWish::kClose);

    TestDevice both(with({.resetAfter = 3, .closeAfter = 3}));
    both.connect();
    EXPECT_EQ(both.offer("0123456"), 3U);
    EXPECT_EQ(both.device.wish(), ConnectionWish::kReset);
}

TEST(DeviceFaults, AfterNoByteMeansAtOnce) {
    TestDevice test(with({.closeAfter = 0}));
    EXPECT_EQ(test.device.wish(), ConnectionWish::kKeep);
    test.connect();
    EXPECT_EQ(test.device.wish(), ConnectionWish::kClose);
    EXPECT_EQ(test.room(), 0U);
    test.disconnect();
    EXPECT_TRUE(test.tickets.empty());
}

TEST(DeviceFaults, LostBytesCountAsReceived) {
    DeviceSettings settings = with({.resetAfter = 20});
    settings.physics = {.receiveBuffer = 4, .dropWhenFull = true, .millimetresPerSecond = 20};
    TestDevice test(settings);
    test.connect();
    EXPECT_EQ(test.offer("<p>" + std::string(100, 'x')), 20U);
    EXPECT_EQ(test.device.wish(), ConnectionWish::kReset);
    EXPECT_EQ(test.device.state().waitingBytes, 4U);
}

TEST(DeviceFaults, OutOfPaperItStopsUntilThereIsNew) {
    DeviceSettings settings = with({.paperOutAfter = 2});
    settings.physics.receiveBuffer = 8;
    TestDevice test(settings);
    test.connect();
    EXPECT_EQ(test.offer("<p>"), 3U);
    EXPECT_FALSE(test.device.state().paperOut);
    EXPECT_EQ(test.offer("<p><p><p><p>"), 11U);
    EXPECT_TRUE(test.device.state().paperOut);
    EXPECT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.room(), 0U);
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    test.pass(std::chrono::hours(1));
    EXPECT_EQ(test.tickets.size(), 2U);

    test.loadPaper();
    EXPECT_EQ(test.tickets.size(), 4U);
    EXPECT_TRUE(test.device.state().paperOut);
    EXPECT_EQ(test.device.state().waitingBytes, 2U);
    test.loadPaper();
    EXPECT_EQ(test.tickets.size(), 4U);
    EXPECT_EQ(test.offer(">"), 1U);
    EXPECT_EQ(test.tickets.size(), 5U);
    EXPECT_EQ(test.device.state().tickets, 5U);
}

TEST(DeviceFaults, LoadingPaperEarlyBeginsTheCountAnew) {
    TestDevice test(with({.paperOutAfter = 2}));
    test.connect();
    test.offer("<p>");
    test.loadPaper();
    test.offer("<p>");
    EXPECT_FALSE(test.device.state().paperOut);
    test.offer("<p>");
    EXPECT_TRUE(test.device.state().paperOut);
}

TEST(DeviceFaults, PaperLastsBeyondAConnection) {
    TestDevice test(with({.paperOutAfter = 1}));
    test.print("<p>");
    test.connect();
    test.offer("<p>");
    test.disconnect();
    EXPECT_EQ(test.tickets.size(), 1U);
    EXPECT_FALSE(test.device.isFree());
    EXPECT_EQ(test.device.state().waitingBytes, 3U);
    test.loadPaper();
    EXPECT_EQ(test.tickets.size(), 2U);
    EXPECT_TRUE(test.device.isFree());
}

TEST(DeviceFaults, ALastTicketWithoutItsCutNeedsPaperToo) {
    TestDevice test(with({.paperOutAfter = 1}));
    test.connect();
    test.offer("<p>x");
    test.end();
    EXPECT_FALSE(test.device.isDone());
    test.loadPaper();
    EXPECT_TRUE(test.device.isDone());
    EXPECT_EQ(test.streams(), (Lines{"<p>", "x"}));
}

TEST(DeviceFaults, AJobThatUsedTheLastPaperIsDone) {
    TestDevice test(with({.paperOutAfter = 1}));
    test.print("x<p>");
    EXPECT_TRUE(test.device.state().paperOut);
    test.print("");
    EXPECT_EQ(test.tickets.size(), 1U);
}

TEST(DeviceFaults, WithPaperForNoTicketNothingIsEverInterpreted) {
    TestDevice test(with({.paperOutAfter = 0}));
    test.connect();
    test.offer("<p>");
    test.loadPaper();
    EXPECT_TRUE(test.tickets.empty());
    EXPECT_TRUE(test.device.state().paperOut);
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
