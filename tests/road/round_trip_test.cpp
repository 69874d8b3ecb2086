// The virtual printer reads encoded pictures back: the same dots, except those that the encoder
// drops on purpose, which these tests name.

#include <algorithm>
#include <functional>

#include <gtest/gtest.h>

#include "TavioIpadSDK/TavioIpadSDK.h"
#include "TavioIpadSDK/encoder/parse_bmp.h"
#include "TavioIpadSDK/imaging/print_bmp.h"
#include "support/bitmaps.h"
#include "support/fresh_state.h"
#include "support/random_picture.h"
#include "tavio/virtual-printer/printer.h"

namespace tavio {
namespace {

using test::between;
using test::chance;
using test::Rows;
using virtual_printer::Ticket;

constexpr std::int32_t kPortraitDots = 576;  // stock 0 at 300 dots per inch

struct Job {
    bool isLandscape;
    std::int32_t row;
    std::int32_t column;
};

// True if the encoder's file has a dot at row y (0 at the top), column c of the padded row.
using DotAt = std::function<bool(std::size_t y, std::size_t c)>;

// The padding rule: whole padding bytes are blank, and so is the half byte left of them - in the
// picture's top row when the padding is an odd number of half bytes, in all others when it is at
// least a byte.
bool survivesPadding(std::size_t width, std::size_t y, std::size_t c) {
    const std::size_t padded = (width + 31) / 32 * 32;
    const std::size_t paddingBits = padded - width;
    const std::size_t bytes = paddingBits / 8;
    if (c >= padded - 8 * bytes) return false;
    const bool isBesidePadding = c + 4 >= padded - 8 * bytes;
    const bool blanks = y == 0 ? (paddingBits / 4) % 2 == 1 : bytes >= 1;
    return !(isBesidePadding && blanks);
}

// The dots that the encoder lets through: whole bands only, and the padding rule.
Rows encodedDots(std::size_t width, std::size_t height, const DotAt& dotAt) {
    Rows rows;
    for (std::size_t y = 0; y < height / 8 * 8; ++y) {
        rows.emplace_back();
        for (std::size_t c = 0; c < (width + 31) / 32 * 32; ++c)
            rows.back() += survivesPadding(width, y, c) && dotAt(y, c) ? 'X' : ' ';
    }
    return rows;
}

Byte columnOf(const Rows& dots, std::size_t band, std::size_t c) {
    unsigned column = 0;
    for (std::size_t y = 0; y < 8; ++y)
        column = column * 2 + (dots[8 * band + y][c] == 'X' ? 1 : 0);
    return static_cast<Byte>(column);
}

// Three columns that spell a positioning command make the second pass go astray, on purpose; such
// pictures do not come back whole.
bool spellsACommand(const Rows& dots) {
    for (std::size_t band = 0; band < dots.size() / 8; ++band)
        for (std::size_t c = 0; c + 2 < dots[0].size(); ++c)
            if (columnOf(dots, band, c) == '<' && columnOf(dots, band, c + 1) == 'R' &&
                columnOf(dots, band, c + 2) == 'C')
                return true;
    return false;
}

bool hasNoBlankColumn(const Rows& dots, std::size_t band) {
    for (std::size_t c = 0; c < dots[0].size(); ++c)
        if (columnOf(dots, band, c) == 0) return false;
    return true;
}

// The ticket with the dots in their expected places.
Ticket expectedTicket(const Rows& dots, const Job& job) {
    Ticket ticket(*virtual_printer::ticketSize(0, 300));
    for (std::size_t y = 0; y < dots.size(); ++y) {
        // A first band in portrait that has no blank column keeps the job's row as it is.
        const bool keepsRow = !job.isLandscape && y < 8 && hasNoBlankColumn(dots, 0);
        const std::int64_t firstRow = keepsRow ? job.row : kPortraitDots - job.row;
        for (std::size_t c = 0; c < dots[y].size(); ++c) {
            if (dots[y][c] != 'X') continue;
            const auto down = static_cast<std::int64_t>(y);
            const auto across = static_cast<std::int64_t>(c);
            if (job.isLandscape) {
                ticket.setDot(job.row + down, job.column + across);
            } else {
                ticket.setDot(firstRow - across, job.column + down);
            }
        }
    }
    return ticket;
}

struct Preview {
    std::string text;
    std::uint64_t dotsOff = 0;
    std::uint64_t problems = 0;
};

Preview printedOn(const Bytes& stream) {
    Preview preview;
    virtual_printer::Printer printer({*virtual_printer::ticketSize(0, 300)},
                                     [&](const virtual_printer::FinishedTicket& finished) {
                                         preview.text = finished.ticket.toText();
                                         preview.dotsOff = finished.ticket.dotsOff();
                                     });
    printer.feed(stream);
    printer.finish();
    preview.problems = printer.problems().count();
    return preview;
}

class RoundTrip : public test::FreshState, public testing::WithParamInterface<unsigned> {
  protected:
    Job randomJob(test::Random& random) {
        Job job{};
        job.isLandscape = chance(random, 50);
        job.row = between(random, 0, 200);
        job.column = job.isLandscape ? 0 : between(random, 0, 300);
        Mode = "WF";
        OpenSessionWiFi("");
        ChangeConfiguration("<P1>", 300, false, true, CONCERT, job.isLandscape ? "<LM>" : "<PM>");
        originalx = job.row;
        originaly = job.column;
        test::transport().calls.clear();
        return job;
    }

    void expectOnTicket(const Rows& dots, const Job& job) {
        if (spellsACommand(dots)) return;
        ++compared_;
        const Ticket expected = expectedTicket(dots, job);
        const Preview preview = printedOn(test::transport().dataSent());
        ASSERT_TRUE(preview.text == expected.toText()) << "expected the dots\n"
                                                       << testing::PrintToString(dots);
        ASSERT_EQ(preview.dotsOff, expected.dotsOff());
        ASSERT_EQ(preview.problems, expected.dotsOff() > 0 ? 1U : 0U);
    }

    unsigned compared_ = 0;
};

Rows randomRows(test::Random& random) {
    const pictures::Picture picture = test::randomPicture(random, 200);
    Rows rows;
    for (std::int32_t y = 0; y < picture.height; ++y) {
        rows.emplace_back();
        for (std::int32_t x = 0; x < picture.width; ++x)
            rows.back() +=
                (picture.pixels[static_cast<std::size_t>(y * picture.width + x)] & 255U) < 128
                    ? 'X'
                    : ' ';
    }
    return rows;
}

constexpr unsigned kPicturesPerShard = 100;

// A bitmap handed to the encoder: rows that fill no band and the half byte beside padding are lost.
TEST_P(RoundTrip, BringsTheEncodersBitmapBackButForPartBandsAndPadding) {
    for (unsigned i = 0; i < kPicturesPerShard; ++i) {
        const unsigned seed = GetParam() * kPicturesPerShard + i;
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Rows rows = randomRows(random);
        const Job job = randomJob(random);
        encoder::ParseBMP(test::bitmapFile(rows));
        const std::size_t width = rows[0].size();
        const DotAt dotAt = [&](std::size_t y, std::size_t c) {
            return c < width && rows[y][c] == 'X';
        };
        ASSERT_NO_FATAL_FAILURE(expectOnTicket(encodedDots(width, rows.size(), dotAt), job));
    }
    EXPECT_GT(compared_, kPicturesPerShard * 9 / 10);
}

// A picture handed to PrintBMP: packing doubles the first column of every eight and loses the last.
TEST_P(RoundTrip, BringsAPictureBackButForTheEighthColumnOfEveryGroup) {
    for (unsigned i = 0; i < kPicturesPerShard; ++i) {
        const unsigned seed = GetParam() * kPicturesPerShard + i;
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        test::Random random(seed);
        const Rows rows = randomRows(random);
        const Job job = randomJob(random);
        const auto width = static_cast<std::int32_t>(rows[0].size());
        imaging::PrintBMP(width, static_cast<std::int32_t>(rows.size()), test::pictureOf(rows));
        const DotAt dotAt = [&](std::size_t y, std::size_t c) {
            const std::size_t from = c % 8 == 0 ? c : c - 1;
            return from < rows[0].size() && rows[y][from] == 'X';
        };
        ASSERT_NO_FATAL_FAILURE(
            expectOnTicket(encodedDots(rows[0].size(), rows.size(), dotAt), job));
    }
    EXPECT_GT(compared_, kPicturesPerShard * 9 / 10);
}

INSTANTIATE_TEST_SUITE_P(Shard, RoundTrip, testing::Range(0U, 10U));

class RoundTripExample : public test::FreshState {};

TEST_F(RoundTripExample, DrawsTheAllBlack8x8PictureWhereItWasSent) {
    Mode = "WF";
    originalx = 10;
    originaly = 20;
    encoder::ParseBMP(test::bitmapFile(test::allBlack(8, 8)));
    std::string seen;
    virtual_printer::Printer printer({*virtual_printer::ticketSize(0, 300)},
                                     [&](const virtual_printer::FinishedTicket& finished) {
                                         seen = finished.ticket.toText({9, 19, 10, 10});
                                     });
    printer.feed(test::transport().dataSent());
    printer.finish();
    EXPECT_EQ(seen,
              "          \n"
              " XXXXXXXX \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              " XXXX     \n"
              "          \n");
}

}  // namespace
}  // namespace tavio
