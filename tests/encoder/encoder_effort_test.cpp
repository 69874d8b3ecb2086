// The work of the second pass is bounded by the bytes that it reads and writes. Counted, not timed.
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/band_runs.h"
#include "TavioIpadSDK/encoder/band_scanner.h"
#include "TavioIpadSDK/encoder/command_text.h"
#include "TavioIpadSDK/encoder/stream_size.h"
#include "TavioIpadSDK/encoder/stretches.h"
#include "encoder/byte_stream.h"
#include "support/bitmaps.h"

namespace tavio::encoder {
namespace {

Bytes repeated(std::string_view piece, std::size_t size) {
    Bytes bytes;
    while (bytes.size() < size) bytes.insert(bytes.end(), piece.begin(), piece.end());
    bytes.resize(size);
    return bytes;
}

// Bands of these columns, as the first pass leaves them.
Bytes bandsOf(const Bytes& columns, int bands) {
    Bytes stream;
    const std::string graphics = graphicsCommand(static_cast<std::int64_t>(columns.size()));
    for (int band = 0; band < bands; ++band) {
        const std::string commands = positionCommand(8 * band, 0) + graphics;
        stream.insert(stream.end(), commands.begin(), commands.end());
        stream.insert(stream.end(), columns.begin(), columns.end());
    }
    return stream;
}

const std::string kBlank(19, '\0');

std::vector<Bytes> hardColumns() {
    constexpr std::size_t kColumns = 6000;
    return {repeated("<", kColumns),
            repeated("<R", kColumns),
            repeated("<RC", kColumns),
            repeated("<RC,", kColumns),
            repeated("<RC1,2>", kColumns),
            repeated("<RC1,2><G", kColumns),
            repeated("<RC1,2><G2000000000>", kColumns),
            repeated("<RC11111111111111111111111", kColumns),
            repeated("<RC                       ", kColumns),
            repeated(std::string("x") + '\0', kColumns),
            repeated("x" + kBlank, kColumns),
            repeated("<RC" + kBlank, kColumns),
            repeated("<RC1,2><G2000000000>" + kBlank, kColumns),
            Bytes(kColumns, 0),
            Bytes(kColumns, 255)};
}

TEST(EncoderEffort, ReadsEachByteAFixedNumberOfTimesHoweverManyCommandsThereAre) {
    for (const Bytes& columns : hardColumns()) {
        SCOPED_TRACE(test::readable(std::span(columns).first(30)));
        ByteStream stream(bandsOf(columns, 20));
        BandScanner scanner(stream);
        BandRuns runs(stream);
        std::size_t found = 0;
        while (const auto band = scanner.next()) {
            stream.forget(band->startCommand);
            const auto start = static_cast<std::int64_t>(band->firstByte);
            const Columns all{start, start + band->numbers.count};
            runs.kindOf(all);
            runs.longRunsIn(all);
            ++found;
        }
        EXPECT_GE(found, 20U);
        EXPECT_LE(scanner.bytesRead(), 4 * stream.size());
        EXPECT_LE(runs.bytesRead(), 2 * stream.size() + 4096);  // a last block reaches past the end
    }
}

// The zeros that a count promises past the end are not walked, nor written.
TEST(EncoderEffort, DoesNotWalkAlongZerosBehindTheEnd) {
    ByteStream stream(test::bytesOf("<RC1,0><G2147483647>abc"));
    std::vector<LineParser> map(LINEMAPMAX);
    EXPECT_EQ(test::readable(writeStretches(stream, {}, {}, map)), "<RC1,0><G3>abc");
    EXPECT_EQ(map[0], (LineParser{20, 3, DATA}));
    EXPECT_EQ(map[1], (LineParser{23, INT32_MAX - 3, ZEROS}));
    BandRuns runs(stream);
    runs.kindOf({20, std::int64_t{20} + INT32_MAX});
    runs.longRunsIn({20, std::int64_t{20} + INT32_MAX});
    EXPECT_LE(runs.bytesRead(), 5000U);
}

// Every "<RC" would copy its band and the next: 40 GB from 4 MB. They are counted, so that neither
// time nor memory is spent on bytes that are never sent.
TEST(EncoderEffort, RefusesWhatWouldBeTooLongWithoutWritingIt) {
    for (const std::string& end : {std::string(), kBlank}) {  // copied whole, or in stretches
        Bytes columns = repeated("<RC", 18000);
        columns.insert(columns.end(), end.begin(), end.end());
        ByteStream stream(bandsOf(columns, 230));
        std::vector<LineParser> map(LINEMAPMAX);
        EXPECT_THROW(writeStretches(stream, {}, {}, map), StreamTooLong);
        EXPECT_EQ(map[0].count, 18000);  // the runs of the band that was too much
        EXPECT_EQ(map[0].block_type, DATA);
    }
}

// Commands without "<G" whose columns all print copy nothing when the last "<G" lies far before them:
// 25,000 of them are not taken for 200,000 bytes each, which would be too many.
TEST(EncoderEffort, CountsOnlyWhatWouldBeWritten) {
    const auto printing = [](std::size_t count) { return Bytes(count, 'x'); };
    Bytes bytes;
    for (int i = 0; i < 6; ++i)
        bytes = test::joined({bytes, test::bytesOf("<RC1,2><G200000>"), printing(10)});
    bytes = test::joined(
        {bytes, printing(300000), repeated("<RC", 75000), test::bytesOf(">"), printing(200200)});
    ByteStream stream(bytes);
    std::vector<LineParser> map(LINEMAPMAX);
    EXPECT_EQ(writeStretches(stream, {}, {}, map).size(), 6U * 200016U);
}

TEST(EncoderEffort, WritesOnceMoreWhatTurnsOutLongerThanTheBands) {
    // Each false command copies the rest of its band: 66 times the stream in all.
    const Bytes columns = repeated("<RC1,2>", 924);
    ByteStream stream(bandsOf(columns, 3));
    std::vector<LineParser> map(LINEMAPMAX);
    const StreamBytes written = writeStretches(stream, {}, {}, map);
    EXPECT_GT(written.size(), 20 * stream.size());
}

TEST(EncoderEffort, HoldsAFewBandsOfAStreamOnly) {
    ByteStream stream(Bytes{});
    EXPECT_EQ(stream.bytesHeld(), 0U);
    const Bytes pixels(640 * 4000, 0x5A);
    InfoHeader info;
    info.biWidth = 5120;
    info.biHeight = 4000;
    info.biBitCount = 1;
    ByteStream bands(pixels, rowGeometry(info), info.biHeight, {}, {});
    std::vector<LineParser> map(LINEMAPMAX);
    writeStretches(bands, {}, {}, map);
    EXPECT_LE(bands.bytesHeld(), std::size_t{1} << 16);
    EXPECT_GT(bands.size(), 8 * bands.bytesHeld());
}

}  // namespace
}  // namespace tavio::encoder
