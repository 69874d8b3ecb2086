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
using samples::pngChunk;
using samples::pngFile;
using samples::PngPlan;
using samples::refusal;
using samples::withChunkAfterHeader;
using samples::withChunkBeforeEnd;

constexpr UInt32 kOpaque = 0xFF000000;

Picture sample(const std::string& name) {
    return decoded(samples::corpusFile("png/" + name + ".png"));
}

std::int32_t numberAt(const Bytes& file, std::size_t at) {
    return (file.at(at) << 24) | (file.at(at + 1) << 16) | (file.at(at + 2) << 8) | file.at(at + 3);
}

PngPlan greyPlan() {
    PngPlan plan;
    plan.width = 3;
    plan.height = 2;
    plan.colourType = 0;
    plan.samples = {1, 2, 3, 4, 5, 6};
    return plan;
}

TEST(PngDecoder, DecodesAllGoodSamplesAndRefusesAllBadOnes) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    int good = 0;
    int bad = 0;
    for (const std::string& name : samples::corpusNames("png", ".png")) {
        SCOPED_TRACE(name);
        const Bytes file = samples::corpusFile("png/" + name);
        if (name.front() == 'x') {
            EXPECT_NE(refusal(file), "");
            ++bad;
            continue;
        }
        const Picture picture = decoded(file);
        EXPECT_EQ(picture.width, numberAt(file, 16));
        EXPECT_EQ(picture.height, numberAt(file, 20));
        EXPECT_EQ(picture.orientation, 1);
        ++good;
    }
    EXPECT_EQ(good, 162);
    EXPECT_EQ(bad, 14);
}

TEST(PngDecoder, DecodesInterlacedSamplesLikeTheOthers) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    int pairs = 0;
    for (const std::string& name : samples::corpusNames("png", ".png")) {
        if (name[3] != 'i' || (name[0] != 's' && name.substr(0, 3) != "bas")) continue;
        SCOPED_TRACE(name);
        std::string twin = name.substr(0, name.size() - 4);
        twin[3] = 'n';
        EXPECT_EQ(asText(decoded(samples::corpusFile("png/" + name))), asText(sample(twin)));
        ++pairs;
    }
    EXPECT_EQ(pairs, 33);
}

TEST(PngDecoder, DecodesTheSamePictureFromDifferentlyWrittenSamples) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    const std::vector<std::vector<std::string>> groups = {
        {"basn0g16", "oi1n0g16", "oi2n0g16", "oi4n0g16", "oi9n0g16"},  // IDAT in several chunks
        {"basn2c16", "oi1n2c16", "oi2n2c16", "oi4n2c16", "oi9n2c16", "pp0n2c16", "ps1n2c16"},
        {"z00n2c08", "z03n2c08", "z06n2c08", "z09n2c08"},  // degrees of compression
        {"basn4a08", "bgai4a08", "bgbn4a08"},              // backgrounds, not painted
        {"basn4a16", "bgai4a16", "bggn4a16"},
        {"basn6a08", "bgan6a08", "bgwn6a08"},
        {"basn6a16", "bgan6a16", "bgyn6a16"},
        {"basn0g08", "ps1n0g08", "ps2n0g08"},  // suggested palettes
        {"basn3p04", "ch1n3p04"},              // histograms
        {"basn3p08", "ch2n3p08"},
        {"cm0n0g04", "cm7n0g04", "cm9n0g04", "ct0n0g04", "ct1n0g04", "ctzn0g04"},  // times, texts
        {"tbbn3p08", "tbgn3p08", "tbwn3p08", "tbyn3p08", "tp1n3p08"},
    };
    for (const auto& group : groups) {
        for (const std::string& name : group)
            EXPECT_EQ(asText(sample(name)), asText(sample(group.front()))) << name;
    }
}

TEST(PngDecoder, DecodesTheExpectedPixelsOfSamples) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    struct Expected {
        std::string name;
        std::array<UInt32, 5> pixels;
    };
    constexpr std::array<std::size_t, 5> kPlaces = {0, 5, 31, 327, 1023};
    const std::vector<Expected> table = {
        {"basn0g01", {0xFFFFFFFF, 0xFFFFFFFF, 0xFF000000, 0xFF000000, 0xFF000000}},
        {"basn2c08", {0xFFFFFFFF, 0xFFFAFFFF, 0xFFE0FFFF, 0xFFFFB8FF, 0xFF000000}},
        {"basn3p08", {0xFF000001, 0xFF000201, 0xFF010001, 0xFF0053AA, 0xFFFFFEFF}},
        {"basn6a08", {0x00000000, 0x29010029, 0xFF0800FF, 0x3901392B, 0xFFFF2000}},
        {"basn4a16", {0x00000000, 0x00000000, 0x00000000, 0x73292929, 0x00000000}},
        {"tm3n3p02", {0x00000000, 0x00000000, 0x55550000, 0x00000000, 0xFFFF0000}},
    };
    for (const Expected& expected : table) {
        const Picture picture = sample(expected.name);
        for (std::size_t index = 0; index < kPlaces.size(); ++index) {
            EXPECT_EQ(picture.pixels.at(kPlaces.at(index)), expected.pixels.at(index))
                << expected.name << " at " << kPlaces.at(index);
        }
    }
}

// Its small preview picture has the orientation 6; the picture itself has 1.
TEST(PngDecoder, TakesTheOrientationOfThePictureNotOfItsPreview) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files here";
    EXPECT_EQ(sample("exif2c08").orientation, 1);
}

TEST(PngDecoder, ReadsTheOrientationBeforeAndBehindThePixels) {
    const Bytes chunk = pngChunk("eXIf", samples::exifBlock(6, true));
    const Bytes file = pngFile(greyPlan());
    EXPECT_EQ(decoded(withChunkAfterHeader(file, chunk)).orientation, 6);
    EXPECT_EQ(decoded(withChunkBeforeEnd(file, chunk)).orientation, 6);
    EXPECT_EQ(decoded(file).orientation, 1);
}

TEST(PngDecoder, RoundsSixteenBitsToTheNearestOfEight) {
    PngPlan plan;
    plan.width = 65536 / 16;
    plan.height = 16;
    plan.colourType = 0;
    plan.depth = 16;
    for (unsigned value = 0; value < 65536; ++value) {
        plan.samples.push_back(static_cast<Byte>(value >> 8));
        plan.samples.push_back(static_cast<Byte>(value));
    }
    const Picture picture = decoded(pngFile(plan));
    for (unsigned value = 0; value < 65536; ++value) {
        const UInt32 grey = (value * 255 + 32767) / 65535;
        ASSERT_EQ(picture.pixels[value], kOpaque | (grey * 0x010101)) << value;
    }
}

TEST(PngDecoder, SpreadsFewBitsOverTheWholeRange) {
    PngPlan plan = greyPlan();
    plan.width = 4;
    plan.height = 1;
    plan.depth = 2;
    plan.samples = {0x1B};
    EXPECT_EQ(decoded(pngFile(plan)).pixels,
              (std::vector<UInt32>{kOpaque, 0xFF555555, 0xFFAAAAAA, 0xFFFFFFFF}));
}

TEST(PngDecoder, PremultipliesAlpha) {
    PngPlan plan;
    plan.width = 3;
    plan.samples = {255, 128, 1, 128, 10, 20, 30, 0, 10, 20, 30, 255};
    const std::vector<UInt32> expected = {premultipliedPixel(255, 128, 1, 128), 0, 0xFF1E140A};
    EXPECT_EQ(decoded(pngFile(plan)).pixels, expected);
}

TEST(PngDecoder, ReadsTheAlphaOfAPalette) {
    PngPlan plan;
    plan.width = 3;
    plan.colourType = 3;
    plan.palette = {255, 0, 0, 0, 255, 0, 0, 0, 255};
    plan.paletteAlpha = {0, 128};
    plan.samples = {0, 1, 2};
    EXPECT_EQ(decoded(pngFile(plan)).pixels, (std::vector<UInt32>{0, 0x80008000, 0xFFFF0000}));
}

TEST(PngDecoder, MakesTheColourKeyTransparent) {
    const std::array<Byte, 2> key = {0, 5};
    const Bytes file = withChunkAfterHeader(pngFile(greyPlan()), pngChunk("tRNS", key));
    EXPECT_EQ(decoded(file).pixels,
              (std::vector<UInt32>{0xFF010101, 0xFF020202, 0xFF030303, 0xFF040404, 0, 0xFF060606}));
}

TEST(PngDecoder, TakesSamplesAsTheyAreStoredWhateverTheirGamma) {
    const std::array<Byte, 4> gamma = {0, 1, 0x86, 0xA0};  // 1.0
    const Bytes file = pngFile(greyPlan());
    EXPECT_EQ(asText(decoded(withChunkAfterHeader(file, pngChunk("gAMA", gamma)))),
              asText(decoded(file)));
}

TEST(PngDecoder, IgnoresBytesBehindTheEnd) {
    Bytes file = pngFile(greyPlan());
    const Picture picture = decoded(file);
    file.insert(file.end(), 1000, Byte{0x55});
    EXPECT_EQ(asText(decoded(file)), asText(picture));
}

TEST(PngDecoder, SkipsTextThatIsOfNoUse) {
    const Bytes text(100'000, 'A');
    const Bytes file = pngFile(greyPlan());
    EXPECT_EQ(asText(decoded(withChunkAfterHeader(file, pngChunk("zTXt", text)))),
              asText(decoded(file)));
}

// A PNG file of these chunks.
Bytes pngOf(const std::vector<Bytes>& chunks) {
    Bytes file = pngFile(greyPlan());
    file.resize(8);
    for (const Bytes& chunk : chunks) file.insert(file.end(), chunk.begin(), chunk.end());
    return file;
}

Bytes part(const Bytes& file, std::size_t begin, std::size_t count) {
    return Bytes(file.begin() + static_cast<std::ptrdiff_t>(begin),
                 file.begin() + static_cast<std::ptrdiff_t>(begin + count));
}

TEST(PngDecoder, RefusesAWrongChecksumOfTheUnpackedPixels) {
    const Bytes file = pngFile(greyPlan());
    const Bytes header = part(file, 8, 25);
    Bytes data = part(file, 41, static_cast<std::size_t>(numberAt(file, 33)));
    EXPECT_EQ(pngOf({header, pngChunk("IDAT", data), pngChunk("IEND", {})}), file);
    data.back() ^= 1;
    EXPECT_EQ(refusal(pngOf({header, pngChunk("IDAT", data), pngChunk("IEND", {})})),
              "the PNG file is damaged");
}

// The pixels are those of a picture of 3 x 2.
Bytes pngOfSize(std::uint32_t width, std::uint32_t height) {
    Bytes header;
    for (const std::uint32_t number : {width, height}) {
        for (const unsigned shift : {24U, 16U, 8U, 0U})
            header.push_back(static_cast<Byte>(number >> shift));
    }
    header.push_back(8);
    header.resize(13);
    const Bytes file = pngFile(greyPlan());
    return pngOf({pngChunk("IHDR", header), part(file, 33, file.size() - 33)});
}

TEST(PngDecoder, RefusesSizesBeforeItTakesMemoryForThem) {
    EXPECT_EQ(refusal(pngOfSize(16385, 16384)), "the PNG file has too many pixels");
    EXPECT_EQ(refusal(pngOfSize(0x7FFFFFFF, 0x7FFFFFFF)), "the PNG file has too many pixels");
    EXPECT_EQ(refusal(pngOfSize(16384, 16384)), "the PNG file is cut short");
    EXPECT_EQ(refusal(pngOfSize(0, 1)), "the PNG file is damaged");
    EXPECT_EQ(asText(decoded(pngOfSize(3, 2))), asText(decoded(pngFile(greyPlan()))));
}

TEST(PngDecoder, RefusesMoreOrFewerPixelsThanTheSizeAsksFor) {
    EXPECT_EQ(refusal(pngOfSize(3, 3)), "the PNG file is damaged");
    EXPECT_EQ(refusal(pngOfSize(3, 1)), "the PNG file is damaged");
}

}  // namespace
}  // namespace tavio::pictures
