// Words: their dots as a printer prints them, and why there are none.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "printing/printed_rows.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using test::blackDots;
using test::Lines;
using test::part;
using test::printedRows;
using test::Rows;
using test::told;

Source font() {
    return Source::file(TAVIO_EXAMPLES_DIR "/fonts/DejaVuSans.ttf");
}

// 200 x 100 dots in landscape, 100 x 200 in portrait.
TicketSettings smallTicket(Orientation orientation = Orientation::kLandscape) {
    return {.stock = Stock::ofInches(1, 0.5), .resolution = 200, .orientation = orientation};
}

WordsOptions inFont(WordsOptions options = {}) {
    options.font = font();
    if (options.size == WordsOptions().size) options.size = 5;
    return options;
}

Lines toldOf(const std::string& text, const WordsOptions& options = inFont(),
             const EncodeOptions& encodeOptions = {}) {
    return told(encode(Ticket(smallTicket()).words(text, {}, options), encodeOptions));
}

Lines warningsOf(const Ticket& ticket) {
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    return job ? told(job->warnings()) : Lines();
}

EncodedElement elementOf(const Ticket& ticket) {
    const auto job = encode(ticket);
    EXPECT_EQ(told(job), Lines());
    return job ? job->elements().at(0) : EncodedElement();
}

class Words : public testing::TestWithParam<Orientation> {
  protected:
    Ticket ticket() const { return Ticket(smallTicket(GetParam())); }
    Place at(std::int32_t left, std::int32_t top) const {
        return GetParam() == Orientation::kLandscape ? Place{top, left} : Place{left, top};
    }
    Rows printed(const std::string& text, const WordsOptions& options) const {
        return printedRows(ticket().words(text, at(0, 0), options));
    }
};

INSTANTIATE_TEST_SUITE_P(Both, Words,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait));

// ---- Dots ---------------------------------------------------------------------------------------

const Rows kHi = {
    "............",  //
    "............",  //
    "...........X",  //
    ".X......X..X",  //
    ".X......X...",  //
    ".X......X..X",  //
    ".X......X..X",  //
    ".XXXXXXXX..X",  //
    ".X......X..X",  //
    ".X......X..X",  //
    ".X......X..X",  //
    ".X......X..X",  //
    ".X......X..X",  //
};

// Clockwise.
Rows turned(const Rows& rows) {
    Rows result(rows.front().size());
    for (std::size_t row = rows.size(); row-- > 0;)
        for (std::size_t column = 0; column < result.size(); ++column)
            result[column] += rows[row][column];
    return result;
}

Rows inverted(Rows rows) {
    for (std::string& row : rows)
        for (char& dot : row) dot = dot == 'X' ? '.' : 'X';
    return rows;
}

TEST_P(Words, BeginAtTheirPlace) {
    const Rows rows = printedRows(ticket().words("Hi", at(10, 5), inFont()));
    EXPECT_EQ(part(rows, 10, 5, 12, 13), kHi);
    EXPECT_EQ(blackDots(rows), blackDots(kHi));
}

TEST_P(Words, AreAsLargeAsTheyNeedWithoutABox) {
    const EncodedElement element = elementOf(ticket().words("Hi", at(10, 5), inFont()));
    EXPECT_EQ(element.rectangle, (Rectangle{10, 5, {14, 17}}));
    EXPECT_EQ(element.size, (Size{14, 17}));
}

TEST_P(Words, AreAlignedInTheirBox) {
    for (int i = 0; i < 9; ++i) {
        SCOPED_TRACE(i);
        const auto left = static_cast<std::size_t>(i % 3 * (50 - 14) / 2);
        const auto top = static_cast<std::size_t>(i / 3 * (40 - 17) / 2);
        const Ticket boxed = ticket().words(
            "Hi", at(10, 5), inFont({.box = Size{50, 40}, .align = static_cast<Align>(i)}));
        const Rows rows = printedRows(boxed);
        EXPECT_EQ(part(rows, 10 + left, 5 + top, 12, 13), kHi);
        EXPECT_EQ(blackDots(rows), blackDots(kHi));
        EXPECT_EQ(elementOf(boxed).rectangle, (Rectangle{10, 5, {50, 40}}));
    }
}

TEST_P(Words, AreAlignedOnTheTicketWithoutABox) {
    const std::size_t width = GetParam() == Orientation::kLandscape ? 200 : 100;
    const Rows rows =
        printedRows(ticket().words("Hi", at(10, 5), inFont({.align = Align::kTopRight})));
    EXPECT_EQ(part(rows, width - 14, 5, 12, 13), kHi);
}

TEST_P(Words, AreTurnedClockwiseWithTheirLines) {
    Rows expected = kHi;
    for (const Turn turn : {Turn::kAuto, Turn::k90, Turn::k180, Turn::k270}) {
        const Rows rows = printedRows(ticket().words("Hi", at(0, 0), inFont({.turn = turn})));
        EXPECT_EQ(blackDots(rows), blackDots(kHi));
        const Size size =
            elementOf(ticket().words("Hi", at(0, 0), inFont({.turn = turn}))).size.value();
        const Rows all = part(rows, 0, 0, static_cast<std::size_t>(size.width),
                              static_cast<std::size_t>(size.height));
        Rows upright = all;
        for (int i = 0; turn != Turn::kAuto && i < 4 - static_cast<int>(turn) + 1; ++i)
            upright = turned(upright);
        EXPECT_EQ(part(upright, 0, 0, 12, 13), kHi) << static_cast<int>(turn);
    }
}

TEST_P(Words, LieInTheirBoxAsTheyAreRead) {
    const Rows rows = printedRows(
        ticket().words("Hi", at(0, 0), inFont({.box = Size{30, 40}, .turn = Turn::k90})));
    EXPECT_EQ(part(rows, 30 - 13, 0, 13, 12), turned(kHi))
        << "the box's top right is their top left";
}

TEST_P(Words, AreWrappedByWords) {
    const Rows whole = printedRows(ticket().words("Row F", at(0, 0), inFont()));
    const Rows wrapped =
        printedRows(ticket().words("Row F", at(0, 0), inFont({.box = Size{34, 40}})));
    EXPECT_EQ(part(wrapped, 0, 0, 30, 17), part(whole, 0, 0, 30, 17)) << "Row";
    const Rows letter = printedRows(ticket().words("F", at(0, 17), inFont()));
    EXPECT_EQ(part(wrapped, 0, 17, 30, 17), part(letter, 0, 17, 30, 17));
}

TEST_P(Words, AreBrokenIfTheyAreTooLongForALine) {
    const Rows rows = printedRows(ticket().words("HHHH", at(0, 0), inFont({.box = Size{22, 40}})));
    const Rows two = printedRows(ticket().words("HH\nHH", at(0, 0), inFont()));
    EXPECT_EQ(rows, two);
}

TEST_P(Words, ShowSoftHyphensAtTheEndsOfLinesOnly) {
    const Rows rows =
        printedRows(ticket().words("Hi\u00adH", at(0, 0), inFont({.box = Size{22, 40}})));
    EXPECT_EQ(rows, printedRows(ticket().words("Hi\u2010\nH", at(0, 0), inFont())));
    EXPECT_EQ(printedRows(ticket().words("Hi\u00adH", at(0, 0), inFont())),
              printedRows(ticket().words("HiH", at(0, 0), inFont())));
}

TEST_P(Words, EndTheirLinesWhereTheTextSays) {
    const Rows rows = printedRows(ticket().words("Hi\nHi", at(0, 0), inFont()));
    EXPECT_EQ(part(rows, 0, 0, 12, 13), kHi);
    EXPECT_EQ(part(rows, 0, 17, 12, 13), kHi);
    EXPECT_EQ(printedRows(ticket().words("Hi\r\nHi", at(0, 0), inFont())), rows);
}

TEST_P(Words, OfScriptsFromRightToLeftBeginAtTheRight) {
    const WordsOptions boxed = inFont({.box = Size{80, 40}});
    const WordsOptions right = inFont({.box = Size{80, 40}, .align = Align::kTopRight});
    const std::string hebrew = "\u05e9\u05dc\u05d5\u05dd";
    EXPECT_EQ(printed(hebrew, boxed), printed(hebrew, right));
    EXPECT_NE(printed("Hi", boxed), printed("Hi", right));
    const Rows both = printed(hebrew + "\nHi", boxed);
    EXPECT_EQ(part(both, 0, 17, 12, 13), kHi);
}

TEST_P(Words, MayBeWhiteOnABlackBox) {
    const Rows rows = printed("Hi", inFont({.box = Size{40, 20}, .isWhiteOnBlack = true}));
    EXPECT_EQ(part(rows, 3, 0, 12, 13), inverted(kHi)) << "a quarter of the size from the edge";
    EXPECT_EQ(blackDots(rows), 40U * 20 - blackDots(kHi));
}

TEST_P(Words, MayBeWhiteOnAsMuchBlackAsTheyNeed) {
    const Rows rows = printed("Hi", inFont({.isWhiteOnBlack = true}));
    EXPECT_EQ(part(rows, 3, 0, 12, 13), inverted(kHi));
    EXPECT_EQ(blackDots(rows), (14U + 2 * 3) * 17 - blackDots(kHi));
}

TEST_P(Words, LeaveWhatLiesUnderTheirBox) {
    Ticket framed = ticket();
    framed.box(at(0, 0), {50, 40})
        .words("Hi", at(0, 0), inFont({.box = Size{50, 40}, .align = Align::kCentre}));
    const Rows frame = printedRows(ticket().box(at(0, 0), {50, 40}));
    EXPECT_EQ(blackDots(printedRows(framed)), blackDots(frame) + blackDots(kHi));
}

// The number of black dots in a row that goes through stems only.
std::vector<std::size_t> stemsOf(const std::string& row) {
    std::vector<std::size_t> stems;
    for (std::size_t at = row.find('X'); at != std::string::npos; at = row.find('X', at)) {
        const std::size_t end = std::min(row.find('.', at), row.size());
        stems.push_back(end - at);
        at = end;
    }
    return stems;
}

TEST(WordsStems, AreEvenAtAllSizes) {
    for (const std::int32_t resolution : {200, 300, 600}) {
        for (double size = 5; size <= 12; size += 0.5) {
            SCOPED_TRACE(std::to_string(size) + " points at " + std::to_string(resolution));
            Ticket ticket({.stock = Stock::ofInches(3, 0.5), .resolution = resolution});
            const Rows rows = printedRows(ticket.words("lilnhmulirih", {}, inFont({.size = size})));
            // The ascent is 0.93 of the size, the x-height 0.55.
            const double dots = size / 72 * resolution;
            const auto middle = static_cast<std::size_t>(std::lround(dots * (0.93 - 0.27)));
            for (const std::size_t stem : stemsOf(rows.at(middle)))
                EXPECT_EQ(stem, stemsOf(rows.at(middle)).front());
        }
    }
}

TEST(WordsSize, IsInRealPoints) {
    for (const std::int32_t resolution : {200, 300, 600}) {
        Ticket ticket({.stock = Stock::ofInches(1, 1), .resolution = resolution});
        const Rows rows = printedRows(ticket.words("H", {}, inFont({.size = 36})));
        std::size_t high = 0;
        for (const std::string& row : rows) high += row.find('X') != std::string::npos ? 1 : 0;
        // A capital letter of this font is 0.729 of its size.
        EXPECT_NEAR(static_cast<double>(high), 0.729 * resolution / 2, 1);
    }
}

TEST(WordsFaces, DifferFromEachOther) {
    std::vector<Rows> different;
    for (const char* face : {"sans", "serif", "mono"}) {
        for (const bool isBold : {false, true}) {
            for (const bool isItalic : {false, true}) {
                different.push_back(printedRows(
                    Ticket(smallTicket())
                        .words(
                            "Hi", {},
                            {.face = face, .isBold = isBold, .isItalic = isItalic, .size = 12})));
            }
        }
    }
    for (std::size_t i = 0; i < different.size(); ++i)
        for (std::size_t j = 0; j < i; ++j) EXPECT_NE(different[i], different[j]) << i << ", " << j;
}

TEST(WordsFaces, AreMadeBoldAndItalicIfTheFontIsNeither) {
    const auto printed = [](bool isBold, bool isItalic) {
        return printedRows(Ticket(smallTicket())
                               .words("Hi", {}, inFont({.isBold = isBold, .isItalic = isItalic})));
    };
    EXPECT_GT(blackDots(printed(true, false)), blackDots(printed(false, false)));
    EXPECT_NE(printed(false, true), printed(false, false));
    EXPECT_NE(printed(false, true), printed(true, true));
}

TEST(WordsOfAFile, AreTheSameWhetherItIsReadOrGiven) {
    std::ifstream file(TAVIO_EXAMPLES_DIR "/fonts/DejaVuSans.ttf", std::ios::binary);
    const Bytes bytes(std::istreambuf_iterator<char>(file), {});
    WordsOptions options = inFont();
    const Rows read = printedRows(Ticket(smallTicket()).words("Caf\u00e9", {}, options));
    options.font = Source::bytes(bytes, "font.ttf");
    EXPECT_EQ(printedRows(Ticket(smallTicket()).words("Caf\u00e9", {}, options)), read);
}

// ---- Sizes that fit -----------------------------------------------------------------------------

TEST_P(Words, BecomeAsSmallAsTheirBoxNeeds) {
    const Rows smaller = printed("Hi", inFont({.size = 30, .minSize = 2, .box = Size{14, 17}}));
    EXPECT_EQ(smaller, printed("Hi", inFont())) << "the largest that is 14 x 17";
}

TEST_P(Words, StayAsTheyAreIfTheyFit) {
    const WordsOptions options = inFont({.minSize = 2, .box = Size{50, 40}});
    EXPECT_EQ(printed("Hi", options), printed("Hi", inFont()));
}

TEST_P(Words, AreSetSmallerRatherThanBroken) {
    const Rows rows = printed("HHHH", inFont({.minSize = 2, .box = Size{22, 40}}));
    EXPECT_EQ(rows, printed("HHHH", inFont({.size = 2.5})));
}

TEST(WordsThatDoNotFit, TellTheBoxThatWouldDo) {
    EXPECT_EQ(toldOf("Hi", inFont({.box = Size{14, 16}})),
              Lines{"small-box 0.0: the words do not fit at 5 points: a box of 14 x 17 dots would "
                    "do, or a smaller size"});
    EXPECT_EQ(
        toldOf("HHHH", inFont({.size = 20, .minSize = 4.5, .box = Size{22, 16}})),
        Lines{"small-box 0.0: the words do not fit at 4.5 points: a box of 22 x 30 dots would "
              "do, or a smaller size"});
    EXPECT_EQ(toldOf("Hi", inFont({.box = Size{14, 16}, .turn = Turn::k90})),
              Lines{"small-box 0.0: the words do not fit at 5 points: a box of 17 x 16 dots would "
                    "do, or a smaller size"});
}

TEST(WordsThatDoNotFit, FitTheBoxThatIsTold) {
    EXPECT_EQ(toldOf("Hi", inFont({.box = Size{14, 17}})), Lines());
    EXPECT_EQ(toldOf("HHHH", inFont({.size = 4.5, .box = Size{22, 30}})), Lines());
    EXPECT_EQ(toldOf("Hi", inFont({.box = Size{17, 16}, .turn = Turn::k90})), Lines());
}

TEST(WordsThatDoNotFit, MayBeTooManyForAnyBox) {
    EXPECT_EQ(toldOf(std::string(4000, '\n').append("x"), inFont({.size = 100})),
              Lines{"small-box 0.0: the words do not fit at 100 points into any box: make them "
                    "fewer"});
}

// ---- Problems -----------------------------------------------------------------------------------

TEST(WordsProblems, NameTheLettersThatNoFontHas) {
    EXPECT_EQ(toldOf("a\u65e5b"),
              Lines{"unprintable-letter 0.0: " TAVIO_EXAMPLES_DIR
                    "/fonts/DejaVuSans.ttf has not the letter \"\u65e5\" (U+65E5)"});
    EXPECT_EQ(toldOf("\u65e5\u672c\u65e5"),
              Lines{"unprintable-letter 0.0: " TAVIO_EXAMPLES_DIR
                    "/fonts/DejaVuSans.ttf has not the letters \"\u65e5\" (U+65E5), \"\u672c\" "
                    "(U+672C)"});
    EXPECT_EQ(toldOf("\U000EFFFD", {}), Lines{"unprintable-letter 0.0: no font has the letter "
                                              "U+EFFFD"});
}

TEST(WordsProblems, TellOfTextThatIsNone) {
    EXPECT_EQ(toldOf("\xC3("), Lines{"not-utf-8 0.0: the words are not UTF-8"});
    EXPECT_EQ(toldOf(""), Lines{"no-dots 0.0: there are no words: the text is empty"});
    EXPECT_EQ(toldOf(" \n\t "),
              Lines{"no-dots 0.0: the words come to 0 dots: they are only spaces"});
    EXPECT_EQ(toldOf("a\x07"), Lines{"unprintable-letter 0.0: the words have the control character "
                                     "U+0007: leave it out"});
    EXPECT_EQ(toldOf(std::string("a\0b", 3)),
              Lines{"unprintable-letter 0.0: the words have the control character U+0000: leave it "
                    "out"});
    EXPECT_EQ(toldOf(std::string((1 << 20) + 1, 'x')),
              Lines{"too-large 0.0: the words are longer than 1048576 bytes, the limit for one "
                    "element"});
}

TEST(WordsProblems, TellOfFacesThatAreNotThere) {
    const Lines none{
        "no-face 0.0: this machine has no face \"Nowhere Sans\": install it, or give "
        "its font file"};
    EXPECT_EQ(toldOf("a", {.face = "Nowhere Sans"}), none);
    EXPECT_EQ(toldOf("a", {.face = ""}),
              Lines{"no-face 0.0: there is no face without a name: give one such as \"sans\""});
    for (const std::string& face : {std::string("sans\0", 5), std::string("\xFF")}) {
        EXPECT_EQ(toldOf("a", {.face = face}),
                  Lines{"bad-setting 0.0: the name of the face is not UTF-8 text"});
    }
}

TEST(WordsProblems, TellOfFilesThatAreNoFont) {
    EXPECT_EQ(toldOf("a", {.font = Source::file("/nowhere.ttf")}),
              Lines{"not-found 0.0: /nowhere.ttf does not exist"});
    EXPECT_EQ(toldOf("a", {.font = Source::bytes(Bytes(), "x.ttf")}),
              Lines{"no-face 0.0: x.ttf is empty, not a font"});
    EXPECT_EQ(toldOf("a", {.font = Source::bytes(Bytes(5000, 7), "x.ttf")}),
              Lines{"no-face 0.0: x.ttf is no TrueType or OpenType font"});
    EXPECT_EQ(toldOf("a", {.font = font()}, {.maxFileBytes = 10}),
              Lines{"too-large 0.0: " TAVIO_EXAMPLES_DIR
                    "/fonts/DejaVuSans.ttf is larger than 10 bytes, the limit for one document"});
}

TEST(WordsProblems, TellOfSizesThatAreNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const Lines size{"bad-setting 0.0: words are 1 to 1000 points in size"};
    for (const double points : {0.0, 0.99, -5.0, 1000.5, nan, infinity})
        EXPECT_EQ(toldOf("a", {.size = points}), size) << points;
    for (const double points : {0.5, -5.0, nan, infinity})
        EXPECT_EQ(toldOf("a", {.minSize = points}), size) << points;
    EXPECT_EQ(toldOf("a", {.size = 5, .minSize = 5.25}),
              Lines{"bad-setting 0.0: the smallest size of the words is above their size"});
    EXPECT_EQ(toldOf("a", {.box = Size{0, 10}}),
              Lines{"bad-setting 0.0: the words' box is 0 x 10 dots: give 1 dot or more for both "
                    "sides"});
    EXPECT_EQ(toldOf("a", {.box = Size{40'000, 10}}),
              Lines{"too-large 0.0: the words' box comes to 40000 x 10 dots, more than can be "
                    "printed: make it smaller"});
}

TEST(WordsProblems, TellOfPlacesWithoutRoom) {
    const auto job = encode(Ticket(smallTicket()).words("a", {100, 0}, inFont()));
    EXPECT_EQ(told(job),
              Lines{"bad-place 0.0: row 100, column 0 has no room on the ticket of 200 x "
                    "100 dots"});
    EXPECT_EQ(
        told(encode(Ticket(smallTicket()).words("a", {-1, 0}, inFont({.box = Size{9, 20}})))),
        Lines{"bad-place 0.0: the words of 9 x 20 dots reaches beyond the ticket of 200 x 100 "
              "dots to where the printer has no rows or columns: move it, or make it smaller"});
}

TEST(WordsProblems, TellOfTheProgram) {
    EXPECT_EQ(toldOf("a", inFont(), {.wordsHelper = "/nowhere"}),
              Lines{"helper-missing 0.0: the words cannot be drawn: the program tavio-words, which "
                    "draws them, cannot be started"});
    EXPECT_EQ(toldOf("a", inFont(), {.wordsHelper = "/bin/false"}),
              Lines{"helper-failed 0.0: the words cannot be drawn: the program tavio-words, which "
                    "draws them, failed"});
    EXPECT_EQ(
        toldOf("a", inFont(), {.pageLimits = {.wall = std::chrono::milliseconds(0)}}),
        Lines{"over-time 0.0: the words cannot be drawn: it went over the waiting time limit"});
    EXPECT_EQ(toldOf("a", inFont(), {.pageLimits = {.memoryBytes = 1 << 20}}),
              Lines{"over-memory 0.0: the words cannot be drawn: it went over the memory limit"});
}

// ---- Warnings -----------------------------------------------------------------------------------

TEST(WordsWarnings, TellOfSmallLetters) {
    EXPECT_EQ(warningsOf(Ticket(smallTicket()).words("Hi", {}, inFont())), Lines());
    EXPECT_EQ(
        warningsOf(Ticket(smallTicket()).words("Hi", {}, inFont({.size = 4.5}))),
        Lines{"small-text 0.0 (12): the words are 12.5 dots in height, which is hard to read: "
              "make them larger, 14 dots or more"});
}

TEST(WordsWarnings, TellOfBoxesThatReachBeyondTheTicket) {
    EXPECT_EQ(
        warningsOf(Ticket(smallTicket()).words("Hi", {0, 180}, inFont({.box = Size{50, 40}}))),
        Lines{"beyond-ticket 0.0 (30): the words of 50 x 40 dots at row 0, column 180 reaches "
              "beyond the ticket of 200 x 100 dots"});
}

// ---- Many at once -------------------------------------------------------------------------------

TEST(WordsOnManyThreads, AreTheSame) {
    const Ticket ticket = Ticket(smallTicket()).words("Caf\u00e9, 26 \u20ac", {}, inFont());
    const Rows once = printedRows(ticket);
    std::vector<Rows> rows(8);
    std::vector<std::thread> threads;
    threads.reserve(rows.size());
    for (Rows& mine : rows) threads.emplace_back([&ticket, &mine] { mine = printedRows(ticket); });
    for (std::thread& thread : threads) thread.join();
    for (const Rows& mine : rows) EXPECT_EQ(mine, once);
}

}  // namespace
}  // namespace tavio::printing
