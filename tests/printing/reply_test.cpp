#include "tavio/printing/reply.h"

#include <gtest/gtest.h>

namespace tavio::printing {
namespace {

TEST(ReplyTable, MatchesAWholeReplyWithoutTheBlanksAroundIt) {
    const ReplyTable table{{PrinterState::kReady, Match::kExact, "OK 1"}};
    for (const char* reply : {"OK 1", "OK 1\r\n", " \t\r\nOK 1 \n"}) {
        EXPECT_EQ(stateOf(reply, table), PrinterState::kReady) << reply;
    }
    for (const char* reply : {"", "OK", "OK  1", "ok 1", "OK 1!", "AOK 1"}) {
        EXPECT_EQ(stateOf(reply, table), PrinterState::kUnknown) << reply;
    }
}

TEST(ReplyTable, MatchesAnEmptyReplyExactly) {
    const ReplyTable table{{PrinterState::kReady, Match::kExact, ""}};
    EXPECT_EQ(stateOf("", table), PrinterState::kReady);
    EXPECT_EQ(stateOf(" \r\n", table), PrinterState::kReady);
    EXPECT_EQ(stateOf("x", table), PrinterState::kUnknown);
}

TEST(ReplyTable, MatchesThePrefixOfAReplyAsItCame) {
    const ReplyTable table{{PrinterState::kError, Match::kPrefix, "E"}};
    EXPECT_EQ(stateOf("E", table), PrinterState::kError);
    EXPECT_EQ(stateOf("E 17\n", table), PrinterState::kError);
    EXPECT_EQ(stateOf(" E", table), PrinterState::kUnknown);
}

TEST(ReplyTable, MatchesAPartOfAReply) {
    const ReplyTable table{{PrinterState::kOutOfPaper, Match::kContains, "PAPER"}};
    EXPECT_EQ(stateOf("PAPER", table), PrinterState::kOutOfPaper);
    EXPECT_EQ(stateOf("NO PAPER LEFT", table), PrinterState::kOutOfPaper);
    EXPECT_EQ(stateOf("NO PAPE", table), PrinterState::kUnknown);
}

TEST(ReplyTable, ComparesBytes) {
    const std::string zero("\0\x06", 2);
    EXPECT_EQ(stateOf(zero, {{PrinterState::kReady, Match::kExact, zero}}), PrinterState::kReady);
    EXPECT_EQ(stateOf(zero, {{PrinterState::kReady, Match::kExact, ""}}), PrinterState::kUnknown);
}

TEST(ReplyTable, TakesTheFirstRowThatMatches) {
    const ReplyTable table{{PrinterState::kCoverOpen, Match::kContains, "OPEN"},
                           {PrinterState::kOther, Match::kContains, ""},
                           {PrinterState::kReady, Match::kExact, "READY"}};
    EXPECT_EQ(stateOf("COVER OPEN", table), PrinterState::kCoverOpen);
    EXPECT_EQ(stateOf("READY", table), PrinterState::kOther);
}

TEST(ReplyTable, TellsNothingIfItIsEmpty) {
    EXPECT_EQ(stateOf("READY", {}), PrinterState::kUnknown);
}

TEST(PrinterStates, HaveNames) {
    EXPECT_STREQ(nameOf(PrinterState::kUnknown), "unknown");
    EXPECT_STREQ(nameOf(PrinterState::kReady), "ready");
    EXPECT_STREQ(nameOf(PrinterState::kOutOfPaper), "out-of-paper");
    EXPECT_STREQ(nameOf(PrinterState::kCoverOpen), "cover-open");
    EXPECT_STREQ(nameOf(PrinterState::kError), "error");
    EXPECT_STREQ(nameOf(PrinterState::kOther), "other");
}

}  // namespace
}  // namespace tavio::printing
