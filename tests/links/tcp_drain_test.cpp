#include <cerrno>
#include <poll.h>

#include <gtest/gtest.h>

#include "links/tcp_job.h"
#include "links/tcp_messages.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::bytesOf;
using test::endedBy;
using test::kEndedEarly;
using test::kNotRead;
using test::kPeer;
using test::VirtualTcp;
using TcpDrain = test::TcpJob;

TEST_F(TcpDrain, LastsUntilEverythingHasArrived) {
    calls_.after(milliseconds(5'000), [&] { calls_.acknowledge(4); });
    calls_.after(milliseconds(34'000), [&] { calls_.acknowledge(6); });
    EXPECT_TRUE(link_.drain());
    EXPECT_GE(calls_.elapsed(), milliseconds(34'000));
    EXPECT_LE(calls_.elapsed(), milliseconds(34'020));
    EXPECT_EQ(link_.report().acknowledged, 10U);
}

TEST_F(TcpDrain, LooksOftenButDoesNotSpin) {
    calls_.after(milliseconds(10'000), [&] { acknowledgeAll(); });
    EXPECT_TRUE(link_.drain());
    EXPECT_LE(calls_.waits.size(), 520U);
    for (const int wait : calls_.waits) {
        EXPECT_GE(wait, 1);
        EXPECT_LE(wait, 20);
    }
}

TEST_F(TcpDrain, GivesUpWhenNoByteIsAcknowledgedForTheTimeGiven) {
    calls_.after(milliseconds(7'000), [&] { calls_.acknowledge(4); });
    EXPECT_FALSE(link_.drain());
    EXPECT_GE(calls_.elapsed(), milliseconds(37'000));
    EXPECT_LE(calls_.elapsed(), milliseconds(37'020));
    EXPECT_EQ(link_.failure(), kPeer + " acknowledged no byte for 30 s");
    EXPECT_TRUE(calls_.wasReset);
    EXPECT_EQ(describe(link_.report()), "partly sent, 4 of 10 bytes (up to 10 may have arrived)");
}

TEST_F(TcpDrain, GivesUpExactlyAtItsDeadline) {
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(calls_.elapsed(), milliseconds(30'000));
}

TEST_F(TcpDrain, IsNotHeldUpByAPrinterThatOnlyTalks) {
    calls_.every(milliseconds(0), milliseconds(10), [&] { calls_.say(std::string(10'000, 'x')); });
    EXPECT_FALSE(link_.drain());
    EXPECT_GE(calls_.elapsed(), milliseconds(30'000));
    EXPECT_LE(calls_.elapsed(), milliseconds(30'010));
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
}

TEST_F(TcpDrain, ReceivesAnswers) {
    calls_.after(milliseconds(100), [&] { calls_.say("ready"); });
    calls_.after(milliseconds(200), [&] { acknowledgeAll(); });
    EXPECT_TRUE(link_.drain());
    EXPECT_EQ(link_.report().reply, "ready");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kAnswered);
    const milliseconds before = calls_.elapsed();
    EXPECT_EQ(link_.read(), "ready");
    EXPECT_LE(calls_.elapsed(), before + milliseconds(200));
    EXPECT_EQ(link_.report().reply, "ready");
}

TEST_F(TcpDrain, LeavesWhatThePrinterSaidBeforeOutOfTheAnswer) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open("192.0.2.7"));
    calls.say("hello");
    EXPECT_TRUE(link.write(bytesOf("job")));
    link.close();
    EXPECT_EQ(link.report().reply, "hello");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kSentUnconfirmed);
}

TEST_F(TcpDrain, FailsWhenTheConnectionBreaksOff) {
    for (const int error : {ECONNRESET, ETIMEDOUT, EPIPE, EHOSTUNREACH, EIO, EBADF}) {
        VirtualTcp calls;
        calls.takes = false;
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open("192.0.2.7"));
        ASSERT_TRUE(link.write(bytesOf("0123456789")));
        calls.after(milliseconds(100), [&] {
            calls.acknowledge(3);
            calls.breakOff(error);
        });
        EXPECT_FALSE(link.drain());
        EXPECT_EQ(calls.elapsed(), milliseconds(100));
        EXPECT_EQ(link.failure(), endedBy(error));
        EXPECT_EQ(describe(link.report()),
                  "partly sent, 3 of 10 bytes (up to 10 may have arrived)");
    }
}

TEST_F(TcpDrain, RemarksThatAJobThatArrivedMayNotHaveBeenRead) {
    calls_.after(milliseconds(100), [&] {
        acknowledgeAll();
        calls_.breakOff(ECONNRESET);
    });
    EXPECT_TRUE(link_.drain());
    link_.close();
    EXPECT_EQ(link_.report().failure, "");
    EXPECT_EQ(link_.report().remark, kNotRead);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed);
}

TEST_F(TcpDrain, RefusesMoreBytesAfterTheConnectionBrokeOff) {
    calls_.after(milliseconds(100), [&] {
        acknowledgeAll();
        calls_.breakOff(ECONNRESET);
    });
    EXPECT_TRUE(link_.drain());
    EXPECT_FALSE(link_.write(bytesOf("more")));
    EXPECT_EQ(link_.report().failure, kPeer + " closed the connection");
    EXPECT_EQ(link_.report().remark, "");
    EXPECT_EQ(describe(link_.report()), "partly sent, 10 of 14 bytes");
}

TEST_F(TcpDrain, FailsWhereTheConnectionHangsUpWithoutAReason) {
    calls_.falseAlarms = {POLLHUP};
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.failure(), kPeer + " closed the connection");
    EXPECT_EQ(calls_.elapsed(), milliseconds(0));
}

TEST_F(TcpDrain, TellsWhyItCannotWait) {
    calls_.fail("poll", ENOMEM);
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(link_.failure(), endedBy(ENOMEM));
}

TEST_F(TcpDrain, GoesOnAfterInterruptionsAndFalseAlarms) {
    calls_.fail("poll", EINTR, 3, 5);
    calls_.falseAlarms = {0, POLLIN, 0, POLLIN};
    calls_.fail("recv", EINTR, 0, 2);
    calls_.after(milliseconds(1'000), [&] { acknowledgeAll(); });
    EXPECT_TRUE(link_.drain());
    EXPECT_GE(calls_.elapsed(), milliseconds(1'000));
}

TEST_F(TcpDrain, WaitsForThePrinterAlsoAfterThatEndedItsSide) {
    calls_.end();
    calls_.after(milliseconds(1'000), [&] { acknowledgeAll(); });
    EXPECT_TRUE(link_.drain());
    EXPECT_LE(calls_.waits.size(), 70U) << "an end of stream is there once and for all";
    link_.close();
    EXPECT_EQ(link_.report().failure, "");
    EXPECT_EQ(link_.report().remark, kEndedEarly);
}

TEST_F(TcpDrain, IsCancelled) {
    calls_.after(milliseconds(100), [&] { link_.cancel(); });
    EXPECT_FALSE(link_.drain());
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(link_.failure(), "cancelled");
    EXPECT_TRUE(calls_.wasReset);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
}

TEST_F(TcpDrain, ClaimsNothingWhereTheSystemDoesNotTell) {
    calls_.fail("unsentBytes", EINVAL);
    link_.close();
    EXPECT_EQ(link_.report().acknowledged, 0U);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
}

}  // namespace
}  // namespace tavio::links
