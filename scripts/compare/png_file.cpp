#include <array>
#include <vector>

#include <png.h>

#include "bit_row.h"
#include "picture_files.h"

namespace compare {
namespace {

using tavio::Byte;

struct Form {
    int colourType = PNG_COLOR_TYPE_RGB;
    int depth = 8;
};

Form randomForm(Random& random) {
    constexpr int kGrey = PNG_COLOR_TYPE_GRAY;
    constexpr int kPalette = PNG_COLOR_TYPE_PALETTE;
    constexpr int kGreyAlpha = PNG_COLOR_TYPE_GRAY_ALPHA;
    constexpr int kColour = PNG_COLOR_TYPE_RGB;
    constexpr int kColourAlpha = PNG_COLOR_TYPE_RGB_ALPHA;
    switch (random.pick({kGrey, kPalette, kGreyAlpha, kColour, kColour, kColourAlpha})) {
        case kGrey:
            return {kGrey, random.pick({1, 2, 4, 8, 16})};
        case kPalette:
            return {kPalette, random.pick({1, 2, 4, 8})};
        case kGreyAlpha:
            return {kGreyAlpha, random.pick({8, 16})};
        case kColourAlpha:
            return {kColourAlpha, random.pick({8, 8, 16})};
        default:
            return {kColour, random.pick({8, 8, 16})};
    }
}

// `sample`: 8 bits. The low byte of 16 bits is the inverse of the high one.
void addSample(BitRow& row, Byte sample, int depth) {
    if (depth == 16) {
        row.addByte(sample);
        row.addByte(255U - sample);
    } else if (depth == 8) {
        row.addByte(sample);
    } else {
        row.add(sample >> static_cast<unsigned>(8 - depth), depth);
    }
}

void addPixel(BitRow& row, const Byte* pixel, const Form& form) {
    if ((form.colourType & PNG_COLOR_MASK_COLOR) == 0 ||
        form.colourType == PNG_COLOR_TYPE_PALETTE) {
        addSample(row, greyOf(pixel), form.depth);
    } else {
        for (int colour = 0; colour < 3; ++colour) addSample(row, pixel[colour], form.depth);
    }
    if ((form.colourType & PNG_COLOR_MASK_ALPHA) != 0) addSample(row, pixel[3], form.depth);
}

std::vector<Bytes> rowsOf(const Pixels& pixels, const Form& form) {
    std::vector<Bytes> rows;
    for (int y = 0; y < pixels.height; ++y) {
        BitRow row;
        for (int x = 0; x < pixels.width; ++x) addPixel(row, pixels.at(x, y), form);
        rows.push_back(std::move(row).padded(1));
    }
    return rows;
}

// Some palettes have fewer colours than the depth allows.
void writePalette(Random& random, png_structp png, png_infop info, int depth) {
    const int max = 1 << depth;
    std::vector<png_color> colours(
        static_cast<std::size_t>(random.chance(90) ? max : random.between(1, max)));
    for (png_color& colour : colours) colour = {random.byte(), random.byte(), random.byte()};
    png_set_PLTE(png, info, colours.data(), static_cast<int>(colours.size()));
    if (!random.chance(30)) return;
    Bytes alpha(colours.size());
    for (Byte& one : alpha) one = random.byte();
    png_set_tRNS(png, info, alpha.data(), static_cast<int>(alpha.size()), nullptr);
}

// One colour that counts as transparent.
void writeTransparentColour(Random& random, png_structp png, png_infop info, int depth) {
    const auto sample = static_cast<png_uint_16>(random.chance(50) ? (1 << depth) - 1 : 0);
    png_color_16 colour{};
    colour.red = colour.green = colour.blue = colour.gray = sample;
    png_set_tRNS(png, info, nullptr, 0, &colour);
}

void writeHead(Random& random, png_structp png, png_infop info, const Pixels& pixels,
               const Form& form) {
    const int interlace = random.chance(20) ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE;
    png_set_IHDR(png, info, static_cast<png_uint_32>(pixels.width),
                 static_cast<png_uint_32>(pixels.height), form.depth, form.colourType, interlace,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const bool hasAlpha = (form.colourType & PNG_COLOR_MASK_ALPHA) != 0;
    if (form.colourType == PNG_COLOR_TYPE_PALETTE) {
        writePalette(random, png, info, form.depth);
    } else if (!hasAlpha && random.chance(15)) {
        writeTransparentColour(random, png, info, form.depth);
    }
    png_set_compression_level(png, random.pick({0, 1, 1, 1}));
    png_write_info(png, info);
}

void append(png_structp png, png_bytep data, png_size_t count) {
    auto& file = *static_cast<Bytes*>(png_get_io_ptr(png));
    file.insert(file.end(), data, data + count);
}

}  // namespace

Bytes pngFile(Random& random, const Pixels& pixels) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &file, append, nullptr);
    png_set_check_for_invalid_index(png, 0);  // a pixel outside of its palette is written, too
    const Form form = randomForm(random);
    writeHead(random, png, info, pixels, form);
    const std::vector<Bytes> rows = rowsOf(pixels, form);
    const int passes = png_set_interlace_handling(png);
    for (int pass = 0; pass < passes; ++pass)
        for (const Bytes& row : rows) png_write_row(png, row.data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

}  // namespace compare
