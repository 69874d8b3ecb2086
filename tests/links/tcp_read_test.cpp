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
using test::VirtualTcp;
using TcpRead = test::TcpJob;

TEST_F(TcpRead, ReadsAReplyUpToItsSilence) {
    calls_.after(milliseconds(4'999), [&] { calls_.say("pap"); });
    calls_.after(milliseconds(5'198), [&] { calls_.say("er "); });
    calls_.after(milliseconds(5'397), [&] { calls_.say("low"); });
    calls_.after(milliseconds(5'598), [&] { calls_.say("next"); });
    EXPECT_EQ(link_.read(), "paper low");
    EXPECT_EQ(calls_.elapsed(), milliseconds(5'597));
    EXPECT_EQ(link_.read(), "next");
    EXPECT_EQ(link_.report().reply, "paper lownext");
}

TEST_F(TcpRead, ReadsAReplyUpToTheEndOfTheStream) {
    calls_.after(milliseconds(100), [&] {
        calls_.say("ready");
        calls_.end();
    });
    EXPECT_EQ(link_.read(), "ready");
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(TcpRead, GivesNoTextForNoReply) {
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(5'000));
    EXPECT_EQ(link_.failure(), "") << "a printer may say nothing";
    EXPECT_TRUE(link_.write(bytesOf("more")));
}

TEST_F(TcpRead, EndsAReplyThatDoesNotEnd) {
    calls_.every(milliseconds(1'000), milliseconds(100), [&] { calls_.say("x"); });
    const Text reply = link_.read();
    EXPECT_EQ(calls_.elapsed(), milliseconds(6'000));
    EXPECT_EQ(reply, std::string(51, 'x'));
}

TEST_F(TcpRead, ReadsABoundedReplyAndDropsTheRest) {
    calls_.say(std::string(kMaxReplyBytes + 100'000, 'x'));
    EXPECT_EQ(link_.read(), std::string(kMaxReplyBytes, 'x'));
    EXPECT_EQ(link_.report().reply, std::string(kMaxReplyBytes, 'x'));
    while (link_.read()) {
    }
    calls_.say("still here");
    EXPECT_EQ(link_.read(), "still here") << "a long session goes on being answered";
}

TEST_F(TcpRead, ReadsBytesThatAreNoTextToo) {
    calls_.say("pr\xEAt");
    EXPECT_EQ(link_.read(), "pr\xC3\xAAt");
}

TEST_F(TcpRead, ReadsWhatCameBeforeItWasCancelled) {
    calls_.after(milliseconds(100), [&] { calls_.say("rea"); });
    calls_.after(milliseconds(200), [&] { link_.cancel(); });
    EXPECT_EQ(link_.read(), "rea");
    EXPECT_EQ(calls_.elapsed(), milliseconds(200));
    EXPECT_EQ(link_.failure(), "cancelled");
    EXPECT_EQ(link_.read(), std::nullopt);
}

TEST_F(TcpRead, FailsWhenTheConnectionBreaksOffWhileItReads) {
    calls_.after(milliseconds(100), [&] { calls_.breakOff(ECONNRESET); });
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(link_.failure(), endedBy(ECONNRESET));
}

TEST_F(TcpRead, TellsWhyItCannotWaitForAReply) {
    calls_.fail("poll", ENOMEM);
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(link_.failure(), endedBy(ENOMEM));
}

TEST_F(TcpRead, WaitsOutInterruptionsAndFalseAlarmsForAReply) {
    calls_.fail("poll", EINTR, 2, 2);
    calls_.falseAlarms = {0, POLLIN, 0};
    calls_.after(milliseconds(4'000), [&] { calls_.say("ready"); });
    EXPECT_EQ(link_.read(), "ready");
}

TEST(TcpLink, CallsAQuestionThatWasAnsweredAnswered) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open("192.0.2.7"));
    calls.after(milliseconds(100), [&] {
        calls.say("ready");
        calls.breakOff(ECONNRESET);
    });
    EXPECT_EQ(link.read(), "ready");
    link.close();
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(link.report().remark, "") << "there was nothing to read";
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kAnswered);
}

TEST(TcpLink, RemarksNothingWhereAConnectionBreaksOffThatCarriedNothing) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open("192.0.2.7"));
    calls.breakOff(ECONNRESET);
    link.close();
    EXPECT_EQ(link.report().failure, "");
    EXPECT_EQ(link.report().remark, "");
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
}

TEST(TcpLink, FailsWhereAQuestionIsCutOff) {
    VirtualTcp calls;
    TcpLink link(Deadlines{}, calls);
    ASSERT_TRUE(link.open("192.0.2.7"));
    calls.after(milliseconds(100), [&] { calls.breakOff(ECONNRESET); });
    EXPECT_EQ(link.read(), std::nullopt);
    EXPECT_EQ(link.failure(), endedBy(ECONNRESET));
    EXPECT_EQ(outcomeOf(link.report()), Outcome::kNothingSent);
}

}  // namespace
}  // namespace tavio::links
