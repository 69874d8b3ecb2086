// The exact bytes of each command.

#include <filesystem>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

using Jobs = ToolTest;

constexpr const char* kOpening = "<P1><LM><RE0><DI>";

TEST_F(Jobs, SendsATextToTheLetter) {
    EXPECT_EQ(bytesOf({"send", "<RC10,10>Row B, seat 12 \xC3\xA9"}),
              "<RC10,10>Row B, seat 12 \xC3\xA9");
    EXPECT_EQ(bytesOf({"send", ""}), "");
    EXPECT_EQ(bytesOf({"send", "cut"}), "cut");
    EXPECT_EQ(bytesOf({"send", "[a,b]"}), "[a,b]");
    EXPECT_EQ(bytesOf({"send", "\"quoted\""}), "\"quoted\"");
}

TEST_F(Jobs, SendsATextThatBeginsWithAHyphenAfterTwoHyphens) {
    Ran ran = tavio({"send", "--to", "file:job.bin", "--", "--cut"});
    EXPECT_EQ(ran.status, 0) << ran.err;
    EXPECT_EQ(readFile(at("job.bin")), "--cut");
}

TEST_F(Jobs, CutsEjectsAndClears) {
    EXPECT_EQ(bytesOf({"cut"}), "<p>");
    EXPECT_EQ(bytesOf({"eject"}), "<q>");
    EXPECT_EQ(bytesOf({"clear"}),
              "\x1B"
              "c");
}

TEST_F(Jobs, PrintsAStoredLogo) {
    EXPECT_EQ(bytesOf({"logo", "print", "2", "--row", "100", "--column", "250"}),
              "<SP100,250><LD2>");
    EXPECT_EQ(bytesOf({"logo", "print", "7"}), "<SP0,0><LD7>");
    EXPECT_EQ(bytesOf({"logo", "print", "-1", "--row", "-5", "--column", "-2147483648"}),
              "<SP-5,-2147483648><LD-1>");
}

TEST_F(Jobs, PassesATextFileThrough) {
    writeFile(at("notes.txt"), "\xEF\xBB\xBF<RC1,2>caf\xC3\xA9\r\n");
    EXPECT_EQ(bytesOf({"print", "notes.txt", "--row", "7"}), "\xEF\xBB\xBF<RC1,2>caf\xC3\xA9\r\n");
    EXPECT_EQ(bytesOf({"print", "notes.txt", "--cut"}), "\xEF\xBB\xBF<RC1,2>caf\xC3\xA9\r\n<p>");
    EXPECT_EQ(bytesOf({"print", "notes.txt", "--eject"}), "\xEF\xBB\xBF<RC1,2>caf\xC3\xA9\r\n<q>");
    writeFile(at("empty.TXT"), "");
    EXPECT_EQ(bytesOf({"print", "empty.TXT"}), "");
}

TEST_F(Jobs, PassesAFileOfAnyBytesThrough) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    writeFile(at("any.bin"), bytes);
    EXPECT_EQ(bytesOf({"raw", "any.bin"}), bytes);
    std::string large;
    while (large.size() < (std::size_t{3} << 20) + 5) large += bytes;
    writeFile(at("large.bin"), large);
    EXPECT_TRUE(bytesOf({"raw", "large.bin"}) == large);
    writeFile(at("empty.bin"), "");
    EXPECT_EQ(bytesOf({"raw", "empty.bin"}), "");
}

TEST_F(Jobs, PrintsABlackSquare) {
    writeFile(at("black.bmp"), greyBmp(8, 8));
    const std::string square = "<RC10,20><G8>" + std::string(8, '\xFF');
    for (const auto& more : {std::vector<std::string>{},
                             {"--dither"},
                             {"--threshold"},
                             {"--threshold", "100"},
                             {"--threshold=100"},
                             {"--threshold=false"},
                             {"--threshold", "100", "--tone", "plain", "--rotate", "270"}}) {
        std::vector<std::string> arguments{"print", "black.bmp", "--row", "10", "--column", "20"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        EXPECT_EQ(bytesOf(arguments), kOpening + square) << testing::PrintToString(more);
    }
}

TEST_F(Jobs, PrintsWhatIsDarkerThanTheThreshold) {
    writeFile(at("grey.bmp"), greyBmp(8, 8, 100));
    const std::vector<std::string> print{"print", "grey.bmp", "--tone", "plain", "--threshold"};
    auto withNumber = [&print](const std::string& number) {
        auto arguments = print;
        arguments.push_back(number);
        return arguments;
    };
    const std::string square = "<RC0,0><G8>" + std::string(8, '\xFF');
    EXPECT_EQ(bytesOf(print), kOpening + square);
    EXPECT_EQ(bytesOf(withNumber("101")), kOpening + square);
    EXPECT_EQ(bytesOf(withNumber("100")), kOpening);
}

TEST_F(Jobs, FitsTurnsAndAligns) {
    writeFile(at("black.bmp"), greyBmp(8, 16));
    const auto print = [this](std::vector<std::string> more) {
        more.insert(more.begin(),
                    {"print", "black.bmp", "--stock", "1x0.5", "--resolution", "200"});
        return bytesOf(std::move(more));
    };
    const std::string eight(8, '\xFF');
    EXPECT_EQ(print({"--align", "bottom-right", "--margin", "4"}),
              kOpening + ("<RC80,188><G8>" + eight) + ("<RC88,188><G8>" + eight));
    EXPECT_EQ(print({"--rotate", "90"}), kOpening + ("<RC0,0><G16>" + eight + eight));
    const std::string band = "<G200>" + std::string(200, '\xFF');
    EXPECT_TRUE(print({"--fit", "contain"}).starts_with(kOpening + ("<RC0,0>" + band))) << "turned";
    EXPECT_TRUE(print({"--scaled", "--rotate", "0"}).starts_with(kOpening + ("<RC0,0>" + band)));
}

// The right nibble of 8 black columns prints in the top row only, which is white by threshold.
TEST_F(Jobs, PrintsABlackSquareTheClassicWayByThreshold) {
    writeFile(at("black.bmp"), greyBmp(8, 8));
    EXPECT_EQ(bytesOf({"print", "black.bmp", "--classic", "--row", "10", "--column", "20",
                       "--threshold"}),
              std::string(kOpening) + "<RC10,20><G4>\x7F\x7F\x7F\x7F");
}

TEST_F(Jobs, PrintsABlackSquareTheClassicWayDithered) {
    writeFile(at("black.BMP"), greyBmp(8, 8));
    EXPECT_EQ(
        bytesOf({"print", "black.BMP", "--classic", "--row", "10", "--column", "20", "--cut"}),
        std::string(kOpening) + "<RC10,20><G8>\xFF\xFF\xFF\xFF\x80\x80\x80\x80<p>");
}

TEST_F(Jobs, PrintsNothingOfAWhitePicture) {
    writeFile(at("white.bmp"), greyBmp(32, 16, 255));
    EXPECT_EQ(bytesOf({"print", "white.bmp"}), kOpening);
}

TEST_F(Jobs, FollowsTheSettings) {
    writeFile(at("white.bmp"), greyBmp(32, 16, 255));
    EXPECT_EQ(bytesOf({"print", "white.bmp", "--path", "<P2>", "--orientation", "portrait"}),
              "<P2><PM><RE0><DI>");
    EXPECT_EQ(bytesOf({"print", "white.bmp", "--path", ""}), "<LM><RE0><DI>");
}

// The classic way, 32 x 32 black pixels are four bands without a blank column. The first goes out as the picture's
// place says, the later ones in a row counted back from the printable width, which is 608 dots for
// a credit card at 300 dots per inch.
TEST_F(Jobs, KnowsThePortraitWidth) {
    writeFile(at("black.bmp"), greyBmp(32, 32));
    const std::string band = "<G32>" + std::string(32, '\xFF');
    const std::vector<std::string> print{"print",         "black.bmp", "--row",   "5",
                                         "--column",      "9",         "--stock", "creditcard",
                                         "--orientation", "portrait"};
    EXPECT_EQ(bytesOf(print), "<P1><PM><RE0><DI><RC603,9>" + band + "<RC603,17>" + band +
                                  "<RC603,25>" + band + "<RC603,33>" + band);
    auto classic = print;
    classic.emplace_back("--classic");
    EXPECT_EQ(bytesOf(classic), "<P1><PM><RE0><DI><RC5,9>" + band + "<RC603,17>" + band +
                                    "<RC603,25>" + band + "<RC603,33>" + band);
}

TEST_F(Jobs, ScalesAPictureToTheStockTheClassicWay) {
    writeFile(at("black.bmp"), greyBmp(32, 32));
    // 2.0 x 3.25 inches at 200 dots per inch: 400 columns, of which the last 4 print in the top row
    // only, and 650 rows, which are 81 whole bands.
    std::string bytes = bytesOf({"print", "black.bmp", "--classic", "--scaled", "--stock", "CINEMA",
                                 "--resolution", "200"});
    EXPECT_NE(bytes.find("<RC640,0><G396>"), std::string::npos);
    EXPECT_EQ(bytes.find("<RC648,"), std::string::npos);
}

TEST_F(Jobs, StoresALogo) {
    writeFile(at("black.bmp"), greyBmp(32, 16));
    const std::string band = "<G32>" + std::string(32, '\xFF');
    EXPECT_EQ(bytesOf({"logo", "store", "3", "black.bmp"}),
              "<LM><RE0><DI><RC0,0><3>\x1B<RC0,0>" + band + "<RC8,0>" + band + "\x1B");
    EXPECT_EQ(bytesOf({"logo", "store", "3", "black.bmp", "--classic"}),
              "<RE0><DI><RC0,0><3>\x1B<RC16,0><RC8,0>" + band + "\x1B");
    EXPECT_TRUE(bytesOf({"logo", "store", "-12", "black.bmp"})
                    .starts_with("<LM><RE0><DI><RC0,0><-12>\x1B"));
}

// 72 x 36 points at 200 dots per inch are 200 x 100 dots, the left half of them black.
TEST_F(Jobs, PrintsTheFirstPageOfAPdf) {
    writeFile(at("page.pdf"), pdf(72, 36));
    std::string bytes =
        bytesOf({"print", "page.pdf", "--row", "5", "--column", "6", "--resolution", "200"});
    EXPECT_TRUE(bytes.starts_with(std::string(kOpening) + "<RC5,6><G"));
    EXPECT_NE(bytes.find("<RC93,6><G"), std::string::npos) << "the last of 12 whole bands";
    EXPECT_NE(bytes.find("<RC97,6><G"), std::string::npos) << "the rest: the last 8 rows";
}

TEST_F(Jobs, StoresAPageAsALogo) {
    writeFile(at("page.PDF"), pdf(72, 36));
    std::string bytes = bytesOf({"logo", "store", "9", "page.PDF", "--resolution", "200"});
    EXPECT_TRUE(bytes.starts_with("<LM><RE0><DI><RC0,0><9>\x1B"));
    EXPECT_TRUE(bytes.ends_with('\x1B'));
    EXPECT_NE(bytes.find("<RC8,0><G"), std::string::npos);
}

TEST_F(Jobs, PrintsFilesWhoseNamesAreOdd) {
    writeFile(at("50%41 & <seat> \xC3\xA9.txt"), "odd");
    EXPECT_EQ(bytesOf({"print", "50%41 & <seat> \xC3\xA9.txt"}), "odd");
    writeFile(at("a.b.txt"), "dots");
    EXPECT_EQ(bytesOf({"print", at("a.b.txt")}), "dots");
}

TEST_F(Jobs, TracesEachOperationOfTheLink) {
    writeFile(at("black.bmp"), greyBmp(8, 8));
    Ran ran = tavio({"print", "black.bmp", "--row", "10", "--column", "20", "--cut", "--trace",
                     "--to", "file:job.bin"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(withoutLosses(ran.err),
              "tavio: trace: open\n"
              "tavio: trace: write 41 bytes\n"
              "tavio: trace: close\n");
}

TEST_F(Jobs, WritesToStandardOutput) {
    Ran ran = tavio({"cut", "--to", "file:/dev/stdout"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.out, "<p>");
    EXPECT_TRUE(folder.names().empty());
}

TEST_F(Jobs, ReplacesTheFileOfAnEarlierJob) {
    writeFile(at("job.bin"), "a longer text than the next one");
    EXPECT_EQ(bytesOf({"cut"}), "<p>");
    EXPECT_EQ(folder.names(), std::set<std::string>{"job.bin"});
}

}  // namespace
}  // namespace tavio::test
