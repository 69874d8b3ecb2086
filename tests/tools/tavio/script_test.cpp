// Reading scripts.

#include "tools/tavio/script.h"

#include <gtest/gtest.h>

namespace tavio::tool {
namespace {

using Words = std::vector<std::string>;

TEST(ScriptWords, AreQuotedAsInAShell) {
    EXPECT_EQ(wordsOf("print photo.jpg --row 12"), (Words{"print", "photo.jpg", "--row", "12"}));
    EXPECT_EQ(wordsOf(" \tcut \t"), (Words{"cut"}));
    EXPECT_EQ(wordsOf(""), Words{});
    EXPECT_EQ(wordsOf(R"(send 'a "b" \c $d')"), (Words{"send", R"(a "b" \c $d)"}));
    EXPECT_EQ(wordsOf(R"(send "a 'b' \"c\" \\ \$ \` \d $e")"),
              (Words{"send", R"(a 'b' "c" \ $ ` \d $e)"}));
    EXPECT_EQ(wordsOf(R"(a\ b \# \'c)"), (Words{"a b", "#", "'c"}));
    EXPECT_EQ(wordsOf(R"(a'b'"c"d '' "")"), (Words{"abcd", "", ""}));
    EXPECT_EQ(wordsOf("send *.jpg ~ $HOME {a,b}"), (Words{"send", "*.jpg", "~", "$HOME", "{a,b}"}));
}

TEST(ScriptWords, EndAtAComment) {
    EXPECT_EQ(wordsOf("# nothing 'at all"), Words{});
    EXPECT_EQ(wordsOf("cut # here"), (Words{"cut"}));
    EXPECT_EQ(wordsOf("send no#comment '# nor here'"), (Words{"send", "no#comment", "# nor here"}));
}

TEST(ScriptWords, MustBeWhole) {
    EXPECT_EQ(wordsOf("send 'a").error(), "a single quote is not closed");
    EXPECT_EQ(wordsOf("send \"a").error(), "a double quote is not closed");
    EXPECT_EQ(wordsOf("send \"a\\\"").error(), "a double quote is not closed");
    EXPECT_EQ(wordsOf("send a\\").error(), "a backslash ends the line: a command has one line");
}

TEST(Scripts, AreCommandsWithTheirLines) {
    const Script script = readScript("# a ticket\nprint a.png --row 12\n\nlogo print 7\ncut", {});
    EXPECT_TRUE(script.wrong.empty());
    ASSERT_EQ(script.lines.size(), 3U);
    EXPECT_EQ(script.lines[0].number, 2U);
    EXPECT_EQ(script.lines[0].options.command, Command::kPrint);
    EXPECT_EQ(script.lines[0].options.files, std::vector<std::string>{"a.png"});
    EXPECT_EQ(script.lines[0].options.row, 12);
    EXPECT_EQ(script.lines[1].number, 4U);
    EXPECT_EQ(script.lines[1].options.command, Command::kLogoPrint);
    EXPECT_EQ(script.lines[1].options.logo, 7);
    EXPECT_EQ(script.lines[1].options.row, 0) << "of the line before";
    EXPECT_TRUE(script.lines[1].options.files.empty());
    EXPECT_EQ(script.lines[2].number, 5U);
}

TEST(Scripts, KeepTheSettingsOfALineOfTheirOwn) {
    Settings outside;
    outside.resolution = 200;
    outside.stock = printing::Stock::receipt();
    const Script script = readScript(
        "cut\n"
        "--resolution 600 --scaled\n"
        "cut\n"
        "cut --resolution 300 --threshold\n"
        "--scaled=false --orientation portrait\n"
        "cut\n",
        outside);
    EXPECT_TRUE(script.wrong.empty());
    ASSERT_EQ(script.lines.size(), 4U);
    EXPECT_EQ(script.lines[0].options.settings, outside);
    Settings second = outside;
    second.resolution = 600;
    second.scaled = true;
    EXPECT_EQ(script.lines[1].options.settings, second);
    Settings third = second;
    third.resolution = 300;
    third.blackAndWhite = printing::BlackAndWhite::kThreshold;
    third.threshold = 128;
    EXPECT_EQ(script.lines[2].options.settings, third);  // for this line only
    Settings fourth = second;
    fourth.scaled = false;
    fourth.orientation = printing::Orientation::kPortrait;
    EXPECT_EQ(script.lines[3].options.settings, fourth);
}

TEST(Scripts, MayComeFromAnotherSystem) {
    const Script script = readScript(
        "\xEF\xBB\xBF"
        "cut\r\neject\r\n",
        {});
    EXPECT_TRUE(script.wrong.empty());
    EXPECT_EQ(script.lines.size(), 2U);
}

TEST(Scripts, NameEveryWrongLine) {
    const std::string text =
        "cut\n"
        "bogus\n"
        "preview job.bin\n"
        "print\n"
        "print a.png --row x\n"
        "print a.png --to ticket.png\n"
        "cut --json\n"
        "send 'open\n"
        "--stock poster\n"
        "--resolution 200 cut\n"
        "print --help\n"
        "''\n" +
        std::string("cu\0t\n", 5) + "logo\ncut --cut\n";
    const Script script = readScript(text, {});
    EXPECT_EQ(script.lines.size(), 1U);
    std::vector<std::size_t> numbers;
    for (const WrongLine& line : script.wrong) {
        numbers.push_back(line.number);
        EXPECT_FALSE(line.sentence.empty());
        EXPECT_FALSE(line.sentence.ends_with(".")) << line.sentence;
    }
    EXPECT_EQ(numbers, (std::vector<std::size_t>{2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    EXPECT_EQ(script.wrong[0].sentence,
              "bogus is no command of a script: give one of print logo send text words code "
              "line box raw cut eject clear");
    EXPECT_EQ(script.wrong[4].sentence,
              "--to: give it to tavio run: a script has one target (tavio --help tells more)");
}

}  // namespace
}  // namespace tavio::tool
