// Codes, words, lines and boxes: from the command line to the ticket.

#include <filesystem>
#include <set>
#include <variant>

#include <gtest/gtest.h>

#include "tools/tavio/composer.h"
#include "tools/tavio/failure.h"
#include "tools/tavio/process.h"
#include "tools/tavio/script.h"
#include "tools/tavio/virtual_printer.h"

namespace tavio::tool {
namespace {

using printing::Align;
using printing::CodeKind;
using printing::CodeOptions;
using printing::LineDirection;
using printing::Place;
using printing::Size;
using printing::Turn;

// The first element of the tickets that the lines compose.
template <typename Element>
Element composed(const std::string& lines) {
    const Script script = readScript(lines, {});
    EXPECT_TRUE(script.wrong.empty()) << script.wrong.front().sentence;
    Composer composer;
    for (const ScriptLine& line : script.lines) composer.add(line.options, line.number);
    return std::get<Element>(composer.tickets().at(0).elements().at(0));
}

CodeOptions codeOptionsOf(const std::string& options) {
    return composed<printing::element::Code>("code qr x " + options).options;
}

std::string whatIsWrong(const std::string& line) {
    const Script script = readScript(line, {});
    return script.wrong.empty() ? "" : script.wrong.front().sentence;
}

TEST(Codes, HaveAKindDataAndAPlace) {
    for (const auto& [name, kind] : {std::pair{"qr", CodeKind::kQr},
                                     {"code128", CodeKind::kCode128},
                                     {"ean13", CodeKind::kEan13},
                                     {"itf", CodeKind::kItf},
                                     {"pdf417", CodeKind::kPdf417},
                                     {"aztec", CodeKind::kAztec},
                                     {"datamatrix", CodeKind::kDataMatrix}}) {
        const auto code = composed<printing::element::Code>(std::string("code ") + name +
                                                            " 'Row F' --row 7 --column -3");
        EXPECT_EQ(code.kind, kind) << name;
        EXPECT_EQ(code.data, "Row F");
        EXPECT_EQ(code.place, (Place{7, -3}));
        EXPECT_EQ(code.options, CodeOptions{});
    }
}

TEST(Codes, HaveASize) {
    EXPECT_EQ(codeOptionsOf("--module 4").size, (printing::CodeSize(printing::ModuleDots{4})));
    EXPECT_EQ(codeOptionsOf("--module 0.5mm").size,
              (printing::CodeSize(printing::ModuleMillimetres{0.5})));
    EXPECT_EQ(codeOptionsOf("--width 25mm").size,
              (printing::CodeSize(printing::WidthMillimetres{25})));
    EXPECT_EQ(codeOptionsOf("--largest").size, (printing::CodeSize(printing::LargestInBox{})));
}

TEST(Codes, TakeEachOption) {
    CodeOptions expected;
    expected.box = Size{300, 80};
    expected.turn = Turn::k90;
    expected.align = Align::kBottomRight;
    expected.hasQuietZone = false;
    expected.hasText = true;
    expected.barHeight = 60;
    expected.barReduction = 0.25;
    EXPECT_EQ(
        codeOptionsOf("--box 300x80 --rotate 90 --align bottom-right --no-quiet-zone --letters "
                      "--bar-height 60 --bar-reduction 0.25"),
        expected);
}

TEST(Words, TakeEachOption) {
    const auto words = composed<printing::element::Words>(
        "words 'Caf\xC3\xA9' --row 1 --column 2 --face 'DejaVu Sans' --bold --italic --size 9.5 "
        "--min-size 6 --box 300x80 --align centre --rotate 270 --white-on-black");
    EXPECT_EQ(words.text, "Caf\xC3\xA9");
    EXPECT_EQ(words.place, (Place{1, 2}));
    EXPECT_EQ(words.options.face, "DejaVu Sans");
    EXPECT_FALSE(words.options.font.has_value());
    EXPECT_TRUE(words.options.isBold);
    EXPECT_TRUE(words.options.isItalic);
    EXPECT_EQ(words.options.size, 9.5);
    EXPECT_EQ(words.options.minSize, 6);
    EXPECT_EQ(words.options.box, (Size{300, 80}));
    EXPECT_EQ(words.options.align, Align::kCentre);
    EXPECT_EQ(words.options.turn, Turn::k270);
    EXPECT_TRUE(words.options.isWhiteOnBlack);
}

TEST(Words, AreAsTheLibraryHasThemWithoutOptions) {
    const auto words = composed<printing::element::Words>("words x");
    const printing::WordsOptions usual;
    EXPECT_EQ(words.options.face, usual.face);
    EXPECT_FALSE(words.options.isBold || words.options.isItalic || words.options.isWhiteOnBlack);
    EXPECT_EQ(words.options.size, usual.size);
    EXPECT_EQ(words.options.minSize, usual.minSize);
    EXPECT_EQ(words.options.box, usual.box);
    EXPECT_EQ(words.options.align, usual.align);
    EXPECT_EQ(words.options.turn, usual.turn);
}

TEST(Words, TakeAFontFile) {
    const auto words = composed<printing::element::Words>("words x --font 'my font.ttf'");
    ASSERT_TRUE(words.options.font.has_value());
    EXPECT_EQ(words.options.font->name(), "my font.ttf");
}

TEST(Lines, TakeEachOption) {
    const auto plain = composed<printing::element::Line>("line --length 900 --row 5 --column 6");
    EXPECT_EQ(plain.length, 900);
    EXPECT_EQ(plain.place, (Place{5, 6}));
    EXPECT_EQ(plain.options, printing::LineOptions{});
    const auto dashed =
        composed<printing::element::Line>("line --length 9 --down --thickness 4 --dash 20");
    EXPECT_EQ(dashed.options, (printing::LineOptions{LineDirection::kDown, 4, 20}));
}

TEST(Boxes, TakeEachOption) {
    const auto plain = composed<printing::element::Box>("box 200x100 --row 5 --column 6");
    EXPECT_EQ(plain.size, (Size{200, 100}));
    EXPECT_EQ(plain.place, (Place{5, 6}));
    EXPECT_EQ(plain.options, printing::BoxOptions{});
    const auto filled = composed<printing::element::Box>("box 200x100 --thickness 9 --filled");
    EXPECT_EQ(filled.options, (printing::BoxOptions{9, true}));
}

TEST(Elements, FollowTheSettingsOfTheScript) {
    const auto words = composed<printing::element::Words>("--align right --rotate 180\nwords x");
    EXPECT_EQ(words.options.align, Align::kRight);
    EXPECT_EQ(words.options.turn, Turn::k180);
    EXPECT_EQ(composed<printing::element::Words>("--face serif\nwords x").options.face, "serif");
    EXPECT_TRUE(
        composed<printing::element::Words>("--font a.ttf\nwords x").options.font.has_value());
    const auto other =
        composed<printing::element::Words>("--font a.ttf\n--face serif\nwords x").options;
    EXPECT_FALSE(other.font.has_value()) << "the later line wins";
    EXPECT_EQ(other.face, "serif");
    const auto code =
        composed<printing::element::Code>("--align right --rotate 180\ncode qr x --align centre");
    EXPECT_EQ(code.options.align, Align::kCentre) << "its own option wins";
    EXPECT_EQ(code.options.turn, Turn::k180);
}

TEST(Elements, MayFinishTheTicket) {
    for (const char* command : {"code qr x", "words x", "line --length 9", "box 9x9", "text x"}) {
        const Script script = readScript(std::string(command) + " --cut\ncut", {});
        ASSERT_EQ(script.lines.size(), 2U) << command;
        Composer composer;
        for (const ScriptLine& line : script.lines) composer.add(line.options, line.number);
        ASSERT_EQ(composer.tickets().size(), 2U) << command;
        EXPECT_EQ(std::get<printing::element::End>(composer.tickets()[0].elements().at(1)).finish,
                  printing::Finish::kCut);
    }
}

TEST(Elements, AreRefusedWithASentence) {
    for (const auto& [line, sentence] : {
             std::pair{"code", "KIND is required (tavio --help tells more)"},
             {"code qr", "DATA is required, or --from FILE"},
             {"words", "TEXT is required, or --from FILE"},
             {"words ''", "TEXT is required, or --from FILE"},
             {"line", "--length is required (tavio --help tells more)"},
             {"box", "WxH is required (tavio --help tells more)"},
             {"code qr x --from y", "DATA excludes --from (tavio --help tells more)"},
             {"code QR x",
              "KIND: \"QR\" is no kind of code: give qr, code128, ean13, itf, pdf417, aztec or "
              "datamatrix (tavio --help tells more)"},
             {"code qr x --module 0",
              "--module: \"0\" is no width of a module: give dots or millimetres, 4 or 0.33mm "
              "(tavio "
              "--help tells more)"},
             {"code qr x --width 25",
              "--width: \"25\" is no width in millimetres: give one like 25mm (tavio --help tells "
              "more)"},
             {"code qr x --box 300",
              "--box: \"300\" is no size in dots: give one like 300x80 (tavio --help tells more)"},
             {"code qr x --bar-reduction 1.5",
              "--bar-reduction: \"1.5\" is no number from 0 to 1 (tavio --help tells more)"},
             {"code qr x --bar-height 0",
              "--bar-height: \"0\" is no number of dots, which is 1 or more (tavio --help tells "
              "more)"},
             {"words x --size 0.5",
              "--size: \"0.5\" is no number from 1 to 1000 (tavio --help tells more)"},
             {"words x --face ''", "--face: \"\" is no name of a face (tavio --help tells more)"},
             {"line --length -1",
              "--length: \"-1\" is no number of dots, which is 1 or more (tavio --help tells "
              "more)"},
             {"box 0x9",
              "WxH: \"0x9\" is no size in dots: give one like 300x80 (tavio --help tells "
              "more)"},
         }) {
        EXPECT_EQ(whatIsWrong(line), sentence) << line;
    }
    for (const char* line :
         {"code qr x --module 4 --width 9mm", "code qr x --module 4 --largest",
          "code qr x --width 9mm --largest", "words x --face serif --font a.ttf",
          "text x --size 9 --printer-face", "code qr x --module 4.5", "code qr x --module -1mm",
          "code qr x --width 0mm", "code qr x --width 1001mm", "code qr x --box 80x",
          "code qr x --box 80x-1", "words x --size 1001", "words x --min-size x"}) {
        EXPECT_NE(whatIsWrong(line), "") << line;
    }
}

using FromFiles = test::ToolTest;

TEST_F(FromFiles, TheTextIsRead) {
    const std::string whole = "line 1\nline 2\n";
    test::writeFile(at("text"), whole);
    test::writeFile(at("dos"), "4711\r\n");
    const auto words = composed<printing::element::Words>("words --from " + at("text"));
    EXPECT_EQ(words.text, "line 1\nline 2");
    EXPECT_EQ(composed<printing::element::Code>("code qr --from " + at("dos")).data, "4711");
}

TEST_F(FromFiles, OneThatIsMissingIsAProblem) {
    expectRefusal({"words", "--from", "missing"}, "tavio: missing does not exist");
    expectRefusal({"code", "qr", "--from", "."}, "tavio: . is a folder, not a file");
}

// What is drawn reaches the paper through the whole program.
using Drawn = test::ToolTest;

TEST_F(Drawn, AreElementsOfTheJob) {
    const test::Ran ran = tavio({"line", "--length", "100", "--thickness", "4", "--row", "8",
                                 "--column", "16", "--cut", "--json", "--to", "file:job.bin"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_NE(ran.out.find(R"({"kind":"line","offset":0,"count":)"), std::string::npos) << ran.out;
    EXPECT_NE(ran.out.find(R"("size":{"width":100,"height":4},"place":{"left":16,"top":8})"),
              std::string::npos)
        << ran.out;
    EXPECT_NE(ran.out.find(R"("kind":"finish")"), std::string::npos) << ran.out;
}

TEST_F(Drawn, AScriptOfThemIsTheSameJob) {
    test::writeFile(at("script"),
                    "box 300x200 --filled --row 8\nline --length 50 --row 300 --down\ncut\n");
    EXPECT_TRUE(bytesOf({"run", "script"}) ==
                bytesOf({"box", "300x200", "--filled", "--row", "8"}) +
                    bytesOf({"line", "--length", "50", "--row", "300", "--down", "--cut"}));
}

TEST_F(Drawn, AreThePreviewOfThePrinter) {
    for (const char* element :
         {"code qr 'Row F' --module 5", "code code128 4711 --module 3 --rotate 90",
          "words 'Caf\xC3\xA9' --size 12", "words X --size 12 --box 200x90 --white-on-black",
          "line --length 300 --thickness 5 --dash 11", "line --length 300 --down",
          "box 123x77 --thickness 5", "box 123x77 --filled"}) {
        for (const char* orientation : {"landscape", "portrait"}) {
            SCOPED_TRACE(std::string(element) + " " + orientation);
            test::writeFile(at("script"), std::string("--orientation ") + orientation + "\n" +
                                              element + " --row 53 --column 41\ncut\n");
            EXPECT_EQ(tavio({"run", "script", "--to", "seen.png"}).err, "");
            std::filesystem::remove_all(at("tickets"));
            test::VirtualPrinter printer(folder.path(), {"--orientation", orientation});
            ASSERT_EQ(tavio({"run", "script", "--to", printer.target()}).status, 0);
            EXPECT_EQ(printer.finish().status, 0);
            EXPECT_TRUE(test::readFile(at("seen.png")) ==
                        test::readFile(at("tickets/ticket-000001.png")));
        }
    }
}

// Data that a code cannot hold, boxes that are too small, faces and letters that are not there.
TEST_F(Drawn, AreRefusedWithNothingSent) {
    for (const auto& [line, kind] :
         {std::pair{std::vector<std::string>{"code", "ean13", "12x"}, "bad-data"},
          {{"code", "qr", "Row F", "--box", "30x30"}, "small-box"},
          {{"words", "Row F", "--size", "40", "--box", "30x30"}, "small-box"},
          {{"words", "x", "--face", "No Such Face"}, "no-face"},
          {{"words", "x", "--font", "script"}, "no-face"},
          {{"words", "x", "--font", "missing.ttf"}, "not-found"},
          {{"words", "caf\xE9"}, "not-utf-8"},
          {{"words", "\xF4\x8F\xBF\xBD"}, "unprintable-letter"}}) {
        SCOPED_TRACE(testing::PrintToString(line));
        test::writeFile(at("script"), "no font");
        std::vector<std::string> words = line;
        words.emplace_back("--json");
        const test::Ran ran = tavio(words);
        EXPECT_EQ(ran.status, 1);
        EXPECT_NE(ran.out.find(std::string(R"("problems":[{"kind":")") + kind + '"'),
                  std::string::npos)
            << ran.out;
        EXPECT_EQ(folder.names(), std::set<std::string>{"script"});
    }
}

TEST_F(Drawn, WordsNeedTheProgramThatDrawsThem) {
    const auto job = printing::encode(printing::Ticket().words("Row F"),
                                      {.wordsHelper = "/nowhere/tavio-words"});
    ASSERT_FALSE(job.has_value());
    EXPECT_EQ(job.error().front().kind, printing::ProblemKind::kHelperMissing);
}

// A text in the printer's own face, and what that face lacks.
using TextsAsWords = test::ToolTest;

TEST_F(TextsAsWords, AreThoseWithALetterThatThePrintersFaceLacks) {
    for (const char* text : {"Jos\xC3\xA9", "26 \xE2\x82\xAC", "<VIP>"}) {
        const test::Ran ran = tavio({"text", text, "--row", "40", "--json"});
        EXPECT_EQ(ran.status, 0) << text;
        EXPECT_NE(ran.out.find(R"("warnings":[{"kind":"other-face")"), std::string::npos)
            << ran.out;
        EXPECT_NE(ran.out.find(R"({"kind":"words",)"), std::string::npos) << ran.out;
        EXPECT_NE(ran.out.find(R"("top":40)"), std::string::npos) << "its place: " << ran.out;
    }
    const test::Ran ran = tavio({"text", "Jos\xC3\xA9"});
    EXPECT_EQ(ran.err,
              "tavio: warning: the text has \"\xC3\xA9\" (U+00E9), which the printer's face does "
              "not have: the text is set as words (--printer-face refuses it)\n");
}

TEST_F(TextsAsWords, AreThoseWithASize) {
    EXPECT_TRUE(bytesOf({"text", "Row F", "--size", "9"}) ==
                bytesOf({"words", "Row F", "--size", "9"}));
}

TEST_F(TextsAsWords, AreNoneWithoutNeed) {
    EXPECT_EQ(bytesOf({"text", "Row F"}), "<P1><LM><RE0><DI><RC0,0>Row F");
    expectRefusal(
        {"text", "Jos\xC3\xA9", "--printer-face"},
        "tavio: the text has \"\xC3\xA9\" (U+00E9), which the printer's face does not have");
    expectRefusal({"text",
                   "\x1B"
                   "c"},
                  "tavio: the text has the control character U+001B");
    expectRefusal(
        {"text",
         "\xC3\xA9\x1B"
         "c"},
        "tavio: the text has \"\xC3\xA9\" (U+00E9), which the printer's face does not have");
}

}  // namespace
}  // namespace tavio::tool
