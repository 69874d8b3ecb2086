#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"

namespace tavio::pictures {
namespace {

using samples::bmpFile;
using samples::BmpPlan;
using samples::decoded;
using samples::refusal;

// Entry 0 prints as ".", 1 as "x", 2 as "o".
const Bytes kPalette = {1, 0, 0, 0, 2, 0, 0, 0, 3, 0, 0, 0};

// A letter a pixel, "-" for a transparent one.
std::string drawn(const Picture& picture) {
    std::string text;
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        text += std::string("-.xo").at((picture.pixels[at] >> 16) & 3);
        if ((at + 1) % static_cast<std::size_t>(picture.width) == 0) text += '/';
    }
    return text;
}

BmpPlan runs(std::int32_t width, std::int32_t height, std::uint32_t bits, const Bytes& data) {
    BmpPlan plan;
    plan.width = width;
    plan.height = height;
    plan.bits = bits;
    plan.coding = bits == 8 ? 1 : 2;
    plan.paletteEntries = 3;
    plan.palette = kPalette;
    plan.data = data;
    return plan;
}

BmpPlan masked(const Bytes& masks, const Bytes& pixel) {
    BmpPlan plan;
    plan.bits = static_cast<std::uint32_t>(pixel.size() * 8);
    plan.coding = 3;
    plan.palette = masks;
    plan.data = pixel;
    plan.data.resize(4);
    return plan;
}

TEST(BmpDecoder, DrawsRunsOfOneIndexAndOfSeveral) {
    EXPECT_EQ(drawn(decoded(bmpFile(runs(4, 2, 8, {4, 1, 0, 0, 0, 4, 0, 1, 2, 0, 0, 1})))),
              ".xo./xxxx/");
    EXPECT_EQ(drawn(decoded(bmpFile(runs(3, 1, 8, {0, 3, 2, 1, 0, 0, 0, 1})))), "ox./");
    EXPECT_EQ(drawn(decoded(bmpFile(runs(5, 1, 4, {5, 0x12, 0, 1})))), "xoxox/");
    EXPECT_EQ(drawn(decoded(bmpFile(runs(5, 1, 4, {0, 5, 0x01, 0x21, 0x00, 0x00, 0, 1})))),
              ".xox./");
}

TEST(BmpDecoder, LeavesWhatRunsSkipTransparent) {
    EXPECT_EQ(drawn(decoded(bmpFile(runs(4, 3, 8, {1, 1, 0, 2, 1, 2, 2, 2, 0, 1})))),
              "--oo/----/x---/");
    EXPECT_EQ(drawn(decoded(bmpFile(runs(2, 2, 8, {0, 1})))), "--/--/");
}

TEST(BmpDecoder, RefusesRunsThatLeaveThePicture) {
    for (const Bytes& data : {Bytes{3, 1, 0, 1}, Bytes{0, 0, 1, 1, 0, 1}, Bytes{0, 2, 3, 0, 0, 1},
                              Bytes{0, 2, 0, 2, 0, 1}, Bytes{0, 3, 1, 1, 1, 0, 0, 1}}) {
        EXPECT_EQ(refusal(bmpFile(runs(2, 1, 8, data))),
                  "the BMP file draws outside of its picture");
    }
}

TEST(BmpDecoder, RefusesRunsOfAnIndexOutsideOfThePalette) {
    EXPECT_EQ(refusal(bmpFile(runs(2, 1, 8, {2, 3, 0, 1}))),
              "the BMP file has a pixel outside of its palette");
}

TEST(BmpDecoder, NeedsTheEndMarkOfRunsOnlyWhereTheirSizeIsNotStated) {
    BmpPlan plan = runs(2, 1, 8, {2, 1});
    EXPECT_EQ(refusal(bmpFile(plan)), "the BMP file is cut short");
    plan.dataBytes = 2;
    EXPECT_EQ(drawn(decoded(bmpFile(plan))), "xx/");
    plan.dataBytes = 4;
    EXPECT_EQ(refusal(bmpFile(plan)), "the BMP file is cut short");
}

TEST(BmpDecoder, ReadsRowsFromTheBottomOrFromTheTop) {
    BmpPlan plan;
    plan.height = 2;
    plan.data = {1, 2, 3, 0, 4, 5, 6, 0};
    EXPECT_EQ(decoded(bmpFile(plan)).pixels, (std::vector<UInt32>{0xFF040506, 0xFF010203}));
    plan.height = -2;
    EXPECT_EQ(decoded(bmpFile(plan)).pixels, (std::vector<UInt32>{0xFF010203, 0xFF040506}));
}

TEST(BmpDecoder, ReadsThePaletteOfAnOldHeader) {
    BmpPlan plan;
    plan.headerBytes = 12;
    plan.bits = 1;
    plan.width = 3;
    plan.palette = {1, 2, 3, 4, 5, 6};
    plan.data = {0x40, 0, 0, 0};
    EXPECT_EQ(decoded(bmpFile(plan)).pixels,
              (std::vector<UInt32>{0xFF010203, 0xFF040506, 0xFF010203}));
}

TEST(BmpDecoder, SpreadsMaskedBitsOverTheWholeRange) {
    const Bytes masks = {0, 0xF0, 0, 0, 0x0E, 0, 0, 0, 1, 0, 0, 0};  // 4, 3 and 1 bits
    // 0xA005: red 10 of 15, green 2 of 7, blue 1 of 1.
    EXPECT_EQ(decoded(bmpFile(masked(masks, {0x05, 0xA0}))).pixels.front(),
              premultipliedPixel(170, 73, 255, 255));
}

TEST(BmpDecoder, RefusesMasksWithHolesOrBeyondThePixel) {
    for (const Bytes& masks :
         {Bytes{5, 0, 0, 0, 2, 0, 0, 0, 8, 0, 0, 0}, Bytes{0, 0, 1, 0, 2, 0, 0, 0, 8, 0, 0, 0}})
        EXPECT_EQ(refusal(bmpFile(masked(masks, {1, 1}))), "the BMP file has damaged bit masks");
}

TEST(BmpDecoder, RefusesSizesBeforeItTakesMemoryForThem) {
    BmpPlan plan;
    plan.data = {1, 2, 3, 0};
    for (const auto& [width, height] : {std::pair{16385, 16384},
                                        {INT32_MAX, INT32_MAX},
                                        {INT32_MAX, INT32_MIN},
                                        {1, INT32_MIN}}) {
        plan.width = width;
        plan.height = height;
        EXPECT_EQ(refusal(bmpFile(plan)), "the BMP file has too many pixels");
    }
    plan.width = plan.height = 16384;
    EXPECT_EQ(refusal(bmpFile(plan)), "the BMP file is cut short");
}

TEST(BmpDecoder, RefusesAnEmptyPicture) {
    BmpPlan plan;
    plan.data = {1, 2, 3, 0};
    for (const auto& [width, height] : {std::pair{0, 1}, {1, 0}, {-1, 1}, {INT32_MIN, 1}}) {
        plan.width = width;
        plan.height = height;
        EXPECT_EQ(refusal(bmpFile(plan)), "the BMP file has a damaged header");
    }
}

BmpPlan holding(const Bytes& file, std::int32_t width, std::uint32_t coding) {
    BmpPlan plan;
    plan.width = width;
    plan.height = 16;
    plan.bits = 0;
    plan.coding = coding;
    plan.dataBytes = static_cast<std::uint32_t>(file.size());
    plan.data = file;
    return plan;
}

TEST(BmpDecoder, HandsAFileInsideOn) {
    samples::JpegPlan inside;
    inside.samples.assign(std::size_t{3} * 16 * 16, 99);
    inside.app1 = {samples::exifApp1(6, true)};
    const Bytes file = samples::jpegFile(inside);
    const Picture picture = decoded(bmpFile(holding(file, 16, 4)));
    EXPECT_EQ(picture.pixels.front(), 0xFF636363);
    EXPECT_EQ(picture.orientation, 1);
    EXPECT_EQ(refusal(bmpFile(holding(file, 15, 4))),
              "the BMP file holds a picture of another size");
    EXPECT_EQ(refusal(bmpFile(holding(file, 16, 5))), "the PNG file is damaged");
}

}  // namespace
}  // namespace tavio::pictures
