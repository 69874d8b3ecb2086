// Where an element's bytes lie in the job, and where its dots lie on the ticket.

#include <cstdio>

#include <gtest/gtest.h>

#include "TavioIpadSDK/platform/utf8.h"
#include "printing/drawn_job.h"
#include "printing/random_tickets.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "tavio/printing/job.h"
#include "tavio/virtual-printer/command_reader.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::told;

std::shared_ptr<const platform::Picture> blackPixels(std::int32_t width, std::int32_t height) {
    return std::make_shared<const platform::Picture>(test::plainPicture(width, height, 0, 0, 0));
}

std::string textOf(std::span<const Byte> bytes) {
    return {bytes.begin(), bytes.end()};
}

// ---- Bytes --------------------------------------------------------------------------------------

TEST(EncodedElements, TileTheBytesOfTheJob) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const test::RandomTicket plan = test::randomTicket(random);
        const std::vector<Ticket> tickets(2, test::composed(plan, random));
        EncodeOptions options;
        options.pageEngine = test::pageEngineOf(plan);
        const auto job = encode(tickets, options);
        if (!job) continue;  // a page of 0 dots
        const std::size_t count = plan.elements.size();
        ASSERT_EQ(job->elements().size(), 2 * count);
        std::size_t end = 0;
        for (std::size_t index = 0; index < 2 * count; ++index) {
            const EncodedElement& element = job->elements()[index];
            EXPECT_EQ(element.ticket, index / count);
            EXPECT_EQ(element.element, index % count);
            EXPECT_EQ(element.offset, end);
            end = element.offset + element.count;
        }
        EXPECT_EQ(end, job->bytes().size());
    }
}

TEST(EncodedElements, OfSeveralTicketsAreThoseOfEachTicket) {
    Ticket first;
    first.picture(blackPixels(32, 8), {1, 2}).finish(Finish::kCut);
    Ticket second(
        {.stock = Stock::cinema(), .orientation = Orientation::kPortrait, .path = "<P2>"});
    second.text("Row F", {3, 4}).finish(Finish::kNothing).finish(Finish::kEject);
    const auto both = encode(std::vector{first, second});
    ASSERT_TRUE(both);
    EXPECT_EQ(textOf(both->bytes()),
              textOf(encode(first)->bytes()) + textOf(encode(second)->bytes()));
    EXPECT_EQ(both->elements()[3].count, 0U) << "nothing is done at its end";
    EXPECT_EQ(both->settings().path, "<P1>");
}

TEST(EncodedElements, ShareTheBytesOfCopiesOfTheirJob) {
    const Job job = *encode(Ticket().text("Row F", {}));
    const Job copy = job;
    EXPECT_EQ(copy.bytes().data(), job.bytes().data());
    EXPECT_EQ(&copy.elements(), &job.elements());
}

TEST(EncodedElements, HaveASizeIfItIsKnownAndARectangleIfTheyArePrinted) {
    const auto job = encode(Ticket()
                                .picture(blackPixels(32, 8), {5, 9})
                                .storeLogo(1, blackPixels(64, 16))
                                .logo(1)
                                .text("Row F", {})
                                .printerText("Row F")
                                .bytes(std::make_shared<const Bytes>(Bytes{1, 2}))
                                .finish(Finish::kCut));
    ASSERT_TRUE(job);
    const std::vector<EncodedElement>& elements = job->elements();
    EXPECT_EQ(elements[0].size, (Size{32, 8}));
    EXPECT_EQ(elements[0].rectangle, (Rectangle{9, 5, {32, 8}}));
    EXPECT_EQ(elements[1].size, (Size{64, 16}));
    EXPECT_EQ(elements[1].rectangle, std::nullopt);
    for (std::size_t index = 2; index < elements.size(); ++index) {
        EXPECT_EQ(elements[index].size, std::nullopt);
        EXPECT_EQ(elements[index].rectangle, std::nullopt);
    }
    EXPECT_EQ(textOf(job->bytes().subspan(elements[5].offset)), "\x01\x02<p>");
}

// ---- Dots ---------------------------------------------------------------------------------------

// Drawn the classic way in portrait, a picture whose first rows are all black lies elsewhere
// (docs/stream.md), so this one has a white column.
constexpr std::int32_t kWhiteColumn = 10;

std::shared_ptr<const platform::Picture> nearlyBlack(std::int32_t side, bool isClassic) {
    platform::Picture picture = test::plainPicture(side, side, 0, 0, 0);
    // The classic packing moves it by one.
    const std::int32_t column = isClassic ? kWhiteColumn - 1 : kWhiteColumn;
    for (std::int32_t row = 0; row < side; ++row)
        picture.pixels[static_cast<std::size_t>(row * side + column)] = ~UInt32{0};
    return std::make_shared<const platform::Picture>(picture);
}

DrawOptions drawing(bool isClassic) {
    DrawOptions options;
    options.fit = isClassic ? Fit::kShrink : Fit::kActual;
    if (isClassic) options.classic = Classic{};
    return options;
}

// The black dots of a ticket are those of nearlyBlack() at the rectangle, as far as it lies on the
// ticket.
bool isFilled(const virtual_printer::Ticket& ticket, const Rectangle& rectangle) {
    for (std::int64_t row = 0; row < ticket.size().rows; ++row) {
        for (std::int64_t column = 0; column < ticket.size().columns; ++column) {
            const std::int64_t across = column - rectangle.left;
            const std::int64_t down = row - rectangle.top;
            const bool isInside = across >= 0 && across < rectangle.size.width && down >= 0 &&
                                  down < rectangle.size.height;
            if (ticket.isBlack(row, column) != (isInside && across != kWhiteColumn)) return false;
        }
    }
    return true;
}

class Dots : public testing::TestWithParam<Orientation> {
  protected:
    static Place placeOf(std::int32_t left, std::int32_t top) {
        return GetParam() == Orientation::kLandscape ? Place{top, left} : Place{left, top};
    }
};

TEST_P(Dots, OfAPictureFillItsRectangle) {
    constexpr std::int32_t kSide = 64;
    for (const Stock& stock : {Stock::ofInches(1.5, 0.75), Stock::creditCard(), Stock::cinema()}) {
        const TicketSettings settings{.stock = stock, .resolution = 200, .orientation = GetParam()};
        const Size ticket = *ticketSize(settings);
        for (const auto& [left, top] :
             {std::pair{0, 0}, {ticket.width - kSide, ticket.height - kSide}, {11, 7}}) {
            for (const bool isClassic : {false, true}) {
                const auto job = encode(Ticket(settings).picture(
                    nearlyBlack(kSide, isClassic), placeOf(left, top), drawing(isClassic)));
                ASSERT_EQ(told(job->warnings()), Lines());
                EXPECT_EQ(job->elements()[0].rectangle, (Rectangle{left, top, {kSide, kSide}}));
                const test::DrawnJob drawn = test::drawn(*job);
                EXPECT_EQ(drawn.problems, Lines());
                EXPECT_TRUE(isFilled(drawn.tickets.at(0), *job->elements()[0].rectangle));
            }
        }
    }
}

TEST_P(Dots, BeyondTheTicketAreAsManyAsTheWarningTells) {
    const TicketSettings settings{
        .stock = Stock::ofInches(1, 1), .resolution = 200, .orientation = GetParam()};
    const auto job =
        encode(Ticket(settings).picture(nearlyBlack(64, true), {150, 180}, drawing(true)));
    ASSERT_EQ(job->warnings().size(), 1U);
    EXPECT_EQ(job->warnings()[0].count, 44);
    EXPECT_TRUE(isFilled(test::drawn(*job).tickets.at(0), *job->elements()[0].rectangle));
}

TEST_P(Dots, OfAPlainTextBeginAtItsPlace) {
    for (const Stock& stock : {Stock::ofInches(1, 1), Stock::creditCard()}) {
        const TicketSettings settings{.stock = stock, .resolution = 200, .orientation = GetParam()};
        const auto job = encode(Ticket(settings).text("H", placeOf(50, 30)));
        const virtual_printer::Ticket ticket = test::drawn(*job).tickets.at(0);
        std::int32_t left = ticket.size().columns;
        std::int32_t top = ticket.size().rows;
        for (std::int32_t row = 0; row < ticket.size().rows; ++row) {
            for (std::int32_t column = 0; column < ticket.size().columns; ++column) {
                if (!ticket.isBlack(row, column)) continue;
                left = std::min(left, column);
                top = std::min(top, row);
            }
        }
        EXPECT_EQ(left, 50);
        EXPECT_EQ(top, 30);
    }
}

INSTANTIATE_TEST_SUITE_P(Both, Dots,
                         testing::Values(Orientation::kLandscape, Orientation::kPortrait),
                         [](const auto& turn) {
                             return turn.param == Orientation::kLandscape ? "Landscape"
                                                                          : "Portrait";
                         });

// ---- Plain text ---------------------------------------------------------------------------------

std::string encodedText(const std::string& text, const TicketSettings& settings, Place place) {
    const auto job = encode(Ticket(settings).text(text, place));
    EXPECT_EQ(told(job), Lines());
    return job ? textOf(job->bytes()) : "";
}

TEST(PlainText, ComesAfterItsPathOrientationAndPosition) {
    EXPECT_EQ(encodedText("Row F\nSeat 12 > 11", {.path = "<P3>"}, {10, -20}),
              "<P3><LM><RE0><DI><RC10,-20>Row F\nSeat 12 > 11");
    EXPECT_EQ(encodedText("Row F", {.orientation = Orientation::kPortrait}, {10, 20}),
              "<P1><PM><RE0><DI><RC566,20>Row F")
        << "576 dots are printed of a concert ticket in portrait";
    EXPECT_EQ(
        encodedText("", {.stock = Stock::ofInches(1, 1), .orientation = Orientation::kPortrait},
                    {0, 0}),
        "<P1><PM><RE0><DI><RC299,0>");
    EXPECT_EQ(encodedText("a", {.orientation = Orientation::kPortrait},
                          {std::numeric_limits<std::int32_t>::min(), 0}),
              "<P1><PM><RE0><DI><RC-2147483072,0>a")
        << "as the rows of a picture, which wrap around";
}

TEST(PlainText, MayHaveEveryPrintableCharacter) {
    std::string all;
    for (char letter = ' '; letter <= '~'; ++letter)
        if (letter != '<') all += letter;
    EXPECT_EQ(encodedText(all, {}, {}), "<P1><LM><RE0><DI><RC0,0>" + all);
}

// The kinds of the commands of a stream, and its texts as one.
class Reading : public virtual_printer::CommandSink {
  public:
    explicit Reading(std::span<const Byte> bytes) {
        virtual_printer::CommandReader reader(*this);
        reader.feed(bytes);
        reader.finish();
    }

    void command(const virtual_printer::Command& command) override {
        kinds.push_back(command.kind);
    }
    void graphicsBytes(std::span<const Byte> /*bytes*/) override {}
    void graphicsEnd() override {}
    void text(std::uint64_t /*offset*/, std::span<const Byte> bytes) override {
        text_ += textOf(bytes);
    }
    void problem(std::uint64_t /*offset*/, std::string_view text) override {
        problems.emplace_back(text);
    }

    std::vector<virtual_printer::CommandKind> kinds;
    std::string text_;
    Lines problems;
};

std::string randomName(test::Random& random) {
    static const std::vector<std::string> kParts{"<p>",
                                                 "<q>",
                                                 "<RC1,1>",
                                                 "<",
                                                 ">",
                                                 "\x1B",
                                                 "\x1B"
                                                 "c",
                                                 "<7>\x1B",
                                                 "\U0001F3AB",
                                                 "\u05D3\u05E0\u05D4",
                                                 "\u0645\u0631",
                                                 "e\u0301",
                                                 "\u202E",
                                                 "\t",
                                                 "\u0085",
                                                 "<G99>",
                                                 std::string(1, '\0'),
                                                 "\xC3",
                                                 "é"};
    std::string name;
    for (int left = test::between(random, 0, 12); left > 0; --left) {
        if (test::chance(random, 3))
            name += kParts[random() % kParts.size()];
        else
            name += static_cast<char>(test::between(random, 0x20, 0x7E) | 1);  // never "<"
    }
    return name;
}

// The first character that cannot be printed, as it is named.
std::string firstUnprintable(std::string_view text) {
    while (!text.empty()) {
        const platform::Utf8Character letter = platform::firstCharacter(text);
        const std::uint32_t code = letter.codePoint;
        if (code != '\n' && (code < ' ' || code > '~' || code == '<')) {
            std::array<char, 16> name{};
            std::snprintf(name.data(), name.size(), "U+%04X", static_cast<unsigned>(code));
            return name.data();
        }
        text.remove_prefix(letter.length);
    }
    return "";
}

TEST(PlainText, NeverSendsACommand) {
    using Kind = virtual_printer::CommandKind;
    int printed = 0;
    constexpr int kNames = 3000;
    for (int seed = 0; seed < kNames; ++seed) {
        test::Random random(static_cast<unsigned>(seed));
        const std::string name = randomName(random);
        SCOPED_TRACE(testing::Message() << "seed " << seed << ": " << test::readable(name));
        const auto job = encode(Ticket().text(name, {1, 2}).finish(Finish::kCut));
        if (!platform::isUtf8(name)) {
            ASSERT_EQ(job.error().at(0).kind, ProblemKind::kNotUtf8);
        } else if (const std::string letter = firstUnprintable(name); !letter.empty()) {
            ASSERT_EQ(job.error().size(), 1U);
            ASSERT_EQ(job.error()[0].kind, ProblemKind::kUnprintableLetter);
            ASSERT_NE(job.error()[0].sentence.find(letter), std::string::npos);
        } else {
            ASSERT_EQ(told(job), Lines());
            const Reading reading(job->bytes());
            ASSERT_EQ(reading.kinds, (std::vector{Kind::kPath, Kind::kLandscape, Kind::kRe,
                                                  Kind::kDi, Kind::kPosition, Kind::kCut}));
            ASSERT_EQ(reading.text_, name);
            ASSERT_EQ(reading.problems, Lines());
            ++printed;
        }
    }
    EXPECT_GT(printed, kNames / 2);
    EXPECT_LT(printed, kNames);
}

}  // namespace
}  // namespace tavio::printing
