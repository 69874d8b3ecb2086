// Named printers: the form of their file, and its mistakes.

#include <cstdint>
#include <iostream>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tools/tavio/printer_books.h"

namespace tavio::tool {
namespace {

using printing::Match;
using printing::Orientation;
using printing::PrinterState;
using printing::Stock;

// ---- Reading ------------------------------------------------------------------------------------

TEST(PrinterBook, HasWhatItsTextSays) {
    PrinterBook book;
    book.defaultName = "hall";
    book.printers["hall"] = {"tcp://192.0.2.7",
                             Stock::cinema(),
                             600,
                             Orientation::kPortrait,
                             "<P2>é",
                             {{PrinterState::kReady, Match::kExact, "OK"},
                              {PrinterState::kOutOfPaper, Match::kContains, "PAPER\x07"},
                              {PrinterState::kOther, Match::kExact, "!"}}};
    book.printers["door.2"].address = "tcp://door";
    book.printers["door.2"].stock = Stock::ofInches(3.5, 2);
    book.printers["bar"].address = "tcp://bar";
    book.printers["bar"].stock = Stock::concert();
    book.printers["bar"].replies = {{PrinterState::kError, Match::kPrefix, "E"}};
    expectSame(parse(kFull), book);
}

TEST(PrinterBook, MayBeEmpty) {
    for (const char* text : {"", "\n\n", "# nothing yet\n", "[printers]\n", "printers = {}\n"}) {
        expectSame(parse(text), PrinterBook{});
    }
}

TEST(PrinterBook, TakesAStockInThreeForms) {
    const auto stockOf = [](const std::string& value) {
        return *parse("[printers.a]\naddress = 'tcp://a'\nstock = " + value).printers.at("a").stock;
    };
    EXPECT_EQ(stockOf("8").index(), 8);
    EXPECT_EQ(stockOf("'8'").index(), 8);
    EXPECT_EQ(stockOf("'RECEIPT'").index(), Stock::receipt().index());
    EXPECT_EQ(stockOf("{ width = 27, height = 0.1 }").inches().width, 27);
    EXPECT_EQ(stockOf("{ width = 27, height = 0.1 }").inches().height, 0.1);
}

TEST(PrinterBook, NamesAreShortAndPlain) {
    for (const char* name : {"a", "Z", "9", "-", "_", ".", "hall-2_b.3"}) {
        EXPECT_TRUE(isPrinterName(name)) << name;
    }
    EXPECT_TRUE(isPrinterName(std::string(64, 'x')));
    for (const char* name : {"", " ", "a b", "a/b", "é", "a\n", "a:b"}) {
        EXPECT_FALSE(isPrinterName(name)) << name;
    }
    EXPECT_FALSE(isPrinterName(std::string(65, 'x')));
    EXPECT_FALSE(isPrinterName(std::string_view("a\0", 2)));
}

// ---- Mistakes -----------------------------------------------------------------------------------

struct Mistake {
    std::string text;
    std::string message;  // after "printers.toml:"
};

void expectMistakes(const std::vector<Mistake>& mistakes) {
    for (const auto& [text, message] : mistakes) {
        EXPECT_EQ(mistakeIn(text), "printers.toml:" + message) << text;
    }
}

// A printer whose third line is the given one.
std::string printerWith(const std::string& line) {
    return "[printers.hall]\naddress = \"tcp://a\"\n" + line + "\n";
}

TEST(PrinterBook, NamesTheLineAndColumnOfAWrongKey) {
    const std::string known =
        "\": give address, stock, resolution, orientation, path, replies, tone, "
        "offset, size";
    expectMistakes({
        {"\n  colour = 1\n", "2:3: unknown key \"colour\": give default, printers"},
        {printerWith("adress = 1"), "3:1: unknown key \"adress" + known},
        {printerWith("[printers.hall.stocks]"), "3:16: unknown key \"stocks" + known},
        {printerWith("stock = { width = 1, length = 2 }"),
         "3:22: unknown key \"length\": give width, height"},
        {printerWith("replies = [ { state = 'ready', text = 'é', mach = 'exact' } ]"),
         "3:44: unknown key \"mach\": give state, match, text"},
        {"[printers.'a b']\naddress = 'tcp://a'\n",
         "1:11: a printer's name must be 1 to 64 letters, digits, \"-\", \"_\" and \".\""},
    });
}

TEST(PrinterBook, NamesTheLineAndColumnOfAValueOfTheWrongType) {
    const std::string table = "a printer must be a table: [printers.NAME]";
    const std::string replies =
        "replies must be a list: [ { state = \"ready\", match = \"exact\", text = \"OK\" } ]";
    const std::string offset = "offset must be in dots, at most 99999: { right = 3, down = -2 }";
    const std::string size = "size must be in dots, 1 to 99999: { width = 1648, height = 598 }";
    const std::string address =
        "address must be that of a printer: \"tcp://HOST\", \"bt://ADDRESS\" or \"tty:DEVICE\"";
    expectMistakes({
        {"default = 1\n", "1:11: default must be the name of a printer"},
        {"printers = 1\n", "1:12: " + table},
        {"[[printers]]\n", "1:1: " + table},
        {"[printers]\nhall = 'tcp://a'\n", "2:8: " + table},
        {"[printers.hall]\naddress = 1\n", "2:11: " + address},
        {printerWith("path = 1"), "3:8: path must be a text: \"<P1>\""},
        {printerWith("resolution = '300'"), "3:14: resolution must be 200, 300 or 600"},
        {printerWith("resolution = 300.0"), "3:14: resolution must be 200, 300 or 600"},
        {printerWith("orientation = true"),
         "3:15: orientation must be \"landscape\" or \"portrait\""},
        {printerWith("tone = '4'"), "3:8: tone must be 0 to 9"},
        {printerWith("offset = [ 3, -2 ]"), "3:10: " + offset},
        {printerWith("offset = { right = 3 }"), "3:10: " + offset},
        {printerWith("size = { width = 5.0, height = 6 }"), "3:18: " + size},
        {printerWith("replies = 'OK'"), "3:11: " + replies},
        {printerWith("replies = [ 'OK' ]"), "3:13: " + replies},
        {printerWith("replies = [ { state = 'ready', text = 1979-05-27 } ]"),
         "3:39: text must be a text"},
    });
}

TEST(PrinterBook, TakesReadingsInTheirRanges) {
    const auto readingsOf = [](const std::string& lines) {
        return parse("[printers.a]\naddress = 'tcp://a'\n" + lines).printers.at("a").readings;
    };
    EXPECT_EQ(readingsOf(""), Readings{});
    EXPECT_EQ(readingsOf("tone = 9\noffset = { right = -99999, down = 2 }\n"
                         "size = { width = 1, height = 99999 }"),
              (Readings{9, PrinterOffset{-99'999, 2}, printing::Size{1, 99'999}}));
    for (const char* wrong : {"tone = 10", "tone = -1", "offset = { right = 100000, down = 0 }",
                              "size = { width = 0, height = 1 }", "size = { height = 1 }"})
        EXPECT_NE(mistakeIn(printerWith(wrong)), "") << wrong;
}

TEST(PrinterBook, NamesTheLineAndColumnOfABadValue) {
    const std::string stock =
        "stock must be 0 to 8, concert, cinema, creditcard or receipt, or inches: "
        "{ width = 3.5, height = 2.0 }";
    const std::string inches = " must be given in inches, more than 0 and at most 27";
    expectMistakes({
        {"[printers.a]\n\n[printers.b]\naddress = 'tcp://b'", "1:1: the printer has no address"},
        {"[printers.a]\naddress = 'http://a'\n",
         "2:11: address must be that of a printer: \"tcp://HOST\", \"bt://ADDRESS\" or "
         "\"tty:DEVICE\""},
        {printerWith("stock = 9"), "3:9: " + stock},
        {printerWith("stock = -1"), "3:9: " + stock},
        {printerWith("stock = 9223372036854775807"), "3:9: " + stock},
        {printerWith("stock = 'paper'"), "3:9: " + stock},
        {printerWith("stock = 1.0"), "3:9: " + stock},
        {printerWith("stock = { height = 2 }"), "3:9: width" + inches},
        {printerWith("stock = { width = 2, height = 0 }"), "3:31: height" + inches},
        {printerWith("stock = { width = 27.01, height = 1 }"), "3:19: width" + inches},
        {printerWith("stock = { width = nan, height = 1 }"), "3:19: width" + inches},
        {printerWith("stock = { width = '2', height = 1 }"), "3:19: width" + inches},
        {printerWith("resolution = 301"), "3:14: resolution must be 200, 300 or 600"},
        {printerWith("orientation = 'Portrait'"),
         "3:15: orientation must be \"landscape\" or \"portrait\""},
        {printerWith("replies = [ { state = 'ready' } ]"),
         "3:13: a reply must have a state and a text"},
        {printerWith("replies = [ { state = 'unknown', text = '' } ]"),
         "3:23: state must be \"ready\", \"out-of-paper\", \"cover-open\", \"error\" or \"other\""},
        {printerWith("replies = [ { state = 'ready', text = '', match = 'regex' } ]"),
         "3:51: match must be \"exact\", \"prefix\" or \"contains\""},
        {"default = 'bar'\n" + printerWith(""), "1:11: there is no printer of the name \"bar\""},
    });
}

TEST(PrinterBook, NamesTheLineAndColumnOfWrongSyntax) {
    const std::vector<std::pair<std::string, std::string>> mistakes = {
        {"default\n", "1:8: "},
        {"\ndefault = hall\n", "2:11: "},
        {"[printers.hall\n", "1:15: "},
        {"[\n", "1:2: "},
        {"[é]\n", "1:2: "},
        {printerWith("path = \"<P1>"), "3:13: "},
        {printerWith("address = \"tcp://b\""), "3:11: "},
        {printerWith("[printers.hall]"), "3:1: "},
        {"path = \"\x80\"\n", "1:8: "},
        {std::string("path = \"\0\"\n", 11), "1:9: "},
    };
    for (const auto& [text, place] : mistakes) {
        const std::string message = mistakeIn(text);
        EXPECT_TRUE(message.starts_with("printers.toml:" + place)) << text << message;
        EXPECT_GT(message.size(), 30U) << message;
        EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }
}

TEST(PrinterBook, HasNoLongLinesAndNoDeepTables) {
    EXPECT_EQ(mistakeIn("#" + std::string(4095, 'x') + "\n#\n"), "");
    EXPECT_EQ(mistakeIn("#\n#" + std::string(4096, 'x')),
              "printers.toml:2:1: the line is longer than 4096 bytes");
    std::string keys;
    for (int level = 0; level < 500'000; ++level) keys += "a.";
    EXPECT_NE(mistakeIn("[" + keys + "a]\n"), "");
    EXPECT_NE(mistakeIn("a = " + std::string(4000, '[')), "");
    std::string lines;
    for (int line = 0; line < 100; ++line) lines += "{" + keys.substr(0, 4000) + "a = [\n";
    EXPECT_NE(mistakeIn("a = [\n" + lines), "");
    EXPECT_NE(mistakeIn("[" + keys.substr(0, 4000) + "a]\n"), "");
}

// ---- Changing -----------------------------------------------------------------------------------

TEST(PrinterBook, KeepsAllOtherValuesWhenItIsChanged) {
    PrinterBook book = parse(kFull);
    NamedPrinter exit;
    exit.address = "tcp://exit";
    std::string text = withPrinter(kFull, "exit", exit);
    book.printers["exit"] = exit;
    expectSame(parse(text), book);

    text = withDefault(text, "door.2");
    book.defaultName = "door.2";
    expectSame(parse(text), book);

    text = withoutPrinter(text, "bar");
    book.printers.erase("bar");
    expectSame(parse(text), book);

    text = withoutPrinter(text, "door.2");
    book.printers.erase("door.2");
    book.defaultName = "";
    expectSame(parse(text), book);
}

TEST(PrinterBook, IsWrittenInAFormThatPeopleRead) {
    NamedPrinter printer = parse(kFull).printers.at("hall");
    std::string text = withDefault(withPrinter("", "hall", printer), "hall");
    EXPECT_EQ(text, R"(default = "hall"

[printers.hall]
address = "tcp://192.0.2.7"
orientation = "portrait"
path = "<P2>é"
replies = [
    { match = "exact", state = "ready", text = "OK" },
    { match = "contains", state = "out-of-paper", text = "PAPER\u0007" },
    { match = "exact", state = "other", text = "!" }
]
resolution = 600
stock = 1
)");
}

using Random = std::mt19937;

// Plain letters, control characters and quotes, and characters of two to four bytes.
std::string randomText(Random& random) {
    const std::vector<std::string> pieces = {
        "a",  "Z",          " ",      "\"",   "'", "\\", "\n",     "\r",
        "\t", "\x01",       "\x1B",   "\x7F", "#", "é",  "\u0085", "\uFEFF",
        "東", "\U0001F3AB", "\"\"\"", "'''",  "=", "]",  "}",      std::string(1, '\0')};
    std::string text;
    for (auto count = random() % 12; count > 0; --count) text += pieces[random() % pieces.size()];
    return text;
}

Stock randomStock(Random& random) {
    if (random() % 2 == 0) return Stock::ofIndex(static_cast<std::int32_t>(random() % 9));
    std::uniform_real_distribution<double> inches(0.001, 27);
    const double width = inches(random);
    return Stock::ofInches(width, random() % 2 == 0 ? 2 : inches(random));
}

NamedPrinter randomPrinter(Random& random) {
    const auto may = [&] { return random() % 2 == 0; };
    NamedPrinter printer;
    printer.address = "tcp://h" + randomText(random);
    if (may()) printer.stock = randomStock(random);
    if (may()) printer.resolution = may() ? 200 : 600;
    if (may()) printer.orientation = may() ? Orientation::kLandscape : Orientation::kPortrait;
    if (may()) printer.path = randomText(random);
    if (may()) printer.readings.tone = static_cast<std::int32_t>(random() % 10);
    if (may()) printer.readings.offset = PrinterOffset{-99'999, 99'999};
    if (may()) printer.readings.size = printing::Size{1, 99'999};
    for (auto count = random() % 4; count > 0; --count) {
        printer.replies.push_back({static_cast<PrinterState>(1 + random() % 5),
                                   static_cast<Match>(random() % 3), randomText(random)});
    }
    return printer;
}

TEST(PrinterBook, HasWhatAnySequenceOfChangesGaveIt) {
    constexpr std::uint32_t kSeed = 20250611;
    std::cout << "seed " << kSeed << "\n";
    Random random(kSeed);
    const std::vector<std::string> names = {"a", "b.c", "-", "9", ".", "default", "printers"};
    std::string text;
    PrinterBook book;
    for (int round = 0; round < 1000; ++round) {
        const std::string& name = names[random() % names.size()];
        if (!book.printers.contains(name)) {
            book.printers[name] = randomPrinter(random);
            text = withPrinter(text, name, book.printers[name]);
        } else if (random() % 2 == 0) {
            book.printers.erase(name);
            if (book.defaultName == name) book.defaultName = "";
            text = withoutPrinter(text, name);
        } else {
            book.defaultName = name;
            text = withDefault(text, name);
        }
        expectSame(parse(text), book);
        if (testing::Test::HasFailure()) FAIL() << "round " << round << "\n" << text;
    }
}

TEST(PrinterBook, IsReadOrRefusedWhateverItsTextIs) {
    constexpr std::uint32_t kSeed = 20250612;
    std::cout << "seed " << kSeed << "\n";
    Random random(kSeed);
    const std::string marks = "[]{}=.,\"'#\n\r\t\\- 0123456789:TZeE+_abtrufn\x80\xC3\xE2\xF0";
    int read = 0;
    for (int round = 0; round < 5000; ++round) {
        std::string text = random() % 4 == 0 ? "" : kFull;
        for (auto changes = random() % 8; changes > 0; --changes) {
            const std::string piece =
                random() % 2 == 0 ? std::string(1, static_cast<char>(random()))
                                  : std::string(1 + random() % 3, marks[random() % marks.size()]);
            text.replace(random() % (text.size() + 1), random() % 3, piece);
        }
        if (random() % 8 == 0) text.resize(random() % (text.size() + 1));
        try {
            const PrinterBook book = parse(text);
            ++read;
            for (const auto& [name, printer] : book.printers) {
                EXPECT_EQ(parse(withDefault(text, name)).defaultName, name);
                EXPECT_FALSE(parse(withoutPrinter(text, name)).printers.contains(name));
            }
        } catch (const BadPrinterBook& mistake) {
            EXPECT_GE(mistake.line(), 1U) << text;
            EXPECT_GE(mistake.column(), 1U) << text;
            EXPECT_FALSE(mistake.sentence().empty());
        }
    }
    EXPECT_GT(read, 100);
}

}  // namespace
}  // namespace tavio::tool
