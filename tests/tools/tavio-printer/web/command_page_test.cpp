#include "tools/tavio-printer/web/command_page.h"

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavio/virtual-printer/decode_listing.h"

namespace tavio::virtual_printer {
namespace {

CommandPage pageOf(const std::string& stream, const ProblemList& problems = {},
                   std::uint64_t first = 0) {
    return commandPage({reinterpret_cast<const Byte*>(stream.data()), stream.size()}, problems,
                       first);
}

TEST(CommandPage, HasOffsetCommandAndMeaningOfEachLine) {
    const CommandPage page = pageOf("<RC10,20>Row A\r\n<G2>\xFF\x01<p>");
    ASSERT_EQ(page.count, 4U);
    ASSERT_EQ(page.lines.size(), 4U);
    EXPECT_EQ(page.lines[0].offset, 0U);
    EXPECT_EQ(page.lines[0].command, "<RC10,20>");
    EXPECT_EQ(page.lines[0].meaning, "position: row 10, column 20");
    EXPECT_EQ(page.lines[1].offset, 9U);
    EXPECT_EQ(page.lines[1].command, "");
    EXPECT_EQ(page.lines[1].meaning, R"(text: "Row A\r\n")");
    EXPECT_EQ(page.lines[2].command, "<G2>");
    EXPECT_EQ(page.lines[2].meaning, "graphics: 2 columns, 9 dots");
    EXPECT_EQ(page.lines[3].meaning, "cut");
}

TEST(CommandPage, IsTheSameHoweverLongTheStreamIs) {
    std::string stream = "<G3>a>b";
    while (stream.size() < 300'000) stream += "<RC10,20>Row A" + std::string(600, 'x');
    std::ostringstream whole;
    DecodeListing listing(whole);
    listing.feed({reinterpret_cast<const Byte*>(stream.data()), stream.size()});
    listing.finish();
    const std::string lines = whole.str();
    EXPECT_EQ(pageOf(stream).count,
              static_cast<std::uint64_t>(std::count(lines.begin(), lines.end(), '\n')));
}

TEST(CommandPage, StopsWhereNobodyWaitsForItAnyMore) {
    const std::vector<Byte> text(500'000, Byte{'x'});
    const std::uint64_t all = commandPage(text, {}, 0).count;
    int asked = 0;
    const CommandPage page = commandPage(text, {}, 0, [&asked] { return ++asked <= 2; });
    EXPECT_GT(page.count, 0U);
    EXPECT_LT(page.count, all);
    EXPECT_EQ(commandPage(text, {}, 0, [] { return false; }).count, 0U);
}

TEST(CommandPage, BlanksSideBySideStayWhereTheyBelong) {
    const CommandPage page = pageOf("<no  such  thing>a  b");
    ASSERT_EQ(page.lines.size(), 2U);
    EXPECT_EQ(page.lines[0].command, "<no  such  thing>");
    EXPECT_EQ(page.lines[0].meaning, "unknown command");
    EXPECT_EQ(page.lines[1].meaning, R"(text: "a  b")");
}

TEST(CommandPage, TheListingsOwnProblemsAreNoCommands) {
    const CommandPage page = pageOf("<nothing><G9>\x01");
    EXPECT_EQ(page.count, 2U);
    EXPECT_EQ(page.lines.back().command, "<G9>");
}

TEST(CommandPage, NoBytesAreNoCommands) {
    ProblemList problems;
    problems.add(0, "nothing came");
    const CommandPage page = pageOf("", problems);
    EXPECT_EQ(page.count, 0U);
    EXPECT_EQ(page.problemLines, std::vector<std::uint64_t>{0});
}

TEST(CommandPage, BeginsWhereItIsToldAndCountsAll) {
    std::string stream;
    constexpr std::uint64_t kCommands = 2 * kMaxCommandLines + 7;
    for (std::uint64_t index = 0; index < kCommands; ++index) stream += "<P1>";

    EXPECT_EQ(pageOf(stream).lines.size(), kMaxCommandLines);
    const CommandPage second = pageOf(stream, {}, kMaxCommandLines);
    EXPECT_EQ(second.count, kCommands);
    EXPECT_EQ(second.lines.size(), kMaxCommandLines);
    EXPECT_EQ(second.lines.front().offset, 4 * kMaxCommandLines);
    EXPECT_EQ(pageOf(stream, {}, 2 * kMaxCommandLines).lines.size(), 7U);
    EXPECT_TRUE(pageOf(stream, {}, kCommands).lines.empty());
    EXPECT_TRUE(pageOf(stream, {}, UINT64_MAX).lines.empty());
}

TEST(CommandPage, ProblemsKnowTheirLineInWhateverOrderTheyWereFound) {
    ProblemList problems;
    problems.add(9, "in the middle of the text");
    problems.add(4, "at its first byte");
    problems.add(0, "at the very first");
    problems.add(1000, "behind everything");
    problems.add(3, "at a command's last byte");
    const CommandPage page = pageOf("<P1>some text<p>", problems);
    ASSERT_EQ(page.count, 3U);
    EXPECT_EQ(page.problemLines, (std::vector<std::uint64_t>{1, 1, 0, 2, 0}));
}

TEST(CommandPage, IsTheListingWhateverTheBytesAre) {
    const auto seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const std::string alphabet = "<>RCGLDSP0123456789,pq \x1B\n\xFF" + std::string("cab");
    for (int round = 0; round < 500; ++round) {
        std::string stream;
        for (auto left = random() % 300; left > 0; --left) {
            stream += alphabet[random() % alphabet.size()];
        }
        std::ostringstream expected;
        DecodeListing listing(expected);
        listing.feed({reinterpret_cast<const Byte*>(stream.data()), stream.size()});
        listing.finish();

        std::string actual;
        for (const CommandLine& line : pageOf(stream).lines) {
            std::string digits = std::to_string(line.offset);
            actual += std::string(7 - digits.size(), '0').append(digits).append("  ");
            if (!line.command.empty()) actual += line.command + "  ";
            actual += line.meaning + '\n';
        }
        const std::string all = expected.str();
        ASSERT_EQ(actual, all.substr(0, all.find("problems: "))) << stream;
    }
}

}  // namespace
}  // namespace tavio::virtual_printer
