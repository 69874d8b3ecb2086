#include <future>

#include <gtest/gtest.h>

#include "TavioIpadSDK/session/session.h"
#include "TavioIpadSDK/session/transport.h"
#include "support/loopback_peer.h"
#include "tavio/links/recording_link.h"
#include "tavio/links/transport_operations.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::Peer;
using test::Port;

constexpr milliseconds kLong{120'000};

class ReadyMadeLinks : public testing::Test {
  protected:
    ReadyMadeLinks() {
        port_.listen();
        setDeadlines({kLong, kLong, kLong, milliseconds(50), kLong});
    }
    ~ReadyMadeLinks() override {
        Close_WF();
        Close_BT();
        setDeadlines({});
        setBluetoothPrinter("");
        useLink(nullptr);
        Mode = "";
    }

    Port port_;
};

TEST_F(ReadyMadeLinks, CarryASessionToThePrinterAtTheAddress) {
    std::string received;
    Peer peer(port_, [&](int connection) {
        received = test::receiveExactly(connection, 7);
        EXPECT_TRUE(test::sendAll(connection, "paper low"));
        received += test::receiveAll(connection);
    });
    ASSERT_TRUE(OpenSessionWiFi(port_.address())) << lastReport().failure;
    SendString("<RC1,2>");
    EXPECT_EQ(ReadPrinter(), "paper low");
    EXPECT_EQ(lastReport().reply, "paper low");
    EXPECT_EQ(outcomeOf(lastReport()), Outcome::kAnswered);
    PrintCut();
    CloseSessionWiFi();
    peer.finish();
    EXPECT_EQ(received, "<RC1,2><p>");
    EXPECT_EQ(describe(lastReport()), "sent, unconfirmed: 10 bytes");
}

TEST_F(ReadyMadeLinks, TellWhyTheyCannotConnect) {
    const Port deaf;
    EXPECT_FALSE(OpenSessionWiFi(deaf.address()));
    Write_WF("lost");
    CloseSessionWiFi();
    EXPECT_EQ(lastReport().failure,
              "the printer at " + deaf.address() + " cannot be reached: Connection refused");
    EXPECT_EQ(lastReport().offered, 4U);
    EXPECT_EQ(describe(lastReport()), "nothing sent, safe to repeat");
}

TEST_F(ReadyMadeLinks, BeginANewReportWithEachOpening) {
    {
        Peer peer(port_, [&](int connection) { test::receiveAll(connection); });
        ASSERT_TRUE(OpenSessionWiFi(port_.address()));
        SendString("job");
        CloseSessionWiFi();
    }
    EXPECT_EQ(lastReport().offered, 3U);
    EXPECT_FALSE(OpenSessionWiFi("not an address"));
    EXPECT_EQ(lastReport().offered, 0U);
    EXPECT_NE(lastReport().failure, "");
    Peer peer(port_, [&](int connection) { test::receiveAll(connection); });
    ASSERT_TRUE(OpenSessionWiFi(port_.address()));
    EXPECT_EQ(lastReport().failure, "");
    CloseSessionWiFi();
}

TEST_F(ReadyMadeLinks, ReportNothingOfAnEarlierJobWhereNoBluetoothPrinterIsChosen) {
    Peer peer(port_, [&](int connection) { test::receiveAll(connection); });
    ASSERT_TRUE(OpenSessionWiFi(port_.address()));
    SendString("job");
    CloseSessionWiFi();
    EXPECT_FALSE(OpenSessionBT());
    EXPECT_EQ(lastReport().offered, 0U);
    EXPECT_EQ(lastReport().failure, "no Bluetooth printer has been chosen");
}

// Both may be open at once; the one opened last is the job.
TEST_F(ReadyMadeLinks, StayWithTheJobOpenedLastWhenTheOtherTransportIsClosed) {
    Peer peer(port_, [&](int connection) { test::receiveAll(connection); });
    setBluetoothPrinter("no address");
    EXPECT_FALSE(Open_BT());
    ASSERT_TRUE(Open_WF(port_.address()));
    Write_WF("job");
    Close_BT();
    EXPECT_EQ(lastReport().offered, 3U);
    EXPECT_EQ(lastReport().failure, "");
    cancelJob();
    Write_WF("more");
    EXPECT_EQ(lastReport().failure, "cancelled");
    Close_WF();
}

TEST_F(ReadyMadeLinks, CloseTheConnectionThatIsOpenBeforeTheyOpenAnother) {
    std::string first;
    Peer peer(port_, [&](int connection) { first = test::receiveAll(connection); });
    ASSERT_TRUE(Open_WF(port_.address()));
    Write_WF("first");
    Port other;
    other.listen();
    std::string second;
    Peer otherPeer(other, [&](int connection) { second = test::receiveAll(connection); });
    ASSERT_TRUE(Open_WF(other.address()));
    peer.finish();
    EXPECT_EQ(first, "first");
    Write_WF("second");
    Close_WF();
    otherPeer.finish();
    EXPECT_EQ(second, "second");
}

TEST_F(ReadyMadeLinks, AreCancelledFromAnotherThreadAndFreshAfterThat) {
    std::promise<void> begun;
    std::promise<void> over;
    {
        Peer peer(port_, [&](int connection) {
            test::receiveExactly(connection, 1);
            begun.set_value();
            over.get_future().wait();
        });
        std::thread other([&] {
            begun.get_future().wait();
            cancelJob();
        });
        ASSERT_TRUE(OpenSessionWiFi(port_.address()));
        SendString(std::string(64 << 20, 'x'));
        CloseSessionWiFi();
        other.join();
        over.set_value();
    }
    EXPECT_EQ(lastReport().failure, "cancelled");
    EXPECT_EQ(outcomeOf(lastReport()), Outcome::kPartlySent);
    cancelJob();
    Peer peer(port_, [&](int connection) { test::receiveAll(connection); });
    EXPECT_TRUE(OpenSessionWiFi(port_.address())) << "a job that is over was cancelled again";
    CloseSessionWiFi();
    EXPECT_EQ(lastReport().failure, "");
}

TEST_F(ReadyMadeLinks, NeedABluetoothPrinterToBeChosen) {
    EXPECT_FALSE(OpenSessionBT());
    EXPECT_EQ(lastReport().failure, "no Bluetooth printer has been chosen");
    SendString("lost");
    EXPECT_EQ(ReadPrinter(), std::nullopt);
    CloseSessionBT();
    EXPECT_EQ(describe(lastReport()), "nothing sent, safe to repeat");
}

TEST_F(ReadyMadeLinks, TakeTheBluetoothPrinterThatIsChosen) {
    setBluetoothPrinter("not an address");
    EXPECT_FALSE(OpenSessionBT());
    EXPECT_NE(lastReport().failure.find("not an address"), std::string::npos)
        << lastReport().failure;
    CloseSessionBT();
}

TEST_F(ReadyMadeLinks, KeepToTheDeadlinesGiven) {
    Deadlines deadlines{kLong, milliseconds(200), kLong, milliseconds(50), kLong};
    setDeadlines(deadlines);
    std::promise<void> over;
    Peer peer(port_, [&](int) { over.get_future().wait(); });
    ASSERT_TRUE(OpenSessionWiFi(port_.address()));
    SendString(std::string(64 << 20, 'x'));
    CloseSessionWiFi();
    over.set_value();
    EXPECT_EQ(lastReport().failure,
              "the printer at " + port_.address() + " took no byte for 200 ms");
}

TEST_F(ReadyMadeLinks, StandBackForALinkThatIsChosen) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    ASSERT_TRUE(OpenSessionWiFi(port_.address()));
    SendString("recorded");
    EXPECT_EQ(lastReport().offered, 8U);
    CloseSessionWiFi();
    EXPECT_EQ(lastReport().offered, 8U);
    useLink(nullptr);
    EXPECT_EQ(link->bytes().size(), 8U);
    EXPECT_EQ(link.use_count(), 1);
    EXPECT_EQ(lastReport().offered, 8U);
    cancelJob();
    EXPECT_TRUE(link->open("")) << "no job was under way";
}

TEST_F(ReadyMadeLinks, LetTheChosenLinkBeCancelled) {
    auto link = std::make_shared<RecordingLink>();
    useLink(link);
    ASSERT_TRUE(OpenSessionBT());
    cancelJob();
    SendString("refused");
    CloseSessionBT();
    EXPECT_EQ(lastReport().failure, "cancelled");
    EXPECT_EQ(link->bytes().size(), 0U);
}

}  // namespace
}  // namespace tavio::links
