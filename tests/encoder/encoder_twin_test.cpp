// The whole encoder against its slow twin, on graphics made to mislead it.
#include <random>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/encoder/state.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/instruction_sets.h"
#include "support/literal_encoder.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

using test::between;
using test::chance;
using test::Random;

class EncoderTwin : public test::FreshState {
  protected:
    EncoderTwin() { Mode = "WF"; }

    void compare(const Bytes& file, const test::LiteralJob& job);
};

void EncoderTwin::compare(const Bytes& file, const test::LiteralJob& job) {
    PrinterPath = job.path;
    PrinterOrientation = job.orientation;
    LogoNumber = job.logoNumber;
    portrait_dots = job.portraitDots;
    originalx = job.row;
    originaly = job.column;
    test::transport().calls.clear();
    const std::vector<LineParser> before = linemap;
    ParseBMP(file);
    const test::LiteralTraffic literal = test::encodeLiterally(file, job);
    const Bytes sent = test::transport().dataSent();
    if (sent != literal.data) {  // as texts only then: they may be long
        ASSERT_EQ(test::readable(sent), test::readable(literal.data));
    }
    ASSERT_EQ(test::transport().textSent(), literal.text);
    if (!literal.hasBand) {
        ASSERT_EQ(linemap, before);
        return;
    }
    std::vector<LineParser> expected;
    for (const test::LiteralRun& run : literal.lineMap)
        expected.push_back({run.start, run.count, run.block_type});
    ASSERT_GE(linemap.size(), std::max(expected.size(), LINEMAPMAX));
    expected.resize(linemap.size());
    ASSERT_EQ(linemap, expected);
}

void add(Bytes& columns, std::size_t count, Byte byte) {
    columns.insert(columns.end(), count, byte);
}

void add(Bytes& columns, std::string_view text) {
    columns.insert(columns.end(), text.begin(), text.end());
}

// Runs of 17 to 21 blanks between short data.
void addEdgeRuns(Random& random, Bytes& columns) {
    add(columns, static_cast<std::size_t>(between(random, 17, 21)), 0);
    add(columns, static_cast<std::size_t>(between(random, 1, 3)), 0x81);
}

void addNoise(Random& random, Bytes& columns, int blankPercent) {
    for (int i = between(random, 1, 80); i > 0; --i)
        columns.push_back(chance(random, blankPercent) ? Byte{0} : static_cast<Byte>(random()));
}

// Commands and pieces of them, with counts from none to far beyond the stream's end.
void addCommands(Random& random, Bytes& columns) {
    static const std::vector<std::string> kPieces = {"<RC",
                                                     "<RC<RC<RC<RC",
                                                     "<RC1,2>",
                                                     "<RC-3,44>",
                                                     "<RC,>",
                                                     "<RC>",
                                                     "<RC5,6><G3>abc",
                                                     "<RC1,2><G99999999>",
                                                     "<RC1,2><G2147483647>",
                                                     "<RC8,0><G-5>",
                                                     "<RC7,8><G",
                                                     "<RC7,8><G40",
                                                     "<G20>",
                                                     "<RC 12x,\t-4>",
                                                     "<RC11111111111111111111,0>",
                                                     "<R<R<R<R",
                                                     ">",
                                                     ",",
                                                     "<RC1,<RC2,<RC3,4><G30>"};
    const int last = static_cast<int>(kPieces.size()) - 1;
    add(columns, kPieces[static_cast<std::size_t>(between(random, 0, last))]);
    if (chance(random, 30)) add(columns, static_cast<std::size_t>(between(random, 1, 40)), 0);
    if (chance(random, 30)) add(columns, static_cast<std::size_t>(between(random, 1, 40)), 'x');
}

Bytes bandOf(Random& random, std::size_t width) {
    Bytes columns;
    const int kind = between(random, 0, 6);
    if (kind == 0) columns.assign(width, 0);
    if (kind == 1) columns.assign(width, 0xFF);
    const int blankPercent = between(random, 0, 100);
    while (columns.size() < width) {
        const int piece = kind == 6 ? between(random, 2, 5) : kind;
        if (piece == 2) addEdgeRuns(random, columns);
        if (piece == 3) addNoise(random, columns, blankPercent);
        if (piece >= 4) addCommands(random, columns);
    }
    columns.resize(width);
    return columns;
}

Bytes randomFile(Random& random, int maxColumns, int maxBands) {
    const auto padded = static_cast<std::size_t>(32 * between(random, 1, maxColumns / 32));
    const std::size_t width =
        chance(random, 70) ? padded : padded - static_cast<std::size_t>(between(random, 0, 31));
    test::Rows rows;
    for (int band = between(random, 0, maxBands); band > 0; --band) {
        const Bytes columns = bandOf(random, width);
        for (int bit = 7; bit >= 0; --bit) {
            rows.emplace_back();
            for (const Byte column : columns) rows.back() += ((column >> bit) & 1) != 0 ? 'X' : ' ';
        }
    }
    for (int more = between(random, rows.empty() ? 1 : 0, 7); more > 0; --more)
        rows.emplace_back(width, 'X');
    return test::bitmapFile(rows, chance(random, 50));
}

test::LiteralJob randomJob(Random& random) {
    test::LiteralJob job;
    job.orientation = std::string(chance(random, 50) ? "<LM>" : "<PM>");
    if (chance(random, 25)) job.logoNumber.push_back('8');
    if (chance(random, 20)) job.path = std::string(chance(random, 50) ? "<RC5,6>" : "x-77,<RC,9");
    const bool isNear = chance(random, 50);
    job.row = isNear ? between(random, -20, 40) : between(random, -1000000000, 1000000000);
    job.column = isNear ? between(random, -60, 60) : between(random, -1000000000, 1000000000);
    job.portraitDots = between(random, 0, 1200);
    return job;
}

TEST_F(EncoderTwin, GivesTheSameBytesAndLineMapOnManySmallPictures) {
    const unsigned first = std::random_device{}();
    test::withEachInstructionSet([&] {
        for (unsigned seed = first; seed < first + 2500; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            Random random(seed);
            const Bytes file = randomFile(random, 320, 5);
            ASSERT_NO_FATAL_FAILURE(compare(file, randomJob(random)));
        }
    });
}

TEST_F(EncoderTwin, GivesTheSameBytesAndLineMapOnLargerPictures) {
    const unsigned first = std::random_device{}();
    test::withEachInstructionSet([&] {
        for (unsigned seed = first; seed < first + 8; ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed);
            Random random(seed);
            const Bytes file = randomFile(random, 2600, 40);
            ASSERT_NO_FATAL_FAILURE(compare(file, randomJob(random)));
        }
    });
}

// Black bands are copied whole and no blank run is asked for; the one after them is mixed.
TEST_F(EncoderTwin, GivesTheSameBytesWhereBandsOfOneKindFollowManyOfAnother) {
    for (const char many : {'X', ' '}) {
        test::Rows rows(8 * 40, std::string(3200, many));
        const std::string mixed = std::string(100, 'X') + std::string(50, ' ');
        for (int row = 0; row < 16; ++row) {
            rows.emplace_back();
            while (rows.back().size() < 3200) rows.back() += mixed;
            rows.back().resize(3200);
        }
        const Bytes file = test::bitmapFile(rows);
        for (const char* orientation : {"<LM>", "<PM>"}) {
            test::LiteralJob job;
            job.orientation = orientation;
            ASSERT_NO_FATAL_FAILURE(compare(file, job));
        }
    }
}

}  // namespace
}  // namespace tavio::encoder
