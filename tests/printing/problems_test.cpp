// Every kind of problem, by a real file where there is one; its exact sentence.

#include <array>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include "intake/picture_files.h"
#include "pictures/sample_pictures.h"
#include "printing/told.h"
#include "support/bitmaps.h"
#include "support/rights.h"
#include "support/temporary_folder.h"
#include "tavio/printing/job.h"

namespace tavio::printing {
namespace {

using pictures::samples::JpegPlan;
using pictures::samples::PngPlan;
using test::Lines;
using test::told;

std::shared_ptr<const platform::Picture> pixelsOf(platform::Picture picture) {
    return std::make_shared<const platform::Picture>(std::move(picture));
}

Bytes greyPng(std::uint32_t side) {
    PngPlan plan;
    plan.width = plan.height = side;
    plan.colourType = 0;
    plan.samples.assign(std::size_t{side} * side, 90);
    return pictures::samples::pngFile(plan);
}

Bytes greyJpeg() {
    JpegPlan plan;
    plan.width = plan.height = 64;
    plan.samples.assign(std::size_t{64} * 64 * 3, 90);
    return pictures::samples::jpegFile(plan);
}

Bytes firstPart(Bytes file, std::size_t size) {
    file.resize(size);
    return file;
}

class Problematic : public testing::Test {
  protected:
    std::string written(const std::string& name, const std::string& content) const {
        test::writeFile(folder_ / name, content);
        return folder_ / name;
    }

    // The problems of a document in the folder.
    Lines toldOf(const std::string& name, const EncodeOptions& options = {}) const {
        return told(encode(Ticket().document(Source::file(folder_ / name)), options));
    }
    // The problems of a document in memory.
    static Lines toldOf(Bytes file, const EncodeOptions& options = {}) {
        return told(encode(Ticket().document(Source::bytes(std::move(file), "x")), options));
    }
    static Lines toldOfPixels(platform::Picture picture) {
        return told(encode(Ticket().picture(pixelsOf(std::move(picture)))));
    }
    static Lines toldOfText(const std::string& text) {
        return told(encode(Ticket().text(text, {})));
    }

    test::TemporaryFolder folder_;
};

// ---- Files --------------------------------------------------------------------------------------

TEST_F(Problematic, AMissingFileIsNotFound) {
    const std::string path = folder_ / "photo.png";
    EXPECT_EQ(toldOf("photo.png"), Lines{"not-found 0.0: " + path + " does not exist"});
    EXPECT_EQ(toldOf("no/photo.png"),
              Lines{"not-found 0.0: " + (folder_ / "no/photo.png") + " does not exist"});
    written("file", "");
    EXPECT_EQ(toldOf("file/photo.png"),
              Lines{"not-found 0.0: " + (folder_ / "file/photo.png") + " does not exist"});
    EXPECT_EQ(told(encode(Ticket().document(Source::file("")))),
              Lines{"not-found 0.0: \"\" does not exist"});
}

TEST_F(Problematic, EveryKindOfElementReadsItsFile) {
    const std::string path = folder_ / "x";
    const Source missing = Source::file(path);
    const std::string cause = ": " + path + " does not exist";
    EXPECT_EQ(told(encode(Ticket()
                              .page(missing)
                              .picture(missing)
                              .document(missing)
                              .printerText(missing)
                              .storeLogo(1, missing))),
              (Lines{"not-found 0.0" + cause, "not-found 0.1" + cause, "not-found 0.2" + cause,
                     "not-found 0.3" + cause, "not-found 0.4" + cause}));
}

TEST_F(Problematic, APathIsNotCutAtAZeroByte) {
    written("a.txt", "Row F");
    const std::string path = (folder_ / "a.txt") + std::string("\0.txt", 5);
    EXPECT_EQ(told(encode(Ticket().printerText(Source::file(path)))),
              Lines{"not-found 0.0: " + path + " does not exist"});
}

TEST_F(Problematic, OnlyARegularFileIsRead) {
    EXPECT_EQ(toldOf("."),
              Lines{"not-readable 0.0: " + (folder_ / ".") + " is a folder, not a file"});
    ASSERT_EQ(::mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(toldOf("pipe"),
              Lines{"not-readable 0.0: " + (folder_ / "pipe") + " is not a regular file"});
    EXPECT_EQ(told(encode(Ticket().printerText(Source::file("/dev/zero")))),
              Lines{"not-readable 0.0: /dev/zero is not a regular file"});
}

TEST_F(Problematic, AFileThatMayNotBeReadSaysWhy) {
    const std::string path = written("secret.png", "");
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const test::WithoutRootRights withoutRights;
    if (!withoutRights.succeeded()) GTEST_SKIP() << "root may read everything";
    EXPECT_EQ(toldOf("secret.png"),
              Lines{"not-readable 0.0: " + path + " cannot be read: Permission denied"});
}

TEST_F(Problematic, AFileAboveTheLimitIsTooLarge) {
    const std::string path = written("long.txt", "0123456789");
    EncodeOptions options;
    options.maxFileBytes = 9;
    const std::string sentence = " is larger than 9 bytes, the limit for one document";
    EXPECT_EQ(told(encode(Ticket().printerText(Source::file(path)), options)),
              Lines{"too-large 0.0: " + path + sentence});
    EXPECT_EQ(told(encode(Ticket().printerText(Source::bytes(Bytes(10, 'a'))), options)),
              Lines{"too-large 0.0: the document" + sentence});
    options.maxFileBytes = 10;
    EXPECT_TRUE(encode(Ticket().printerText(Source::file(path)), options));
}

// ---- Documents ----------------------------------------------------------------------------------

TEST_F(Problematic, AFileOfNoKnownKindIsOfAnUnknownFormat) {
    const std::string neither = "unknown-format 0.0: x is neither a PDF, PNG, JPEG nor BMP file";
    EXPECT_EQ(toldOf(test::bytesOf("GIF89a")), Lines{neither});
    EXPECT_EQ(toldOf(Bytes()), Lines{neither});
    EXPECT_EQ(told(encode(Ticket().document(Source::bytes(nullptr)))),
              Lines{"unknown-format 0.0: the document is neither a PDF, PNG, JPEG nor BMP file"});
    EXPECT_EQ(told(encode(Ticket().picture(Source::bytes(test::bytesOf("%PDF-1.7"), "x")))),
              Lines{"unknown-format 0.0: x is no picture to print: the file is neither a PNG nor a "
                    "JPEG nor a BMP"});
}

TEST_F(Problematic, ACutOffPictureIsDamaged) {
    const std::string cut = "damaged 0.0: x is no picture to print: the ";
    const Bytes png = greyPng(64);
    const Bytes jpeg = greyJpeg();
    const Bytes bmp = test::blackBmp(64, 64);
    for (const std::size_t size : {std::size_t{20}, png.size() / 2, png.size() - 1})
        EXPECT_EQ(toldOf(firstPart(png, size)), Lines{cut + "PNG file is cut short"}) << size;
    for (const std::size_t size : {std::size_t{20}, jpeg.size() - 40, jpeg.size() - 1})
        EXPECT_EQ(toldOf(firstPart(jpeg, size)), Lines{cut + "JPEG file is cut short"}) << size;
    for (const std::size_t size : {std::size_t{20}, bmp.size() / 2, bmp.size() - 1})
        EXPECT_EQ(toldOf(firstPart(bmp, size)), Lines{cut + "BMP file is cut short"}) << size;
}

// Its size is known and its first rows are good.
TEST_F(Problematic, DamageAfterTheHeaderLeavesNothingOfTheJob) {
    PngPlan noise;
    noise.width = noise.height = 300;
    noise.colourType = 0;
    std::mt19937 random(1);
    for (int pixel = 0; pixel < 300 * 300; ++pixel)
        noise.samples.push_back(static_cast<Byte>(random()));
    Bytes png = pictures::samples::pngFile(noise);
    png[png.size() - 40] ^= 1U;
    for (const bool mayUseThreads : {true, false}) {
        EncodeOptions options;
        options.mayUseThreads = mayUseThreads;
        EXPECT_EQ(told(encode(Ticket()
                                  .text("Row F", {})
                                  .picture(Source::bytes(png, "x"))
                                  .storeLogo(7, Source::bytes(png, "y"))
                                  .finish(Finish::kCut),
                              options)),
                  (Lines{"damaged 0.1: x is no picture to print: the PNG file is damaged",
                         "damaged 0.2: y is no picture to print: the PNG file is damaged"}));
    }
}

TEST_F(Problematic, APictureOfTooManyPixelsIsTooLarge) {
    Bytes png = greyPng(8);
    const std::array<Byte, 4> many{0, 0, 0x80, 0};  // 32768
    std::copy(many.begin(), many.end(), png.begin() + 16);
    std::copy(many.begin(), many.end(), png.begin() + 20);
    const Bytes header = pictures::samples::pngChunk("IHDR", std::span(png).subspan(16, 13));
    std::copy(header.begin(), header.end(), png.begin() + 8);
    EXPECT_EQ(toldOf(png), Lines{"too-large 0.0: x is no picture to print: the PNG file has too "
                                 "many pixels"});
}

TEST_F(Problematic, APageOfTooManyDotsIsTooLarge) {
    platform::PdfPage page;
    page.width = 14400;
    page.height = 300;
    EncodeOptions options;
    options.pageEngine = [&](const Source&, std::int32_t) {
        return DrawnPage{{platform::PdfOutcome::kDrawn, page}, 1};
    };
    Ticket ticket({.resolution = 600});
    ticket.page(Source::bytes(Bytes(), "x"), {}, {.classic = Classic{}});
    EXPECT_EQ(told(encode(ticket, options)),
              Lines{"too-large 0.0: x comes to 120000 x 2500 dots, more than can be printed: scale "
                    "it"});
    page.width = page.height = 20000;
    EXPECT_EQ(told(encode(ticket, options)),
              Lines{"too-large 0.0: x has a page that is too large"});
}

TEST_F(Problematic, SomethingOfZeroDotsCannotBePrinted) {
    // 0.0024 inches are more than half a dot, but less than one.
    Ticket ticket({.stock = Stock::ofInches(0.0024, 1)});
    ticket.picture(Source::bytes(greyPng(8), "x"), {}, {.classic = Classic{.scaled = true}});
    EXPECT_EQ(told(encode(ticket)),
              Lines{"no-dots 0.0: x comes to 0 x 300 dots, so there is nothing to print: enlarge "
                    "it"});
}

// ---- Pictures in memory -------------------------------------------------------------------------

TEST_F(Problematic, APictureInMemoryMustBeWhole) {
    const Lines damaged{
        "damaged 0.0: the picture in memory has another number of pixels than its size says, or no "
        "orientation"};
    const platform::Picture good = test::plainPicture(8, 8, 0, 0, 0);
    EXPECT_EQ(toldOfPixels(good), Lines());
    for (const int orientation : {0, 9, -1}) {
        platform::Picture turned = good;
        turned.orientation = orientation;
        EXPECT_EQ(toldOfPixels(turned), damaged);
    }
    for (const auto& [width, height] :
         {std::pair{8, 9}, {7, 8}, {-8, -8}, {1 << 30, 1 << 30}, {0, 8}}) {
        platform::Picture lying = good;
        lying.width = width;
        lying.height = height;
        EXPECT_EQ(toldOfPixels(lying), damaged) << width << " x " << height;
    }
    EXPECT_EQ(toldOfPixels({}), Lines{"no-dots 0.0: the picture in memory has no pixels"});
}

TEST_F(Problematic, AMissingPictureInMemoryIsAProblem) {
    const std::shared_ptr<const platform::Picture> none;
    EXPECT_EQ(told(encode(Ticket().picture(none).storeLogo(1, none))),
              (Lines{"damaged 0.0: there is no picture in memory: the pointer is null",
                     "damaged 0.1: there is no picture in memory: the pointer is null"}));
}

TEST_F(Problematic, MissingBytesAreAProblem) {
    EXPECT_EQ(told(encode(Ticket().bytes(nullptr))),
              Lines{"damaged 0.0: there are no bytes to send: the pointer is null"});
}

// ---- Settings -----------------------------------------------------------------------------------

Lines toldOfSettings(const TicketSettings& settings) {
    EXPECT_EQ(ticketSize(settings), std::nullopt);
    return told(encode(Ticket(settings).text("<", {})));  // an element of a bad ticket is not told
}

TEST_F(Problematic, AStockThatDoesNotExistIsABadSetting) {
    const Lines bad{
        "bad-setting 0: there is no ticket of this stock: give a row of the table of stocks, or "
        "two "
        "sides of more than 0 and at most 27 inches"};
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const Stock& stock :
         {Stock::ofIndex(9), Stock::ofIndex(-2), Stock::ofIndex(1 << 30), Stock::ofInches(0, 1),
          Stock::ofInches(1, -1), Stock::ofInches(kNan, 1), Stock::ofInches(1, kInfinity),
          Stock::ofInches(27.001, 1), Stock::ofIndex(-1)})
        EXPECT_EQ(toldOfSettings({.stock = stock}), bad);
    EXPECT_EQ(toldOfSettings({.stock = Stock::ofInches(1, 0.001)}),
              Lines{"bad-setting 0: the ticket's stock comes to 0 dots: give two larger sides"});
}

TEST_F(Problematic, AResolutionOfNoPrinterIsABadSetting) {
    for (const std::int32_t resolution : {0, -300, 299, 1200}) {
        EXPECT_EQ(toldOfSettings({.resolution = resolution}),
                  Lines{"bad-setting 0: " + std::to_string(resolution) +
                        " is none of the resolutions 200, 300 and 600"});
    }
}

TEST_F(Problematic, APathThatIsNotUtf8IsABadSetting) {
    EXPECT_EQ(toldOfSettings({.path = "<P\xE9>"}),
              Lines{"bad-setting 0: the path command is not UTF-8: give one such as \"<P1>\""});
}

// ---- Texts --------------------------------------------------------------------------------------

TEST_F(Problematic, ATextThatIsNotUtf8IsToldForEachKindOfText) {
    const std::string latin1 = "Jos\xE9";
    const std::string path = written("name.txt", latin1);
    EXPECT_EQ(
        told(encode(Ticket().text(latin1, {}).printerText(latin1).printerText(Source::file(path)))),
        (Lines{"not-utf-8 0.0: the text is not UTF-8",
               "not-utf-8 0.1: the text to send is not UTF-8",
               "not-utf-8 0.2: " + path + " is not UTF-8 text"}));
    EXPECT_EQ(toldOfText("\xF4\x90\x80\x80"), Lines{"not-utf-8 0.0: the text is not UTF-8"});
}

TEST_F(Problematic, ALetterThatCannotBePrintedIsNamed) {
    const std::string opening = "unprintable-letter 0.0: the text has ";
    const std::string missing = ", which the printer's face does not have";
    EXPECT_EQ(toldOfText("José <VIP>"), Lines{opening + "\"é\" (U+00E9)" + missing});
    EXPECT_EQ(toldOfText("Joe <VIP>"), Lines{opening + "\"<\" (U+003C), which begins a command"});
    EXPECT_EQ(toldOfText("<p>"), Lines{opening + "\"<\" (U+003C), which begins a command"});
    EXPECT_EQ(toldOfText("party \U0001F389"),
              Lines{opening + "\"\U0001F389\" (U+1F389)" + missing});
    EXPECT_EQ(toldOfText("\u05E9\u05DC\u05D5\u05DD"),
              Lines{opening + "\"\u05E9\" (U+05E9)" + missing});
    EXPECT_EQ(toldOfText("10 \u20AC"), Lines{opening + "\"\u20AC\" (U+20AC)" + missing});
}

// Shown on its own it would join the letter before it, or turn the text around.
TEST_F(Problematic, ALetterThatDoesNotShowIsNamedByItsCode) {
    const std::string opening = "unprintable-letter 0.0: the text has ";
    const std::string missing = ", which the printer's face does not have";
    EXPECT_EQ(toldOfText("Jose\u0301"), Lines{opening + "U+0301" + missing});
    EXPECT_EQ(toldOfText("a\u202Eb"), Lines{opening + "U+202E" + missing});
    EXPECT_EQ(toldOfText("a\u200Bb"), Lines{opening + "U+200B" + missing});
    EXPECT_EQ(toldOfText("\U0010FFFF"), Lines{opening + "U+10FFFF" + missing});
    EXPECT_EQ(toldOfText("\uFEFFa"), Lines{opening + "U+FEFF" + missing});
    EXPECT_EQ(toldOfText("a\u00A0b"), Lines{opening + "U+00A0" + missing});
}

TEST_F(Problematic, AControlCharacterIsNamedByItsCode) {
    const std::string opening = "unprintable-letter 0.0: the text has the control character ";
    EXPECT_EQ(toldOfText("\x1B"
                         "c"),
              Lines{opening + "U+001B"});
    EXPECT_EQ(toldOfText("a\tb"), Lines{opening + "U+0009"});
    EXPECT_EQ(toldOfText("a\r\nb"), Lines{opening + "U+000D"});
    EXPECT_EQ(toldOfText(std::string("a\0b", 3)), Lines{opening + "U+0000"});
    EXPECT_EQ(toldOfText("\x7F"), Lines{opening + "U+007F"});
    for (char last = '\x80'; last <= '\x9F'; ++last) {
        std::array<char, 8> code{};
        std::snprintf(code.data(), code.size(), "U+%04X", static_cast<unsigned char>(last));
        EXPECT_EQ(toldOfText(std::string("\xC2") + last), Lines{opening + code.data()});
    }
}

// ---- The whole ----------------------------------------------------------------------------------

TEST_F(Problematic, AllWrongElementsOfAllTicketsAreTold) {
    const std::string path = folder_ / "x";
    std::vector<Ticket> tickets(4, Ticket());
    tickets[0].text("Row F", {}).picture(Source::file(path)).finish(Finish::kCut);
    tickets[1].text("Seat 12", {}).finish(Finish::kCut);
    tickets[2] = Ticket({.resolution = 1});
    tickets[3].text("\t", {}).text("good", {}).printerText("\xFF").finish(Finish::kCut);
    EXPECT_EQ(told(encode(tickets)),
              (Lines{"not-found 0.1: " + path + " does not exist",
                     "bad-setting 2: 1 is none of the resolutions 200, 300 and 600",
                     "unprintable-letter 3.0: the text has the control character U+0009",
                     "not-utf-8 3.2: the text to send is not UTF-8"}));
}

TEST_F(Problematic, NoTicketsAreAnEmptyJob) {
    const auto job = encode(std::span<const Ticket>());
    ASSERT_TRUE(job);
    EXPECT_TRUE(job->bytes().empty());
    EXPECT_TRUE(job->elements().empty());
}

TEST_F(Problematic, AStopRequestEndsEncodingBetweenElements) {
    std::stop_source stop;
    EncodeOptions options;
    options.stop = stop.get_token();
    std::vector<std::size_t> begun;
    options.progress = [&](std::size_t number, std::size_t count) {
        EXPECT_EQ(count, 3U);
        begun.push_back(number);
        if (number == 1) stop.request_stop();
    };
    const std::vector<Ticket> tickets{Ticket().text("a", {}), Ticket().text("b", {}).text("c", {})};
    EXPECT_EQ(told(encode(tickets, options)), Lines{"cancelled 1.1: encoding was cancelled"});
    EXPECT_EQ(begun, (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(told(encode(tickets, options)), Lines{"cancelled 0.0: encoding was cancelled"});
}

TEST_F(Problematic, WhatAProgressFunctionThrowsIsDropped) {
    EncodeOptions options;
    options.progress = [](std::size_t, std::size_t) { throw 7; };
    EXPECT_TRUE(encode(Ticket().text("a", {}), options));
}

}  // namespace
}  // namespace tavio::printing
