// What is known of a file without printing it. Pages of documents: pages_test.cpp.

#include <gtest/gtest.h>

#include "intake/picture_files.h"
#include "pictures/sample_pictures.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/temporary_folder.h"
#include "tavio/printing/document_info.h"

namespace tavio::printing {
namespace {

using test::Lines;
using test::told;

DocumentInfo infoOf(Bytes file, const TicketSettings& settings = {}, Place place = {},
                    const DrawOptions& drawing = {}) {
    const auto info = inspect(Source::bytes(std::move(file), "x"), settings, place, drawing);
    EXPECT_TRUE(info) << told(info.error()).at(0);
    return info.value_or(DocumentInfo{});
}

Lines problemsOf(Bytes file) {
    const auto info = inspect(Source::bytes(std::move(file), "x"));
    return info ? Lines() : told(info.error());
}

Bytes turnedJpeg() {
    pictures::samples::JpegPlan plan;
    plan.width = 48;
    plan.height = 32;
    plan.app1 = {pictures::samples::exifApp1(6, true)};
    plan.samples.assign(std::size_t{48} * 32 * 3, 255);
    return pictures::samples::jpegFile(plan);
}

TEST(Inspection, TellsTheSizeOfAnUprightPicture) {
    const DocumentInfo png = infoOf(test::greyPng(test::allBlack(64, 32), 1), {.resolution = 200});
    EXPECT_EQ(png.format, Format::kPng);
    EXPECT_EQ(png.pages, 1);
    EXPECT_EQ(png.widthPixels, 64);
    EXPECT_EQ(png.heightPixels, 32);
    EXPECT_DOUBLE_EQ(png.widthInches, 0.32);
    EXPECT_DOUBLE_EQ(png.heightInches, 0.16);
    EXPECT_EQ(png.dots, (Size{64, 32}));
    EXPECT_TRUE(png.warnings.empty());

    const DocumentInfo turned = infoOf(test::greyPng(test::allBlack(64, 32), 8));
    EXPECT_EQ(turned.widthPixels, 32);
    EXPECT_EQ(turned.heightPixels, 64);
    EXPECT_EQ(turned.dots, (Size{32, 64}));

    const DocumentInfo jpeg = infoOf(turnedJpeg());
    EXPECT_EQ(jpeg.format, Format::kJpeg);
    EXPECT_EQ(jpeg.bytes, turnedJpeg().size());
    EXPECT_EQ(jpeg.widthPixels, 32);
    EXPECT_EQ(jpeg.heightPixels, 48);

    EXPECT_EQ(infoOf(test::blackBmp(32, 8)).format, Format::kBmp);
}

TEST(Inspection, TellsTheDotsOfTheSettingsAndOptions) {
    const Bytes png = test::greyPng(test::allBlack(64, 32), 1);
    const TicketSettings portrait{.resolution = 200, .orientation = Orientation::kPortrait};
    EXPECT_EQ(infoOf(png, portrait).dots, (Size{64, 32}));
    EXPECT_EQ(infoOf(png, portrait, {}, {.classic = Classic{}}).dots, (Size{32, 64}));
    const TicketSettings small{.stock = Stock::ofInches(0.5, 0.25), .resolution = 200};
    EXPECT_EQ(infoOf(png, small, {}, {.fit = Fit::kStretch}).dots, (Size{100, 50}));
}

TEST(Inspection, TellsWhatPrintingWouldLose) {
    const DocumentInfo info = infoOf(test::blackBmp(24, 12), {}, {-1, 0}, {.classic = Classic{}});
    EXPECT_EQ(
        told(info.warnings),
        (Lines{"beyond-ticket 0.0 (1): the picture of 24 x 12 dots at row -1, column 0 reaches "
               "beyond the ticket of 1650 x 600 dots",
               "rows-lost 0.0 (4): 4 rows with black dots are lost: rows at the bottom that do "
               "not fill 8 are left out",
               "columns-lost 0.0 (4): 4 columns with black dots at the right are lost: make "
               "the width a multiple of 32"}));
}

TEST(Inspection, TakesAnythingElseInUtf8AsAText) {
    for (const std::string text : {"", "Row F", "Jos\u00E9 <p>"}) {
        const DocumentInfo info = infoOf(test::bytesOf(text));
        EXPECT_EQ(info.format, Format::kText);
        EXPECT_EQ(info.bytes, text.size());
        EXPECT_EQ(info.widthInches, 0);
        EXPECT_EQ(info.dots, std::nullopt);
        EXPECT_TRUE(info.warnings.empty());
    }
    EXPECT_EQ(problemsOf(test::bytesOf("GIF89a\xFF")),
              Lines{"unknown-format 0: x is neither a PDF, PNG, JPEG nor BMP file nor UTF-8 text"});
}

TEST(Inspection, ReadsAllOfAPicture) {
    Bytes png = test::greyPng(test::allBlack(64, 32), 1);
    png[png.size() - 30] ^= 1U;
    EXPECT_EQ(problemsOf(png),
              Lines{"damaged 0.0: x is no picture to print: the PNG file is damaged"});
    Bytes jpeg = turnedJpeg();
    jpeg.resize(jpeg.size() - 1);
    EXPECT_EQ(problemsOf(jpeg),
              Lines{"damaged 0.0: x is no picture to print: the JPEG file is cut short"});
    Bytes bmp = test::blackBmp(32, 8);
    bmp.pop_back();
    EXPECT_EQ(problemsOf(bmp),
              Lines{"damaged 0.0: x is no picture to print: the BMP file is cut short"});
}

TEST(Inspection, HasTheProblemsOfFilesAndSettings) {
    const test::TemporaryFolder folder;
    const std::string path = folder / "x";
    EXPECT_EQ(told(inspect(Source::file(path)).error()),
              Lines{"not-found 0: " + path + " does not exist"});
    EXPECT_EQ(told(inspect(Source::bytes(test::blackBmp(32, 8)), {.resolution = 0}).error()),
              Lines{"bad-setting 0: 0 is none of the resolutions 200, 300 and 600"});
    EncodeOptions options;
    options.maxFileBytes = 4;
    EXPECT_EQ(told(inspect(Source::bytes(Bytes(5), "x"), {}, {}, {}, options).error()),
              Lines{"too-large 0: x is larger than 4 bytes, the limit for one document"});
}

TEST(FormatOf, IsToldByTheSignature) {
    EXPECT_EQ(formatOf(test::greyPng(test::allBlack(1, 1), 1)), Format::kPng);
    EXPECT_EQ(formatOf(turnedJpeg()), Format::kJpeg);
    EXPECT_EQ(formatOf(test::blackBmp(1, 1)), Format::kBmp);
    EXPECT_EQ(formatOf(test::bytesOf("%PDF-1.7")), Format::kPdf);
    EXPECT_EQ(formatOf({}), std::nullopt);
    EXPECT_EQ(formatOf(test::bytesOf("%PDF")), std::nullopt);
    const auto after = [](std::size_t count) {
        return formatOf(test::bytesOf(std::string(count, ' ') + "%PDF-"));
    };
    EXPECT_EQ(after(1019), Format::kPdf);
    EXPECT_EQ(after(1020), std::nullopt);
    for (const Format format :
         {Format::kPdf, Format::kPng, Format::kJpeg, Format::kBmp, Format::kText})
        EXPECT_STRNE(nameOf(format), "");
}

}  // namespace
}  // namespace tavio::printing
