#include "TavioIpadSDK/encoder/stretch_count.h"

#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TavioIpadSDK/encoder/stretches.h"
#include "encoder/byte_stream.h"
#include "support/bitmaps.h"
#include "support/random_picture.h"

namespace tavio::encoder {
namespace {

std::size_t counted(const Bytes& bytes, const Placement& placement) {
    ByteStream stream(bytes);
    BandReader reader(stream);
    StreamSize size;
    countStretches(reader, placement, stream.afterLastBand(), size);
    return size.sum();
}

std::size_t written(const Bytes& bytes, const Placement& placement) {
    ByteStream stream(bytes);
    std::vector<LineParser> map;
    return writeStretches(stream, {}, placement, map).size();
}

TEST(StretchCount, AddsUpCommandsAndColumns) {
    const std::string blank(30, '\0');
    const Bytes bytes =
        test::bytesOf("<RC10,20><G64>DDDDDDDDDD" + blank + "DDDDDDDDDD" + std::string(14, '\0'));
    EXPECT_EQ(counted(bytes, {true, 10, 20, 576}), 2 * (std::string("<RC10,20><G10>").size() + 10));
    EXPECT_EQ(counted(test::bytesOf("<RC10,20><G3>abc"), {}), 16U);
    EXPECT_EQ(counted(test::bytesOf("<RC10,20><G3>" + std::string(3, '\0')), {}), 0U);
    EXPECT_EQ(counted({}, {}), 0U);
}

TEST(StretchCount, StopsAtTheBandThatIsTooMuch) {
    ByteStream stream(test::bytesOf("<RC1,2><G3>abc<RC3,4><G3>abc<RC5,6><G3>abc"));
    BandReader reader(stream);
    StreamSize size(2 * 14 + 13);
    EXPECT_THROW(countStretches(reader, {}, {}, size), StreamTooLong);
    EXPECT_EQ(size.sum(), 2U * 14U);
    ASSERT_TRUE(reader.band());
    EXPECT_EQ(reader.band()->numbers.row, 5);
}

// Pieces of commands, so that many share a ">", repeat each other, or have no "<G" of their own.
Bytes randomStream(test::Random& random) {
    const std::vector<std::string> pieces = {"<RC",
                                             "<RC<RC<RC",
                                             "<RC5",
                                             "<RC,",
                                             "<RC12,34>",
                                             "<RC-3",
                                             "<RC 4",
                                             ",",
                                             "x",
                                             ">",
                                             "><G40>",
                                             "7>",
                                             "<G9>",
                                             "<RC1,2><G2000000>",
                                             "xxxx",
                                             "<RC,><G1>",
                                             "<RC8,0><G-5>",
                                             std::string(19, '\0'),
                                             std::string(3, '\0')};
    std::string text = test::chance(random, 50) ? "x9<RC1,2><G90>" : "";
    for (int i = test::between(random, 1, 60); i > 0; --i) {
        text += pieces[random() % pieces.size()];
        if (test::chance(random, 20)) text += std::string(random() % 70, 'y');
    }
    return test::bytesOf(text);
}

TEST(StretchCount, IsTheSizeOfWhatIsWritten) {
    const unsigned first = std::random_device{}();
    for (unsigned seed = first; seed < first + 5000; ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Bytes bytes = randomStream(random);
        const bool isNear = test::chance(random, 50);
        const int farthest = isNear ? 40 : 1000000000;
        const Placement placement{test::chance(random, 50),
                                  test::between(random, -farthest, farthest),
                                  test::between(random, -farthest, farthest), 576};
        ASSERT_EQ(counted(bytes, placement), written(bytes, placement));
    }
}

}  // namespace
}  // namespace tavio::encoder
