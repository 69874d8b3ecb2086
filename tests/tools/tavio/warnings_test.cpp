// Warnings of the tool, which still does its work.

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

class Warnings : public ToolTest {
  protected:
    // Succeeds with exactly these lines on standard error, but for those about lost dots; gives the
    // bytes sent.
    std::string bytesWithWarnings(std::vector<std::string> arguments,
                                  const std::string& lines) const {
        arguments.insert(arguments.end(), {"--to", "file:job.bin"});
        Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(withoutLosses(ran.err), lines);
        return readFile(at("job.bin"));
    }
};

TEST_F(Warnings, APictureOfFewerThan8RowsPrintsNothing) {
    writeFile(at("low.bmp"), greyBmp(32, 7));
    EXPECT_EQ(bytesWithWarnings({"print", "low.bmp", "--classic", "--cut"},
                                "tavio: warning: the picture is 32 x 7 dots: of fewer than 8 rows "
                                "nothing prints\n"),
              "<P1><LM><RE0><DI><p>");
    writeFile(at("high.bmp"), greyBmp(32, 8));
    bytesWithWarnings({"print", "high.bmp"}, "");
}

// Under portrait width and height change places: 7 columns become 7 rows.
TEST_F(Warnings, TheRowsAreThoseInPrint) {
    writeFile(at("narrow.bmp"), greyBmp(7, 32));
    bytesWithWarnings({"print", "narrow.bmp", "--classic"}, "");
    bytesWithWarnings({"print", "narrow.bmp", "--classic", "--orientation", "portrait"},
                      "tavio: warning: the picture is 32 x 7 dots: of fewer than 8 rows nothing "
                      "prints\n");
    writeFile(at("low.bmp"), greyBmp(32, 7));
    bytesWithWarnings({"print", "low.bmp", "--classic", "--scaled"}, "");
    writeFile(at("low.pdf"), pdf(72, 2.5));  // 6.9 rows at 200 dots per inch
    bytesWithWarnings({"print", "low.pdf", "--classic", "--resolution", "200"},
                      "tavio: warning: the picture is 200 x 6 dots: of fewer than 8 rows nothing "
                      "prints\n");
}

TEST_F(Warnings, ALogoOfFewerThan16RowsIsNotStored) {
    writeFile(at("low.bmp"), greyBmp(32, 15));
    EXPECT_EQ(bytesWithWarnings({"logo", "store", "3", "low.bmp", "--classic"},
                                "tavio: warning: the picture is 32 x 15 dots: of fewer than 16 "
                                "rows nothing is stored as a logo\n"),
              "<RE0><DI><RC0,0><3>\x1B<RC8,0>\x1B");
    writeFile(at("high.bmp"), greyBmp(32, 16));
    bytesWithWarnings({"logo", "store", "3", "high.bmp"}, "");
}

TEST_F(Warnings, APictureLargerThanTheTicket) {
    writeFile(at("wide.bmp"), greyBmp(1651, 16));
    bytesWithWarnings({"print", "wide.bmp", "--classic"},
                      "tavio: warning: the picture of 1651 x 16 dots is larger than the ticket of "
                      "1650 x 600 dots\n");
    bytesWithWarnings({"print", "wide.bmp", "--classic", "--stock", "receipt"}, "");
    bytesWithWarnings({"print", "wide.bmp", "--classic", "--stock", "receipt", "--row", "960"},
                      "tavio: warning: the picture of 1651 x 16 dots at row 960, column 0 reaches "
                      "beyond the ticket of 2400 x 975 dots\n");
    bytesWithWarnings({"logo", "store", "1", "wide.bmp", "--classic"},
                      "tavio: warning: the picture of 1651 x 16 dots is larger than the ticket of "
                      "1650 x 600 dots\n");
}

TEST_F(Warnings, DotsThatAreLost) {
    writeFile(at("odd.bmp"), greyBmp(40, 18));
    Ran ran = tavio({"print", "odd.bmp", "--classic", "--to", "file:job.bin"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(
        ran.err,
        "tavio: warning: 2 rows with black dots are lost: rows at the bottom that do not fill "
        "8 are left out\n"
        "tavio: warning: 4 columns with black dots at the right are lost: make the width a "
        "multiple of 32\n");
    writeFile(at("even.bmp"), greyBmp(64, 24));
    EXPECT_EQ(tavio({"print", "even.bmp", "--classic", "--to", "file:job.bin"}).err, "");
}

TEST_F(Warnings, APageLargerThanTheTicket) {
    writeFile(at("page.pdf"), pdf(595.276, 841.89));
    bytesWithWarnings({"print", "page.pdf", "--classic"},
                      "tavio: warning: the picture of 2480 x 3507 dots is larger than the ticket "
                      "of 1650 x 600 dots\n");
    bytesWithWarnings({"print", "page.pdf", "--classic", "--scaled"}, "");
}

TEST_F(Warnings, APageThatIsPrintedMuchSmallerThanItIs) {
    writeFile(at("page.pdf"), pdf(595.276, 841.89));
    bytesWithWarnings({"print", "page.pdf"},
                      "tavio: warning: page.pdf is printed at 24 % of its size: choose a larger "
                      "stock, or a part of the page\n");
    bytesWithWarnings({"print", "page.pdf", "--stock", "8.3x11.7"}, "");
}

}  // namespace
}  // namespace tavio::test
