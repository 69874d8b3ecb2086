#include "TavioIpadSDK/encoder/band_columns.h"

#include <random>

#include <gtest/gtest.h>

#include "support/instruction_sets.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

// Dot by dot: column c has the bits of pixel c, from the first row (the last in the file) on.
Bytes columnsOneByOne(const Bytes& rows, std::size_t rowSize) {
    Bytes columns(8 * rowSize);
    for (std::size_t c = 0; c < columns.size(); ++c) {
        for (std::size_t row = 0; row < kBandRows; ++row) {
            const Byte byte = rows[(kBandRows - 1 - row) * rowSize + c / 8];
            const bool prints = ((byte >> (7 - c % 8)) & 1) == 0;
            columns[c] = static_cast<Byte>(columns[c] << 1 | (prints ? 1 : 0));
        }
    }
    return columns;
}

// Noise, with bytes and whole pieces of paper between.
Bytes randomRows(test::Random& random, std::size_t size) {
    Bytes rows;
    const int blank = test::between(random, 0, 100);
    while (rows.size() < size) {
        const bool isPaper = test::chance(random, blank);
        const auto count = static_cast<std::size_t>(test::between(random, 1, isPaper ? 90 : 20));
        for (std::size_t i = 0; i < count; ++i)
            rows.push_back(isPaper ? Byte{0xFF} : static_cast<Byte>(random()));
    }
    rows.resize(size);
    return rows;
}

TEST(BandColumns, EqualTheirSlowTwinWithEveryInstructionSetAtEveryLength) {
    test::withEachInstructionSet([] {
        const unsigned seed = std::random_device{}();
        SCOPED_TRACE(seed);
        test::Random random(seed);
        for (std::size_t rowSize = 0; rowSize <= 260; ++rowSize) {
            for (int kind = 0; kind < 3; ++kind) {
                const Bytes rows = randomRows(random, kBandRows * rowSize);
                Bytes columns(8 * rowSize, 0xA5);
                transposeBand(rows, rowSize, columns);
                ASSERT_EQ(columns, columnsOneByOne(rows, rowSize)) << rowSize;
            }
        }
        const Bytes rows = randomRows(random, kBandRows * 5000);
        Bytes columns(8 * 5000);
        transposeBand(rows, 5000, columns);
        ASSERT_EQ(columns, columnsOneByOne(rows, 5000));
    });
}

TEST(BandColumns, AreZeroForPaperAndFullForBlack) {
    test::withEachInstructionSet([] {
        Bytes columns(8 * 200, 0xA5);
        transposeBand(Bytes(kBandRows * 200, 0xFF), 200, columns);
        EXPECT_EQ(columns, Bytes(8 * 200, 0));
        transposeBand(Bytes(kBandRows * 200, 0), 200, columns);
        EXPECT_EQ(columns, Bytes(8 * 200, 0xFF));
    });
}

// One dot at a time, so that none of them can stand in for another.
TEST(BandColumns, PutEachDotWhereItBelongs) {
    test::withEachInstructionSet([] {
        for (const std::size_t rowSize : {4U, 16U, 20U, 64U, 68U}) {
            for (std::size_t dot = 0; dot < 64 * rowSize; dot += 3) {
                Bytes rows(kBandRows * rowSize, 0xFF);
                rows[dot / 8] = static_cast<Byte>(0xFF ^ (0x80 >> (dot % 8)));
                Bytes columns(8 * rowSize, 0xA5);
                transposeBand(rows, rowSize, columns);
                ASSERT_EQ(columns, columnsOneByOne(rows, rowSize)) << rowSize << " " << dot;
            }
        }
    });
}

TEST(BandColumns, WriteNothingBehindTheBand) {
    test::withEachInstructionSet([] {
        for (std::size_t rowSize = 0; rowSize <= 130; ++rowSize) {
            Bytes columns(8 * rowSize + 128, 0xA5);
            transposeBand(Bytes(kBandRows * rowSize, 0x0F), rowSize, columns);
            for (std::size_t i = 8 * rowSize; i < columns.size(); ++i) ASSERT_EQ(columns[i], 0xA5);
        }
    });
}

}  // namespace
}  // namespace tavio::encoder
