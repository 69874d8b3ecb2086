#include "tavio/virtual-printer/command_reader.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

using Lines = std::vector<std::string>;

Lines linesOf(const Stream& bytes) {
    return readAll(bytes).lines;
}
Lines problemsOf(const Stream& bytes) {
    return readAll(bytes).problems;
}

// "<xx...x>"
std::string bracketed(std::size_t length) {
    std::string text(length + 2, 'x');
    text.front() = '<';
    text.back() = '>';
    return text;
}

TEST(CommandReader, KnowsEachCommand) {
    const struct {
        const char* stream;
        const char* line;
    } kCases[] = {
        {"<P1>", "0 path 1 0 \"<P1>\""},
        {"<P-12>", "0 path -12 0 \"<P-12>\""},
        {"<LM>", "0 landscape 0 0 \"<LM>\""},
        {"<PM>", "0 portrait 0 0 \"<PM>\""},
        {"<RE0>", "0 re 0 0 \"<RE0>\""},
        {"<RE3>", "0 re 3 0 \"<RE3>\""},
        {"<DI>", "0 di 0 0 \"<DI>\""},
        {"<RC10,20>", "0 position 10 20 \"<RC10,20>\""},
        {"<RC-1,-2>", "0 position -1 -2 \"<RC-1,-2>\""},
        {"<SP0,5>", "0 logo place 0 5 \"<SP0,5>\""},
        {"<LD-1>", "0 print logo -1 0 \"<LD-1>\""},
        {"<p>", "0 cut 0 0 \"<p>\""},
        {"<q>", "0 eject 0 0 \"<q>\""},
        {"\x1B"
         "c",
         "0 clear memory 0 0 \"\\x1Bc\""},
    };
    for (const auto& one : kCases) {
        EXPECT_EQ(linesOf(stream(one.stream)), Lines{one.line});
        EXPECT_EQ(problemsOf(stream(one.stream)), Lines{}) << one.stream;
    }
}

TEST(CommandReader, GivesOffsetsFromTheStartOfTheStream) {
    EXPECT_EQ(linesOf(stream("<P1><LM>ab<p>")),
              (Lines{"0 path 1 0 \"<P1>\"", "4 landscape 0 0 \"<LM>\"", "8 text \"ab\"",
                     "10 cut 0 0 \"<p>\""}));
}

TEST(CommandReader, TakesGraphicsByTheirCountAndNotByTheirContent) {
    const Stream bytes = stream(
        "<G9><RC1,2>\x1B"
        "c<p>");
    EXPECT_EQ(linesOf(bytes),
              (Lines{"0 graphics 9 0 \"<G9>\"", "bytes \"<RC1,2>\\x1Bc\"", "13 cut 0 0 \"<p>\""}));
    EXPECT_EQ(problemsOf(bytes), Lines{});
}

TEST(CommandReader, EndsGraphicsWithoutBytesAtOnce) {
    EXPECT_EQ(linesOf(stream("<G0>x")),
              (Lines{"0 graphics 0 0 \"<G0>\"", "bytes \"\"", "4 text \"x\""}));
}

TEST(CommandReader, TakesANegativeCountAsNoGraphicsAndSaysSo) {
    EXPECT_EQ(linesOf(stream("<G-5>x")),
              (Lines{"0 graphics -5 0 \"<G-5>\"", "bytes \"\"", "5 text \"x\""}));
    EXPECT_EQ(problemsOf(stream("<G-5>x")), Lines{"0: graphics with a negative count: -5"});
}

TEST(CommandReader, SaturatesNumbersTo32Bits) {
    EXPECT_EQ(linesOf(stream("<RC2147483648,-2147483649>"))[0].substr(0, 35),
              "0 position 2147483647 -2147483648 \"");
    EXPECT_EQ(linesOf(stream("<P99999999999999999999999999>"))[0].substr(0, 18),
              "0 path 2147483647 ");
    EXPECT_EQ(linesOf(stream("<P0000000000000000000000000000012>"))[0].substr(0, 10), "0 path 12 ");
}

TEST(CommandReader, ReportsUnknownCommandsAndGoesOnBehindThem) {
    for (const std::string unknown :
         {"<>",   "<X>",   "<P>",   "<P1x>",  "<P+1>",  "<P 1>",     "<P->",
          "<lm>", "<LM1>", "<RC1>", "<RC1,>", "<RC,1>", "<RC1,2,3>", "<G>",
          "<LD>", "<SP1>", "<p1>",  "<pp>",   "<RE>",   "<7>",       "<-7>"}) {
        const RecordingSink sink = readAll(stream("ab", unknown, "<p>"));
        const Lines expected{"0 text \"ab\"", "2 unknown 0 0 \"" + unknown + "\"",
                             std::to_string(2 + unknown.size()) + " cut 0 0 \"<p>\""};
        EXPECT_EQ(sink.lines, expected);
        EXPECT_EQ(sink.problems, Lines{"2: unknown command \"" + unknown + "\""});
    }
}

TEST(CommandReader, TakesANumberFollowedByEscAsTheBeginningOfALogo) {
    EXPECT_EQ(linesOf(stream("<RC0,0><7>\x1B<G1>\x1B\x1B<p>")),
              (Lines{"0 position 0 0 \"<RC0,0>\"", "7 begin logo 7 0 \"<7>\\x1B\"",
                     "11 graphics 1 0 \"<G1>\"", "bytes \"\\x1B\"", "16 end logo 0 0 \"\\x1B\"",
                     "17 cut 0 0 \"<p>\""}));
    EXPECT_EQ(linesOf(stream("<-2>\x1B\x1B"))[0], "0 begin logo -2 0 \"<-2>\\x1B\"");
}

TEST(CommandReader, EndsALogoAtEscWhateverFollows) {
    EXPECT_EQ(linesOf(stream("<7>\x1B\x1B", "c")),
              (Lines{"0 begin logo 7 0 \"<7>\\x1B\"", "4 end logo 0 0 \"\\x1B\"", "5 text \"c\""}));
}

TEST(CommandReader, ReportsALogoThatBeginsBeforeTheLastOneEnded) {
    const RecordingSink sink = readAll(stream("<7>\x1B<8>\x1B\x1B"));
    EXPECT_EQ(sink.lines, (Lines{"0 begin logo 7 0 \"<7>\\x1B\"", "4 begin logo 8 0 \"<8>\\x1B\"",
                                 "8 end logo 0 0 \"\\x1B\""}));
    EXPECT_EQ(sink.problems, Lines{"0: logo 7 has no end"});
}

TEST(CommandReader, SkipsAnEscThatBeginsNothing) {
    const RecordingSink sink = readAll(stream("a\x1B<p>"));
    EXPECT_EQ(sink.lines, (Lines{"0 text \"a\"", "1 unknown 0 0 \"\\x1B\"", "2 cut 0 0 \"<p>\""}));
    EXPECT_EQ(sink.problems, Lines{"1: unknown command \"\\x1B\""});
}

TEST(CommandReader, TakesAnUnclosedBracketAsText) {
    // Another "<", and a line end, cannot be inside a command.
    EXPECT_EQ(linesOf(stream("1<2<p>")), (Lines{"0 text \"1<2\"", "3 cut 0 0 \"<p>\""}));
    EXPECT_EQ(problemsOf(stream("1<2<p>")), Lines{"1: a \"<\" that begins no command"});
    EXPECT_EQ(linesOf(stream("1<2\r\n>")), Lines{"0 text \"1<2\\r\\n>\""});
    EXPECT_EQ(linesOf(stream("<RC\x1B", "c")),
              (Lines{"0 text \"<RC\"", "3 clear memory 0 0 \"\\x1Bc\""}));
}

TEST(CommandReader, GivesUpACommandOfMoreThan64Bytes) {
    const std::string longest = bracketed(kMaxCommandBytes - 2);
    EXPECT_EQ(linesOf(stream(longest)), Lines{"0 unknown 0 0 \"" + longest + "\""});

    const std::string longer = bracketed(kMaxCommandBytes - 1);
    EXPECT_EQ(linesOf(stream(longer)), Lines{"0 text \"" + longer + "\""});
    EXPECT_EQ(problemsOf(stream(longer)), Lines{"0: a \"<\" that begins no command"});
}

TEST(CommandReader, GivesTextInOneRunUpToACommand) {
    EXPECT_EQ(linesOf(stream("ab\r\ncd<p>ef")),
              (Lines{"0 text \"ab\\r\\ncd\"", "6 cut 0 0 \"<p>\"", "9 text \"ef\""}));
}

TEST(CommandReader, CutsLongTextBetweenCharacters) {
    // The 256th byte is the first of a two-byte character.
    const Lines lines = linesOf(stream(std::string(255, 'a'), "\xC3\xA9", "b"));
    EXPECT_EQ(lines, (Lines{"0 text \"" + std::string(255, 'a') + "\"",
                            "255 text \"\\xC3\\xA9"
                            "b\""}));
    EXPECT_EQ(linesOf(stream(std::string(600, 'a'))),
              (Lines{"0 text \"" + std::string(256, 'a') + "\"",
                     "256 text \"" + std::string(256, 'a') + "\"",
                     "512 text \"" + std::string(88, 'a') + "\""}));
}

TEST(CommandReader, ReportsAStreamThatEndsTooEarly) {
    EXPECT_EQ(problemsOf(stream("<G40>", Stream(12, 0xFF))),
              Lines{"0: graphics cut short: 12 of 40 bytes"});
    EXPECT_EQ(linesOf(stream("<G4>\x01")).back(), "bytes \"\\x01\"");
    EXPECT_EQ(problemsOf(stream("ab<RC1")), Lines{"2: the stream ends inside a command: \"<RC1\""});
    EXPECT_EQ(problemsOf(stream("ab\x1B")), Lines{"2: the stream ends after an ESC"});
    EXPECT_EQ(problemsOf(stream("<7>")), Lines{"0: unknown command \"<7>\""});
    EXPECT_EQ(problemsOf(stream("<7>\x1B<G2>a")),
              (Lines{"4: graphics cut short: 1 of 2 bytes", "0: the stream ends inside logo 7"}));
}

TEST(CommandReader, IsAsNewAfterTheEnd) {
    RecordingSink sink;
    CommandReader reader(sink);
    reader.feed(stream("<7>\x1B<G9>abc"));
    EXPECT_EQ(reader.offset(), 11U);
    reader.finish();
    EXPECT_EQ(reader.offset(), 0U);
    sink.lines.clear();
    reader.feed(stream("\x1B", "c<p>"));
    reader.finish();
    EXPECT_EQ(sink.lines, (Lines{"0 clear memory 0 0 \"\\x1Bc\"", "2 cut 0 0 \"<p>\""}));
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
