// Properties of every stream: chunks do not matter, and no stream is too broken.
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tavio/virtual-printer/decode_listing.h"
#include "virtual-printer/test_streams.h"

namespace tavio::virtual_printer::testing {
namespace {

constexpr TicketSize kSize{30, 40, 100};
constexpr std::size_t kLogoMemory = 4000;

// Everything that came of a stream.
struct Outcome {
    std::vector<std::string> lines;
    std::vector<std::string> readerProblems;
    std::vector<KeptTicket> tickets;
    std::vector<std::string> printerProblems;
    std::string listing;

    bool operator==(const Outcome&) const = default;
};

// Feeds a stream in chunks to all that read streams.
class Readers {
  public:
    void feed(std::span<const Byte> bytes) {
        reader_.feed(bytes);
        printer_.feed(bytes);
        listing_.feed(bytes);
    }

    Outcome finish() {
        reader_.finish();
        printer_.finish();
        listing_.finish();
        EXPECT_LE(printer_.printer().logoMemoryUsed(), kLogoMemory);
        return {sink_.lines, sink_.problems, printer_.tickets(), printer_.problems(), out_.str()};
    }

  private:
    RecordingSink sink_;
    CommandReader reader_{sink_};
    TestPrinter printer_{PrinterSettings{.size = kSize, .logoMemory = kLogoMemory}};
    std::ostringstream out_;
    DecodeListing listing_{out_};
};

Outcome inOnePiece(std::span<const Byte> bytes) {
    Readers readers;
    readers.feed(bytes);
    return readers.finish();
}

Outcome cutAt(std::span<const Byte> bytes, std::size_t cut) {
    Readers readers;
    readers.feed(bytes.first(cut));
    readers.feed(bytes.subspan(cut));
    return readers.finish();
}

Outcome byteByByte(std::span<const Byte> bytes) {
    Readers readers;
    for (std::size_t i = 0; i < bytes.size(); ++i) readers.feed(bytes.subspan(i, 1));
    return readers.finish();
}

// Every command, every state, and some errors.
Stream sampleStream() {
    return stream("<P1><LM><RE0><DI><RC1,2><G8>", Stream{0xFF, 0x1B, '<', 'p', '>', 0x80, 0, 1},
                  "caf\xC3\xA9 \xE2\x82\xAC\r\nRow <2\n<RC12,3>a <b<c> \x1B <X1>\xE2\x82<7>x",
                  "<RC0,0><7>\x1B<RC8,0><G3>\x1B\x1B\x1B<PM><RC9,1><G2>ab\x1B<SP3,4><LD7>",
                  "<p><PM><RC20,5><G4>wxyz<SP1,1><LD7><LD8><q>", std::string(300, 'm'),
                  "<G-1><RC99,99><G1>\xFF\x1B", "c<LD7><5>\x1B<G900>", Stream(900, '<'),
                  "\x1B<LM>end");
}

TEST(AnyStream, MeansTheSameWhereverItIsCut) {
    const Stream bytes = sampleStream();
    const Outcome whole = inOnePiece(bytes);
    EXPECT_EQ(whole.tickets.size(), 3U);
    EXPECT_EQ(byteByByte(bytes), whole);
    for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
        ASSERT_EQ(cutAt(bytes, cut), whole) << "cut at " << cut;
    }
}

// Each whole command and text of a stream without faults, apart.
std::vector<Stream> faultlessPieces() {
    return {stream("<P1>"),    stream("<LM>"),
            stream("<RC1,2>"), stream("<G4>", Stream{1, 2, '<', 0x1B}),
            stream("text"),    stream("<7>\x1B<RC8,0><G2>", Stream{0x80, 0x80}, "\x1B"),
            stream("<SP1,2>"), stream("<LD7>"),
            stream("<p>"),     stream("\x1B", "c"),
            stream("<PM>"),    stream("<RC9,9>"),
            stream("<q>")};
}

TEST(AnyStream, HasAProblemExactlyWhereItIsCutShort) {
    Stream bytes;
    std::vector<bool> whole{true};  // by length: ends between commands
    for (const Stream& piece : faultlessPieces()) {
        const bool text = piece == stream("text");
        for (std::size_t i = 1; i <= piece.size(); ++i) whole.push_back(text || i == piece.size());
        appendTo(bytes, piece);
    }
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const Outcome outcome = inOnePiece(std::span(bytes).first(length));
        EXPECT_EQ(outcome.printerProblems.empty(), whole[length]) << "after " << length << " bytes";
        EXPECT_EQ(outcome.readerProblems.empty(), whole[length]) << "after " << length << " bytes";
    }
}

TEST(AnyStream, IsSurvivedInEveryPrefix) {
    const Stream bytes = sampleStream();
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        const Outcome outcome = inOnePiece(std::span(bytes).first(length));
        ASSERT_GE(outcome.tickets.size(), 1U) << "after " << length << " bytes";
    }
}

// Pieces of commands and noise in any order.
Stream garbage(std::mt19937& random) {
    static const std::vector<std::string> kPieces{"<",
                                                  ">",
                                                  "<P1>",
                                                  "<LM>",
                                                  "<PM>",
                                                  "<RC",
                                                  "<RC5,5>",
                                                  "<RC-9,2147483647>",
                                                  "<G",
                                                  "<G3>",
                                                  "<G20>",
                                                  "<G-2>",
                                                  "<G2147483648>",
                                                  "<SP2,3>",
                                                  "<LD1>",
                                                  "<LD2>",
                                                  "<1>\x1B",
                                                  "<2>\x1B",
                                                  "\x1B",
                                                  "c",
                                                  "<p>",
                                                  "<q>",
                                                  "<1>",
                                                  "\r\n",
                                                  "Hello",
                                                  "\xC3\xA9",
                                                  "\xE2",
                                                  "<G99>",
                                                  "0,0>",
                                                  "-",
                                                  "<X>",
                                                  "<RE0>",
                                                  "<DI>"};
    Stream bytes;
    const std::size_t pieces = random() % 40;
    for (std::size_t i = 0; i < pieces; ++i) {
        if (random() % 4 == 0) {
            bytes.push_back(static_cast<Byte>(random()));
        } else {
            appendTo(bytes, kPieces[random() % kPieces.size()]);
        }
    }
    return bytes;
}

TEST(AnyStream, OfGarbageIsSurvivedAndMeansTheSameWhereverItIsCut) {
    constexpr unsigned kSeed = 20240305;
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    for (int round = 0; round < 10000; ++round) {
        const Stream bytes = garbage(random);
        const Outcome whole = inOnePiece(bytes);
        ASSERT_GE(whole.tickets.size(), 1U) << "round " << round;
        const std::size_t cut = random() % (bytes.size() + 1);
        ASSERT_EQ(cutAt(bytes, cut), whole) << "round " << round << ", cut at " << cut;
        for (const KeptTicket& ticket : whole.tickets) {
            ASSERT_LE(ticket.beginOffset, ticket.endOffset) << "round " << round;
            ASSERT_LE(ticket.endOffset, bytes.size()) << "round " << round;
        }
    }
}

}  // namespace
}  // namespace tavio::virtual_printer::testing
