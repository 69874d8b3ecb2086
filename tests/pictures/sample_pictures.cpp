#include "pictures/sample_pictures.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <memory>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>
#include <jpeglib.h>
#include <png.h>

#include "TavioIpadSDK/pictures/open_picture.h"
#include "TavioIpadSDK/pictures/upright.h"
#include "TavioIpadSDK/platform/bytes.h"
#include "pictures/some_rows.h"
#include "support/decode_picture.h"

namespace tavio::pictures::samples {
namespace {

constexpr std::size_t kPngHeaderEnd = 8 + 25;
constexpr std::size_t kPngEndBytes = 12;

void append(Bytes& target, std::span<const Byte> bytes) {
    target.insert(target.end(), bytes.begin(), bytes.end());
}

void appendLittle(Bytes& target, std::uint32_t value, unsigned bytes) {
    for (unsigned index = 0; index < bytes; ++index)
        target.push_back(static_cast<Byte>(value >> (8 * index)));
}

void appendBig(Bytes& target, std::uint32_t value, unsigned bytes) {
    for (unsigned index = bytes; index-- > 0;)
        target.push_back(static_cast<Byte>(value >> (8 * index)));
}

std::uint32_t checksum(std::span<const Byte> bytes) {
    std::uint32_t value = 0xFFFFFFFF;
    for (const Byte byte : bytes) {
        value ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0);
    }
    return ~value;
}

Bytes inserted(const Bytes& file, std::size_t at, const Bytes& part) {
    Bytes whole = file;
    whole.insert(whole.begin() + static_cast<std::ptrdiff_t>(at), part.begin(), part.end());
    return whole;
}

void writePngHeader(png_structp png, png_infop info, const PngPlan& plan) {
    png_set_IHDR(png, info, plan.width, plan.height, plan.depth, plan.colourType,
                 plan.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette;
    for (std::size_t at = 0; at + 2 < plan.palette.size(); at += 3)
        palette.push_back({plan.palette[at], plan.palette[at + 1], plan.palette[at + 2]});
    if (!palette.empty()) png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    if (!plan.paletteAlpha.empty()) {
        png_set_tRNS(png, info, plan.paletteAlpha.data(),
                     static_cast<int>(plan.paletteAlpha.size()), nullptr);
    }
    png_write_info(png, info);
}

void setColours(jpeg_compress_struct& encoder, const JpegPlan& plan) {
    struct Colours {
        int components;
        J_COLOR_SPACE given;
        J_COLOR_SPACE stored;
    };
    static constexpr std::array<Colours, 5> kColours = {{{1, JCS_GRAYSCALE, JCS_GRAYSCALE},
                                                         {3, JCS_RGB, JCS_YCbCr},
                                                         {3, JCS_RGB, JCS_RGB},
                                                         {4, JCS_CMYK, JCS_CMYK},
                                                         {4, JCS_CMYK, JCS_YCCK}}};
    const Colours& colours = kColours.at(static_cast<std::size_t>(plan.colour));
    encoder.input_components = colours.components;
    encoder.in_color_space = colours.given;
    jpeg_set_defaults(&encoder);
    jpeg_set_colorspace(&encoder, colours.stored);
    if (!plan.adobe) encoder.write_Adobe_marker = FALSE;
}

void writeJpeg(jpeg_compress_struct& encoder, const JpegPlan& plan) {
    jpeg_start_compress(&encoder, TRUE);
    for (const Bytes& block : plan.app1) {
        jpeg_write_marker(&encoder, JPEG_APP0 + 1, block.data(),
                          static_cast<unsigned>(block.size()));
    }
    const std::size_t rowBytes =
        std::size_t{plan.width} * static_cast<std::size_t>(encoder.input_components);
    EXPECT_EQ(plan.samples.size(), rowBytes * plan.height);
    Bytes samples = plan.samples;
    for (std::size_t row = 0; row < plan.height; ++row) {
        JSAMPROW line = samples.data() + row * rowBytes;
        jpeg_write_scanlines(&encoder, &line, 1);
    }
    jpeg_finish_compress(&encoder);
}

}  // namespace

bool haveCorpus() {
    return std::filesystem::is_directory(TAVIO_CORPUS_DIR);
}

Bytes corpusFile(const std::string& name) {
    const auto bytes = platform::readWholeFile(std::string(TAVIO_CORPUS_DIR "/") + name);
    if (!bytes) ADD_FAILURE() << name << " cannot be read";
    return bytes.value_or(Bytes{});
}

std::vector<std::string> corpusNames(const std::string& folder, const std::string& suffix) {
    std::vector<std::string> names;
    const std::filesystem::path path = std::string(TAVIO_CORPUS_DIR "/") + folder;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        if (entry.path().extension() == suffix) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

Picture decoded(std::span<const Byte> file) {
    DecodedPicture result = decodePicture(file);
    if (!result.picture) {
        ADD_FAILURE() << "refused: " << result.why;
        return {};
    }
    EXPECT_EQ(result.why, "");
    EXPECT_EQ(result.picture->pixels.size(), static_cast<std::size_t>(result.picture->width) *
                                                 static_cast<std::size_t>(result.picture->height));
    return std::move(*result.picture);
}

std::string refusal(std::span<const Byte> file) {
    const DecodedPicture result = decodePicture(file);
    EXPECT_FALSE(result.picture) << "decoded, although it should be refused";
    EXPECT_EQ(result.why.empty(), result.picture.has_value());
    return result.why;
}

RowsRead readByRows(const Bytes& file, std::mt19937& random) {
    const OpenedPicture opened = openPicture(std::make_shared<const Bytes>(file));
    EXPECT_NE(opened.rows != nullptr, !opened.why.empty());
    if (!opened.rows) return {{}, opened.why};
    RowsRead read{{opened.rows->width(), 0, {}, 1}, {}};
    const auto line = static_cast<std::size_t>(opened.rows->width());
    try {
        for (;;) {
            const auto maxRows = static_cast<std::int32_t>(1 + random() % 20);
            const std::vector<UInt32> rows = someRows(*opened.rows, maxRows, random);
            if (rows.empty()) break;
            EXPECT_EQ(rows.size() % line, 0U);
            EXPECT_LE(rows.size() / line, static_cast<std::size_t>(maxRows));
            read.picture.pixels.insert(read.picture.pixels.end(), rows.begin(), rows.end());
            read.picture.height += static_cast<std::int32_t>(rows.size() / line);
        }
        EXPECT_EQ(read.picture.height, opened.rows->height());
    } catch (const DamagedPicture& damage) {
        read.why = damage.what();
        EXPECT_NE(read.why, "");
        EXPECT_LT(read.picture.height, opened.rows->height()) << "the last row had come";
    }
    return read;
}

void expectSameByRows(const Bytes& file, std::mt19937& random) {
    DecodedPicture decoded = decodePicture(file);
    const RowsRead read = readByRows(file, random);
    EXPECT_EQ(read.why, decoded.why);
    if (!decoded.picture || !read.why.empty()) return;
    const Picture expected = upright(std::move(*decoded.picture));
    EXPECT_EQ(read.picture.width, expected.width);
    EXPECT_EQ(read.picture.height, expected.height);
    EXPECT_TRUE(read.picture.pixels == expected.pixels) << "other pixels";
}

std::string asText(const Picture& picture) {
    std::ostringstream text;
    text << std::hex << std::setfill('0');
    for (std::size_t at = 0; at < picture.pixels.size(); ++at) {
        const bool isLast = (at + 1) % static_cast<std::size_t>(picture.width) == 0;
        text << std::setw(8) << picture.pixels[at] << (isLast ? '\n' : ' ');
    }
    return text.str();
}

double meanDifference(const Picture& one, const Picture& other) {
    EXPECT_EQ(one.width, other.width);
    EXPECT_EQ(one.pixels.size(), other.pixels.size());
    double sum = 0;
    for (std::size_t at = 0; at < std::min(one.pixels.size(), other.pixels.size()); ++at) {
        for (const unsigned shift : {0U, 8U, 16U}) {
            sum += std::abs(static_cast<int>((one.pixels[at] >> shift) & 0xFF) -
                            static_cast<int>((other.pixels[at] >> shift) & 0xFF));
        }
    }
    return sum / static_cast<double>(3 * one.pixels.size());
}

Picture randomPicture(std::mt19937& random, std::int32_t width, std::int32_t height, bool opaque) {
    Picture picture{width, height, {}, 1};
    for (std::int64_t at = 0; at < std::int64_t{width} * height; ++at) {
        const auto colours = static_cast<std::uint32_t>(random());
        const unsigned alpha = opaque ? 255 : static_cast<unsigned>(random() & 0xFF);
        picture.pixels.push_back(premultipliedPixel(colours & 0xFF, (colours >> 8) & 0xFF,
                                                    (colours >> 16) & 0xFF, alpha));
    }
    return picture;
}

Bytes pngFile(const PngPlan& plan) {
    Bytes file;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &file,
        [](png_structp writer, png_bytep data, std::size_t count) {
            append(*static_cast<Bytes*>(png_get_io_ptr(writer)), {data, count});
        },
        nullptr);
    writePngHeader(png, info, plan);
    const std::size_t rowBytes = png_get_rowbytes(png, info);
    EXPECT_EQ(plan.samples.size(), rowBytes * plan.height);
    const int passes = png_set_interlace_handling(png);
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t row = 0; row < plan.height; ++row)
            png_write_row(png, plan.samples.data() + row * rowBytes);
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return file;
}

Bytes pngChunk(const std::string& name, std::span<const Byte> data) {
    Bytes chunk(name.begin(), name.end());
    append(chunk, data);
    const std::uint32_t sum = checksum(chunk);
    Bytes length;
    appendBig(length, static_cast<std::uint32_t>(data.size()), 4);
    chunk.insert(chunk.begin(), length.begin(), length.end());
    appendBig(chunk, sum, 4);
    return chunk;
}

Bytes withChunkAfterHeader(const Bytes& png, const Bytes& chunk) {
    return inserted(png, kPngHeaderEnd, chunk);
}

Bytes withChunkBeforeEnd(const Bytes& png, const Bytes& chunk) {
    return inserted(png, png.size() - kPngEndBytes, chunk);
}

Bytes jpegFile(const JpegPlan& plan) {
    jpeg_compress_struct encoder{};
    jpeg_error_mgr errors{};
    encoder.err = jpeg_std_error(&errors);
    jpeg_create_compress(&encoder);
    unsigned char* buffer = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&encoder, &buffer, &size);
    encoder.image_width = plan.width;
    encoder.image_height = plan.height;
    setColours(encoder, plan);
    jpeg_set_quality(&encoder, 100, TRUE);
    encoder.arith_code = plan.arithmetic ? TRUE : FALSE;
    if (plan.progressive) jpeg_simple_progression(&encoder);
    const std::array<jpeg_scan_info, 3> scans = {
        {{1, {0}, 0, 63, 0, 0}, {1, {1}, 0, 63, 0, 0}, {1, {2}, 0, 63, 0, 0}}};
    if (plan.oneScanEach) {
        encoder.scan_info = scans.data();
        encoder.num_scans = static_cast<int>(scans.size());
    }
    writeJpeg(encoder, plan);
    Bytes file(buffer, buffer + size);
    jpeg_destroy_compress(&encoder);
    std::free(buffer);
    return file;
}

Bytes exifBlock(int orientation, bool bigEndian) {
    Bytes block(2, bigEndian ? Byte{'M'} : Byte{'I'});
    const auto number = [&](std::uint32_t value, unsigned bytes) {
        bigEndian ? appendBig(block, value, bytes) : appendLittle(block, value, bytes);
    };
    number(42, 2);
    number(8, 4);       // where the entries begin
    number(2, 2);       // entries
    number(0x010F, 2);  // an entry of another kind
    number(2, 2);
    number(2, 4);
    number(0, 4);
    number(0x0112, 2);
    number(3, 2);
    number(1, 4);
    number(static_cast<std::uint32_t>(orientation), 2);
    number(0, 2);
    number(0, 4);
    return block;
}

Bytes exifApp1(int orientation, bool bigEndian) {
    Bytes content = {'E', 'x', 'i', 'f', 0, 0};
    append(content, exifBlock(orientation, bigEndian));
    return content;
}

Bytes bmpFile(const BmpPlan& plan) {
    const auto dataAt = static_cast<std::uint32_t>(14 + plan.headerBytes + plan.palette.size());
    Bytes file = {'B', 'M'};
    appendLittle(file, dataAt + static_cast<std::uint32_t>(plan.data.size()), 4);
    appendLittle(file, 0, 4);
    appendLittle(file, dataAt, 4);
    appendLittle(file, plan.headerBytes, 4);
    const unsigned sizeBytes = plan.headerBytes == 12 ? 2 : 4;
    appendLittle(file, static_cast<std::uint32_t>(plan.width), sizeBytes);
    appendLittle(file, static_cast<std::uint32_t>(plan.height), sizeBytes);
    appendLittle(file, 1, 2);
    appendLittle(file, plan.bits, 2);
    if (plan.headerBytes > 16) {
        appendLittle(file, plan.coding, 4);
        appendLittle(file, plan.dataBytes, 4);
        appendLittle(file, 0, 4);
        appendLittle(file, 0, 4);
        appendLittle(file, plan.paletteEntries, 4);
        appendLittle(file, 0, 4);
    }
    file.resize(14 + plan.headerBytes);
    append(file, plan.palette);
    append(file, plan.data);
    return file;
}

}  // namespace tavio::pictures::samples
