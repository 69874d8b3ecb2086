#include "TavioIpadSDK/encoder/stretches.h"

#include <gtest/gtest.h>

#include "encoder/byte_stream.h"
#include "support/bitmaps.h"

namespace tavio::encoder {
namespace {

using test::bytesOf;
using test::joined;
using test::readable;

constexpr Placement kLandscape{true, 10, 20, 576};
constexpr Placement kPortrait{false, 10, 20, 576};

Bytes data(std::size_t count) {
    return Bytes(count, 'D');
}
Bytes blank(std::size_t count) {
    return Bytes(count, 0);
}

struct Band {
    std::string position;
    Bytes columns;
};

// The bands as the first pass leaves them.
Bytes streamOf(const std::vector<Band>& bands) {
    Bytes stream;
    for (const Band& band : bands) {
        const std::string commands =
            band.position + "<G" + std::to_string(band.columns.size()) + ">";
        stream = joined({stream, bytesOf(commands), band.columns});
    }
    return stream;
}

std::string written(const Bytes& stream, const Placement& placement, std::string_view opening) {
    ByteStream bands(stream);
    std::vector<LineParser> map(LINEMAPMAX);
    return readable(writeStretches(bands, bytesOf(opening), placement, map));
}

std::string written(const std::vector<Band>& bands, const Placement& placement) {
    return written(streamOf(bands), placement, "OPEN");
}

std::string text(std::initializer_list<Bytes> parts) {
    return readable(joined(parts));
}

TEST(Stretches, SplitABandAtALongBlankRunAndDropAShortOneAtItsEnd) {
    const Bytes columns = joined({data(10), blank(30), data(10), blank(14)});
    EXPECT_EQ(written({{"<RC10,20>", columns}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G10>"), data(10), bytesOf("<RC10,60><G10>"), data(10)}));
}

TEST(Stretches, Carry18BlankColumnsAndSplitAt19) {
    EXPECT_EQ(written({{"<RC10,20>", joined({data(5), blank(18), data(5)})}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G28>"), data(5), blank(18), data(5)}));
    EXPECT_EQ(written({{"<RC10,20>", joined({data(5), blank(19), data(5)})}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G5>"), data(5), bytesOf("<RC10,44><G5>"), data(5)}));
}

TEST(Stretches, PlaceALandscapeBandThatBeginsLongBlankAtTheRunsLengthWithoutTheColumn) {
    EXPECT_EQ(written({{"<RC10,20>", joined({blank(25), data(3)})}}, kLandscape),
              text({bytesOf("OPEN<RC10,25><G3>"), data(3)}));
}

TEST(Stretches, AddTheColumnFromTheSecondStretchOn) {
    const Bytes columns = joined({blank(25), data(3), blank(30), data(4)});
    EXPECT_EQ(written({{"<RC10,20>", columns}}, kLandscape),
              text({bytesOf("OPEN<RC10,25><G3>"), data(3), bytesOf("<RC10,78><G4>"), data(4)}));
}

TEST(Stretches, SendAShortBlankRunAtABandsBeginningAsZeros) {
    EXPECT_EQ(written({{"<RC10,20>", joined({blank(18), data(3)})}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G21>"), blank(18), data(3)}));
}

TEST(Stretches, WriteNothingForAnAllBlankBand) {
    EXPECT_EQ(written({{"<RC10,20>", blank(64)}}, kLandscape), "OPEN");
}

TEST(Stretches, CopyABandWithoutAnyBlankColumnUnchanged) {
    EXPECT_EQ(written({{"<RC10,20>", data(64)}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G64>"), data(64)}));
}

TEST(Stretches, FlushAtALongBlankRunAtTheBandsEndWithoutSkippingIt) {
    const Bytes columns = joined({data(4), blank(40)});
    const std::vector<Band> bands = {{"<RC10,20>", columns}, {"<RC18,20>", columns}};
    EXPECT_EQ(written(bands, kLandscape),
              text({bytesOf("OPEN<RC10,20><G4>"), data(4), bytesOf("<RC18,20><G4>"), data(4)}));
}

TEST(Stretches, CountPortraitRowsBackFromTheDotWidth) {
    const Bytes columns = joined({data(10), blank(30), data(10), blank(14)});
    const std::vector<Band> bands = {{"<RC10,20>", columns}, {"<RC566,28>", columns}};
    EXPECT_EQ(written(bands, kPortrait),
              text({bytesOf("OPEN<RC566,20><G10>"), data(10), bytesOf("<RC526,20><G10>"), data(10),
                    bytesOf("<RC566,28><G10>"), data(10), bytesOf("<RC526,28><G10>"), data(10)}));
}

TEST(Stretches, KeepTheFirstPortraitBandsRowWhereItIsCopiedWhole) {
    const std::vector<Band> bands = {{"<RC10,20>", data(32)}, {"<RC566,28>", data(32)}};
    EXPECT_EQ(written(bands, kPortrait), text({bytesOf("OPEN<RC10,20><G32>"), data(32),
                                               bytesOf("<RC566,28><G32>"), data(32)}));
}

TEST(Stretches, ReplaceAColumnOfExactlyZeroByTheJobsColumn) {
    const Placement placement{true, 0, -25, 0};
    const Bytes columns = joined({data(2), blank(19), data(2), blank(2)});
    // 21 columns on, 19 + 2 - 25 = -4 stays; the first lies at column 0 and so at -25.
    EXPECT_EQ(written({{"<RC8,-25>", columns}}, placement),
              text({bytesOf("OPEN<RC8,-25><G2>"), data(2), bytesOf("<RC8,-4><G2>"), data(2)}));
}

TEST(Stretches, TakeGraphicsThatHoldAPositionForACommand) {
    const Bytes columns = joined({bytesOf("ab<RC7,8>"), blank(23)});
    const std::string out = written({{"<RC10,20>", columns}}, kLandscape);
    // The band itself, then one more found inside it: 32 bytes from four after its ">".
    EXPECT_EQ(out, text({bytesOf("OPEN<RC10,20><G9>"), bytesOf("ab<RC7,8>")}));
    const Bytes dataAfter = joined({bytesOf("<RC7,8>...DD"), blank(20)});
    EXPECT_EQ(written({{"<RC10,20>", dataAfter}}, kLandscape),
              text({bytesOf("OPEN<RC10,20><G12><RC7,8>...DD<RC7,20><G2>DD")}));
}

TEST(Stretches, LeaveTheLastBandsRunsInTheLineMapAndEmptyTheRest) {
    std::vector<LineParser> map(LINEMAPMAX, {9, 9, DATA});
    ByteStream stream(streamOf({{"<RC10,20>", joined({data(3), blank(5), data(2)})},
                                {"<RC18,20>", joined({blank(4), data(6)})}}));
    writeStretches(stream, {}, kLandscape, map);
    const std::int32_t second = 9 + 5 + 10 + 9 + 5;
    EXPECT_EQ(map[0], (LineParser{second, 4, ZEROS}));
    EXPECT_EQ(map[1], (LineParser{second + 4, 6, DATA}));
    for (std::size_t i = 2; i < map.size(); ++i) ASSERT_EQ(map[i], LineParser{}) << i;
}

TEST(Stretches, WriteABandOfMoreThan2500RunsAsIfTheTableWereLargeEnough) {
    Bytes columns;
    Bytes expected = bytesOf("OPEN");
    for (int i = 0; i < 2000; ++i) {
        columns = joined({columns, data(1), blank(19)});
        const std::string column = std::to_string(20 + 20 * i);
        expected = joined({expected, bytesOf("<RC10," + column + "><G1>"), data(1)});
    }
    EXPECT_EQ(written({{"<RC10,20>", columns}}, kLandscape), readable(expected));
}

TEST(Stretches, ClipAWholeBandAtTheStreamsEnd) {
    // Nine bytes from "abc" on, all printing: copied whole. Then "de".
    EXPECT_EQ(written(bytesOf("<RC1,2><G9>abc<RC3,4><G2>de"), {}, ""),
              "<RC1,2><G9>abc<RC3,4<RC3,4><G2>de");
    // A count that reaches past the end has zeros there, and so two runs: a stretch of its own.
    EXPECT_EQ(written(bytesOf("<RC1,0><G9>abc"), {}, ""), "<RC1,0><G3>abc");
}

TEST(Stretches, CopyNothingWhereTheDataLiesBeforeTheCommand) {
    // The second "<RC" has no "<G": its span runs back to the first band's data and is negative.
    EXPECT_EQ(written(bytesOf("<RC1,2><G2>ab<RC3,4>....."), {}, ""), "<RC1,2><G2>ab");
}

TEST(Stretches, LeaveTheLineMapAsItIsWithoutAnyBand) {
    const std::vector<LineParser> before(LINEMAPMAX, {9, 9, DATA});
    std::vector<LineParser> map = before;
    ByteStream stream(bytesOf("<G4>abcd"));
    EXPECT_EQ(readable(writeStretches(stream, bytesOf("a"), kLandscape, map, bytesOf("z"))), "az");
    EXPECT_EQ(map, before);
}

}  // namespace
}  // namespace tavio::encoder
