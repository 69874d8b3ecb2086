#include <cerrno>
#include <poll.h>

#include <gtest/gtest.h>

#include "links/tcp_job.h"
#include "links/tcp_messages.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::bytesOf;
using test::kNoEnd;
using test::kNotRead;
using test::kPeer;
using test::VirtualTcp;
using TcpCloseEarly = test::TcpJob;

// A job that the printer takes after a second.
class TcpClose : public test::TcpJob {
  protected:
    TcpClose() {
        calls_.after(milliseconds(1'000), [&] { acknowledgeAll(); });
    }

    void expectArrived(const std::string& remark) {
        EXPECT_EQ(link_.report().failure, "");
        EXPECT_EQ(link_.report().remark, remark);
        EXPECT_EQ(link_.report().acknowledged, 10U);
        EXPECT_EQ(calls_.openDescriptors(), 0U);
        EXPECT_FALSE(calls_.wasReset);
    }
};

TEST_F(TcpClose, DrainsEndsItsSideAndWaitsForTheOther) {
    calls_.endsWhenWeEnd = false;
    calls_.onCall = [&](const std::string& name) {
        if (name == "shutdown") {
            EXPECT_EQ(calls_.arrived, "0123456789");
        }
        if (name == "close") {
            EXPECT_GE(calls_.elapsed(), milliseconds(4'000));
        }
    };
    calls_.after(milliseconds(4'000), [&] { calls_.end(); });
    link_.close();
    EXPECT_EQ(calls_.elapsed(), milliseconds(4'000));
    EXPECT_EQ(calls_.made["shutdown"], 1);
    expectArrived("");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed);
    link_.close();
    EXPECT_EQ(calls_.made["close"], 1);
}

TEST_F(TcpClose, TakesWhatComesDuringTheGoodbyeForAnAnswer) {
    calls_.endsWhenWeEnd = false;
    calls_.after(milliseconds(3'000), [&] { calls_.say("printed"); });
    calls_.after(milliseconds(4'000), [&] { calls_.end(); });
    link_.close();
    expectArrived("");
    EXPECT_EQ(link_.report().reply, "printed");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kAnswered);
}

TEST(TcpLink, DoesNotWaitForTheEndOfAPrinterThatWasSentNothing) {
    VirtualTcp calls;
    calls.endsWhenWeEnd = false;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open("192.0.2.7"));
    calls.say("ready");
    EXPECT_EQ(link.read(), "ready");
    const milliseconds before = calls.elapsed();
    link.close();
    EXPECT_EQ(calls.elapsed(), before);
    EXPECT_EQ(calls.made["shutdown"], 1);
    EXPECT_FALSE(calls.wasReset);
    EXPECT_EQ(calls.openDescriptors(), 0U);
    EXPECT_EQ(link.report().remark, "");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
}

TEST_F(TcpClose, RemarksThatThePrinterDoesNotEndItsSide) {
    calls_.endsWhenWeEnd = false;
    calls_.falseAlarms = {POLLIN, 0};
    link_.close();
    EXPECT_GE(calls_.elapsed(), milliseconds(6'000));
    EXPECT_LE(calls_.elapsed(), milliseconds(6'020));
    expectArrived(kNoEnd);
}

TEST_F(TcpClose, DoesNotListenForEver) {
    calls_.endsWhenWeEnd = false;
    calls_.every(milliseconds(2'000), milliseconds(10),
                 [&] { calls_.say(std::string(10'000, 'x')); });
    link_.close();
    EXPECT_LE(calls_.elapsed(), milliseconds(6'020));
    expectArrived(kNoEnd);
}

TEST_F(TcpClose, IsNotHeldUpByAPrinterThatAlwaysHasMoreToSay) {
    for (const milliseconds perLook : {milliseconds(1), milliseconds(5)}) {
        VirtualTcp calls;
        calls.endsWhenWeEnd = false;
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open("192.0.2.7"));
        ASSERT_TRUE(link.write(bytesOf("0123456789")));
        ASSERT_TRUE(link.drain());
        calls.onCall = [&](const std::string& name) {
            if (name != "recv" && name != "poll") return;
            calls.say("x");
            calls.advance(perLook);
        };
        const milliseconds before = calls.elapsed();
        link.close();
        EXPECT_GE(calls.elapsed(), before + milliseconds(5'000));
        EXPECT_LE(calls.elapsed(), before + milliseconds(5'100));
        EXPECT_EQ(link.report().remark, kNoEnd);
    }
}

// However often it is heard meanwhile: closing before the end would reset the connection.
TEST_F(TcpClose, WaitsForTheEndOfAPrinterThatTalksALot) {
    calls_.endsWhenWeEnd = false;
    EXPECT_TRUE(link_.drain());
    calls_.every(milliseconds(0), milliseconds(5), [&] { calls_.say("."); });
    calls_.after(milliseconds(4'000), [&] { calls_.end(); });
    link_.close();
    expectArrived("");
}

TEST_F(TcpClose, RemarksThatThePrinterBreaksOffInsteadOfEnding) {
    for (const int error : {ECONNRESET, ETIMEDOUT, EPIPE, EIO}) {
        VirtualTcp calls;
        calls.endsWhenWeEnd = false;
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open("192.0.2.7"));
        ASSERT_TRUE(link.write(bytesOf("0123456789")));
        calls.after(milliseconds(2'000), [&] { calls.breakOff(error); });
        link.close();
        EXPECT_EQ(calls.elapsed(), milliseconds(2'000));
        EXPECT_EQ(link.report().failure, "");
        EXPECT_EQ(link.report().remark, kNotRead);
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
    }
}

TEST_F(TcpClose, RemarksThatThePrinterHadBrokenOffBefore) {
    EXPECT_TRUE(link_.drain());
    calls_.breakOff(ECONNRESET);
    link_.close();
    expectArrived(kNotRead);
}

TEST_F(TcpClose, RemarksThatItCannotWaitForTheEnd) {
    calls_.endsWhenWeEnd = false;
    EXPECT_TRUE(link_.drain());
    calls_.fail("poll", ENOMEM);
    link_.close();
    EXPECT_NE(link_.report().remark, "");
    EXPECT_EQ(link_.report().failure, "");
}

TEST_F(TcpClose, DoesNotCountTheEndAsAByte) {
    calls_.endsWhenWeEnd = false;
    link_.close();
    EXPECT_EQ(link_.report().acknowledged, 10U);
}

TEST_F(TcpClose, IsCancelledWhileItWaitsForTheEnd) {
    calls_.endsWhenWeEnd = false;
    calls_.after(milliseconds(3'000), [&] { link_.cancel(); });
    link_.close();
    EXPECT_EQ(calls_.elapsed(), milliseconds(3'000));
    EXPECT_EQ(link_.report().failure, "cancelled");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed) << "it has everything";
    EXPECT_FALSE(calls_.wasReset) << "it would lose what it has not read yet";
}

TEST_F(TcpCloseEarly, BreaksOffAJobThatDoesNotArriveBeforeItCloses) {
    link_.close();
    EXPECT_EQ(calls_.elapsed(), milliseconds(30'000));
    EXPECT_EQ(calls_.made["shutdown"], 0);
    EXPECT_TRUE(calls_.wasReset);
    EXPECT_EQ(link_.report().failure, kPeer + " acknowledged no byte for 30 s");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
}

TEST(TcpLink, ClosesWhatWasNeverOpenedAndWhatIsClosed) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    link.close();
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
    ASSERT_TRUE(link.open("192.0.2.7"));
    link.close();
    link.close();
    EXPECT_EQ(calls.made["close"], 1);
    EXPECT_EQ(link.report().remark, "");
}

}  // namespace
}  // namespace tavio::links
