#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

#include "picture_files.h"

namespace compare {
namespace {

using tavio::Byte;

struct Colours {
    int components;  // of the samples given
    J_COLOR_SPACE given;
    J_COLOR_SPACE stored;
};

Colours randomColours(Random& random) {
    constexpr Colours kColour{3, JCS_RGB, JCS_YCbCr};
    constexpr Colours kPlainColour{3, JCS_RGB, JCS_RGB};
    constexpr Colours kGrey{1, JCS_GRAYSCALE, JCS_GRAYSCALE};
    constexpr Colours kPrint{4, JCS_CMYK, JCS_CMYK};
    constexpr Colours kTurnedPrint{4, JCS_CMYK, JCS_YCCK};
    return random.pick({kColour, kColour, kColour, kPlainColour, kGrey, kPrint, kTurnedPrint});
}

void choose(Random& random, jpeg_compress_struct& encoder) {
    const Colours colours = randomColours(random);
    encoder.input_components = colours.components;
    encoder.in_color_space = colours.given;
    jpeg_set_defaults(&encoder);
    jpeg_set_colorspace(&encoder, colours.stored);
    if (random.chance(10)) encoder.write_Adobe_marker = FALSE;
    jpeg_set_quality(&encoder, random.pick({1, 30, 75, 90, 100}), TRUE);
    if (random.chance(20)) jpeg_simple_progression(&encoder);
    if (random.chance(10)) encoder.restart_in_rows = random.between(1, 4);
    if (random.chance(30)) {
        encoder.comp_info[0].h_samp_factor = random.between(1, 2);
        encoder.comp_info[0].v_samp_factor = random.between(1, 2);
    }
}

void appendBig(Bytes& bytes, std::uint32_t value, unsigned count) {
    for (unsigned index = count; index-- > 0;)
        bytes.push_back(static_cast<Byte>(value >> (8 * index)));
}

// A block with the tag of the orientation; 1 to 8 are known, others are not.
void writeOrientation(jpeg_compress_struct& encoder, int orientation) {
    constexpr std::uint32_t kOrientation = 0x0112;
    constexpr std::uint32_t kShort = 3;
    Bytes block = {'E', 'x', 'i', 'f', 0, 0, 'M', 'M'};
    appendBig(block, 42, 2);
    appendBig(block, 8, 4);  // where the list of tags begins
    appendBig(block, 1, 2);  // tags
    appendBig(block, kOrientation, 2);
    appendBig(block, kShort, 2);
    appendBig(block, 1, 4);
    appendBig(block, static_cast<std::uint32_t>(orientation), 2);
    appendBig(block, 0, 2);
    appendBig(block, 0, 4);
    jpeg_write_marker(&encoder, JPEG_APP0 + 1, block.data(), static_cast<unsigned>(block.size()));
}

Bytes rowOf(const Pixels& pixels, int y, int components) {
    Bytes row;
    for (int x = 0; x < pixels.width; ++x) {
        const Byte* pixel = pixels.at(x, y);
        if (components == 1) {
            row.push_back(greyOf(pixel));
        } else {
            row.insert(row.end(), pixel, pixel + components);
        }
    }
    return row;
}

void write(Random& random, jpeg_compress_struct& encoder, const Pixels& pixels) {
    jpeg_start_compress(&encoder, TRUE);
    if (random.chance(20)) writeOrientation(encoder, random.between(0, 9));
    for (int y = 0; y < pixels.height; ++y) {
        Bytes row = rowOf(pixels, y, encoder.input_components);
        JSAMPROW line = row.data();
        jpeg_write_scanlines(&encoder, &line, 1);
    }
    jpeg_finish_compress(&encoder);
}

}  // namespace

Bytes jpegFile(Random& random, const Pixels& pixels) {
    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &buffer, &size);
    encoder.image_width = static_cast<JDIMENSION>(pixels.width);
    encoder.image_height = static_cast<JDIMENSION>(pixels.height);
    choose(random, encoder);
    write(random, encoder, pixels);
    Bytes file(buffer, buffer + size);
    jpeg_destroy_compress(&encoder);
    std::free(buffer);  // NOLINT(*-no-malloc): the encoder's own
    return file;
}

}  // namespace compare
