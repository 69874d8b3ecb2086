// The receive buffer, the link and the paper.
#include <gtest/gtest.h>

#include "tools/tavio-printer/device/test_device.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

// 2 mm of paper at this speed take 100 ms.
constexpr double kSlowPaper = 20;
constexpr milliseconds kPassing{100};

DeviceSettings slowPaper(std::size_t buffer = 100) {
    DeviceSettings settings = smallDevice();
    settings.physics.receiveBuffer = buffer;
    settings.physics.millimetresPerSecond = kSlowPaper;
    return settings;
}

DeviceSettings link(double bytesPerSecond) {
    DeviceSettings settings = smallDevice();
    settings.physics.bytesPerSecond = bytesPerSecond;
    return settings;
}

TEST(DevicePaper, NothingIsInterpretedUntilItIsThrough) {
    TestDevice test(slowPaper());
    test.connect();
    test.send("<p>" + graphics(1) + "<p>xyz");
    ASSERT_EQ(test.tickets.size(), 1U);
    EXPECT_TRUE(test.device.state().moving);
    EXPECT_EQ(test.device.state().waitingBytes, 11U);
    EXPECT_EQ(test.untilEvent(), kPassing);

    test.pass(kPassing - nanoseconds(1));
    EXPECT_EQ(test.tickets.size(), 1U);
    test.pass(nanoseconds(1));
    EXPECT_EQ(test.tickets.size(), 2U);
    EXPECT_EQ(test.device.state().waitingBytes, 3U);
    EXPECT_EQ(test.untilEvent(), kPassing);
    test.pass(kPassing);
    EXPECT_FALSE(test.device.state().moving);
    EXPECT_EQ(test.device.state().waitingBytes, 0U);
    EXPECT_EQ(test.untilEvent(), std::nullopt);
}

TEST(DevicePaper, TakesItsTimeFromWhenItBeganAndNotFromWhenItWasAsked) {
    TestDevice test(slowPaper());
    test.connect();
    test.send("<p><p><p><p>");
    test.pass(kPassing * 5 / 2);
    EXPECT_EQ(test.tickets.size(), 3U);
    EXPECT_EQ(test.untilEvent(), kPassing / 2);
}

TEST(DevicePaper, TheLastTicketWaitsForTheOneBeforeIt) {
    TestDevice test(slowPaper());
    test.connect();
    test.send("<p>x");
    test.end();
    EXPECT_EQ(test.tickets.size(), 1U);
    test.pass(kPassing);
    EXPECT_EQ(test.tickets.size(), 2U);
    EXPECT_FALSE(test.device.isDone());
    test.pass(kPassing);
    EXPECT_TRUE(test.device.isDone());
}

TEST(DevicePaper, AClientThatLeavesLeavesItsBytes) {
    TestDevice test(slowPaper());
    test.connect();
    test.send("<p>x");
    test.disconnect();
    EXPECT_FALSE(test.device.state().connected);
    EXPECT_FALSE(test.device.isFree());
    test.pass(kPassing);
    EXPECT_EQ(test.streams(), (Lines{"<p>", "x"}));
    EXPECT_TRUE(test.device.isFree());

    test.connect();  // while paper still moves
    EXPECT_EQ(test.send("<p>"), 3U);
    EXPECT_EQ(test.tickets.size(), 2U);
    test.pass(kPassing);
    EXPECT_EQ(test.tickets.size(), 3U);
    EXPECT_EQ(test.tickets[2].connection, 2U);
}

TEST(DeviceBuffer, AFullOneHasTheSenderWait) {
    TestDevice test(slowPaper(10));
    test.connect();
    EXPECT_EQ(test.room(), 10U);
    EXPECT_EQ(test.offer("<p>0123456789ABC"), 13U);
    EXPECT_EQ(test.room(), 0U);
    EXPECT_EQ(test.device.state().waitingBytes, 10U);
    EXPECT_EQ(test.device.state().received, 13U);
    test.pass(kPassing);
    EXPECT_EQ(test.room(), 10U);
    EXPECT_EQ(test.offer("ABC<p>"), 6U);
    EXPECT_EQ(test.streams(), (Lines{"<p>", "0123456789ABC<p>"}));
    EXPECT_TRUE(test.tickets[1].problems.empty());
}

TEST(DeviceBuffer, TakesNoMoreThanThereIsRoomFor) {
    TestDevice test(slowPaper(10));
    test.connect();
    test.offer("<p>");
    test.device.receive(bytesOf("0123456789ABC"), test.now);
    EXPECT_EQ(test.device.state().received, 13U);
    test.pass(kPassing);
    test.offer("<p>");
    EXPECT_EQ(test.streams(), (Lines{"<p>", "0123456789<p>"}));
}

TEST(DeviceBuffer, ItWrapsAround) {
    TestDevice test(slowPaper(7));
    test.connect();
    std::string all;
    for (int i = 0; i < 50; ++i) all += "<p>" + std::to_string(i * 7919) + "a";
    EXPECT_EQ(test.send(all + "<p>"), all.size() + 3);
    while (test.device.nextEvent()) test.pass(*test.untilEvent());
    std::string printed;
    for (const std::string& stream : test.streams()) printed += stream;
    EXPECT_EQ(printed, all + "<p>");
    EXPECT_EQ(test.tickets.size(), 51U);
    EXPECT_EQ(test.elapsed(), 51 * kPassing);
}

TEST(DeviceBuffer, ADroppingOneLosesWhatDoesNotFitAndSaysSo) {
    DeviceSettings settings = slowPaper(4);
    settings.physics.dropWhenFull = true;
    TestDevice test(settings);
    test.connect();
    EXPECT_EQ(test.offer("<p>abcdEFGHI"), 12U);
    EXPECT_EQ(test.device.state().received, 12U);
    EXPECT_EQ(test.device.state().waitingBytes, 4U);
    test.pass(kPassing);
    test.offer("x<p>1234567");
    test.end();
    test.pass(kPassing);
    test.pass(kPassing);
    EXPECT_EQ(test.streams(), (Lines{"<p>", "abcdx<p>", "1234"}));
    EXPECT_EQ(test.problemsOf(1),
              (Lines{"4: 5 bytes were lost here: the receive buffer was full"}));
    EXPECT_EQ(test.problemsOf(2),
              (Lines{"4: 3 bytes were lost here: the receive buffer was full"}));
    EXPECT_EQ(test.tickets[1].byteCount, 8U);
}

TEST(DeviceBuffer, LossesOfOnePlaceAreOneProblem) {
    DeviceSettings settings = slowPaper(4);
    settings.physics.dropWhenFull = true;
    TestDevice test(settings);
    test.connect();
    for (const char* piece : {"<p>ab", "cdE", "F", "GH"}) test.offer(piece);
    test.pass(kPassing);
    test.end();
    EXPECT_EQ(test.problemsOf(1),
              (Lines{"4: 4 bytes were lost here: the receive buffer was full"}));
}

TEST(DeviceBuffer, ASingleLostByteIsNamedInTheSingular) {
    DeviceSettings settings = slowPaper(4);
    settings.physics.dropWhenFull = true;
    TestDevice test(settings);
    test.print("<p>abcde");
    EXPECT_EQ(test.problemsOf(1), (Lines{"4: 1 byte was lost here: the receive buffer was full"}));
}

// Otherwise it would not be reported.
TEST(DeviceBuffer, ALossBehindTheLastTicketBringsABlankOne) {
    DeviceSettings settings = slowPaper(3);
    settings.physics.dropWhenFull = true;
    TestDevice test(settings);
    test.print("<p><p><p><p>");
    EXPECT_EQ(test.streams(), (Lines{"<p>", "<p>", ""}));
    EXPECT_EQ(test.problemsOf(2),
              (Lines{"0: 6 bytes were lost here: the receive buffer was full"}));
    EXPECT_FALSE(test.tickets[2].marked);
}

TEST(DeviceLink, BringsBytesAtItsSpeed) {
    TestDevice test(link(960));
    test.connect();
    EXPECT_EQ(test.room(), 0U);
    const std::string job = "<RC0,0>" + graphics(1000, 0);
    EXPECT_EQ(test.send(job), job.size());
    // The last byte is there when all of them have had their time, or up to a portion later.
    const nanoseconds ideal(static_cast<std::int64_t>(static_cast<double>(job.size()) / 960 * 1e9));
    EXPECT_GE(test.elapsed(), ideal);
    EXPECT_LT(test.elapsed(), ideal + milliseconds(12));
}

TEST(DeviceLink, DoesNotDriftHoweverOftenItIsAsked) {
    TestDevice test(link(1234.567));
    test.connect();
    const std::string job = "<RC0,0>" + graphics(100000, 0);
    std::size_t sent = 0;
    while (sent < job.size()) {
        test.pass(nanoseconds(333'333));
        sent += test.offer(std::string_view(job).substr(sent));
        const double seconds = std::chrono::duration<double>(test.elapsed()).count();
        ASSERT_LE(static_cast<double>(sent), 1234.567 * seconds + 1e-6);
        ASSERT_GE(static_cast<double>(sent), 1234.567 * (seconds - 0.0105) - 1);
        if (seconds > 100) FAIL() << sent;
    }
}

TEST(DeviceLink, AnIdleOneSavesUpLittle) {
    TestDevice test(link(1000));
    test.connect();
    test.pass(std::chrono::hours(10));
    EXPECT_EQ(test.offer(std::string(1000, 'x')), 50U);
    EXPECT_EQ(test.room(), 0U);
    EXPECT_EQ(test.untilEvent(), milliseconds(10));
    test.pass(milliseconds(10));
    EXPECT_EQ(test.room(), 10U);
}

TEST(DeviceLink, AVerySlowOneBringsByteByByte) {
    TestDevice test(link(0.5));
    test.connect();
    EXPECT_EQ(test.untilEvent(), std::chrono::seconds(2));
    test.pass(std::chrono::seconds(2) - nanoseconds(1));
    EXPECT_EQ(test.room(), 0U);
    test.pass(nanoseconds(1));
    EXPECT_EQ(test.room(), 1U);
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    EXPECT_EQ(test.send("<p>"), 3U);
    EXPECT_EQ(test.elapsed(), std::chrono::seconds(6));
}

TEST(DeviceLink, AByteIsThereWhenItWasSaidToBe) {
    TestDevice test(link(7));
    test.connect();
    for (int byte = 1; byte <= 100; ++byte) {
        ASSERT_TRUE(test.untilEvent());
        test.pass(*test.untilEvent());
        ASSERT_EQ(test.offer("xyz"), 1U);
    }
    EXPECT_GE(test.elapsed() * 7, std::chrono::seconds(100));
    EXPECT_LE(test.elapsed() * 7, std::chrono::seconds(100) + nanoseconds(7 * 100));
}

TEST(DeviceLink, BeginsAnewWithEachClient) {
    TestDevice test(link(1000));
    test.connect();
    test.pass(std::chrono::seconds(1));
    test.disconnect();
    test.pass(std::chrono::seconds(1));
    test.connect();
    EXPECT_EQ(test.room(), 0U);
    EXPECT_EQ(test.untilEvent(), milliseconds(10));
}

TEST(DeviceLink, IsNoReasonToComeBackWhileTheBufferIsFull) {
    DeviceSettings settings = link(1000);
    settings.physics.receiveBuffer = 7;
    settings.faults.paperOutAfter = 1;
    TestDevice test(settings);
    test.connect();
    test.send("<p>abcdefg");
    EXPECT_EQ(test.device.state().waitingBytes, 7U);
    EXPECT_EQ(test.untilEvent(), std::nullopt);
    test.loadPaper();
    EXPECT_EQ(test.untilEvent(), milliseconds(10));
}

TEST(DeviceLink, LostBytesHaveTakenTheirTimeToo) {
    DeviceSettings settings = slowPaper(4);
    settings.physics.dropWhenFull = true;
    settings.physics.bytesPerSecond = 1000;
    TestDevice test(settings);
    test.connect();
    EXPECT_EQ(test.send("<p>" + std::string(47, 'x')), 50U);
    EXPECT_EQ(test.elapsed(), milliseconds(50));
    EXPECT_EQ(test.device.state().received, 50U);
    EXPECT_EQ(test.device.state().waitingBytes, 4U);
}

TEST(DeviceTime, ThatGoesBackCountsAsTheLatest) {
    TestDevice test(slowPaper());
    test.connect();
    test.pass(milliseconds(500));
    test.device.receive(bytesOf("<p>x"), TestDevice::kStart);
    EXPECT_EQ(test.untilEvent(), kPassing);
    test.device.advance(TestDevice::kStart);
    EXPECT_EQ(test.device.state().waitingBytes, 1U);
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
