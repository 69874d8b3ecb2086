// Telling what a document is.

#include <gtest/gtest.h>

#include "TavioIpadSDK/helper/find_helper.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

// The line about codes where there are none.
std::string noCodes() {
    if (!helper::findHelper("tavio-scan").empty()) return "codes: none\n";
    return "codes: not looked for: the program tavio-scan, which finds them, is not installed\n";
}

class Info : public ToolTest {
  protected:
    void expectInfo(const std::vector<std::string>& arguments, const std::string& lines) const {
        const Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.out, lines);
        std::vector<std::string> json = arguments;
        json.emplace_back("--json");
        EXPECT_EQ(tavio(json).status, 0);
    }
};

TEST_F(Info, TellsOfAPdf) {
    const std::string file = pdf(144, 72, 3);
    writeFile(at("a.pdf"), file);
    expectInfo({"info", "a.pdf"}, "a.pdf: PDF, " + std::to_string(file.size()) +
                                      " bytes\n"
                                      "pages: 3\n"
                                      "size: 2 x 1 inches\n"
                                      "printed: 600 x 300 dots\n" +
                                      noCodes());
    expectInfo({"info", "a.pdf", "--page", "2", "--resolution", "200"},
               "a.pdf: PDF, " + std::to_string(file.size()) +
                   " bytes\n"
                   "pages: 3\n"
                   "size: 2 x 1 inches\n"
                   "printed: 400 x 200 dots\n" +
                   noCodes());
}

TEST_F(Info, TellsOfPictures) {
    writeFile(at("black.bmp"), greyBmp(600, 304));
    tavio({"print", "black.bmp", "--stock", "cinema"});
    const std::string png = readFile(at("ticket.png"));
    expectInfo({"info", "black.bmp"},
               "black.bmp: BMP, 547254 bytes\n"
               "pixels: 600 x 304 pixels\n"
               "size: 2 x 1.01 inches\n"
               "printed: 600 x 304 dots\n" +
                   noCodes());
    expectInfo({"info", "ticket.png", "--scaled", "--stock", "cinema", "--resolution", "200"},
               "ticket.png: PNG, " + std::to_string(png.size()) +
                   " bytes\n"
                   "pixels: 600 x 975 pixels\n"
                   "size: 3 x 4.88 inches\n"
                   "printed: 400 x 650 dots\n" +
                   noCodes());
}

TEST_F(Info, TellsOfAText) {
    writeFile(at("notes.txt"), "<RC1,2>caf\xC3\xA9");
    expectInfo({"info", "notes.txt"}, "notes.txt: text, 12 bytes\n");
}

TEST_F(Info, TellsWhatWouldBeLost) {
    writeFile(at("a.bmp"), greyBmp(32, 20));
    Ran ran = tavio({"info", "a.bmp", "--classic", "--row", "590", "--json"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(
        ran.err,
        "tavio: warning: the picture of 32 x 20 dots at row 590, column 0 reaches beyond the "
        "ticket of 1650 x 600 dots\n"
        "tavio: warning: 4 rows with black dots are lost: rows at the bottom that do not fill "
        "8 are left out\n");
    EXPECT_NE(ran.out.find(R"({"kind":"beyond-ticket","sentence":)"), std::string::npos);
    EXPECT_NE(ran.out.find(R"(,"count":10})"), std::string::npos) << ran.out;
    EXPECT_EQ(folder.names(), std::set<std::string>{"a.bmp"}) << "nothing is printed";
}

TEST_F(Info, RefusesWhatCannotBePrinted) {
    writeFile(at("a.png"), brokenPng());
    writeFile(at("b.doc"), "x");
    writeFile(at("secret.pdf"), encryptedPdf());
    for (const auto& [name, kind] : {std::pair{"missing.png", "not-found"},
                                     {"a.png", "damaged"},
                                     {"b.doc", "unknown-format"},
                                     {"secret.pdf", "encrypted"}}) {
        const Ran ran = tavio({"info", name, "--json"});
        EXPECT_EQ(ran.status, 1) << name;
        EXPECT_NE(ran.out.find(std::string(R"("kind":")") + kind), std::string::npos) << ran.out;
    }
}

}  // namespace
}  // namespace tavio::test
