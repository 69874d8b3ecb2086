#include "tavio/virtual-printer/ticket_png.h"

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

namespace tavio::virtual_printer {
namespace {

struct PngFacts {
    TicketSize size;  // dpi from the file's dots per metre
    int bitDepth = 0;
    int colourType = 0;
    std::string dots;
};

struct Input {
    const std::vector<Byte>* bytes;
    std::size_t at;
};

void onRead(png_structp png, png_bytep data, png_size_t length) {
    auto* input = static_cast<Input*>(png_get_io_ptr(png));
    if (length > input->bytes->size() - input->at) png_error(png, "cut short");
    std::memcpy(data, input->bytes->data() + input->at, length);
    input->at += length;
}

// Reads the file with the PNG library, as plain black and white. An error ends the program: the
// library's default handler aborts, and the test with it.
PngFacts readPng(const std::vector<Byte>& bytes) {
    PngFacts facts;
    Input input{&bytes, 0};
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_read_fn(png, &input, onRead);
    png_read_info(png, info);
    facts.size.rows = static_cast<std::int32_t>(png_get_image_height(png, info));
    facts.size.columns = static_cast<std::int32_t>(png_get_image_width(png, info));
    facts.size.dpi = static_cast<std::int32_t>(png_get_pixels_per_inch(png, info));
    facts.bitDepth = png_get_bit_depth(png, info);
    facts.colourType = png_get_color_type(png, info);
    png_set_expand_gray_1_2_4_to_8(png);
    std::vector<Byte> row(static_cast<std::size_t>(facts.size.columns));
    for (std::int32_t y = 0; y < facts.size.rows; ++y) {
        png_read_row(png, row.data(), nullptr);
        for (const Byte grey : row) facts.dots += grey == 0 ? 'X' : (grey == 255 ? ' ' : '?');
        facts.dots += '\n';
    }
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    return facts;
}

Ticket randomTicket(std::mt19937& random, TicketSize size) {
    Ticket ticket(size);
    for (std::int32_t row = 0; row < size.rows; ++row) {
        for (std::int32_t column = 0; column < size.columns; ++column) {
            if (random() % 3 == 0) ticket.setDot(row, column);
        }
    }
    return ticket;
}

std::vector<Byte> encoded(const Ticket& ticket, const PngOptions& options) {
    std::vector<Byte> png;
    std::string reason;
    EXPECT_TRUE(encodeTicketPng(ticket, options, png, reason)) << reason;
    return png;
}

TEST(TicketPng, HasTheDotsOfTheTicket) {
    constexpr unsigned kSeed = 20240304;
    SCOPED_TRACE(::testing::Message() << "seed " << kSeed);
    std::mt19937 random(kSeed);
    for (std::int32_t columns = 1; columns <= 40; ++columns) {
        const TicketSize size{1 + static_cast<std::int32_t>(random() % 30), columns, 300};
        const Ticket ticket = randomTicket(random, size);
        const PngFacts facts = readPng(encoded(ticket, {}));
        ASSERT_EQ(facts.size, size);
        ASSERT_EQ(facts.dots, ticket.toText());
        ASSERT_EQ(facts.bitDepth, 1);
        ASSERT_EQ(facts.colourType, PNG_COLOR_TYPE_GRAY);
    }
}

TEST(TicketPng, CanBeTurnedUpright) {
    Ticket ticket({3, 4, 200});
    ticket.setDot(2, 0);  // top left of a portrait picture
    ticket.setDot(0, 0);  // its top right
    ticket.setDot(2, 3);  // its bottom left
    const PngFacts facts = readPng(encoded(ticket, {.turnedUpright = true}));
    EXPECT_EQ(facts.size, (TicketSize{4, 3, 200}));
    EXPECT_EQ(facts.dots,
              "X X\n"
              "   \n"
              "   \n"
              "X  \n");
}

TEST(TicketPng, KnowsItsResolution) {
    for (const std::int32_t dpi : {200, 300, 600}) {
        EXPECT_EQ(readPng(encoded(Ticket({1, 1, dpi}), {})).size.dpi, dpi);
    }
}

}  // namespace
}  // namespace tavio::virtual_printer
