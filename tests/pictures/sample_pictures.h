// Pictures and picture files made by the tests.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "TavioIpadSDK/machine/bytes.h"
#include "TavioIpadSDK/pictures/picture.h"

namespace tavio::pictures::samples {

// True if the folder of public sample files is on this machine.
bool haveCorpus();

// A file of that folder; a test failure and no bytes when it cannot be read.
Bytes corpusFile(const std::string& name);

// Names of the files in a folder of it that end in `suffix`, sorted.
std::vector<std::string> corpusNames(const std::string& folder, const std::string& suffix);

// The picture in the file; a test failure and an empty picture when there is none.
Picture decoded(std::span<const Byte> file);

// Why there is no picture in the file; a test failure when there is one.
std::string refusal(std::span<const Byte> file);

// The result of reading all rows of an opened file, in random portions.
struct RowsRead {
    Picture picture;  // upright, as far as its rows came
    std::string why;  // empty when all came; else why not
};
RowsRead readByRows(const Bytes& file, std::mt19937& random);

// A test failure unless the rows of the file are those of the decoded picture, or are refused for
// the same reason, the last row at the latest.
void expectSameByRows(const Bytes& file, std::mt19937& random);

// One line a row, one hexadecimal word (alpha, blue, green, red) a pixel, for failures.
std::string asText(const Picture& picture);

// The mean difference of the colours of two pictures of one size; a test failure if the sizes
// differ.
double meanDifference(const Picture& one, const Picture& other);

// Random premultiplied pixels; all opaque, or alpha random too.
Picture randomPicture(std::mt19937& random, std::int32_t width, std::int32_t height, bool opaque);

// A PNG file. `rows`: the samples as PNG stores them, one row after the other.
struct PngPlan {
    std::uint32_t width = 1;
    std::uint32_t height = 1;
    int colourType = 6;  // as in the file: 0 grey, 2 RGB, 3 palette, 4 grey + alpha, 6 RGBA
    int depth = 8;
    bool interlaced = false;
    Bytes palette;       // three bytes an entry
    Bytes paletteAlpha;  // tRNS of a palette
    Bytes samples;
};
Bytes pngFile(const PngPlan& plan);

// One chunk with its length and checksum.
Bytes pngChunk(const std::string& name, std::span<const Byte> data);

// The PNG file with a chunk put right after its header, or right before its end.
Bytes withChunkAfterHeader(const Bytes& png, const Bytes& chunk);
Bytes withChunkBeforeEnd(const Bytes& png, const Bytes& chunk);

enum class JpegColour { kGrey, kYcbcr, kRgb, kCmyk, kYcck };

struct JpegPlan {
    std::uint32_t width = 16;
    std::uint32_t height = 16;
    JpegColour colour = JpegColour::kYcbcr;
    bool adobe = true;  // write Adobe's marker where it is usual
    bool progressive = false;
    bool arithmetic = false;
    bool oneScanEach = false;  // of the components
    std::vector<Bytes> app1;   // the contents of APP1 blocks, in this order
    Bytes samples;             // 1, 3 or 4 bytes a pixel: grey, RGB or CMYK
};
Bytes jpegFile(const JpegPlan& plan);

// An EXIF block with the orientation, in the byte order "II" or "MM".
Bytes exifBlock(int orientation, bool bigEndian);

// The contents of an APP1 block that holds it.
Bytes exifApp1(int orientation, bool bigEndian);

// A BMP file: both headers, then `palette` (whatever follows the header), then `data`.
struct BmpPlan {
    std::uint32_t headerBytes = 40;
    std::int32_t width = 1;
    std::int32_t height = 1;
    std::uint32_t bits = 24;
    std::uint32_t coding = 0;
    std::uint32_t dataBytes = 0;
    std::uint32_t paletteEntries = 0;
    Bytes palette;
    Bytes data;
};
Bytes bmpFile(const BmpPlan& plan);

}  // namespace tavio::pictures::samples
