#include <cerrno>
#include <system_error>

#include <gtest/gtest.h>

#include "links/tcp_link.h"
#include "links/virtual_tcp.h"

namespace tavio::links {
namespace {

using std::chrono::milliseconds;
using test::VirtualTcp;

const std::string kPeer = "the printer at 192.0.2.7:9100";
const std::string kNotRead = kPeer +
                             " broke the connection off after it had been sent everything: some of "
                             "it may not have been read";
const std::string kEndedEarly = kPeer +
                                " ended its side of the connection before it had been sent "
                                "everything: some of it may not have been read";
const std::string kNoEnd =
    kPeer + " has been sent everything, but did not end the connection within 5 s";

std::span<const Byte> bytesOf(const std::string& text) {
    return {reinterpret_cast<const Byte*>(text.data()), text.size()};
}

std::string endedBy(int error) {
    const std::string why = ": " + std::generic_category().message(error);
    const bool byPeer =
        error == ECONNRESET || error == EPIPE || error == ENOTCONN || error == ECONNABORTED;
    return byPeer ? kPeer + " closed the connection" + why
                  : "the connection to " + kPeer + " failed" + why;
}

// A job of ten bytes that the system has taken and the printer has not.
class TcpDrain : public testing::Test {
  protected:
    TcpDrain() {
        calls_.takes = false;
        EXPECT_TRUE(link_.open("192.0.2.7")) << link_.failure();
        EXPECT_TRUE(link_.write(bytesOf("0123456789")));
    }
    ~TcpDrain() override {
        link_.close();
        EXPECT_EQ(calls_.openDescriptors(), 0U);
    }

    void acknowledgeAll() { calls_.acknowledge(10); }

    VirtualTcp calls_;
    TcpLink link_{Deadlines{}, calls_};
};

// ---- drain() ------------------------------------------------------------------------------------

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

// ---- read() -------------------------------------------------------------------------------------

TEST_F(TcpDrain, ReadsAReplyUpToItsSilence) {
    calls_.after(milliseconds(4'999), [&] { calls_.say("pap"); });
    calls_.after(milliseconds(5'198), [&] { calls_.say("er "); });
    calls_.after(milliseconds(5'397), [&] { calls_.say("low"); });
    calls_.after(milliseconds(5'598), [&] { calls_.say("next"); });
    EXPECT_EQ(link_.read(), "paper low");
    EXPECT_EQ(calls_.elapsed(), milliseconds(5'597));
    EXPECT_EQ(link_.read(), "next");
    EXPECT_EQ(link_.report().reply, "paper lownext");
}

TEST_F(TcpDrain, ReadsAReplyUpToTheEndOfTheStream) {
    calls_.after(milliseconds(100), [&] {
        calls_.say("ready");
        calls_.end();
    });
    EXPECT_EQ(link_.read(), "ready");
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
}

TEST_F(TcpDrain, GivesNoTextForNoReply) {
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(5'000));
    EXPECT_EQ(link_.failure(), "") << "a printer may say nothing";
    EXPECT_TRUE(link_.write(bytesOf("more")));
}

TEST_F(TcpDrain, EndsAReplyThatDoesNotEnd) {
    calls_.every(milliseconds(1'000), milliseconds(100), [&] { calls_.say("x"); });
    const Text reply = link_.read();
    EXPECT_EQ(calls_.elapsed(), milliseconds(6'000));
    EXPECT_EQ(reply, std::string(51, 'x'));
}

TEST_F(TcpDrain, ReadsABoundedReplyAndDropsTheRest) {
    calls_.say(std::string(kMostReplyBytes + 100'000, 'x'));
    EXPECT_EQ(link_.read(), std::string(kMostReplyBytes, 'x'));
    EXPECT_EQ(link_.report().reply, std::string(kMostReplyBytes, 'x'));
    while (link_.read()) {
    }
    calls_.say("still here");
    EXPECT_EQ(link_.read(), "still here") << "a long session goes on being answered";
}

TEST_F(TcpDrain, ReadsBytesThatAreNoTextToo) {
    calls_.say("pr\xEAt");
    EXPECT_EQ(link_.read(), "pr\xC3\xAAt");
}

TEST_F(TcpDrain, ReadsWhatCameBeforeItWasCancelled) {
    calls_.after(milliseconds(100), [&] { calls_.say("rea"); });
    calls_.after(milliseconds(200), [&] { link_.cancel(); });
    EXPECT_EQ(link_.read(), "rea");
    EXPECT_EQ(calls_.elapsed(), milliseconds(200));
    EXPECT_EQ(link_.failure(), "cancelled");
    EXPECT_EQ(link_.read(), std::nullopt);
}

TEST_F(TcpDrain, FailsWhenTheConnectionBreaksOffWhileItReads) {
    calls_.after(milliseconds(100), [&] { calls_.breakOff(ECONNRESET); });
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(calls_.elapsed(), milliseconds(100));
    EXPECT_EQ(link_.failure(), endedBy(ECONNRESET));
}

TEST_F(TcpDrain, TellsWhyItCannotWaitForAReply) {
    calls_.fail("poll", ENOMEM);
    EXPECT_EQ(link_.read(), std::nullopt);
    EXPECT_EQ(link_.failure(), endedBy(ENOMEM));
}

TEST_F(TcpDrain, WaitsOutInterruptionsAndFalseAlarmsForAReply) {
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

// ---- close() ------------------------------------------------------------------------------------

class TcpClose : public TcpDrain {
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

TEST_F(TcpDrain, BreaksOffAJobThatDoesNotArriveBeforeItCloses) {
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
