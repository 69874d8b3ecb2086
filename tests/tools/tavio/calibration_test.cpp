// Calibration, end to end: what is read from the page is kept, and every job uses it.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tavio/process.h"
#include "tools/tavio/sample_files.h"

namespace tavio::test {
namespace {

using Words = std::vector<std::string>;

class CalibrationTest : public ToolTest {
  protected:
    CalibrationTest() {
        EXPECT_EQ(tavio({"printers", "add", "hall", "tcp://192.0.2.7"}).status, 0);
    }

    void set(Words options) const {
        options.insert(options.begin(), {"printers", "set", "hall"});
        const Ran ran = tavio(options);
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.err, "");
        EXPECT_EQ(ran.out, "");
    }

    std::string listed() const { return tavio({"printers", "list"}).out; }

    // The bytes of the job for the printer.
    std::string bytesForHall(Words job) const {
        job.insert(job.end(), {"--printer", "hall"});
        return bytesOf(job);
    }
};

TEST_F(CalibrationTest, IsSetInPartsAndForgotten) {
    set({"--tone", "7"});
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7  tone 7\n");
    set({"--offset", "3,-2", "--size", "1648x598"});
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7  tone 7, offset 3,-2, size 1648x598\n");
    set({"--tone", "0"});
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7  tone 0, offset 3,-2, size 1648x598\n");
    EXPECT_NE(tavio({"printers", "list", "--json"})
                  .out.find(R"("replies":[],"tone":0,"offset":{"right":3,"down":-2},)"
                            R"("size":{"width":1648,"height":598}})"),
              std::string::npos);
    set({"--reset", "--offset", "-1,1"});
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7  offset -1,1\n");
    set({"--reset"});
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7\n");
}

TEST_F(CalibrationTest, KeepsWhatElseIsKnownOfThePrinter) {
    EXPECT_EQ(tavio({"printers", "add", "door", "tcp://192.0.2.8", "--stock", "cinema", "--reply",
                     "ready:exact:OK"})
                  .status,
              0);
    const std::string before = tavio({"printers", "list", "--json"}).out;
    EXPECT_EQ(tavio({"printers", "set", "door", "--tone", "3"}).status, 0);
    EXPECT_EQ(tavio({"printers", "set", "door", "--reset"}).status, 0);
    EXPECT_EQ(tavio({"printers", "list", "--json"}).out, before);
}

TEST_F(CalibrationTest, RefusesWhatNoPrinterCanHave) {
    const std::string more = " (tavio --help tells more)\n";
    const auto refused = [&](Words options) {
        options.insert(options.begin(), {"printers", "set", "hall"});
        const Ran ran = tavio(options);
        EXPECT_NE(ran.status, 0);
        return ran.err;
    };
    EXPECT_EQ(refused({"--tone", "10"}), "tavio: --tone: \"10\" is no number from 0 to 9" + more);
    EXPECT_EQ(refused({"--offset", "3"}),
              "tavio: --offset: \"3\" is no offset in dots: give RIGHT,DOWN, 3,-2" + more);
    for (const char* offset : {"3,", ",", "3,x", "100000,0", "3;2", "1,2,3"})
        EXPECT_NE(refused({"--offset", offset}).find("is no offset"), std::string::npos);
    for (const char* size : {"0x5", "5x0", "5", "5x5x5", "-1x4", "100000x1", "4,5"})
        EXPECT_NE(refused({"--size", size}).find("is no size"), std::string::npos);
    EXPECT_NE(refused({}).find("give --tone, --offset, --size or --reset"), std::string::npos);
    EXPECT_NE(tavio({"printers", "set", "door", "--tone", "1"}).err.find("no printer of the name"),
              std::string::npos);
    EXPECT_EQ(listed(), "hall  tcp://192.0.2.7\n");
}

TEST_F(CalibrationTest, IsUsedByEveryJobForThePrinter) {
    writeFile(at("grey.bmp"), greyBmp(64, 32, 128));
    writeFile(at("job.tavio"), "print grey.bmp --row 100 --column 200\n");
    const Words print{"print", "grey.bmp", "--row", "100", "--column", "200"};
    const Words run{"run", "job.tavio"};
    const Words text{"text", "A", "--row", "100", "--column", "200"};
    const std::string plain = bytesOf(print);
    EXPECT_EQ(bytesForHall(print), plain);
    set({"--tone", "8", "--offset", "3,-2"});
    Words moved = print;
    moved[3] = "98";
    moved[5] = "203";
    moved.insert(moved.end(), {"--tone", "8"});
    const std::string expected = bytesOf(moved);
    EXPECT_NE(expected, plain);
    EXPECT_EQ(bytesForHall(print), expected);
    EXPECT_EQ(bytesForHall(run), expected);
    EXPECT_EQ(bytesForHall(text), bytesOf({"text", "A", "--row", "98", "--column", "203"}));
    EXPECT_EQ(bytesOf(print), plain) << "without the printer";
}

TEST_F(CalibrationTest, GivesWayToToneAndChangesNothingOfTheClassicWay) {
    writeFile(at("grey.bmp"), greyBmp(64, 32, 128));
    const Words toned{"print", "grey.bmp", "--tone", "plain"};
    const Words classic{"print", "grey.bmp", "--classic"};
    set({"--tone", "8"});
    EXPECT_EQ(bytesForHall(toned), bytesOf(toned));
    set({"--offset", "3,2", "--size", "500x500"});
    EXPECT_EQ(bytesForHall(classic), bytesOf(classic));
}

TEST_F(CalibrationTest, LimitsTheTicket) {
    writeFile(at("black.bmp"), greyBmp(100, 100, 0));
    set({"--size", "500x400"});
    const Words print{"print", "black.bmp", "--fit", "stretch"};
    EXPECT_NE(bytesForHall(print), bytesOf(print));
    const Ran ran = tavio({"print", "black.bmp", "--fit", "actual", "--column", "450", "--printer",
                           "hall", "--to", "file:job.bin"});
    EXPECT_NE(ran.err.find("reaches beyond the ticket of 500 x 400 dots"), std::string::npos)
        << ran.err;
}

TEST_F(CalibrationTest, HasAPageWithoutWhatWasReadUnlessItIsChecked) {
    const std::string plain = bytesOf({"calibrate", "--cut"});
    set({"--tone", "8", "--offset", "3,-2", "--size", "1640x590"});
    EXPECT_EQ(bytesForHall({"calibrate", "--cut"}), plain);
    EXPECT_NE(bytesForHall({"calibrate", "--cut", "--check"}), plain);
    EXPECT_TRUE(plain.ends_with("<p>"));
    const Ran ran = tavio({"calibrate", "--check", "--printer", "hall", "--to", "page.png"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err, "");
    expectRefusal({"calibrate", "--stock", "0.001x0.001"},
                  "tavio: the ticket's stock comes to 0 dots: give two larger sides");
}

}  // namespace
}  // namespace tavio::test
