// The command line itself.

#include <gtest/gtest.h>

#include "tool/process.h"

namespace tavio::test {
namespace {

using Usage = ToolTest;

const std::vector<std::vector<std::string>> kCommands{
    {"print"}, {"logo", "store"}, {"logo", "print"}, {"logo"},    {"send"},   {"raw"},    {"cut"},
    {"eject"}, {"clear"},         {"status"},        {"preview"}, {"decode"}, {"stocks"}, {}};

TEST_F(Usage, EveryHelpHasAnExample) {
    for (std::vector<std::string> command : kCommands) {
        command.emplace_back("--help");
        SCOPED_TRACE(testing::PrintToString(command));
        Ran ran = tavio(command);
        EXPECT_EQ(ran.status, 0);
        EXPECT_NE(ran.out.find("Example:\n  tavio "), std::string::npos) << ran.out;
        EXPECT_EQ(ran.err, "");
    }
}

TEST_F(Usage, EveryCommandTakesTheSettings) {
    for (std::vector<std::string> command : kCommands) {
        if (command.empty() || (command.size() == 1 && command[0] == "logo")) continue;
        command.emplace_back("--help");
        SCOPED_TRACE(testing::PrintToString(command));
        Ran ran = tavio(command);
        for (const char* option :
             {"--path", "--resolution", "--scaled", "--threshold", "--stock", "--orientation"}) {
            EXPECT_NE(ran.out.find(option), std::string::npos) << option;
        }
    }
}

TEST_F(Usage, BadUsageIsExitStatus2) {
    const std::vector<std::vector<std::string>> bad{
        {},
        {"unknown"},
        {"print"},
        {"logo"},
        {"logo", "store"},
        {"logo", "store", "x", "a.png"},
        {"logo", "store", "2147483648", "a.png"},
        {"logo", "print"},
        {"logo", "print", "1", "2"},
        {"cut", "extra"},
        {"print", "a.txt", "--row"},
        {"print", "a.txt", "--row", "1.5"},
        {"print", "a.txt", "--row", "0x10"},
        {"print", "a.txt", "--row", ""},
        {"print", "a.txt", "--column", "-2147483649"},
        {"print", "a.txt", "--cut", "--eject"},
        {"print", "a.txt", "--resolution", "400"},
        {"print", "a.txt", "--stock", "9"},
        {"print", "a.txt", "--stock", "-1"},
        {"print", "a.txt", "--stock", "poster"},
        {"print", "a.txt", "--stock", ""},
        {"print", "a.txt", "--orientation", "sideways"},
        {"print", "a.txt", "--to", "ticket.jpg"},
        {"print", "a.txt", "--to", "file:"},
        {"print", "a.txt", "--to", ""},
        {"print", "a.txt", "--unknown"},
    };
    for (const auto& arguments : bad) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 2);
        EXPECT_EQ(ran.out, "");
        EXPECT_TRUE(ran.err.starts_with("tavio: ")) << ran.err;
        EXPECT_EQ(ran.err.find('\n'), ran.err.size() - 1) << "one line: " << ran.err;
    }
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Usage, NumbersAreDecimal) {
    EXPECT_EQ(bytesOf({"logo", "print", "+010", "--row", "08", "--column", "-007"}),
              "<SP8,-7><LD10>");
    EXPECT_EQ(bytesOf({"logo", "print", "1", "--row=-3"}), "<SP-3,0><LD1>");
}

TEST_F(Usage, TellsItsVersion) {
    Ran ran = tavio({"--version"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.out.starts_with("tavio ")) << ran.out;
}

TEST_F(Usage, ListsTheStocks) {
    Ran ran = tavio({"stocks"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(
        ran.out,
        R"(stock  name        landscape, in  portrait, in   dots at 200   dots at 300   dots at 600
0      concert     5.5 x 2        2 x 5.5        1100 x 400    1650 x 600    3300 x 1200
1      cinema      2 x 3.25       3.25 x 2       400 x 650     600 x 975     1200 x 1950
2      creditcard  3.37 x 2.13    2.13 x 3.37    674 x 426     1011 x 639    2022 x 1278
3      receipt     8 x 3.25       3.25 x 8       1600 x 650    2400 x 975    4800 x 1950
4      -           6 x 3.25       3.25 x 6       1200 x 650    1800 x 975    3600 x 1950
5      -           6 x 4          4 x 6          1200 x 800    1800 x 1200   3600 x 2400
6      -           11 x 1         1 x 11         2200 x 200    3300 x 300    6600 x 600
7      -           11 x 1.328     1.328 x 11     2200 x 266    3300 x 398    6600 x 797
8      -           11 x 8.5       8.5 x 11       2200 x 1700   3300 x 2550   6600 x 5100
)");
}

TEST_F(Usage, ListsTheCommandsOfAJob) {
    writeFile(at("job.bin"), std::string("<P1><RC10,20><G2>\xFF\x01") + "Row A\n<p>");
    Ran ran = tavio({"decode", "job.bin"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    for (const char* expected : {"0000000  <P1>", "0000004  <RC10,20>", "0000013  <G2>",
                                 "0000019  text: \"Row A\\n\"", "0000025  <p>"}) {
        EXPECT_NE(ran.out.find(expected), std::string::npos) << expected << " in\n" << ran.out;
    }
}

TEST_F(Usage, DecodesAnEmptyJob) {
    writeFile(at("job.bin"), "");
    Ran ran = tavio({"decode", "job.bin"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "");
}

}  // namespace
}  // namespace tavio::test
