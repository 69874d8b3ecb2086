#include "tavio/links/link_report.h"

#include <vector>

#include <gtest/gtest.h>

#include "tavio/links/reply_text.h"
#include "tavio/links/stream_sentences.h"

namespace tavio::links {
namespace {

struct Case {
    const char* what;
    LinkReport report;
    Outcome outcome;
    std::string text;
};

LinkReport reportOf(std::uint64_t offered, std::uint64_t accepted,
                    std::optional<std::uint64_t> acknowledged, bool answered = false,
                    const std::string& failure = "") {
    LinkReport report;
    report.offered = offered;
    report.accepted = accepted;
    report.acknowledged = acknowledged;
    report.answered = answered;
    if (answered) report.reply = "ready";
    report.failure = failure;
    return report;
}

LinkReport withReply(LinkReport report) {
    report.reply = "ready";
    return report;
}

const std::string kNothing = "nothing sent, safe to repeat";

TEST(LinkReport, NamesTheOneOutcomeThatHolds) {
    const std::vector<Case> table = {
        {"no job", {}, Outcome::kNothingSent, kNothing},
        {"an empty job", reportOf(0, 0, 0), Outcome::kNothingSent, kNothing},
        {"an empty job failed", reportOf(0, 0, {}, false, "x"), Outcome::kNothingSent, kNothing},
        {"only a question", withReply({}), Outcome::kAnswered,
         "answered by the printer: 0 bytes sent"},
        {"refused", reportOf(9, 0, 0, false, "x"), Outcome::kNothingSent, kNothing},
        {"refused, after it had said something", withReply(reportOf(9, 0, 0, false, "x")),
         Outcome::kNothingSent, kNothing},
        {"in the queue when it broke", reportOf(9, 5, 0, false, "x"), Outcome::kPartlySent,
         "partly sent, 0 of 9 bytes (up to 5 may have arrived)"},
        {"half of it", reportOf(39335, 20480, 4096, false, "x"), Outcome::kPartlySent,
         "partly sent, 4096 of 39335 bytes (up to 20480 may have arrived)"},
        {"half of it, all arrived", reportOf(9, 5, 5, false, "x"), Outcome::kPartlySent,
         "partly sent, 5 of 9 bytes"},
        {"half of it, untold", reportOf(9, 5, {}, false, "x"), Outcome::kPartlySent,
         "partly sent, up to 5 of 9 bytes"},
        {"half of it, and talk", reportOf(9, 5, 5, true, "x"), Outcome::kPartlySent,
         "partly sent, 5 of 9 bytes"},
        {"not all acknowledged", reportOf(9, 9, 8), Outcome::kPartlySent,
         "partly sent, 8 of 9 bytes (up to 9 may have arrived)"},
        {"not all acknowledged, and talk", reportOf(9, 9, 8, true), Outcome::kPartlySent,
         "partly sent, 8 of 9 bytes (up to 9 may have arrived)"},
        {"failed, and nobody acknowledges", reportOf(9, 9, {}, false, "x"), Outcome::kPartlySent,
         "partly sent, up to 9 of 9 bytes"},
        {"all arrived", reportOf(9, 9, 9), Outcome::kSentUnconfirmed, "sent, unconfirmed: 9 bytes"},
        {"all arrived, then cancelled", reportOf(9, 9, 9, false, "cancelled"),
         Outcome::kSentUnconfirmed, "sent, unconfirmed: 9 bytes"},
        {"all gone, and nobody acknowledges", reportOf(9, 9, {}), Outcome::kSentUnconfirmed,
         "sent, unconfirmed: 9 bytes"},
        {"talk before the end only", withReply(reportOf(9, 9, 9)), Outcome::kSentUnconfirmed,
         "sent, unconfirmed: 9 bytes"},
        {"answered", reportOf(39335, 39335, 39335, true), Outcome::kAnswered,
         "answered by the printer: 39335 bytes sent"},
        {"answered, and nobody acknowledges", reportOf(9, 9, {}, true), Outcome::kAnswered,
         "answered by the printer: 9 bytes sent"},
    };
    for (const Case& each : table) {
        SCOPED_TRACE(each.what);
        EXPECT_EQ(outcomeOf(each.report), each.outcome);
        EXPECT_EQ(describe(each.report), each.text);
    }
}

std::string textOf(const std::string& bytes) {
    return replyText({reinterpret_cast<const Byte*>(bytes.data()), bytes.size()});
}

TEST(ReplyText, IsTheBytesWhereTheyAreUtf8) {
    EXPECT_EQ(textOf("ready\r\n"), "ready\r\n");
    EXPECT_EQ(textOf("pr\xC3\xAAt"), "pr\xC3\xAAt");
    EXPECT_EQ(textOf(std::string("a\0b", 3)), std::string("a\0b", 3));
}

TEST(ReplyText, TakesOtherBytesForCharacterNumbers) {
    EXPECT_EQ(textOf("pr\xEAt"), "pr\xC3\xAAt");
    EXPECT_EQ(textOf("\x80\xBF\xC0\xFF\x7F"), "\xC2\x80\xC2\xBF\xC3\x80\xC3\xBF\x7F");
}

TEST(ReplyText, IsKeptUpToABound) {
    Bytes kept;
    const Bytes more{1, 2, 3};
    appendUpTo(4, kept, more);
    EXPECT_EQ(kept, (Bytes{1, 2, 3}));
    appendUpTo(4, kept, more);
    appendUpTo(4, kept, more);
    EXPECT_EQ(kept, (Bytes{1, 2, 3, 1}));
}

TEST(Sentences, TellDurationsShortly) {
    using std::chrono::milliseconds;
    EXPECT_EQ(toText(milliseconds(1)), "1 ms");
    EXPECT_EQ(toText(milliseconds(999)), "999 ms");
    EXPECT_EQ(toText(milliseconds(1000)), "1 s");
    EXPECT_EQ(toText(milliseconds(1500)), "1.5 s");
    EXPECT_EQ(toText(milliseconds(2050)), "2.05 s");
    EXPECT_EQ(toText(milliseconds(30'001)), "30.001 s");
    EXPECT_EQ(toText(milliseconds(86'400'000)), "86400 s");
}

}  // namespace
}  // namespace tavio::links
