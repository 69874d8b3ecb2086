// The command line itself.

#include <array>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <unistd.h>
#include <utility>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

using Usage = ToolTest;

const std::vector<std::vector<std::string>> kCommands{
    {"print"}, {"logo", "store"}, {"logo", "print"}, {"logo"},    {"send"},   {"text"},   {"words"},
    {"code"},  {"line"},          {"box"},           {"raw"},     {"cut"},    {"eject"},  {"clear"},
    {"run"},   {"status"},        {"info"},          {"preview"}, {"decode"}, {"stocks"}, {}};

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

TEST_F(Usage, EveryCommandThatSendsTakesAPlaceAndATimeout) {
    for (std::vector<std::string> command : kCommands) {
        if (command.empty() || (command.size() == 1 && command[0] == "logo")) continue;
        const std::string name = command.front();
        command.emplace_back("--help");
        SCOPED_TRACE(testing::PrintToString(command));
        const bool sends =
            name != "preview" && name != "decode" && name != "stocks" && name != "info";
        const std::string help = tavio(command).out;
        for (const char* option : {"--to TARGET", "--timeout SECONDS"}) {
            EXPECT_EQ(help.find(option) != std::string::npos, sends) << option;
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
        {"print", "a.txt", "--to", "tcp://"},
        {"print", "a.txt", "--to", "tcp://x:65536"},
        {"print", "a.txt", "--to", "tcp://[::1"},
        {"print", "a.txt", "--to", "bt://00:11:22:33:44"},
        {"print", "a.txt", "--to", "bt://00:11:22:33:44:55/31"},
        {"print", "a.txt", "--to", "tty:"},
        {"print", "a.txt", "--to", "tty:/dev/ttyS0?baud=9601"},
        {"status", "--to", "192.0.2.7"},
        {"cut", "--timeout", "0"},
        {"cut", "--timeout", "-1"},
        {"cut", "--timeout", "86401"},
        {"cut", "--timeout", "1s"},
        {"cut", "--timeout", ""},
        {"cut", "--timeout"},
        {"stocks", "--timeout", "1"},
        {"decode", "job.bin", "--to", "tcp://x"},
        {"print", "a.txt", "--unknown"},
        {"print", "a.txt", "--path", "<\xE9>"},
        {"preview", "job.bin", "-o", ""},
        {"preview", "job.bin", "-o", "x.jpg"},
        {"preview", "job.bin", "--output", "file:x"},
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

TEST_F(Usage, NamesTheWordThatIsWrong) {
    using Case = std::pair<std::vector<std::string>, std::string>;
    for (const auto& [arguments, sentence] :
         {Case{{"bogus"}, "bogus is no command of tavio (tavio --help lists them)"},
          {{"help"}, "help is no command of tavio (tavio --help lists them)"},
          {{""}, "\"\" is no command of tavio (tavio --help lists them)"},
          {{"--bogus"}, "--bogus is no option of tavio (tavio --help lists them)"},
          {{"--bogus", "cut"}, "--bogus is no option of tavio (tavio --help lists them)"},
          {{"logo", "bogus"}, "bogus is no command of tavio logo (tavio logo --help lists them)"},
          {{"print", "-x.jpg"},
           "-x.jpg is no option of tavio print (tavio print --help lists them)"},
          {{"logo", "store", "1", "--bogus"},
           "--bogus is no option of tavio logo store (tavio logo store --help lists them)"},
          {{"a\x1B[2J"}, "a\\x1B[2J is no command of tavio (tavio --help lists them)"},
          {{}, "A subcommand is required (tavio --help tells more)"},
          {{"print"}, "FILE is required (tavio --help tells more)"},
          {{"cut", "extra"},
           "The following argument was not expected: extra (tavio --help tells more)"},
          {{"print", "a.txt", "--path", "<\xE9>"},
           "--path: the path command is not UTF-8 (tavio --help tells more)"},
          {{"cut", "--to", "tcp://x:0"},
           "--to: \"tcp://x:0\" is no place to print to: give tcp://HOST or tcp://HOST:PORT with a "
           "port from 1 to 65535, an IPv6 address in brackets (tavio --help tells more)"},
          {{"cut", "--timeout", "0"},
           "--timeout: \"0\" is no number of seconds above 0 and up to 86400, a day (tavio --help "
           "tells more)"},
          {{"preview", "job.bin", "-o", ""},
           "--output: \"\" is no name for the picture: give a name ending in .png (tavio --help "
           "tells more)"}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 2);
        EXPECT_EQ(ran.err, "tavio: " + sentence + "\n");
    }
}

// The words of the example in a help, without the program's name.
std::vector<std::string> exampleIn(const std::string& help) {
    const std::string opening = "Example:\n  tavio ";
    auto begin = help.find(opening);
    if (begin == std::string::npos) return {};
    begin += opening.size();
    std::istringstream line(help.substr(begin, help.find('\n', begin) - begin));
    std::vector<std::string> words;
    for (std::string word; line >> word;) words.push_back(word);
    return words;
}

TEST_F(Usage, PrintingByTheExamplesGivesNoWarning) {
    writeFile(at("page.pdf"), pdf(595.276, 841.89));
    Ran page = tavio(exampleIn(tavio({"print", "--help"}).out));
    EXPECT_EQ(page.status, 0);
    EXPECT_EQ(withoutLosses(page.err), "");
    EXPECT_TRUE(std::filesystem::exists(at("page.png")));
    // The name of a picture does not matter.
    writeFile(at("photo.jpg"), greyBmp(2000, 1500, 128));
    Ran photo = tavio(exampleIn(tavio({"--help"}).out));
    EXPECT_EQ(photo.status, 0);
    EXPECT_EQ(withoutLosses(photo.err), "");
    EXPECT_TRUE(std::filesystem::exists(at("ticket.png")));
}

TEST_F(Usage, TheExampleOfTheStatusAsksAPrinter) {
    const std::string help = tavio({"status", "--help"}).out;
    const std::vector<std::string> words = exampleIn(help);
    ASSERT_EQ(words.size(), 3U) << help;
    EXPECT_TRUE(words[2].starts_with("tcp://")) << "nothing else has a reply";
}

class Output : public ToolTest {
  protected:
    void SetUp() override {
        std::string job;
        for (int number = 0; number < 20000; ++number) job += "<RC10,20>";
        writeFile(at("job.bin"), job);
    }
    const std::vector<std::vector<std::string>> kShowing{
        {"decode", "job.bin"}, {"stocks"}, {"--help"}, {"print", "--help"}, {"--version"}};
};

TEST_F(Output, EndsQuietlyWhenItsReaderHasGoneAway) {
    for (const auto& arguments : kShowing) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
        ::close(ends[0]);
        Ran ran = tavioInto(ends[1], arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "");
    }
}

TEST_F(Output, FailsOnAFullDevice) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full";
    for (const auto& arguments : kShowing) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        Ran ran = tavioInto(::open("/dev/full", O_WRONLY | O_CLOEXEC), arguments);
        EXPECT_EQ(ran.status, 1);
        EXPECT_EQ(ran.err, "tavio: standard output cannot be written\n");
    }
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
