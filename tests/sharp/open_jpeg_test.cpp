// JPEG files as they are printed: their luminance, at a fitting scale.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "TavioIpadSDK/sharp/open_grey.h"
#include "TavioIpadSDK/sharp/open_picture.h"
#include "TavioIpadSDK/sharp/resampled_grey.h"
#include "TavioIpadSDK/sharp/turned_rows.h"
#include "pictures/sample_pictures.h"
#include "sharp/printed_twin.h"

namespace tavio::sharp {
namespace {

using pictures::Picture;
using pictures::samples::JpegColour;
using pictures::samples::JpegPlan;
namespace samples = pictures::samples;

constexpr std::uint32_t kSeed = 99;

// What open_picture.h states.
constexpr Difference kAtThatScale{0.25, 16};
constexpr Difference kBetweenScales{4, 96};

constexpr FitRules kOwnSize{Fit::kActual, Turn::k0, 1, 1};

GreyPicture printed(const Bytes& file, const FitRules& rules, bool mayUseThreads = false) {
    const SharpPicture picture =
        openPicture(std::make_shared<const Bytes>(file), rules, mayUseThreads);
    EXPECT_EQ(picture.why, "");
    return picture.rows ? readAll(*picture.rows) : GreyPicture{};
}

// The stored luminance as a picture, in the orientation of the file.
Picture storedGrey(const Bytes& file) {
    const auto source = openGrey(file).source;
    Picture picture{source->width(), source->height(), {}, source->orientation()};
    Bytes values(static_cast<std::size_t>(picture.width) *
                 static_cast<std::size_t>(picture.height));
    source->read(values);
    for (const Byte value : values)
        picture.pixels.push_back(pictures::premultipliedPixel(value, value, value, 255));
    return picture;
}

// Smooth shapes with sharp edges, which differ in each channel.
JpegPlan jpeg(JpegColour colour, std::uint32_t width, std::uint32_t height) {
    JpegPlan plan;
    plan.width = width;
    plan.height = height;
    plan.colour = colour;
    const std::size_t channels = colour == JpegColour::kGrey                                  ? 1
                                 : colour == JpegColour::kCmyk || colour == JpegColour::kYcck ? 4
                                                                                              : 3;
    for (std::size_t row = 0; row < height; ++row) {
        for (std::size_t column = 0; column < width; ++column) {
            for (std::size_t channel = 0; channel < channels; ++channel) {
                const std::size_t shade = column * 180 / width + row * 60 / height;
                const bool isInside = (column / 23 + row / 17 + channel) % 3 == 0;
                plan.samples.push_back(static_cast<Byte>(isInside ? 255 - shade : shade));
            }
        }
    }
    return plan;
}

TEST(SharpJpegs, HaveTheLuminanceOfTheirColours) {
    for (const JpegColour colour : {JpegColour::kGrey, JpegColour::kYcbcr, JpegColour::kRgb,
                                    JpegColour::kCmyk, JpegColour::kYcck}) {
        const Bytes file = samples::jpegFile(jpeg(colour, 203, 101));
        const Difference apart =
            difference(printed(file, kOwnSize), slowlyPrinted(samples::decoded(file), kOwnSize));
        SCOPED_TRACE(static_cast<int>(colour));
        EXPECT_LT(apart.mean, 1);
        if (colour == JpegColour::kYcbcr) continue;
        EXPECT_EQ(apart.max, 0);
    }
}

TEST(SharpJpegs, AreTurnedAndResampledAsTheirDefinitionSays) {
    std::mt19937 random(kSeed);
    SCOPED_TRACE("seed " + std::to_string(kSeed));
    for (int orientation = 1; orientation <= 8; ++orientation) {
        JpegPlan plan = jpeg(JpegColour::kYcbcr, 61, 37);
        plan.progressive = orientation % 2 == 0;
        plan.app1 = {samples::exifApp1(orientation, true)};
        const Bytes file = samples::jpegFile(plan);
        const Picture stored = storedGrey(file);
        for (int run = 0; run < 20; ++run) {
            const auto side = [&] { return 37 + static_cast<std::int32_t>(random() % 80); };
            const FitRules rules{static_cast<Fit>(random() % 5), static_cast<Turn>(random() % 5),
                                 side(), side()};
            ASSERT_EQ(printed(file, rules, run % 2 == 0), slowlyPrinted(stored, rules, false))
                << "orientation " << orientation << ", run " << run;
        }
    }
}

TEST(SharpJpegs, NeverCountAsFewColoured) {
    JpegPlan plan;
    plan.samples.assign(std::size_t{3} * plan.width * plan.height, 0);
    std::fill_n(plan.samples.begin(), plan.samples.size() / 2, Byte{255});
    const Bytes file = samples::jpegFile(plan);
    const GreyPicture enlarged = printed(file, {Fit::kStretch, Turn::k0, 32, 32});
    EXPECT_EQ(enlarged, slowlyPrinted(storedGrey(file), {Fit::kStretch, Turn::k0, 32, 32}, false));
    EXPECT_NE(enlarged, slowlyPrinted(storedGrey(file), {Fit::kStretch, Turn::k0, 32, 32}, true));
}

TEST(SharpJpegs, AreDecodedAtTheScaleThatFits) {
    const Bytes file = samples::jpegFile(jpeg(JpegColour::kYcbcr, 240, 160));
    const auto widthFor = [&](std::int64_t width, std::int64_t height) {
        const auto source = openGrey(file).source;
        source->mayShrinkTo(width, height);
        EXPECT_EQ(source->width() * 160, source->height() * 240);
        return source->width();
    };
    EXPECT_EQ(widthFor(121, 80), 240);
    EXPECT_EQ(widthFor(120, 81), 240);
    EXPECT_EQ(widthFor(120, 80), 120);
    EXPECT_EQ(widthFor(60, 41), 120);
    EXPECT_EQ(widthFor(60, 40), 60);
    EXPECT_EQ(widthFor(30, 20), 30);
    EXPECT_EQ(widthFor(1, 1), 30);

    const Bytes oddFile = samples::jpegFile(jpeg(JpegColour::kYcbcr, 242, 160));
    const auto odd = openGrey(oddFile);
    odd.source->mayShrinkTo(1, 1);
    EXPECT_EQ(odd.source->width(), 121) << "a quarter has no whole number of columns";
}

// The picture decoded whole, then averaged.
GreyPicture wholeThenAveraged(const Bytes& file, std::int32_t width, std::int32_t height) {
    const auto rows = resampledGrey(turnedRows(openGrey(file).source, 0, false), width, height,
                                    {0, 0, width, height});
    return readAll(*rows);
}

void expectNearlyTheSame(const Bytes& file, std::int32_t width, std::int32_t height,
                         const Difference& limit) {
    const FitRules rules{Fit::kStretch, Turn::k0, width, height};
    const Difference apart =
        difference(printed(file, rules), wholeThenAveraged(file, width, height));
    EXPECT_LE(apart.mean, limit.mean) << width << " x " << height;
    EXPECT_LE(apart.max, limit.max) << width << " x " << height;
}

TEST(SharpJpegs, LookTheSameAtASmallerScale) {
    if (!samples::haveCorpus()) GTEST_SKIP() << "no sample files";
    for (const char* name : {"exif/Landscape_1.jpg", "exif/Portrait_1.jpg"}) {
        SCOPED_TRACE(name);
        const Bytes file = samples::corpusFile(name);
        const auto stored = openGrey(file).source;
        for (const std::int32_t factor : {2, 4, 8})
            expectNearlyTheSame(file, stored->width() / factor, stored->height() / factor,
                                kAtThatScale);
        for (const double factor : {2.3, 3.0, 5.0, 7.0, 11.0}) {
            expectNearlyTheSame(file, static_cast<std::int32_t>(stored->width() / factor),
                                static_cast<std::int32_t>(stored->height() / factor),
                                kBetweenScales);
        }
    }
}

TEST(SharpJpegs, LookTheSameAtASmallerScaleIfTheyWereMadeHere) {
    const Bytes file = samples::jpegFile(jpeg(JpegColour::kYcbcr, 640, 480));
    for (const std::int32_t factor : {2, 4, 8})
        expectNearlyTheSame(file, 640 / factor, 480 / factor, kAtThatScale);
    expectNearlyTheSame(file, 270, 200, kBetweenScales);
}

}  // namespace
}  // namespace tavio::sharp
