#include <cerrno>

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "links/tcp_messages.h"
#include "links/virtual_tcp.h"
#include "tavio/links/tcp_link.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::bytesOf;
using test::endedBy;
using test::kEndedEarly;
using test::kPeer;
using test::someBytes;
using test::VirtualTcp;

class TcpWrite : public testing::Test {
  protected:
    TcpWrite() { EXPECT_TRUE(link_.open("192.0.2.7")) << link_.failure(); }
    ~TcpWrite() override {
        link_.close();
        EXPECT_EQ(calls_.openDescriptors(), 0U);
    }

    // The job has failed: nothing more is sent, and queued bytes never leave.
    void expectBrokenOff(const std::string& sentence) {
        EXPECT_EQ(link_.failure(), sentence);
        EXPECT_TRUE(calls_.wasReset);
        EXPECT_EQ(calls_.openDescriptors(), 0U);
        const int sends = calls_.made["send"];
        const LinkReport before = link_.report();
        EXPECT_FALSE(link_.write(bytesOf("more")));
        EXPECT_FALSE(link_.drain());
        link_.close();
        EXPECT_EQ(calls_.made["send"], sends);
        EXPECT_EQ(calls_.made["shutdown"], 0);
        EXPECT_EQ(link_.report().offered, before.offered + 4);
        EXPECT_EQ(link_.report().accepted, before.accepted);
        EXPECT_EQ(link_.report().acknowledged, before.acknowledged);
        EXPECT_EQ(link_.report().failure, sentence);
    }

    VirtualTcp calls_;
    TcpLink link_{Deadlines{}, calls_};
};

TEST_F(TcpWrite, PassesAllBytesOnInOrder) {
    const std::string job = someBytes(100'000);
    EXPECT_TRUE(link_.write(bytesOf(job)));
    EXPECT_TRUE(link_.write({}));
    EXPECT_TRUE(link_.write(bytesOf("end")));
    EXPECT_TRUE(link_.drain());
    EXPECT_EQ(calls_.arrived, job + "end");
    EXPECT_EQ(link_.report().offered, 100'003U);
    EXPECT_EQ(link_.report().accepted, 100'003U);
    EXPECT_EQ(link_.report().acknowledged, 100'003U);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed);
}

TEST_F(TcpWrite, GivesTheSystemFewBytesAtOnce) {
    calls_.room = 1 << 20;
    EXPECT_TRUE(link_.write(bytesOf(someBytes(40'960))));
    EXPECT_EQ(calls_.made["send"], 10);
}

TEST(TcpLink, PassesAllBytesOnHoweverFewGoAtOnce) {
    const std::string job = someBytes(300);
    for (std::size_t maxPerSend = 1; maxPerSend <= job.size(); ++maxPerSend) {
        for (const std::size_t room : {maxPerSend, std::size_t{1}, std::size_t{7}, job.size()}) {
            VirtualTcp calls;
            calls.maxPerSend = maxPerSend;
            calls.room = room;
            TcpLink link(Deadlines{}, calls);
            ASSERT_TRUE(link.open("192.0.2.7"));
            ASSERT_TRUE(link.write(bytesOf(job))) << maxPerSend << ", " << room;
            link.close();
            ASSERT_EQ(calls.arrived, job) << maxPerSend << ", " << room;
            ASSERT_EQ(link.report().acknowledged, job.size());
        }
    }
}

TEST_F(TcpWrite, RepeatsAnInterruptedSendOrReceive) {
    calls_.fail("send", EINTR, 0, 3);
    calls_.fail("recv", EINTR, 0, 3);
    EXPECT_TRUE(link_.write(bytesOf("job")));
    EXPECT_TRUE(link_.drain());
    EXPECT_EQ(calls_.arrived, "job");
}

// The errors named by send(2), socket(7), ip(7) and tcp(7), except those that only mean waiting.
constexpr std::array kSendErrors{
    EACCES,       EALREADY, EBADF,        ECONNRESET,  EDESTADDRREQ, EFAULT,      EINVAL,
    EISCONN,      EMSGSIZE, ENOBUFS,      ENOMEM,      ENOTCONN,     ENOTSOCK,    EOPNOTSUPP,
    EPIPE,        EPERM,    EHOSTUNREACH, ENETUNREACH, ENETDOWN,     ETIMEDOUT,   EHOSTDOWN,
    ECONNABORTED, EIO,      EPROTO,       ENONET,      ENOPROTOOPT,  ECONNREFUSED};

TEST(TcpLink, TellsWhySendingFailed) {
    for (const int error : kSendErrors) {
        for (const int sent : {0, 1}) {
            SCOPED_TRACE(std::to_string(error) + " after " + std::to_string(sent));
            VirtualTcp calls;
            calls.maxPerSend = 3;
            calls.fail("send", error, sent);
            TcpLink link(Deadlines{}, calls);
            ASSERT_TRUE(link.open("192.0.2.7"));
            EXPECT_FALSE(link.write(bytesOf("abcdef")));
            EXPECT_EQ(link.failure(), endedBy(error));
            EXPECT_TRUE(calls.wasReset);
            EXPECT_EQ(calls.openDescriptors(), 0U);
            link.close();
            EXPECT_EQ(link.report().accepted, sent == 0 ? 0U : 3U);
            EXPECT_EQ(outcomeOf(link.report()),
                      sent == 0 ? Outcome::kNothingSent : Outcome::kPartlySent);
            EXPECT_EQ(link.report().acknowledged, 0U) << "no wait, so nothing was acknowledged";
        }
    }
}

// The errors named by recv(2), socket(7), ip(7) and tcp(7).
constexpr std::array kReceiveErrors{
    EBADF,     ECONNREFUSED, EFAULT,       EINVAL,      ENOMEM,   ENOTCONN, ENOTSOCK,    ECONNRESET,
    ETIMEDOUT, EPIPE,        EHOSTUNREACH, ENETUNREACH, ENETDOWN, EIO,      ECONNABORTED};

TEST(TcpLink, TellsWhyReceivingFailedWhileItWrote) {
    for (const int error : kReceiveErrors) {
        SCOPED_TRACE(error);
        VirtualTcp calls;
        calls.maxPerSend = 3;
        calls.fail("recv", error, 1);
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open("192.0.2.7"));
        EXPECT_FALSE(link.write(bytesOf("abcdef")));
        EXPECT_EQ(link.failure(), endedBy(error));
        EXPECT_EQ(link.report().accepted, 3U);
        EXPECT_EQ(outcomeOf(link.report()), Outcome::kPartlySent);
        EXPECT_EQ(calls.openDescriptors(), 0U);
    }
}

TEST(TcpLink, TellsWhyItCannotWaitForRoom) {
    for (const int error : {EFAULT, EINVAL, ENOMEM}) {
        VirtualTcp calls;
        calls.room = 4;
        calls.fail("poll", error);
        TcpLink link(Deadlines{}, calls);
        ASSERT_TRUE(link.open("192.0.2.7"));
        EXPECT_FALSE(link.write(bytesOf("abcdef")));
        EXPECT_EQ(link.failure(), endedBy(error));
        EXPECT_EQ(link.report().accepted, 4U);
    }
}

// ---- Deadlines ----------------------------------------------------------------------------------

TEST_F(TcpWrite, GivesUpWhenNoByteIsTakenForTheTimeGiven) {
    calls_.takes = false;
    EXPECT_FALSE(link_.write(bytesOf(someBytes(20'000))));
    EXPECT_EQ(calls_.elapsed(), milliseconds(30'000));
    EXPECT_EQ(link_.report().accepted, 16'384U);
    EXPECT_EQ(link_.report().acknowledged, 0U);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
    expectBrokenOff(kPeer + " took no byte for 30 s");
}

TEST_F(TcpWrite, GoesOnWhileThePrinterTakesAByteNowAndThen) {
    calls_.takes = false;
    calls_.room = 4;
    for (int i = 1; i <= 10; ++i) {
        calls_.after(milliseconds(29'999 * i), [&] { calls_.acknowledge(1); });
    }
    EXPECT_FALSE(link_.write(bytesOf(someBytes(20))));
    EXPECT_EQ(link_.report().accepted, 14U);
    EXPECT_EQ(link_.report().acknowledged, 10U);
    EXPECT_EQ(calls_.elapsed(), milliseconds(299'990 + 30'000));
    expectBrokenOff(kPeer + " took no byte for 30 s");
}

TEST_F(TcpWrite, IsNotMisledByWakeUpsWithoutRoom) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.falseAlarms = std::vector<short>(100, POLLOUT);
    calls_.fail("poll", EINTR, 50, 3);
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(calls_.elapsed(), milliseconds(30'000));
    expectBrokenOff(kPeer + " took no byte for 30 s");
}

TEST_F(TcpWrite, PausesWhereThereIsRoomThatIsNone) {
    calls_.fail("send", EAGAIN, 0, 1000);
    EXPECT_TRUE(link_.write(bytesOf("job")));
    EXPECT_GE(calls_.elapsed(), milliseconds(499)) << "asks again and again without a pause";
}

TEST_F(TcpWrite, IsNotHeldUpByAPrinterThatOnlyTalks) {
    calls_.takes = false;
    calls_.every(milliseconds(0), milliseconds(10), [&] { calls_.say(std::string(10'000, 'x')); });
    EXPECT_FALSE(link_.write(bytesOf(someBytes(20'000))));
    EXPECT_EQ(calls_.elapsed(), milliseconds(30'000));
    EXPECT_EQ(link_.report().reply, std::string(kMaxReplyBytes, 'x'));
    expectBrokenOff(kPeer + " took no byte for 30 s");
}

TEST_F(TcpWrite, IsNotHeldUpByAPrinterThatAlwaysHasMoreToSay) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.onCall = [&](const std::string& name) {
        if (name != "recv") return;
        calls_.say("x");
        calls_.advance(milliseconds(1));
    };
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_GE(calls_.elapsed(), milliseconds(30'000));
    EXPECT_LE(calls_.elapsed(), milliseconds(30'100));
    expectBrokenOff(kPeer + " took no byte for 30 s");
}

TEST_F(TcpWrite, FailsWhereTheConnectionHangsUpWithoutAReason) {
    calls_.room = 4;
    calls_.takes = false;
    calls_.falseAlarms = {POLLHUP};
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(calls_.elapsed(), milliseconds(0));
    expectBrokenOff(kPeer + " closed the connection");
}

// ---- Both ends talking --------------------------------------------------------------------------

TEST_F(TcpWrite, ReceivesWhileItWrites) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.say("hello ");
    calls_.after(milliseconds(100), [&] { calls_.say("busy "); });
    calls_.after(milliseconds(200), [&] { calls_.takes = true; });
    calls_.after(milliseconds(200), [&] { calls_.acknowledge(4); });
    EXPECT_TRUE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(link_.report().reply, "hello busy ");
    EXPECT_TRUE(link_.drain());
    EXPECT_FALSE(link_.report().answered) << "it had not even got everything";
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed);
    EXPECT_EQ(link_.read(), "hello busy ");
}

TEST_F(TcpWrite, TakesAnAnswerForNoneWhenMoreIsWritten) {
    EXPECT_TRUE(link_.write(bytesOf("abc")));
    calls_.say("ready");
    EXPECT_EQ(link_.read(), "ready");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kAnswered);
    EXPECT_TRUE(link_.write(bytesOf("def")));
    EXPECT_TRUE(link_.drain());
    EXPECT_FALSE(link_.report().answered);
    EXPECT_EQ(link_.report().reply, "ready");
}

TEST_F(TcpWrite, GoesOnWhenThePrinterEndsItsSide) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.end();
    calls_.after(milliseconds(100), [&] { calls_.takes = true; });
    calls_.after(milliseconds(100), [&] { calls_.acknowledge(4); });
    EXPECT_TRUE(link_.write(bytesOf("abcdef"))) << link_.failure();
    EXPECT_LE(calls_.waits.size(), 3U) << "an end of stream is there once and for all";
    link_.close();
    EXPECT_EQ(calls_.arrived, "abcdef");
    EXPECT_EQ(link_.report().failure, "");
    EXPECT_EQ(link_.report().remark, kEndedEarly);
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kSentUnconfirmed);
}

TEST_F(TcpWrite, KeepsWhatThePrinterSaidBeforeItBrokeOff) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.after(milliseconds(100), [&] {
        calls_.say("paper jam");
        calls_.breakOff(ECONNRESET);
    });
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(link_.read(), "paper jam");
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(link_.report().reply, "paper jam");
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
    expectBrokenOff(endedBy(ECONNRESET));
}

TEST_F(TcpWrite, KeepsWhatThePrinterSaidJustBeforeASendFailed) {
    calls_.maxPerSend = 3;
    calls_.onCall = [&](const std::string& name) {
        if (name == "send" && calls_.made["send"] == 1) {
            calls_.say("paper jam");
            calls_.breakOff(ECONNRESET);
        }
    };
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(link_.report().reply, "paper jam");
    EXPECT_FALSE(link_.report().answered);
    EXPECT_EQ(link_.read(), "paper jam");
    expectBrokenOff(endedBy(EPIPE));
}

// ---- Cancelling ---------------------------------------------------------------------------------

TEST_F(TcpWrite, IsCancelledWhileItWaits) {
    calls_.takes = false;
    calls_.room = 4;
    calls_.after(milliseconds(100), [&] { link_.cancel(); });
    EXPECT_FALSE(link_.write(bytesOf("abcdef")));
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(outcomeOf(link_.report()), Outcome::kPartlySent);
    expectBrokenOff("cancelled");
}

TEST_F(TcpWrite, IsCancelledAlsoWhereItNeverWaits) {
    calls_.maxPerSend = 1;
    calls_.onCall = [&](const std::string& name) {
        if (name == "send" && calls_.made["send"] == 10) link_.cancel();
    };
    EXPECT_FALSE(link_.write(bytesOf(someBytes(100))));
    EXPECT_EQ(link_.report().accepted, 11U);
    expectBrokenOff("cancelled");
}

TEST_F(TcpWrite, RefusesWhatComesAfterACancel) {
    EXPECT_TRUE(link_.write(bytesOf("abc")));
    link_.cancel();
    EXPECT_FALSE(link_.write(bytesOf("def")));
    EXPECT_EQ(link_.report().accepted, 3U);
    expectBrokenOff("cancelled");
}

// ---- Not open -----------------------------------------------------------------------------------

TEST(TcpLink, RefusesBytesWhileItIsNotOpen) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    EXPECT_FALSE(link.write(bytesOf("abc")));
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_TRUE(link.drain());
    ASSERT_TRUE(link.open("192.0.2.7"));
    EXPECT_TRUE(link.write(bytesOf("abc")));
    link.close();
    EXPECT_FALSE(link.write(bytesOf("def")));
    EXPECT_EQ(link.report().offered, 3U) << "a report is final after close()";
    EXPECT_EQ(calls.arrived, "abc");
}

// ---- Progress -----------------------------------------------------------------------------------

TEST_F(TcpWrite, TellsTheObserverOfEveryStep) {
    calls_.maxPerSend = 4;
    std::vector<std::uint64_t> accepted;
    link_.observeProgress([&](const Progress& progress) {
        EXPECT_EQ(progress.offered, 10U);
        accepted.push_back(progress.accepted);
    });
    EXPECT_TRUE(link_.write(bytesOf("0123456789")));
    EXPECT_EQ(accepted, (std::vector<std::uint64_t>{4, 8, 10}));
    link_.observeProgress({});
    EXPECT_TRUE(link_.write(bytesOf("x")));
    EXPECT_EQ(accepted.size(), 3U);
}

TEST_F(TcpWrite, TellsTheObserverWhileItDrains) {
    calls_.takes = false;
    EXPECT_TRUE(link_.write(bytesOf("0123456789")));
    int told = 0;
    link_.observeProgress([&](const Progress&) { ++told; });
    calls_.after(milliseconds(100), [&] { calls_.acknowledge(5); });
    calls_.after(milliseconds(200), [&] { calls_.acknowledge(4); });
    calls_.after(milliseconds(300), [&] { calls_.acknowledge(1); });
    EXPECT_TRUE(link_.drain());
    EXPECT_EQ(told, 3);
}

TEST_F(TcpWrite, IsNotDisturbedByAnObserverThatThrows) {
    link_.observeProgress([](const Progress&) { throw std::runtime_error("observer"); });
    EXPECT_TRUE(link_.write(bytesOf("abc")));
    EXPECT_TRUE(link_.drain());
}

TEST_F(TcpWrite, CanBeCancelledByItsObserver) {
    calls_.maxPerSend = 4;
    link_.observeProgress([&](const Progress&) { link_.cancel(); });
    EXPECT_FALSE(link_.write(bytesOf("0123456789")));
    EXPECT_EQ(link_.report().accepted, 4U);
    expectBrokenOff("cancelled");
}

}  // namespace
}  // namespace tavio::links
