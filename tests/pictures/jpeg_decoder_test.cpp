#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "pictures/sample_pictures.h"

namespace tavio::pictures {
namespace {

using samples::asText;
using samples::decoded;
using samples::exifApp1;
using samples::JpegColour;
using samples::jpegFile;
using samples::JpegPlan;
using samples::refusal;

// One colour all over, so that the coding has next to nothing to lose.
JpegPlan flat(JpegColour colour, const Bytes& sample) {
    JpegPlan plan;
    plan.colour = colour;
    for (std::uint32_t pixel = 0; pixel < plan.width * plan.height; ++pixel)
        plan.samples.insert(plan.samples.end(), sample.begin(), sample.end());
    return plan;
}

JpegPlan gradient() {
    JpegPlan plan;
    plan.width = 40;
    plan.height = 24;
    for (unsigned row = 0; row < plan.height; ++row) {
        for (unsigned column = 0; column < plan.width; ++column) {
            plan.samples.push_back(static_cast<Byte>(column * 6));
            plan.samples.push_back(static_cast<Byte>(row * 10));
            plan.samples.push_back(static_cast<Byte>(255 - column * 3 - row * 5));
        }
    }
    return plan;
}

void expectColour(const Picture& picture, std::array<int, 3> expected) {
    ASSERT_EQ(picture.pixels.size(), 256U);
    for (const UInt32 pixel : picture.pixels) {
        ASSERT_EQ(pixel >> 24, 0xFFU);
        for (std::size_t channel = 0; channel < 3; ++channel) {
            ASSERT_NEAR(static_cast<int>((pixel >> (8 * channel)) & 0xFF), expected.at(channel), 2)
                << asText(picture);
        }
    }
}

std::vector<Bytes> app1Of(std::initializer_list<Bytes> blocks) {
    return blocks;
}

Bytes xmpApp1() {
    const std::string name = "http://ns.adobe.com/xap/1.0/";
    Bytes content(name.begin(), name.end());
    content.push_back(0);
    content.insert(content.end(), 500, Byte{'x'});
    return content;
}

int orientationWith(std::vector<Bytes> app1) {
    JpegPlan plan = flat(JpegColour::kGrey, {100});
    plan.app1 = std::move(app1);
    return decoded(jpegFile(plan)).orientation;
}

TEST(JpegDecoder, DecodesGreyAndColours) {
    expectColour(decoded(jpegFile(flat(JpegColour::kGrey, {77}))), {77, 77, 77});
    expectColour(decoded(jpegFile(flat(JpegColour::kYcbcr, {200, 100, 30}))), {200, 100, 30});
    expectColour(decoded(jpegFile(flat(JpegColour::kRgb, {200, 100, 30}))), {200, 100, 30});
}

TEST(JpegDecoder, TakesInksWithAdobesMarkerForInverted) {
    // Cyan 80 of 255 left, magenta all, yellow half, black 200 of 255 left.
    const Bytes inks = {80, 255, 128, 200};
    const std::array<int, 3> expected = {80 * 200 / 255, 200, 128 * 200 / 255};
    expectColour(decoded(jpegFile(flat(JpegColour::kCmyk, inks))), expected);
    expectColour(decoded(jpegFile(flat(JpegColour::kYcck, inks))), expected);
}

TEST(JpegDecoder, TakesInksWithoutAdobesMarkerAsTheyAre) {
    JpegPlan plan = flat(JpegColour::kCmyk, {175, 0, 127, 55});
    plan.adobe = false;
    expectColour(decoded(jpegFile(plan)), {80 * 200 / 255, 200, 128 * 200 / 255});
}

TEST(JpegDecoder, DecodesTheSamePictureFromEveryCoding) {
    const std::string expected = asText(decoded(jpegFile(gradient())));
    JpegPlan plan = gradient();
    plan.oneScanEach = true;
    EXPECT_EQ(asText(decoded(jpegFile(plan))), expected);
    plan = gradient();
    plan.progressive = true;
    EXPECT_EQ(asText(decoded(jpegFile(plan))), expected);
    plan.arithmetic = true;
    EXPECT_EQ(asText(decoded(jpegFile(plan))), expected);
    plan.progressive = false;
    EXPECT_EQ(asText(decoded(jpegFile(plan))), expected);
}

TEST(JpegDecoder, ReadsTheOrientationBehindOtherBlocks) {
    EXPECT_EQ(orientationWith({}), 1);
    EXPECT_EQ(orientationWith(app1Of({exifApp1(6, true)})), 6);
    EXPECT_EQ(orientationWith(app1Of({xmpApp1(), exifApp1(8, false)})), 8);
    EXPECT_EQ(orientationWith(app1Of({{}, {'E'}, xmpApp1(), xmpApp1(), exifApp1(3, true)})), 3);
    EXPECT_EQ(orientationWith(app1Of({exifApp1(5, true), xmpApp1()})), 5);
    EXPECT_EQ(orientationWith(app1Of({xmpApp1()})), 1);
}

TEST(JpegDecoder, KeepsTheOrientationOfAProgressiveFile) {
    JpegPlan plan = gradient();
    plan.progressive = true;
    plan.app1 = {xmpApp1(), exifApp1(7, false)};
    const Picture picture = decoded(jpegFile(plan));
    EXPECT_EQ(picture.orientation, 7);
    EXPECT_EQ(picture.width, 40);
    EXPECT_EQ(picture.height, 24);
}

TEST(JpegDecoder, IgnoresBytesBehindTheEnd) {
    Bytes file = jpegFile(gradient());
    const Picture picture = decoded(file);
    file.insert(file.end(), 1000, Byte{0x55});
    EXPECT_EQ(asText(decoded(file)), asText(picture));
}

TEST(JpegDecoder, RefusesAFileWithoutItsEndMarker) {
    Bytes file = jpegFile(gradient());
    file.resize(file.size() - 2);
    EXPECT_EQ(refusal(file), "the JPEG file is cut short");
}

TEST(JpegDecoder, RefusesAFileThatEndsWithinItsPixels) {
    Bytes file = jpegFile(gradient());
    file.resize(file.size() - 200);
    EXPECT_EQ(refusal(file), "the JPEG file is cut short");
    // Even when it has been given an end.
    file.insert(file.end(), {0xFF, 0xD9});
    EXPECT_EQ(refusal(file), "the JPEG file is damaged");
}

// The last scan of the file again and again; each replaces the one before.
Bytes withRepeatedScan(int times) {
    JpegPlan plan = gradient();
    plan.oneScanEach = true;
    const Bytes file = jpegFile(plan);
    std::size_t begin = file.size() - 2;
    while (file[begin] != 0xFF || file[begin + 1] != 0xDA) --begin;
    const Bytes scan(file.begin() + static_cast<std::ptrdiff_t>(begin), file.end() - 2);
    Bytes repeated(file.begin(), file.end() - 2);
    for (int time = 0; time < times; ++time)
        repeated.insert(repeated.end(), scan.begin(), scan.end());
    repeated.insert(repeated.end(), {0xFF, 0xD9});
    return repeated;
}

TEST(JpegDecoder, RefusesMoreScansThanAnyPictureNeeds) {
    EXPECT_EQ(asText(decoded(withRepeatedScan(100))), asText(decoded(jpegFile(gradient()))));
    EXPECT_EQ(refusal(withRepeatedScan(600)), "the JPEG file has too many scans");
}

TEST(JpegDecoder, RefusesSizesBeforeItTakesMemoryForThem) {
    Bytes file = jpegFile(gradient());
    std::size_t frame = 0;
    while (file[frame] != 0xFF || file[frame + 1] != 0xC0) ++frame;
    for (std::size_t at = frame + 5; at < frame + 9; ++at) file[at] = 0xF0;
    EXPECT_EQ(refusal(file), "the JPEG file has too many pixels");
}

TEST(JpegDecoder, RefusesTwelveBitsASample) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    EXPECT_EQ(refusal(samples::corpusFile("jpeg/monkey12.jpg")),
              "the JPEG file is of a kind not supported");
}

TEST(JpegDecoder, DecodesTheSameSamplePictureFromDifferentCodings) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const Picture original = decoded(samples::corpusFile("jpeg/testorig.jpg"));
    EXPECT_EQ(original.width, 227);
    EXPECT_EQ(original.height, 149);
    for (const std::string name : {"jpeg/testimgint.jpg", "jpeg/testimgari.jpg"}) {
        SCOPED_TRACE(name);
        const Picture picture = decoded(samples::corpusFile(name));
        EXPECT_LT(samples::meanDifference(picture, original), 4.0);
    }
}

}  // namespace
}  // namespace tavio::pictures
