// One job at a time: outcomes, counts, remarks, the elements' fates, replies.

#include "tavio/printing/printer.h"

#include <gtest/gtest.h>

#include "links/job_bytes.h"
#include "printing/test_jobs.h"
#include "support/loopback_peer.h"
#include "tavio/links/recording_link.h"

namespace tavio::printing {
namespace {

using links::Outcome;
using links::test::Peer;
using links::test::Port;
using links::test::VirtualTcp;
using std::chrono::milliseconds;
using test::jobOf;
using test::kindsOf;
using test::linkTo;
using Fates = std::vector<ElementFate>;
using Kinds = std::vector<RemarkKind>;

const ReplyTable kTable{{PrinterState::kReady, Match::kExact, "OK"},
                        {PrinterState::kOutOfPaper, Match::kContains, "PAPER"}};

void expectNothingSent(const PrintResult& result, RemarkKind kind) {
    EXPECT_EQ(result.outcome, Outcome::kNothingSent);
    EXPECT_EQ(result.accepted, 0U);
    EXPECT_EQ(kindsOf(result.remarks), Kinds{kind});
    EXPECT_FALSE(result.isGood());
    for (const ElementFate fate : result.elements) EXPECT_EQ(fate, ElementFate::kNotSent);
    EXPECT_EQ(result.describe(), "nothing sent, safe to repeat");
}

// ---- Success ------------------------------------------------------------------------------------

TEST(Printer, SendsAJobOverTcp) {
    Port port;
    port.listen();
    const std::string bytes = links::test::someBytes(300'000);
    Peer peer(port, [&](int connection) {
        EXPECT_EQ(links::test::receiveAll(connection), bytes + "<p>");
    });
    Printer printer("tcp://" + port.address());
    const PrintResult result = printer.print(jobOf({bytes, "<p>", ""}));
    EXPECT_EQ(result.outcome, Outcome::kSentUnconfirmed);
    EXPECT_TRUE(result.isGood());
    EXPECT_EQ(result.total, 300'003U);
    EXPECT_EQ(result.accepted, 300'003U);
    EXPECT_EQ(result.acknowledged, 300'003U);
    EXPECT_EQ(result.elements, Fates(3, ElementFate::kArrived));
    EXPECT_TRUE(result.remarks.empty());
    EXPECT_EQ(result.reply, std::nullopt);
    EXPECT_EQ(result.state, PrinterState::kUnknown);
    EXPECT_EQ(result.describe(), "sent, unconfirmed: 300003 bytes");
}

TEST(Printer, TellsTheAnswer) {
    Port port;
    port.listen();
    Peer peer(port, [&](int connection) {
        links::test::receiveAll(connection);
        links::test::sendAll(connection, "OK\r\n");
    });
    Printer printer("tcp://" + port.address(), {.replies = kTable});
    const PrintResult result = printer.print(jobOf({"<p>"}));
    EXPECT_EQ(result.outcome, Outcome::kAnswered);
    EXPECT_EQ(result.reply, "OK\r\n");
    EXPECT_EQ(result.state, PrinterState::kReady);
    EXPECT_EQ(result.describe(), "answered by the printer: 3 bytes sent");
}

TEST(Printer, TellsThatAllWasSentOverALinkWithoutAcknowledgements) {
    const auto link = std::make_shared<links::RecordingLink>();
    Printer printer([&] { return link; });
    const PrintResult result = printer.print(jobOf({"Row B", "<p>"}));
    EXPECT_EQ(test::textOf(link->bytes()), "Row B<p>");
    EXPECT_EQ(result.outcome, Outcome::kSentUnconfirmed);
    EXPECT_EQ(result.acknowledged, std::nullopt);
    EXPECT_EQ(result.elements, Fates(2, ElementFate::kSent));
    EXPECT_TRUE(result.isGood());
}

TEST(Printer, TellsTheProgress) {
    VirtualTcp calls;
    calls.maxPerSend = 2;
    Printer printer(linkTo(calls));
    std::vector<std::uint64_t> sent;
    const PrintResult result = printer.print(
        jobOf({"012", "345"}), {.progress = [&](std::uint64_t now, std::uint64_t total) {
            EXPECT_EQ(total, 6U);
            sent.push_back(now);
        }});
    ASSERT_GE(sent.size(), 3U);
    EXPECT_TRUE(std::is_sorted(sent.begin(), sent.end()));
    EXPECT_EQ(sent.front(), 2U);
    EXPECT_EQ(sent.back(), 6U);
    EXPECT_TRUE(result.remarks.empty());
}

TEST(Printer, SendsTheJobAlthoughTheProgressFunctionThrows) {
    VirtualTcp calls;
    calls.maxPerSend = 2;
    Printer printer(linkTo(calls));
    int told = 0;
    const PrintResult result =
        printer.print(jobOf({"012345"}), {.progress = [&](std::uint64_t, std::uint64_t) {
                          ++told;
                          throw std::runtime_error("no window");
                      }});
    EXPECT_EQ(told, 1);
    EXPECT_EQ(calls.arrived, "012345");
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kCallbackFailed});
    EXPECT_EQ(result.remarks.at(0).sentence, "the progress function failed: no window");
    EXPECT_TRUE(result.isGood());
}

// ---- Nothing sent -------------------------------------------------------------------------------

TEST(Printer, TellsThatItsAddressIsNone) {
    for (const char* address : {"", "192.0.2.7", "tcp://a b", "bt://x", "tty:"}) {
        Printer printer(address);
        EXPECT_EQ(printer.address(), address);
        const PrintResult result = printer.print(jobOf({"<p>"}));
        expectNothingSent(result, RemarkKind::kBadAddress);
        EXPECT_EQ(result.total, 3U);
        EXPECT_EQ(result.remarks.at(0).sentence,
                  *address == '\0' ? "the printer has no address" : whyNoPrinterAddress(address));
        EXPECT_EQ(kindsOf(printer.status().remarks), Kinds{RemarkKind::kBadAddress});
    }
    Printer printer{LinkMaker()};
    EXPECT_EQ(printer.address(), "");
    expectNothingSent(printer.print(jobOf({"<p>"})), RemarkKind::kBadAddress);
}

TEST(Printer, TellsThatItCannotBeReached) {
    const Port port;
    Printer printer("tcp://" + port.address());
    const PrintResult result = printer.print(jobOf({"Row B", "<p>"}));
    expectNothingSent(result, RemarkKind::kNotReached);
    EXPECT_EQ(result.total, 8U);
    EXPECT_EQ(result.elements.size(), 2U);
    EXPECT_EQ(result.remarks.at(0).sentence,
              "the printer at " + port.address() + " cannot be reached: Connection refused");
}

TEST(Printer, TellsThatAJobIsEmpty) {
    VirtualTcp calls;
    Printer printer(linkTo(calls));
    expectNothingSent(printer.print(jobOf({})), RemarkKind::kEmptyJob);
    expectNothingSent(printer.print(jobOf({""})), RemarkKind::kEmptyJob);
    EXPECT_EQ(calls.made["connect"], 0);
}

// ---- Partly sent --------------------------------------------------------------------------------

TEST(Printer, TellsAPrinterThatStopsReading) {
    VirtualTcp calls;
    calls.takes = false;
    calls.room = 5;
    calls.after(milliseconds(100), [&] { calls.acknowledge(3); });
    Printer printer(linkTo(calls));
    const PrintResult result = printer.print(jobOf({"012", "345", "67", "89"}));
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kTimeOut});
    EXPECT_EQ(result.outcome, Outcome::kPartlySent);
    EXPECT_EQ(result.total, 10U);
    EXPECT_EQ(result.accepted, 8U);
    EXPECT_EQ(result.acknowledged, 3U);
    EXPECT_EQ(result.elements, (Fates{ElementFate::kArrived, ElementFate::kPartlySent,
                                      ElementFate::kPartlySent, ElementFate::kNotSent}));
    EXPECT_FALSE(result.isGood());
    EXPECT_EQ(result.describe(), "partly sent, 3 of 10 bytes (up to 8 may have arrived)");
}

TEST(Printer, TellsAConnectionThatBreaksOff) {
    VirtualTcp calls;
    calls.takes = false;
    calls.after(milliseconds(100), [&] {
        calls.acknowledge(4);
        calls.breakOff(ECONNRESET);
    });
    Printer printer(linkTo(calls));
    const PrintResult result = printer.print(jobOf({"012", "", "345", "67"}));
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kBrokenOff});
    EXPECT_EQ(result.outcome, Outcome::kPartlySent);
    EXPECT_EQ(result.acknowledged, 4U);
    EXPECT_EQ(result.elements, (Fates{ElementFate::kArrived, ElementFate::kArrived,
                                      ElementFate::kPartlySent, ElementFate::kPartlySent}));
}

// ---- Ends that are not clean --------------------------------------------------------------------

TEST(Printer, RemarksThatThePrinterEndedTheConnectionEarly) {
    VirtualTcp calls;
    calls.takes = false;
    calls.after(milliseconds(100), [&] { calls.end(); });
    calls.after(milliseconds(200), [&] { calls.acknowledge(3); });
    Printer printer(linkTo(calls));
    const PrintResult result = printer.print(jobOf({"<p>"}));
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kEndedEarly});
    EXPECT_EQ(result.elements, Fates{ElementFate::kArrived});
    EXPECT_TRUE(result.isGood());
}

TEST(Printer, RemarksThatThePrinterDidNotEndTheConnection) {
    VirtualTcp calls;
    calls.endsWhenWeEnd = false;
    Printer printer(linkTo(calls));
    const PrintResult result = printer.print(jobOf({"<p>"}));
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kNotEnded});
    EXPECT_TRUE(result.isGood());
}

// ---- Replies that are demanded ------------------------------------------------------------------

TEST(Printer, SendsOnlyToAPrinterThatSaysThatItIsReady) {
    struct Case {
        const char* reply;
        ReplyTable table;
        bool isSent;
        const char* why;
    };
    for (const Case& each : {Case{"OK\n", kTable, true, ""},
                             {"OUT OF PAPER", kTable, false, "its reply means: out-of-paper"},
                             {"hello", kTable, false, "its reply means: unknown"},
                             {"", kTable, false, "it sent no reply"},
                             {"hello", {}, true, ""},
                             {"", {}, false, "it sent no reply"}}) {
        SCOPED_TRACE(each.reply);
        VirtualTcp calls;
        calls.say(each.reply);
        Printer printer(linkTo(calls), {.replies = each.table});
        const PrintResult result = printer.print(jobOf({"<p>"}), {.readyBefore = true});
        EXPECT_EQ(calls.arrived, each.isSent ? "<p>" : "");
        if (each.isSent) {
            EXPECT_EQ(result.outcome, Outcome::kSentUnconfirmed);
            EXPECT_TRUE(result.remarks.empty());
        } else {
            expectNothingSent(result, RemarkKind::kNotReady);
            EXPECT_EQ(result.remarks.at(0).sentence,
                      std::string("the printer is not ready, so nothing was sent: ") + each.why);
        }
        EXPECT_EQ(result.reply.value_or(""), each.reply);
        EXPECT_EQ(result.state, stateOf(each.reply, each.table));
        EXPECT_EQ(calls.openDescriptors(), 0U);
    }
}

TEST(Printer, AwaitsTheConfirmationAfterAJob) {
    struct Case {
        const char* reply;
        ReplyTable table;
        const char* why;  // it is not confirmed; "" if it is
    };
    for (const Case& each : {Case{"OK\n", kTable, ""},
                             {"OUT OF PAPER", kTable, "its reply means: out-of-paper"},
                             {"hello", {}, ""},
                             {"", {}, "it sent no reply"}}) {
        SCOPED_TRACE(each.reply);
        VirtualTcp calls;
        calls.after(milliseconds(1'000), [&] { calls.say(each.reply); });
        Printer printer(linkTo(calls), {.replies = each.table});
        const PrintResult result = printer.print(jobOf({"<p>"}), {.readyAfter = true});
        EXPECT_EQ(calls.arrived, "<p>");
        EXPECT_EQ(result.outcome,
                  *each.reply != '\0' ? Outcome::kAnswered : Outcome::kSentUnconfirmed);
        EXPECT_EQ(result.isGood(), *each.why == '\0');
        EXPECT_EQ(result.has(RemarkKind::kNotConfirmed), *each.why != '\0');
        if (*each.why != '\0') {
            EXPECT_EQ(result.remarks.at(0).sentence,
                      std::string("the printer has not confirmed the job: ") + each.why);
        }
        EXPECT_EQ(result.reply.value_or(""), each.reply);
    }
}

TEST(Printer, TakesNoReplyFromBeforeTheEndOfTheJobForAConfirmation) {
    VirtualTcp calls;
    calls.say("OK");
    Printer printer(linkTo(calls), {.replies = kTable});
    const PrintResult result = printer.print(jobOf({"<p>"}), {.readyAfter = true});
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kNotConfirmed});
    EXPECT_EQ(result.remarks.at(0).sentence,
              "the printer has not confirmed the job: it sent no reply");
    EXPECT_EQ(result.outcome, Outcome::kSentUnconfirmed);
}

TEST(Printer, AsksBeforeAndAfterAJob) {
    VirtualTcp calls;
    calls.say("OK");
    bool hasAnswered = false;
    calls.onCall = [&](const std::string& name) {
        if (name == "poll" && calls.arrived == "<p>" && !std::exchange(hasAnswered, true)) {
            calls.say("OUT OF PAPER");
        }
    };
    Printer printer(linkTo(calls), {.replies = kTable});
    const PrintResult result =
        printer.print(jobOf({"<p>"}), {.readyBefore = true, .readyAfter = true});
    EXPECT_EQ(result.reply, "OUT OF PAPER") << "without the one from before the job";
    EXPECT_EQ(result.state, PrinterState::kOutOfPaper);
    EXPECT_EQ(kindsOf(result.remarks), Kinds{RemarkKind::kNotConfirmed});
}

TEST(Printer, TellsWhatBrokeOffWhileItWasAsked) {
    VirtualTcp calls;
    calls.after(milliseconds(10), [&] { calls.breakOff(ECONNRESET); });
    Printer printer(linkTo(calls));
    expectNothingSent(printer.print(jobOf({"<p>"}), {.readyBefore = true}), RemarkKind::kBrokenOff);
}

// ---- Status -------------------------------------------------------------------------------------

TEST(Printer, TellsItsStatus) {
    VirtualTcp calls;
    calls.say("NO PAPER");
    Printer printer(linkTo(calls), {.replies = kTable});
    const StatusResult status = printer.status();
    EXPECT_EQ(status.reply, "NO PAPER");
    EXPECT_EQ(status.state, PrinterState::kOutOfPaper);
    EXPECT_TRUE(status.remarks.empty());
    EXPECT_EQ(calls.made["send"], 0);
}

TEST(Printer, TellsThatItHasNoStatus) {
    VirtualTcp silent;
    const StatusResult none = Printer(linkTo(silent)).status();
    EXPECT_EQ(none.reply, std::nullopt);
    EXPECT_EQ(none.state, PrinterState::kUnknown);
    EXPECT_TRUE(none.remarks.empty());
    VirtualTcp refusing;
    refusing.connects = {ECONNREFUSED};
    EXPECT_EQ(kindsOf(Printer(linkTo(refusing)).status().remarks), Kinds{RemarkKind::kNotReached});
}

// ---- Names --------------------------------------------------------------------------------------

TEST(PrintResults, HaveNames) {
    std::set<std::string> names;
    constexpr auto kLast = static_cast<int>(RemarkKind::kCallbackFailed);
    for (int kind = 0; kind <= kLast; ++kind) names.insert(nameOf(static_cast<RemarkKind>(kind)));
    EXPECT_EQ(names, (std::set<std::string>{
                         "bad-address", "broken-off", "callback-failed", "cancelled", "empty-job",
                         "ended-early", "link-failed", "no-thread", "not-confirmed", "not-ended",
                         "not-reached", "not-ready", "out-of-memory", "time-out"}));
    EXPECT_STREQ(nameOf(ElementFate::kNotSent), "not-sent");
    EXPECT_STREQ(nameOf(ElementFate::kPartlySent), "partly-sent");
    EXPECT_STREQ(nameOf(ElementFate::kSent), "sent");
    EXPECT_STREQ(nameOf(ElementFate::kArrived), "arrived");
    EXPECT_STREQ(nameOf(Outcome::kNothingSent), "nothing-sent");
    EXPECT_STREQ(nameOf(Outcome::kPartlySent), "partly-sent");
    EXPECT_STREQ(nameOf(Outcome::kSentUnconfirmed), "sent-unconfirmed");
    EXPECT_STREQ(nameOf(Outcome::kAnswered), "answered");
}

}  // namespace
}  // namespace tavio::printing
