// Printing onto the preview.

#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "support/decode_picture.h"
#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

// Black pixels of a ticket picture, and the smallest rectangle around them.
struct Marks {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int64_t black = 0;
    std::int32_t left = 0, top = 0, right = -1, bottom = -1;  // inclusive
};

Marks marksOf(const std::string& path) {
    std::string file = readFile(path);
    auto decoded =
        pictures::decodePicture({reinterpret_cast<const Byte*>(file.data()), file.size()});
    if (!decoded.picture) {
        ADD_FAILURE() << path << ": " << decoded.why;
        return {};
    }
    const auto& picture = *decoded.picture;
    Marks marks{picture.width, picture.height, 0, picture.width, picture.height, -1, -1};
    for (std::int32_t row = 0; row < picture.height; ++row) {
        for (std::int32_t column = 0; column < picture.width; ++column) {
            auto index = static_cast<std::size_t>(std::int64_t{row} * picture.width + column);
            if ((picture.pixels[index] & 0xFFFFFF) != 0) continue;
            ++marks.black;
            marks.left = std::min(marks.left, column);
            marks.right = std::max(marks.right, column);
            marks.top = std::min(marks.top, row);
            marks.bottom = std::max(marks.bottom, row);
        }
    }
    return marks;
}

class Preview : public ToolTest {
  protected:
    void expectSilentSuccess(const std::vector<std::string>& arguments) const {
        Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err, "");
    }
};

TEST_F(Preview, IsWherePrintingGoesByDefault) {
    writeFile(at("black.bmp"), greyBmp(32, 16));
    expectSilentSuccess({"print", "black.bmp", "--row", "10", "--column", "20", "--cut"});
    EXPECT_EQ(folder.names(), (std::set<std::string>{"black.bmp", "ticket.png"}));
    Marks marks = marksOf(at("ticket.png"));
    EXPECT_EQ(marks.width, 1650);
    EXPECT_EQ(marks.height, 600);
    EXPECT_EQ(marks.black, 32 * 16);
    EXPECT_EQ(marks.left, 20);
    EXPECT_EQ(marks.right, 51);
    EXPECT_EQ(marks.top, 10);
    EXPECT_EQ(marks.bottom, 25);
}

TEST_F(Preview, FollowsStockAndResolution) {
    expectSilentSuccess(
        {"send", "<RC10,10>Row B", "--stock", "cinema", "--resolution", "200", "--to", "seat.png"});
    Marks marks = marksOf(at("seat.png"));
    EXPECT_EQ(marks.width, 400);
    EXPECT_EQ(marks.height, 650);
    EXPECT_GT(marks.black, 0);
}

// The first band of a portrait print goes to the wrong side of the ticket unless its place is in
// the middle; the others lie at the left edge, 8 rows further down each.
TEST_F(Preview, TurnsAPortraitTicketUpright) {
    writeFile(at("black.bmp"), greyBmp(32, 32));
    tavio({"print", "black.bmp", "--orientation", "portrait", "--row", "288", "--column", "100"});
    Marks marks = marksOf(at("ticket.png"));
    EXPECT_EQ(marks.width, 600);
    EXPECT_EQ(marks.height, 1650);
    EXPECT_EQ(marks.black, 32 * 32);
    EXPECT_EQ(marks.top, 100);
    EXPECT_EQ(marks.bottom, 131);
    EXPECT_EQ(marks.left, 599 - 288);
    EXPECT_EQ(marks.right, 599 - 288 + 31);
}

TEST_F(Preview, NumbersTheTickets) {
    writeFile(at("three.txt"), "<RC10,10>A<p><RC10,10>BB<q><RC10,10>CCC");
    expectSilentSuccess({"print", "three.txt"});
    EXPECT_EQ(folder.names(),
              (std::set<std::string>{"three.txt", "ticket.png", "ticket-2.png", "ticket-3.png"}));
    EXPECT_LT(marksOf(at("ticket.png")).right, marksOf(at("ticket-2.png")).right);
    EXPECT_LT(marksOf(at("ticket-2.png")).right, marksOf(at("ticket-3.png")).right);
}

TEST_F(Preview, WritesAHundredTicketsAndCountsTheRest) {
    std::string cuts;
    for (int number = 0; number < 103; ++number) cuts += "<p>";
    writeFile(at("cuts.bin"), cuts);
    for (const auto& arguments :
         {std::vector<std::string>{"raw", "cuts.bin", "--stock", "6", "--resolution", "200"},
          {"preview", "cuts.bin", "--stock", "6", "--resolution", "200"}}) {
        Ran ran = tavio(arguments);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "tavio: warning: of 103 tickets the first 100 were written\n");
        EXPECT_EQ(folder.names().size(), 101U);
        EXPECT_TRUE(std::filesystem::exists(at("ticket-100.png")));
    }
}

TEST_F(Preview, ReplacesNoTicketWhenTheJobFails) {
    writeFile(at("ticket.png"), "old");
    writeFile(at("speck.pdf"), pdf(0.1, 0.1));
    expectRefusal({"print", "speck.pdf", "--classic", "--cut"},
                  "tavio: speck.pdf comes to 0 x 0 dots, so there is nothing to print: enlarge it");
}

TEST_F(Preview, WarnsOfUnknownCommandsWithTheirPlace) {
    Ran ran = tavio({"send", "<RC1,1><XX9>"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.err.starts_with("tavio: warning: at byte 7: ")) << ran.err;
    EXPECT_TRUE(std::filesystem::exists(at("ticket.png")));
}

TEST_F(Preview, WarnsOfDotsOffTheTicket) {
    writeFile(at("black.bmp"), greyBmp(32, 16));
    Ran ran = tavio({"print", "black.bmp", "--fit", "actual", "--rotate", "0", "--column", "1640"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(
        ran.err.starts_with("tavio: warning: the picture of 32 x 16 dots at row 0, column "
                            "1640 reaches beyond the ticket of 1650 x 600 dots\n"
                            "tavio: warning: at byte "))
        << ran.err;
    EXPECT_NE(ran.err.find("352"), std::string::npos) << "22 columns of 16 dots: " << ran.err;
}

TEST_F(Preview, TellsTwentyProblemsAndCountsTheRest) {
    std::string unknown;
    for (int number = 0; number < 25; ++number) unknown += "<XX9>";
    Ran ran = tavio({"send", unknown});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 21);
    EXPECT_TRUE(ran.err.ends_with("tavio: warning: 5 more problems of this kind\n")) << ran.err;
}

TEST_F(Preview, DrawsAJobFile) {
    writeFile(at("black.bmp"), greyBmp(32, 16));
    bytesOf({"print", "black.bmp", "--row", "10", "--column", "20"});
    expectSilentSuccess({"preview", "job.bin", "-o", "drawn.png"});
    EXPECT_EQ(marksOf(at("drawn.png")).black, 32 * 16);
    expectSilentSuccess({"print", "black.bmp", "--row", "10", "--column", "20"});
    EXPECT_EQ(readFile(at("drawn.png")), readFile(at("ticket.png")));
}

TEST_F(Preview, DrawsABlankTicketForAnEmptyJob) {
    writeFile(at("job.bin"), "");
    expectSilentSuccess({"preview", "job.bin"});
    EXPECT_EQ(marksOf(at("ticket.png")).black, 0);
}

TEST_F(Preview, PrintsALogoThatItStoredBefore) {
    writeFile(at("black.bmp"), greyBmp(32, 32));
    std::string job = bytesOf({"logo", "store", "3", "black.bmp"}) +
                      bytesOf({"logo", "print", "3", "--row", "100", "--column", "50"});
    writeFile(at("both.bin"), job);
    expectSilentSuccess({"preview", "both.bin"});
    Marks marks = marksOf(at("ticket.png"));
    EXPECT_EQ(marks.black, 32 * 32);
    EXPECT_EQ(marks.left, 50);
    EXPECT_EQ(marks.right, 81);
    EXPECT_EQ(marks.top, 100);
    EXPECT_EQ(marks.bottom, 131);
}

TEST_F(Preview, WarnsOfALogoThatIsNotStored) {
    Ran ran = tavio({"logo", "print", "3"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_TRUE(ran.err.starts_with("tavio: warning: at byte ")) << ran.err;
}

TEST_F(Preview, DrawsTheFirstPageOfAPdf) {
    writeFile(at("page.pdf"), pdf(72, 72));
    expectSilentSuccess({"print", "page.pdf", "--resolution", "200", "--to", "page.png"});
    Marks marks = marksOf(at("page.png"));
    EXPECT_GE(marks.black, 90 * 200);
    EXPECT_LE(marks.black, 110 * 200);
}

}  // namespace
}  // namespace tavio::test
